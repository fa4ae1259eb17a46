#include "fakes.h"

namespace lmmindbox {
namespace {

using testing::_;
using testing::DoAll;
using testing::Return;
using testing::SaveArg;

class CustomerForm : public WorkflowTest
{
protected:
    FormRequest shownFor(const Customer &customer)
    {
        FormRequest request;
        EXPECT_CALL(dialog, showForm(_))
            .WillOnce(DoAll(SaveArg<0>(&request), Return(QVariantMap())));
        (void)plugin.showCustomerEdit(customer);
        return request;
    }
    CustomerEdit answered(const QVariantMap &answers)
    {
        EXPECT_CALL(dialog, showForm(_)).WillOnce(Return(answers));
        return plugin.showCustomerEdit({});
    }
};

TEST_F(CustomerForm, ShowsFiveFieldsPrefilledFromTheCustomer)
{
    auto customer = makeCustomer(u"89161234567"_s, true);
    customer.birthDate = QDate(1990, 3, 5);
    customer.sex = u"MALE"_s;

    const auto before = QDate::currentDate();
    const auto form = shownFor(customer);
    const auto after = QDate::currentDate();

    EXPECT_THAT(form.title,
                isText("lmmindboxEditCustomerTitle", "Редактирование анкетных данных клиента"));
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
}

TEST_F(CustomerForm, PrefillsOnlyAPhoneOfTenDigitsWithItsUsualPrefixes)
{
    const auto prefilled = [this](const char *phone) {
        const auto field = shownFor(makeCustomer(QString::fromUtf8(phone), true)).fields[0];
        EXPECT_EQ(field.editable, field.value.isEmpty());
        return field.value;
    };
    for (const auto *phone : {"79161234567", "+79161234567", "+89161234567", "9161234567"})
        EXPECT_EQ(prefilled(phone), u"+79161234567"_s);
    for (const auto *phone : {"+7 916 123-45-67", "59161234567", "916123456", ""})
        EXPECT_EQ(prefilled(phone), QString());
}

TEST_F(CustomerForm, IsTitledForANewCustomerOnlyWhenTheServiceDidNotKnowIt)
{
    Customer customer;
    customer.processingStatus = ProcessingStatus::NotFound;
    const auto form = shownFor(customer);
    EXPECT_EQ(form.title.getId(), u"lmmindboxRegisterCustomeTitle"_s);
    EXPECT_EQ(form.title.getDefaultText(), u"Новый клиент"_s);
    EXPECT_EQ(form.fields[3].value, u"0"_s);
    EXPECT_EQ(form.fields[2].value, QString());
}

TEST_F(CustomerForm, ReadsAnswersByNameAndTurnsTheSexRound)
{
    const auto edit = answered({{u"phone"_s, u"+7(916)-123-45-67"_s},
                                {u"name"_s, u"Пётр"_s},
                                {u"birthday"_s, u"1990-03-05"_s},
                                {u"sex"_s, u"1"_s},
                                {u"email"_s, u"p@example.org"_s},
                                {u"email\0"_s, 5}});
    CustomerEdit expected;
    expected.phone = u"+7(916)-123-45-67"_s;
    expected.name = u"Пётр"_s;
    expected.birthday = QDate(1990, 3, 5);
    expected.sex = Client::Sex::Male;
    expected.email = u"p@example.org"_s;
    EXPECT_EQ(edit, expected);

    const auto name = std::pair(u"name"_s, QVariant(u"x"_s));
    EXPECT_EQ(answered({name, {u"sex"_s, 1}}).sex, Client::Sex::Male);
    EXPECT_EQ(answered({name, {u"sex"_s, 0}}).sex, Client::Sex::Female);
    EXPECT_EQ(answered({name}).sex, Client::Sex::Female);
    EXPECT_EQ(answered({name, {u"sex"_s, u"?"_s}}).sex, Client::Sex::Female);
    EXPECT_EQ(answered({name, {u"birthday"_s, u"soon"_s}}).birthday, QDate());

    const auto cancelled = answered({});
    EXPECT_TRUE(cancelled.name.isEmpty());
    EXPECT_EQ(cancelled.sex, Client::Sex::Male);
}

} // namespace
} // namespace lmmindbox
