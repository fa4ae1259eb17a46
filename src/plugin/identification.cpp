#include "interface/interface.h"
#include "plugin/plugin.h"

#include <host/documentcardrecord.h>

#include <log4qt/logger.h>

namespace lmmindbox {

namespace {

/// The word that turns the log's "confirmed" into "not confirmed".
QString unless(bool confirmed)
{
    return confirmed ? QString() : QStringLiteral("не ");
}

} // namespace

loyalty::CardNumberAnswer Plugin::getCardNumber(const loyalty::CardNumberInputData &input)
{
    if (input.kind != loyalty::CardNumberInputData::typed)
        return BasicLoyaltySystem::getCardNumber(input);
    return {true, input.text, {}};
}

bool Plugin::identifyByCard(QSharedPointer<DocumentCardRecord> &card, ECardNumberType /*type*/)
{
    const auto enteredPhone = card->getNumber().toString();
    logger->info(QStringLiteral("Идентификация клиента по номеру телефона '%1'"), enteredPhone);
    clearLoyaltyData();

    auto result = getCustomer(enteredPhone, false);
    if (!result.success()) {
        lastError = result.getError({QStringLiteral("lmmindboxGetCustomerError"),
                                     QStringLiteral("Не удалось получить информацию о клиенте")});
        return false;
    }
    if (!result.customer.found()) {
        logger->info(QStringLiteral("Клиент не найден"));
        if (!registerCustomer(enteredPhone))
            return false;
        // A registered customer counts as found even when the service still answers "not found".
        result = getCustomer(customer.mobilePhone, false);
        if (!result.success()) {
            lastError = result.getError(notRegistered());
            return false;
        }
    }

    card->setNumber(result.customer.mobilePhone);
    customer = result.customer;
    logger->info(QStringLiteral("Клиент найден, телефон %1подтверждён, почта %2подтверждена"),
                 unless(customer.isMobilePhoneConfirmed), unless(customer.isEmailConfirmed));

    if (const auto verified = confirmMobilePhone(customer); verified.code != 0) {
        lastError = verified.message;
        return false;
    }
    checkEmail();
    fillClientInfo(card, customer);
    storePluginData();
    return true;
}

GetCustomerResult Plugin::getCustomer(const QString &phone, bool sendLetter)
{
    auto result = interface->getCustomer(phone);
    if (sendLetter && result.success() && !result.customer.isEmailConfirmed)
        sendConfirmationLetter(result.customer.email);
    return result;
}

} // namespace lmmindbox
