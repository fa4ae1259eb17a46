#include "scriptedconsole.h"
#include "tests/support/fakehttp.h"
#include "tests/support/fulldisk.h"
#include "till/console/consolepresenter.h"
#include "till/console/salecommands.h"
#include "till/core/deliverer.h"
#include "till/core/sale.h"
#include "till/core/till.h"

#include <host/abstractdocument.h>
#include <host/basicloyaltysystem.h>
#include <host/dbqueuebroker.h>
#include <host/dialog.h>

#include <QDir>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using till::Report;
using Outcome = till::SaleCommands::Outcome;

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
                {{QStringLiteral("method"), QString::fromLatin1(method)},
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
        scripted.console.line(till.note());
        commands.emplace(till, scripted.console);
        till.sale().recover();
    }

    Outcome execute(const char *line) { return commands->execute(QString::fromUtf8(line)); }
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

TEST_F(SaleTest, WhatIsNotUnderstoodGetsOneLineAndChangesNothing)
{
    TillRun run(data());
    run.execute("add 1 Milk 10.00 2");
    const auto before = run.receipt();
    for (const auto *line : {"frobnicate",
                             "ADD 2 Bread 1",
                             "add",
                             "add 2 Bread",
                             "add 2 Bread 1 1 1",
                             "add 2 \"Bread 1",
                             "add \"\" Bread 1",
                             "add 2 \" \" 1",
                             "add 2 Bread -1",
                             "add 2 Bread nan",
                             "add 2 Bread 1e3",
                             "add 2 Bread 1,5,5",
                             "add 2 Bread 1.005",
                             "add 2 Bread .",
                             "add 2 Bread 10000000",
                             "add 2 Bread 1 0,000",
                             "add 2 Bread 1 1.0001",
                             "add 2 Bread 1 100000",
                             "discount 1 5",
                             "discount 1 0 7",
                             "discount 1 5 7.5",
                             "discount -1 5 7",
                             "discount 1 5 7 2147483648",
                             "quantity 1 0",
                             "remove x",
                             "open 3",
                             "action x",
                             "report 0",
                             "show all",
                             "card"}) {
        SCOPED_TRACE(line);
        EXPECT_EQ(run.execute(line), Outcome::NotUnderstood);
        const auto shown = run.shown();
        EXPECT_EQ(std::count(shown.begin(), shown.end(), '\n'), 1) << shown;
        EXPECT_EQ(run.receipt(), before);
    }
}

TEST_F(SaleTest, ARefusedStepIsUnderstoodAndChangesNothing)
{
    TillRun run(data());
    run.execute({"commit", "open", "commit", "add 1 Milk 10,00 2", "discount 1 5 7"});
    const auto before = run.receipt();
    for (const auto *line :
         {"discount 1 15.01 7", "discount 2 1.00 7", "open", "shift", "add 2 Gold 9999999.99 101",
          "quantity 2 1", "quantity 1 0.499", "quantity 1 99999999", "remove 2", "report 1",
          "cancel", "# a comment", "  "}) {
        run.execute(line);
        EXPECT_EQ(run.receipt(), before) << line;
    }
    EXPECT_TRUE(run.system.committed.empty());
}

TEST_F(SaleTest, PositionsComeAndGoWithTheirDiscountsAndNumbersStay)
{
    TillRun run(data());
    run.execute({"add 1 Milk 10.00 2", "add 2 Bread 5.00", "discount 1 5 7", "remove 2",
                 "add 3 Tea 1.00", "quantity 1 3"});
    EXPECT_THAT(run.receipt(),
                AllOf(HasSubstr("3.000      10.00        30.00"), HasSubstr("-5.00"),
                      HasSubstr("3 3"), HasSubstr("26.00"), Not(HasSubstr("Bread"))));
}

TEST_F(SaleTest, AKilledTillFindsTheOpenReceiptWithItsHolder)
{
    std::string before;
    {
        TillRun run(data());
        run.execute({"add 1 \"Fresh milk\" 10.00 2", "discount 1 5 7 6 0", "card 8 916 1"});
        before = run.receipt();
    }
    TillRun run(data());
    EXPECT_THAT(run.shown(), HasSubstr("open again: 1 positions, total 15.00"));
    EXPECT_EQ(run.receipt(), before);
    run.execute({"commit", "add 2 Bread 1"});
    EXPECT_THAT(run.system.committed, ElementsAre("1Anna"));
    EXPECT_THAT(run.receipt(), HasSubstr("Sale 2"));
    EXPECT_EQ(record(1).report.outcome, Report::Queued);
    EXPECT_EQ(waiting(), 2);
}

TEST_F(SaleTest, AFailedIdentificationLeavesNoCardAndNoHolder)
{
    TillRun run(data());
    run.execute({"add 1 Milk 10.00", "card 8 916 1", "card 8 916 2"});
    EXPECT_THAT(run.shown(), HasSubstr("not confirmed"));
    EXPECT_THAT(run.receipt(), HasSubstr("No card."));
    run.execute("commit");
    EXPECT_THAT(run.system.committed, ElementsAre("1"));
}

TEST_F(SaleTest, AnInterruptedCommitIsCommittedAgainAndNobodyWaitsForALockMeanwhile)
{
    {
        TillRun run(data());
        run.execute({"add 1 Milk 10.00", "card 8 916 1"});
        run.system.whileCommitting = [&] {
            EXPECT_EQ(record(1).state, till::ReceiptState::Committing);
            EXPECT_TRUE(
                DBQueueBroker(till::Store::fileIn(data())).put(QStringLiteral("x"), {}, {}));
            QDir().mkdir(path("copy"));
            for (const auto *suffix : {"", "-wal"}) {
                const auto file = till::Store::fileIn(data()) + QLatin1String(suffix);
                QFile::copy(file, path("copy/till.db") + QLatin1String(suffix));
            }
        };
        run.execute("commit");
    }
    TillRun run(path("copy")); // the data of a till killed in the commit
    EXPECT_THAT(run.system.committed, ElementsAre("1Anna"));
    EXPECT_THAT(run.shown(), HasSubstr("Receipt 1 is reported."));
    EXPECT_THAT(run.receipt(), HasSubstr("No receipt is open."));
}

TEST_F(SaleTest, ARefusedOrderIsKeptWithWhatWasSaidAndCanBeReportedAgain)
{
    {
        TillRun run(data());
        run.system.told = QStringLiteral("no order for you");
        run.execute({"add 1 Milk 10.00", "card 8 916 1", "commit"});
    }
    EXPECT_EQ(record(1).report.outcome, Report::Refused);
    EXPECT_EQ(record(1).report.told, QStringLiteral("no order for you"));
    till::ReceiptFilter refused;
    refused.outcome = Report::Refused;
    EXPECT_EQ(store().list(refused)->size(), 1);

    TillRun run(data());
    run.execute({"add 2 Bread 1", "card 8 916 1", "report 1"}); // the open receipt stays what it is
    EXPECT_THAT(run.receipt(), HasSubstr("Sale 2"));
    run.execute("commit");
    EXPECT_THAT(run.system.committed, ElementsAre("1Anna", "2Anna"));
    EXPECT_EQ(record(1).report.outcome, Report::Queued);
    EXPECT_EQ(record(1).report.told, QString());
    EXPECT_EQ(store().history(record(1).row)->size(), 4); // open, committing, refused, queued
}

TEST_F(SaleTest, WhatTheDiskDoesNotTakeIsDeliveredFromMemoryAndStoredLater)
{
    TillRun run(data());
    run.execute("add 1 Milk 10.00");
    {
        const FullDisk disk(0);
        run.execute({"add 2 Bread 5.00", "commit", "add 3 Tea 1.00"});
        EXPECT_THAT(run.shown(),
                    AllOf(HasSubstr("[not saved]"), HasSubstr("Receipt 1 is committed"),
                          HasSubstr("Receipt 1 is only in memory")));
        EXPECT_EQ(run.execute("quit"), Outcome::Understood);
        EXPECT_THAT(run.shown(), HasSubstr("Only in memory: receipt 2, 1."));
        EXPECT_EQ(service.requests, 1); // not answered
        service.answer = R"({"status":"Success","order":{"processingStatus":"Processed"}})";
        run.execute("quit");
        EXPECT_EQ(service.requests, 3);
    }
    run.execute("add 4 Rice 1.00");
    EXPECT_THAT(run.shown(), HasSubstr("Receipt 1 is on the disk now."));
    EXPECT_EQ(record(1).report.outcome, Report::Reported);
    EXPECT_EQ(waiting(), 0);
    EXPECT_EQ(record(2).state, till::ReceiptState::Open);
    EXPECT_EQ(run.execute("quit"), Outcome::Quit);
}

TEST_F(SaleTest, ADamagedStoreIsPutAsideWholeAndNoNumberIsGivenAgain)
{
    {
        TillRun(data()).execute({"add 1 Milk 10.00", "commit", "add 2 Bread 5.00"});
    }
    const auto file = till::Store::fileIn(data());
    for (int time = 1; time <= 2; ++time) {
        QFile store(file);
        ASSERT_TRUE(store.open(QIODevice::ReadWrite) && store.write("damage") == 6);
        store.close();
        TillRun run(data());
        const auto kept = QStringLiteral("damaged/till.db.%1").arg(time);
        EXPECT_THAT(run.shown(), HasSubstr(kept.toStdString()));
        EXPECT_TRUE(QFileInfo::exists(data() + u'/' + kept));
        run.execute("add 3 Tea 1.00");
        EXPECT_THAT(run.receipt(), HasSubstr("Sale " + std::to_string(1000 * time + 1)));
        run.execute("commit");
    }
}

TEST_F(SaleTest, AStoreOfSomebodyElseIsLeftAloneAndNothingIsSold)
{
    QFile file(till::Store::fileIn(data()));
    ASSERT_TRUE(QDir().mkpath(data()));
    {
        Database database(file.fileName());
        ASSERT_TRUE(database.write("PRAGMA user_version = 99"));
    }
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const auto before = file.readAll();
    till::Settings settings;
    settings.dataDirectory = data();
    ScriptedConsole scripted;
    till::ConsolePresenter presenter(scripted.console);
    FakeSystem system;
    till::Till till(settings, presenter);
    EXPECT_THAT(till.start(system).value_or(QString()).toStdString(), HasSubstr("newer version"));
    file.seek(0);
    EXPECT_EQ(file.readAll(), before);
}

} // namespace
