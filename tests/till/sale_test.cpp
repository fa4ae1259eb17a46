#include "scriptedconsole.h"
#include "till/receiptcounter.h"
#include "till/receiptstore.h"
#include "till/core/sale.h"
#include "till/console/salecommands.h"

#include <host/abstractdocument.h>
#include <host/basicloyaltysystem.h>
#include <host/dbqueuebroker.h>
#include <host/session.h>

#include <QDir>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using Outcome = till::SaleCommands::Outcome;

/// Knows one number, and queues a message for every committed receipt.
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
        auto *const broker = Singleton<DBQueueBroker>::instance();
        broker->put(QStringLiteral("lmmindbox"), {}, {});
        betweenPuts();
        broker->put(QStringLiteral("lmmindbox"), {}, {});
        return true;
    }

    QString holder;
    std::vector<std::string> committed; ///< Number and holder.
    std::function<void()> betweenPuts = [] {};
};

/// One run of the till.
class Till
{
public:
    explicit Till(const QString &directory)
        : store(directory)
        , counter(directory + QLatin1String("/counter.json"))
    {
        EXPECT_EQ(store.prepare(), std::nullopt);
        EXPECT_EQ(counter.load(), std::nullopt);
        sale.recover();
    }

    Outcome execute(const char *line) { return commands.execute(QString::fromUtf8(line)); }
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

    ScriptedConsole scripted;
    FakeSystem system;
    till::ReceiptStore store;
    till::ReceiptCounter counter;
    till::Sale sale{{system, store, counter, scripted.console, {}}};
    till::SaleCommands commands{sale, scripted.console, {}};
};

class SaleTest : public testing::Test
{
protected:
    SaleTest() { setQueueUsable(true); }
    ~SaleTest() override { Singleton<DBQueueBroker>::instance()->setFile({}); }

    void setQueueUsable(bool usable) const
    {
        Singleton<DBQueueBroker>::instance()->setFile(
            usable ? directory.filePath(QStringLiteral("queue.db")) : directory.path());
    }
    void write(const QString &name, const QByteArray &content) const
    {
        QFile file(directory.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    QTemporaryDir directory;
};

TEST_F(SaleTest, WhatIsNotUnderstoodGetsOneLineAndChangesNothing)
{
    Till till(directory.path());
    till.execute("add 1 Milk 10.00 2");
    const auto before = till.receipt();
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
                             "add 2 Bread inf",
                             "add 2 Bread 1e3",
                             "add 2 Bread 1,5",
                             "add 2 Bread 1.005",
                             "add 2 Bread .",
                             "add 2 Bread 10000000",
                             "add 2 Bread 1 0.000",
                             "add 2 Bread 1 -1",
                             "add 2 Bread 1 1.0001",
                             "add 2 Bread 1 100000",
                             "discount 1 5",
                             "discount 1 0 7",
                             "discount 1 -5 7",
                             "discount 1 5 7.5",
                             "discount -1 5 7",
                             "discount 1 5 7 2147483648",
                             "open 3",
                             "action x",
                             "show all",
                             "card"}) {
        SCOPED_TRACE(line);
        EXPECT_EQ(till.execute(line), Outcome::NotUnderstood);
        const auto shown = till.shown();
        EXPECT_EQ(std::count(shown.begin(), shown.end(), '\n'), 1) << shown;
        EXPECT_EQ(till.receipt(), before);
    }
}

TEST_F(SaleTest, ARefusedStepIsUnderstoodAndChangesNothing)
{
    Till till(directory.path());
    till.execute({"commit", "open", "commit", "add 1 Milk 10.00 2"});
    const auto before = till.receipt();
    for (const auto *line : {"discount 1 20.01 7", "discount 2 1.00 7", "open", "shift",
                             "add 2 Gold 9999999.99 101", "# a comment", "  "}) {
        EXPECT_EQ(till.execute(line), Outcome::Understood) << line;
        EXPECT_EQ(till.receipt(), before) << line;
    }
    EXPECT_TRUE(till.system.committed.empty());
}

TEST_F(SaleTest, AKilledTillFindsTheOpenReceiptWithItsHolder)
{
    std::string before;
    {
        Till till(directory.path());
        till.execute({"add 1 \"Fresh milk\" 10.00 2", "discount 1 5 7 6 0", "card 8 916 1"});
        before = till.receipt();
    }
    Till till(directory.path());
    EXPECT_THAT(till.shown(), HasSubstr("open again: 1 positions, total 15.00"));
    EXPECT_EQ(till.receipt(), before);
    till.execute({"commit", "add 2 Bread 1"});
    EXPECT_THAT(till.system.committed, ElementsAre("1Anna"));
    EXPECT_THAT(till.receipt(), HasSubstr("Sale 2"));
}

TEST_F(SaleTest, AFailedIdentificationLeavesNoCardAndNoHolder)
{
    Till till(directory.path());
    till.execute({"add 1 Milk 10.00", "card 8 916 1", "card 8 916 2"});
    EXPECT_THAT(till.shown(), HasSubstr("not confirmed"));
    EXPECT_THAT(till.receipt(), HasSubstr("No card."));
    till.execute("commit");
    EXPECT_THAT(till.system.committed, ElementsAre("1"));
}

TEST_F(SaleTest, AnInterruptedCommitIsCommittedAgainAndADamagedFileIsKeptAside)
{
    {
        Till till(directory.path());
        till.execute({"add 1 Milk 10.00", "card 8 916 1"});
        const auto document = Singleton<Session>::instance()->getCurrentDocument();
        ASSERT_EQ(till.store.beginCommit(till::ReceiptStore::nameOf(*document)), std::nullopt);
    }
    write(QStringLiteral("committing/a.json"), "");
    write(QStringLiteral("committing/b.json"), R"({"format":"till-receipt","version":2})");
    write(QStringLiteral("open.json"), "{\"half\":");
    Till till(directory.path());
    EXPECT_THAT(till.shown(),
                AllOf(HasSubstr("damaged/a.1.json"), HasSubstr("damaged/open.1.json")));
    EXPECT_THAT(till.system.committed, ElementsAre("1Anna"));
    EXPECT_EQ(till.store.committing(), QStringList(QStringLiteral("b"))); // a newer one stays
    EXPECT_EQ(QDir(directory.filePath(QStringLiteral("damaged"))).count(), 4U);
    EXPECT_EQ(till.store.highestNumbers().second, 1);
}

TEST_F(SaleTest, AReceiptThatTheQueueCannotTakeIsReportedAtTheNextCommitAndAtTheNextStart)
{
    {
        Till till(directory.path());
        setQueueUsable(false);
        till.execute({"add 1 Milk 10.00", "card 8 916 1", "commit"});
        EXPECT_THAT(till.shown(), HasSubstr("Receipt 1 is kept"));
        EXPECT_EQ(till.store.committing().size(), 1);
        setQueueUsable(true);
        till.execute({"add 2 Bread 5.00", "commit"});
        EXPECT_THAT(till.system.committed, ElementsAre("1Anna", "2", "1Anna"));
        EXPECT_EQ(till.store.committing().size(), 0);
        setQueueUsable(false);
        till.execute({"add 2 Bread 5.00", "commit"});
    }
    setQueueUsable(true);
    Till till(directory.path());
    EXPECT_THAT(till.system.committed, ElementsAre("3"));
    EXPECT_EQ(till.store.committing().size(), 0);

    // No message of a receipt is queued without the others, even if the queue takes only some.
    setQueueUsable(false);
    till.system.betweenPuts = [this] { setQueueUsable(true); };
    till.execute({"add 2 Bread 5.00", "commit"});
    const auto state = Singleton<DBQueueBroker>::instance()->state(QStringLiteral("lmmindbox"));
    EXPECT_EQ(state->waiting % 2, 0);
}

TEST_F(SaleTest, AReceiptThatCannotBeMovedIsNotOverwrittenAndTheSaleGoesOn)
{
    Till till(directory.path());
    const QDir data(directory.path());
    const auto obstacles = {QStringLiteral("committing"), QStringLiteral("committed")};
    for (const auto &name : obstacles) {
        data.rmdir(name);
        write(name, "");
    }
    till.execute({"add 1 Milk 10.00", "commit", "add 2 Bread 5.00"});
    EXPECT_THAT(till.system.committed, ElementsAre("1"));
    EXPECT_THAT(till.shown(), HasSubstr("[not saved]"));
    QString error;
    EXPECT_EQ(till.store.load(till.store.openFile(), error)->getHeader().num, 1);

    // The second one is then nowhere but in memory, committed or not.
    till.execute("commit");
    EXPECT_EQ(till.execute("quit"), Outcome::Understood);
    EXPECT_THAT(till.shown(), HasSubstr("Only in memory: receipt 2."));
    for (const auto &name : obstacles)
        QFile::remove(directory.filePath(name));
    till.execute("add 3 Tea 5.00");
    EXPECT_EQ(till.store.load(till.store.openFile(), error)->getHeader().num, 3);
    EXPECT_EQ(till.store.highestNumbers().second, 2);
    EXPECT_EQ(till.execute("quit"), Outcome::Quit);
}

TEST_F(SaleTest, AReceiptThatIsCommittedDoesNotComeBackOpen)
{
    {
        Till till(directory.path());
        till.execute("add 1 Milk 10.00");
        QFile::copy(till.store.openFile(), directory.filePath(QStringLiteral("copy")));
        till.execute("commit");
        QFile::rename(directory.filePath(QStringLiteral("copy")), till.store.openFile());
    }
    Till till(directory.path());
    EXPECT_THAT(till.shown(), HasSubstr("receipt 1 is committed already; it is kept as"));
    EXPECT_FALSE(till.store.hasOpenReceipt());
}

TEST_F(SaleTest, ADamagedCounterIsNotTakenForANewOne)
{
    for (const auto *content : {"", "[1]", R"({"shift":0,"number":1})", R"({"shift":1})"}) {
        write(QStringLiteral("counter.json"), content);
        till::ReceiptCounter counter(directory.filePath(QStringLiteral("counter.json")));
        EXPECT_NE(counter.load(), std::nullopt) << content;
    }
}

} // namespace
