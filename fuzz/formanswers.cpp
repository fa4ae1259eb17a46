#include "fuzz/fuzzing.h"

#include "till/console/console.h"
#include "till/console/consolepresenter.h"
#include "till/console/inputmask.h"

#include <sstream>

namespace {

const tr::Tr label(QString(), QStringLiteral("label"));
const auto phoneMask = QStringLiteral("+7(999)-999-99-99;_");

FormField field(const QString &key, FormFieldKind kind, bool mandatory)
{
    FormField field;
    field.key = key;
    field.kind = kind;
    field.label = label;
    field.mandatory = mandatory;
    return field;
}

FormRequest makeForm(const QString &mask)
{
    auto shaped = field(QStringLiteral("shaped"), FormFieldKind::Text, false);
    shaped.inputMask = mask;
    shaped.value = mask;
    auto phone = field(QStringLiteral("phone"), FormFieldKind::Text, true);
    phone.inputMask = phoneMask;
    auto date = field(QStringLiteral("date"), FormFieldKind::Date, false);
    date.minDate = QDate(1900, 1, 1);
    date.maxDate = QDate(2024, 2, 29);
    date.value = mask;
    auto choice = field(QStringLiteral("choice"), FormFieldKind::Choice, true);
    choice.options = {label, label};
    choice.value = mask;
    auto fixed = choice;
    fixed.key = QStringLiteral("fixed");
    fixed.editable = false;
    FormRequest form;
    form.fields = {shaped, phone, date, choice, fixed};
    return form;
}

void checkAnswers(const QVariantMap &answers, const FormRequest &form)
{
    if (answers.isEmpty())
        return;
    require(answers.value(QStringLiteral("phone")).toString().size() ==
            till::InputMask(phoneMask).outline().size());
    const auto date = answers.value(QStringLiteral("date")).toDate();
    const auto &limits = form.fields.at(2);
    require(date.isNull() || (date >= limits.minDate && date <= limits.maxDate));
    const auto choice = answers.value(QStringLiteral("choice"), -1).toInt();
    require(choice == 0 || choice == 1);
}

} // namespace

/// The first line is an input mask, the others are what the cashier types, until it ends.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    std::ostringstream output;
    till::ConsoleInput input(descriptorOf({data, size}));
    till::Console console(input, output);
    till::ConsolePresenter presenter(console);

    const auto form = makeForm(console.readCommand({}).text);
    InputTextRequest request;
    request.inputMask = form.fields.constFirst().inputMask;
    request.maximumLength = 40;
    while (console.readCommand({}).kind != till::ConsoleLine::Kind::End) {
        checkAnswers(presenter.showForm(form), form);
        require(presenter.showInputText(request).getData().size() <= request.maximumLength);
        presenter.showChoice(label, label, label);
    }
    require(presenter.showForm(form).isEmpty());
    require(presenter.showInputText(request).canceled());
    return 0;
}
