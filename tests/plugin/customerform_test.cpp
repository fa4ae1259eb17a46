#include "workflow.h"

namespace lmmindbox {
namespace {

class CustomerForm : public WorkflowTest
{
protected:
    FormRequest shownFor(const Customer &customer)
    {
        around.inputs = {QVariant()};
        (void)plugin.showCustomerEdit(customer);
        return around.form;
    }
};

TEST_F(CustomerForm, ShowsFiveFieldsPrefilledFromTheCustomer)
{
    auto customer = customerIn(known);
    customer.mobilePhone = u"89161234567"_s;
    customer.birthDate = QDate(1990, 3, 5);
    customer.sex = u"MALE"_s;

    const auto before = QDate::currentDate();
    const auto form = shownFor(customer);
    const auto after = QDate::currentDate();

    EXPECT_EQ(textOf(form.title),
              u"lmmindboxEditCustomerTitle/Редактирование анкетных данных клиента"_s);
    EXPECT_TRUE(form.cancellable && !form.compact && form.validates && !form.readOnly);
    EXPECT_EQ(form.columns, 1);
    QStringList fields;
    for (const auto &field : form.fields) {
        fields += u"%1 %2 %3/%4 '%5' %6%7%8 %9"_s.arg(field.key)
                      .arg(static_cast<int>(field.kind))
                      .arg(field.label.getId(), field.label.getDefaultText(), field.value)
                      .arg(field.mandatory)
                      .arg(field.editable)
                      .arg(field.keyboardDigits)
                      .arg(field.order);
    }
    EXPECT_EQ(fields, QStringList({
                          u"phone 10 inputClientPhoneNumber/Номер телефона '+79161234567' 101 0"_s,
                          u"name 10 inputClientFullName/ФИО клиента 'Анна' 110 1"_s,
                          u"birthday 14 inputClientBirthDate/Дата рождения '05.03.1990' 011 2"_s,
                          u"sex 2 inputClientSex/Пол '1' 111 2"_s,
                          u"email 10 inputClientEmail/Электронная почта 'anna@example.org' 010 3"_s,
                      }));
    EXPECT_EQ(form.fields[0].inputMask, u"+7(999)-999-99-99;_"_s);
    EXPECT_EQ(form.fields[0].validator, uR"(\+7\([0-9]{3}\)-[0-9]{3}-[0-9]{2}-[0-9]{2})"_s);
    EXPECT_THAT(form.fields[2].maxDate, testing::AnyOf(before, after));
    EXPECT_EQ(form.fields[2].minDate, form.fields[2].maxDate.addYears(-150));
    EXPECT_EQ(form.fields[3].options, tr::TrList({{u"inputClientFemale"_s, u"Женщина"_s},
                                                  {u"inputClientMale"_s, u"Мужчина"_s}}));

    const auto empty = shownFor(customerIn(notFound));
    EXPECT_EQ(textOf(empty.title), u"lmmindboxRegisterCustomeTitle/Новый клиент"_s);
    EXPECT_EQ(empty.fields[3].value, u"0"_s);
    EXPECT_EQ(empty.fields[2].value, QString());
}

TEST_F(CustomerForm, PrefillsOnlyAPhoneOfTenDigitsWithItsUsualPrefixes)
{
    const auto prefilled = [this](const char *phone) {
        Customer customer;
        customer.mobilePhone = QString::fromUtf8(phone);
        const auto field = shownFor(customer).fields[0];
        EXPECT_EQ(field.editable, field.value.isEmpty());
        return field.value;
    };
    for (const auto *phone : {"79161234567", "+79161234567", "+89161234567", "9161234567"})
        EXPECT_EQ(prefilled(phone), u"+79161234567"_s);
    for (const auto *phone : {"+7 916 123-45-67", "59161234567", "916123456", ""})
        EXPECT_EQ(prefilled(phone), QString());
}

TEST_F(CustomerForm, ReadsAnswersByNameAndTurnsTheSexRound)
{
    const auto read = [this](const QVariantMap &answers) {
        around.inputs = {answers};
        return plugin.showCustomerEdit({});
    };
    CustomerEdit expected;
    expected.phone = u"+7(916)-123-45-67"_s;
    expected.name = u"Пётр"_s;
    expected.birthday = QDate(1990, 3, 5);
    expected.sex = Client::Sex::Male;
    expected.email = u"p@example.org"_s;
    EXPECT_EQ(read({{u"phone"_s, expected.phone},
                    {u"name"_s, expected.name},
                    {u"birthday"_s, u"1990-03-05"_s},
                    {u"sex"_s, u"1"_s},
                    {u"email"_s, expected.email},
                    {u"email\0"_s, 5}}),
              expected);
    const std::pair<QVariantMap, Client::Sex> sexes[] = {
        {{{u"sex"_s, 1}}, Client::Sex::Male},
        {{{u"sex"_s, 0}}, Client::Sex::Female},
        {{{u"sex"_s, u"?"_s}}, Client::Sex::Female},
        {{{u"birthday"_s, u"soon"_s}}, Client::Sex::Female},
        {QVariantMap(), Client::Sex::Male}, // cancelled
    };
    for (const auto &[answers, sex] : sexes) {
        CustomerEdit empty;
        empty.sex = sex;
        EXPECT_EQ(read(answers), empty);
    }
}

} // namespace
} // namespace lmmindbox
