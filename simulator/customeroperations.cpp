#include "simulator/presets.h"
#include "simulator/service.h"

#include <QDateTime>

#include <algorithm>

namespace simulator {

using namespace Qt::StringLiterals;

namespace {

QString sentPhone(const QJsonObject &body)
{
    return normalizedPhone(body["customer"_L1]["mobilePhone"_L1].toString());
}

Answer phoneRefused(const QString &reason)
{
    return refusal(reason, u"customer.mobilePhone"_s);
}

/// A customer in an answer; only the processing status for an empty one.
QJsonObject customerPart(QJsonObject customer, QLatin1String processingStatus)
{
    customer.insert("processingStatus"_L1, processingStatus);
    return {{"customer"_L1, customer}};
}

Answer notFound()
{
    return success(customerPart({}, "NotFound"_L1));
}

Answer confirmation(QLatin1String processingStatus)
{
    return success(
        {{"smsConfirmation"_L1, QJsonObject{{"processingStatus"_L1, processingStatus}}}});
}

/// Takes over what was sent, in the form of the answers.
QJsonObject withData(QJsonObject customer, const QJsonObject &sent)
{
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

Answer Service::getCustomer(const QJsonObject &body)
{
    const auto phone = sentPhone(body);
    if (phone.isEmpty())
        return phoneRefused(u"This is no mobile phone number"_s);
    if (failingReloads.remove(phone))
        return protocolError(500, u"The customer cannot be read now"_s);
    const auto known = customer(phone);
    return known.isEmpty() ? notFound() : success(customerPart(known, "Found"_L1));
}

Answer Service::registerCustomer(const QJsonObject &body)
{
    const auto phone = sentPhone(body);
    if (phone.isEmpty())
        return phoneRefused(u"This is no mobile phone number"_s);
    if (behaviour(phone) == Behaviour::RegistrationRefused)
        return phoneRefused(u"The phone is blocked"_s);
    if (!customer(phone).isEmpty())
        return phoneRefused(u"The phone is registered already"_s);
    const QJsonObject blank{
        {"mobilePhone"_L1, phone},
        {"isMobilePhoneConfirmed"_L1, false},
        {"isEmailConfirmed"_L1, false},
        {"lastName"_L1, QString()},
        {"customFields"_L1, QJsonObject{{"consentToElectronicChecks"_L1, false}}}};
    const auto fresh = withData(blank, body["customer"_L1].toObject());
    store.put(kept::customers, phone, fresh);
    sendCode(phone);
    return success(customerPart(fresh, "Created"_L1));
}

Answer Service::editCustomer(const QJsonObject &body)
{
    const auto phone = sentPhone(body);
    const auto known = customer(phone);
    if (known.isEmpty())
        return phoneRefused(u"The customer is unknown"_s);
    const auto edited = withData(known, body["customer"_L1].toObject());
    store.put(kept::customers, phone, edited);
    if (behaviour(phone) == Behaviour::ReloadFails)
        failingReloads.insert(phone);
    return success(customerPart(edited, "Changed"_L1));
}

Answer Service::checkAuthorizationCode(const QJsonObject &body)
{
    const auto phone = sentPhone(body);
    const auto known = customer(phone);
    if (known.isEmpty())
        return notFound();
    const auto code = body["authentificationCode"_L1].toString();
    if (!isCodeRight(phone, code))
        return confirmation("IncorrectConfirmationCode"_L1);
    store.remove(kept::codes, phone);
    auto answer = customerPart(known, "Found"_L1);
    answer.insert("authenticationCode"_L1, code);
    return success(answer);
}

Answer Service::confirmMobilePhone(const QJsonObject &body)
{
    const auto phone = sentPhone(body);
    auto known = customer(phone);
    if (known.isEmpty())
        return notFound();
    if (known["isMobilePhoneConfirmed"_L1].toBool())
        return confirmation("AlreadyConfirmed"_L1);
    if (!isCodeRight(phone, body["smsConfirmation"_L1]["code"_L1].toString()))
        return confirmation("IncorrectConfirmationCode"_L1);
    known.insert("isMobilePhoneConfirmed"_L1, true);
    store.put(kept::customers, phone, known);
    store.remove(kept::codes, phone);
    return confirmation("MobilePhoneConfirmed"_L1);
}

Answer Service::resendConfirmationCode(const QJsonObject &body)
{
    const auto phone = sentPhone(body);
    const auto known = customer(phone);
    if (known.isEmpty())
        return notFound();
    sendCode(phone);
    return success(customerPart(known, "Found"_L1));
}

Answer Service::emailConfirmationLetter(const QJsonObject &body)
{
    const auto email = body["customer"_L1]["email"_L1].toString();
    const auto customers = store.all(kept::customers);
    if (std::none_of(customers.begin(), customers.end(),
                     [&email](const auto &customer) { return customer["email"_L1] == email; }))
        return refusal(u"No customer has this e-mail address"_s, u"customer.email"_s);
    if (isLetterRefused(email))
        return refusal(u"The mailbox does not accept letters"_s, u"customer.email"_s);
    store.append(kept::letters,
                 {{"email"_L1, email}, {"sentAt"_L1, QDateTime::currentMSecsSinceEpoch()}});
    message = u"Letter to %1"_s.arg(email);
    return success(customerPart({}, "Found"_L1));
}

QJsonObject Service::customer(const QString &phone) const
{
    return store.get(kept::customers, phone);
}

bool Service::isCodeRight(const QString &phone, const QString &code) const
{
    const auto sent = store.get(kept::codes, phone);
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
    store.put(kept::codes, phone, sent);
    store.append(kept::sms, sent);
    message = u"SMS to %1: code %2"_s.arg(phone, sent["code"_L1].toString());
}

} // namespace simulator
