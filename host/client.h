#pragma once

#include "host/export.h"

#include <QDate>
#include <QList>
#include <QMetaType>
#include <QObject>
#include <QString>

/// What the holder of a card agreed to.
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

    /// First and last name as the till shows them; empty when not known.
    void setName(const QString &newName) { name = newName; }
    QString getName() const { return name; }
    /// In the spelling of whoever set it; empty when not known.
    void setPhoneNumber(const QString &phone) { phoneNumber = phone; }
    QString getPhoneNumber() const { return phoneNumber; }
    /// Checked by nobody; empty when not known.
    void setEmail(const QString &newEmail) { email = newEmail; }
    QString getEmail() const { return email; }
    /// Switches one option on; options once on stay on.
    void setOption(ClientOptions option)
    {
        if (!hasOption(option))
            options.append(option);
    }
    bool hasOption(ClientOptions option) const { return options.contains(option); }
    /// Those that are on, in the order in which they were switched.
    const QList<ClientOptions> &getOptions() const { return options; }
    /// Male until set: a till knows no third value.
    void setSex(Sex newSex) { sex = newSex; }
    Sex getSex() const { return sex; }
    /// An invalid date means that the birthday is not known.
    void setBirthday(const QDate &date) { birthday = date; }
    QDate getBirthday() const { return birthday; }

    bool operator==(const Client &other) const = default;

    /// Calls `visit(name, member)` for each member. The names stand in the receipts that are kept,
    /// so they never change.
    template<typename Holder, typename Visit>
    static void visitMembers(Holder &holder, const Visit &visit)
    {
        visit(QLatin1String("birthday"), holder.birthday);
        visit(QLatin1String("email"), holder.email);
        visit(QLatin1String("name"), holder.name);
        visit(QLatin1String("options"), holder.options);
        visit(QLatin1String("phoneNumber"), holder.phoneNumber);
        visit(QLatin1String("sex"), holder.sex);
    }

private:
    QString name;
    QString phoneNumber;
    QString email;
    QList<ClientOptions> options;
    Sex sex = Sex::Male;
    QDate birthday;
};
