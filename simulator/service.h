#pragma once

#include "simulator/answer.h"
#include "simulator/options.h"
#include "simulator/store.h"

#include <QHash>
#include <QRandomGenerator>
#include <QSet>

#include <mutex>

namespace simulator {

/// The service without its wire: takes a request, changes what it holds, says the answer.
///
/// Usable from several threads. A change is on the disk before it is answered.
class Service
{
public:
    /// The options must outlive the service.
    explicit Service(const Options &options);

    /// Opens the state, once. Returns what is wrong with it, empty when it can be used.
    [[nodiscard]] QString open();

    Answer answer(const QString &operation, const QByteArray &sent);

    /// Members "customers", "codes", "letters" and "orders".
    QJsonObject dump() const;
    /// What a page has not been told: what `Store::since` says, orders with their first lines
    /// and "lineCount"; empty for nothing.
    QJsonObject since(qint64 &change) const;
    /// Back to the preset customers.
    void reset();

private:
    using Operation = Answer (Service::*)(const QJsonObject &body);
    static const QHash<QString, Operation> operations; ///< By name, as in bodies.json.

    /// Keeps all that the operation changes or nothing; HTTP 500 and no word then, as services do
    /// whose disk is full.
    Answer carryOut(Operation operation, const QJsonObject &body);
    Answer getCustomer(const QJsonObject &body);
    Answer registerCustomer(const QJsonObject &body);
    Answer editCustomer(const QJsonObject &body);
    Answer checkAuthorizationCode(const QJsonObject &body);
    Answer confirmMobilePhone(const QJsonObject &body);
    Answer resendConfirmationCode(const QJsonObject &body);
    Answer emailConfirmationLetter(const QJsonObject &body);
    Answer createAuthorizedOrder(const QJsonObject &body);
    Answer changeStatus(const QJsonObject &body);
    /// Empty when there is none.
    QJsonObject customer(const QString &phone) const;
    bool isCodeRight(const QString &phone, const QString &code) const;
    void sendCode(const QString &phone);

    const Options &options;
    mutable std::mutex mutex;
    Store store;
    QRandomGenerator random;
    QSet<QString> failingReloads; ///< Phones whose next look-up fails.
    QString message;              ///< What the operation at hand sends to the customer.
};

} // namespace simulator
