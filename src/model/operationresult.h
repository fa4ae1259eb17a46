#pragma once

#include "model/customer.h"
#include "model/operationstatus.h"
#include "model/processingstatus.h"

#include <host/tr.h>

#include <QJsonObject>
#include <QString>

namespace lmmindbox {

/// One answer of the service.
///
/// It fails as a value: what went wrong is in `status`, `noConnection` and `error`. The results
/// derived from it are made of it and know what success means for their operation.
class OperationResult
{
public:
    OperationResult() = default;
    OperationResult(const OperationResult &) = default;
    OperationResult(OperationResult &&) = default;
    OperationResult &operator=(const OperationResult &) = default;
    OperationResult &operator=(OperationResult &&) = default;
    virtual ~OperationResult();

    /// Whether the operation did what it was sent for: here, whether its status says so.
    [[nodiscard]] virtual bool success() const;
    /// The answer's own error text, else `defaultText`.
    virtual tr::Tr getError(const tr::Tr &defaultText) const;

    int httpCode = 0;      ///< Of the answer; not 200 without one.
    int transportCode = 0; ///< The HTTP client's own code, kept for the log.
    /// No answer came, or one without content whose HTTP code is not 200: the operation may be sent
    /// again later.
    bool noConnection = false;
    OperationStatus status = OperationStatus::Undefined;
    tr::Tr error;         ///< Set only when there was no connection.
    QJsonObject response; ///< The answer's body; empty when there is none or it is no JSON object.
    Customer customer;    ///< Parsed from the answer, whatever the operation.
};

/// Answer to the look-up of a customer.
class GetCustomerResult : public OperationResult
{
public:
    GetCustomerResult(const OperationResult &result);

    /// That the service does not know the customer is a success as well; `customer.found()` tells
    /// the two apart.
    [[nodiscard]] bool success() const override;
};

/// Answer to the registration of a customer.
class RegisterCustomerResult : public OperationResult
{
public:
    RegisterCustomerResult(const OperationResult &result);

    /// Whether the answer says that the customer was created, whatever the operation's status.
    [[nodiscard]] bool success() const override;
};

/// Answer to the check of a code sent by SMS.
class SmsConfirmationResult : public OperationResult
{
public:
    SmsConfirmationResult(const OperationResult &result);

    ProcessingStatus processingStatus; ///< Of the code; `Unknown` when missing.
    QString authenticationCode;        ///< Empty when missing or no text.
};

/// Answer to the creation of an order.
class CreateOrderResult : public OperationResult
{
public:
    CreateOrderResult(const OperationResult &result);

    /// Whether the service took the order, whatever the operation's status.
    [[nodiscard]] bool success() const override;

    ProcessingStatus processingStatus; ///< Of the order; `Unknown` when missing.
};

} // namespace lmmindbox
