#pragma once

#include "host/export.h"

#include <QDate>
#include <QList>
#include <QMetaType>
#include <QObject>
#include <QString>

/// The consents of a card's holder.
enum class ClientOptions {
    NoPaperReceipt = 1,
    ElectronicReceipt = 2,
};

/// Holder of a card on the receipt.
class HOST_EXPORT Client
{
    Q_GADGET
public:
    enum class Sex {
        Male = 0,
        Female = 1,
    };
    Q_ENUM(Sex)

    /// First and last name for display; empty when not known.
    void setName(const QString &newName) { name = newName; }
    QString getName() const { return name; }
    /// In the caller's spelling; empty when not known.
    void setPhoneNumber(const QString &phone) { phoneNumber = phone; }
    QString getPhoneNumber() const { return phoneNumber; }
    /// Not checked; empty when not known.
    void setEmail(const QString &newEmail) { email = newEmail; }
    QString getEmail() const { return email; }
    /// Switches one option on; options once on stay on.
    void setOption(ClientOptions option)
    {
        if (!hasOption(option))
            options.append(option);
    }
    bool hasOption(ClientOptions option) const { return options.contains(option); }
    /// The options that are on, in the order they were switched.
    const QList<ClientOptions> &getOptions() const { return options; }
    /// Male until set: the till has no third value.
    void setSex(Sex newSex) { sex = newSex; }
    Sex getSex() const { return sex; }
    /// An invalid date is an unknown birthday.
    void setBirthday(const QDate &date) { birthday = date; }
    QDate getBirthday() const { return birthday; }

    bool operator==(const Client &other) const = default;

    /// Calls `visit(name, member)` for each member. The names never change: saved receipts contain
    /// them.
    template<typename Holder, typename Visit>
    static void visitMembers(Holder &holder, const Visit &visit)
    {
        using namespace Qt::StringLiterals;
        visit("birthday"_L1, holder.birthday);
        visit("email"_L1, holder.email);
        visit("name"_L1, holder.name);
        visit("options"_L1, holder.options);
        visit("phoneNumber"_L1, holder.phoneNumber);
        visit("sex"_L1, holder.sex);
    }

private:
    QString name;
    QString phoneNumber;
    QString email;
    QList<ClientOptions> options;
    Sex sex = Sex::Male;
    QDate birthday;
};
