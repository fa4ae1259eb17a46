#pragma once

#include "till/core/deliverystate.h"
#include "till/core/saleevent.h"

#include <host/abstractdocument.h>

#include <QDateTime>
#include <QJsonObject>
#include <QList>
#include <QString>

#include <optional>

namespace till {

/// The register's place in the chain.
struct TillPlace
{
    int shopCode = 1;
    int cashCode = 1;

    bool operator==(const TillPlace &other) const = default;
};

enum class ReceiptState {
    Open,       ///< Being sold.
    Committing, ///< Handed to the loyalty system; the outcome is not stored yet.
    Committed,
    Cancelled,
};

/// The state's name in the store and in JSON.
QString nameOf(ReceiptState state);
/// The report's name in the store and in JSON; empty for `None`.
QString nameOf(Report report);

/// A message of a queue.
struct QueuedMessage
{
    qint64 id = 0; ///< Below 0 while the message is unsaved.
    QString queue;
    QJsonObject message; ///< Empty when the store holds no JSON object for it.
    QString tag;
    QDateTime queuedAt;    ///< UTC.
    int tries = 0;         ///< Failed deliveries so far.
    QDateTime putOffSince; ///< UTC, when the service first postponed it; invalid for never.
    bool isParked = false; ///< A dead letter: not sent until somebody puts it back.
    QString lastError;     ///< Of the last failed delivery, or the reason for parking.
};

/// The service's answer as the store keeps it: compact JSON without the secret key, cut after 4096
/// characters. Empty for no answer.
QString answerText(const QJsonObject &answer);

/// How a receipt's report ended.
struct ReportRecord
{
    Report outcome = Report::None;
    QString answer; ///< The service's last answer, as `answerText` gives it.
    QString told;   ///< The texts that the cashier was shown.
};

/// The report's outcome with its messages: one is parked for `Refused`, some wait for `Queued`.
Report outcomeOf(const ReportRecord &report, const QList<QueuedMessage> &messages);

/// A receipt's row in the store.
struct ReceiptRecord
{
    qint64 row = 0; ///< 0 while the receipt is unsaved.
    DocumentHeader header;
    ReceiptState state = ReceiptState::Open;
    ReportRecord report;
    QDateTime changed; ///< UTC.
};

/// A change of a receipt's state or report.
struct HistoryEntry
{
    QDateTime at; ///< UTC.
    ReceiptState state = ReceiptState::Open;
    ReportRecord report;
};

/// Requests to the service with the same operation and outcome.
struct ExchangeCount
{
    QString operation;
    QString outcome; ///< "success", "refused", "no_answer" or "not_sent".
    qint64 count = 0;
    double seconds = 0; ///< The sum of their durations.
    qint64 last = 0;    ///< When the latest ended, in seconds since 1970.
};

/// Which receipts to list.
struct ReceiptFilter
{
    std::optional<Report> outcome = {}; ///< Only committed receipts with that outcome.
    QDate since = {};  ///< Only receipts begun on that day or later; invalid for all.
    int limit = 1'000; ///< How many of the latest ones.
    int number = 0;    ///< Only receipts with that number, at all registers; 0 for all.
};

} // namespace till
