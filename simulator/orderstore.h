#pragma once

#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QString>

namespace simulator {

/// Orders by their one external identifier.
///
/// As with customers, changes come only as records.
class OrderStore
{
public:
    struct Order
    {
        /// Whether the body of a creation says the same as the one that made this order; when it
        /// was executed and through which point of contact does not count.
        bool isSameAs(const QJsonObject &creation) const;
        /// Whether the body of a status change repeats this order's lines with all their members;
        /// only the status is new, and the line's sum goes by another name.
        bool hasLinesOf(const QJsonObject &statusChange) const;

        QJsonObject creation; ///< The body of the request that made the order.
        QString processingStatus;
        QJsonArray
            lineStatuses{};    ///< Texts in the order of the lines; empty until a status change.
        int repetitions = 0;   ///< Creations after the first one.
        int conflicts = 0;     ///< Repetitions whose content differed; the first one stands.
        int statusChanges = 0; ///< Changes that gave the lines other statuses.
        int statusRepetitions = 0;
    };

    /// What identifies the order that the body of a request is about.
    static QString key(const QJsonObject &body);

    static QJsonObject orderRecord(const QJsonObject &creation, const QString &processingStatus);
    static QJsonObject repetitionRecord(const QString &key, bool conflict);
    /// Takes the statuses of the lines from the body of a status change.
    static QJsonObject statusRecord(const QJsonObject &statusChange);
    /// Returns false for a record that is none of these or is about an unknown order.
    bool apply(const QJsonObject &record);

    /// Null when unknown; valid until the next `apply`.
    const Order *order(const QString &key) const;
    /// Every order with its lines, their statuses and the counts; in no particular order.
    QJsonArray toJson() const;

private:
    QHash<QString, Order> orders;
};

} // namespace simulator
