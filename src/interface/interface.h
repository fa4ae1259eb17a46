#pragma once

#include "model/operationresult.h"

#include <QSharedPointer>
#include <QString>
#include <QUrl>

class QJsonObject;
class RestClient;

namespace Log4Qt {
class Logger;
}

namespace lmmindbox {

class CustomerEdit;

/// Client of the loyalty service: a method for each operation, one HTTP exchange for each call.
///
/// The connection settings ("LmMindbox:url", "LmMindbox:endpoint", "LmMindbox:secretKey",
/// "LmMindbox:pointOfContact", "LmMindbox:timeout" in seconds) are read once, at construction.
/// Every call blocks until the answer arrives or the time-out passes. No operation checks its
/// arguments: the service refuses what it does not like, such as an empty text. A failure is a
/// result whose `success()` is false; `noConnection` marks a lost connection. One client sends one
/// request at a time.
class Interface
{
public:
    Interface();
    virtual ~Interface();
    Q_DISABLE_COPY_MOVE(Interface)

    /// Offline.GetCustomer: looks a customer up by phone. An unknown customer is a success too; its
    /// `customer.found()` is false.
    virtual GetCustomerResult getCustomer(const QString &phone);
    /// Offline.RegisterCustomer: a success when the service created the customer. An invalid
    /// birthday and an empty e-mail are left out.
    virtual RegisterCustomerResult registerCustomer(const CustomerEdit &edit);
    /// Offline.EditCustomer: changes the data of the customer with that phone; the body is that of
    /// a registration. A success when the service accepted the change.
    virtual OperationResult editCustomer(const CustomerEdit &edit);
    /// Offline.ResendMobilePhoneConfirmationCode: requests a code by SMS. The code counts as sent
    /// when this is a success and the result's `customer` is `found()`.
    virtual OperationResult resendMobilePhoneConfirmationCode(const QString &phone);
    /// Offline.ConfirmMobilePhone: checks that code. `success()` does not mean a right code: make a
    /// `SmsConfirmationResult` of the result to know.
    virtual OperationResult confirmMobilePhone(const QString &phone, const QString &code);
    /// Offline.CheckMobilePhoneAuthorizationCode: checks an authorization code; a success when the
    /// answer's status is one. No workflow of the plugin calls it.
    virtual OperationResult checkMobilePhoneAuthCode(const QString &phone, const QString &code);
    /// Offline.EmailConfirmationLetter: requests a letter that lets the customer confirm the
    /// address; a success when the service accepted the request.
    virtual OperationResult emailConfirmationLetter(const QString &email);
    /// Offline.CreateAuthorizedOrder: sends the order at once. With `noConnection` in the result,
    /// and unless `skipQueue`, it queues the order (ordermessage.h) with the UTC time; it still
    /// returns the failed result.
    virtual CreateOrderResult createAuthorizedOrder(const QJsonObject &payload, bool skipQueue);
    /// Offline.ChangeStatus: queues the change without trying to send it and returns an empty
    /// result; with `skipQueue` sends it at once. A failure of the queue is not reported here.
    virtual OperationResult changeOrderStatus(const QJsonObject &payload, bool skipQueue);
    /// Adds the envelope to `body` and runs one exchange. An empty `transactionId` is left out. An
    /// invalid address counts as a lost connection.
    virtual OperationResult sendRequest(const QString &operation, const QJsonObject &body,
                                        const QString &transactionId);

    /// The result of the HTTP client's last answer; call it right after a request.
    OperationResult getRequestResult() const;
    /// The customer in an answer; an empty one when there is none. A missing or mistyped value
    /// leaves only its own field empty.
    Customer getCustomer(const QJsonObject &answer) const;

private:
    QUrl url;
    QString endpoint;
    QString pointOfContact;
    QString secretKey;
    QSharedPointer<RestClient> restClient;
    Log4Qt::Logger *logger = nullptr;
};

} // namespace lmmindbox
