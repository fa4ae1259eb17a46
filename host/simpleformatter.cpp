#include "host/simpleformatter.h"

#include <QCache>
#include <QDateTime>
#include <QLocale>
#include <QRegularExpression>

#include <log4qt/logger.h>
#include <log4qt/logmanager.h>

#include <cmath>

using namespace Qt::StringLiterals;

template class MockFactory<SimpleFormatter>;

namespace {

/// A piece of a mask: text to copy or, when `name` is not empty, a placeholder.
struct Piece
{
    QString text;   ///< As in the mask; "%" for "%%".
    QString source; ///< Empty for an extra value.
    QString name;
    QString format = u"s"_s;
    bool stray = false; ///< A percent sign that begins no placeholder.
};

/// \return Null when the value does not fit; so do the functions below.
QString numberText(const QVariant &value, int width)
{
    bool ok = false;
    const auto number = value.toLongLong(&ok);
    const auto type = value.typeId();
    // The conversion rounds and overflows silently.
    const auto isWhole = type == QMetaType::Int || type == QMetaType::LongLong ||
                         (type != QMetaType::QString && type != QMetaType::Bool &&
                          value.toDouble() == static_cast<double>(number));
    return ok && isWhole ? u"%1"_s.arg(number, width, 10, QChar(u'0')) : QString();
}

QString timeText(const QVariant &value, const QString &pattern)
{
    return value.typeId() == QMetaType::QDateTime ? value.toDateTime().toString(pattern)
                                                  : QString();
}

QString plainText(const QVariant &value)
{
    const auto type = value.typeId();
    if (type == QMetaType::QDateTime)
        return timeText(value, u"yyyy-MM-dd'T'hh:mm:ss"_s);
    if (type == QMetaType::Double)
        return std::isfinite(value.toDouble())
                   ? QString::number(value.toDouble(), 'f', QLocale::FloatingPointShortest)
                   : QString();
    return value.canConvert<QString>() ? u""_s + value.toString() : QString();
}

QString textOf(const QVariant &value, const QString &format)
{
    static const QRegularExpression number(uR"(^(?:0([0-9]{1,2}))?d$)"_s);
    // Three or four of d or M would give names of days and months.
    static const QRegularExpression time(
        uR"(^(?!.*(?:ddd|MMM))[^\p{L}\p{N}]*)"
        uR"((?:(?:yyyy|yy|MM|dd|hh|mm|ss|zzz)[^\p{L}\p{N}]*)++$)"_s);
    if (format == u's')
        return plainText(value);
    if (const auto match = number.match(format); match.hasMatch())
        return numberText(value, match.captured(1).toInt());
    return time.match(format).hasMatch() ? timeText(value, QString(format).replace(u"'"_s, u"''"_s))
                                         : QString();
}

QList<Piece> parseMask(const QString &mask)
{
    // A placeholder, "%%", or a stray percent sign. An unclosed bracket does not swallow the
    // placeholders after it.
    static const QRegularExpression special(uR"(%\((?:([^.%()\[\]]+)\.)?+([^.%()\[\]][^%()\[\]]*))"
                                            uR"((?:\[((?:(?!%\()[^\]])*)\])?\)|%%?)"_s);
    QList<Piece> pieces;
    qsizetype end = 0;
    for (const auto &match : special.globalMatch(mask)) {
        pieces.append({mask.mid(end, match.capturedStart() - end), {}, {}});
        end = match.capturedEnd();
        if (!match.hasCaptured(2))
            pieces.append({u"%"_s, {}, {}, {}, match.capturedLength() == 1});
        else
            pieces.append({match.captured(), match.captured(1), match.captured(2),
                           match.hasCaptured(3) ? match.captured(3) : u"s"_s});
    }
    pieces.append({mask.mid(end), {}, {}});
    return pieces;
}

/// The parsed mask. The last ones are cached, because a receipt expands the same masks for every
/// position.
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

QString expand(const QString &mask, const QList<QSharedPointer<FormatterSource>> &sources,
               const QVariantMap &extraValues, QStringList &complaints)
{
    QString result;
    result.reserve(mask.size());
    for (const auto &piece : parsed(mask)) {
        if (piece.stray)
            complaints += u"the mask \"%1\" has a % that begins no placeholder, it is kept as "
                          "text"_s.arg(mask);
        if (piece.name.isEmpty()) {
            result += piece.text;
            continue;
        }
        const auto value = findValue(piece, sources, extraValues);
        const auto text = textOf(value, piece.format);
        result += text;
        if (text.isNull())
            complaints += u"%1 in a mask is left out: %2"_s.arg(
                piece.text, value.isValid() ? u"the value is missing or does not fit the format"_s
                                            : u"there is nothing of that name"_s);
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
        Log4Qt::LogManager::logger(u"till.formatter"_s)->warn(complaint);
    return result;
}

QStringList SimpleFormatter::complaints(const QString &mask,
                                        const QList<QSharedPointer<FormatterSource>> &sources) const
{
    QStringList complaints;
    expand(mask, sources, {}, complaints);
    return complaints;
}
