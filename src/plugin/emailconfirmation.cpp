#include "interface/interface.h"
#include "plugin/plugin.h"

#include <host/dialog.h>

#include <log4qt/logger.h>

namespace lmmindbox {

void Plugin::checkEmail()
{
    if (customer.isEmailConfirmed)
        return;
    if (!customer.email.isEmpty()) {
        sendConfirmationLetter(customer.email);
        return;
    }
    logger->info(QStringLiteral("Почта не указана, отображение диалога редактирования клиента"));
    // An action without a type opens the form even while the receipt has no card.
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
