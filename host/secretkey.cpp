#include "host/secretkey.h"

#include "host/config.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QUrl>

using namespace Qt::StringLiterals;

QString withoutSecretKey(QString text)
{
    constexpr qsizetype shortestKey = 4;
    const auto key = Singleton<Config>::instance()->getText(u"LmMindbox:secretKey"_s);
    if (key.size() < shortestKey)
        return text;
    const auto json =
        QString::fromUtf8(QJsonDocument(QJsonArray{key}).toJson(QJsonDocument::Compact));
    const auto encoded = QString::fromLatin1(QUrl::toPercentEncoding(key));
    for (const auto &form : {key, json.sliced(2, json.size() - 4), encoded})
        text.replace(form, u"***"_s, Qt::CaseInsensitive);
    return text;
}
