#include "till/core/catalogue.h"
#include "till/window/formdialog.h"

#include <QAbstractButton>
#include <QClipboard>
#include <QGridLayout>
#include <QGuiApplication>
#include <QLineEdit>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/// The plugin's form for a customer's data.
QList<FormField> customerForm()
{
    FormField phone;
    phone.key = u"phone"_s;
    phone.kind = FormFieldKind::Text;
    phone.inputMask = u"+7(999)-999-99-99;_"_s;
    phone.validator = u"\\+7\\([0-9]{3}\\)-[0-9]{3}-[0-9]{2}-[0-9]{2}"_s;
    phone.order = 0;
    FormField birthday;
    birthday.key = u"birthday"_s;
    birthday.kind = FormFieldKind::Date;
    birthday.mandatory = false;
    birthday.minDate = QDate(1900, 1, 1);
    birthday.maxDate = QDate(2020, 1, 1);
    birthday.order = 1;
    FormField sex;
    sex.key = u"sex"_s;
    sex.kind = FormFieldKind::Choice;
    sex.options = {{{}, u"one"_s}, {{}, u"other"_s}};
    sex.value = u"0"_s;
    sex.order = 1;
    FormField fixed = phone;
    fixed.key = u"fixed"_s;
    fixed.value = u"+79161234567"_s;
    fixed.editable = false;
    fixed.order = 2;
    return {phone, birthday, sex, fixed};
}

class Dialogs : public testing::Test
{
protected:
    Dialogs()
    {
        EXPECT_TRUE(till::installLanguage(u"ru"_s));
        new QGridLayout(&window);
        form = new till::FormDialog(window, {{}, {}, u"Cancel"_s}, customerForm());
        window.resize(1000, 700);
        window.show();
        form->appear();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    QLineEdit &line(const char *name) { return *form->findChild<QLineEdit *>(QLatin1String(name)); }
    bool isOkOn() { return form->findChild<QAbstractButton *>(u"ok"_s)->isEnabled(); }

    QWidget window;
    till::FormDialog *form;
};

TEST_F(Dialogs, TakeANumberInEverySpellingAndAnswerInTheShapeThatTheFormAsksFor)
{
    const struct
    {
        const char *typed;
        bool pasted;
        const char *answer; ///< Empty when OK stays disabled.
    } cases[] = {
        {"+79161234567", true, "+7(916)-123-45-67"},
        {"8 (916) 123-45-67", true, "+7(916)-123-45-67"},
        {"9161234567", false, "+7(916)-123-45-67"},
        {"79161234567", false, "+7(916)-123-45-67"},
        {"+79161234567", false, "+7(916)-123-45-67"},
        {"89161234567", false, "+7(916)-123-45-67"},
        {"916123456", false, ""},
        {"916123456", true, ""},
        {"phone", false, ""},
    };
    auto &phone = line("field_phone");
    for (const auto &[typed, pasted, answer] : cases) {
        SCOPED_TRACE(typed);
        phone.clear();
        phone.setFocus();
        QTest::keyClick(&phone, Qt::Key_Home);
        QGuiApplication::clipboard()->setText(QLatin1String(typed));
        if (pasted)
            QTest::keySequence(&phone, QKeySequence::Paste);
        else
            QTest::keyClicks(&phone, QLatin1String(typed));
        ASSERT_EQ(isOkOn(), *answer != '\0') << phone.text().toStdString();
        const auto given = form->answers().value(u"phone"_s).toString();
        EXPECT_TRUE(*answer == '\0' || given == QLatin1String(answer)) << given.toStdString();
    }
    EXPECT_EQ(form->answers().value(u"fixed"_s), QVariant(u"+7(916)-123-45-67"_s));
    EXPECT_TRUE(line("field_fixed").isReadOnly());
}

TEST_F(Dialogs, AnswerDatesAndChoicesInTheirTypes)
{
    line("field_phone").setText(u"+7(916)-123-45-67"_s);
    EXPECT_FALSE(form->answers().contains(u"birthday"_s));
    auto &birthday = line("field_birthday");
    for (const auto *wrong : {"31.12.1899", "02.01.2020", "31.02.2000", "01.01.20"}) {
        birthday.setText(QLatin1String(wrong));
        EXPECT_FALSE(isOkOn()) << wrong;
    }
    QTest::keyClick(&birthday, Qt::Key_Return);
    EXPECT_TRUE(birthday.hasFocus());
    EXPECT_TRUE(birthday.property("wrong").toBool());
    birthday.setText(u"31.12.1999"_s);
    QTest::mouseClick(form->findChild<QAbstractButton *>(u"sex_1"_s), Qt::LeftButton);
    EXPECT_TRUE(isOkOn());
    EXPECT_EQ(form->answers().value(u"birthday"_s), QVariant(QDate(1999, 12, 31)));
    EXPECT_EQ(form->answers().value(u"sex"_s), QVariant(1));
}

TEST_F(Dialogs, PutFieldsOfOneNumberSideBySideAndKeepTheFocusInside)
{
    const auto top = [&](const char *name) {
        return form->findChild<QWidget *>(QLatin1String(name))->mapTo(form, QPoint()).y();
    };
    QTest::qWait(0);
    EXPECT_LT(top("field_phone"), top("field_birthday"));
    EXPECT_LE(std::abs(top("field_birthday") - top("field_sex")), 10);
    EXPECT_GT(top("field_fixed"), top("field_birthday"));
    for (int i = 0; i < 20; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        ASSERT_TRUE(form->isAncestorOf(QApplication::focusWidget()));
    }
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    EXPECT_EQ(form->result(), QDialog::Rejected);
    EXPECT_FALSE(form->isVisible());
}

} // namespace
