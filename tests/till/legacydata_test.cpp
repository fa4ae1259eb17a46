#include "till/core/deliverer.h"
#include "till/core/legacydata.h"
#include "till/core/store.h"

#include <host/abstractdocument.h>
#include <host/dbqueuebroker.h>
#include <host/documentjson.h>

#include <QDir>
#include <QJsonDocument>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using till::ReceiptState;

constexpr till::TillPlace place{12, 3};

/// A data directory as the first version has left it.
class LegacyData : public testing::Test
{
protected:
    LegacyData()
    {
        writeReceipt("committed/a.json", 1);
        writeReceipt("committed/b.json", 2);
        write("committed/broken.json", "{\"format\":");
        writeReceipt("committing/c.json", 3);
        writeReceipt("open.json", 4);
        write("counter.json", R"({"shift": 7, "number": 41})");
        write("open.json.backup", "of the user");
        makeQueue();
    }

    QString path(const char *name) const { return directory.filePath(QString::fromLatin1(name)); }
    bool exists(const char *name) const { return QFileInfo::exists(path(name)); }

    void write(const char *name, const QByteArray &content) const
    {
        QDir().mkpath(QFileInfo(path(name)).path());
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    void writeReceipt(const char *name, int number) const
    {
        const QDateTime begun(QDate(2026, 11, 20), QTime(10, 0, number));
        AbstractDocument document({1, place.shopCode, place.cashCode, 7, number, begun});
        document.addGoodsItem(QStringLiteral("4600"), QStringLiteral("Milk"), 2, number);
        QString error;
        write(name, QJsonDocument(documentjson::toJson(document, error)).toJson());
    }

    /// Two messages, one of them parked.
    void makeQueue() const
    {
        QFile script(QStringLiteral(VERSION1_SQL));
        ASSERT_TRUE(script.open(QIODevice::ReadOnly));
        const auto statements =
            QString::fromUtf8(script.readAll()).split(QStringLiteral(";\n"), Qt::SkipEmptyParts);
        {
            auto database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
            database.setDatabaseName(path("queue.db"));
            ASSERT_TRUE(database.open());
            QSqlQuery query(database);
            for (const auto &statement : statements)
                query.exec(statement);
        }
        QSqlDatabase::removeDatabase(connection);
    }

    QString adopt(till::Store &store) const
    {
        return till::legacydata::adoptReceipts(directory.path(), store, place);
    }

    static std::vector<int> numbersIn(till::Store &store, ReceiptState state)
    {
        std::vector<int> numbers;
        for (const auto &receipt : store.receiptsIn(state, 100))
            numbers.push_back(receipt.document->getHeader().num);
        return numbers;
    }

    QTemporaryDir directory;
    const QString connection = QStringLiteral("legacy");
};

TEST_F(LegacyData, ComesIntoTheStoreAsAWholeAndOnce)
{
    ASSERT_EQ(till::legacydata::adoptQueue(directory.path()), std::nullopt);
    EXPECT_FALSE(exists("queue.db"));
    DBQueueBroker broker(till::Store::fileIn(directory.path()));
    const auto first = broker.first(till::loyaltyQueue());
    ASSERT_TRUE(first) << broker.lastError().toStdString();
    EXPECT_EQ(first->tries, 3);
    EXPECT_EQ(broker.parked(till::loyaltyQueue()).size(), 1);

    till::Store store(directory.path());
    const auto note = adopt(store).toStdString();
    EXPECT_THAT(note, HasSubstr("broken.json"));
    EXPECT_THAT(note, HasSubstr("damaged/broken.json"));
    // As if the first try had been killed before it removed the files.
    writeReceipt("committing/c.json", 3);
    writeReceipt("committed/e.json", 5);
    EXPECT_EQ(adopt(store), QString());

    EXPECT_THAT(numbersIn(store, ReceiptState::Committed), ElementsAre(1, 2, 5));
    EXPECT_THAT(numbersIn(store, ReceiptState::Committing), ElementsAre(3));
    EXPECT_THAT(numbersIn(store, ReceiptState::Open), ElementsAre(4));
    EXPECT_EQ(store.open(place, 1).document->getHeader().num, 42);
    EXPECT_EQ(store.shift(place), 7);
    EXPECT_EQ(
        Database(till::Store::fileIn(directory.path())).read("PRAGMA auto_vacuum")->first().first(),
        2);
    EXPECT_THAT(QDir(directory.path())
                    .entryList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name),
                ElementsAre(QStringLiteral("damaged"), QStringLiteral("numbers"),
                            QStringLiteral("open.json.backup"), QStringLiteral("till.db"),
                            QStringLiteral("till.db-shm"), QStringLiteral("till.db-wal")));
}

TEST_F(LegacyData, StaysInItsFilesWhileTheStoreCannotTakeIt)
{
    till::Store store(directory.path());
    ASSERT_EQ(store.prepare(), QString());
    Database holder(till::Store::fileIn(directory.path()));
    {
        const Transaction lock(holder);
        ASSERT_TRUE(lock.begun());
        EXPECT_THAT(adopt(store).toStdString(), HasSubstr("locked"));
    }
    EXPECT_TRUE(exists("open.json") && exists("committed/a.json") && exists("counter.json"));
    EXPECT_THAT(adopt(store).toStdString(), HasSubstr("damaged/broken.json"));
    EXPECT_THAT(numbersIn(store, ReceiptState::Open), ElementsAre(4));
}

TEST_F(LegacyData, KeepsTheQueueThatAnOlderTillStillUses)
{
    {
        Database older(path("queue.db"));
        ASSERT_TRUE(older.write("UPDATE messages SET tries = 4 WHERE id = 1"));
        EXPECT_THAT(
            till::legacydata::adoptQueue(directory.path()).value_or(QString()).toStdString(),
            HasSubstr("still at work"));
        EXPECT_FALSE(exists("till.db"));
    }
    EXPECT_EQ(till::legacydata::adoptQueue(directory.path()), std::nullopt);
    EXPECT_TRUE(exists("till.db"));
}

} // namespace
