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
/// A failure is a value too: see `status`, `noConnection` and `error`. Each derived result is made
/// from it and knows what success means for its operation.
class OperationResult
{
public:
    OperationResult() = default;
    OperationResult(const OperationResult &) = default;
    OperationResult(OperationResult &&) = default;
    OperationResult &operator=(const OperationResult &) = default;
    OperationResult &operator=(OperationResult &&) = default;
    virtual ~OperationResult();

    /// Whether the operation succeeded; here by its status.
    [[nodiscard]] virtual bool success() const;
    /// The answer's own error text, else `defaultText`.
    virtual tr::Tr getError(const tr::Tr &defaultText) const;

    int httpCode = 0;      ///< The answer's code; not 200 without an answer.
    int transportCode = 0; ///< The HTTP client's own code, for the log.
    /// No answer came, or an empty one whose HTTP code is not 200: the operation may be sent again
    /// later.
    bool noConnection = false;
    OperationStatus status = OperationStatus::Undefined;
    tr::Tr error;         ///< Set only by a lost connection.
    QJsonObject response; ///< The answer's body; empty when missing or no JSON object.
    Customer customer;    ///< Parsed from the answer, whatever the operation.
};

/// Answer to the look-up of a customer.
class GetCustomerResult : public OperationResult
{
public:
    GetCustomerResult(const OperationResult &result);

    /// An unknown customer is a success too; `customer.found()` distinguishes the two.
    [[nodiscard]] bool success() const override;
};

/// Answer to the registration of a customer.
class RegisterCustomerResult : public OperationResult
{
public:
    RegisterCustomerResult(const OperationResult &result);

    /// Whether the service created the customer, whatever the operation's status.
    [[nodiscard]] bool success() const override;
};

/// Answer to the check of a code sent by SMS.
class SmsConfirmationResult : public OperationResult
{
public:
    SmsConfirmationResult(const OperationResult &result);

    ProcessingStatus processingStatus; ///< The code's status; `Unknown` when missing.
    QString authenticationCode;        ///< Empty when missing or no text.
};

/// Answer to the creation of an order.
class CreateOrderResult : public OperationResult
{
public:
    CreateOrderResult(const OperationResult &result);

    /// Whether the service accepted the order, whatever the operation's status.
    [[nodiscard]] bool success() const override;

    ProcessingStatus processingStatus; ///< The order's status; `Unknown` when missing.
};

} // namespace lmmindbox
