#include "simulator/presets.h"
#include "simulator/service.h"

#include <QDateTime>

namespace simulator {

using namespace Qt::Literals::StringLiterals;

namespace {

QJsonObject sentCustomer(const QJsonObject &body)
{
    return body.value("customer"_L1).toObject();
}

QString sentPhone(const QJsonObject &body)
{
    return normalizedPhone(sentCustomer(body).value("mobilePhone"_L1).toString());
}

Answer noPhone()
{
    return refusal(QStringLiteral("This is no mobile phone number"),
                   QStringLiteral("customer.mobilePhone"));
}

/// A customer in an answer; only the processing status for an empty one.
QJsonObject customerPart(QJsonObject customer, QLatin1String processingStatus)
{
    customer.insert("processingStatus"_L1, processingStatus);
    return {{"customer"_L1, customer}};
}

QJsonObject confirmationPart(QLatin1String processingStatus)
{
    return {{"smsConfirmation"_L1, QJsonObject{{"processingStatus"_L1, processingStatus}}}};
}

/// Takes over what was sent, in the form of the answers.
QJsonObject withData(QJsonObject customer, const QJsonObject &sent)
{
    customer.insert("firstName"_L1, sent.value("firstName"_L1));
    customer.insert("sex"_L1, sent.value("sex"_L1));
    if (const auto text = sent.value("birthDate"_L1).toString(); !text.isEmpty())
        customer.insert(
            "birthDate"_L1,
            QDate::fromString(text, QStringLiteral("dd.MM.yyyy")).toString(Qt::ISODate));
    const auto email = sent.value("email"_L1);
    if (email.isString() && email != customer.value("email"_L1)) {
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
        return noPhone();
    if (failingReloads.remove(phone))
        return protocolError(500, QStringLiteral("The customer cannot be read now"));
    const auto customer = customers.customer(phone);
    return success(customer ? customerPart(*customer, "Found"_L1)
                            : customerPart({}, "NotFound"_L1));
}

Answer Service::registerCustomer(const QJsonObject &body)
{
    const auto phone = sentPhone(body);
    if (phone.isEmpty())
        return noPhone();
    if (behaviour(phone) == Behaviour::RegistrationRefused)
        return refusal(QStringLiteral("The phone is blocked"),
                       QStringLiteral("customer.mobilePhone"));
    if (customers.customer(phone))
        return refusal(QStringLiteral("The phone is registered already"),
                       QStringLiteral("customer.mobilePhone"));
    const QJsonObject blank{
        {"mobilePhone"_L1, phone},
        {"isMobilePhoneConfirmed"_L1, false},
        {"isEmailConfirmed"_L1, false},
        {"lastName"_L1, QString()},
        {"customFields"_L1, QJsonObject{{"consentToElectronicChecks"_L1, false}}}};
    const auto customer = withData(blank, sentCustomer(body));
    if (!keep({CustomerStore::customerRecord(customer), newCodeRecord(phone)}))
        return notKept();
    sendCode(phone);
    return success(customerPart(customer, "Created"_L1));
}

Answer Service::editCustomer(const QJsonObject &body)
{
    const auto phone = sentPhone(body);
    const auto known = customers.customer(phone);
    if (!known)
        return refusal(QStringLiteral("The customer is unknown"),
                       QStringLiteral("customer.mobilePhone"));
    const auto customer = withData(*known, sentCustomer(body));
    if (!keep({CustomerStore::customerRecord(customer)}))
        return notKept();
    if (behaviour(phone) == Behaviour::ReloadFails)
        failingReloads.insert(phone);
    return success(customerPart(customer, "Changed"_L1));
}

Answer Service::checkAuthorizationCode(const QJsonObject &body)
{
    const auto phone = sentPhone(body);
    const auto customer = customers.customer(phone);
    if (!customer)
        return success(customerPart({}, "NotFound"_L1));
    const auto code = body.value("authentificationCode"_L1).toString();
    if (!isCodeRight(phone, code))
        return success(confirmationPart("IncorrectConfirmationCode"_L1));
    if (!keep({CustomerStore::codeRecord(phone, {})}))
        return notKept();
    auto answer = customerPart(*customer, "Found"_L1);
    answer.insert("authenticationCode"_L1, code);
    return success(answer);
}

Answer Service::confirmMobilePhone(const QJsonObject &body)
{
    const auto phone = sentPhone(body);
    auto customer = customers.customer(phone);
    if (!customer)
        return success(customerPart({}, "NotFound"_L1));
    if (customer->value("isMobilePhoneConfirmed"_L1).toBool())
        return success(confirmationPart("AlreadyConfirmed"_L1));
    const auto code = body.value("smsConfirmation"_L1).toObject().value("code"_L1).toString();
    if (!isCodeRight(phone, code))
        return success(confirmationPart("IncorrectConfirmationCode"_L1));
    customer->insert("isMobilePhoneConfirmed"_L1, true);
    if (!keep({CustomerStore::customerRecord(*customer), CustomerStore::codeRecord(phone, {})}))
        return notKept();
    return success(confirmationPart("MobilePhoneConfirmed"_L1));
}

Answer Service::resendConfirmationCode(const QJsonObject &body)
{
    const auto phone = sentPhone(body);
    const auto customer = customers.customer(phone);
    if (!customer)
        return success(customerPart({}, "NotFound"_L1));
    if (!keep({newCodeRecord(phone)}))
        return notKept();
    sendCode(phone);
    return success(customerPart(*customer, "Found"_L1));
}

Answer Service::emailConfirmationLetter(const QJsonObject &body)
{
    const auto email = sentCustomer(body).value("email"_L1).toString();
    if (!customers.knowsEmail(email))
        return refusal(QStringLiteral("No customer has this e-mail address"),
                       QStringLiteral("customer.email"));
    if (isLetterRefused(email))
        return refusal(QStringLiteral("The mailbox does not accept letters"),
                       QStringLiteral("customer.email"));
    if (!keep({CustomerStore::letterRecord(email)}))
        return notKept();
    message = QStringLiteral("Letter to %1").arg(email);
    return success(customerPart({}, "Found"_L1));
}

bool Service::isCodeRight(const QString &phone, const QString &code) const
{
    const auto sent = customers.code(phone);
    return !code.isEmpty() && sent.text == code &&
           QDateTime::currentMSecsSinceEpoch() < sent.expiresAt;
}

QJsonObject Service::newCodeRecord(const QString &phone)
{
    return CustomerStore::codeRecord(
        phone, {.text = QString::number(random.bounded(1000, 10000)),
                .expiresAt = QDateTime::currentMSecsSinceEpoch() + options.codeLifetime.count()});
}

void Service::sendCode(const QString &phone)
{
    message = QStringLiteral("SMS to %1: code %2").arg(phone, customers.code(phone).text);
}

} // namespace simulator
