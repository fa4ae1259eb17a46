#include "interface/interface.h"
#include "model/customeredit.h"

#include <log4qt/logger.h>

namespace lmmindbox {

namespace {

QJsonObject bodyWithPhone(const QString &phone)
{
    return {{QStringLiteral("customer"), QJsonObject{{QStringLiteral("mobilePhone"), phone}}}};
}

QJsonObject bodyWithData(const CustomerEdit &edit)
{
    QJsonObject customer = {
        {QStringLiteral("mobilePhone"), edit.phone},
        {QStringLiteral("sex"),
         edit.sex == Client::Sex::Male ? QStringLiteral("male") : QStringLiteral("female")},
        {QStringLiteral("firstName"), edit.name},
    };
    if (edit.birthday.isValid()) {
        customer.insert(QLatin1String("birthDate"),
                        edit.birthday.toString(QStringLiteral("dd.MM.yyyy")));
    }
    if (!edit.email.isEmpty())
        customer.insert(QLatin1String("email"), edit.email);
    return {{QStringLiteral("customer"), customer}};
}

} // namespace

GetCustomerResult Interface::getCustomer(const QString &phone)
{
    logger->info(QStringLiteral("Получение данных клиента"));
    return sendRequest(QStringLiteral("Offline.GetCustomer"), bodyWithPhone(phone), {});
}

RegisterCustomerResult Interface::registerCustomer(const CustomerEdit &edit)
{
    logger->info(QStringLiteral("Регистрация клиента"));
    return sendRequest(QStringLiteral("Offline.RegisterCustomer"), bodyWithData(edit), {});
}

OperationResult Interface::editCustomer(const CustomerEdit &edit)
{
    logger->info(QStringLiteral("Изменение данных клиента"));
    return sendRequest(QStringLiteral("Offline.EditCustomer"), bodyWithData(edit), {});
}

OperationResult Interface::resendMobilePhoneConfirmationCode(const QString &phone)
{
    logger->info(QStringLiteral("Отправка кода для подтверждения номера '%1'"), phone);
    return sendRequest(QStringLiteral("Offline.ResendMobilePhoneConfirmationCode"),
                       bodyWithPhone(phone), {});
}

OperationResult Interface::confirmMobilePhone(const QString &phone, const QString &code)
{
    logger->info(QStringLiteral("Подтверждение телефона '%1' кодом '%2'"), phone, code);
    auto body = bodyWithPhone(phone);
    body.insert(QLatin1String("smsConfirmation"), QJsonObject{{QStringLiteral("code"), code}});
    return sendRequest(QStringLiteral("Offline.ConfirmMobilePhone"), body, {});
}

OperationResult Interface::checkMobilePhoneAuthCode(const QString &phone, const QString &code)
{
    logger->info(QStringLiteral("Проверка кода авторизации для номера '%1'"), phone);
    auto body = bodyWithPhone(phone);
    // The request's spelling differs from the answer's "authenticationCode".
    body.insert(QLatin1String("authentificationCode"), code);
    return sendRequest(QStringLiteral("Offline.CheckMobilePhoneAuthorizationCode"), body, {});
}

OperationResult Interface::emailConfirmationLetter(const QString &email)
{
    logger->info(QStringLiteral("Подтверждение электронной почты"));
    const QJsonObject body = {
        {QStringLiteral("customer"), QJsonObject{{QStringLiteral("email"), email}}},
    };
    return sendRequest(QStringLiteral("Offline.EmailConfirmationLetter"), body, {});
}

} // namespace lmmindbox
