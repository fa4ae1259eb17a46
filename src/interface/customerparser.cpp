#include "interface/interface.h"
#include "model/jsonpath.h"

namespace lmmindbox {

Customer Interface::getCustomer(const QJsonObject &answer) const
{
    const auto value = answer.value(QLatin1String("customer"));
    if (value.isUndefined())
        return {};

    // The walk to each field begins at the customer, where all of them pass.
    const auto object = value.toObject();
    const auto read = [&value, &object](const QStringList &keys) {
        return value.isObject() ? getJsonValueByPath(object, keys) : value;
    };
    // Every answer is parsed, so the paths are made once.
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

    // The confirmation of the e-mail is not read on purpose, not even where an answer has it: every
    // customer counts as unconfirmed, so that each identification cares for the e-mail.
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
