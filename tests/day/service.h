#pragma once

#include "faultydisk.h"

#include <host/restclient.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QSet>
#include <QUrlQuery>

namespace day {

using namespace Qt::StringLiterals;

/// The loyalty service behind the host's HTTP client, with moods.
class Service : public RestClient
{
public:
    enum Mood { Well, Refuses, PutsOff, Page, Gone, LateBefore, LateAfter, Twice, moods };

    Service() { MockFactory<RestClient>::mocked = this; }
    ~Service() override { MockFactory<RestClient>::mocked = nullptr; }
    Q_DISABLE_COPY_MOVE(Service)

    void setTimeout(qint64 /*milliseconds*/) override {}
    void setLogger(const Log4Qt::Logger * /*logger*/) override {}
    void setCompactLogs(bool /*compact*/) override {}
    http::Response getResponse() const override { return response; }
    void send(const QUrl &url, const QJsonDocument &document,
              const QHash<QString, QString> & /*headers*/) override
    {
        const auto now = random.below(100) < percent ? mood : Well;
        response = answer(now, QUrlQuery(url).queryItemValue(u"operation"_s), document.object());
        whenAnswered(response);
    }

    static QString idOf(const QJsonObject &body)
    {
        return body["order"_L1]["ids"_L1]["externalOrderIdLm"_L1].toString();
    }
    /// The receipt's number in an order's identifier.
    static int numberOf(const QString &id) { return id.mid(10, 7).toInt(); }

    Mood mood = Well;
    int percent = 100; ///< Of the requests that the mood is for; the others go well.
    Random random;
    QMap<QString, QJsonObject> orders; ///< As the creation sent them, by identifier.
    QSet<QString> paid;                ///< Those whose lines are all "Paid".
    QSet<QString> refused;             ///< Those that were refused once.
    QMap<int, QString> refusals;       ///< The last refusal of a receipt's order, in words.
    QMap<QString, bool> customers{{u"79160000001"_s, true}, {u"79160000002"_s, false}};
    std::function<void()> timeOut; ///< A request takes its longest time.
    std::function<void(const http::Response &)> whenAnswered;
    std::function<void(const QString &id, const QString &complaint)> complain;

private:
    static http::Response json(int code, const QJsonObject &object)
    {
        return {code, 0, QJsonDocument(object).toJson(QJsonDocument::Compact)};
    }
    static QJsonObject success(QLatin1String part, const char *status, QJsonObject content = {})
    {
        content.insert("processingStatus"_L1, QLatin1String(status));
        return {{"status"_L1, "Success"_L1}, {part, content}};
    }

    http::Response answer(Mood now, const QString &operation, const QJsonObject &body)
    {
        constexpr int notConnected = 7, timedOut = 28;
        if (now == LateBefore || now == LateAfter)
            timeOut();
        if (disk.isDying() || now == Gone || now == LateBefore)
            return {0, now == LateBefore ? timedOut : notConnected, {}};
        if (now == Refuses || now == PutsOff || now == Page) {
            const auto said = now == Page ? QString() : u"%1 %2"_s.arg(idOf(body)).arg(now);
            refused.insert(idOf(body));
            refusals.insert(numberOf(idOf(body)), said);
            return now == Page ? http::Response(random.below(2) == 0 ? 200 : 502, 0, "<html>")
                               : json(now == Refuses ? 400 : 503, {{"errorMessage"_L1, said}});
        }
        if (now == Twice)
            perform(operation, body);
        const auto done = perform(operation, body);
        // The process may die before it hears of it.
        return disk.isDying() || now == LateAfter ? http::Response(0, timedOut, {})
                                                  : json(200, done);
    }

    QJsonObject perform(const QString &operation, const QJsonObject &body)
    {
        if (operation == u"Offline.CreateAuthorizedOrder")
            return create(idOf(body), body);
        if (operation == u"Offline.ChangeStatus")
            return change(idOf(body), body["order"_L1]["lines"_L1].toArray());
        const auto phone = body["customer"_L1]["mobilePhone"_L1].toString();
        const auto isRegistered = operation == u"Offline.RegisterCustomer" && phone.size() == 11;
        if (isRegistered)
            customers.insert(phone, customers.value(phone));
        else if (!customers.contains(phone))
            return success("customer"_L1, "NotFound");
        if (operation == u"Offline.ConfirmMobilePhone") {
            if (body["smsConfirmation"_L1]["code"_L1] != u"1234"_s)
                return success("smsConfirmation"_L1, "IncorrectConfirmationCode");
            customers[phone] = true;
            return success("smsConfirmation"_L1, "MobilePhoneConfirmed");
        }
        return success("customer"_L1, isRegistered ? "Created" : "Found",
                       {{"mobilePhone"_L1, phone},
                        {"isMobilePhoneConfirmed"_L1, customers.value(phone)},
                        {"firstName"_L1, "Anna"_L1}});
    }
    QJsonObject create(const QString &id, const QJsonObject &body)
    {
        auto order = body["order"_L1].toObject();
        order.insert("phone"_L1, body["customer"_L1]["mobilePhone"_L1]);
        if (orders.value(id, order) != order)
            complain(id, u"order %1 is sent again and says something else"_s.arg(id));
        orders.insert(id, order);
        return success("order"_L1, "Processed");
    }
    QJsonObject change(const QString &id, const QJsonArray &lines)
    {
        const auto isPaid = std::all_of(lines.begin(), lines.end(), [](const QJsonValue &line) {
            return line["status"_L1] == "Paid"_L1;
        });
        if (orders.contains(id) && isPaid &&
            lines.size() == orders[id]["lines"_L1].toArray().size())
            paid.insert(id);
        else if (orders.contains(id) || !refused.contains(id))
            complain(id, u"the status of order %1 comes too early or is another's"_s.arg(id));
        return orders.contains(id) ? success("order"_L1, "Processed")
                                   : QJsonObject{{"errorMessage"_L1, "unknown"_L1}};
    }

    http::Response response;
};

} // namespace day
