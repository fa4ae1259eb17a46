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
    // The plugin reads settings at construction; the next load must construct it again.
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

tl::expected<void, QString> LoyaltyPlugin::load(const QString &file)
{
    const auto refusal = [&file](const QString &reason) {
        return tl::unexpected(
            QStringLiteral("%1: the plugin cannot be loaded: %2").arg(file, reason));
    };
    // The loader would search Qt's plugin directories for a relative name.
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
    return {};
}

QString LoyaltyPlugin::description() const
{
    const auto metaData = loader.metaData();
    const auto version = metaData[QLatin1String("MetaData")][QLatin1String("version")].toString();
    const auto qt = metaData.value(QLatin1String("version")).toInt(); // 0xMMNNPP
    return QStringLiteral("%1 %2, Qt %3.%4, %5, %6")
        .arg(loader.fileName(), version, QString::number(qt >> 16), QString::number(qt >> 8 & 0xFF),
             metaData.value(QLatin1String("IID")).toString(),
             metaData.value(QLatin1String("className")).toString());
}

} // namespace till
