#include "till/window/goodsfile.h"

#include "till/core/numbers.h"
#include "till/core/sale.h"
#include "till/window/mainwindow.h"

#include <QFile>
#include <QRegularExpression>
#include <QStringDecoder>

namespace till {

namespace {

using namespace Qt::StringLiterals;

/// The line without its end; nothing when it is not UTF-8.
std::optional<QString> decode(const QByteArray &line)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(line);
    return decoder.hasError() ? std::nullopt : std::optional(text.trimmed());
}

/// A field of a line, behind its separator.
QRegularExpression fieldPattern(QChar separator)
{
    return QRegularExpression(
        uR"re((?:^|%1)\s*(?:"((?:[^"]|"")*)"\s*(?=%1|$)|([^"%1]*)))re"_s.arg(separator));
}

/// The fields of a line; none for an unpaired quotation mark.
QStringList split(const QString &line, const QRegularExpression &field)
{
    QStringList fields;
    qsizetype end = 0;
    for (const auto &match : field.globalMatch(line)) {
        if (match.capturedStart() != end)
            return {};
        end = match.capturedEnd();
        const auto quoted = match.captured(1).replace(uR"("")"_s, uR"(")"_s);
        fields.append((quoted + match.captured(2)).trimmed());
    }
    return end == line.size() ? fields : QStringList();
}

/// Adds the goods of a line's fields. \return What is wrong with the line; empty when nothing is.
QString add(const QString &code, const QString &name, const QString &price,
            QHash<QString, Goods> &goods)
{
    const auto number = parseDecimal(price, 2, Sale::maximumPrice);
    if (code.isEmpty() || name.isEmpty())
        return code.isEmpty() ? MainWindow::tr("no code") : MainWindow::tr("no name");
    if (!number)
        return MainWindow::tr("\"%1\" is no price").arg(price);
    if (goods.contains(code))
        return MainWindow::tr("the code %1 is there already").arg(code);
    goods.insert(code, {code, name, *number});
    return {};
}

} // namespace

GoodsFile readGoods(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {{}, {MainWindow::tr("The file cannot be read: %1").arg(file.errorString())}};
    const auto head = decode(file.readLine()).value_or(QString()).toLower();
    const auto field = fieldPattern(head.contains(u';') ? u';' : u',');
    const auto names = split(head, field);
    for (const auto &name : {u"code"_s, u"name"_s, u"price"_s}) {
        if (!names.contains(name))
            return {
                {},
                {MainWindow::tr("Line 1: the columns code, name and price are expected; \"%1\" is "
                                "missing")
                     .arg(name)}};
    }
    const auto code = names.indexOf(u"code"_s);
    const auto name = names.indexOf(u"name"_s);
    const auto price = names.indexOf(u"price"_s);
    GoodsFile read;
    for (int number = 2; !file.atEnd(); ++number) {
        const auto line = decode(file.readLine());
        if (line && line->isEmpty())
            continue;
        const auto fields = line ? split(*line, field) : QStringList();
        auto problem = MainWindow::tr("not UTF-8");
        if (line)
            problem = fields.isEmpty() ? MainWindow::tr("a quotation mark is missing")
                                       : add(fields.value(code), fields.value(name),
                                             fields.value(price), read.goods);
        if (!problem.isEmpty())
            read.problems.append(MainWindow::tr("Line %1: %2").arg(number).arg(problem));
    }
    return read;
}

std::optional<GoodsEntry> parseGoodsEntry(const QString &typed)
{
    const auto times = typed.indexOf(u'*');
    GoodsEntry entry{typed.mid(times + 1).trimmed()};
    if (entry.code.isEmpty() || entry.code.contains(u'*'))
        return std::nullopt;
    if (times >= 0)
        entry.quantity =
            parseDecimal(typed.left(times).trimmed(), 3, Sale::maximumQuantity).value_or(0);
    return entry.quantity > 0 ? std::optional(entry) : std::nullopt;
}

} // namespace till
