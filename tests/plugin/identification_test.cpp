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
    const Customer known = makeCustomer(u"79160000001"_s, true);
};

TEST_F(Identification, KnownCustomerIsBoundToTheCardStepByStep)
{
    auto confirmed = known;
    confirmed.isEmailConfirmed = true;
    auto edited = confirmed;
    edited.lastName = u"Иванова"_s;
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
    EXPECT_EQ(LogCapture::take(),
              QStringList({u"I Идентификация клиента по номеру телефона '%1'"_s.arg(entered),
                           u"I Клиент найден, телефон подтверждён, почта подтверждена"_s}));
}

TEST_F(Identification, UnknownCustomerIsRegisteredAndLookedUpAgain)
{
    // Not found again counts as found.
    auto second = notFound();
    second.customer.mobilePhone = u"as the service spells it"_s;
    {
        InSequence order;
        EXPECT_CALL(stepped, getCustomer(entered, false)).WillOnce(Return(notFound()));
        EXPECT_CALL(stepped, registerCustomer(entered)).WillOnce([&] {
            EXPECT_EQ(stepped.customer, Customer());
            stepped.customer.mobilePhone = u"as registered"_s;
            return true;
        });
        EXPECT_CALL(stepped, getCustomer(u"as registered"_s, false)).WillOnce(Return(second));
        EXPECT_CALL(stepped, confirmMobilePhone(second.customer)).WillOnce(Return(VerifyResult()));
        EXPECT_CALL(stepped, checkEmail);
        EXPECT_CALL(stepped, fillClientInfo(card, second.customer));
        EXPECT_CALL(stepped, storePluginData);
    }
    EXPECT_TRUE(identify());
    EXPECT_EQ(card->getNumber().toString(), second.customer.mobilePhone);
    const auto lines = LogCapture::take();
    EXPECT_EQ(lines.at(1), u"I Клиент не найден"_s);
    EXPECT_EQ(lines.at(2), u"I Клиент найден, телефон не подтверждён, почта не подтверждена"_s);
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
    EXPECT_EQ(error(), u"Ошибка связи с сервером"_s);

    lookUps({notFound()});
    EXPECT_CALL(stepped, registerCustomer).WillOnce([&] {
        stepped.lastError = {QString(), u"of the registration"_s};
        return false;
    });
    EXPECT_FALSE(identify());
    EXPECT_EQ(error(), u"of the registration"_s);

    EXPECT_CALL(stepped, registerCustomer).Times(2).WillRepeatedly(Return(true));
    lookUps({notFound(), refused});
    EXPECT_FALSE(identify());
    EXPECT_THAT(stepped.lastError,
                isText("lmmindboxRegisterCustomerError", "Не удалось зарегистрировать клиента"));
    lookUps({notFound(), unreachable});
    EXPECT_FALSE(identify());
    EXPECT_EQ(error(), u"Ошибка связи с сервером"_s);
    EXPECT_EQ(card->getNumber().toString(), entered);

    lookUps({found(known)});
    EXPECT_CALL(stepped, confirmMobilePhone)
        .WillOnce(Return(VerifyResult{1, {QString(), u"of the confirmation"_s}}));
    EXPECT_FALSE(identify());
    EXPECT_EQ(error(), u"of the confirmation"_s);
    EXPECT_EQ(card->getNumber().toString(), known.mobilePhone);
    EXPECT_EQ(stepped.customer, known);
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
    const auto filled = [this](const Customer &customer) {
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
    auto customer = known;
    customer.lastName = u"Иванова"_s;
    customer.birthDate = QDate(1990, 3, 5);
    customer.sex = u"female"_s;
    customer.consentToElectronicChecks = true;
    EXPECT_EQ(filled(customer),
              std::tuple(u"Анна Иванова"_s, 1, QList{ClientOptions{2}, ClientOptions{1}}));
    customer.firstName.clear();
    customer.sex = u"Female"_s;
    customer.consentToElectronicChecks = false;
    const QList<ClientOptions> none;
    EXPECT_EQ(filled(customer), std::tuple(u"Иванова"_s, 0, none));
    customer.lastName = u" "_s;
    customer.email.clear();
    customer.consentToElectronicChecks = true;
    EXPECT_EQ(filled(customer), std::tuple(u"Не указаны ФИО"_s, 0, none));
}

} // namespace
} // namespace lmmindbox
