#include "simulator/presets.h"
#include "simulator/service.h"

#include <QDateTime>

namespace simulator {

using namespace Qt::StringLiterals;

namespace {

Answer phoneRefused(const QString &reason)
{
    return refusal(reason, u"customer.mobilePhone"_s);
}

/// Copies the sent data into the customer, in the form of the answers.
QJsonObject withData(QJsonObject customer, const QJsonObject &body)
{
    const auto sent = body["customer"_L1].toObject();
    customer.insert("firstName"_L1, sent["firstName"_L1]);
    customer.insert("sex"_L1, sent["sex"_L1]);
    if (const auto text = sent["birthDate"_L1].toString(); !text.isEmpty())
        customer.insert("birthDate"_L1,
                        QDate::fromString(text, u"dd.MM.yyyy"_s).toString(Qt::ISODate));
    const auto email = sent["email"_L1];
    if (email.isString() && email != customer["email"_L1]) {
        customer.insert("email"_L1, email);
        customer.insert("isEmailConfirmed"_L1, false);
    }
    return customer;
}

} // namespace

Answer Service::getCustomer(const Asked &asked)
{
    if (asked.phone.isEmpty())
        return phoneRefused(u"This is no mobile phone number"_s);
    return processed("customer"_L1, asked.customer.isEmpty() ? "NotFound"_L1 : "Found"_L1,
                     asked.customer);
}

Answer Service::registerCustomer(const Asked &asked)
{
    if (asked.phone.isEmpty())
        return phoneRefused(u"This is no mobile phone number"_s);
    if (behaviour(asked.phone) == "registrationRefused"_L1)
        return phoneRefused(u"The phone is blocked"_s);
    if (!asked.customer.isEmpty())
        return phoneRefused(u"The phone is registered already"_s);
    const auto fresh = withData(newCustomer(asked.phone), asked.body);
    state.put(kept::customers, asked.phone, fresh);
    sendCode(asked.phone);
    return processed("customer"_L1, "Created"_L1, fresh);
}

Answer Service::editCustomer(const Asked &asked)
{
    if (asked.customer.isEmpty())
        return phoneRefused(u"The customer is unknown"_s);
    const auto edited = withData(asked.customer, asked.body);
    state.put(kept::customers, asked.phone, edited);
    return processed("customer"_L1, "Changed"_L1, edited);
}

Answer Service::checkAuthorizationCode(const Asked &asked)
{
    const auto code = asked.body["authentificationCode"_L1].toString();
    if (!isCodeRight(asked.phone, code))
        return processed("smsConfirmation"_L1, "IncorrectConfirmationCode"_L1);
    state.remove(kept::codes, asked.phone);
    const auto found = merged(asked.customer, {{"processingStatus"_L1, "Found"_L1}});
    return success({{"customer"_L1, found}, {"authenticationCode"_L1, code}});
}

Answer Service::confirmMobilePhone(const Asked &asked)
{
    auto known = asked.customer;
    if (known["isMobilePhoneConfirmed"_L1].toBool())
        return processed("smsConfirmation"_L1, "AlreadyConfirmed"_L1);
    if (!isCodeRight(asked.phone, asked.body["smsConfirmation"_L1]["code"_L1].toString()))
        return processed("smsConfirmation"_L1, "IncorrectConfirmationCode"_L1);
    known.insert("isMobilePhoneConfirmed"_L1, true);
    state.put(kept::customers, asked.phone, known);
    state.remove(kept::codes, asked.phone);
    return processed("smsConfirmation"_L1, "MobilePhoneConfirmed"_L1);
}

Answer Service::resendConfirmationCode(const Asked &asked)
{
    sendCode(asked.phone);
    return processed("customer"_L1, "Found"_L1, asked.customer);
}

Answer Service::emailConfirmationLetter(const Asked &asked)
{
    const auto email = asked.body["customer"_L1]["email"_L1].toString();
    const auto known = customerWith(email);
    if (known.isEmpty())
        return refusal(u"No customer has this e-mail address"_s, u"customer.email"_s);
    if (behaviour(known["mobilePhone"_L1].toString()) == "letterRefused"_L1)
        return refusal(u"The mailbox does not accept letters"_s, u"customer.email"_s);
    state.put(kept::letters, email,
              {{"email"_L1, email}, {"sentAt"_L1, QDateTime::currentMSecsSinceEpoch()}});
    message = u"Letter to %1"_s.arg(email);
    return processed("customer"_L1, "Found"_L1);
}

QJsonObject Service::customerWith(const QString &email) const
{
    for (const auto customer : state.all(kept::customers)) {
        if (customer["email"_L1] == email)
            return customer.toObject();
    }
    return {};
}

bool Service::isCodeRight(const QString &phone, const QString &code) const
{
    const auto sent = state.get(kept::codes, phone);
    return sent["code"_L1] == code &&
           QDateTime::currentMSecsSinceEpoch() < sent["expiresAt"_L1].toInteger();
}

void Service::sendCode(const QString &phone)
{
    const auto now = QDateTime::currentMSecsSinceEpoch();
    const QJsonObject sent{{"mobilePhone"_L1, phone},
                           {"code"_L1, QString::number(random.bounded(1000, 10000))},
                           {"sentAt"_L1, now},
                           {"expiresAt"_L1, now + qint64(options.codeLifetime.count())}};
    state.put(kept::codes, phone, sent);
    message = u"SMS to %1: code %2"_s.arg(phone, sent["code"_L1].toString());
}

} // namespace simulator
