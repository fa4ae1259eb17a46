#include "interface/interface.h"
#include "plugin/plugin.h"

#include <host/dialog.h>

#include <log4qt/logger.h>

namespace lmmindbox {

namespace {

tr::Tr notRegistered()
{
    return {QStringLiteral("lmmindboxRegisterCustomerError"),
            QStringLiteral("Не удалось зарегистрировать клиента")};
}

} // namespace

std::optional<Customer> Plugin::registerAndLookUp(const QString &phone)
{
    if (!registerCustomer(phone))
        return {};
    const auto result = getCustomer(customer.mobilePhone, false);
    if (!result.success()) {
        lastError = result.getError(notRegistered());
        return {};
    }
    // Not found counts as found here: the service may still be indexing the new customer.
    return result.customer;
}

bool Plugin::registerCustomer(const QString &phone)
{
    const tr::Tr canceled(QStringLiteral("lmmindboxRegisterCustomerCanceled"),
                          QStringLiteral("Клиент не добавлен"));
    const auto agreed = MockFactory<Dialog>::create()->showChoice(
        {QStringLiteral("lmmindboxRegisterCustomerChoice"),
         QStringLiteral("Клиент не найден.\nЗарегистрировать клиента?")},
        0, {QStringLiteral("dialogChoiceOk"), QStringLiteral("ОК")},
        {QStringLiteral("dialogChoiceCancel"), QStringLiteral("Отмена")}, 0);
    if (!agreed) {
        lastError = canceled;
        return false;
    }

    logger->info(QStringLiteral("Регистрация клиента"));
    // The look-up's status is not kept here, so the form bears its usual title.
    customer.mobilePhone = phone;
    const auto edit = showCustomerEdit(customer);
    if (edit.name.isEmpty()) {
        lastError = canceled;
        return false;
    }
    logger->info(QStringLiteral("Данные: %1"), edit.toString());

    ProgressRequest request;
    request.message = {QStringLiteral("lmmindboxRegisterCustomerProgress"),
                       QStringLiteral("Регистрация клиента")};
    const auto progress = MockFactory<Dialog>::create()->showProgress(request);
    const auto result = interface->registerCustomer(edit);
    if (!result.success()) {
        lastError = result.getError(notRegistered());
        return false;
    }
    logger->info(QStringLiteral("Клиент успешно создан"));
    codeSent = true; // the service sends the code to a new customer by itself
    return true;
}

} // namespace lmmindbox
