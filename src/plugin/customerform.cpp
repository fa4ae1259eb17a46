#include "plugin/plugin.h"

#include <host/dialog.h>

#include <QMetaProperty>
#include <QRegularExpression>

namespace lmmindbox {

namespace {

/// Indexes of the sex field's options, which are not the values of `Client::Sex`.
constexpr int woman = 0;
constexpr int man = 1;

/// The fields' keys are the properties of `CustomerEdit`.
FormField makeField(const QString &key, FormFieldKind kind, const tr::Tr &label, int order)
{
    FormField field;
    field.key = key;
    field.kind = kind;
    field.label = label;
    field.order = order;
    return field;
}

FormField phoneField(const Customer &customer)
{
    auto field =
        makeField(QStringLiteral("phone"), FormFieldKind::Text,
                  {QStringLiteral("inputClientPhoneNumber"), QStringLiteral("Номер телефона")}, 0);
    field.inputMask = QStringLiteral("+7(999)-999-99-99;_");
    field.validator = QStringLiteral("\\+7\\([0-9]{3}\\)-[0-9]{3}-[0-9]{2}-[0-9]{2}");

    static const QRegularExpression russianPhone(QStringLiteral("^[+]?[78]?(?<phone>[0-9]{10})$"));
    const auto match = russianPhone.match(customer.mobilePhone);
    if (match.hasMatch()) {
        field.value = QStringLiteral("+7") + match.captured(QStringLiteral("phone"));
        field.editable = false;
    }
    return field;
}

FormField nameField(const Customer &customer)
{
    auto field =
        makeField(QStringLiteral("name"), FormFieldKind::Text,
                  {QStringLiteral("inputClientFullName"), QStringLiteral("ФИО клиента")}, 1);
    field.value = customer.firstName;
    field.keyboardDigits = false;
    return field;
}

FormField birthdayField(const Customer &customer)
{
    auto field =
        makeField(QStringLiteral("birthday"), FormFieldKind::Date,
                  {QStringLiteral("inputClientBirthDate"), QStringLiteral("Дата рождения")}, 2);
    const auto today = QDate::currentDate();
    field.minDate = today.addYears(-150);
    field.maxDate = today;
    field.value = customer.birthDate.toString(QStringLiteral("dd.MM.yyyy"));
    field.mandatory = false;
    return field;
}

FormField sexField(const Customer &customer)
{
    auto field = makeField(QStringLiteral("sex"), FormFieldKind::Choice,
                           {QStringLiteral("inputClientSex"), QStringLiteral("Пол")}, 2);
    field.options = {{QStringLiteral("inputClientFemale"), QStringLiteral("Женщина")},
                     {QStringLiteral("inputClientMale"), QStringLiteral("Мужчина")}};
    const auto male = customer.sex.compare(QLatin1String("male"), Qt::CaseInsensitive) == 0;
    field.value = QString::number(male ? man : woman);
    return field;
}

FormField emailField(const Customer &customer)
{
    auto field =
        makeField(QStringLiteral("email"), FormFieldKind::Text,
                  {QStringLiteral("inputClientEmail"), QStringLiteral("Электронная почта")}, 3);
    field.value = customer.email;
    field.mandatory = false;
    field.keyboardDigits = false;
    return field;
}

tr::Tr title(const Customer &customer)
{
    if (customer.checkStatus({ProcessingStatus::NotFound}))
        return {QStringLiteral("lmmindboxRegisterCustomeTitle"), QStringLiteral("Новый клиент")};
    return {QStringLiteral("lmmindboxEditCustomerTitle"),
            QStringLiteral("Редактирование анкетных данных клиента")};
}

CustomerEdit readAnswers(QVariantMap answers)
{
    CustomerEdit edit;
    // A cancelled form gives male; an answer without the sex gives female.
    const auto option = answers.isEmpty() ? man : answers.take(QStringLiteral("sex")).toInt();
    edit.sex = option == man ? Client::Sex::Male : Client::Sex::Female;

    const auto &meta = CustomerEdit::staticMetaObject;
    for (int i = 0; i < meta.propertyCount(); ++i) {
        const auto property = meta.property(i);
        const auto answer = answers.constFind(QLatin1String(property.name()));
        if (answer != answers.constEnd())
            property.writeOnGadget(&edit, *answer);
    }
    return edit;
}

} // namespace

CustomerEdit Plugin::showCustomerEdit(const Customer &shown) const
{
    FormRequest form;
    form.title = title(shown);
    form.cancellable = true;
    form.validates = true;
    form.fields = {phoneField(shown), nameField(shown), birthdayField(shown), sexField(shown),
                   emailField(shown)};
    return readAnswers(MockFactory<Dialog>::create()->showForm(form));
}

} // namespace lmmindbox
