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
#include <optional>

template class MockFactory<SimpleFormatter>;

namespace {

Q_LOGGING_CATEGORY(log, "till.formatter", QtInfoMsg)

enum class Format {
    Text,
    Number,
    Time,
    Unknown,
};

/// A piece of a mask: text to copy or, when `name` is not empty, a placeholder.
struct Piece
{
    QString text;       ///< As it stands in the mask; "%" for "%%".
    bool stray = false; ///< A percent sign that begins nothing.
    QString source;     ///< Empty for an extra value.
    QString name;
    Format format = Format::Text;
    int width = 0;   ///< Digits of a number at the least.
    QString pattern; ///< Of a date and time, in Qt's spelling.
};

void readFormat(Piece &piece, const QString &text)
{
    static const QRegularExpression number(QStringLiteral(R"(^(?:0([0-9]{1,2}))?d$)"));
    // Qt writes names for three and four of d and M.
    static const QRegularExpression time(
        QStringLiteral(R"(^(?!.*(?:ddd|MMM))[^\p{L}\p{N}]*)"
                       R"((?:(?:yyyy|yy|MM|dd|hh|mm|ss|zzz)[^\p{L}\p{N}]*)++$)"));
    if (const auto match = number.match(text); match.hasMatch()) {
        piece.format = Format::Number;
        piece.width = match.capturedView(1).toInt();
    } else if (time.match(text).hasMatch()) {
        piece.format = Format::Time;
        piece.pattern = QString(text).replace(QLatin1String("'"), QLatin1String("''"));
    } else if (text != QLatin1String("s")) {
        piece.format = Format::Unknown;
    }
}

Piece textPiece(const QString &text)
{
    Piece piece;
    piece.text = text;
    return piece;
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
        pieces.append(textPiece(mask.mid(end, match.capturedStart() - end)));
        end = match.capturedEnd();
        if (!match.hasCaptured(2)) {
            pieces.append(textPiece(QStringLiteral("%")));
            pieces.last().stray = match.capturedLength() == 1;
            continue;
        }
        pieces.append(textPiece(match.captured()));
        pieces.last().source = match.captured(1);
        pieces.last().name = match.captured(2);
        if (match.hasCaptured(3))
            readFormat(pieces.last(), match.captured(3));
    }
    pieces.append(textPiece(mask.mid(end)));
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

template<typename TimeFormat>
bool appendTime(QString &result, const QVariant &value, const TimeFormat &format)
{
    const auto length = result.size();
    if (value.typeId() == QMetaType::QDateTime)
        result += value.toDateTime().toString(format);
    else if (value.typeId() == QMetaType::QDate)
        result += value.toDate().toString(format);
    else if (value.typeId() == QMetaType::QTime)
        result += value.toTime().toString(format);
    return result.size() > length; // not for an invalid time
}

/// Whether the value has what the pattern asks for; Qt would copy the letters of the rest.
bool hasUnitsOf(const QString &pattern, const QVariant &value)
{
    static const QRegularExpression ofDates(QStringLiteral("[yMd]"));
    static const QRegularExpression ofTimes(QStringLiteral("[hmsz]"));
    return (value.typeId() != QMetaType::QTime || !pattern.contains(ofDates)) &&
           (value.typeId() != QMetaType::QDate || !pattern.contains(ofTimes));
}

/// Nothing for a fraction, a number that needs more than 64 bits with its sign, or no number.
std::optional<qlonglong> wholeNumber(const QVariant &value)
{
    bool ok = false;
    const auto number = value.toLongLong(&ok);
    switch (value.typeId()) {
    case QMetaType::Int:
    case QMetaType::LongLong:
        return number;
    case QMetaType::QString:
    case QMetaType::Bool:
        return std::nullopt;
    default: // the conversion rounds, and wraps around
        return ok && value.toDouble() == static_cast<double>(number) ? std::optional(number)
                                                                     : std::nullopt;
    }
}

bool appendNumber(QString &result, const QVariant &value, int width)
{
    const auto number = wholeNumber(value);
    if (!number)
        return false;
    std::array<char, 20> text{};
    const auto *const end = std::to_chars(text.begin(), text.end(), *number).ptr;
    const auto sign = *number < 0 ? 1 : 0;
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
    case QMetaType::Float:
        result += QString::number(value.toDouble(), 'f', QLocale::FloatingPointShortest);
        return std::isfinite(value.toDouble());
    case QMetaType::QDateTime:
    case QMetaType::QDate:
    case QMetaType::QTime:
        return appendTime(result, value, Qt::ISODate);
    default:
        result += value.toString();
        return value.canConvert<QString>();
    }
}

/// Appends the value; when it does not fit the format, an unfinished text may be left behind.
bool appendValue(QString &result, const QVariant &value, const Piece &piece)
{
    switch (piece.format) {
    case Format::Text:
        return appendText(result, value);
    case Format::Number:
        return appendNumber(result, value, piece.width);
    case Format::Time:
        return hasUnitsOf(piece.pattern, value) && appendTime(result, value, piece.pattern);
    case Format::Unknown:
        break;
    }
    return false;
}

QString whyLeftOut(const Piece &piece, const QVariant &value)
{
    if (!value.isValid())
        return QStringLiteral("there is nothing of that name");
    if (piece.format == Format::Unknown)
        return QStringLiteral("the format is unknown");
    return QStringLiteral("the value is missing or does not fit the format");
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
        if (value.isValid() && appendValue(result, value, piece))
            continue;
        result.truncate(length);
        complaints.append(QStringLiteral("%1 in a mask is left out: %2")
                              .arg(piece.text, whyLeftOut(piece, value)));
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
