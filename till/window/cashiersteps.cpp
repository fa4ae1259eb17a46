// The cashier's steps, by button or key.
#include "till/core/numbers.h"
#include "till/core/sale.h"
#include "till/core/settingtable.h"
#include "till/core/till.h"
#include "till/window/formdialog.h"
#include "till/window/mainwindow.h"
#include "till/words/figures.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QTableView>

namespace till {

namespace {

using namespace Qt::StringLiterals;

const auto pricePattern = u"[0-9]{1,7}([.,][0-9]{1,2})?"_s;
const auto sumPattern = u"(?![0.,]*$)[0-9]{1,9}([.,][0-9]{1,2})?"_s;
const auto quantityPattern = u"(?![0.,]*$)[0-9]{1,5}([.,][0-9]{1,3})?"_s;

FormField field(const char *key, const QString &label, const QString &pattern, const QString &hint)
{
    FormField field;
    field.key = QLatin1StringView(key);
    field.kind = FormFieldKind::Text;
    field.label = {{}, label};
    field.validator = pattern;
    field.hint = hint;
    return field;
}

/// A number that the form's validator has accepted.
double numberIn(const QVariantMap &answers, QLatin1StringView key, int decimals)
{
    return parseDecimal(answers.value(key).toString(), decimals, Sale::maximumSum).value_or(0);
}

} // namespace

/// Sells the scanned code, or passes it to the open dialog.
void MainWindow::takeScan(const QString &code)
{
    if (auto *const dialog = MessageDialog::onTop(*this))
        return dialog->takeScan(code);
    if (!isOpen || isLeaving) {
        QApplication::beep();
        return;
    }
    // "3*" and a scan sell three.
    const auto isQuantity = goodsLine->text().trimmed().endsWith(u'*');
    sellEntry(isQuantity ? goodsLine->text() + code : code);
    if (isQuantity)
        goodsLine->clear();
}

void MainWindow::sellTyped()
{
    const auto typed = goodsLine->text();
    goodsLine->clear();
    if (!typed.trimmed().isEmpty())
        sellEntry(typed);
}

void MainWindow::sellEntry(const QString &typed)
{
    noteUnknown({});
    const auto entry = parseGoodsEntry(typed);
    if (!entry) {
        tell(tr("\"%1\" is neither a code nor a quantity and a code, such as 3*4601.").arg(typed),
             true);
        return;
    }
    const auto found = goods.goods.constFind(entry->code);
    if (found == goods.goods.constEnd()) {
        noteUnknown(entry);
        return;
    }
    askAboutMuch(entry->quantity, found->price, found->name,
                 [this, found = *found, quantity = entry->quantity] {
                     sell(tr("Selling %1").arg(found.name), [=](Sale &sale) {
                         sale.add(found.code, found.name, found.price, quantity);
                     });
                 });
}

/// Shows beside the line for goods that no goods have the code; hides that for no entry.
void MainWindow::noteUnknown(const std::optional<GoodsEntry> &entry)
{
    unknown = entry;
    unknownRow->setVisible(entry.has_value());
    if (!entry)
        return;
    unknownText->setText(tr("No goods have the code %1.").arg(entry->code));
    QApplication::beep();
}

/// Sells under an unknown code after asking the cashier for name and price.
void MainWindow::sellUnknown()
{
    if (!unknown)
        return;
    auto name = field("name", tr("Name"), {}, {});
    name.keyboardDigits = false;
    ask(tr("Unknown code %1").arg(unknown->code), tr("Enter the name and the price to sell it."),
        {name, field("price", tr("Price"), pricePattern, tr("such as 89.90"))},
        [this, entry = *unknown](const QVariantMap &answers) {
            const auto called = answers.value("name"_L1).toString();
            const auto price = numberIn(answers, "price"_L1, 2);
            noteUnknown({});
            askAboutMuch(entry.quantity, price, called, [=, this] {
                sell(tr("Selling %1").arg(called),
                     [=](Sale &sale) { sale.add(entry.code, called, price, entry.quantity); });
            });
        });
}

/// Asks before a step with an unusually large number.
void MainWindow::askAboutMuch(double quantity, double price, const QString &name,
                              const Step &accepted)
{
    if (quantity > settingNumber("Till:askQuantity"_L1))
        warn(tr("Sell %1 pieces?").arg(quantityLabel(quantity)), name, tr("Sell"), accepted);
    else if (price > settingNumber("Till:askPrice"_L1))
        warn(tr("Sell at the price of %1?").arg(moneyLabel(price)), name, tr("Sell"), accepted);
    else
        accepted();
}

void MainWindow::identify()
{
    auto phone = field("phone", tr("Customer's phone"), {}, {});
    phone.inputMask = settingText("Till:phoneMask"_L1);
    ask(tr("Customer"), {}, {phone}, [this](const QVariantMap &answers) {
        auto number = answers.value("phone"_L1).toString();
        number.removeIf([](QChar character) { return !character.isDigit(); });
        presenter.setAbout(phoneLabel(number));
        sell(tr("Looking for the customer"), [number](Sale &sale) { sale.enterCard(number); });
    });
}

void MainWindow::changeQuantity()
{
    const auto position = selected();
    if (!position)
        return;
    auto asked =
        field("quantity", tr("Quantity"), quantityPattern, tr("up to three decimals: 0.350"));
    asked.value = quantityLabel(position->quantity);
    ask(tr("Quantity"), position->name, {asked},
        [this, number = position->number, name = position->name](const QVariantMap &answers) {
            const auto quantity = numberIn(answers, "quantity"_L1, 3);
            askAboutMuch(quantity, 0, name, [=, this] {
                sell(tr("Changing the quantity"),
                     [=](Sale &sale) { sale.changeQuantity(number, quantity); });
            });
        });
}

void MainWindow::discount()
{
    const auto position = selected();
    if (!position)
        return;
    auto promotion = field("campaign", tr("Promotion number"), u"[0-9]{1,9}"_s, tr("digits only"));
    promotion.value = u"1"_s;
    ask(tr("Discount"), tr("%1, price %2").arg(position->name, moneyLabel(position->sum)),
        {field("sum", tr("Discount amount"), sumPattern, tr("such as 10.50")), promotion},
        [this, number = position->number](const QVariantMap &answers) {
            const auto sum = numberIn(answers, "sum"_L1, 2);
            const auto campaign = answers.value("campaign"_L1).toInt();
            sell(tr("Giving the discount"),
                 [=](Sale &sale) { sale.discount(number, sum, campaign, 0, 0); });
        });
}

void MainWindow::remove()
{
    if (const auto position = selected())
        warn(tr("Remove position %1?").arg(position->number),
             tr("%1, %2").arg(position->name, moneyLabel(position->sum)), tr("Remove"),
             [this, number = position->number] {
                 sell(tr("Removing the position"), [=](Sale &sale) { sale.remove(number); });
             });
}

void MainWindow::abandon()
{
    if (receipt)
        warn(tr("Cancel receipt %1?").arg(receipt->header.num),
             tr("The total is %1. None of the goods will be sold.").arg(moneyLabel(model.total())),
             tr("Cancel the receipt"),
             [this] { sell(tr("Cancelling the receipt"), [](Sale &sale) { sale.cancel(); }); });
}

/// Adds a step of the sale behind the waiting steps.
void MainWindow::sell(const QString &meaning, const std::function<void(Sale &)> &step)
{
    if (isLeaving)
        return;
    tell({});
    noteUnknown({});
    till.take(meaning, [step](Till &till) { step(till.sale()); });
}

/// Asks for a step's numbers and names.
void MainWindow::ask(const QString &title, const QString &text, const QList<FormField> &fields,
                     const std::function<void(const QVariantMap &)> &accepted)
{
    auto *const dialog = new FormDialog(*this, {title, text, tr("Cancel")}, fields);
    connect(dialog, &QDialog::accepted, this, [=] { accepted(dialog->answers()); });
    dialog->appear();
}

/// Asks before a step that cannot be undone. Enter means "back".
void MainWindow::warn(const QString &title, const QString &text, const QString &yes,
                      const Step &accepted)
{
    auto *const dialog =
        new MessageDialog(*this, MessageDialog::Kind::Warning, {title, text, tr("Back"), yes});
    connect(dialog, &QDialog::accepted, this, accepted);
    dialog->appear();
}

/// The position selected in the table, for the next step.
std::optional<PositionView> MainWindow::selected() const
{
    return model.position(table->currentIndex().row());
}

} // namespace till
