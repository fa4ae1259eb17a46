#include "benchmarks/setup.h"

#include <host/abstractdocument.h>
#include <host/basicloyaltysystem.h>
#include <host/dbqueuebroker.h>
#include <host/logging.h>
#include <host/serviceavailability.h>
#include <host/session.h>

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QThread>

#include <algorithm>
#include <csignal>
#include <sys/prctl.h>

namespace bench {

namespace {

const auto urlSetting = QStringLiteral("LmMindbox:url");

/// The port that the simulator has written; 0 when it does not come.
int waitForPort(const QString &fileName)
{
    constexpr int tries = 500;
    for (int i = 0; i < tries; ++i) {
        QFile file(fileName);
        if (file.open(QIODevice::ReadOnly))
            return file.readAll().trimmed().toInt();
        QThread::msleep(20);
    }
    return 0;
}

} // namespace

Setup::Setup(bool quick)
    : quick(quick)
    , directory(QDir::current().filePath(QStringLiteral("bench-XXXXXX")))
{
    if (const auto problem = logging::start(newFile(), false)) {
        error = *problem;
        return;
    }
    const auto portFile = newFile();
    simulator.setStandardOutputFile(QProcess::nullDevice());
    simulator.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    // A benchmark that crashes must not leave a server behind.
    simulator.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGTERM); });
    simulator.start(QStringLiteral(SIMULATOR_FILE), {QStringLiteral("--port-file"), portFile});
    const auto port = simulator.waitForStarted() ? waitForPort(portFile) : 0;
    if (port == 0) {
        error = QStringLiteral("%1: the simulator does not start").arg(simulator.program());
        return;
    }
    simulatorUrl = "http://127.0.0.1:" + QByteArray::number(port);
    auto *const config = Singleton<Config>::instance();
    config->set(urlSetting, QString::fromLatin1(simulatorUrl + "/v3/operations/sync"));
    config->set(QStringLiteral("LmMindbox:endpoint"), QStringLiteral("till-demo"));
    config->set(QStringLiteral("LmMindbox:secretKey"), QStringLiteral("demo-secret"));
    Singleton<DBQueueBroker>::instance()->setFile(newFile());
}

Setup::~Setup()
{
    Singleton<DBQueueBroker>::instance()->setFile({});
    logging::stop();
    simulator.terminate();
    simulator.waitForFinished();
}

QString Setup::newFile() const
{
    static int number = 0;
    return directory.filePath(QString::number(++number));
}

QString Setup::newSettingsFile() const
{
    QFile file(newFile());
    const auto text = QStringLiteral("%1=%2/v3/operations/sync\nLmMindbox:endpoint=till-demo\n"
                                     "LmMindbox:secretKey=demo-secret\nTill:plugin=%3\n")
                          .arg(urlSetting, QLatin1String(simulatorUrl), QLatin1String(PLUGIN_FILE));
    return file.open(QIODevice::WriteOnly) && file.write(text.toUtf8()) > 0 &&
                   file.setPermissions(QFile::ReadOwner | QFile::WriteOwner)
               ? file.fileName()
               : QString();
}

QJsonObject Setup::dump()
{
    return QJsonDocument::fromJson(BareExchange().get(simulatorUrl + "/simulator/dump")).object();
}

int Setup::countSettledOrders()
{
    const auto orders = dump().value(QLatin1String("orders")).toArray();
    return static_cast<int>(std::ranges::count_if(orders, [](const auto &order) {
        return order[QLatin1String("statusChanges")].toInt() == 1;
    }));
}

void Setup::resetSimulator()
{
    BareExchange().post({simulatorUrl + "/simulator/reset", {}});
}

void Setup::delayAnswers(int milliseconds)
{
    const auto fault = QStringLiteral(R"({"kind":"delay","count":0,"milliseconds":%1})");
    BareExchange().post({simulatorUrl + "/simulator/faults", fault.arg(milliseconds).toUtf8()});
}

ServiceElsewhere::ServiceElsewhere(int port)
    : before(*Singleton<Config>::instance())
{
    Singleton<Config>::instance()->set(
        urlSetting, QStringLiteral("http://127.0.0.1:%1/v3/operations/sync").arg(port));
    Singleton<ServiceAvailability>::instance()->clear();
}

ServiceElsewhere::~ServiceElsewhere()
{
    *Singleton<Config>::instance() = before;
    Singleton<ServiceAvailability>::instance()->clear();
}

LoadedPlugin::LoadedPlugin(const QString &file)
    : loader(file)
    , instance(loader.instance())
    , loyaltySystem(qobject_cast<BasicLoyaltySystem *>(instance))
{}

LoadedPlugin::~LoadedPlugin()
{
    if (loyaltySystem)
        attach({});
    delete instance;
}

void LoadedPlugin::attach(const QSharedPointer<AbstractDocument> &document) const
{
    Singleton<Session>::instance()->setCurrentDocument(document);
    loyaltySystem->setDocument(document);
}

bool LoadedPlugin::identify(const QString &phone) const
{
    auto card = QSharedPointer<DocumentCardRecord>::create(phone);
    Singleton<Session>::instance()->getCurrentDocument()->setCardRecord(card);
    return loyaltySystem->identifyByCard(card, ECardNumberType::Typed);
}

QSharedPointer<AbstractDocument> makeReceipt(int lines, int number)
{
    constexpr int everyDayCampaign = 417;
    constexpr int usualMode = 1;
    constexpr int changeMode = 6;
    DocumentHeader header;
    header.shopCode = 12;
    header.cashCode = 3;
    header.shift = 45;
    header.num = number;
    header.dateTimeBeg = QDateTime({2026, 3, 5}, {14, 7, 9});
    auto receipt = QSharedPointer<AbstractDocument>::create(header);
    for (int i = 0; i < lines; ++i) {
        const auto item =
            receipt->addGoodsItem(QString::number(4'600'000'000'000 + i),
                                  QStringLiteral("Молоко 3,2 % 1 л"), 79.9 + i % 100, 1 + i % 3);
        receipt->addImpactDetail({item->getPosnum(), everyDayCampaign, usualMode, 0, 7.5});
        if (i % 3 == 0)
            receipt->addImpactDetail({item->getPosnum(), 0, changeMode, 0, 0.4});
    }
    return receipt;
}

} // namespace bench
