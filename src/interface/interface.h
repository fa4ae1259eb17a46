#pragma once

#include "model/createorderresult.h"
#include "model/getcustomerresult.h"
#include "model/operationresult.h"
#include "model/registercustomerresult.h"

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
/// arguments; the service's answer decides. One client serves one request at a time.
class Interface
{
public:
    Interface();
    virtual ~Interface();
    Q_DISABLE_COPY_MOVE(Interface)

    virtual GetCustomerResult getCustomer(const QString &phone);
    virtual RegisterCustomerResult registerCustomer(const CustomerEdit &edit);
    virtual OperationResult editCustomer(const CustomerEdit &edit);
    /// Has the service send a code by SMS.
    virtual OperationResult resendMobilePhoneConfirmationCode(const QString &phone);
    virtual OperationResult confirmMobilePhone(const QString &phone, const QString &code);
    virtual OperationResult checkMobilePhoneAuthCode(const QString &phone, const QString &code);
    virtual OperationResult emailConfirmationLetter(const QString &email);
    /// Sends the order at once. When the result says `noConnection`, and unless `skipQueue`, the
    /// order waits in the till's queue (ordermessage.h); the failed result is returned all the
    /// same.
    virtual CreateOrderResult createAuthorizedOrder(const QJsonObject &payload, bool skipQueue);
    /// Puts the change into the same queue without a try and returns a result in its initial
    /// state; with `skipQueue` sends it at once.
    virtual OperationResult changeOrderStatus(const QJsonObject &payload, bool skipQueue);
    /// One exchange: the envelope is added to `body`. An empty `transactionId` is left out.
    virtual OperationResult sendRequest(const QString &operation, const QJsonObject &body,
                                        const QString &transactionId);

    /// The result of the HTTP client's last answer, so right after a request only.
    OperationResult getRequestResult() const;
    /// The customer that an answer carries; one in its initial state when it carries none.
    /// A mistyped value spoils only its own field.
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
