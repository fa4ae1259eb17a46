#include "fakes.h"

namespace lmmindbox {
namespace {

using core::BasicDialog::Result;
using testing::_;
using testing::InSequence;
using testing::Return;

class SmsConfirmation : public WorkflowTest
{
protected:
    static OperationResult checked(const char *processingStatus,
                                   OperationStatus status = OperationStatus::Success)
    {
        auto result = makeResult(status);
        result.response = {
            {u"smsConfirmation"_s,
             QJsonObject{{u"processingStatus"_s, QString::fromUtf8(processingStatus)}}}};
        return result;
    }
    void typeOnce(const QString &code)
    {
        EXPECT_CALL(dialog, showInputText).WillOnce(Return(Result(code)));
    }

    const QString phone = u"79160000002"_s;
    const Customer customer = makeCustomer(phone, false);
};

TEST_F(SmsConfirmation, ConfirmedPhoneNeedsNothing)
{
    EXPECT_EQ(stepped.Plugin::confirmMobilePhone(makeCustomer(phone, true)), VerifyResult());
    EXPECT_FALSE(stepped.codeSent);
    EXPECT_TRUE(LogCapture::take().isEmpty());
}

TEST_F(SmsConfirmation, SendsACodeOnceAndAsksUntilItIsRight)
{
    const auto wrongCode = isText("lmmindboxConfirmCodeMessageError",
                                  "Некорректный код подтверждения.\nВведите код подтверждения");
    const auto showing = [this](const auto &message, const QString &typed) {
        EXPECT_CALL(dialog, showInputText(testing::Field(&InputTextRequest::message, message)))
            .WillOnce(Return(Result(typed)));
    };
    const auto first =
        isText("lmmindboxConfirmCodeMessage", "Введите код из СМС для подтверждения номера");
    {
        InSequence order;
        EXPECT_CALL(stepped, setProgress(isText("lmmindboxSendConfirmCodeProgress",
                                                "Отправка кода подтверждения"),
                                         60));
        EXPECT_CALL(*service, resendMobilePhoneConfirmationCode(phone))
            .WillOnce(Return(makeResult(OperationStatus::Success, customer)));
        showing(first, QString());
        showing(first, u" 1111 "_s);
        EXPECT_CALL(*service, confirmMobilePhone(phone, u" 1111 "_s))
            .WillOnce(Return(checked("IncorrectConfirmationCode")));
        showing(wrongCode, QString());
        showing(wrongCode, u"2222"_s);
        // A wrong code outweighs a confirmation in the same answer.
        EXPECT_CALL(*service, confirmMobilePhone(phone, u"2222"_s))
            .WillOnce(Return(checked("AlreadyConfirmed", OperationStatus::ValidationError)));
        showing(wrongCode, u"3333"_s);
        EXPECT_CALL(*service, confirmMobilePhone(phone, u"3333"_s))
            .WillOnce(Return(checked("MobilePhoneConfirmed")));
    }
    EXPECT_EQ(stepped.Plugin::confirmMobilePhone(customer), VerifyResult());
    EXPECT_TRUE(stepped.codeSent);
    EXPECT_EQ(LogCapture::take(), QStringList(u"I Подтверждение учетной записи через СМС"_s));

    // The second confirmation of one identification sends no code and begins with the first text.
    showing(first, u"4444"_s);
    EXPECT_CALL(*service, confirmMobilePhone)
        .WillOnce(Return(checked("AlreadyConfirmed", OperationStatus::ProtocolError)));
    EXPECT_EQ(stepped.Plugin::confirmMobilePhone(customer).code, 0);
}

TEST_F(SmsConfirmation, InputCarriesWhatTheHostNeeds)
{
    stepped.codeSent = true;
    EXPECT_CALL(dialog, showInputText).WillOnce([](const InputTextRequest &request) {
        EXPECT_THAT(request.title, isText("lmmindboxConfirmCodeTitle", "Ввод кода подтверждения"));
        EXPECT_THAT(request.scanError,
                    isText("inputTextFormScanError",
                           "Ошибка разбора введенных данных, повторите сканирование"));
        EXPECT_THAT(request.okText, isText("inputTextFormOkBtn", "ОК"));
        EXPECT_THAT(request.cancelText, isText("inputTextFormCancelBtn", "Отмена"));
        EXPECT_EQ(request.inputId, u"inputLmMindboxConfirmCode"_s);
        EXPECT_TRUE(request.scanAllowed);
        EXPECT_EQ(request.inputSources, 4095);
        const qint8 bytes[] = {request.hidden,      request.selectsInitialText,
                               request.upperCase,   request.virtualKeyboard,
                               request.numeric,     request.multiLine,
                               request.cancellable, request.closesOnScan};
        EXPECT_THAT(bytes, testing::ElementsAre(0, 1, 0, 1, 0, 0, 1, 0));
        EXPECT_EQ(request.inputKind + request.keyboard + request.timeout + request.maximumLength,
                  0);
        return Result();
    });
    EXPECT_EQ(
        stepped.Plugin::confirmMobilePhone(customer),
        (VerifyResult{1, {u"lmmindboxConfirmCanceled"_s, u"Ввод кода подтверждения отменен"_s}}));
}

TEST_F(SmsConfirmation, CodeThatWasNotSentEndsWithTheAnswersOwnText)
{
    auto unknown = customer;
    unknown.processingStatus = ProcessingStatus::NotFound;
    EXPECT_CALL(stepped, setProgress).Times(3);
    EXPECT_CALL(*service, resendMobilePhoneConfirmationCode)
        .WillOnce(Return(withoutConnection()))
        .WillOnce(Return(makeResult(OperationStatus::Success, unknown)))
        .WillOnce(Return(makeResult(OperationStatus::ValidationError, customer)));
    EXPECT_EQ(stepped.Plugin::confirmMobilePhone(customer),
              (VerifyResult{2, withoutConnection().error}));
    EXPECT_EQ(stepped.Plugin::confirmMobilePhone(customer), (VerifyResult{2, {}}));
    EXPECT_EQ(stepped.Plugin::confirmMobilePhone(customer), (VerifyResult{2, {}}));
    EXPECT_FALSE(stepped.codeSent);
}

TEST_F(SmsConfirmation, AnyOtherAnswerEndsTheLoop)
{
    stepped.codeSent = true;
    for (const auto &answer : {checked("Processed"), checked("", OperationStatus::Undefined)}) {
        typeOnce(u"1"_s);
        EXPECT_CALL(*service, confirmMobilePhone).WillOnce(Return(answer));
        EXPECT_EQ(
            stepped.Plugin::confirmMobilePhone(customer),
            (VerifyResult{
                2, {u"lmmindboxConfirmCodeError"_s, u"Не удалось проверить код подтверждения"_s}}));
    }
    typeOnce(u"1"_s);
    EXPECT_CALL(*service, confirmMobilePhone).WillOnce(Return(withoutConnection()));
    EXPECT_EQ(stepped.Plugin::confirmMobilePhone(customer),
              (VerifyResult{2, withoutConnection().error}));
    EXPECT_TRUE(stepped.codeSent);
}

} // namespace
} // namespace lmmindbox
