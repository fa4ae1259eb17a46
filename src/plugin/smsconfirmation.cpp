#include "interface/interface.h"
#include "plugin/plugin.h"

#include <host/dialog.h>

#include <log4qt/logger.h>

namespace lmmindbox {

namespace {

constexpr int confirmed = 0;
constexpr int canceled = 1;
constexpr int failed = 2;

InputTextRequest codeInput()
{
    InputTextRequest request;
    request.title = {QStringLiteral("lmmindboxConfirmCodeTitle"),
                     QStringLiteral("Ввод кода подтверждения")};
    request.message = {QStringLiteral("lmmindboxConfirmCodeMessage"),
                       QStringLiteral("Введите код из СМС для подтверждения номера")};
    request.scanError = {QStringLiteral("inputTextFormScanError"),
                         QStringLiteral("Ошибка разбора введенных данных, повторите сканирование")};
    request.scanAllowed = true;
    request.okText = {QStringLiteral("inputTextFormOkBtn"), QStringLiteral("ОК")};
    request.cancelText = {QStringLiteral("inputTextFormCancelBtn"), QStringLiteral("Отмена")};
    request.inputId = QStringLiteral("inputLmMindboxConfirmCode");
    return request;
}

bool isWrongCode(const SmsConfirmationResult &result)
{
    return result.status == OperationStatus::ValidationError ||
           result.processingStatus == ProcessingStatus::IncorrectConfirmationCode;
}

bool isConfirmed(const SmsConfirmationResult &result)
{
    return result.processingStatus == ProcessingStatus::MobilePhoneConfirmed ||
           result.processingStatus == ProcessingStatus::AlreadyConfirmed;
}

} // namespace

VerifyResult Plugin::confirmMobilePhone(const Customer &holder)
{
    if (holder.isMobilePhoneConfirmed)
        return {confirmed, {}};

    logger->info(QStringLiteral("Подтверждение учетной записи через СМС"));
    if (!codeSent) {
        setProgress({QStringLiteral("lmmindboxSendConfirmCodeProgress"),
                     QStringLiteral("Отправка кода подтверждения")},
                    60);
        const auto sent = interface->resendMobilePhoneConfirmationCode(holder.mobilePhone);
        if (!sent.success() || !sent.customer.found())
            return {failed, sent.error};
    }
    codeSent = true;
    return askForCode(holder.mobilePhone);
}

VerifyResult Plugin::askForCode(const QString &phone)
{
    auto request = codeInput();
    while (true) {
        const auto input = MockFactory<Dialog>::create()->showInputText(request);
        if (input.canceled()) {
            return {canceled,
                    {QStringLiteral("lmmindboxConfirmCanceled"),
                     QStringLiteral("Ввод кода подтверждения отменен")}};
        }
        if (input.isEmpty())
            continue;
        const SmsConfirmationResult result = interface->confirmMobilePhone(phone, input.getData());
        if (isWrongCode(result)) {
            request.message = {
                QStringLiteral("lmmindboxConfirmCodeMessageError"),
                QStringLiteral("Некорректный код подтверждения.\nВведите код подтверждения")};
            continue;
        }
        if (isConfirmed(result))
            return {confirmed, {}};
        return {failed,
                result.getError({QStringLiteral("lmmindboxConfirmCodeError"),
                                 QStringLiteral("Не удалось проверить код подтверждения")})};
    }
}

} // namespace lmmindbox
