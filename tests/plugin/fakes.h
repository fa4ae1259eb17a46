#pragma once

#include "converter/converter.h"
#include "interface/interface.h"
#include "model/customeredit.h"
#include "plugin/plugin.h"
#include "tests/support/fakehttp.h"
#include "tests/support/logcapture.h"
#include "tests/support/printqt.h"

#include <host/abstractdocument.h>
#include <host/dbqueuebroker.h>
#include <host/dialog.h>
#include <host/savetofilelogic.h>
#include <host/session.h>

#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>
#include <tuple>

namespace tr {
inline void PrintTo(const Tr &text, std::ostream *out)
{
    *out << text.getId().toStdString() << '/' << text.getDefaultText().toStdString();
}
} // namespace tr

namespace lmmindbox {

using namespace Qt::StringLiterals;

class MockInterface : public Interface
{
public:
    MOCK_METHOD(GetCustomerResult, getCustomer, (const QString &), (override));
    MOCK_METHOD(RegisterCustomerResult, registerCustomer, (const CustomerEdit &), (override));
    MOCK_METHOD(OperationResult, editCustomer, (const CustomerEdit &), (override));
    MOCK_METHOD(OperationResult, resendMobilePhoneConfirmationCode, (const QString &), (override));
    MOCK_METHOD(OperationResult, confirmMobilePhone, (const QString &, const QString &),
                (override));
    MOCK_METHOD(OperationResult, checkMobilePhoneAuthCode, (const QString &, const QString &),
                (override));
    MOCK_METHOD(OperationResult, emailConfirmationLetter, (const QString &), (override));
    MOCK_METHOD(CreateOrderResult, createAuthorizedOrder, (const QJsonObject &, bool), (override));
    MOCK_METHOD(OperationResult, changeOrderStatus, (const QJsonObject &, bool), (override));
};

/// Keeps what the operations send.
class RecordingInterface : public Interface
{
public:
    OperationResult sendRequest(const QString &operation, const QJsonObject &body,
                                const QString &transactionId) override
    {
        sent = {operation, body, transactionId};
        return Interface::sendRequest(operation, body, transactionId);
    }

    std::tuple<QString, QJsonObject, QString> sent;
};

class MockDialog : public Dialog
{
public:
    MOCK_METHOD(void, showError, (const tr::Tr &, int, int), (override));
    MOCK_METHOD(void, showMessage, (const tr::Tr &, int, int), (override));
    MOCK_METHOD(bool, showChoice, (const tr::Tr &, int, const tr::Tr &, const tr::Tr &, int),
                (override));
    MOCK_METHOD(core::BasicDialog::Result, showInputText, (const InputTextRequest &), (override));
    MOCK_METHOD(QVariantMap, showForm, (const FormRequest &), (override));
    MOCK_METHOD(QSharedPointer<SimpleProgress>, showProgress, (const ProgressRequest &),
                (override));
    MOCK_METHOD(QSharedPointer<SimpleProgress>, showProgress, (const tr::Tr &, const tr::Tr &),
                (override));
};

class MockSaveToFile : public SaveToFileLogic
{
public:
    MOCK_METHOD(bool, save, (const QSharedPointer<AbstractDocument> &, const QString &),
                (override));
};

/// A plugin whose state and client can be set.
class OpenPlugin : public Plugin
{
public:
    explicit OpenPlugin(const QSharedPointer<Interface> &client) { interface = client; }

    using Plugin::codeSent;
    using Plugin::confirmedEmails;
    using Plugin::converter;
    using Plugin::customer;
    using Plugin::lastError;
    using Plugin::systemType;
};

/// A plugin whose steps are replaced, to see how each calls the others.
class SteppedPlugin : public OpenPlugin
{
public:
    using OpenPlugin::OpenPlugin;

    MOCK_METHOD(EContext::Result, editCustomer, (const control::Action &), (override));
    MOCK_METHOD(bool, registerCustomer, (const QString &), (override));
    MOCK_METHOD(VerifyResult, confirmMobilePhone, (const Customer &), (override));
    MOCK_METHOD(void, storePluginData, (), (override));
    MOCK_METHOD(void, setProgress, (const tr::Tr &, int), (const, override));
    MOCK_METHOD(void, clearLoyaltyData, (), (override));
    MOCK_METHOD(void, checkEmail, (), (override));
    MOCK_METHOD(void, fillClientInfo, (QSharedPointer<DocumentCardRecord> &, const Customer &),
                (const, override));
    MOCK_METHOD(CustomerEdit, showCustomerEdit, (const Customer &), (const, override));
    MOCK_METHOD(GetCustomerResult, getCustomer, (const QString &, bool), (override));
    MOCK_METHOD(void, sendConfirmationLetter, (const QString &), (override));
};

/// A workflow under a scripted dialog and a mocked service, with a receipt that bears a card.
class WorkflowTest : public testing::Test
{
protected:
    WorkflowTest()
    {
        MockFactory<Dialog>::mocked = &dialog;
        MockFactory<SaveToFileLogic>::mocked = &saveToFile;
        document->setCardRecord(card);
        plugin.setDocument(document);
        stepped.setDocument(document);
        LogCapture::take();
    }
    ~WorkflowTest() override
    {
        MockFactory<Dialog>::mocked = nullptr;
        MockFactory<SaveToFileLogic>::mocked = nullptr;
    }

    static Customer makeCustomer(const QString &phone, bool phoneConfirmed)
    {
        Customer customer;
        customer.mobilePhone = phone;
        customer.isMobilePhoneConfirmed = phoneConfirmed;
        customer.email = u"anna@example.org"_s;
        customer.firstName = u"Анна"_s;
        customer.processingStatus = ProcessingStatus::Found;
        return customer;
    }
    static OperationResult makeResult(OperationStatus status, const Customer &customer = {})
    {
        OperationResult result;
        result.status = status;
        result.customer = customer;
        return result;
    }
    static OperationResult withoutConnection()
    {
        auto result = makeResult(OperationStatus::Error);
        result.noConnection = true;
        result.error = {u"mindboxNoConnectionError"_s, u"Ошибка связи с сервером"_s};
        return result;
    }
    QString lastErrorText() const { return plugin.lastError.getDefaultText(); }

    LogCapture log{"lmmindbox"};
    testing::StrictMock<MockDialog> dialog;
    testing::StrictMock<MockSaveToFile> saveToFile;
    QSharedPointer<testing::StrictMock<MockInterface>> service{
        new testing::StrictMock<MockInterface>};
    OpenPlugin plugin{service};
    testing::StrictMock<SteppedPlugin> stepped{service};
    QSharedPointer<AbstractDocument> document =
        QSharedPointer<AbstractDocument>::create(DocumentHeader());
    QSharedPointer<DocumentCardRecord> card =
        QSharedPointer<DocumentCardRecord>::create(u" 8 916 000-00-01 "_s);
};

/// Matches a text by identifier and default text.
inline auto isText(const char *id, const char *text)
{
    return testing::Eq(tr::Tr(QString::fromUtf8(id), QString::fromUtf8(text)));
}

} // namespace lmmindbox
