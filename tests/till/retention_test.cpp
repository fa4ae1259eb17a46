#include "deliveryfixture.h"
#include "till/core/retention.h"
#include "till/core/settingtable.h"
#include "till/core/store.h"
#include "till/core/storeschema.h"

#include <host/config.h>

#include <QFileInfo>
#include <QTemporaryDir>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

using namespace std::chrono_literals;
using till::ReceiptState;
using till::Report;

TEST(Retention, RemovesOldReceiptsThatAreDoneAFewAtATimeAndTheFileShrinks)
{
    const QTemporaryDir directory;
    FakeClock clock;
    till::Store store(directory.path());
    ASSERT_TRUE(store.prepare());
    const auto receipt = [&] {
        auto document = store.newReceipt({}, DocumentHeader::sale);
        for (int i = 0; i < 20; ++i)
            document->addGoodsItem(u"4600"_s, QString(200, u'x'), 1, 1);
        return document;
    };
    till::QueuedMessage waiting;
    waiting.queue = till::loyaltyQueue();
    ASSERT_TRUE(store.saveReport(receipt(), {Report::Reported, {}, {}}, {waiting}));
    ASSERT_TRUE(store.saveReport(receipt(), {Report::Refused, {}, {}}, {}));
    ASSERT_TRUE(store.save(receipt(), ReceiptState::Open));
    ASSERT_TRUE(store.save(receipt(), ReceiptState::Committing));
    for (int number = 0; number < 2 * till::Retention::atOnce; ++number)
        ASSERT_TRUE(number % 2 == 0 ? store.save(receipt(), ReceiptState::Cancelled)
                                    : store.saveReport(receipt(), {Report::Reported, {}, {}}, {}));
    const auto rows = [&store] { return store.list({})->size(); };
    const auto size = [&directory] {
        Database database(till::Store::fileIn(directory.path()), till::storeSchema());
        EXPECT_TRUE(database.run("PRAGMA wal_checkpoint(TRUNCATE)"));
        return QFileInfo(database.file()).size();
    };
    const auto before = rows();
    const auto full = size();

    // A clock that was years ahead for one day does not count.
    clock.jump(24h * 3650);
    ASSERT_TRUE(store.saveReport(receipt(), {Report::Reported, {}, {}}, {}));
    till::Retention retention(store);
    retention.step();
    EXPECT_EQ(rows(), before + 1);

    clock.jump(-24h * 3650);
    clock.pass(24h * (till::settingNumber("Till:keepDays"_L1) + 1));
    for (int day = 0; day < 3; ++day) {
        clock.pass(24h);
        ASSERT_TRUE(store.saveReport(receipt(), {Report::Reported, {}, {}}, {}));
    }
    retention.step();
    EXPECT_EQ(rows(), before + 4 - till::Retention::atOnce);
    retention.step(); // too early
    EXPECT_EQ(rows(), before + 4 - till::Retention::atOnce);
    for (int i = 0; i < 3; ++i) {
        clock.pass(till::Retention::pause);
        retention.step();
    }
    EXPECT_EQ(rows(), before + 4 - 2 * till::Retention::atOnce);
    EXPECT_EQ(store.list({})->constLast().header.num, 1);
    EXPECT_LT(size(), full / 2);
}

} // namespace
