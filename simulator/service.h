#pragma once

#include "simulator/answer.h"
#include "simulator/options.h"
#include "simulator/state.h"

#include <QHash>
#include <QRandomGenerator>

namespace simulator {

/// The key of an order: its one external identifier with its name; empty without one.
QString orderId(const QJsonObject &order);

/// The service without HTTP: takes a request, changes the state, returns the answer.
///
/// A change is on the disk before the answer. Prints the SMS and letters that it sends.
class Service
{
public:
    /// Both must outlive the service.
    Service(const Options &options, State &state);

    Answer answer(const QString &operation, const QJsonObject &body);
    /// The sale that a body belongs to: "phone" in its normal form and "order", as far as the body,
    /// the order or the e-mail address shows them.
    QJsonObject subject(const QJsonObject &body) const;

private:
    /// A checked body, and the customer whose phone it names.
    struct Asked
    {
        QJsonObject body;
        QString phone;        ///< In its normal form.
        QJsonObject customer; ///< Empty when unknown.
    };
    struct Operation
    {
        Answer (Service::*carryOut)(const Asked &asked);
        bool isForKnown = false; ///< Answers "NotFound" for an unknown customer.
    };
    static const QHash<QString, Operation> operations; ///< By name, as in bodies.json.

    Answer getCustomer(const Asked &asked);
    Answer registerCustomer(const Asked &asked);
    Answer editCustomer(const Asked &asked);
    Answer checkAuthorizationCode(const Asked &asked);
    Answer confirmMobilePhone(const Asked &asked);
    Answer resendConfirmationCode(const Asked &asked);
    Answer emailConfirmationLetter(const Asked &asked);
    Answer createAuthorizedOrder(const Asked &asked);
    Answer changeStatus(const Asked &asked);
    /// Empty when there is none.
    QJsonObject customerWith(const QString &email) const;
    bool isCodeRight(const QString &phone, const QString &code) const;
    void sendCode(const QString &phone);

    const Options &options;
    State &state;
    QRandomGenerator random;
    QString message; ///< The current operation's SMS or letter.
};

} // namespace simulator
