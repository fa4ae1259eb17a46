#include "host/secretkey.h"

#include "host/config.h"

#include <QRegularExpression>

#include <mutex>

namespace {

constexpr qsizetype shortestKey = 4;

/// Finds the character as it is, as JSON escapes it, JSON within JSON included, or percent-encoded.
/// All repetitions are bounded and possessive: no text makes the search slow.
QString anyFormOf(QStringView character)
{
    QString inJson;
    for (const auto unit : character)
        inJson += QStringLiteral(R"(\\{0,8}+u%1)").arg(unit.unicode(), 4, 16, QLatin1Char('0'));
    const auto bytes = character.toUtf8();
    const auto inUrl = QString::fromLatin1(bytes.toPercentEncoding({}, bytes));
    if (character == QLatin1String("\\")) // each level of JSON doubles them, wherever they stand
        return QStringLiteral(R"((?:%1|%2|\\){1,64}+)").arg(inJson, inUrl);
    return QStringLiteral(R"((?:%1|%2|\\{0,8}+%3))")
        .arg(inJson, inUrl, QRegularExpression::escape(character));
}

QRegularExpression anyFormOfKey(const QString &key)
{
    QString pattern;
    for (qsizetype at = 0, size = 0; at < key.size(); at += size) {
        size = key.at(at).isHighSurrogate() ? 2 : 1;
        const auto character = QStringView(key).mid(at, size);
        if (at == 0 || character != QLatin1String("\\") || key.at(at - 1) != character.front())
            pattern += anyFormOf(character);
    }
    // Letters of either case: so do others encode, and one blot too many does no harm.
    QRegularExpression result(pattern, QRegularExpression::CaseInsensitiveOption);
    result.optimize();
    return result;
}

/// What finds the configured key.
QRegularExpression configuredKey()
{
    struct Known
    {
        std::mutex mutex;
        QString key;
        QRegularExpression forms;
    };
    // Never destroyed: the program's last objects may still log.
    static auto *const known = new Known;
    const auto key = Singleton<Config>::instance()->getText(QStringLiteral("LmMindbox:secretKey"));
    if (key.size() < shortestKey)
        return {};
    const std::scoped_lock lock(known->mutex);
    if (known->key != key) {
        known->key = key;
        known->forms = anyFormOfKey(key);
    }
    return known->forms;
}

} // namespace

QString withoutSecretKey(QString text)
{
    const auto key = configuredKey();
    if (key.pattern().isEmpty())
        return text;
    // Half a character would end the search before it began.
    if (!text.isValidUtf16())
        text = QString::fromUtf8(text.toUtf8());
    return text.replace(key, QStringLiteral("***"));
}
