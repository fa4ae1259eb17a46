#include "tests/simulator/till.h"

#include <QFile>
#include <QTemporaryDir>

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
        ASSERT_TRUE(service.start()) << qPrintable(service.errorString());
        Till till(service);
        till.call(u"RegisterCustomer"_s, customerBody(number + data + u',' + email));
        till.call(create, orderBody(20, number));
        till.call(create, orderBody(10, phone, 5));
        till.call(change, statusBody);
        orders = service.orders();
        Simulator second(options);
        EXPECT_FALSE(second.start());
        EXPECT_TRUE(second.errorString().contains("another simulator"_L1));
        // What a kill leaves: everything is there although nothing was closed.
        for (const auto *const suffix : {"", "-wal"})
            ASSERT_TRUE(
                QFile::copy(file + QLatin1String(suffix), file + u"2"_s + QLatin1String(suffix)));
    }
    for (const auto &name : {file, file + u'2'}) {
        EXPECT_FALSE(QFile::permissions(name) & (QFile::ReadGroup | QFile::ReadOther));
        Simulator service({.stateFile = name});
        ASSERT_TRUE(service.start()) << qPrintable(service.errorString());
        EXPECT_EQ(service.orders(), orders);
        EXPECT_EQ(orders[0]["lines"_L1][0]["status"_L1].toString(), "Paid"_L1);
        EXPECT_EQ(lastCode(service, u"79161234567"_s).size(), 4);
        Till till(service);
        till.call(u"EmailConfirmationLetter"_s, customerBody(email));
        EXPECT_EQ(service.dump()["letters"_L1].toArray().size(), 1);
        till.client.Post("/simulator/reset");
        EXPECT_EQ(service.orders(), QJsonArray());
        EXPECT_EQ(till.outcome(get, customerBody(number)), "NotFound"_L1);
    }
}

TEST(State, AForeignFileIsLeftAlone)
{
    const QTemporaryDir directory;
    QFile file(directory.filePath(u"state"_s));
    for (const QByteArray foreign : {"[Settings]\n", "secret"}) {
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(foreign) > 0);
        file.close();
        EXPECT_FALSE(Simulator({.stateFile = file.fileName()}).start());
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_EQ(file.readAll(), foreign);
        file.close();
    }
}

} // namespace simulatortest
