#include "host/simpleformatter.h"

#include <QCache>
#include <QDateTime>
#include <QLocale>
#include <QLoggingCategory>
#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <functional>

template class MockFactory<SimpleFormatter>;

namespace {

Q_LOGGING_CATEGORY(log, "till.formatter", QtInfoMsg)

/// Appends a value as its format writes it. False for one that does not fit, which may leave an
/// unfinished text behind.
using Writer = std::function<bool(QString &result, const QVariant &value)>;

/// A piece of a mask: text to copy or, when `name` is not empty, a placeholder.
struct Piece
{
    QString text;   ///< As it stands in the mask; "%" for "%%".
    QString source; ///< Empty for an extra value.
    QString name;
    Writer write;       ///< Empty for an unknown format.
    bool stray = false; ///< A percent sign that begins nothing.
};

bool appendTime(QString &result, const QVariant &value, const QString &pattern)
{
    const auto text =
        value.typeId() == QMetaType::QDateTime ? value.toDateTime().toString(pattern) : QString();
    result += text;
    return !text.isEmpty(); // as that of an invalid time is
}

/// Whether the number is all of the value: the conversion rounds, and wraps around.
bool isWhole(const QVariant &value, qlonglong number)
{
    const auto type = value.typeId();
    return type == QMetaType::Int || type == QMetaType::LongLong ||
           (type != QMetaType::QString && type != QMetaType::Bool &&
            value.toDouble() == static_cast<double>(number));
}

bool appendNumber(QString &result, const QVariant &value, int width)
{
    bool ok = false;
    const auto number = value.toLongLong(&ok);
    if (!ok || !isWhole(value, number))
        return false;
    std::array<char, 20> text{};
    const auto *const end = std::to_chars(text.begin(), text.end(), number).ptr;
    const auto sign = number < 0 ? 1 : 0;
    const auto zeros = std::max<qsizetype>(width - (end - text.data()), 0);
    result += QLatin1String(text.data(), sign);
    result.resize(result.size() + zeros, QLatin1Char('0'));
    result += QLatin1String(text.data() + sign, end);
    return true;
}

bool appendText(QString &result, const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Double:
        result += QString::number(value.toDouble(), 'f', QLocale::FloatingPointShortest);
        return std::isfinite(value.toDouble());
    case QMetaType::QDateTime:
        return appendTime(result, value, QStringLiteral("yyyy-MM-dd'T'hh:mm:ss"));
    default:
        result += value.toString();
        return value.canConvert<QString>();
    }
}

Writer writerOf(const QString &format)
{
    static const QRegularExpression number(QStringLiteral(R"(^(?:0([0-9]{1,2}))?d$)"));
    // Qt writes names for three and four of d and M.
    static const QRegularExpression time(
        QStringLiteral(R"(^(?!.*(?:ddd|MMM))[^\p{L}\p{N}]*)"
                       R"((?:(?:yyyy|yy|MM|dd|hh|mm|ss|zzz)[^\p{L}\p{N}]*)++$)"));
    if (format == QLatin1String("s"))
        return appendText;
    if (const auto match = number.match(format); match.hasMatch())
        return [width = match.captured(1).toInt()](QString &result, const QVariant &value) {
            return appendNumber(result, value, width);
        };
    if (!time.match(format).hasMatch())
        return {};
    const auto pattern = QString(format).replace(QLatin1String("'"), QLatin1String("''"));
    return [pattern](QString &result, const QVariant &value) {
        return appendTime(result, value, pattern);
    };
}

QList<Piece> parseMask(const QString &mask)
{
    // A placeholder, a percent sign twice, or one that begins neither. A bracket that is not closed
    // does not swallow the placeholders behind it.
    static const QRegularExpression special(
        QStringLiteral(R"(%\((?:([^.%()\[\]]+)\.)?+([^.%()\[\]][^%()\[\]]*))"
                       R"((?:\[((?:(?!%\()[^\]])*)\])?\)|%%?)"));
    QList<Piece> pieces;
    qsizetype end = 0;
    for (const auto &match : special.globalMatch(mask)) {
        pieces.append({mask.mid(end, match.capturedStart() - end), {}, {}, {}});
        end = match.capturedEnd();
        if (match.hasCaptured(2)) {
            auto write = match.hasCaptured(3) ? writerOf(match.captured(3)) : appendText;
            pieces.append({match.captured(), match.captured(1), match.captured(2), write});
        } else {
            pieces.append({QStringLiteral("%"), {}, {}, {}, match.capturedLength() == 1});
        }
    }
    pieces.append({mask.mid(end), {}, {}, {}});
    return pieces;
}

/// The mask taken apart; the last ones are remembered, because a receipt expands the same ones for
/// every position.
QList<Piece> parsed(const QString &mask)
{
    static thread_local QCache<QString, QList<Piece>> masks(16);
    if (const auto *const pieces = masks.object(mask))
        return *pieces;
    const auto pieces = parseMask(mask);
    masks.insert(mask, new QList<Piece>(pieces));
    return pieces;
}

/// Invalid when there is none.
QVariant findValue(const Piece &piece, const QList<QSharedPointer<FormatterSource>> &sources,
                   const QVariantMap &extraValues)
{
    if (piece.source.isEmpty())
        return extraValues.value(piece.name);
    for (const auto &source : sources) {
        if (source && source->sourceName() == piece.source)
            return source->field(piece.name);
    }
    return {};
}

/// What the log says of a placeholder that leaves nothing.
QString complaintOf(const Piece &piece, const QVariant &value)
{
    auto reason = QStringLiteral("the value is missing or does not fit the format");
    if (!value.isValid())
        reason = QStringLiteral("there is nothing of that name");
    else if (!piece.write)
        reason = QStringLiteral("the format is unknown");
    return QStringLiteral("%1 in a mask is left out: %2").arg(piece.text, reason);
}

QString expand(const QString &mask, const QList<QSharedPointer<FormatterSource>> &sources,
               const QVariantMap &extraValues, QStringList &complaints)
{
    QString result;
    result.reserve(mask.size());
    for (const auto &piece : parsed(mask)) {
        if (piece.stray)
            complaints.append(QStringLiteral("the mask \"%1\" has a % that begins no placeholder, "
                                             "it is kept as text")
                                  .arg(mask));
        if (piece.name.isEmpty()) {
            result += piece.text;
            continue;
        }
        const auto length = result.size();
        const auto value = findValue(piece, sources, extraValues);
        if (value.isValid() && piece.write && piece.write(result, value))
            continue;
        result.truncate(length);
        complaints.append(complaintOf(piece, value));
    }
    return result;
}

} // namespace

QString SimpleFormatter::format(const QString &mask,
                                const QList<QSharedPointer<FormatterSource>> &sources,
                                int /*flags*/, const QVariantMap &extraValues) const
{
    QStringList complaints;
    auto result = expand(mask, sources, extraValues, complaints);
    for (const auto &complaint : complaints)
        qCWarning(log, "%ls", qUtf16Printable(complaint));
    return result;
}

QStringList SimpleFormatter::complaints(const QString &mask,
                                        const QList<QSharedPointer<FormatterSource>> &sources) const
{
    QStringList complaints;
    expand(mask, sources, {}, complaints);
    return complaints;
}
