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

/// Client of the loyalty service: one method an operation, one HTTP exchange a call.
///
/// The connection settings ("LmMindbox:url", "LmMindbox:endpoint", "LmMindbox:secretKey",
/// "LmMindbox:pointOfContact", "LmMindbox:timeout" in seconds) are read once, at construction.
/// Every call blocks until the answer is in or the time-out has passed. No operation checks its
/// arguments: an empty text is sent as it is, and the service's answer decides. A failure is a
/// result whose `success()` is false; without a connection it says so in `noConnection`. One client
/// serves one request at a time.
class Interface
{
public:
    Interface();
    virtual ~Interface();
    Q_DISABLE_COPY_MOVE(Interface)

    /// Offline.GetCustomer: looks a customer up by phone. An unknown one is a success as well, with
    /// a `customer` that is not `found()`.
    virtual GetCustomerResult getCustomer(const QString &phone);
    /// Offline.RegisterCustomer: a success when the answer says that the customer was created. An
    /// invalid birthday and an empty e-mail are left out.
    virtual RegisterCustomerResult registerCustomer(const CustomerEdit &edit);
    /// Offline.EditCustomer: changes the data of the customer with that phone; sends what a
    /// registration sends. A success when the service took the change.
    virtual OperationResult editCustomer(const CustomerEdit &edit);
    /// Offline.ResendMobilePhoneConfirmationCode: has a code sent by SMS. It counts as sent
    /// when this is a success and the result's `customer` is `found()`.
    virtual OperationResult resendMobilePhoneConfirmationCode(const QString &phone);
    /// Offline.ConfirmMobilePhone: checks that code. Whether it was right is not in `success()` but
    /// in the `SmsConfirmationResult` made of the result.
    virtual OperationResult confirmMobilePhone(const QString &phone, const QString &code);
    /// Offline.CheckMobilePhoneAuthorizationCode: checks a code of authorization; a success when
    /// the answer's status says so. No workflow of the plugin needs it.
    virtual OperationResult checkMobilePhoneAuthCode(const QString &phone, const QString &code);
    /// Offline.EmailConfirmationLetter: has a letter sent by which the address can be confirmed; a
    /// success when the service took the request.
    virtual OperationResult emailConfirmationLetter(const QString &email);
    /// Offline.CreateAuthorizedOrder: sends the order at once. When the result says `noConnection`,
    /// and unless `skipQueue`, the order waits in the till's queue (ordermessage.h), dated
    /// with the time in UTC; the failed result is returned all the same.
    virtual CreateOrderResult createAuthorizedOrder(const QJsonObject &payload, bool skipQueue);
    /// Offline.ChangeStatus: puts the change into the same queue without a try and returns a result
    /// in its initial state; with `skipQueue` sends it at once. That the queue could not keep a
    /// message is not told here.
    virtual OperationResult changeOrderStatus(const QJsonObject &payload, bool skipQueue);
    /// One exchange: the envelope is added to `body`. An empty `transactionId` is left out. An
    /// address that cannot be read is an exchange without a connection.
    virtual OperationResult sendRequest(const QString &operation, const QJsonObject &body,
                                        const QString &transactionId);

    /// The result of the HTTP client's last answer, so right after a request only.
    OperationResult getRequestResult() const;
    /// The customer that an answer carries; one in its initial state when it carries none.
    /// A missing or mistyped value leaves its own field as it is initially and spoils no other.
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
