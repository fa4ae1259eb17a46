#include "tillrun.h"

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
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

TEST_F(SaleTest, PositionsComeAndGoWithTheirDiscountsAndNumbersStay)
{
    TillRun run(data());
    run.execute({"add 1 Milk 10.00 2", "add 2 Bread 5.00", "discount 1 5 7", "remove 2",
                 "add 3 Tea 1.00", "quantity 1 3"});
    EXPECT_THAT(run.receipt(),
                AllOf(HasSubstr("3.000      10.00        30.00"), HasSubstr("-5.00"),
                      HasSubstr("3 3"), HasSubstr("26.00"), Not(HasSubstr("Bread"))));
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

} // namespace
