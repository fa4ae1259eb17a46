#include "simulator/orderstore.h"

#include <algorithm>

namespace simulator {

using namespace Qt::Literals::StringLiterals;

namespace {

QJsonObject toJson(const OrderStore::Order &order)
{
    const auto content = order.creation.value("order"_L1).toObject();
    auto lines = content.value("lines"_L1).toArray();
    for (qsizetype i = 0; i < order.lineStatuses.size() && i < lines.size(); ++i) {
        auto line = lines.at(i).toObject();
        line.insert("status"_L1, order.lineStatuses.at(i));
        lines.replace(i, line);
    }
    QJsonObject result{
        {"ids"_L1, content.value("ids"_L1)},
        {"mobilePhone"_L1, order.creation.value("customer"_L1).toObject().value("mobilePhone"_L1)},
        {"lines"_L1, lines},
        {"totalPrice"_L1, content.value("totalPrice"_L1)},
        {"pointOfContact"_L1, order.creation.value("pointOfContact"_L1)},
        {"processingStatus"_L1, order.processingStatus},
        {"repetitions"_L1, order.repetitions},
        {"conflicts"_L1, order.conflicts},
        {"statusChanges"_L1, order.statusChanges},
        {"statusRepetitions"_L1, order.statusRepetitions}};
    if (const auto executed = order.creation.value("executionDateTimeUtc"_L1); executed.isString())
        result.insert("executionDateTimeUtc"_L1, executed);
    return result;
}

/// The line of a creation as a status change has to repeat it, the status aside.
QJsonObject asChanged(QJsonObject line)
{
    line.insert("discountedPriceOfLine"_L1, line.take("discountedPricePerLine"_L1));
    return line;
}

QJsonObject withoutStatus(QJsonObject line)
{
    line.remove("status"_L1);
    return line;
}

} // namespace

bool OrderStore::Order::isSameAs(const QJsonObject &creation) const
{
    return this->creation.value("order"_L1) == creation.value("order"_L1) &&
           this->creation.value("customer"_L1) == creation.value("customer"_L1);
}

bool OrderStore::Order::hasLinesOf(const QJsonObject &statusChange) const
{
    const auto own = creation.value("order"_L1).toObject().value("lines"_L1).toArray();
    const auto named = statusChange.value("order"_L1).toObject().value("lines"_L1).toArray();
    return std::equal(own.begin(), own.end(), named.begin(), named.end(),
                      [](const QJsonValue &a, const QJsonValue &b) {
                          return asChanged(a.toObject()) == withoutStatus(b.toObject());
                      });
}

QString OrderStore::key(const QJsonObject &body)
{
    const auto ids = body.value("order"_L1).toObject().value("ids"_L1).toObject();
    return ids.isEmpty() ? QString()
                         : ids.begin().key() + u'=' + ids.begin()->toVariant().toString();
}

QJsonObject OrderStore::orderRecord(const QJsonObject &creation, const QString &processingStatus)
{
    return {{"record"_L1, "order"_L1},
            {"creation"_L1, creation},
            {"processingStatus"_L1, processingStatus}};
}

QJsonObject OrderStore::repetitionRecord(const QString &key, bool conflict)
{
    return {{"record"_L1, "repetition"_L1}, {"order"_L1, key}, {"conflict"_L1, conflict}};
}

QJsonObject OrderStore::statusRecord(const QJsonObject &statusChange)
{
    QJsonArray statuses;
    for (const auto line : statusChange.value("order"_L1).toObject().value("lines"_L1).toArray())
        statuses.append(line.toObject().value("status"_L1));
    return {
        {"record"_L1, "statuses"_L1}, {"order"_L1, key(statusChange)}, {"statuses"_L1, statuses}};
}

bool OrderStore::apply(const QJsonObject &record)
{
    const auto kind = record.value("record"_L1).toString();
    if (kind == "order"_L1) {
        const auto creation = record.value("creation"_L1).toObject();
        orders.insert(key(creation),
                      {.creation = creation,
                       .processingStatus = record.value("processingStatus"_L1).toString()});
        return true;
    }
    const auto order = orders.find(record.value("order"_L1).toString());
    if (order == orders.end())
        return false;
    if (kind == "repetition"_L1) {
        ++order->repetitions;
        if (record.value("conflict"_L1).toBool())
            ++order->conflicts;
        return true;
    }
    if (kind != "statuses"_L1)
        return false;
    const auto statuses = record.value("statuses"_L1).toArray();
    const bool repeated = order->statusChanges > 0 && statuses == order->lineStatuses;
    ++(repeated ? order->statusRepetitions : order->statusChanges);
    order->lineStatuses = statuses;
    return true;
}

const OrderStore::Order *OrderStore::order(const QString &key) const
{
    const auto found = orders.constFind(key);
    return found == orders.constEnd() ? nullptr : &*found;
}

QJsonArray OrderStore::toJson() const
{
    QJsonArray list;
    for (const auto &order : orders)
        list.append(simulator::toJson(order));
    return list;
}

} // namespace simulator
