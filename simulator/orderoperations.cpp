#include "simulator/presets.h"
#include "simulator/service.h"

namespace simulator {

using namespace Qt::StringLiterals;

namespace {

Answer orderAnswer(const QJsonValue &processingStatus)
{
    return success({{"order"_L1, QJsonObject{{"processingStatus"_L1, processingStatus}}}});
}

/// What identifies the order that a body is about: its one external identifier.
QString orderId(const QJsonObject &order)
{
    const auto ids = order["ids"_L1].toObject();
    return ids.isEmpty() ? QString()
                         : ids.begin().key() + u'=' + ids.begin()->toVariant().toString();
}

/// The order that a creation makes, as the dump shows it.
QJsonObject newOrder(const QJsonObject &body, const QString &processingStatus)
{
    auto order = body["order"_L1].toObject();
    order.insert("mobilePhone"_L1, body["customer"_L1]["mobilePhone"_L1]);
    order.insert("pointOfContact"_L1, body["pointOfContact"_L1]);
    order.insert("executionDateTimeUtc"_L1, body["executionDateTimeUtc"_L1]);
    order.insert("processingStatus"_L1, processingStatus);
    for (const auto count :
         {"repetitions"_L1, "conflicts"_L1, "statusChanges"_L1, "statusRepetitions"_L1})
        order.insert(count, 0);
    return order;
}

void count(QJsonObject &order, QLatin1String what)
{
    order.insert(what, order[what].toInt() + 1);
}

/// The lines as a creation has them: without status, the line's sum by its first name.
QJsonArray createdLines(const QJsonObject &order)
{
    auto lines = order["lines"_L1].toArray();
    for (auto entry : lines) {
        auto line = entry.toObject();
        line.remove("status"_L1);
        if (line.contains("discountedPriceOfLine"_L1))
            line.insert("discountedPricePerLine"_L1, line.take("discountedPriceOfLine"_L1));
        entry = line;
    }
    return lines;
}

/// Whether a creation says the same as the one that made the order; when it was executed and
/// through which point of contact does not count.
bool isSame(const QJsonObject &order, const QJsonObject &body)
{
    const auto sent = body["order"_L1].toObject();
    return QJsonValue(createdLines(order)) == sent.value("lines"_L1) &&
           order["totalPrice"_L1] == sent.value("totalPrice"_L1) &&
           order["mobilePhone"_L1] == body["customer"_L1]["mobilePhone"_L1];
}

} // namespace

Answer Service::createAuthorizedOrder(const QJsonObject &body)
{
    const auto id = orderId(body["order"_L1].toObject());
    if (auto known = store.get(kept::orders, id); !known.isEmpty()) {
        count(known, "repetitions"_L1);
        if (!isSame(known, body))
            count(known, "conflicts"_L1);
        store.put(kept::orders, id, known);
        return orderAnswer(known["processingStatus"_L1]);
    }
    const auto sent = body["customer"_L1]["mobilePhone"_L1].toString();
    const auto phone = normalizedPhone(sent);
    // A sale without a card is an order too; a phone that nobody has is a mistake.
    if (!sent.isEmpty() &&
        (customer(phone).isEmpty() || behaviour(phone) == Behaviour::OrderRefused))
        return orderAnswer("NotProcessed"_L1);
    const auto status =
        behaviour(phone) == Behaviour::OrderCalculated ? u"Calculated"_s : u"Processed"_s;
    store.put(kept::orders, id, newOrder(body, status));
    return orderAnswer(status);
}

Answer Service::changeStatus(const QJsonObject &body)
{
    const auto change = body["order"_L1].toObject();
    auto order = store.get(kept::orders, orderId(change));
    if (order.isEmpty() || createdLines(order) != createdLines(change)) {
        auto answer =
            refusal(order.isEmpty() ? u"The order is unknown"_s : u"The order has other lines"_s,
                    u"order"_s);
        answer.body.insert("errorMessage"_L1, "The status was not changed"_L1);
        return answer;
    }
    auto lines = createdLines(order);
    for (qsizetype i = 0; i < lines.size(); ++i) {
        auto line = lines.at(i).toObject();
        line.insert("status"_L1, change["lines"_L1][i]["status"_L1]);
        lines.replace(i, line);
    }
    const bool isRepeated =
        order["statusChanges"_L1].toInt() > 0 && order["lines"_L1].toArray() == lines;
    count(order, isRepeated ? "statusRepetitions"_L1 : "statusChanges"_L1);
    order.insert("lines"_L1, lines);
    store.put(kept::orders, orderId(order), order);
    return orderAnswer(order["processingStatus"_L1]);
}

} // namespace simulator
