#include "till/core/loyaltyplugin.h"

#include <host/basicloyaltysystem.h>

#include <QCoreApplication>
#include <QFileInfo>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace till {

namespace {

constexpr auto identifier = "LmMindbox"_L1;

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
    for (const auto place : {"/lmmindbox.so"_L1, "/../lib/lmmindbox.so"_L1}) {
        if (QFileInfo::exists(program + place))
            return program + place;
    }
    return program + "/" TILL_PLUGIN_DIR "/lmmindbox.so"_L1;
}

tl::expected<void, QString> LoyaltyPlugin::load(const QString &file)
{
    const auto refusal = [&file](const QString &reason) {
        return tl::unexpected(u"%1: the plugin cannot be loaded: %2"_s.arg(file, reason));
    };
    // The loader would search Qt's plugin directories for a relative name.
    loader.setFileName(QFileInfo(file).absoluteFilePath());
    if (loader.fileName().isEmpty())
        return refusal(loader.errorString());
    const auto found = loader.metaData().value("IID"_L1).toString();
    if (!found.isEmpty() && found != identifier)
        return refusal(u"expected the interface \"%1\", found \"%2\""_s.arg(identifier, found));
    auto *const instance = loader.instance();
    if (!instance)
        return refusal(loader.errorString());
    auto *const loaded = qobject_cast<BasicLoyaltySystem *>(instance);
    if (!loaded || !qobject_cast<BasicPlugin *>(instance))
        return refusal(u"it is no loyalty system"_s);
    if (!loaded->init())
        return refusal(u"it cannot be initialised"_s);
    loaded->registerLoyaltySystem();
    system = loaded;
    return {};
}

QString LoyaltyPlugin::description() const
{
    const auto metaData = loader.metaData();
    const auto version = metaData["MetaData"_L1]["version"_L1].toString();
    const auto qt = metaData.value("version"_L1).toInt(); // 0xMMNNPP
    return u"%1 %2, Qt %3.%4, %5, %6"_s.arg(
        loader.fileName(), version, QString::number(qt >> 16), QString::number(qt >> 8 & 0xFF),
        metaData.value("IID"_L1).toString(), metaData.value("className"_L1).toString());
}

} // namespace till
