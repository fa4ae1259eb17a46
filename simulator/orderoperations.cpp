#include "simulator/presets.h"
#include "simulator/service.h"

namespace simulator {

using namespace Qt::StringLiterals;

namespace {

void count(QJsonObject &order, QLatin1String what)
{
    order.insert(what, order[what].toInt() + 1);
}

/// The lines in the form of a creation, which has another name for the line's sum.
QJsonArray linesOf(const QJsonObject &order, bool withStatus)
{
    auto lines = order["lines"_L1].toArray();
    for (auto entry : lines) {
        auto line = entry.toObject();
        if (!withStatus)
            line.remove("status"_L1);
        if (line.contains("discountedPriceOfLine"_L1))
            line.insert("discountedPricePerLine"_L1, line.take("discountedPriceOfLine"_L1));
        entry = line;
    }
    return lines;
}

/// Whether a creation has the same content as the one that made the order. Time and point of
/// contact do not count.
bool isSame(const QJsonObject &order, const QJsonObject &body)
{
    const auto sent = body["order"_L1].toObject();
    return QJsonValue(linesOf(order, false)) == sent.value("lines"_L1) &&
           order["totalPrice"_L1] == sent.value("totalPrice"_L1) &&
           order["mobilePhone"_L1] == body["customer"_L1]["mobilePhone"_L1];
}

} // namespace

QString orderId(const QJsonObject &order)
{
    const auto ids = order["ids"_L1].toObject();
    return ids.isEmpty() ? QString()
                         : ids.begin().key() + u'=' + ids.begin()->toVariant().toString();
}

Answer Service::createAuthorizedOrder(const Asked &asked)
{
    const auto &[body, phone, customer] = asked;
    const auto id = orderId(body["order"_L1].toObject());
    if (auto known = state.get(kept::orders, id); !known.isEmpty()) {
        count(known, "repetitions"_L1);
        if (!isSame(known, body))
            count(known, "conflicts"_L1);
        state.put(kept::orders, id, known);
        return processed("order"_L1, known["processingStatus"_L1]);
    }
    const bool isNamed = body["customer"_L1]["mobilePhone"_L1] != QString();
    // A sale without a card is an order too, but an unknown phone is a mistake.
    if (isNamed && (customer.isEmpty() || behaviour(phone) == "orderRefused"_L1))
        return processed("order"_L1, "NotProcessed"_L1);
    const auto status = behaviour(phone) == "orderCalculated"_L1 ? u"Calculated"_s : u"Processed"_s;
    const QJsonObject made{{"mobilePhone"_L1, body["customer"_L1]["mobilePhone"_L1]},
                           {"pointOfContact"_L1, body["pointOfContact"_L1]},
                           {"executionDateTimeUtc"_L1, body["executionDateTimeUtc"_L1]},
                           {"processingStatus"_L1, status},
                           {"repetitions"_L1, 0},
                           {"conflicts"_L1, 0},
                           {"statusChanges"_L1, 0},
                           {"statusRepetitions"_L1, 0}};
    state.put(kept::orders, id, merged(body["order"_L1].toObject(), made));
    return processed("order"_L1, status);
}

Answer Service::changeStatus(const Asked &asked)
{
    const auto change = asked.body["order"_L1].toObject();
    auto order = state.get(kept::orders, orderId(change));
    if (order.isEmpty() || linesOf(order, false) != linesOf(change, false))
        return asJson(
            QJsonObject{{"status"_L1, "ValidationError"_L1},
                        {"errorMessage"_L1, order.isEmpty() ? u"The order is unknown"_s
                                                            : u"The order has other lines"_s}});
    const auto lines = linesOf(change, true);
    const bool isRepeated = order["lines"_L1].toArray() == lines;
    count(order, isRepeated ? "statusRepetitions"_L1 : "statusChanges"_L1);
    order.insert("lines"_L1, lines);
    state.put(kept::orders, orderId(order), order);
    return processed("order"_L1, order["processingStatus"_L1]);
}

} // namespace simulator
