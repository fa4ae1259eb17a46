#include "host/config.h"

#include "host/privatefile.h"

#include <QLoggingCategory>
#include <QStandardPaths>
#include <QStringDecoder>

template class Singleton<Config>;

namespace {

Q_LOGGING_CATEGORY(log, "till.config", QtInfoMsg)

constexpr qint64 maximumFileSize = 1LL << 20;

/// Takes a line apart. \return What it should have been; empty when key and value are good.
QString readLine(const QByteArray &line, QString &key, QString &value)
{
    if (line.contains('\0'))
        return QStringLiteral("expected text, found a null character");
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless |
                                                     QStringDecoder::Flag::ConvertInitialBom);
    const QString text = decoder(line);
    if (decoder.hasError())
        return QStringLiteral("expected UTF-8");
    if (text.startsWith(QChar::ByteOrderMark))
        return QStringLiteral("expected no byte order mark");
    if (text.endsWith(QLatin1Char('\r')))
        return QStringLiteral("expected the line to end with a line feed alone, "
                              "found a carriage return before it");
    const auto separator = text.indexOf(QLatin1Char('='));
    if (separator < 1)
        return QStringLiteral("expected key=value");
    key = text.left(separator);
    value = text.mid(separator + 1);
    if (key != key.trimmed())
        return QStringLiteral("expected no blank around the key");
    if (value != value.trimmed())
        return QStringLiteral("expected no blank at the ends of the value of \"%1\"").arg(key);
    return {};
}

} // namespace

QString Config::filePath(const QString &option)
{
    if (!option.isEmpty())
        return option;
    auto environment = qEnvironmentVariable("TILL_CONFIG");
    if (!environment.isEmpty())
        return environment;
    const auto name = QStringLiteral("till/till.conf");
    const auto found = QStandardPaths::locate(QStandardPaths::ConfigLocation, name);
    return found.isEmpty() ? QStandardPaths::writableLocation(QStandardPaths::ConfigLocation) +
                                 QLatin1Char('/') + name
                           : found;
}

std::optional<QString> Config::load(const QString &path)
{
    const auto [content, mode, error] = privatefile::read(path, maximumFileSize);
    if (!error.isEmpty())
        return QStringLiteral("%1: the settings cannot be read: %2").arg(path, error);
    if ((mode & 077U) != 0)
        qCWarning(log, "%s: others may read the secret key: the mode is %04o, expected 0600",
                  qUtf8Printable(path), mode);

    QHash<QString, QString> loaded;
    QHash<QString, int> lineOfKey;
    int number = 0;
    for (const auto &line : content.split('\n')) {
        ++number;
        if (line.isEmpty() || line.startsWith('#'))
            continue;
        QString key;
        QString value;
        auto refusal = readLine(line, key, value);
        if (refusal.isEmpty() && lineOfKey.contains(key))
            refusal = QStringLiteral("expected each key once, \"%1\" already stands in line %2")
                          .arg(key, QString::number(lineOfKey.value(key)));
        if (!refusal.isEmpty())
            return QStringLiteral("%1:%2: %3").arg(path, QString::number(number), refusal);
        lineOfKey.insert(key, number);
        loaded.insert(key, value);
    }
    values = loaded;
    return std::nullopt;
}

int Config::getInt(const QString &key, int defaultValue) const
{
    const auto found = values.constFind(key);
    if (found == values.constEnd())
        return defaultValue;
    bool ok = false;
    const auto value = found->toInt(&ok);
    if (ok)
        return value;
    qCWarning(log, "the setting \"%s\" is no 32-bit integer, using %d", qUtf8Printable(key),
              defaultValue);
    return defaultValue;
}
