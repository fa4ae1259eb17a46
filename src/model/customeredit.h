#pragma once

#include <host/client.h>

#include <QDate>
#include <QMetaType>
#include <QObject>
#include <QString>

namespace lmmindbox {

/// Customer data as the cashier typed it. Its properties are the keys of the form's fields.
class CustomerEdit
{
    Q_GADGET
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(QString phone MEMBER phone)
    Q_PROPERTY(QString email MEMBER email)
    Q_PROPERTY(QDate birthday MEMBER birthday)
    Q_PROPERTY(Client::Sex sex MEMBER sex)

public:
    /// One line for the log, without the birthday.
    QString toString() const;

    bool operator==(const CustomerEdit &other) const = default;

    QString name; ///< Empty means that the cashier cancelled.
    QString phone;
    QString email;
    QDate birthday; ///< Invalid when not given.
    Client::Sex sex = Client::Sex::Female;
};

} // namespace lmmindbox
