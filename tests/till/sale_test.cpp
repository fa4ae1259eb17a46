#include "tests/support/fulldisk.h"
#include "tillrun.h"

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using till::Report;
using Outcome = till::SaleCommands::Outcome;

TEST_F(SaleTest, WhatIsNotUnderstoodGetsOneLineAndChangesNothing)
{
    TillRun run(data());
    run.execute("add 1 Milk 10.00 2");
    const auto before = run.receipt();
    for (const auto *line : {"frobnicate",
                             "ADD 2 Bread 1",
                             "add",
                             "add 2 \"Bread 1",
                             "add \"\" Bread 1",
                             "add 2 Bread -1",
                             "add 2 Bread 1e3",
                             "add 2 Bread 1,5,5",
                             "add 2 Bread 1.005",
                             "add 2 Bread 10000000",
                             "add 2 Bread 1 0,000",
                             "add 2 Bread 1 100000",
                             "discount 1 0 7",
                             "discount -1 5 7",
                             "discount 1 5 7 2147483648",
                             "quantity 1 0",
                             "remove x",
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

TEST_F(SaleTest, WhileAReceiptIsCommittedTheStoreKnowsItAndNobodyWaitsForALock)
{
    TillRun run(data());
    run.execute("add 1 Milk 10.00");
    run.system.whileCommitting = [&] {
        EXPECT_EQ(record(1).state, till::ReceiptState::Committing);
        EXPECT_TRUE(till::Store(data()).closeShift({7, 7}));
    };
    run.execute("commit");
    EXPECT_THAT(run.system.committed, ElementsAre(1));
}

TEST_F(SaleTest, WhatTheDiskDoesNotTakeIsDeliveredFromMemoryAndStoredLater)
{
    TillRun run(data());
    run.execute("add 1 Milk 10.00");
    {
        const FullDisk disk(0);
        run.execute({"add 2 Bread 5.00", "commit", "add 3 Tea 1.00"});
        EXPECT_THAT(run.shown(), AllOf(HasSubstr("[not saved]"), HasSubstr("Receipt 1 is closed"),
                                       HasSubstr("Receipt 1 is only in memory")));
        EXPECT_EQ(run.execute("quit"), Outcome::Understood);
        EXPECT_THAT(run.shown(), HasSubstr("Not saved: receipt 1, 2."));
        EXPECT_EQ(service.requests, 1); // without an answer
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

} // namespace
