#pragma once

#include "scriptedconsole.h"
#include "tests/support/fakehttp.h"
#include "till/console/consolepresenter.h"
#include "till/console/salecommands.h"
#include "till/core/deliverer.h"
#include "till/core/sale.h"
#include "till/core/till.h"

#include <host/abstractdocument.h>
#include <host/basicloyaltysystem.h>
#include <host/dbqueuebroker.h>

#include <QTemporaryDir>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

/// A loyalty system that queues two messages for every committed receipt.
class FakeSystem : public BasicLoyaltySystem
{
public:
    bool commit(const QSharedPointer<AbstractDocument> &document) override
    {
        committed.push_back(document->getHeader().num);
        whileCommitting();
        for (const auto *method : {"create", "change"})
            Singleton<DBQueueBroker>::instance()->put(
                till::loyaltyQueue(),
                {{u"method"_s, QLatin1String(method)}, {u"payload"_s, QJsonObject{}}}, {});
        return true;
    }

    std::vector<int> committed; ///< The number of each receipt.
    std::function<void()> whileCommitting = [] {};
};

/// One run of the till.
class TillRun
{
public:
    explicit TillRun(const QString &directory)
        : till(settings(directory), presenter)
    {
        EXPECT_TRUE(till.start(system));
        commands.emplace(till, scripted.console);
        till.sale().recover();
    }

    till::SaleCommands::Outcome execute(const char *line)
    {
        return commands->execute(QString::fromUtf8(line));
    }
    void execute(std::initializer_list<const char *> lines)
    {
        for (const auto *line : lines)
            execute(line);
    }
    std::string shown() { return scripted.shown(); }
    std::string receipt()
    {
        shown();
        execute("show");
        return shown();
    }

private:
    static till::Settings settings(const QString &directory)
    {
        till::Settings settings;
        settings.dataDirectory = directory;
        return settings;
    }

    ScriptedConsole scripted;
    till::ConsolePresenter presenter{scripted.console};

public:
    FakeSystem system;
    till::Till till;

private:
    std::optional<till::SaleCommands> commands;
};

class SaleTest : public testing::Test
{
protected:
    QString data() const { return directory.path(); }
    /// The store's latest receipt with that number.
    till::ReceiptRecord record(int number) const
    {
        const auto found =
            till::Store(data()).list({.number = number}).value_or(QList<till::ReceiptRecord>());
        return found.isEmpty() ? till::ReceiptRecord() : found.constFirst();
    }
    qint64 waiting() const { return till::Store(data()).deliveryState().waiting; }

    QTemporaryDir directory;
    FakeRestClient service;
};
