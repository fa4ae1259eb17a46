#include "scriptedconsole.h"
#include "tests/support/logcapture.h"
#include "till/console/consolepresenter.h"
#include "till/core/toldtexts.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

using testing::HasSubstr;

tr::Tr text(const char *english)
{
    return {QString(), QString::fromUtf8(english)};
}

FormField field(const char *key, FormFieldKind kind, bool mandatory)
{
    FormField field;
    field.key = QString::fromUtf8(key);
    field.kind = kind;
    field.label = text(key);
    field.mandatory = mandatory;
    return field;
}

/// A form like the customer's.
FormRequest customerForm()
{
    auto phone = field("phone", FormFieldKind::Text, true);
    phone.inputMask = u"+7(999)-999-99-99;_"_s;
    phone.validator = u"\\+7\\([0-9]{3}\\)-[0-9]{3}-[0-9]{2}-[0-9]{2}"_s;
    auto birthday = field("birthday", FormFieldKind::Date, false);
    birthday.minDate = QDate(1900, 1, 1);
    birthday.maxDate = QDate(2020, 1, 1);
    auto sex = field("sex", FormFieldKind::Choice, true);
    sex.options = {text("Female"), text("Male")};
    sex.value = u"0"_s;
    FormRequest request;
    request.fields = {phone, field("name", FormFieldKind::Text, true), birthday, sex,
                      field("email", FormFieldKind::Text, false)};
    return request;
}

/// The form's answers to a script, and its output.
struct Filled
{
    Filled(const FormRequest &request, const QByteArray &script)
    {
        ScriptedConsole scripted(script);
        const auto given = till::ConsolePresenter(scripted.console).showForm(request);
        answers = QJsonDocument(QJsonObject::fromVariantMap(given))
                      .toJson(QJsonDocument::Compact)
                      .toStdString();
        shown = scripted.shown();
    }
    std::string answers; ///< As JSON.
    std::string shown;
};

TEST(Form, EmptyLineKeepsTheFirstValueAndClearRemovesAnOptionalOne)
{
    auto request = customerForm();
    request.fields[0].value = u"+79161234567"_s;
    request.fields[0].editable = false;
    request.fields[1].value = u"Анна"_s;
    request.fields[2].value = u"05.03.1990"_s;
    request.fields[3].value = u"1"_s;
    request.fields[4].value = u"a@b"_s;
    EXPECT_EQ(Filled(request, "\n\n\n\n").answers, R"({"birthday":"1990-03-05","email":"a@b",)"
                                                   R"("name":"Анна","phone":"+7(916)-123-45-67",)"
                                                   R"("sex":1})");
    EXPECT_EQ(Filled(request, " Ольга \n/clear\nFemale\n/clear\n").answers,
              R"({"email":"","name":"Ольга","phone":"+7(916)-123-45-67","sex":0})");
}

TEST(Form, AsksAgainForWhatCannotBeTheAnswer)
{
    const QByteArrayList answers{"9161234567", "Anna", "", "", ""};
    const struct
    {
        int field;
        QByteArray wrong;
        const char *problem;
    } cases[] = {
        {0, "12345", "does not fit +7(___)-___-__-__"},
        {0, "", "must be filled in"},
        {1, "   ", "must be filled in"},
        {1, "/clear", "must be filled in"},
        {2, "31.02.1990", "Type a date such as"},
        {2, "1990-03-05", "Type a date such as"},
        {2, "1.3.1990", "Type a date such as"},
        {2, "02.01.2020", "must not be after 01.01.2020"},
        {2, "31.12.1899", "must not be before 01.01.1900"},
        {3, "0", "Type a number from 1 to 2"},
        {3, "3", "Type a number from 1 to 2"},
        {3, "\x1b", "control characters"},
    };
    for (const auto &[field, wrong, problem] : cases) {
        SCOPED_TRACE(testing::Message() << field << ": " << wrong.toStdString());
        auto script = answers;
        script.insert(field, wrong);
        const Filled form(customerForm(), script.join('\n') + '\n');
        EXPECT_THAT(form.shown, HasSubstr(problem));
        EXPECT_EQ(form.answers,
                  R"({"email":"","name":"Anna","phone":"+7(916)-123-45-67","sex":0})");
    }
}

TEST(Form, CancelAndTheEndOfTheInputCancelAtEveryField)
{
    const QByteArray answers[] = {"9161234567\n", "Anna\n", "05.03.1990\n", "1\n", "a@b\n"};
    QByteArray script;
    for (const auto &answer : answers) {
        SCOPED_TRACE(script.toStdString());
        EXPECT_EQ(Filled(customerForm(), script).answers, "{}");
        EXPECT_EQ(Filled(customerForm(), script + "/cancel\n").answers, "{}");
        script += answer;
    }
    EXPECT_THAT(Filled(customerForm(), script).answers, HasSubstr("a@b"));
}

TEST(TextInput, PassesOnWhatWasTypedAndCancels)
{
    InputTextRequest request;
    const auto answer = [&request](const QByteArray &script) {
        ScriptedConsole scripted(script);
        return till::ConsolePresenter(scripted.console).showInputText(request);
    };
    EXPECT_EQ(answer(" 12 34 \n").getData(), u" 12 34 "_s);
    EXPECT_FALSE(answer("\n").canceled());
    EXPECT_TRUE(answer("/cancel\n").canceled());
    EXPECT_TRUE(answer("").canceled());
    request.validator = u"[0-9]*"_s;
    request.maximumLength = 4;
    request.cancellable = 0;
    EXPECT_EQ(answer("x1234\n12345\n/cancel\n1234\n").getData(), u"1234"_s);
}

TEST(Choice, TakesNumberOrTextAndTheEndOfTheInputIsNo)
{
    const std::pair<QByteArray, bool> cases[] = {{"1\n", true},        {"2\n", false},
                                                 {"ок\n", true},       {"no\n3\n\n1\n", true},
                                                 {"/cancel\n", false}, {"yes", false}};
    for (const auto &[script, agreed] : cases) {
        SCOPED_TRACE(script.toStdString());
        ScriptedConsole scripted(script);
        EXPECT_EQ(till::ConsolePresenter(scripted.console)
                      .showChoice(text("Register?"), text("ОК"), text("Отмена")),
                  agreed);
    }
}

TEST(ToldTexts, AreLoggedWithoutPhoneAndAddress)
{
    const LogCapture log;
    till::logTold(u"+7 (903) 123-45-67 and 79031234567 belong to <an-na@a.org>, "
                  "receipt 4711 of 2026-11-25 22:02:11, 179.80"_s);
    EXPECT_EQ(LogCapture::text(), u"I *** and *** belong to <***>, "
                                  "receipt 4711 of 2026-11-25 22:02:11, 179.80"_s);
}

} // namespace
