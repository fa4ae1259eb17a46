#include "interface/interface.h"
#include "plugin/plugin.h"

#include <host/dialog.h>

#include <log4qt/logger.h>

namespace lmmindbox {

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
    // The look-up's status is not set here, so the form has its usual title.
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
    codeSent = true; // the confirmation that follows asks for the code without sending one
    return true;
}

tr::Tr Plugin::notRegistered()
{
    return {QStringLiteral("lmmindboxRegisterCustomerError"),
            QStringLiteral("Не удалось зарегистрировать клиента")};
}

} // namespace lmmindbox
