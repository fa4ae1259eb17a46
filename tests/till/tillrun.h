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
#include <host/dialog.h>

#include <QTemporaryDir>

#include <gmock/gmock.h>

/// Knows one number, and queues two messages for every committed receipt.
class FakeSystem : public BasicLoyaltySystem
{
public:
    loyalty::CardNumberAnswer getCardNumber(const loyalty::CardNumberInputData &input) override
    {
        return {true, input.text, {}};
    }
    bool identifyByCard(QSharedPointer<DocumentCardRecord> &card, ECardNumberType) override
    {
        holder = QStringLiteral("Anna");
        setPluginData(QStringLiteral("holder"), holder);
        lastError = {QString(), QStringLiteral("not confirmed")};
        return card->getNumber() == QStringLiteral("8 916 1");
    }
    bool restoreLoyaltySystem() override
    {
        if (hasCard())
            holder = getPluginData(QStringLiteral("holder"), {}).toString();
        return true;
    }
    void clearLoyaltyData() override { holder.clear(); }
    bool commit(const QSharedPointer<AbstractDocument> &document) override
    {
        EXPECT_EQ(document, currentDocument);
        committed.push_back(std::to_string(document->getHeader().num) + holder.toStdString());
        whileCommitting();
        if (!told.isEmpty()) {
            MockFactory<Dialog>::create()->showMessage({QString(), told}, 0, 0);
            return true;
        }
        for (const auto *method : {"create", "change"})
            Singleton<DBQueueBroker>::instance()->put(
                till::loyaltyQueue(),
                {{QStringLiteral("method"), QLatin1String(method)},
                 {QStringLiteral("payload"), QJsonObject{}}},
                {});
        return true;
    }

    QString holder;
    QString told;                       ///< Not empty: the service refuses, with this text.
    std::vector<std::string> committed; ///< Number and holder.
    std::function<void()> whileCommitting = [] {};
};

/// One run of the till.
class TillRun
{
public:
    explicit TillRun(const QString &directory)
        : till(settings(directory), presenter)
    {
        EXPECT_EQ(till.start(system), std::nullopt);
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
    QString path(const char *name) const { return directory.filePath(QLatin1String(name)); }
    QString data() const { return path("data"); }
    till::Store store() const { return till::Store(data()); }
    /// The receipt as the store has it, its last one of that number.
    till::ReceiptRecord record(int number) const
    {
        const auto found = store().find(number).value_or(QList<till::ReceiptRecord>());
        return found.isEmpty() ? till::ReceiptRecord() : found.constFirst();
    }
    qint64 waiting() const { return store().deliveryState(till::loyaltyQueue()).waiting; }

    QTemporaryDir directory;
    FakeRestClient service;
};
