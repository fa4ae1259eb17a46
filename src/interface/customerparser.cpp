#include "interface/interface.h"
#include "model/isodate.h"
#include "model/jsonpath.h"

namespace lmmindbox {

namespace {

QStringList keysOf(const QString &path)
{
    return path.split(QLatin1Char('.'));
}

} // namespace

Customer Interface::getCustomer(const QJsonObject &answer) const
{
    if (!answer.contains(QLatin1String("customer")))
        return {};

    // Split once: every answer is parsed.
    static const auto mobilePhone = keysOf(QStringLiteral("customer.mobilePhone"));
    static const auto phoneConfirmed = keysOf(QStringLiteral("customer.isMobilePhoneConfirmed"));
    static const auto email = keysOf(QStringLiteral("customer.email"));
    static const auto consent =
        keysOf(QStringLiteral("customer.customFields.consentToElectronicChecks"));
    static const auto firstName = keysOf(QStringLiteral("customer.firstName"));
    static const auto lastName = keysOf(QStringLiteral("customer.lastName"));
    static const auto birthDate = keysOf(QStringLiteral("customer.birthDate"));
    static const auto sex = keysOf(QStringLiteral("customer.sex"));
    static const auto processingStatus = keysOf(QStringLiteral("customer.processingStatus"));
    const auto read = [&answer](const QStringList &keys) {
        return getJsonValueByPath(answer, keys);
    };

    Customer customer;
    customer.mobilePhone = read(mobilePhone).toVariant().toString();
    customer.isMobilePhoneConfirmed = read(phoneConfirmed).toBool();
    customer.email = read(email).toString();
    customer.consentToElectronicChecks = read(consent).toBool();
    customer.firstName = read(firstName).toString();
    customer.lastName = read(lastName).toString();
    customer.birthDate = readIsoDate(read(birthDate).toString());
    customer.sex = read(sex).toString();
    customer.processingStatus = getProcessingStatus(read(processingStatus).toString());
    return customer;
}

} // namespace lmmindbox
