#include "fakes.h"

namespace lmmindbox {
namespace {

using testing::_;
using testing::InSequence;
using testing::Return;

/// A plugin whose workflows are replaced, to see how the identification calls them.
class SteppedPlugin : public OpenPlugin
{
public:
    using OpenPlugin::OpenPlugin;
    MOCK_METHOD(bool, registerCustomer, (const QString &), (override));
    MOCK_METHOD(VerifyResult, confirmMobilePhone, (const Customer &), (override));
    MOCK_METHOD(void, checkEmail, (), (override));
    MOCK_METHOD(void, storePluginData, (), (override));
};

class Identification : public WorkflowTest
{
protected:
    Identification()
    {
        stepped.setDocument(document);
        LogCapture::take();
    }

    GetCustomerResult found(const Customer &customer) const
    {
        return makeResult(OperationStatus::Success, customer);
    }
    GetCustomerResult notFound() const
    {
        Customer customer;
        customer.processingStatus = ProcessingStatus::NotFound;
        return makeResult(OperationStatus::Success, customer);
    }
    bool identify() { return stepped.identifyByCard(card, ECardNumberType::Typed); }
    QString error() const { return stepped.lastError.getDefaultText(); }

    testing::StrictMock<SteppedPlugin> stepped{service};
    const QString entered = card->getNumber().toString();
    const Customer known = makeCustomer(QStringLiteral("79160000001"), true);
};

TEST_F(Identification, KnownCustomerIsBoundToTheCardStepByStep)
{
    stepped.codeSent = true;
    stepped.confirmedEmails = {QStringLiteral("old@example.org")};
    stepped.lastError = {QStringLiteral("old"), QStringLiteral("old")};
    auto confirmed = known;
    confirmed.isEmailConfirmed = true;
    auto edited = confirmed;
    edited.lastName = QStringLiteral("Иванова");
    {
        InSequence order;
        EXPECT_CALL(*service, getCustomer(entered)).WillOnce([&](const QString &) {
            EXPECT_FALSE(stepped.codeSent);
            EXPECT_TRUE(stepped.confirmedEmails.isEmpty());
            return found(confirmed);
        });
        EXPECT_CALL(stepped, confirmMobilePhone(confirmed)).WillOnce(Return(VerifyResult()));
        // The edit form opened by the check of the e-mail may replace the customer.
        EXPECT_CALL(stepped, checkEmail).WillOnce([&] { stepped.customer = edited; });
        EXPECT_CALL(stepped, storePluginData).WillOnce([&] {
            EXPECT_EQ(card->getCard()->getClient()->getName(), QStringLiteral("Анна Иванова"));
        });
    }
    EXPECT_TRUE(identify());
    EXPECT_EQ(card->getNumber().toString(), known.mobilePhone);
    EXPECT_TRUE(stepped.lastError.isEmpty());
    EXPECT_EQ(
        LogCapture::take(),
        QStringList({QStringLiteral("I Идентификация клиента по номеру телефона '%1'").arg(entered),
                     QStringLiteral("I Клиент найден, телефон подтверждён, почта подтверждена")}));
}

TEST_F(Identification, UnknownCustomerIsRegisteredAndLookedUpAgain)
{
    {
        InSequence order;
        EXPECT_CALL(*service, getCustomer(entered)).WillOnce(Return(notFound()));
        EXPECT_CALL(stepped, registerCustomer(entered)).WillOnce([&](const QString &) {
            EXPECT_EQ(stepped.customer, Customer());
            stepped.customer.mobilePhone = QStringLiteral("as registered");
            return true;
        });
        // Not found again counts as found: the service may be slow to show a new customer.
        EXPECT_CALL(*service, getCustomer(QStringLiteral("as registered")))
            .WillOnce(Return(notFound()));
        EXPECT_CALL(stepped, confirmMobilePhone).WillOnce(Return(VerifyResult()));
        EXPECT_CALL(stepped, checkEmail);
        EXPECT_CALL(stepped, storePluginData);
    }
    EXPECT_TRUE(identify());
    EXPECT_EQ(card->getCard()->getClient()->getName(), QStringLiteral("Не указаны ФИО"));
    const auto lines = LogCapture::take();
    EXPECT_EQ(lines.at(1), QStringLiteral("I Клиент не найден"));
    EXPECT_EQ(lines.at(2),
              QStringLiteral("I Клиент найден, телефон не подтверждён, почта не подтверждена"));
}

TEST_F(Identification, EachFailureSaysItsOwn)
{
    stepped.customer = known;
    EXPECT_CALL(*service, getCustomer)
        .WillOnce(Return(GetCustomerResult(makeResult(OperationStatus::Success))))
        .WillOnce(Return(GetCustomerResult(withoutConnection())));
    EXPECT_FALSE(identify());
    EXPECT_THAT(stepped.lastError,
                isText("lmmindboxGetCustomerError", "Не удалось получить информацию о клиенте"));
    EXPECT_EQ(stepped.customer, Customer());
    EXPECT_FALSE(identify());
    EXPECT_EQ(error(), QStringLiteral("Ошибка связи с сервером"));

    EXPECT_CALL(*service, getCustomer).WillOnce(Return(notFound()));
    EXPECT_CALL(stepped, registerCustomer).WillOnce([&](const QString &) {
        stepped.lastError = {QString(), QStringLiteral("of the registration")};
        return false;
    });
    EXPECT_FALSE(identify());
    EXPECT_EQ(error(), QStringLiteral("of the registration"));

    EXPECT_CALL(*service, getCustomer)
        .WillOnce(Return(notFound()))
        .WillOnce(Return(GetCustomerResult(makeResult(OperationStatus::ValidationError))))
        .WillOnce(Return(notFound()))
        .WillOnce(Return(GetCustomerResult(withoutConnection())));
    EXPECT_CALL(stepped, registerCustomer).Times(2).WillRepeatedly(Return(true));
    EXPECT_FALSE(identify());
    EXPECT_THAT(stepped.lastError,
                isText("lmmindboxRegisterCustomerError", "Не удалось зарегистрировать клиента"));
    EXPECT_FALSE(identify());
    EXPECT_EQ(error(), QStringLiteral("Ошибка связи с сервером"));
    EXPECT_EQ(card->getNumber().toString(), entered);

    EXPECT_CALL(*service, getCustomer).WillOnce(Return(found(known)));
    EXPECT_CALL(stepped, confirmMobilePhone)
        .WillOnce(Return(VerifyResult{1, {QString(), QStringLiteral("of the confirmation")}}));
    EXPECT_FALSE(identify());
    EXPECT_EQ(LogCapture::take().constLast(),
              QStringLiteral("I Клиент найден, телефон подтверждён, почта не подтверждена"));
    EXPECT_EQ(error(), QStringLiteral("of the confirmation"));
    EXPECT_EQ(card->getNumber().toString(), known.mobilePhone);
    EXPECT_EQ(stepped.customer, known);
    EXPECT_FALSE(card->getCard()->getClient());
}

TEST_F(Identification, TypedTextIsTheNumberAndOtherInputIsTheBases)
{
    const auto text = QStringLiteral(" +7 (916) 000-00-01 ");
    const auto typed = plugin.getCardNumber({1, text});
    EXPECT_TRUE(typed.success);
    EXPECT_EQ(typed.number, text);
    EXPECT_TRUE(typed.message.isEmpty());
    const auto other = plugin.getCardNumber({2, text});
    EXPECT_FALSE(other.success);
    EXPECT_TRUE(other.number.isEmpty());
}

TEST_F(Identification, LookUpSendsALetterOnlyWhenAskedAndNeeded)
{
    auto confirmed = known;
    confirmed.isEmailConfirmed = true;
    EXPECT_CALL(*service, getCustomer)
        .WillOnce(Return(found(known)))
        .WillOnce(Return(found(confirmed)))
        .WillOnce(Return(GetCustomerResult(withoutConnection())));
    (void)plugin.getCustomer(entered, false);
    (void)plugin.getCustomer(entered, true);
    (void)plugin.getCustomer(entered, true);

    EXPECT_CALL(*service, getCustomer).WillOnce(Return(found(known)));
    EXPECT_CALL(*service, emailConfirmationLetter(known.email))
        .WillOnce(Return(makeResult(OperationStatus::Success)));
    (void)plugin.getCustomer(entered, true);

    // An empty address is passed on: it makes the plugin forget the letters sent.
    auto withoutEmail = known;
    withoutEmail.email.clear();
    EXPECT_CALL(*service, getCustomer).WillOnce(Return(found(withoutEmail)));
    (void)plugin.getCustomer(entered, true);
    EXPECT_TRUE(plugin.confirmedEmails.isEmpty());
}

TEST_F(Identification, HolderOfTheCardIsFilledFromTheCustomer)
{
    const struct
    {
        const char *first;
        const char *last;
        const char *email;
        bool consent;
        const char *sex;
        const char *name;
        bool electronic;
        Client::Sex clientSex;
    } cases[] = {
        {"Анна", "Иванова", "a@b", true, "female", "Анна Иванова", true, Client::Sex::Female},
        {"", "Иванова", "a@b", false, "Female", "Иванова", false, Client::Sex::Male},
        {"", " ", "", true, "", "Не указаны ФИО", false, Client::Sex::Male},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        Customer customer;
        customer.mobilePhone = QStringLiteral("79160000001");
        customer.firstName = QString::fromUtf8(c.first);
        customer.lastName = QString::fromUtf8(c.last);
        customer.email = QString::fromUtf8(c.email);
        customer.consentToElectronicChecks = c.consent;
        customer.sex = QString::fromUtf8(c.sex);
        customer.birthDate = QDate(1990, 3, 5);
        const auto revision = document->getRevision();

        plugin.fillClientInfo(card, customer);

        Client expected;
        expected.setName(QString::fromUtf8(c.name));
        expected.setPhoneNumber(customer.mobilePhone);
        expected.setEmail(customer.email);
        if (c.electronic) {
            expected.setOption(ClientOptions{2});
            expected.setOption(ClientOptions{1});
        }
        expected.setSex(c.clientSex);
        expected.setBirthday(customer.birthDate);
        EXPECT_EQ(*card->getCard()->getClient(), expected);
        EXPECT_EQ(document->getRevision(), revision + 1);
    }
}

} // namespace
} // namespace lmmindbox
