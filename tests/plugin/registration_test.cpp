#include "fakes.h"

namespace lmmindbox {
namespace {

using testing::_;
using testing::InSequence;
using testing::Return;

class Registration : public WorkflowTest
{
protected:
    Registration()
    {
        ON_CALL(dialog, showChoice).WillByDefault(Return(true));
        ON_CALL(dialog, showForm)
            .WillByDefault(Return(QVariantMap{{QStringLiteral("name"), QStringLiteral("Анна")},
                                              {QStringLiteral("phone"), phone},
                                              {QStringLiteral("sex"), 0}}));
    }
    static RegisterCustomerResult created()
    {
        OperationResult result;
        result.response = {
            {QStringLiteral("customer"),
             QJsonObject{{QStringLiteral("processingStatus"), QStringLiteral("Created")}}}};
        return result;
    }

    const QString phone = QStringLiteral("+79161234567");
};

TEST_F(Registration, AsksThenShowsTheFormThenRegistersUnderAProgressMessage)
{
    QWeakPointer<SimpleProgress> shown;
    InSequence order;
    EXPECT_CALL(dialog, showChoice(isText("lmmindboxRegisterCustomerChoice",
                                          "Клиент не найден.\nЗарегистрировать клиента?"),
                                   0, isText("dialogChoiceOk", "ОК"),
                                   isText("dialogChoiceCancel", "Отмена"), 0));
    EXPECT_CALL(dialog, showForm(_)).WillOnce([&](const FormRequest &form) {
        EXPECT_EQ(form.fields[0].value, phone);
        return QVariantMap{{QStringLiteral("name"), QStringLiteral("Анна")},
                           {QStringLiteral("phone"), phone}};
    });
    EXPECT_CALL(dialog, showProgress(_)).WillOnce([&](const ProgressRequest &request) {
        EXPECT_TRUE(request.title.isEmpty());
        EXPECT_EQ(request.message, tr::Tr(QStringLiteral("lmmindboxRegisterCustomerProgress"),
                                          QStringLiteral("Регистрация клиента")));
        EXPECT_FALSE(request.cancellable || request.modal || request.showsTime);
        const auto progress = QSharedPointer<SimpleProgress>::create();
        shown = progress;
        return progress;
    });
    EXPECT_CALL(*service, registerCustomer(_)).WillOnce([&](const CustomerEdit &edit) {
        EXPECT_FALSE(shown.isNull());
        EXPECT_EQ(edit.name, QStringLiteral("Анна"));
        EXPECT_EQ(edit.phone, phone);
        return created();
    });

    EXPECT_TRUE(plugin.registerCustomer(phone));

    EXPECT_EQ(LogCapture::take(),
              QStringList({QStringLiteral("I Регистрация клиента"),
                           QStringLiteral("I Данные: имя: Анна; телефон: +79161234567; пол: жен; "
                                          "email: "),
                           QStringLiteral("I Клиент успешно создан")}));
    EXPECT_TRUE(shown.isNull());
    EXPECT_TRUE(plugin.codeSent);
    EXPECT_EQ(plugin.customer.mobilePhone, phone);
    EXPECT_TRUE(plugin.lastError.isEmpty());
}

TEST_F(Registration, DeclinedQuestionLeavesTheCustomerAlone)
{
    EXPECT_CALL(dialog, showChoice).WillOnce(Return(false));
    EXPECT_FALSE(plugin.registerCustomer(phone));
    EXPECT_THAT(plugin.lastError,
                isText("lmmindboxRegisterCustomerCanceled", "Клиент не добавлен"));
    EXPECT_TRUE(plugin.customer.mobilePhone.isEmpty());
}

TEST_F(Registration, ClosedFormSendsNothingButKeepsThePhone)
{
    EXPECT_CALL(dialog, showChoice);
    EXPECT_CALL(dialog, showForm)
        .WillOnce(Return(QVariantMap{{QStringLiteral("name"), QString()}}));
    EXPECT_FALSE(plugin.registerCustomer(phone));
    EXPECT_EQ(lastErrorText(), QStringLiteral("Клиент не добавлен"));
    EXPECT_EQ(plugin.customer.mobilePhone, phone);
}

TEST_F(Registration, RefusalAndLostConnectionAreToldApart)
{
    EXPECT_CALL(dialog, showChoice).Times(2);
    EXPECT_CALL(dialog, showForm).Times(2);
    EXPECT_CALL(dialog, showProgress(_)).Times(2);
    EXPECT_CALL(*service, registerCustomer)
        .WillOnce(Return(RegisterCustomerResult(makeResult(OperationStatus::Success))))
        .WillOnce(Return(RegisterCustomerResult(withoutConnection())));

    EXPECT_FALSE(plugin.registerCustomer(phone));
    EXPECT_THAT(plugin.lastError,
                isText("lmmindboxRegisterCustomerError", "Не удалось зарегистрировать клиента"));
    EXPECT_FALSE(plugin.registerCustomer(phone));
    EXPECT_THAT(plugin.lastError, isText("mindboxNoConnectionError", "Ошибка связи с сервером"));
    EXPECT_FALSE(plugin.codeSent);
}

} // namespace
} // namespace lmmindbox
