#include "workflow.h"

namespace lmmindbox {
namespace {

class Identification : public WorkflowTest
{
protected:
    bool identify() { return plugin.identifyByCard(card, ECardNumberType::Typed); }

    const QString entered = card->getNumber().toString();
    const QByteArray created = R"({"customer":{"processingStatus":"Created"}})";
};

TEST_F(Identification, KnownCustomerIsBoundToTheCardStepByStep)
{
    // What another customer left is cleared.
    plugin.confirmedEmails = {u"anna@example.org"_s};
    around.answers = {known, success};
    EXPECT_TRUE(identify());
    EXPECT_EQ(around.seen(),
              QStringList({
                  u"I Идентификация клиента по номеру телефона ' 8 916 000-00-01 '"_s,
                  u"I Получение данных клиента"_s,
                  uR"(Offline.GetCustomer {"customer":{"mobilePhone":" 8 916 000-00-01 "}})"_s,
                  u"I Клиент найден, телефон подтверждён, почта не подтверждена"_s,
                  u"I Подтверждение электронной почты"_s,
                  uR"(Offline.EmailConfirmationLetter {"customer":{"email":"anna@example.org"}})"_s,
                  u"save Анна 79160000001"_s,
              }));
    EXPECT_EQ(card->getNumber().toString(), u"79160000001"_s);
    EXPECT_EQ(plugin.customer, customerIn(known));
}

TEST_F(Identification, UnknownCustomerIsRegisteredConfirmedAndAskedForAnEmail)
{
    // A second "not found" counts as found.
    const auto second = QByteArray(notFound).replace("}}", R"(,"mobilePhone":"as spelled"}})");
    around.answers = {
        notFound, created, second,
        R"({"status":"Success","smsConfirmation":{"processingStatus":"IncorrectConfirmationCode"}})",
        // A wrong code takes precedence over a confirmation in the same answer.
        R"({"status":"ValidationError","smsConfirmation":{"processingStatus":"AlreadyConfirmed"}})",
        R"({"smsConfirmation":{"processingStatus":"MobilePhoneConfirmed"}})"};
    around.inputs = {true, filled, u""_s, u" 1111 "_s, u""_s, u"2222"_s, u"3333"_s, QVariant()};
    EXPECT_TRUE(identify());
    const auto first =
        u"input lmmindboxConfirmCodeMessage/Введите код из СМС для подтверждения номера"_s;
    const auto again = u"input lmmindboxConfirmCodeMessageError/Некорректный код подтверждения.\n"
                       "Введите код подтверждения"_s;
    const auto checks = [](const QString &code) {
        return QStringList{
            u"I Подтверждение телефона 'as spelled' кодом '%1'"_s.arg(code),
            uR"(Offline.ConfirmMobilePhone {"customer":{"mobilePhone":"as spelled"},)"_s +
                uR"("smsConfirmation":{"code":"%1"}})"_s.arg(code)};
    };
    const QStringList registration{
        u"I Идентификация клиента по номеру телефона ' 8 916 000-00-01 '"_s,
        u"I Получение данных клиента"_s,
        uR"(Offline.GetCustomer {"customer":{"mobilePhone":" 8 916 000-00-01 "}})"_s,
        u"I Клиент не найден"_s,
        u"choice 0 0 lmmindboxRegisterCustomerChoice/Клиент не найден.\nЗарегистрировать клиента? "
        "dialogChoiceOk/ОК dialogChoiceCancel/Отмена"_s,
        u"I Регистрация клиента"_s,
        u"form lmmindboxEditCustomerTitle/Редактирование анкетных данных клиента||||0|"_s,
        u"I Данные: имя: Мария; телефон: +7(916)-000-00-02; пол: жен; email: m@example.org"_s,
        u"progress lmmindboxRegisterCustomerProgress/Регистрация клиента"_s,
        u"I Регистрация клиента"_s,
        uR"(Offline.RegisterCustomer {"customer":{"birthDate":"05.03.1990","email":"m@example.org",)"
        uR"("firstName":"Мария","mobilePhone":"+7(916)-000-00-02","sex":"female"}})"_s,
        u"I Клиент успешно создан"_s,
        u"progress ends"_s,
        u"I Получение данных клиента"_s,
        uR"(Offline.GetCustomer {"customer":{"mobilePhone":" 8 916 000-00-01 "}})"_s,
        u"I Клиент найден, телефон не подтверждён, почта не подтверждена"_s,
    };
    const QStringList confirmation =
        QStringList{u"I Подтверждение учетной записи через СМС"_s, first, first} +
        checks(u" 1111 "_s) + QStringList{again, again} + checks(u"2222"_s) + QStringList{again} +
        checks(u"3333"_s);
    EXPECT_EQ(around.seen(),
              registration + confirmation +
                  QStringList({
                      u"I Почта не указана, отображение диалога редактирования клиента"_s,
                      u"I Редактирование данных клиента"_s,
                      u"form lmmindboxRegisterCustomeTitle/Новый клиент||||0|"_s,
                      u"save Не указаны ФИО as spelled"_s,
                  }));
    EXPECT_EQ(card->getNumber().toString(), u"as spelled"_s);
}

TEST_F(Identification, EachFailureSaysItsOwn)
{
    const tr::Tr canceled(u"lmmindboxRegisterCustomerCanceled"_s, u"Клиент не добавлен"_s);
    const tr::Tr notRegistered(u"lmmindboxRegisterCustomerError"_s,
                               u"Не удалось зарегистрировать клиента"_s);
    const tr::Tr unchecked(u"lmmindboxConfirmCodeError"_s,
                           u"Не удалось проверить код подтверждения"_s);
    const auto phone = u"79160000001"_s;
    auto withoutName = filled;
    withoutName.remove(u"name"_s);
    const struct
    {
        QByteArrayList answers;
        QVariantList inputs;
        tr::Tr error;
        QString customersPhone;
        bool codeSent;
    } cases[] = {
        {{refused},
         {},
         {u"lmmindboxGetCustomerError"_s, u"Не удалось получить информацию о клиенте"_s},
         {},
         false},
        {{lost}, {}, lostText, {}, false},
        {{notFound}, {false}, canceled, {}, false},
        {{notFound}, {true, withoutName}, canceled, entered, false},
        {{notFound, success}, {true, filled}, notRegistered, entered, false},
        {{notFound, lost}, {true, filled}, lostText, entered, false},
        {{notFound, created, refused}, {true, filled}, notRegistered, entered, true},
        {{notFound, created, lost}, {true, filled}, lostText, entered, true},
        {{unconfirmed, lost}, {}, lostText, phone, false},
        {{unconfirmed, notFound}, {}, {}, phone, false},
        {{unconfirmed, refused}, {}, {}, phone, false},
        {{unconfirmed, unconfirmed},
         {QVariant()},
         {u"lmmindboxConfirmCanceled"_s, u"Ввод кода подтверждения отменен"_s},
         phone,
         true},
        {{unconfirmed, unconfirmed, success}, {u"1"_s}, unchecked, phone, true},
        {{unconfirmed, unconfirmed, R"({"smsConfirmation":{"processingStatus":"Processed"}})"},
         {u"1"_s},
         unchecked,
         phone,
         true},
        {{unconfirmed, unconfirmed, lost}, {u"1"_s}, lostText, phone, true},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.answers.join().toStdString());
        card->setNumber(entered);
        around.answers = c.answers;
        around.inputs = c.inputs;
        EXPECT_FALSE(identify());
        EXPECT_EQ(plugin.lastError, c.error);
        EXPECT_EQ(plugin.customer.mobilePhone, c.customersPhone);
        EXPECT_EQ(card->getNumber().toString(), c.customersPhone == phone ? phone : entered);
        EXPECT_EQ(plugin.codeSent, c.codeSent);
        EXPECT_TRUE(around.answers.isEmpty() && around.inputs.isEmpty());
    }
}

TEST_F(Identification, ConfirmationSendsACodeOnceAndSaysHowItEnded)
{
    const auto customer = customerIn(unconfirmed);
    around.answers = {unconfirmed, R"({"smsConfirmation":{"processingStatus":"AlreadyConfirmed"}})",
                      lost};
    around.inputs = {u"1"_s, u"2"_s, QVariant()};
    EXPECT_EQ(plugin.confirmMobilePhone(customer), VerifyResult());
    EXPECT_EQ(around.seen().mid(0, 4),
              QStringList({
                  u"I Подтверждение учетной записи через СМС"_s,
                  u"progress 60 lmmindboxSendConfirmCodeProgress/Отправка кода подтверждения"_s,
                  u"I Отправка кода для подтверждения номера '79160000001'"_s,
                  uR"(Offline.ResendMobilePhoneConfirmationCode )"
                  uR"({"customer":{"mobilePhone":"79160000001"}})"_s,
              }));
    EXPECT_EQ(plugin.confirmMobilePhone(customer), (VerifyResult{2, lostText}));
    EXPECT_EQ(plugin.confirmMobilePhone(customer).code, 1);
    EXPECT_EQ(around.seen().filter(u"Resend"_s), QStringList());
    EXPECT_EQ(plugin.confirmMobilePhone(customerIn(known)), VerifyResult());
    EXPECT_EQ(around.seen(), QStringList());

    const auto &input = around.input;
    EXPECT_EQ(textOf(input.title), u"lmmindboxConfirmCodeTitle/Ввод кода подтверждения"_s);
    EXPECT_EQ(textOf(input.scanError),
              u"inputTextFormScanError/Ошибка разбора введенных данных, повторите сканирование"_s);
    EXPECT_EQ(textOf(input.okText), u"inputTextFormOkBtn/ОК"_s);
    EXPECT_EQ(textOf(input.cancelText), u"inputTextFormCancelBtn/Отмена"_s);
    EXPECT_EQ(input.inputId, u"inputLmMindboxConfirmCode"_s);
    EXPECT_TRUE(input.scanAllowed);
    EXPECT_EQ(input.inputSources, 4095);
    const qint8 bytes[] = {
        input.hidden,  input.selectsInitialText, input.upperCase,   input.virtualKeyboard,
        input.numeric, input.multiLine,          input.cancellable, input.closesOnScan};
    EXPECT_THAT(bytes, testing::ElementsAre(0, 1, 0, 1, 0, 0, 1, 0));
    EXPECT_EQ(input.inputKind + input.keyboard + input.timeout + input.maximumLength, 0);
}

TEST_F(Identification, TypedTextIsTheNumberAndOtherInputIsTheBases)
{
    const auto text = u" +7 (916) 000-00-01 "_s;
    const auto typed = plugin.getCardNumber({1, text});
    EXPECT_TRUE(typed.success);
    EXPECT_EQ(typed.number, text);
    EXPECT_TRUE(typed.message.isEmpty());
    const auto other = plugin.getCardNumber({2, text});
    EXPECT_FALSE(other.success);
    EXPECT_TRUE(other.number.isEmpty());
}

TEST_F(Identification, AClientThatConfirmsEmailsSavesTheLetter)
{
    class Confirming : public Interface
    {
    public:
        GetCustomerResult getCustomer(const QString &phone) override
        {
            auto result = Interface::getCustomer(phone);
            result.customer.isEmailConfirmed = true;
            return result;
        }
    };
    plugin.interface = QSharedPointer<Confirming>::create();
    around.answers = {known, known};
    EXPECT_TRUE(identify());
    EXPECT_EQ(plugin.getCustomer(entered, true).customer, plugin.customer);
    const auto seen = around.seen();
    EXPECT_EQ(seen.filter(u"Клиент найден"_s),
              QStringList(u"I Клиент найден, телефон подтверждён, почта подтверждена"_s));
    EXPECT_EQ(seen.filter(u"Letter"_s), QStringList());
}

TEST_F(Identification, ARegistrationMayChangeThePhone)
{
    class Renaming : public OpenPlugin
    {
    public:
        bool registerCustomer(const QString & /*phone*/) override
        {
            customer.mobilePhone = u"as registered"_s;
            return true;
        }
    } renaming;
    around.answers = {notFound, refused};
    EXPECT_FALSE(renaming.identifyByCard(card, ECardNumberType::Typed));
    EXPECT_EQ(around.seen().last(),
              uR"(Offline.GetCustomer {"customer":{"mobilePhone":"as registered"}})"_s);
}

TEST_F(Identification, HolderOfTheCardIsFilledFromTheCustomer)
{
    const auto holder = [this](const Customer &customer) {
        const auto revision = document->getRevision();
        plugin.fillClientInfo(card, customer);
        EXPECT_EQ(document->getRevision(), revision + 1);
        const auto client = card->getCard()->getClient();
        EXPECT_EQ(client->getPhoneNumber(), customer.mobilePhone);
        EXPECT_EQ(client->getEmail(), customer.email);
        EXPECT_EQ(client->getBirthday(), customer.birthDate);
        return std::tuple(client->getName(), static_cast<int>(client->getSex()),
                          client->getOptions());
    };
    auto customer = customerIn(known);
    customer.lastName = u"Иванова"_s;
    customer.birthDate = QDate(1990, 3, 5);
    customer.sex = u"female"_s;
    customer.consentToElectronicChecks = true;
    EXPECT_EQ(holder(customer),
              std::tuple(u"Анна Иванова"_s, 1, QList{ClientOptions{2}, ClientOptions{1}}));
    customer.firstName.clear();
    customer.sex = u"Female"_s;
    customer.consentToElectronicChecks = false;
    const QList<ClientOptions> none;
    EXPECT_EQ(holder(customer), std::tuple(u"Иванова"_s, 0, none));
    customer.lastName = u" "_s;
    customer.email.clear();
    customer.consentToElectronicChecks = true;
    EXPECT_EQ(holder(customer), std::tuple(u"Не указаны ФИО"_s, 0, none));
}

} // namespace
} // namespace lmmindbox
