#pragma once

#include "simulator/answer.h"
#include "simulator/customerstore.h"
#include "simulator/journal.h"
#include "simulator/options.h"
#include "simulator/orderstore.h"
#include "simulator/receivedrequest.h"

#include <QRandomGenerator>
#include <QSet>

#include <mutex>

namespace simulator {

/// The service without its wire: takes a request, changes what it holds, says the answer.
///
/// Usable from several threads. A change is in the journal before it is answered.
class Service
{
public:
    explicit Service(Options options);

    /// Reads the journal, if there is one. Returns false with `errorString` set when it cannot.
    [[nodiscard]] bool open();
    QString errorString() const;

    Answer answer(const ReceivedRequest &request);

    /// The unused code last sent to the phone, in any spelling; empty when there is none.
    QString lastCode(const QString &phone) const;
    QJsonArray orders() const;
    /// Members "customers", "codes", "letters" and "orders".
    QJsonObject dump() const;
    /// Back to the preset customers, in the journal too.
    void reset();

private:
    struct Operation;
    static const QHash<QString, Operation> &operations();

    Answer getCustomer(const QJsonObject &body);
    Answer registerCustomer(const QJsonObject &body);
    Answer editCustomer(const QJsonObject &body);
    Answer checkAuthorizationCode(const QJsonObject &body);
    Answer confirmMobilePhone(const QJsonObject &body);
    Answer resendConfirmationCode(const QJsonObject &body);
    Answer emailConfirmationLetter(const QJsonObject &body);
    Answer createAuthorizedOrder(const QJsonObject &body);
    Answer changeStatus(const QJsonObject &body);

    /// Writes the records to the journal and applies them, in this order.
    [[nodiscard]] bool keep(std::initializer_list<QJsonObject> records);
    bool apply(const QJsonObject &record);
    /// What a service says whose disk is full: nothing, with HTTP 500.
    static Answer notKept();
    bool isCodeRight(const QString &phone, const QString &code) const;
    QJsonObject newCodeRecord(const QString &phone);
    void sendCode(const QString &phone);

    const Options options;
    mutable std::mutex mutex;
    CustomerStore customers;
    OrderStore orderStore;
    Journal journal;
    QRandomGenerator random;
    QSet<QString> failingReloads; ///< Phones whose next look-up fails.
    QString message;              ///< What the operation at hand sends to the customer.
};

} // namespace simulator
