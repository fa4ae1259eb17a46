#include "benchmarks/filledstore.h"

#include "benchmarks/setup.h"

#include "converter/converter.h"
#include "interface/ordermessage.h"
#include "model/customer.h"
#include "till/core/deliverer.h"

#include <host/abstractdocument.h>
#include <host/documentjson.h>
#include <host/session.h>

#include <QJsonDocument>

#include <algorithm>

namespace bench {

namespace words = lmmindbox::ordermessage;

std::pair<QJsonObject, QJsonObject> payloadsOf(int number)
{
    const auto receipt = makeReceipt(usualLines, number);
    Singleton<Session>::instance()->setCurrentDocument(receipt);
    lmmindbox::Converter converter;
    lmmindbox::Customer customer;
    customer.mobilePhone = confirmedPhone;
    auto creation = converter.getOrderPayload(customer, receipt->getTotal()).first;
    auto change = converter.getChangeOrderStatusPayload({});
    Singleton<Session>::instance()->setCurrentDocument(nullptr);
    return {creation, change};
}

QList<QueuedMessage> messagesOf(int number)
{
    const auto message = [](QLatin1String method, const QJsonObject &payload) {
        QueuedMessage queued;
        queued.queue = words::queue;
        queued.message = {{words::method, method}, {words::payload, payload}};
        queued.queuedAt = QDateTime::currentDateTimeUtc();
        return queued;
    };
    const auto payloads = payloadsOf(number);
    return {message(words::create, payloads.first), message(words::change, payloads.second)};
}

QByteArray toBytes(const QueuedMessage &message)
{
    return QJsonDocument(message.message).toJson(QJsonDocument::Compact);
}

QByteArray documentOf(int number)
{
    QString error;
    const auto json = documentjson::toJson(*makeReceipt(usualLines, number), error);
    return QJsonDocument(json).toJson(QJsonDocument::Compact);
}

FilledStore::FilledStore(const QString &directory, int firstNumber)
    : store(directory)
    , number(firstNumber)
{}

bool FilledStore::add(int receipts, bool isWaiting)
{
    constexpr int mostAtATime = 1'000;
    for (auto left = receipts; left > 0; left -= mostAtATime) {
        const auto isAdded = store.together([&] {
            auto added = true;
            for (int i = 0; i < std::min(left, mostAtATime) && added; ++i)
                added = addOne(isWaiting);
            return added;
        });
        if (!isAdded)
            return false;
    }
    return true;
}

qint64 FilledStore::countWaiting()
{
    return store.deliveryState(till::loyaltyQueue()).waiting;
}

bool FilledStore::addOne(bool isWaiting)
{
    till::StoredReceipt receipt;
    receipt.document = makeReceipt(usualLines, number);
    const auto messages = isWaiting ? messagesOf(number) : QList<QueuedMessage>();
    const auto outcome = isWaiting ? till::Report::Queued : till::Report::Reported;
    ++number;
    return store.saveCommitted(receipt, {outcome, {}, {}}, messages);
}

} // namespace bench
