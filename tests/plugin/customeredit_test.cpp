#include "fakes.h"

namespace lmmindbox {
namespace {

using testing::InSequence;
using testing::Return;

class CustomerEditing : public WorkflowTest
{
protected:
    CustomerEditing()
    {
        stepped.customer = makeCustomer(u"79160000001"_s, true);
        edit.name = u"Мария"_s;
        edit.phone = u"+7(916)-000-00-02"_s;
    }

    /// The form is filled in and the service answers under a progress message.
    void answerEdit(const OperationResult &result)
    {
        EXPECT_CALL(stepped, showCustomerEdit(stepped.customer)).WillOnce(Return(edit));
        EXPECT_CALL(dialog,
                    showProgress(isText("lmmindboxRequest", "Обращение к серверу..."), tr::Tr()))
            .WillOnce([this] {
                const auto progress = QSharedPointer<SimpleProgress>::create();
                shown = progress;
                return progress;
            });
        EXPECT_CALL(*service, editCustomer(edit)).WillOnce(Return(result));
    }
    EContext::Result editBy(const control::Action &action)
    {
        return stepped.Plugin::editCustomer(action);
    }

    QWeakPointer<SimpleProgress> shown;
    const control::Action action{170};
    const OperationResult accepted = makeResult(OperationStatus::Success);
    CustomerEdit edit;
};

TEST_F(CustomerEditing, AcceptedChangeReloadsTheCustomerAndRefreshesTheReceipt)
{
    const auto phone = stepped.customer.mobilePhone;
    auto reloaded = makeCustomer(phone, true);
    reloaded.firstName = u"Мария"_s;
    {
        InSequence order;
        answerEdit(accepted);
        EXPECT_CALL(stepped, getCustomer(phone, true)).WillOnce([&]() -> GetCustomerResult {
            EXPECT_FALSE(shown.isNull());
            return makeResult(OperationStatus::Success, reloaded);
        });
        EXPECT_CALL(stepped, fillClientInfo(card, reloaded));
        EXPECT_CALL(stepped, storePluginData);
    }
    EXPECT_EQ(editBy(action), EContext::Result{2});
    EXPECT_EQ(stepped.customer, reloaded);
    EXPECT_TRUE(shown.isNull());
}

TEST_F(CustomerEditing, FailedReloadKeepsTheCustomerButCounts)
{
    const auto before = stepped.customer;
    answerEdit(accepted);
    EXPECT_CALL(stepped, getCustomer).WillOnce(Return(GetCustomerResult(withoutConnection())));
    EXPECT_CALL(stepped, fillClientInfo(card, before));
    EXPECT_CALL(stepped, storePluginData);
    EXPECT_EQ(editBy(action), EContext::Result{2});
    EXPECT_EQ(LogCapture::take(),
              QStringList({u"I Редактирование данных клиента"_s,
                           u"W Не удалось получить актуальные данные клиента"_s}));
    EXPECT_EQ(stepped.customer, before);
}

TEST_F(CustomerEditing, RefusedChangeIsShownUnderTheProgressMessage)
{
    const auto before = stepped.customer;
    const tr::Tr refused(u"lmmindboxEditCustomerError"_s, u"Не удалось изменить данные клиента"_s);
    for (const auto &[result, text] :
         {std::pair(makeResult(OperationStatus::Undefined, before), refused),
          std::pair(withoutConnection(), withoutConnection().error)}) {
        answerEdit(result);
        EXPECT_CALL(dialog, showError(text, 0, 0)).WillOnce([this] {
            EXPECT_FALSE(shown.isNull());
        });
        EXPECT_EQ(editBy(action), EContext::Result{0});
        EXPECT_EQ(stepped.customer, before);
    }
}

TEST_F(CustomerEditing, NeedsACardOnlyWhenTheCashierTriggeredIt)
{
    document->setCardRecord(nullptr);
    EXPECT_EQ(editBy(action), EContext::Result{3});

    // Only the name tells a cancelled form.
    auto cancelled = edit;
    cancelled.name.clear();
    EXPECT_CALL(stepped, showCustomerEdit).WillOnce(Return(cancelled));
    EXPECT_EQ(editBy({}), EContext::Result{3});

    // The reload replaces the customer also when the service no longer knows it.
    Customer unknown;
    unknown.processingStatus = ProcessingStatus::NotFound;
    answerEdit(accepted);
    EXPECT_CALL(stepped, getCustomer)
        .WillOnce(Return(GetCustomerResult(makeResult(OperationStatus::Success, unknown))));
    EXPECT_EQ(editBy({}), EContext::Result{2});
    EXPECT_EQ(stepped.customer, unknown);
}

TEST_F(CustomerEditing, ALetterGoesOnceToEachAddressThatTheServiceAccepted)
{
    const auto email = u"anna@example.org"_s;
    const auto otherCase = u"Anna@example.org"_s;
    {
        InSequence order;
        EXPECT_CALL(*service, emailConfirmationLetter(email)).WillOnce(Return(withoutConnection()));
        EXPECT_CALL(dialog, showError(isText("lmmindboxEmailConfirmError",
                                             "Не удалось подтвердить почту клиента"),
                                      0, 0));
        for (const auto &address : {email, otherCase, email}) {
            EXPECT_CALL(*service, emailConfirmationLetter(address)).WillOnce(Return(accepted));
        }
    }
    for (const auto &address : {email, email, otherCase, email, otherCase, QString(), email})
        plugin.sendConfirmationLetter(address);
    EXPECT_EQ(plugin.confirmedEmails, QSet<QString>{email});
}

TEST_F(CustomerEditing, EmailIsCheckedByLetterOrByFormOrNotAtAll)
{
    stepped.customer.isEmailConfirmed = true;
    stepped.Plugin::checkEmail();

    stepped.customer.isEmailConfirmed = false;
    EXPECT_CALL(stepped, sendConfirmationLetter(stepped.customer.email));
    stepped.Plugin::checkEmail();

    // By an action that needs no card.
    stepped.customer.email.clear();
    EXPECT_CALL(stepped,
                editCustomer(testing::Property(&control::Action::getType, testing::Ne(170))));
    stepped.Plugin::checkEmail();
    EXPECT_EQ(LogCapture::take(),
              QStringList(u"I Почта не указана, отображение диалога редактирования клиента"_s));
}

} // namespace
} // namespace lmmindbox
