#include "interface/interface.h"
#include "model/jsonpath.h"

namespace lmmindbox {

Customer Interface::getCustomer(const QJsonObject &answer) const
{
    const auto value = answer.value(QLatin1String("customer"));
    if (value.isUndefined())
        return {};

    // Every path goes through the customer; a customer that is no object ends them all.
    const auto object = value.toObject();
    const auto read = [&value, &object](const QStringList &keys) {
        return value.isObject() ? getJsonValueByPath(object, keys) : value;
    };
    // The paths are built once, because every answer is parsed.
    static const QStringList mobilePhone = {QStringLiteral("mobilePhone")};
    static const QStringList phoneConfirmed = {QStringLiteral("isMobilePhoneConfirmed")};
    static const QStringList email = {QStringLiteral("email")};
    static const QStringList consent = {QStringLiteral("customFields"),
                                        QStringLiteral("consentToElectronicChecks")};
    static const QStringList firstName = {QStringLiteral("firstName")};
    static const QStringList lastName = {QStringLiteral("lastName")};
    static const QStringList birthDate = {QStringLiteral("birthDate")};
    static const QStringList sex = {QStringLiteral("sex")};
    static const QStringList processingStatus = {QStringLiteral("processingStatus")};

    // The answer's e-mail confirmation is ignored on purpose: every customer counts as unconfirmed,
    // so that each identification takes care of the e-mail.
    Customer customer;
    customer.mobilePhone = read(mobilePhone).toVariant().toString();
    customer.isMobilePhoneConfirmed = read(phoneConfirmed).toBool();
    customer.email = read(email).toString();
    customer.consentToElectronicChecks = read(consent).toBool();
    customer.firstName = read(firstName).toString();
    customer.lastName = read(lastName).toString();
    customer.birthDate = Customer::readBirthDate(read(birthDate).toString());
    customer.sex = read(sex).toString();
    customer.processingStatus = getProcessingStatus(read(processingStatus).toString());
    return customer;
}

} // namespace lmmindbox
