#include "simulator/service.h"

#include "simulator/bodycheck.h"
#include "simulator/presets.h"

#include <utility>

namespace simulator {

using namespace Qt::StringLiterals;

const QHash<QString, Service::Operation> Service::operations{
    {u"Offline.GetCustomer"_s, {&Service::getCustomer}},
    {u"Offline.RegisterCustomer"_s, {&Service::registerCustomer}},
    {u"Offline.EditCustomer"_s, {&Service::editCustomer}},
    {u"Offline.CheckMobilePhoneAuthorizationCode"_s, {&Service::checkAuthorizationCode, true}},
    {u"Offline.ConfirmMobilePhone"_s, {&Service::confirmMobilePhone, true}},
    {u"Offline.ResendMobilePhoneConfirmationCode"_s, {&Service::resendConfirmationCode, true}},
    {u"Offline.EmailConfirmationLetter"_s, {&Service::emailConfirmationLetter}},
    {u"Offline.CreateAuthorizedOrder"_s, {&Service::createAuthorizedOrder}},
    {u"Offline.ChangeStatus"_s, {&Service::changeStatus}},
};

Service::Service(const Options &options, State &state)
    : options(options)
    , state(state)
    , random(options.seed ? QRandomGenerator(*options.seed) : QRandomGenerator::securelySeeded())
{}

Answer Service::answer(const QString &operation, const QJsonObject &body)
{
    const auto known = operations.constFind(operation);
    if (known == operations.constEnd())
        return protocolError(400, u"Unknown operation '%1'"_s.arg(operation));
    if (const auto messages = checkBody(body, u"operations"_s, operation); !messages.isEmpty())
        return validationError(messages);
    const auto phone = normalizedPhone(body["customer"_L1]["mobilePhone"_L1].toString());
    const Asked asked{body, phone, state.get(kept::customers, phone)};
    if (known->isForKnown && asked.customer.isEmpty())
        return processed("customer"_L1, "NotFound"_L1);
    auto answer = (this->*known->carryOut)(asked);
    const auto word = std::exchange(message, {});
    if (const auto stored = state.commit(); !stored) {
        // As from a service whose disk is full.
        qWarning("%s", qPrintable(stored.error()));
        return {.httpCode = 500};
    }
    if (!word.isEmpty())
        options.print(word);
    return answer;
}

QJsonObject Service::subject(const QJsonObject &body) const
{
    const auto sent = body["customer"_L1].toObject();
    const auto id = orderId(body["order"_L1].toObject());
    auto phone = sent["mobilePhone"_L1].toString();
    if (phone.isEmpty() && !id.isEmpty())
        phone = state.get(kept::orders, id)["mobilePhone"_L1].toString();
    if (const auto email = sent["email"_L1].toString(); phone.isEmpty() && !email.isEmpty())
        phone = customerWith(email)["mobilePhone"_L1].toString();
    return {{"phone"_L1, normalizedPhone(phone)}, {"order"_L1, id.section(u'=', 1)}};
}

} // namespace simulator
