#include "host/simpleformatter.h"

#include "host/mask.h"

#include <QDate>
#include <QDateTime>
#include <QLocale>
#include <QLoggingCategory>
#include <QTime>

#include <array>
#include <cmath>
#include <memory>
#include <optional>
#include <utility>

template class MockFactory<SimpleFormatter>;

namespace {

Q_LOGGING_CATEGORY(log, "till.formatter", QtInfoMsg)

/// The mask taken apart; the last few are remembered, because a receipt expands the same ones for
/// every position.
std::shared_ptr<const Mask> parsed(const QString &text)
{
    struct Entry
    {
        QString text;
        std::shared_ptr<const Mask> mask;
    };
    static thread_local std::array<Entry, 4> entries;
    static thread_local size_t oldest = 0;
    for (const auto &entry : entries) {
        if (entry.mask && entry.text == text)
            return entry.mask;
    }
    auto &entry = entries.at(oldest);
    oldest = (oldest + 1) % entries.size();
    entry = {text, std::make_shared<Mask>(parseMask(text))};
    return entry.mask;
}

std::optional<QVariant> findValue(const MaskPiece &piece,
                                  const QList<QSharedPointer<FormatterSource>> &sources,
                                  const QVariantMap &extraValues)
{
    if (piece.source.isEmpty()) {
        const auto extra = extraValues.constFind(piece.name);
        return extra == extraValues.constEnd() ? std::nullopt : std::optional(*extra);
    }
    for (const auto &source : sources) {
        if (source && source->sourceName() == piece.source)
            return source->field(piece.name);
    }
    return std::nullopt;
}

struct WholeNumber
{
    bool negative = false;
    quint64 magnitude = 0;
};

WholeNumber fromSigned(qint64 value)
{
    const auto bits = static_cast<quint64>(value);
    return value < 0 ? WholeNumber{true, 0 - bits} : WholeNumber{false, bits};
}

std::optional<WholeNumber> wholeNumber(const QVariant &value)
{
    constexpr double exactLimit = 9007199254740992; // 2^53
    switch (value.typeId()) {
    case QMetaType::Int:
    case QMetaType::Long:
    case QMetaType::LongLong:
    case QMetaType::Short:
        return fromSigned(value.toLongLong());
    case QMetaType::UInt:
    case QMetaType::ULong:
    case QMetaType::ULongLong:
    case QMetaType::UShort:
        return WholeNumber{false, value.toULongLong()};
    case QMetaType::Double:
    case QMetaType::Float:
        if (const auto number = value.toDouble();
            std::abs(number) <= exactLimit && number == std::trunc(number))
            return fromSigned(static_cast<qint64>(number));
        return std::nullopt;
    default:
        return std::nullopt;
    }
}

void appendNumber(QString &result, const WholeNumber &number, int width)
{
    std::array<char16_t, 20> digits{};
    auto first = digits.size();
    for (auto rest = number.magnitude; rest != 0 || first == digits.size(); rest /= 10)
        digits.at(--first) = static_cast<char16_t>(u'0' + rest % 10);
    const auto count = static_cast<qsizetype>(digits.size() - first);
    if (number.negative)
        result += QLatin1Char('-');
    for (auto length = count + (number.negative ? 1 : 0); length < width; ++length)
        result += QLatin1Char('0');
    result += QStringView(digits.data() + first, count);
}

bool appendNumber(QString &result, const QVariant &value, int width)
{
    const auto number = wholeNumber(value);
    if (number)
        appendNumber(result, *number, width);
    return number.has_value();
}

bool appendText(QString &result, const QVariant &value)
{
    // Beyond these bounds the digits would be mostly zeros.
    constexpr double largest = 1e21;
    constexpr double smallest = 1e-7;
    switch (value.typeId()) {
    case QMetaType::QString:
        result += *static_cast<const QString *>(value.constData());
        return true;
    case QMetaType::Double:
    case QMetaType::Float: {
        const auto number = value.toDouble();
        const auto size = std::abs(number);
        const auto ordinary = size == 0 || (size >= smallest && size < largest);
        result += QString::number(number, ordinary ? 'f' : 'g', QLocale::FloatingPointShortest);
        return std::isfinite(number);
    }
    case QMetaType::QDate:
        result += value.toDate().toString(Qt::ISODate);
        return value.toDate().isValid();
    case QMetaType::QTime:
        result += value.toTime().toString(Qt::ISODate);
        return value.toTime().isValid();
    case QMetaType::QDateTime:
        result += value.toDateTime().toString(Qt::ISODate);
        return value.toDateTime().isValid();
    default:
        if (appendNumber(result, value, 0))
            return true;
        result += value.toString();
        return value.canConvert<QString>();
    }
}

/// A unit's value and its digits.
std::pair<int, int> unitValue(MaskFormat::Unit unit, QDate date, QTime time)
{
    switch (unit) {
    case MaskFormat::Unit::Year:
        return {date.year(), 4};
    case MaskFormat::Unit::ShortYear:
        return {std::abs(date.year()) % 100, 2};
    case MaskFormat::Unit::Month:
        return {date.month(), 2};
    case MaskFormat::Unit::Day:
        return {date.day(), 2};
    case MaskFormat::Unit::Hour:
        return {time.hour(), 2};
    case MaskFormat::Unit::Minute:
        return {time.minute(), 2};
    case MaskFormat::Unit::Second:
        return {time.second(), 2};
    case MaskFormat::Unit::Millisecond:
        return {time.msec(), 3};
    case MaskFormat::Unit::Literal:
        break;
    }
    return {};
}

bool appendDateTime(QString &result, const QVariant &value, const MaskFormat &format)
{
    QDate date;
    QTime time;
    if (value.typeId() == QMetaType::QDateTime) {
        const auto dateTime = value.toDateTime();
        date = dateTime.date();
        time = dateTime.time();
    } else if (value.typeId() == QMetaType::QDate) {
        date = value.toDate();
    } else if (value.typeId() == QMetaType::QTime) {
        time = value.toTime();
    }
    for (const auto &[unit, literal] : format.parts) {
        if (unit == MaskFormat::Unit::Literal) {
            result += literal;
            continue;
        }
        const auto ofDate = unit <= MaskFormat::Unit::Day;
        if (ofDate ? !date.isValid() : !time.isValid())
            return false;
        const auto [number, width] = unitValue(unit, date, time);
        appendNumber(result, fromSigned(number), width);
    }
    return true;
}

/// Appends the value; when it does not fit the format, an unfinished text may be left behind.
bool appendValue(QString &result, const QVariant &value, const MaskFormat &format)
{
    switch (format.kind) {
    case MaskFormat::Kind::Text:
        return appendText(result, value);
    case MaskFormat::Kind::Number:
        return appendNumber(result, value, format.width);
    case MaskFormat::Kind::DateTime:
        return appendDateTime(result, value, format);
    case MaskFormat::Kind::Unknown:
        break;
    }
    return false;
}

/// Expands the mask and hands each complaint about it, a text, to `complain`.
template<typename Complain>
QString expand(const QString &mask, const QList<QSharedPointer<FormatterSource>> &sources,
               const QVariantMap &extraValues, Complain complain)
{
    const auto parts = parsed(mask);
    if (parts->malformed)
        complain(QStringLiteral("the mask \"%1\" has a % that begins no placeholder, it is kept as "
                                "text")
                     .arg(mask));
    QString result;
    result.reserve(mask.size());
    for (const auto &piece : parts->pieces) {
        if (piece.name.isEmpty()) {
            result += piece.text;
            continue;
        }
        const auto length = result.size();
        const auto value = findValue(piece, sources, extraValues);
        if (value && value->isValid() && appendValue(result, *value, piece.format))
            continue;
        result.truncate(length);
        const auto *reason = !value              ? "there is nothing of that name"
                             : !value->isValid() ? "there is no such field"
                             : piece.format.kind == MaskFormat::Kind::Unknown
                                 ? "the format is unknown"
                                 : "the value is missing or does not fit the format";
        complain(
            QStringLiteral("%1 in a mask is left out: %2").arg(piece.text, QLatin1String(reason)));
    }
    return result;
}

} // namespace

SimpleFormatter::~SimpleFormatter() = default;

QString SimpleFormatter::format(const QString &mask,
                                const QList<QSharedPointer<FormatterSource>> &sources,
                                int /*flags*/, const QVariantMap &extraValues) const
{
    return expand(mask, sources, extraValues, [](const QString &complaint) {
        qCWarning(log, "%ls", qUtf16Printable(complaint));
    });
}

QStringList SimpleFormatter::complaints(const QString &mask,
                                        const QList<QSharedPointer<FormatterSource>> &sources) const
{
    QStringList complaints;
    expand(mask, sources, {},
           [&complaints](const QString &complaint) { complaints.append(complaint); });
    return complaints;
}
