#include "till/console/receipttext.h"

#include "till/console/texts.h"
#include "till/core/numbers.h"

#include <QStringList>

namespace till {

namespace {

constexpr int codeWidth = 13;
constexpr int nameWidth = 24;
constexpr int quantityWidth = 10;
constexpr int priceWidth = 10;
constexpr int sumWidth = 12;

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
             quantity.rightJustified(quantityWidth), price.rightJustified(priceWidth),
             sum.rightJustified(sumWidth));
}

QString heading(const DocumentHeader &header)
{
    const auto text = header.kind == DocumentHeader::sale
                          ? ConsoleText::tr("Sale %1, shift %2, shop %3, register %4, begun %5")
                          : ConsoleText::tr("Return %1, shift %2, shop %3, register %4, begun %5");
    return text.arg(header.num)
        .arg(header.shift)
        .arg(header.shopCode)
        .arg(header.cashCode)
        .arg(header.dateTimeBeg.toString(u"dd.MM.yyyy HH:mm:ss"));
}

QString discountText(const DocumentImpactDetail &discount)
{
    return ConsoleText::tr("discount, campaign %1, mode %2, source %3")
        .arg(discount.getCampaignCode())
        .arg(discount.getDiscountMode())
        .arg(discount.getImpactSource());
}

} // namespace

QString receiptText(const ReceiptView &receipt)
{
    const auto titles =
        row(QStringLiteral("#"), ConsoleText::tr("Code"), ConsoleText::tr("Name"),
            ConsoleText::tr("Quantity"), ConsoleText::tr("Price"), ConsoleText::tr("Sum"));
    const auto width = static_cast<int>(titles.size());
    const auto sumLine = [width](const QString &text, double sum) {
        return column(text, width - sumWidth) + moneyText(sum).rightJustified(sumWidth);
    };
    QStringList lines{heading(receipt.header), titles, QString(width, u'-')};
    for (const auto &position : receipt.positions) {
        lines.append(row(QString::number(position.number), position.code, position.name,
                         quantityText(position.quantity), moneyText(position.price),
                         moneyText(position.fullSum)));
        for (const auto &discount : position.discounts)
            lines.append(sumLine(QStringLiteral("     ") + discountText(discount),
                                 -discount.getDiscountSum()));
    }
    lines.append(QString(width, u'-'));
    lines.append(sumLine(ConsoleText::tr("Total"), receipt.total));
    lines.append(holderText(receipt));
    return lines.join(u'\n');
}

QString holderText(const ReceiptView &receipt)
{
    if (receipt.cardNumber.isEmpty())
        return ConsoleText::tr("No card.");
    if (!receipt.customer)
        return ConsoleText::tr("Card %1, holder unknown.").arg(receipt.cardNumber);
    const auto &customer = *receipt.customer;
    QStringList details{customer.getName(), customer.getPhoneNumber()};
    if (!customer.getEmail().isEmpty())
        details.append(customer.getEmail());
    details.append(customer.getSex() == Client::Sex::Male ? ConsoleText::tr("male")
                                                          : ConsoleText::tr("female"));
    if (const auto birthday = customer.getBirthday(); birthday.isValid())
        details.append(ConsoleText::tr("born %1").arg(birthday.toString(u"dd.MM.yyyy")));
    if (customer.hasOption(ClientOptions::ElectronicReceipt))
        details.append(ConsoleText::tr("electronic receipts"));
    return ConsoleText::tr("Card %1: %2.")
        .arg(receipt.cardNumber, details.join(QLatin1String(", ")));
}

} // namespace till
