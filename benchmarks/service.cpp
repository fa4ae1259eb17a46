#include "benchmarks/service.h"

#include "interface/interface.h"
#include "tests/support/fakehttp.h"

#include <host/config.h>
#include <host/logging.h>
#include <host/serviceavailability.h>

#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QJsonArray>
#include <QNetworkReply>
#include <QRegularExpression>

#include <algorithm>
#include <csignal>
#include <memory>
#include <sys/prctl.h>

using namespace Qt::StringLiterals;

namespace bench {

namespace {

constexpr auto path = "/v3/operations/sync";

} // namespace

SentRequest record(const std::function<void(lmmindbox::Interface &)> &operation)
{
    const FakeRestClient client;
    lmmindbox::Interface interface;
    operation(interface);
    return {client.sentUrl.toEncoded(),
            QJsonDocument(client.sentBody).toJson(QJsonDocument::Compact), client.sentHeaders};
}

QByteArray UsualExchange::answerTo(const SentRequest &request)
{
    QNetworkRequest head(QUrl::fromEncoded(request.url));
    for (auto header = request.headers.cbegin(); header != request.headers.cend(); ++header)
        head.setRawHeader(header.key().toUtf8(), header.value().toUtf8());
    const std::unique_ptr<QNetworkReply> reply(
        request.body.isNull() ? manager.get(head) : manager.post(head, request.body));
    QEventLoop loop;
    QObject::connect(reply.get(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
    loop.exec();
    return reply->readAll();
}

Service::Service()
    : directory(QDir::current().filePath(u"bench-XXXXXX"_s))
{
    // The simulator must end even when the benchmark crashes.
    simulator.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGTERM); });
    simulator.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    simulator.start(QStringLiteral(SIMULATOR_FILE), {});
    static const QRegularExpression address(u"http://[0-9.:]+"_s);
    if (!logging::start(newFile(), false) || !simulator.waitForReadyRead())
        return;
    url = address.match(QString::fromUtf8(simulator.readAll())).captured().toLatin1();
    simulator.closeReadChannel(QProcess::StandardOutput);
    (void)Singleton<Config>::instance()->load(newSettingsFile());
    setReachable(true);
}

Service::~Service()
{
    logging::stop();
    simulator.terminate();
    simulator.waitForFinished();
}

QString Service::newFile() const
{
    static int number = 0;
    return directory.filePath(QString::number(++number));
}

QString Service::newSettingsFile() const
{
    QFile file(newFile());
    const auto isOpen = file.open(QIODevice::WriteOnly) &&
                        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    file.write("LmMindbox:url=" + url + path +
               "\nLmMindbox:endpoint=till-demo\nLmMindbox:secretKey=demo-secret\n"
               "Till:shopCode=12\nTill:cashCode=3\nTill:plugin=" PLUGIN_FILE "\n");
    return isOpen ? file.fileName() : QString();
}

int Service::countSettledOrders() const
{
    const auto dump =
        QJsonDocument::fromJson(UsualExchange().answerTo({url + "/simulator/dump", {}}));
    return static_cast<int>(
        std::ranges::count_if(dump["orders"_L1].toArray(), [](const auto &order) {
            return order["statusChanges"_L1].toInt() == 1;
        }));
}

void Service::reset() const
{
    UsualExchange().answerTo({url + "/simulator/reset", "{}"});
}

void Service::setReachable(bool isReachable) const
{
    Singleton<Config>::instance()->set(
        u"LmMindbox:url"_s,
        QString::fromLatin1((isReachable ? url : QByteArray("http://127.0.0.1:1")) + path));
    Singleton<ServiceAvailability>::instance()->clear();
}

} // namespace bench
