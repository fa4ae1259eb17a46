#include "till/window/customerpanel.h"

#include "till/window/named.h"
#include "till/window/texts.h"

#include <QFormLayout>
#include <QLabel>

namespace till {

CustomerPanel::CustomerPanel(QWidget *parent)
    : QFrame(parent)
    , name(named(new QLabel(this), QStringLiteral("customerName")))
    , details(new QWidget(this))
{
    named(this, QStringLiteral("customer"), tr("Customer"));
    name->setWordWrap(true);
    auto *const form = new QFormLayout(details);
    form->setContentsMargins(0, 0, 0, 0);
    form->setHorizontalSpacing(10);
    phone = addRow(QStringLiteral("customerPhone"), tr("Phone"));
    email = addRow(QStringLiteral("customerEmail"), tr("E-mail"));
    birthday = addRow(QStringLiteral("customerBirthday"), tr("Birthday"));
    receipts = addRow(QStringLiteral("customerReceipts"), tr("Receipts"));
    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(12, 10, 12, 10);
    column->addWidget(name);
    column->addWidget(details);
    show({});
}

void CustomerPanel::show(const std::optional<Client> &customer)
{
    details->setVisible(customer.has_value());
    if (!customer) {
        name->setText(tr("No customer. F2 finds one by the phone."));
        return;
    }
    const auto orNone = [](const QString &text) { return text.isEmpty() ? tr("not given") : text; };
    name->setText(customer->getName());
    phone->setText(tr("%1\nconfirmed").arg(phoneLabel(customer->getPhoneNumber())));
    // A long address may be broken behind its "@".
    email->setText(orNone(customer->getEmail().replace(u'@', QStringLiteral("@\u200b"))));
    birthday->setText(orNone(dateLabel(customer->getBirthday())));
    receipts->setText(customer->hasOption(ClientOptions::ElectronicReceipt) ? tr("electronic")
                                                                            : tr("on paper"));
}

QLabel *CustomerPanel::addRow(const QString &objectName, const QString &title)
{
    auto *const value = named(new QLabel(details), objectName, title);
    value->setWordWrap(true);
    static_cast<QFormLayout *>(details->layout())
        ->addRow(named(new QLabel(title, details), QStringLiteral("label")), value);
    return value;
}

} // namespace till
