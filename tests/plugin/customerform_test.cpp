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
    auto customer = makeCustomer(QStringLiteral("89161234567"), true);
    customer.birthDate = QDate(1990, 3, 5);
    customer.sex = QStringLiteral("MALE");

    const auto before = QDate::currentDate();
    const auto form = shownFor(customer);
    const auto after = QDate::currentDate();

    EXPECT_EQ(form.title, tr::Tr(QStringLiteral("lmmindboxEditCustomerTitle"),
                                 QStringLiteral("Редактирование анкетных данных клиента")));
    EXPECT_TRUE(form.cancellable && !form.compact && form.validates && !form.readOnly);
    EXPECT_EQ(form.columns, 1);

    const struct
    {
        const char *key;
        int kind;
        const char *labelId;
        const char *label;
        const char *value;
        bool flags[3];
        int order;
    } expected[] = {
        {"phone",
         10,
         "inputClientPhoneNumber",
         "Номер телефона",
         "+79161234567",
         {true, false, true},
         0},
        {"name", 10, "inputClientFullName", "ФИО клиента", "Анна", {true, true, false}, 1},
        {"birthday",
         14,
         "inputClientBirthDate",
         "Дата рождения",
         "05.03.1990",
         {false, true, true},
         2},
        {"sex", 2, "inputClientSex", "Пол", "1", {true, true, true}, 2},
        {"email",
         10,
         "inputClientEmail",
         "Электронная почта",
         "anna@example.org",
         {false, true, false},
         3},
    };
    ASSERT_EQ(form.fields.size(), 5);
    for (int i = 0; i < 5; ++i) {
        SCOPED_TRACE(expected[i].key);
        const auto &field = form.fields[i];
        EXPECT_EQ(field.key, QString::fromUtf8(expected[i].key));
        EXPECT_EQ(static_cast<int>(field.kind), expected[i].kind);
        EXPECT_EQ(field.label, tr::Tr(QString::fromUtf8(expected[i].labelId),
                                      QString::fromUtf8(expected[i].label)));
        EXPECT_EQ(field.value, QString::fromUtf8(expected[i].value));
        EXPECT_EQ(field.mandatory, expected[i].flags[0]);
        EXPECT_EQ(field.editable, expected[i].flags[1]);
        EXPECT_EQ(field.keyboardDigits, expected[i].flags[2]);
        EXPECT_EQ(field.order, expected[i].order);
    }
    EXPECT_EQ(form.fields[0].inputMask, QStringLiteral("+7(999)-999-99-99;_"));
    EXPECT_EQ(form.fields[0].validator,
              QStringLiteral(R"(\+7\([0-9]{3}\)-[0-9]{3}-[0-9]{2}-[0-9]{2})"));
    EXPECT_THAT(form.fields[2].maxDate, testing::AnyOf(before, after));
    EXPECT_EQ(form.fields[2].minDate, form.fields[2].maxDate.addYears(-150));
    EXPECT_EQ(form.fields[3].options,
              tr::TrList({{QStringLiteral("inputClientFemale"), QStringLiteral("Женщина")},
                          {QStringLiteral("inputClientMale"), QStringLiteral("Мужчина")}}));
}

TEST_F(CustomerForm, PrefillsOnlyAPhoneOfTenDigitsWithItsUsualPrefixes)
{
    const struct
    {
        const char *phone;
        const char *value;
    } cases[] = {
        {"79161234567", "+79161234567"},
        {"+79161234567", "+79161234567"},
        {"+89161234567", "+79161234567"},
        {"9161234567", "+79161234567"},
        {"+7 916 123-45-67", ""},
        {"59161234567", ""},
        {"916123456", ""},
        {"", ""},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.phone);
        const auto field = shownFor(makeCustomer(QString::fromUtf8(c.phone), true)).fields[0];
        EXPECT_EQ(field.value, QString::fromUtf8(c.value));
        EXPECT_EQ(field.editable, field.value.isEmpty());
    }
}

TEST_F(CustomerForm, IsTitledForANewCustomerOnlyWhenTheServiceDidNotKnowIt)
{
    Customer customer;
    customer.processingStatus = ProcessingStatus::NotFound;
    const auto form = shownFor(customer);
    EXPECT_EQ(form.title.getId(), QStringLiteral("lmmindboxRegisterCustomeTitle"));
    EXPECT_EQ(form.title.getDefaultText(), QStringLiteral("Новый клиент"));
    EXPECT_EQ(form.fields[3].value, QStringLiteral("0"));
    EXPECT_EQ(form.fields[2].value, QString());
}

TEST_F(CustomerForm, ReadsAnswersByNameAndTurnsTheSexRound)
{
    const auto edit = answered({{QStringLiteral("phone"), QStringLiteral("+7(916)-123-45-67")},
                                {QStringLiteral("name"), QStringLiteral("Пётр")},
                                {QStringLiteral("birthday"), QStringLiteral("1990-03-05")},
                                {QStringLiteral("sex"), QStringLiteral("1")},
                                {QStringLiteral("email"), QStringLiteral("p@example.org")},
                                {QStringLiteral("email\0"), 5}});
    CustomerEdit expected;
    expected.phone = QStringLiteral("+7(916)-123-45-67");
    expected.name = QStringLiteral("Пётр");
    expected.birthday = QDate(1990, 3, 5);
    expected.sex = Client::Sex::Male;
    expected.email = QStringLiteral("p@example.org");
    EXPECT_EQ(edit, expected);

    const auto name = std::pair(QStringLiteral("name"), QVariant(QStringLiteral("x")));
    EXPECT_EQ(answered({name, {QStringLiteral("sex"), 1}}).sex, Client::Sex::Male);
    EXPECT_EQ(answered({name, {QStringLiteral("sex"), 0}}).sex, Client::Sex::Female);
    EXPECT_EQ(answered({name}).sex, Client::Sex::Female);
    EXPECT_EQ(answered({name, {QStringLiteral("sex"), QStringLiteral("?")}}).sex,
              Client::Sex::Female);
    EXPECT_EQ(answered({name, {QStringLiteral("birthday"), QStringLiteral("soon")}}).birthday,
              QDate());

    const auto cancelled = answered({});
    EXPECT_TRUE(cancelled.name.isEmpty());
    EXPECT_EQ(cancelled.sex, Client::Sex::Male);
}

} // namespace
} // namespace lmmindbox
