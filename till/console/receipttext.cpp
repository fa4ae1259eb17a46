#include "till/console/receipttext.h"

#include "till/core/numbers.h"

#include <host/abstractdocument.h>

#include <QStringList>

namespace till {

namespace {

constexpr int codeWidth = 14;
constexpr int nameWidth = 28;
constexpr int numberWidth = 12;

/// The text in a column of that width, cut when it is longer.
QString column(const QString &text, int width)
{
    return text.size() > width ? text.left(width - 1) + QChar(0x2026) : text.leftJustified(width);
}

QString row(const QString &number, const QString &code, const QString &name,
            const QString &quantity, const QString &price, const QString &sum)
{
    return QStringLiteral("%1 %2 %3 %4 %5 %6")
        .arg(number.rightJustified(4), column(code, codeWidth), column(name, nameWidth),
             quantity.rightJustified(numberWidth), price.rightJustified(numberWidth),
             sum.rightJustified(numberWidth));
}

QString discountText(const DocumentImpactDetail &impact)
{
    return QStringLiteral("discount, campaign %1, mode %2, source %3")
        .arg(impact.getCampaignCode())
        .arg(impact.getDiscountMode())
        .arg(impact.getImpactSource());
}

} // namespace

QString receiptText(const AbstractDocument &document)
{
    const auto &header = document.getHeader();
    const auto titles =
        row(QStringLiteral("#"), QStringLiteral("Code"), QStringLiteral("Name"),
            QStringLiteral("Quantity"), QStringLiteral("Price"), QStringLiteral("Sum"));
    const auto width = static_cast<int>(titles.size());
    QStringList lines;
    lines.append(QStringLiteral("%1 %2, shift %3, shop %4, register %5, begun %6")
                     .arg(header.kind == 1 ? QStringLiteral("Sale") : QStringLiteral("Return"))
                     .arg(header.num)
                     .arg(header.shift)
                     .arg(header.shopCode)
                     .arg(header.cashCode)
                     .arg(header.dateTimeBeg.toString(QStringLiteral("dd.MM.yyyy HH:mm:ss"))));
    lines.append(titles);
    lines.append(QString(width, u'-'));
    for (const auto &item : document.getGoodsItems()) {
        lines.append(row(QString::number(item->getPosnum()), item->getCode(), item->getName(),
                         quantityText(item->getQuantity()), moneyText(item->getPrice()),
                         moneyText(item->sumBeforeDiscounts())));
        for (const auto &impact : document.getImpactDetails(item->getPosnum()))
            lines.append((QStringLiteral("     ") + discountText(*impact))
                             .leftJustified(width - numberWidth) +
                         moneyText(-impact->getDiscountSum()).rightJustified(numberWidth));
    }
    lines.append(QString(width, u'-'));
    lines.append(QStringLiteral("Total").leftJustified(width - numberWidth) +
                 moneyText(document.getTotal()).rightJustified(numberWidth));
    lines.append(holderText(document));
    return lines.join(u'\n');
}

QString holderText(const AbstractDocument &document)
{
    const auto record = document.getCardRecord();
    if (!record)
        return QStringLiteral("No card.");
    const auto number = record->getNumber().toString();
    const auto client = record->getCard()->getClient();
    if (!client)
        return QStringLiteral("Card %1, holder unknown.").arg(number);
    QStringList details{client->getName(), client->getPhoneNumber()};
    if (!client->getEmail().isEmpty())
        details.append(client->getEmail());
    details.append(client->getSex() == Client::Sex::Male ? QStringLiteral("male")
                                                         : QStringLiteral("female"));
    if (client->getBirthday().isValid())
        details.append(QStringLiteral("born %1").arg(
            client->getBirthday().toString(QStringLiteral("dd.MM.yyyy"))));
    if (client->hasOption(ClientOptions::ElectronicReceipt))
        details.append(QStringLiteral("electronic receipts"));
    return QStringLiteral("Card %1: %2.").arg(number, details.join(QLatin1String(", ")));
}

} // namespace till
