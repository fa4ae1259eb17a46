#include "till/core/loyaltyplugin.h"

#include <host/basicloyaltysystem.h>

#include <QCoreApplication>
#include <QFileInfo>
#include <QJsonObject>

namespace till {

namespace {

constexpr auto identifier = QLatin1String("LmMindbox");

} // namespace

LoyaltyPlugin::~LoyaltyPlugin()
{
    if (!system)
        return;
    system->deregisterLoyaltySystem();
    system->deinit();
    // The next one of this process reads the settings anew.
    delete loader.instance();
}

QString LoyaltyPlugin::filePath(const QString &configured)
{
    if (!configured.isEmpty())
        return configured;
    const auto program = QCoreApplication::applicationDirPath();
    for (const auto place :
         {QLatin1String("/lmmindbox.so"), QLatin1String("/../lib/lmmindbox.so")}) {
        if (QFileInfo::exists(program + place))
            return program + place;
    }
    return program + QLatin1String("/" TILL_PLUGIN_DIR "/lmmindbox.so");
}

std::optional<QString> LoyaltyPlugin::load(const QString &file)
{
    const auto refusal = [&file](const QString &reason) {
        return QStringLiteral("%1: the plugin cannot be loaded: %2").arg(file, reason);
    };
    // An absolute name, or the loader would search for it in the directories of Qt's plugins.
    loader.setFileName(QFileInfo(file).absoluteFilePath());
    if (loader.fileName().isEmpty())
        return refusal(loader.errorString());
    const auto found = loader.metaData().value(QLatin1String("IID")).toString();
    if (!found.isEmpty() && found != identifier)
        return refusal(
            QStringLiteral("expected the interface \"%1\", found \"%2\"").arg(identifier, found));
    auto *const instance = loader.instance();
    if (!instance)
        return refusal(loader.errorString());
    auto *const loaded = qobject_cast<BasicLoyaltySystem *>(instance);
    if (!loaded || !qobject_cast<BasicPlugin *>(instance))
        return refusal(QStringLiteral("it is no loyalty system"));
    if (!loaded->init())
        return refusal(QStringLiteral("it cannot be initialised"));
    loaded->registerLoyaltySystem();
    system = loaded;
    return std::nullopt;
}

QString LoyaltyPlugin::description() const
{
    QStringList actions;
    for (const auto &handler : system->getHandlers())
        actions.append(QString::number(handler.actionCode));
    const auto metaData = loader.metaData();
    const auto version = metaData[QLatin1String("MetaData")][QLatin1String("version")].toString();
    const auto qt = metaData.value(QLatin1String("version")).toInt(); // two digits a number, hex
    return QStringLiteral("Plugin %1 %2, built with Qt %3.%4\ninterface %5, class %6, %7, actions: "
                          "%8")
        .arg(loader.fileName(), version, QString::number(qt >> 16), QString::number(qt >> 8 & 0xFF),
             metaData.value(QLatin1String("IID")).toString(),
             metaData.value(QLatin1String("className")).toString(),
             system->isRegistered() ? QStringLiteral("registered")
                                    : QStringLiteral("not registered"),
             actions.isEmpty() ? QStringLiteral("none") : actions.join(QLatin1String(", ")));
}

} // namespace till
