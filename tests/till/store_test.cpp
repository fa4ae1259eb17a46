#include "till/core/store.h"
#include "till/core/storeschema.h"

#include <QElapsedTimer>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <thread>

using namespace Qt::StringLiterals;

namespace {

using testing::ElementsAre;
using till::ReceiptState;
using till::Report;

class StoreTest : public testing::Test
{
protected:
    QSharedPointer<AbstractDocument> receipt(int lines = 1)
    {
        auto document = store.newReceipt(place, DocumentHeader::sale);
        for (int i = 0; i < lines; ++i)
            document->addGoodsItem(u"4600"_s, u"Milk"_s, 10, 1);
        return document;
    }
    static till::QueuedMessage message()
    {
        till::QueuedMessage message;
        message.queue = till::loyaltyQueue();
        return message;
    }
    Database database() { return Database(file(), till::storeSchema()); }
    QString file() const { return till::Store::fileIn(directory.path()); }
    /// A view of the file from another process.
    std::vector<std::pair<int, ReceiptState>> onDisk()
    {
        std::vector<std::pair<int, ReceiptState>> receipts;
        const auto records = till::Store(directory.path()).list({}).value();
        for (const auto &record : records)
            receipts.emplace_back(record.header.num, record.state);
        return receipts;
    }

    const till::TillPlace place{12, 3};
    QTemporaryDir directory;
    till::Store store{directory.path()};
};

/// A store locked by another process.
class Locked
{
public:
    explicit Locked(const QString &file)
        : database(file, till::storeSchema())
    {
        EXPECT_TRUE(database.run("BEGIN IMMEDIATE"));
    }

private:
    Database database;
};

TEST_F(StoreTest, WhatTheDiskRefusesWaitsInOrderAndIsSeenAsIfStored)
{
    const auto first = receipt();
    ASSERT_TRUE(store.save(first, ReceiptState::Open));
    std::vector<int> late;
    QObject::connect(&store, &till::Store::savedLate, [&](int number) { late.push_back(number); });
    const auto second = receipt(2);
    {
        const Locked lock(file());
        QElapsedTimer timer;
        timer.start();
        EXPECT_FALSE(store.save(first, ReceiptState::Cancelled));
        EXPECT_FALSE(store.save(second, ReceiptState::Committing));
        EXPECT_FALSE(store.saveReport(second, {Report::Reported, {}, {}}, {message(), message()}));
        EXPECT_LT(timer.elapsed(), 4'000); // waits for the lock once

        EXPECT_THAT(store.unsaved(), ElementsAre(1, 2));
        EXPECT_EQ(till::Store::unsavedIn(directory.path()), 2);
        EXPECT_EQ(store.committedReceipt(2).document, second);
        EXPECT_EQ(store.deliveryState().waiting, 2);
        EXPECT_EQ(store.list({.outcome = Report::Queued})->size(), 1);
        const auto next = store.nextMessage();
        ASSERT_TRUE(next && *next);
        store.settle(**next, till::Verdict::Accepted);
        EXPECT_EQ(store.deliveryState().waiting, 1);
    }
    const auto next = store.nextMessage(); // any call saves all of it
    EXPECT_THAT(late, ElementsAre(1, 2));
    EXPECT_EQ(till::Store::unsavedIn(directory.path()), 0);
    EXPECT_THAT(onDisk(), ElementsAre(std::pair(2, ReceiptState::Committed),
                                      std::pair(1, ReceiptState::Cancelled)));
    ASSERT_TRUE(next && *next);
    store.settle(**next, till::Verdict::Accepted);
    EXPECT_FALSE(*store.nextMessage());
    EXPECT_EQ(store.list({.outcome = Report::Reported})->size(), 1);
}

TEST_F(StoreTest, AMessageInFlightFromMemoryIsSettledWhereverItIsMeanwhile)
{
    std::optional<till::QueuedMessage> inFlight;
    {
        const Locked lock(file());
        EXPECT_FALSE(store.saveReport(receipt(), {Report::Reported, {}, {}}, {message()}));
        inFlight = *store.nextMessage();
        ASSERT_TRUE(inFlight && inFlight->id < 0);
    }
    EXPECT_TRUE(store.unsaved().isEmpty());
    store.settle(*inFlight, till::Verdict::Refused, u"no"_s);
    const auto parked = store.messages(true, 9);
    ASSERT_TRUE(parked);
    EXPECT_EQ(parked->size(), 1);
    EXPECT_EQ(store.countReported(Report::Refused).value(), 1);
}

TEST_F(StoreTest, WritesOfAReceiptWhatHasChanged)
{
    const auto document = receipt(3);
    ASSERT_TRUE(store.save(document, ReceiptState::Open));
    document->changeQuantity(2, 5);
    document->addImpactDetail({3, 1, 0, 0, 1});
    document->removeGoodsItem(1);
    auto other = database();
    ASSERT_TRUE(other.run("CREATE TABLE written (number INTEGER)"));
    ASSERT_TRUE(other.run("CREATE TRIGGER note AFTER INSERT ON positions BEGIN "
                          "INSERT INTO written VALUES (NEW.number); END"));
    ASSERT_TRUE(store.save(document, ReceiptState::Open));
    document->addGoodsItem({}, {}, 1, 1);
    ASSERT_TRUE(store.save(document, ReceiptState::Open));
    ASSERT_TRUE(store.save(document, ReceiptState::Open));
    EXPECT_EQ(other.run("SELECT number FROM written")->size(),
              1); // only the changed position is written
    const auto read = store.read(store.rowsIn(ReceiptState::Open)->first());
    ASSERT_TRUE(read.document) << read.error.toStdString();
    EXPECT_EQ(read.document->getTotal(), 50 + 9 + 1);
    EXPECT_EQ(read.document->getGoodsItems().size(), 3);
}

TEST_F(StoreTest, IsSharedByThreadsThatOpenItAtOnce)
{
    std::array<std::thread, 3> threads;
    for (int cash = 1; auto &thread : threads) {
        thread = std::thread([this, register_ = till::TillPlace{12, cash++}] {
            till::Store own(directory.path());
            for (int i = 0; i < 5; ++i)
                EXPECT_TRUE(own.save(own.newReceipt(register_, 1), ReceiptState::Open));
        });
    }
    for (auto &thread : threads)
        thread.join();
    EXPECT_EQ(store.rowsIn(ReceiptState::Open)->size(), 15);
}

} // namespace
