#include "fakes.h"

namespace lmmindbox {
namespace {

using testing::_;
using testing::InSequence;
using testing::Return;

class CustomerEditing : public WorkflowTest
{
protected:
    CustomerEditing() { plugin.customer = makeCustomer(QStringLiteral("79160000001"), true); }

    void fillForm()
    {
        EXPECT_CALL(dialog, showForm)
            .WillOnce(Return(QVariantMap{{QStringLiteral("name"), QStringLiteral("Мария")}}));
        EXPECT_CALL(dialog,
                    showProgress(isText("lmmindboxRequest", "Обращение к серверу..."), tr::Tr()))
            .WillOnce([this](const tr::Tr &, const tr::Tr &) {
                const auto progress = QSharedPointer<SimpleProgress>::create();
                shown = progress;
                return progress;
            });
    }

    QWeakPointer<SimpleProgress> shown;
    const control::Action action{170};
};

TEST_F(CustomerEditing, AcceptedChangeReloadsTheCustomerAndRefreshesTheReceipt)
{
    auto reloaded = makeCustomer(QStringLiteral("79160000001"), true);
    reloaded.firstName = QStringLiteral("Мария");
    reloaded.email = QStringLiteral("new@example.org");
    {
        InSequence order;
        fillForm();
        EXPECT_CALL(*service, editCustomer).WillOnce(Return(makeResult(OperationStatus::Success)));
        EXPECT_CALL(*service, getCustomer(QStringLiteral("79160000001")))
            .WillOnce([&](const QString &) -> GetCustomerResult {
                EXPECT_FALSE(shown.isNull());
                return makeResult(OperationStatus::Success, reloaded);
            });
        EXPECT_CALL(*service, emailConfirmationLetter(QStringLiteral("new@example.org")))
            .WillOnce(Return(makeResult(OperationStatus::Success)));
        EXPECT_CALL(saveToFile, save(document, QString()));
    }
    EXPECT_EQ(plugin.editCustomer(action), EContext::Result::Done);
    EXPECT_EQ(plugin.customer, reloaded);
    EXPECT_EQ(card->getCard()->getClient()->getName(), QStringLiteral("Мария"));
    EXPECT_TRUE(shown.isNull());
}

TEST_F(CustomerEditing, FailedReloadKeepsTheCustomerButCounts)
{
    const auto before = plugin.customer;
    fillForm();
    EXPECT_CALL(*service, editCustomer).WillOnce(Return(makeResult(OperationStatus::Success)));
    EXPECT_CALL(*service, getCustomer).WillOnce(Return(GetCustomerResult(withoutConnection())));
    EXPECT_CALL(saveToFile, save);
    EXPECT_EQ(plugin.editCustomer(action), EContext::Result::Done);
    EXPECT_EQ(LogCapture::take(),
              QStringList({QStringLiteral("I Редактирование данных клиента"),
                           QStringLiteral("W Не удалось получить актуальные данные клиента")}));
    EXPECT_EQ(plugin.customer, before);
    EXPECT_EQ(card->getCard()->getClient()->getName(), QStringLiteral("Анна"));
}

TEST_F(CustomerEditing, RefusedChangeIsShownUnderTheProgressMessage)
{
    const auto before = plugin.customer;
    const tr::Tr refused(QStringLiteral("lmmindboxEditCustomerError"),
                         QStringLiteral("Не удалось изменить данные клиента"));
    for (const auto &[result, text] : {std::pair(makeResult(OperationStatus::Undefined), refused),
                                       std::pair(withoutConnection(), withoutConnection().error)}) {
        fillForm();
        EXPECT_CALL(*service, editCustomer).WillOnce(Return(result));
        EXPECT_CALL(dialog, showError(text, 0, 0)).WillOnce([this] {
            EXPECT_FALSE(shown.isNull());
        });
        EXPECT_EQ(plugin.editCustomer(action), EContext::Result::Failed);
        EXPECT_EQ(plugin.customer, before);
    }
}

TEST_F(CustomerEditing, NeedsACardOnlyWhenTheCashierTriggeredIt)
{
    document->setCardRecord(nullptr);
    EXPECT_EQ(plugin.editCustomer(action), EContext::Result::Skipped);

    EXPECT_CALL(dialog, showForm)
        .WillOnce(Return(QVariantMap{{QStringLiteral("name"), QString()}}));
    EXPECT_EQ(plugin.editCustomer({}), EContext::Result::Skipped);

    // The reload replaces the customer also when the service no longer knows it.
    Customer unknown;
    unknown.processingStatus = ProcessingStatus::NotFound;
    fillForm();
    EXPECT_CALL(*service, editCustomer).WillOnce(Return(makeResult(OperationStatus::Success)));
    EXPECT_CALL(*service, getCustomer)
        .WillOnce(Return(GetCustomerResult(makeResult(OperationStatus::Success, unknown))));
    EXPECT_EQ(plugin.editCustomer({}), EContext::Result::Done);
    EXPECT_EQ(plugin.customer, unknown);
}

TEST_F(CustomerEditing, ALetterGoesOnceToEachAddressThatTheServiceAccepted)
{
    const auto email = QStringLiteral("anna@example.org");
    EXPECT_CALL(*service, emailConfirmationLetter(email))
        .WillOnce(Return(withoutConnection()))
        .WillRepeatedly(Return(makeResult(OperationStatus::Success)));
    EXPECT_CALL(dialog, showError(isText("lmmindboxEmailConfirmError",
                                         "Не удалось подтвердить почту клиента"),
                                  0, 0));
    plugin.sendConfirmationLetter(email);
    EXPECT_TRUE(plugin.confirmedEmails.isEmpty());
    plugin.sendConfirmationLetter(email);
    plugin.sendConfirmationLetter(email);

    EXPECT_CALL(*service, emailConfirmationLetter(QStringLiteral("Anna@example.org")))
        .WillOnce(Return(makeResult(OperationStatus::Success)));
    plugin.sendConfirmationLetter(QStringLiteral("Anna@example.org"));
    EXPECT_EQ(plugin.confirmedEmails.size(), 2);

    plugin.sendConfirmationLetter({});
    EXPECT_TRUE(plugin.confirmedEmails.isEmpty());
}

TEST_F(CustomerEditing, EmailIsCheckedByLetterOrByFormOrNotAtAll)
{
    plugin.customer.isEmailConfirmed = true;
    plugin.checkEmail();

    plugin.customer.isEmailConfirmed = false;
    EXPECT_CALL(*service, emailConfirmationLetter(plugin.customer.email))
        .WillOnce(Return(makeResult(OperationStatus::Success)));
    plugin.checkEmail();

    // The form opens also while there is no card yet.
    document->setCardRecord(nullptr);
    plugin.customer.email.clear();
    LogCapture::take();
    EXPECT_CALL(dialog, showForm).WillOnce(Return(QVariantMap()));
    plugin.checkEmail();
    EXPECT_EQ(LogCapture::take().constFirst(),
              QStringLiteral("I Почта не указана, отображение диалога редактирования клиента"));
}

} // namespace
} // namespace lmmindbox
