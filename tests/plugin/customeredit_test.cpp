#include "workflow.h"

#include <QRegularExpression>

namespace lmmindbox {
namespace {

class CustomerEditing : public WorkflowTest
{
protected:
    CustomerEditing() { plugin.customer = customerIn(known); }

    const QStringList editing{
        u"I Редактирование данных клиента"_s,
        u"form lmmindboxEditCustomerTitle/Редактирование анкетных данных клиента"
        "|+79160000001|Анна||0|anna@example.org"_s,
        u"progress lmmindboxRequest/Обращение к серверу..."_s,
        u"I Изменение данных клиента"_s,
        uR"(Offline.EditCustomer {"customer":{"firstName":"Мария",)"
        uR"("mobilePhone":"+7(916)-000-00-02","sex":"male"}})"_s,
    };
    const QStringList reloading{
        u"I Получение данных клиента"_s,
        uR"(Offline.GetCustomer {"customer":{"mobilePhone":"79160000001"}})"_s,
    };
    const QVariantMap changes{
        {u"name"_s, u"Мария"_s}, {u"phone"_s, u"+7(916)-000-00-02"_s}, {u"sex"_s, 1}};
    const control::Action action{170};
};

TEST_F(CustomerEditing, AcceptedChangeReloadsTheCustomerAndRefreshesTheReceipt)
{
    // A failed reload keeps the customer but counts.
    around.answers = {success, lost};
    around.inputs = {changes, changes};
    EXPECT_EQ(plugin.editCustomer(action), EContext::Result{2});
    EXPECT_EQ(around.seen(), editing + reloading +
                                 QStringList({
                                     u"W Не удалось получить актуальные данные клиента"_s,
                                     u"save Анна 79160000001"_s,
                                     u"progress ends"_s,
                                 }));
    EXPECT_EQ(plugin.customer, customerIn(known));

    const auto reloaded = QByteArray(known).replace("Анна", "Мария");
    around.answers = {success, reloaded, success};
    EXPECT_EQ(plugin.editCustomer(action), EContext::Result{2});
    EXPECT_EQ(
        around.seen(),
        editing + reloading +
            QStringList({
                u"I Подтверждение электронной почты"_s,
                uR"(Offline.EmailConfirmationLetter {"customer":{"email":"anna@example.org"}})"_s,
                u"save Мария 79160000001"_s,
                u"progress ends"_s,
            }));
    EXPECT_EQ(plugin.customer, customerIn(reloaded));
}

TEST_F(CustomerEditing, RefusedChangeIsShownUnderTheProgressMessage)
{
    for (const auto &[answer, text] :
         {std::pair(QByteArray(R"({"other":1})"),
                    u"lmmindboxEditCustomerError/Не удалось изменить данные клиента"_s),
          std::pair(lost, textOf(lostText))}) {
        around.answers = {answer};
        around.inputs = {changes};
        EXPECT_EQ(plugin.editCustomer(action), EContext::Result{0});
        EXPECT_EQ(around.seen(),
                  editing + QStringList({u"error 0 0 "_s + text, u"progress ends"_s}));
        EXPECT_EQ(plugin.customer, customerIn(known));
    }
}

TEST_F(CustomerEditing, NeedsACardOnlyWhenTheCashierTriggeredIt)
{
    document->setCardRecord(nullptr);
    EXPECT_EQ(plugin.editCustomer(action), EContext::Result{3});

    // An empty name alone means a cancelled form.
    around.inputs = {QVariantMap{{u"sex"_s, 1}}, changes};
    EXPECT_EQ(plugin.editCustomer({}), EContext::Result{3});
    EXPECT_EQ(around.seen(), editing.mid(0, 2));

    // The check of a missing e-mail opens the form too. The reload replaces the customer even when
    // the service no longer knows them.
    plugin.customer.email.clear();
    around.answers = {success, notFound};
    plugin.checkEmail();
    EXPECT_EQ(plugin.customer, customerIn(notFound));
}

TEST_F(CustomerEditing, ALetterGoesOnceToEachAddressThatTheServiceAccepted)
{
    const auto email = u"anna@example.org"_s;
    const auto otherCase = u"Anna@example.org"_s;
    around.answers = {lost, success, success, success};
    for (const auto &address : {email, email, otherCase, email, otherCase, QString(), email})
        plugin.sendConfirmationLetter(address);
    const auto letter = [](const QString &address) {
        return uR"(Offline.EmailConfirmationLetter {"customer":{"email":"%1"}})"_s.arg(address);
    };
    EXPECT_EQ(around.seen().filter(QRegularExpression(u"^[^I]"_s)),
              QStringList({
                  letter(email),
                  u"error 0 0 lmmindboxEmailConfirmError/Не удалось подтвердить почту клиента"_s,
                  letter(email),
                  letter(otherCase),
                  letter(email),
              }));
    EXPECT_EQ(plugin.confirmedEmails, QSet<QString>{email});
}

} // namespace
} // namespace lmmindbox
