#include "interface/interface.h"
#include "plugin/plugin.h"

#include <host/dialog.h>

#include <log4qt/logger.h>

namespace lmmindbox {

EContext::Result Plugin::editCustomer(const control::Action &action)
{
    auto card = getCard();
    if (!card && action.getType() == control::Action::editCustomer)
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

} // namespace lmmindbox
