#include "till/window/goodsfile.h"

#include "till/core/numbers.h"
#include "till/core/sale.h"

#include <QFile>
#include <QStringDecoder>
#include <QStringList>

#include <algorithm>

namespace till {

namespace {

constexpr QChar quote = u'"';

/// The fields of a line; nothing when its quotation marks do not pair.
std::optional<QStringList> split(const QString &line, QChar separator)
{
    QStringList fields(QString{});
    bool quoted = false;
    for (qsizetype i = 0; i < line.size(); ++i) {
        const auto character = line.at(i);
        const auto isDoubled =
            quoted && character == quote && i + 1 < line.size() && line.at(i + 1) == quote;
        if (character == quote && !isDoubled)
            quoted = !quoted;
        else if (character == separator && !quoted)
            fields.append(QString());
        else
            fields.last().append(character);
        i += isDoubled ? 1 : 0;
    }
    for (auto &field : fields)
        field = field.trimmed();
    return quoted ? std::nullopt : std::optional(fields);
}

std::optional<QString> decode(QByteArray bytes)
{
    while (bytes.endsWith('\n') || bytes.endsWith('\r'))
        bytes.chop(1);
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder(bytes);
    return decoder.hasError() ? std::nullopt : std::optional(text);
}

} // namespace

QList<GoodsFile::BadLine> GoodsFile::load(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {{0, Problem::Unreadable, file.errorString()}};
    Columns columns;
    if (const auto missing = missingColumn(decode(file.readLine()).value_or(QString()), columns))
        return {{1, Problem::NoHead, *missing}};
    QList<BadLine> badLines;
    for (int number = 2; !file.atEnd(); ++number) {
        const auto line = decode(file.readLine());
        if (line && line->trimmed().isEmpty())
            continue;
        auto bad = line ? take(*line, columns) : BadLine{0, Problem::NotText};
        if (bad) {
            bad->line = number;
            badLines.append(*bad);
        }
    }
    return badLines;
}

std::optional<Goods> GoodsFile::find(const QString &code) const
{
    const auto found = goods.constFind(code);
    return found == goods.constEnd() ? std::nullopt : std::optional(*found);
}

std::optional<QString> GoodsFile::missingColumn(const QString &head, Columns &columns)
{
    columns.separator = head.contains(u';') ? u';' : u',';
    const auto names = split(head.toLower(), columns.separator).value_or(QStringList());
    const auto find = [&](const QString &name, qsizetype &column) {
        column = names.indexOf(name);
        return column < 0 ? std::optional(name) : std::nullopt;
    };
    auto missing = find(QStringLiteral("code"), columns.code);
    if (!missing)
        missing = find(QStringLiteral("name"), columns.name);
    return missing ? missing : find(QStringLiteral("price"), columns.price);
}

std::optional<GoodsFile::BadLine> GoodsFile::take(const QString &line, const Columns &columns)
{
    const auto fields = split(line, columns.separator);
    if (!fields)
        return BadLine{0, Problem::NotText};
    const Goods item{fields->value(columns.code), fields->value(columns.name)};
    if (item.code.isEmpty())
        return BadLine{0, Problem::NoCode};
    if (item.name.isEmpty())
        return BadLine{0, Problem::NoName};
    const auto priceText = fields->value(columns.price);
    const auto price = parseDecimal(priceText, 2, Sale::maximumPrice);
    if (!price)
        return BadLine{0, Problem::BadPrice, priceText};
    if (goods.contains(item.code))
        return BadLine{0, Problem::CodeTwice, item.code};
    goods.insert(item.code, {item.code, item.name, *price});
    return std::nullopt;
}

std::optional<GoodsEntry> parseGoodsEntry(const QString &typed)
{
    const auto times = typed.indexOf(u'*');
    GoodsEntry entry{typed.mid(times + 1).trimmed()};
    if (entry.code.isEmpty() || entry.code.contains(u'*'))
        return std::nullopt;
    if (times < 0)
        return entry;
    const auto quantity =
        parseDecimal(typed.left(times).trimmed(), 3, Sale::maximumQuantity).value_or(0);
    entry.quantity = quantity;
    return quantity > 0 ? std::optional(entry) : std::nullopt;
}

} // namespace till
