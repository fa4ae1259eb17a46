#include "till/words/receipttext.h"

#include "till/words/figures.h"
#include "till/words/saletext.h"

#include <QStringList>

namespace till {

namespace {

using namespace Qt::StringLiterals;

constexpr int codeWidth = 13;
constexpr int nameWidth = 24;
constexpr int quantityWidth = 10;
constexpr int priceWidth = 10;
constexpr int sumWidth = 12;

/// The text padded or cut to the column's width.
QString column(const QString &text, int width)
{
    const auto line = oneLine(text);
    return line.size() > width ? line.left(width - 1) + u'…' : line.leftJustified(width);
}

QString row(const QString &number, const QString &code, const QString &name,
            const QString &quantity, const QString &price, const QString &sum)
{
    return u"%1 %2 %3 %4 %5 %6"_s.arg(
        number.rightJustified(4), column(code, codeWidth), column(name, nameWidth),
        quantity.rightJustified(quantityWidth), price.rightJustified(priceWidth),
        sum.rightJustified(sumWidth));
}

QString heading(const DocumentHeader &header)
{
    const auto text = header.kind == DocumentHeader::sale
                          ? SaleText::tr("Sale %1, shift %2, shop %3, register %4, begun %5")
                          : SaleText::tr("Return %1, shift %2, shop %3, register %4, begun %5");
    return text.arg(header.num)
        .arg(header.shift)
        .arg(header.shopCode)
        .arg(header.cashCode)
        .arg(header.dateTimeBeg.toString(u"dd.MM.yyyy HH:mm:ss"));
}

QString discountText(const DocumentImpactDetail &discount)
{
    return SaleText::tr("discount, campaign %1, mode %2, source %3")
        .arg(discount.getCampaignCode())
        .arg(discount.getDiscountMode())
        .arg(discount.getImpactSource());
}

} // namespace

QString receiptText(const ReceiptView &receipt)
{
    const auto titles = row(u"#"_s, SaleText::tr("Code"), SaleText::tr("Name"),
                            SaleText::tr("Quantity"), SaleText::tr("Price"), SaleText::tr("Sum"));
    const auto width = static_cast<int>(titles.size());
    const auto sumLine = [width](const QString &text, double sum) {
        return column(text, width - sumWidth) + moneyLabel(sum).rightJustified(sumWidth);
    };
    QStringList lines{heading(receipt.header), titles, QString(width, u'-')};
    for (const auto &position : receipt.positions) {
        lines.append(row(QString::number(position.number), position.code, position.name,
                         quantityLabel(position.quantity), moneyLabel(position.price),
                         moneyLabel(position.fullSum)));
        for (const auto &discount : position.discounts)
            lines.append(sumLine(u"     "_s + discountText(discount), -discount.getDiscountSum()));
    }
    lines.append(QString(width, u'-'));
    lines.append(sumLine(SaleText::tr("Total"), receipt.total));
    lines.append(holderText(receipt));
    return lines.join(u'\n');
}

QString holderText(const ReceiptView &receipt)
{
    if (receipt.cardNumber.isEmpty())
        return SaleText::tr("No card.");
    if (!receipt.customer)
        return SaleText::tr("Card %1, customer unknown.").arg(receipt.cardNumber);
    const auto &customer = *receipt.customer;
    QStringList details{customer.getName(), phoneLabel(customer.getPhoneNumber()),
                        customer.getEmail()};
    details.removeAll(QString());
    details.append(customer.getSex() == Client::Sex::Male ? SaleText::tr("male")
                                                          : SaleText::tr("female"));
    if (const auto birthday = customer.getBirthday(); birthday.isValid())
        details.append(SaleText::tr("born %1").arg(dateLabel(birthday)));
    if (customer.hasOption(ClientOptions::ElectronicReceipt))
        details.append(SaleText::tr("electronic receipts"));
    return SaleText::tr("Card %1: %2.").arg(receipt.cardNumber, oneLine(details.join(u", "_s)));
}

} // namespace till
