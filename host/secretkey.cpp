#include "host/secretkey.h"

#include "host/config.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QStringList>
#include <QUrl>

#include <mutex>

namespace {

constexpr qsizetype shortestKey = 4;

QString jsonEscaped(const QString &text)
{
    const auto array = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(array.sliced(2, array.size() - 4)); // without [" and "]
}

/// As those write JSON who keep to ASCII.
QString withUnicodeEscapes(const QString &text)
{
    QString result;
    for (const auto character : text) {
        if (character.unicode() < 0x80)
            result += character;
        else
            result += QStringLiteral("\\u%1").arg(character.unicode(), 4, 16, QLatin1Char('0'));
    }
    return result;
}

QStringList formsOf(const QString &key)
{
    if (key.size() < shortestKey)
        return {};
    const auto escaped = jsonEscaped(key);
    QStringList forms{key, escaped, withUnicodeEscapes(escaped),
                      QString::fromLatin1(QUrl::toPercentEncoding(key))};
    forms.removeDuplicates();
    return forms;
}

/// The forms of the key that was configured when they were last asked for.
QStringList configuredForms()
{
    struct Known
    {
        std::mutex mutex;
        QString key;
        QStringList forms;
    };
    // Never destroyed: the program's last objects may still log.
    static auto *const known = new Known;
    const auto key = Singleton<Config>::instance()->getText(QStringLiteral("LmMindbox:secretKey"));
    const std::scoped_lock lock(known->mutex);
    if (known->key != key) {
        known->key = key;
        known->forms = formsOf(key);
    }
    return known->forms;
}

} // namespace

QString withoutSecretKey(QString text)
{
    // Letters of either case: so do others encode, and one blot too many does no harm.
    for (const auto &form : configuredForms())
        text.replace(form, QLatin1String("***"), Qt::CaseInsensitive);
    return text;
}
