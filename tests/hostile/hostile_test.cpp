#include "interface/interface.h"
#include "simulator/simulator.h"
#include "tests/support/wireserver.h"

#include <host/config.h>
#include <host/restclient.h>
#include <host/serviceavailability.h>

#include <QElapsedTimer>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QUrlQuery>

#include <gtest/gtest.h>

#include <cstdlib>
#include <sys/resource.h>
#include <thread>

namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using lmmindbox::Interface;

const auto url = u"LmMindbox:url"_s;
const auto secretKey = u"LmMindbox:secretKey"_s;
const auto endpoint = u"LmMindbox:endpoint"_s;
const auto knownPhone = u"79160000001"_s;

void set(const QString &key, const QString &value)
{
    Singleton<Config>::instance()->set(key, value);
}

class Hostile : public testing::Test
{
protected:
    Hostile()
    {
        set(endpoint, options.endpoint);
        set(secretKey, options.secretKey);
        set(u"LmMindbox:timeout"_s, u"60"_s);
    }
    ~Hostile() override { Singleton<Config>::instance()->clear(); }

    void start()
    {
        service = std::make_unique<simulator::Simulator>(options);
        ASSERT_TRUE(service->start());
        set(url, service->url());
    }

    simulator::Options options;
    std::unique_ptr<simulator::Simulator> service;
};

TEST_F(Hostile, AnswersOfAnySizeAndDepthEndCleanlyInBoundedTimeAndMemory)
{
    constexpr qsizetype limit = RestClient::maximumAnswerSize;
    const QByteArray found = R"("customer":{"processingStatus":"Found"},"status":"Success"})";
    const auto nested =
        R"("a":)" + QByteArray(R"({"a":)").repeated(100'000) + '1' + QByteArray(100'000, '}') + ',';
    QByteArray members;
    for (int i = 0; i < 1'000'000; ++i)
        members += "\"k" + QByteArray::number(i) + "\":1,";
    enum Outcome { Read, Unusable, NoAnswer };
    const std::pair<QByteArray, Outcome> cases[] = {
        {'{' + nested + found, Unusable},
        {R"({"a":)" + QByteArray(100'000, '[') + QByteArray(100'000, ']') + ',' + found, Unusable},
        {R"({"a":")" + QByteArray(limit - 1000, 'x') + R"(",)" + found, Read},
        {R"({"a":")" + QByteArray(limit, 'x') + R"(",)" + found, NoAnswer},
        {'{' + members + found, Read},
        {'{' + QByteArray(R"("a":1,)").repeated(1'000'000) + found, Read},
    };
    for (const auto &[answer, outcome] : cases) {
        SCOPED_TRACE(answer.left(40).constData());
        const WireServer server({{okReply(answer)}});
        set(url, u"http://127.0.0.1:%1/"_s.arg(server.port));
        QElapsedTimer timer;
        timer.start();
        const auto result = Interface().getCustomer(knownPhone);
        EXPECT_LT(timer.elapsed(), 30'000);
        EXPECT_EQ(result.success(), outcome == Read);
        EXPECT_EQ(result.noConnection, outcome == NoAnswer);
    }
    struct rusage usage = {};
    ASSERT_EQ(::getrusage(RUSAGE_SELF, &usage), 0);
    EXPECT_LT(usage.ru_maxrss, 1'500'000) << "kilobytes, the answers themselves included";
}

TEST_F(Hostile, NothingTypedOrConfiguredAddsToARequest)
{
    const auto breaks = u"a\r\nX-Injected: 1&b=c#d\""_s;
    const WireServer server({{okReply("{}")}});
    set(url, u"http://127.0.0.1:%1/"_s.arg(server.port));
    set(endpoint, breaks);
    set(u"LmMindbox:pointOfContact"_s, breaks);
    Interface().confirmMobilePhone(breaks, breaks);
    const auto arrived = server.received();
    const auto end = arrived.indexOf("\r\n\r\n");
    const QUrlQuery query(QUrl::fromEncoded(arrived.split(' ').value(1).replace('+', "%20")));
    EXPECT_EQ(query.queryItemValue(u"endpointId"_s, QUrl::FullyDecoded), breaks);
    EXPECT_EQ(query.queryItems().size(), 2);
    EXPECT_FALSE(arrived.left(end).toLower().contains("\nx-injected"));
    const auto body = QJsonDocument::fromJson(arrived.mid(end + 4));
    EXPECT_EQ(body["pointOfContact"_L1], breaks);
    EXPECT_EQ(body["customer"_L1]["mobilePhone"_L1], breaks);
    EXPECT_EQ(body["smsConfirmation"_L1]["code"_L1], breaks);
}

/// Creates authority.pem, and NAME.pem with NAME.key for each kind of certificate.
constexpr auto makeCertificates = R"(cd "%1" && exec >log 2>&1 && set -ex
new='openssl req -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -subj /CN=service'
own='subjectAltName=IP:127.0.0.1'
$new -x509 -keyout authority.key -out authority.pem -days 2
$new -x509 -keyout selfsigned.key -out selfsigned.pem -days 2 -addext "$own"
sign() {
    $new -keyout $1.key -out request.pem -addext "$3"
    openssl x509 -req -in request.pem -CA authority.pem -CAkey authority.key -CAcreateserial \
        -copy_extensions copy -days $2 -out $1.pem
}
sign good 2 "$own"
sign elsewhere 2 subjectAltName=DNS:service.example
# Newer versions refuse an end before the beginning, so let one pass.
sign expired 0 "$own"
sleep 1)";

TEST_F(Hostile, OnlyAValidCertificateOfATrustedAuthorityIsTalkedTo)
{
    const QTemporaryDir directory;
    const auto script = QString::fromLatin1(makeCertificates).arg(directory.path());
    ASSERT_EQ(std::system(qPrintable(script)), 0);
    const auto authority = directory.filePath(u"authority.pem"_s);
    // A null name is a service without TLS.
    const std::tuple<QString, QString, bool> cases[] = {
        {u"good"_s, {}, false},
        {u"expired"_s, authority, false},
        {u"elsewhere"_s, authority, false},
        {u"selfsigned"_s, authority, false},
        {{}, authority, false},
        {u"good"_s, authority, true},
    };
    options.keepAlive = 1s;
    for (const auto &[name, trusted, isAccepted] : cases) {
        SCOPED_TRACE(qPrintable(name));
        Singleton<ServiceAvailability>::instance()->clear();
        const auto base = directory.filePath(name);
        options.certificateFile = name.isNull() ? name : base + ".pem"_L1;
        options.privateKeyFile = name.isNull() ? name : base + ".key"_L1;
        start();
        set(url, u"https://127.0.0.1:%1/v3/operations/sync"_s.arg(service->port()));
        set(u"Http:caFile"_s, trusted);
        const auto result = Interface().getCustomer(knownPhone);
        EXPECT_EQ(result.success(), isAccepted);
        EXPECT_EQ(result.noConnection, !isAccepted);
        EXPECT_EQ(service->dump()["requests"_L1].toObject().isEmpty(), !isAccepted);
    }
    // The TLS record at the end of an idle connection hides that end.
    Interface client;
    EXPECT_TRUE(client.getCustomer(knownPhone).success());
    std::this_thread::sleep_for(1500ms);
    for (auto i = 0; i < 2; ++i)
        EXPECT_TRUE(client.getCustomer(knownPhone).success());
}

} // namespace
