#include "interface/interface.h"
#include "plugin/editaction.h"
#include "plugin/plugin.h"

#include <host/dialog.h>

#include <log4qt/logger.h>

namespace lmmindbox {

EContext::Result Plugin::editCustomer(const control::Action &action)
{
    auto card = getCard();
    if (!card && action.getType() == customerEditAction)
        return EContext::Result::Skipped;

    logger->info(QStringLiteral("Редактирование данных клиента"));
    const auto edit = showCustomerEdit(customer);
    if (edit.name.isEmpty())
        return EContext::Result::Skipped;

    const auto progress = MockFactory<Dialog>::create()->showProgress(
        {QStringLiteral("lmmindboxRequest"), QStringLiteral("Обращение к серверу...")}, {});
    const auto result = interface->editCustomer(edit);
    if (result.status != OperationStatus::Success) {
        const tr::Tr refused(QStringLiteral("lmmindboxEditCustomerError"),
                             QStringLiteral("Не удалось изменить данные клиента"));
        MockFactory<Dialog>::create()->showError(result.getError(refused), 0, 0);
        return EContext::Result::Failed;
    }

    if (const auto reloaded = getCustomer(customer.mobilePhone, true); reloaded.success())
        customer = reloaded.customer;
    else
        logger->warn(QStringLiteral("Не удалось получить актуальные данные клиента"));
    if (card) {
        fillClientInfo(card, customer);
        storePluginData();
    }
    return EContext::Result::Done;
}

void Plugin::checkEmail()
{
    if (customer.isEmailConfirmed)
        return;
    if (!customer.email.isEmpty()) {
        sendConfirmationLetter(customer.email);
        return;
    }
    logger->info(QStringLiteral("Почта не указана, отображение диалога редактирования клиента"));
    editCustomer({});
}

void Plugin::sendConfirmationLetter(const QString &email)
{
    if (confirmedEmails.contains(email))
        return;
    if (email.isEmpty()) {
        confirmedEmails.clear();
        return;
    }
    const auto result = interface->emailConfirmationLetter(email);
    if (result.status == OperationStatus::Success) {
        confirmedEmails.insert(email);
        return;
    }
    MockFactory<Dialog>::create()->showError(
        {QStringLiteral("lmmindboxEmailConfirmError"),
         QStringLiteral("Не удалось подтвердить почту клиента")},
        0, 0);
}

} // namespace lmmindbox
