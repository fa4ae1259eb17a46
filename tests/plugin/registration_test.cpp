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
        edit.name = u"Анна"_s;
        edit.phone = u"+7(916)-123-45-67"_s;
    }
    bool registers() { return stepped.Plugin::registerCustomer(phone); }

    const QString phone = u"+79161234567"_s;
    CustomerEdit edit;
};

TEST_F(Registration, AsksThenShowsTheFormThenRegistersUnderAProgressMessage)
{
    QWeakPointer<SimpleProgress> shown;
    OperationResult created;
    created.response =
        QJsonDocument::fromJson(R"({"customer": {"processingStatus": "Created"}})").object();
    Customer prefilled;
    prefilled.mobilePhone = phone;
    InSequence order;
    EXPECT_CALL(dialog, showChoice(isText("lmmindboxRegisterCustomerChoice",
                                          "Клиент не найден.\nЗарегистрировать клиента?"),
                                   0, isText("dialogChoiceOk", "ОК"),
                                   isText("dialogChoiceCancel", "Отмена"), 0));
    EXPECT_CALL(stepped, showCustomerEdit(prefilled)).WillOnce(Return(edit));
    EXPECT_CALL(dialog, showProgress(_)).WillOnce([&](const ProgressRequest &request) {
        EXPECT_TRUE(request.title.isEmpty());
        EXPECT_THAT(request.message,
                    isText("lmmindboxRegisterCustomerProgress", "Регистрация клиента"));
        EXPECT_FALSE(request.cancellable || request.modal || request.showsTime);
        const auto progress = QSharedPointer<SimpleProgress>::create();
        shown = progress;
        return progress;
    });
    EXPECT_CALL(*service, registerCustomer(edit)).WillOnce([&] {
        EXPECT_FALSE(shown.isNull());
        return RegisterCustomerResult(created);
    });

    EXPECT_TRUE(registers());

    EXPECT_EQ(LogCapture::take(), QStringList({u"I Регистрация клиента"_s,
                                               u"I Данные: имя: Анна; телефон: +7(916)-123-45-67; "
                                               "пол: жен; email: "_s,
                                               u"I Клиент успешно создан"_s}));
    EXPECT_TRUE(shown.isNull());
    EXPECT_TRUE(stepped.codeSent);
    EXPECT_EQ(stepped.customer, prefilled);
    EXPECT_TRUE(stepped.lastError.isEmpty());
}

TEST_F(Registration, DeclinedQuestionLeavesTheCustomerAloneAndAClosedFormKeepsThePhone)
{
    const auto canceled = isText("lmmindboxRegisterCustomerCanceled", "Клиент не добавлен");
    EXPECT_CALL(dialog, showChoice).WillOnce(Return(false)).WillOnce(Return(true));
    EXPECT_FALSE(registers());
    EXPECT_THAT(stepped.lastError, canceled);
    EXPECT_TRUE(stepped.customer.mobilePhone.isEmpty());

    // Only the name tells a closed form.
    edit.name.clear();
    stepped.lastError = {};
    EXPECT_CALL(stepped, showCustomerEdit).WillOnce(Return(edit));
    EXPECT_FALSE(registers());
    EXPECT_THAT(stepped.lastError, canceled);
    EXPECT_EQ(stepped.customer.mobilePhone, phone);
}

TEST_F(Registration, RefusalAndLostConnectionAreToldApart)
{
    EXPECT_CALL(dialog, showChoice).Times(2);
    EXPECT_CALL(stepped, showCustomerEdit).Times(2).WillRepeatedly(Return(edit));
    EXPECT_CALL(dialog, showProgress(_)).Times(2);
    EXPECT_CALL(*service, registerCustomer)
        .WillOnce(Return(RegisterCustomerResult(makeResult(OperationStatus::Success))))
        .WillOnce(Return(RegisterCustomerResult(withoutConnection())));

    EXPECT_FALSE(registers());
    EXPECT_THAT(stepped.lastError,
                isText("lmmindboxRegisterCustomerError", "Не удалось зарегистрировать клиента"));
    EXPECT_FALSE(registers());
    EXPECT_THAT(stepped.lastError, isText("mindboxNoConnectionError", "Ошибка связи с сервером"));
    EXPECT_FALSE(stepped.codeSent);
}

} // namespace
} // namespace lmmindbox
