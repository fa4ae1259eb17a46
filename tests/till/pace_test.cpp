#include "till/core/pace.h"

#include <gmock/gmock.h>

#include <set>

namespace {

using namespace std::chrono_literals;
using std::chrono::milliseconds;

till::Pace evenPace(const till::BackoffRange &range = {1s, 60s})
{
    return till::Pace(range, [] { return 0.5; });
}

/// Feeds the pace `count` answers of that time. \return The last rest.
milliseconds answered(till::Pace &pace, int count, milliseconds took)
{
    milliseconds rest{};
    for (int i = 0; i < count; ++i)
        rest = pace.afterAnswer(took);
    return rest;
}

TEST(Pace, DoublesTheRestWithEachFailureUpToTheLongestAndNeverRestsShorterThanATenth)
{
    auto pace = evenPace({1s, 5s});
    pace.noteEmpty();
    for (const auto expected : {1s, 2s, 4s, 5s, 5s})
        EXPECT_EQ(pace.afterFailure(), expected);
    pace.noteEmpty();
    EXPECT_EQ(pace.afterFailure(), 1s);
    auto restless = evenPace({0s, 0s});
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(restless.afterFailure(), till::Pace::shortestRest);
}

TEST(Pace, CatchesUpFromTheStartAndAfterAFailureUntilNothingWaits)
{
    auto pace = evenPace();
    EXPECT_GT(pace.afterAnswer(20ms), 5s) << "no rush when a whole chain is switched on";
    pace.noteEmpty();
    EXPECT_EQ(pace.afterAnswer(20ms), 0ms);
    pace.afterFailure();
    EXPECT_GT(pace.afterAnswer(20ms), 500ms);
}

TEST(Pace, ComesNearTo35TimesWhatLoadAddsToAnAnswerHoweverLongThatTakesWithoutLoad)
{
    for (const auto unloaded : {20ms, 1'300ms}) {
        SCOPED_TRACE(unloaded.count());
        auto pace = evenPace();
        pace.noteEmpty();
        answered(pace, 3, unloaded);
        for (int i = 0; i < 10; ++i)
            pace.afterFailure();
        EXPECT_NEAR(pace.afterAnswer(unloaded).count(), 60'000 * 0.6, 60);
        EXPECT_NEAR(answered(pace, 100, unloaded).count(), 100, 2);
        EXPECT_NEAR(answered(pace, 100, unloaded + 200ms).count(), 7'000, 100);
        EXPECT_NEAR(answered(pace, 100, unloaded + 5s).count(), 120'000, 500) << "the longest";
        EXPECT_NEAR(pace.afterFailure().count(), 120'000, 500) << "a failure shortens nothing";
        EXPECT_LT(answered(pace, 200, unloaded / 2), 102ms) << "faster than it ever was";
    }
}

TEST(Pace, TakesHalfOfTheShortestAnswerForLoadUntilOneCameOutsideOfCatchingUp)
{
    auto pace = evenPace();
    EXPECT_NEAR(answered(pace, 200, 1s).count(), 17'500, 100);
    EXPECT_NEAR(answered(pace, 200, 400ms).count(), 7'000, 100);
    pace.noteEmpty();
    pace.afterAnswer(500ms);
    pace.afterFailure();
    EXPECT_LT(answered(pace, 200, 400ms), 102ms);
}

TEST(Pace, ChangesByATenthAfterARefusalUntilFiveMessagesGotThrough)
{
    auto pace = evenPace();
    pace.noteEmpty();
    for (int i = 0; i < 7; ++i)
        pace.afterRefusal(0s);
    auto expected = 60'000.0;
    for (int i = 0; i < 5; ++i)
        EXPECT_NEAR(pace.afterAnswer(20ms).count(), expected *= 0.9, 1);
    EXPECT_LT(pace.afterAnswer(20ms).count(), expected * 0.8);
}

TEST(Pace, SpreadsTheRestsByAFifth)
{
    std::set<milliseconds> rests;
    for (int till = 0; till < 1'000; ++till)
        rests.insert(till::Pace({1s, 1s}).afterFailure());
    EXPECT_GE(*rests.begin(), 800ms);
    EXPECT_LT(*rests.begin(), 850ms);
    EXPECT_GT(*rests.rbegin(), 1'150ms);
    EXPECT_LE(*rests.rbegin(), 1'200ms);
}

} // namespace
