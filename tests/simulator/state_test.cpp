#include "tests/simulator/till.h"

#include <QFile>
#include <QTemporaryDir>

#include <sys/resource.h>

#include <array>
#include <csignal>
#include <utility>

namespace simulatortest {

TEST(State, OutlivesTheProcessAndBelongsToOneSimulator)
{
    const QTemporaryDir directory;
    const auto file = directory.filePath(u"state"_s);
    const simulator::Options options{.stateFile = file};
    const auto number = uR"("mobilePhone":"79161234567")"_s;
    QJsonArray orders;
    {
        Simulator service(options);
        ASSERT_TRUE(service.start());
        Till till(service);
        till.call(u"RegisterCustomer"_s, customerBody(number + data + u',' + email));
        till.call(create, orderBody(20, number));
        till.call(create, orderBody(10, phone, 5));
        till.call(change, statusBody);
        orders = service.orders();
        Simulator second(options);
        const auto refused = second.start();
        ASSERT_FALSE(refused);
        EXPECT_TRUE(refused.error().contains("another simulator"_L1));
        // As after a kill: the file is complete although nothing was closed.
        ASSERT_TRUE(QFile::copy(file, file + u'2'));
    }
    for (const auto &name : {file, file + u'2'}) {
        EXPECT_FALSE(QFile::permissions(name) & (QFile::ReadGroup | QFile::ReadOther));
        Simulator service({.stateFile = name});
        ASSERT_TRUE(service.start());
        EXPECT_EQ(service.orders(), orders);
        EXPECT_EQ(orders[1]["lines"_L1][0]["status"_L1].toString(), "Paid"_L1);
        EXPECT_EQ(lastCode(service, u"79161234567"_s).size(), 4);
        Till till(service);
        till.call(u"EmailConfirmationLetter"_s, customerBody(email));
        EXPECT_EQ(service.dump()["letters"_L1].toArray().size(), 1);
        till.client.Post("/simulator/reset");
        EXPECT_EQ(service.orders(), QJsonArray());
        EXPECT_EQ(till.outcome(get, customerBody(number)), "NotFound"_L1);
    }
}

struct StateFile : testing::Test
{
    QString write(const QByteArray &lines)
    {
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(lines) == lines.size());
        file.close();
        Simulator service({.stateFile = file.fileName()});
        const auto started = service.start();
        return started ? u"orders: %1"_s.arg(service.orders().size()) : started.error();
    }
    QByteArray content()
    {
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        const auto found = file.readAll();
        file.close();
        return found;
    }

    const QTemporaryDir directory;
    QFile file{directory.filePath(u"state"_s)};
};

const QByteArray head = R"({"simulator":"state","version":1})"
                        "\n";
const QByteArray accepted = R"([["orders","till=1",{"totalPrice":1}]])"
                            "\n";

TEST_F(StateFile, NamesALineThatCannotBeReadAndLeavesTheFileAlone)
{
    const auto cases = std::to_array<std::pair<QByteArray, QLatin1String>>(
        {{"[Settings]\n", "line 1"_L1},
         {"secret", "line 1"_L1},
         {head + accepted + "[[\"orders\",7,{}]]\n" + accepted, "line 3"_L1},
         {head + "\n", "line 2"_L1}});
    for (const auto &[lines, named] : cases) {
        const auto told = write(lines);
        EXPECT_TRUE(told.contains(named) && told.contains(file.fileName())) << qPrintable(told);
        EXPECT_EQ(content(), lines);
    }
}

TEST_F(StateFile, LeavesOutAndTellsALastLineThatAKillCutShort)
{
    testing::internal::CaptureStderr();
    EXPECT_EQ(write(head + accepted + accepted.chopped(9)), "orders: 1"_L1);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("line 3"), std::string::npos);
    EXPECT_EQ(content(), head + accepted);
}

TEST_F(StateFile, WhatTheDiskRefusesIsNeitherHeldNorAnsweredAsDone)
{
    Simulator service({.stateFile = file.fileName()});
    ASSERT_TRUE(service.start());
    Till till(service);
    EXPECT_EQ(till.outcome(create, orderBody(20)), "Processed"_L1);
    const auto before = QFile(file.fileName()).size();
    rlimit usual{};
    getrlimit(RLIMIT_FSIZE, &usual);
    const rlimit narrow{.rlim_cur = rlim_t(before) + 30, .rlim_max = usual.rlim_max};
    std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &narrow);
    const auto refused = till.post(create, orderBody(20, phone, 43));
    setrlimit(RLIMIT_FSIZE, &usual);
    EXPECT_EQ(refused->status, 500);
    EXPECT_EQ(service.orders().size(), 1);
    EXPECT_EQ(till.outcome(create, orderBody(20, phone, 44)), "Processed"_L1);
    EXPECT_TRUE(QFile(file.fileName()).copy(directory.filePath(u"copy"_s)));
    Simulator other({.stateFile = directory.filePath(u"copy"_s)});
    EXPECT_TRUE(other.start());
    EXPECT_EQ(other.orders(), service.orders());
}

} // namespace simulatortest
