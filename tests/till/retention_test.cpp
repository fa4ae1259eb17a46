#include "till/core/retention.h"
#include "till/core/store.h"

#include <host/config.h>

#include <QFileInfo>
#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using till::ReceiptState;
using till::Report;

/// A receipt of so many days ago, large enough to count in the file's size.
QSharedPointer<AbstractDocument> receiptOf(int number, int daysAgo)
{
    const auto begun = QDateTime::currentDateTime().addDays(-daysAgo);
    auto document =
        QSharedPointer<AbstractDocument>::create(DocumentHeader{1, 12, 3, 1, number, begun});
    for (int i = 0; i < 20; ++i)
        document->addGoodsItem(QStringLiteral("4600"), QString(200, u'x'), 1, 1);
    return document;
}

TEST(Retention, RemovesOldReceiptsThatAreDoneAFewAtATimeAndTheFileShrinks)
{
    const QTemporaryDir directory;
    till::Store store(directory.path());
    ASSERT_EQ(store.prepare(), QString());
    const auto keep = [&](int number, Report outcome, const QList<QueuedMessage> &messages) {
        till::StoredReceipt receipt{receiptOf(number, 200)};
        return store.saveCommitted(receipt, {outcome, {}, {}}, messages);
    };
    QueuedMessage waiting;
    waiting.queue = QStringLiteral("lmmindbox");
    ASSERT_TRUE(keep(1, Report::Queued, {waiting}));
    ASSERT_TRUE(keep(2, Report::Refused, {}));
    ASSERT_TRUE(keep(3, Report::Reported, {}));
    ASSERT_TRUE(store.together([&] {
        bool all =
            store.adopt(receiptOf(4, 200), ReceiptState::Open) &&
            store.adopt(receiptOf(5, 200), ReceiptState::Committing) &&
            store.adopt(receiptOf(6, till::Retention::usualDays - 1), ReceiptState::Committed);
        for (int number = 7; number < 7 + 2 * till::Retention::atOnce; ++number)
            all = all &&
                  store.adopt(receiptOf(number, 100),
                              number % 2 == 0 ? ReceiptState::Cancelled : ReceiptState::Committed);
        return all;
    }));
    const auto rows = [&store] { return store.list({})->size(); };
    const auto before = rows();
    const auto size = [&directory] {
        Database database(till::Store::fileIn(directory.path()));
        EXPECT_TRUE(database.read("PRAGMA wal_checkpoint(TRUNCATE)"));
        return QFileInfo(database.file()).size();
    };
    const auto full = size();

    till::Retention(directory.path()).step();
    EXPECT_EQ(rows(), before - till::Retention::atOnce);
    till::Retention retention(directory.path());
    retention.step();
    retention.step(); // before its time
    EXPECT_EQ(rows(), before - 2 * till::Retention::atOnce);
    till::Retention(directory.path()).step();
    till::Retention(directory.path()).step();

    std::vector<int> left;
    const auto records = store.list({});
    for (const auto &record : *records)
        left.push_back(record.header.num);
    EXPECT_THAT(left, ElementsAre(6, 5, 4, 2, 1));
    EXPECT_LT(size(), full / 2);
}

} // namespace
