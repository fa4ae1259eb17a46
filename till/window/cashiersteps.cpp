// What the cashier can do, by button or key.
#include "till/core/numbers.h"
#include "till/core/sale.h"
#include "till/core/till.h"
#include "till/window/formdialog.h"
#include "till/window/inputdialog.h"
#include "till/window/mainwindow.h"
#include "till/window/refuseddialog.h"
#include "till/window/texts.h"

#include <QLineEdit>
#include <QTableView>

namespace till {

namespace {

const auto pricePattern = QStringLiteral("[0-9]{1,7}([.,][0-9]{1,2})?");
const auto sumPattern = QStringLiteral("(?![0.,]*$)[0-9]{1,9}([.,][0-9]{1,2})?");
const auto quantityPattern = QStringLiteral("(?![0.,]*$)[0-9]{1,5}([.,][0-9]{1,3})?");

tr::Tr text(const QString &words)
{
    return {{}, words};
}

FormField field(const char *key, const QString &label, const QString &pattern, const QString &hint)
{
    FormField field;
    field.key = QLatin1String(key);
    field.kind = FormFieldKind::Text;
    field.label = text(label);
    field.validator = pattern;
    field.hint = hint;
    return field;
}

FormField quantityField(double quantity)
{
    auto asked = field("quantity", WindowText::tr("Quantity"), quantityPattern,
                       WindowText::tr("up to three decimals: 0.350"));
    asked.value = quantityLabel(quantity);
    return asked;
}

FormRequest form(const QString &title, const QString &subtitle, const QList<FormField> &fields)
{
    FormRequest request;
    request.title = text(title);
    request.subtitle = text(subtitle);
    request.fields = fields;
    request.validates = true;
    request.compact = true;
    return request;
}

/// A number that the form's validator let through.
double numberIn(const FormDialog &form, const char *key, int decimals)
{
    return parseDecimal(form.answers().value(QLatin1String(key)).toString().trimmed(), decimals,
                        Sale::maximumSum)
        .value_or(0);
}

} // namespace

void MainWindow::sellTyped()
{
    const auto typed = goodsLine->text();
    goodsLine->clear();
    if (typed.trimmed().isEmpty())
        return;
    const auto entry = parseGoodsEntry(typed);
    if (!entry) {
        tell(tr("\"%1\" is neither a code nor a quantity and a code, such as 3*4601.").arg(typed),
             true);
        return;
    }
    const auto found = goods->find(entry->code);
    if (!found) {
        sellUnknown(*entry);
        return;
    }
    sell([found = *found, quantity = entry->quantity](Sale &sale) {
        sale.add(found.code, found.name, found.price, quantity);
    });
}

/// Says that nothing has the code, and sells it all the same if the cashier knows what it is.
void MainWindow::sellUnknown(const GoodsEntry &entry)
{
    auto name = field("name", tr("Name"), {}, {});
    name.keyboardDigits = false;
    auto *const dialog = new FormDialog(
        *this, form(tr("Unknown code %1").arg(entry.code),
                    tr("No goods have this code. Scan again; or say what it is, to sell it all "
                       "the same."),
                    {name, field("price", tr("Price"), pricePattern, tr("such as 89.90")),
                     quantityField(entry.quantity)}));
    open(dialog, [this, dialog, code = entry.code] {
        const auto called = dialog->answers().value(QStringLiteral("name")).toString();
        const auto price = numberIn(*dialog, "price", 2);
        const auto quantity = numberIn(*dialog, "quantity", 3);
        sell([=](Sale &sale) { sale.add(code, called, price, quantity); });
    });
}

void MainWindow::identify()
{
    InputTextRequest request;
    request.title = text(tr("Customer"));
    request.message = text(tr("Phone of the customer"));
    request.inputMask = setup.phoneMask;
    request.validator = QStringLiteral(".+");
    request.numeric = 1;
    request.okText = text(tr("Find"));
    auto *const dialog = new InputDialog(*this, request);
    connect(dialog, &InputDialog::answered, this, [this, dialog](QString phone) {
        dialog->dispose();
        phone.removeIf([](QChar character) { return !character.isDigit(); });
        sell([phone](Sale &sale) { sale.enterCard(phone); });
    });
    dialog->appear();
}

void MainWindow::changeQuantity()
{
    const auto position = selected();
    if (!position)
        return;
    auto *const dialog = new FormDialog(
        *this, form(tr("Quantity"), position->name, {quantityField(position->quantity)}));
    open(dialog, [this, dialog, number = position->number] {
        const auto quantity = numberIn(*dialog, "quantity", 3);
        sell([=](Sale &sale) { sale.changeQuantity(number, quantity); });
    });
}

void MainWindow::discount()
{
    const auto position = selected();
    if (!position)
        return;
    auto promotion = field("campaign", tr("Number of the promotion"), QStringLiteral("[0-9]{1,9}"),
                           tr("digits only"));
    promotion.value = campaign;
    auto *const dialog = new FormDialog(
        *this,
        form(tr("Discount"), tr("%1, costs %2").arg(position->name, moneyLabel(position->sum)),
             {field("sum", tr("Cheaper by"), sumPattern, tr("such as 10.50")), promotion}));
    open(dialog, [this, dialog, number = position->number] {
        const auto sum = numberIn(*dialog, "sum", 2);
        campaign = dialog->answers().value(QStringLiteral("campaign")).toString();
        sell([=, code = campaign.toInt()](Sale &sale) { sale.discount(number, sum, code, 0, 0); });
    });
}

void MainWindow::remove()
{
    if (const auto position = selected())
        sell([number = position->number](Sale &sale) { sale.remove(number); });
}

void MainWindow::undoLast()
{
    if (const auto step = undo.begin())
        till.take([step = *step](Till &till) { UndoList::takeBack(till.sale(), step); },
                  [this] {
                      undo.end();
                      refresh();
                  });
}

void MainWindow::abandon()
{
    if (receipt)
        ask(tr("Abandon receipt %1, %2? Nothing of it is sold then.")
                .arg(receipt->header.num)
                .arg(moneyLabel(model.total())),
            tr("Abandon"), [this] { sell([](Sale &sale) { sale.cancel(); }); });
}

void MainWindow::closeShift()
{
    ask(tr("Close the shift? The next one begins at once."), tr("Close"),
        [this] { sell([](Sale &sale) { sale.closeShift(); }); });
}

void MainWindow::showRefused()
{
    auto *const dialog = new RefusedDialog(*this, looked.refused);
    open(dialog, [this, dialog] {
        sell([number = dialog->chosen()](Sale &sale) { sale.report(number); });
    });
}

void MainWindow::leave()
{
    if (isLeaving)
        return;
    isLeaving = true;
    refresh();
    tell(tr("The till is being closed ..."));
    presenter.setRefusing(true);
    till.end(false);
}

void MainWindow::stay(const QList<int> &receipts)
{
    isLeaving = false;
    presenter.setRefusing(false);
    QStringList numbers;
    for (const auto number : receipts)
        numbers.append(QString::number(number));
    ask(tr("Not on the disk: %n receipt(s), %1. They are lost when the till ends now. Make room on "
           "the disk first.",
           nullptr, static_cast<int>(numbers.size()))
            .arg(numbers.join(QLatin1String(", "))),
        tr("Leave and lose them"), [this] {
            presenter.setRefusing(true);
            till.end(true);
        });
    refresh();
}

/// Has the sale take a step, behind those asked for before.
void MainWindow::sell(const std::function<void(Sale &)> &step)
{
    tell({});
    till.take([step](Till &till) { step(till.sale()); });
}

void MainWindow::open(DialogFrame *dialog, const std::function<void()> &accepted)
{
    connect(dialog, &QDialog::accepted, this, accepted);
    dialog->appear();
}

void MainWindow::ask(const QString &question, const QString &yes,
                     const std::function<void()> &accepted)
{
    open(new MessageDialog(*this, MessageDialog::Kind::Question, question, yes, tr("Back")),
         accepted);
}

/// The position that the next step is about.
std::optional<PositionView> MainWindow::selected() const
{
    return model.position(table->currentIndex().row());
}

} // namespace till
