#include "host/config.h"

#include "host/privatefile.h"

#include <QDir>
#include <QStandardPaths>
#include <QStringDecoder>

#include <log4qt/logger.h>
#include <log4qt/logmanager.h>

#include <utility>

using namespace Qt::StringLiterals;

template class Singleton<Config>;

namespace {

constexpr qint64 maximumFileSize = 1LL << 20;

void warn(const QString &text)
{
    Log4Qt::LogManager::logger(u"till.config"_s)->warn(text);
}

/// The line's key and value, or what it should have been.
tl::expected<std::pair<QString, QString>, QString> parse(const QByteArray &bytes)
{
    const auto expected = [](const QString &what) { return tl::unexpected(what); };
    if (bytes.contains('\0'))
        return expected(Config::tr("expected text, found a null character"));
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless |
                                                     QStringDecoder::Flag::ConvertInitialBom);
    const QString text = decoder(bytes);
    if (decoder.hasError())
        return expected(Config::tr("expected UTF-8"));
    if (text.startsWith(QChar::ByteOrderMark))
        return expected(Config::tr("expected no byte order mark"));
    if (text.endsWith(u'\r'))
        return expected(Config::tr("expected the line to end with a line feed alone, found a "
                                   "carriage return before it"));
    const auto separator = text.indexOf(u'=');
    if (separator < 1)
        return expected(Config::tr("expected key=value"));
    const auto key = text.left(separator);
    const auto value = text.mid(separator + 1);
    if (key != key.trimmed())
        return expected(Config::tr("expected no blank around the key"));
    if (value != value.trimmed())
        return expected(
            Config::tr("expected no blank at the ends of the value of \"%1\"").arg(key));
    return std::pair(key, value);
}

} // namespace

QString Config::filePath(const QString &option)
{
    if (!option.isEmpty())
        return option;
    auto environment = qEnvironmentVariable("TILL_CONFIG");
    if (!environment.isEmpty())
        return environment;
    const auto name = u"till/till.conf"_s;
    const auto found = QStandardPaths::locate(QStandardPaths::ConfigLocation, name);
    return found.isEmpty()
               ? QStandardPaths::writableLocation(QStandardPaths::ConfigLocation) + u'/' + name
               : found;
}

QString Config::Refusal::text() const
{
    const auto place = line == 0 ? file : u"%1:%2"_s.arg(file, QString::number(line));
    return u"%1: %2"_s.arg(place, reason);
}

tl::expected<void, Config::Refusal> Config::load(const QString &path)
{
    QStringList files{path};
    const QDir beside(path + ".d"_L1);
    for (const auto &name : beside.entryList({u"*.conf"_s}, QDir::Files | QDir::System, QDir::Name))
        files.append(beside.filePath(name));
    Config loaded;
    for (const auto &file : std::as_const(files)) {
        if (auto added = loaded.add(file); !added)
            return added;
    }
    *this = loaded;
    return {};
}

tl::expected<void, Config::Refusal> Config::add(const QString &path)
{
    const auto content = privatefile::read(path, maximumFileSize);
    if (!content)
        return tl::unexpected(
            Refusal{path, 0, tr("the settings cannot be read: %1").arg(content.error())});
    read.append(path);
    QHash<QString, int> lineOfKey;
    int number = 0;
    for (const auto &bytes : content->split('\n')) {
        ++number;
        if (bytes.isEmpty() || bytes.startsWith('#'))
            continue;
        const auto line = parse(bytes);
        if (!line)
            return tl::unexpected(Refusal{path, number, line.error()});
        const auto &[key, value] = *line;
        if (const auto first = lineOfKey.value(key))
            return tl::unexpected(
                Refusal{path, number,
                        tr("expected each key once, \"%1\" already stands in line %2")
                            .arg(key, QString::number(first))});
        lineOfKey.insert(key, number);
        set(key, value, u"%1:%2"_s.arg(path, QString::number(number)));
        if (value.isEmpty())
            values.remove(key);
    }
    if (privatefile::isOpenToOthers(path) && lineOfKey.contains(u"LmMindbox:secretKey"_s)) {
        exposed.append(path);
        warn(u"%1: others may read the secret key: expected mode 0600"_s.arg(path));
    }
    return {};
}

void Config::set(const QString &key, const QString &value, const QString &origin)
{
    values.insert(key, value);
    origins.insert(key, origin);
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
    warn(u"the setting \"%1\" is no 32-bit integer, using %2"_s.arg(key,
                                                                    QString::number(defaultValue)));
    return defaultValue;
}
