#include "till/window/customerpanel.h"

#include "till/window/texts.h"

#include <QGridLayout>
#include <QLabel>

namespace till {

CustomerPanel::CustomerPanel(QWidget *parent)
    : QFrame(parent)
    , name(new QLabel(this))
    , details(new QWidget(this))
    , grid(new QGridLayout(details))
    , phone(addRow(QStringLiteral("customerPhone"), tr("Phone")))
    , email(addRow(QStringLiteral("customerEmail"), tr("E-mail")))
    , birthday(addRow(QStringLiteral("customerBirthday"), tr("Birthday")))
    , receipts(addRow(QStringLiteral("customerReceipts"), tr("Receipts")))
{
    setObjectName(QStringLiteral("customer"));
    setAccessibleName(tr("Customer"));
    name->setObjectName(QStringLiteral("customerName"));
    name->setWordWrap(true);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setColumnStretch(1, 1);
    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(12, 10, 12, 10);
    column->addWidget(name);
    column->addWidget(details);
    show({});
}

void CustomerPanel::show(const std::optional<CustomerView> &customer)
{
    details->setVisible(customer.has_value());
    if (!customer) {
        name->setText(tr("No customer. F2 finds one by the phone."));
        return;
    }
    name->setText(customer->name);
    phone->setText(tr("%1\nconfirmed").arg(phoneLabel(customer->phone)));
    // A long address may be broken behind its "@".
    auto address = customer->email;
    address.replace(u'@', QStringLiteral("@\u200b"));
    email->setText(address.isEmpty() ? tr("not given") : address);
    birthday->setText(customer->birthday.isValid() ? dateLabel(customer->birthday)
                                                   : tr("not given"));
    receipts->setText(customer->electronicReceipts ? tr("electronic") : tr("on paper"));
}

QLabel *CustomerPanel::addRow(const QString &objectName, const QString &title)
{
    const auto row = grid->rowCount();
    auto *const label = new QLabel(title, details);
    label->setObjectName(QStringLiteral("label"));
    auto *const value = new QLabel(details);
    value->setObjectName(objectName);
    value->setAccessibleName(title);
    value->setWordWrap(true);
    grid->addWidget(label, row, 0, Qt::AlignTop);
    grid->addWidget(value, row, 1);
    return value;
}

} // namespace till
