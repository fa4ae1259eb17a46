#pragma once

#include <QHash>
#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <optional>

namespace simulator {

/// Customers with their confirmation codes, and the letters sent to them.
///
/// Changes come only as records, whether made now or read back from the journal; the functions
/// that make records change nothing by themselves.
class CustomerStore
{
public:
    struct Code
    {
        QString text;         ///< Empty when there is none or it was used.
        qint64 expiresAt = 0; ///< Milliseconds since the epoch, UTC.
    };

    /// Starts with the preset customers.
    CustomerStore();

    static QJsonObject customerRecord(const QJsonObject &customer);
    static QJsonObject codeRecord(const QString &phone, const Code &code);
    static QJsonObject letterRecord(const QString &email);
    /// Returns false for a record that is none of these.
    bool apply(const QJsonObject &record);

    /// The customer as in the answers, without processing status. Phones are in normal form.
    std::optional<QJsonObject> customer(const QString &phone) const;
    /// Whether some customer has this e-mail address, compared exactly.
    bool knowsEmail(const QString &email) const;
    /// The code last sent to the phone.
    Code code(const QString &phone) const;
    /// Members "customers", "codes" and "letters".
    QJsonObject toJson() const;

private:
    void putCustomer(const QJsonObject &customer);

    QHash<QString, QJsonObject> customers;
    QHash<QString, int> emailOwners;
    QHash<QString, Code> codes;
    QStringList letters;
};

} // namespace simulator
