#include "simulator/customerstore.h"

#include "simulator/presets.h"

#include <QJsonArray>

namespace simulator {

using namespace Qt::Literals::StringLiterals;

CustomerStore::CustomerStore()
{
    for (const auto &preset : presets()) {
        if (!preset.customer.isEmpty())
            putCustomer(preset.customer);
    }
}

QJsonObject CustomerStore::customerRecord(const QJsonObject &customer)
{
    return {{"record"_L1, "customer"_L1}, {"customer"_L1, customer}};
}

QJsonObject CustomerStore::codeRecord(const QString &phone, const Code &code)
{
    return {{"record"_L1, "code"_L1},
            {"mobilePhone"_L1, phone},
            {"code"_L1, code.text},
            {"expiresAt"_L1, code.expiresAt}};
}

QJsonObject CustomerStore::letterRecord(const QString &email)
{
    return {{"record"_L1, "letter"_L1}, {"email"_L1, email}};
}

bool CustomerStore::apply(const QJsonObject &record)
{
    const auto kind = record.value("record"_L1).toString();
    if (kind == "customer"_L1)
        putCustomer(record.value("customer"_L1).toObject());
    else if (kind == "code"_L1)
        codes.insert(record.value("mobilePhone"_L1).toString(),
                     {.text = record.value("code"_L1).toString(),
                      .expiresAt = record.value("expiresAt"_L1).toInteger()});
    else if (kind == "letter"_L1)
        letters.append(record.value("email"_L1).toString());
    else
        return false;
    return true;
}

std::optional<QJsonObject> CustomerStore::customer(const QString &phone) const
{
    const auto found = customers.constFind(phone);
    return found == customers.constEnd() ? std::nullopt : std::optional(*found);
}

bool CustomerStore::knowsEmail(const QString &email) const
{
    return emailOwners.value(email) > 0;
}

CustomerStore::Code CustomerStore::code(const QString &phone) const
{
    return codes.value(phone);
}

QJsonObject CustomerStore::toJson() const
{
    QJsonArray customerList;
    for (const auto &customer : customers)
        customerList.append(customer);
    QJsonObject codeMap;
    for (auto code = codes.begin(); code != codes.end(); ++code)
        codeMap.insert(code.key(),
                       QJsonObject{{"code"_L1, code->text}, {"expiresAt"_L1, code->expiresAt}});
    return {{"customers"_L1, customerList},
            {"codes"_L1, codeMap},
            {"letters"_L1, QJsonArray::fromStringList(letters)}};
}

void CustomerStore::putCustomer(const QJsonObject &customer)
{
    auto &known = customers[customer.value("mobilePhone"_L1).toString()];
    if (const auto email = known.value("email"_L1).toString(); !email.isEmpty())
        --emailOwners[email];
    if (const auto email = customer.value("email"_L1).toString(); !email.isEmpty())
        ++emailOwners[email];
    known = customer;
}

} // namespace simulator
