#include "tests/support/fulldisk.h"
#include "tillrun.h"

#include <QDir>

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using till::Report;
using Outcome = till::SaleCommands::Outcome;
using StoredSale = SaleTest;

TEST_F(StoredSale, AKilledTillFindsTheOpenReceiptWithItsHolder)
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

TEST_F(StoredSale, AnInterruptedCommitIsCommittedAgainAndNobodyWaitsForALockMeanwhile)
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

TEST_F(StoredSale, ARefusedOrderIsKeptWithWhatWasSaidAndCanBeReportedAgain)
{
    {
        TillRun run(data());
        run.system.told = QStringLiteral("no order for you");
        run.execute({"add 1 Milk 10.00", "card 8 916 1", "commit"});
    }
    EXPECT_EQ(record(1).report.outcome, Report::Refused);
    EXPECT_EQ(record(1).report.told, QStringLiteral("no order for you"));

    TillRun run(data());
    run.execute({"add 2 Bread 1", "card 8 916 1", "report 1"}); // the open receipt stays what it is
    EXPECT_THAT(run.receipt(), HasSubstr("Sale 2"));
    run.execute("commit");
    EXPECT_THAT(run.system.committed, ElementsAre("1Anna", "2Anna"));
    EXPECT_EQ(record(1).report.outcome, Report::Queued);
    EXPECT_EQ(record(1).report.told, QString());
}

TEST_F(StoredSale, WhatTheDiskDoesNotTakeIsDeliveredFromMemoryAndStoredLater)
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

TEST_F(StoredSale, ADamagedStoreIsPutAsideAndWhatIsUnfinishedGoesOnUnderNewNumbers)
{
    const auto file = till::Store::fileIn(data());
    const auto damage = [&file](qint64 at) {
        QFile store(file);
        ASSERT_TRUE(store.open(QIODevice::ReadWrite) && store.seek(at));
        ASSERT_EQ(store.write("damage"), 6);
    };
    {
        TillRun(data()).execute({"add 1 Milk 10.00", "commit", "add 2 Bread 5.00"});
    }
    // A till hears nothing of these pages before a receipt changes its state.
    int time = 0;
    for (const auto &[part, use] :
         {std::pair("messages", "SELECT message FROM messages"),
          std::pair("historyOfReceipts", "SELECT at FROM history WHERE receipt = 1")}) {
        SCOPED_TRACE(part);
        const auto page = Database(file).read(
            "SELECT (rootpage - 1) * page_size FROM sqlite_schema, pragma_page_size WHERE name = ?",
            {QLatin1String(part)});
        damage(page->first().first().toLongLong());
        EXPECT_FALSE(Database(file).read(use));
        TillRun run(data());
        EXPECT_THAT(run.shown(), AllOf(HasSubstr("damaged/till.db." + std::to_string(++time)),
                                       HasSubstr("Receipt 2 is open again")));
        EXPECT_EQ(waiting(), 2);
    }
    {
        TillRun run(data());
        run.execute({"commit", "add 3 Tea 1.00"});
        EXPECT_THAT(run.receipt(), HasSubstr("Sale 1001"));
    }
    damage(0);
    TillRun run(data());
    EXPECT_THAT(run.shown(), HasSubstr("damaged/till.db.3"));
    EXPECT_TRUE(QFileInfo::exists(path("data/damaged/till.db.3")));
    run.execute("add 4 Rice 1.00");
    EXPECT_THAT(run.receipt(), HasSubstr("Sale 2001"));
}

} // namespace
