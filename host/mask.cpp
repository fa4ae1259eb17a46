#include "host/mask.h"

#include <QStringView>

#include <array>
#include <utility>

namespace {

struct UnitName
{
    QLatin1String name;
    MaskFormat::Unit unit;
};

// A name that begins another stands behind it.
const std::array unitNames{
    UnitName{QLatin1String("yyyy"), MaskFormat::Unit::Year},
    UnitName{QLatin1String("yy"), MaskFormat::Unit::ShortYear},
    UnitName{QLatin1String("MM"), MaskFormat::Unit::Month},
    UnitName{QLatin1String("dd"), MaskFormat::Unit::Day},
    UnitName{QLatin1String("hh"), MaskFormat::Unit::Hour},
    UnitName{QLatin1String("mm"), MaskFormat::Unit::Minute},
    UnitName{QLatin1String("ss"), MaskFormat::Unit::Second},
    UnitName{QLatin1String("zzz"), MaskFormat::Unit::Millisecond},
};

bool isDigit(QChar character)
{
    return character >= QLatin1Char('0') && character <= QLatin1Char('9');
}

/// Reads "d" and "0Nd".
bool readNumberFormat(QStringView text, MaskFormat &format)
{
    if (!text.endsWith(QLatin1Char('d')))
        return false;
    const auto width = text.chopped(1);
    if (width.isEmpty())
        return true;
    if (width.size() < 2 || width.size() > 3 || width.front() != QLatin1Char('0'))
        return false;
    for (const auto digit : width) {
        if (!isDigit(digit))
            return false;
    }
    format.width = width.toInt();
    return true;
}

bool readDateTimeFormat(QStringView text, MaskFormat &format)
{
    auto hasUnit = false;
    while (!text.isEmpty()) {
        MaskFormat::Part part{MaskFormat::Unit::Literal, text.front()};
        qsizetype length = 1;
        for (const auto &[name, unit] : unitNames) {
            if (text.startsWith(name)) {
                part.unit = unit;
                length = name.size();
                hasUnit = true;
                break;
            }
        }
        if (part.unit == MaskFormat::Unit::Literal && part.literal.isLetterOrNumber())
            return false;
        format.parts.push_back(part);
        text = text.mid(length);
    }
    return hasUnit;
}

MaskFormat parseFormat(QStringView text)
{
    MaskFormat format;
    if (text == QLatin1String("s"))
        format.kind = MaskFormat::Kind::Text;
    else if (readNumberFormat(text, format))
        format.kind = MaskFormat::Kind::Number;
    else if (readDateTimeFormat(text, format))
        format.kind = MaskFormat::Kind::DateTime;
    else
        format.kind = MaskFormat::Kind::Unknown;
    return format;
}

/// Reads the placeholder that `text` begins with.
/// \return How many characters it takes; 0 when it is malformed.
qsizetype readPlaceholder(QStringView text, MaskPiece &piece)
{
    static constexpr auto opening = QLatin1String("%(");
    auto end = opening.size();
    while (end < text.size() && !QLatin1String("%()[]").contains(text[end]))
        ++end;
    const auto path = text.mid(opening.size(), end - opening.size());
    if (path.isEmpty() || end == text.size())
        return 0;
    if (text[end] == QLatin1Char('[')) {
        const auto close = text.indexOf(QLatin1Char(']'), end);
        if (close < 0 || text.mid(end, close - end).contains(opening))
            return 0;
        piece.format = parseFormat(text.mid(end + 1, close - end - 1));
        end = close + 1;
    }
    if (end == text.size() || text[end] != QLatin1Char(')'))
        return 0;
    const auto point = path.indexOf(QLatin1Char('.'));
    if (point == 0 || point == path.size() - 1)
        return 0;
    piece.source = path.left(point < 0 ? 0 : point).toString();
    piece.name = path.mid(point + 1).toString();
    piece.text = text.left(end + 1).toString();
    return end + 1;
}

} // namespace

Mask parseMask(const QString &text)
{
    Mask mask;
    QString literal;
    const auto flushLiteral = [&] {
        if (!literal.isEmpty())
            mask.pieces.emplace_back().text = std::exchange(literal, {});
    };
    qsizetype at = 0;
    while (at < text.size()) {
        const auto rest = QStringView(text).mid(at);
        if (rest.front() != QLatin1Char('%')) {
            literal += rest.front();
            ++at;
        } else if (rest.startsWith(QLatin1String("%%"))) {
            literal += QLatin1Char('%');
            at += 2;
        } else if (MaskPiece piece; const auto length = rest.startsWith(QLatin1String("%("))
                                                            ? readPlaceholder(rest, piece)
                                                            : 0) {
            flushLiteral();
            mask.pieces.push_back(std::move(piece));
            at += length;
        } else {
            mask.malformed = true;
            literal += rest.front();
            ++at;
        }
    }
    flushLiteral();
    return mask;
}
