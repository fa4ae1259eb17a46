#include "fakes.h"

#include <ranges>

namespace lmmindbox {
namespace {

using testing::_;
using testing::InSequence;
using testing::Return;

class Identification : public WorkflowTest
{
protected:
    Identification() { EXPECT_CALL(stepped, clearLoyaltyData).Times(testing::AnyNumber()); }

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

    const QString entered = card->getNumber().toString();
    const Customer known = makeCustomer(QStringLiteral("79160000001"), true);
};

TEST_F(Identification, KnownCustomerIsBoundToTheCardStepByStep)
{
    auto confirmed = known;
    confirmed.isEmailConfirmed = true;
    auto edited = confirmed;
    edited.lastName = QStringLiteral("Иванова");
    {
        InSequence order;
        EXPECT_CALL(stepped, clearLoyaltyData);
        EXPECT_CALL(stepped, getCustomer(entered, false)).WillOnce(Return(found(confirmed)));
        EXPECT_CALL(stepped, confirmMobilePhone(confirmed)).WillOnce([&] {
            EXPECT_EQ(card->getNumber().toString(), known.mobilePhone);
            EXPECT_EQ(stepped.customer, confirmed);
            return VerifyResult();
        });
        // The edit form opened by the check of the e-mail may replace the customer.
        EXPECT_CALL(stepped, checkEmail).WillOnce([&] { stepped.customer = edited; });
        EXPECT_CALL(stepped, fillClientInfo(card, edited));
        EXPECT_CALL(stepped, storePluginData);
    }
    EXPECT_TRUE(identify());
    EXPECT_EQ(
        LogCapture::take(),
        QStringList({QStringLiteral("I Идентификация клиента по номеру телефона '%1'").arg(entered),
                     QStringLiteral("I Клиент найден, телефон подтверждён, почта подтверждена")}));
}

TEST_F(Identification, UnknownCustomerIsRegisteredAndLookedUpAgain)
{
    // Not found again counts as found.
    auto second = notFound();
    second.customer.mobilePhone = QStringLiteral("as the service spells it");
    {
        InSequence order;
        EXPECT_CALL(stepped, getCustomer(entered, false)).WillOnce(Return(notFound()));
        EXPECT_CALL(stepped, registerCustomer(entered)).WillOnce([&] {
            EXPECT_EQ(stepped.customer, Customer());
            stepped.customer.mobilePhone = QStringLiteral("as registered");
            return true;
        });
        EXPECT_CALL(stepped, getCustomer(QStringLiteral("as registered"), false))
            .WillOnce(Return(second));
        EXPECT_CALL(stepped, confirmMobilePhone(second.customer)).WillOnce(Return(VerifyResult()));
        EXPECT_CALL(stepped, checkEmail);
        EXPECT_CALL(stepped, fillClientInfo(card, second.customer));
        EXPECT_CALL(stepped, storePluginData);
    }
    EXPECT_TRUE(identify());
    EXPECT_EQ(card->getNumber().toString(), second.customer.mobilePhone);
    const auto lines = LogCapture::take();
    EXPECT_EQ(lines.at(1), QStringLiteral("I Клиент не найден"));
    EXPECT_EQ(lines.at(2),
              QStringLiteral("I Клиент найден, телефон не подтверждён, почта не подтверждена"));
}

TEST_F(Identification, EachFailureSaysItsOwn)
{
    const auto lookUps = [this](const std::vector<GetCustomerResult> &results) {
        // The expectation set last is met first.
        for (const auto &result : results | std::views::reverse)
            EXPECT_CALL(stepped, getCustomer).WillOnce(Return(result)).RetiresOnSaturation();
    };
    const GetCustomerResult refused = makeResult(OperationStatus::ValidationError, known);
    const GetCustomerResult unreachable = withoutConnection();

    lookUps({refused});
    EXPECT_FALSE(identify());
    EXPECT_THAT(stepped.lastError,
                isText("lmmindboxGetCustomerError", "Не удалось получить информацию о клиенте"));
    EXPECT_EQ(stepped.customer, Customer());
    lookUps({unreachable});
    EXPECT_FALSE(identify());
    EXPECT_EQ(error(), QStringLiteral("Ошибка связи с сервером"));

    lookUps({notFound()});
    EXPECT_CALL(stepped, registerCustomer).WillOnce([&] {
        stepped.lastError = {QString(), QStringLiteral("of the registration")};
        return false;
    });
    EXPECT_FALSE(identify());
    EXPECT_EQ(error(), QStringLiteral("of the registration"));

    EXPECT_CALL(stepped, registerCustomer).Times(2).WillRepeatedly(Return(true));
    lookUps({notFound(), refused});
    EXPECT_FALSE(identify());
    EXPECT_THAT(stepped.lastError,
                isText("lmmindboxRegisterCustomerError", "Не удалось зарегистрировать клиента"));
    lookUps({notFound(), unreachable});
    EXPECT_FALSE(identify());
    EXPECT_EQ(error(), QStringLiteral("Ошибка связи с сервером"));
    EXPECT_EQ(card->getNumber().toString(), entered);

    lookUps({found(known)});
    EXPECT_CALL(stepped, confirmMobilePhone)
        .WillOnce(Return(VerifyResult{1, {QString(), QStringLiteral("of the confirmation")}}));
    EXPECT_FALSE(identify());
    EXPECT_EQ(error(), QStringLiteral("of the confirmation"));
    EXPECT_EQ(card->getNumber().toString(), known.mobilePhone);
    EXPECT_EQ(stepped.customer, known);
}

TEST_F(Identification, ANewCustomerIsRegisteredConfirmedAndBoundInOneGo)
{
    auto fresh = makeCustomer(QStringLiteral("79160000001"), false);
    EXPECT_CALL(dialog, showChoice).WillOnce(Return(true));
    EXPECT_CALL(dialog, showForm)
        .WillOnce(Return(QVariantMap{{QStringLiteral("name"), QStringLiteral("Анна")}}));
    EXPECT_CALL(dialog, showProgress(_)).WillOnce(Return(nullptr));
    EXPECT_CALL(dialog, showInputText)
        .WillOnce(Return(core::BasicDialog::Result(QStringLiteral("0012"))));
    OperationResult done;
    done.response = QJsonDocument::fromJson(
                        R"({"customer": {"processingStatus": "Created"},
                            "smsConfirmation": {"processingStatus": "MobilePhoneConfirmed"}})")
                        .object();
    {
        InSequence order;
        EXPECT_CALL(*service, getCustomer(entered)).WillOnce(Return(notFound()));
        EXPECT_CALL(*service, registerCustomer).WillOnce(Return(RegisterCustomerResult(done)));
        EXPECT_CALL(*service, getCustomer(entered)).WillOnce(Return(found(fresh)));
        EXPECT_CALL(*service, confirmMobilePhone(fresh.mobilePhone, QStringLiteral("0012")))
            .WillOnce(Return(done));
        EXPECT_CALL(*service, emailConfirmationLetter(fresh.email))
            .WillOnce(Return(makeResult(OperationStatus::Success)));
        EXPECT_CALL(saveToFile, save(document, QString()));
    }
    EXPECT_TRUE(plugin.identifyByCard(card, ECardNumberType::Scanned));
    EXPECT_EQ(card->getCard()->getClient()->getName(), fresh.firstName);
    EXPECT_EQ(plugin.customer, fresh);
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
    auto withoutEmail = known;
    withoutEmail.email.clear();
    EXPECT_CALL(*service, getCustomer(entered))
        .WillOnce(Return(found(known)))
        .WillOnce(Return(found(confirmed)))
        .WillOnce(Return(GetCustomerResult(makeResult(OperationStatus::Error, known))))
        .WillOnce(Return(found(known)))
        .WillOnce(Return(found(withoutEmail)));
    const auto lookUp = [this](bool sendLetter) {
        return stepped.Plugin::getCustomer(entered, sendLetter);
    };
    EXPECT_EQ(lookUp(false).customer, known);
    EXPECT_EQ(lookUp(true).customer, confirmed);
    EXPECT_FALSE(lookUp(true).success());

    EXPECT_CALL(stepped, sendConfirmationLetter(known.email));
    EXPECT_EQ(lookUp(true).customer, known);
    // An empty address is passed on: it makes the plugin forget the letters sent.
    EXPECT_CALL(stepped, sendConfirmationLetter(QString()));
    EXPECT_EQ(lookUp(true).customer, withoutEmail);
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
