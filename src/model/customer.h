#pragma once

#include "model/processingstatus.h"

#include <QDate>
#include <QMetaType>
#include <QObject>
#include <QSet>
#include <QString>

namespace lmmindbox {

/// A customer as the loyalty service's last answer described it.
///
/// A value, equal when every field is equal, the processing status included. Its properties are the
/// keys of the record saved with the receipt, so renaming one breaks receipts of earlier versions.
class Customer
{
    Q_GADGET
    Q_PROPERTY(QString mobilePhone MEMBER mobilePhone)
    Q_PROPERTY(bool isMobilePhoneConfirmed MEMBER isMobilePhoneConfirmed)
    Q_PROPERTY(bool isEmailConfirmed MEMBER isEmailConfirmed)
    Q_PROPERTY(QString email MEMBER email)
    Q_PROPERTY(bool consentToElectronicChecks MEMBER consentToElectronicChecks)
    Q_PROPERTY(QString firstName MEMBER firstName)
    Q_PROPERTY(QString lastName MEMBER lastName)
    Q_PROPERTY(QDate birthDate MEMBER birthDate)
    Q_PROPERTY(QString sex MEMBER sex)

public:
    /// Reads a date "yyyy-MM-dd", as in the service's answers and in the record saved with the
    /// receipt; invalid for any other text.
    static QDate readBirthDate(const QString &text);

    /// Whether the service knew the customer.
    bool found() const;
    /// Whether the processing status is one of `statuses`; false for an empty set.
    bool checkStatus(const QSet<ProcessingStatus> &statuses) const;

    bool operator==(const Customer &other) const = default;

    QString mobilePhone; ///< As the service spells it; key of every later operation.
    bool isMobilePhoneConfirmed = false;
    bool isEmailConfirmed = false;
    QString email;
    bool consentToElectronicChecks = false;
    QString firstName;
    QString lastName;
    QDate birthDate; ///< Invalid when unknown.
    QString sex;     ///< The service's word, such as "male" or "female".
    ProcessingStatus processingStatus = ProcessingStatus::Unknown; ///< Not saved with the receipt.
};

} // namespace lmmindbox
