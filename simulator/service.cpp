#include "simulator/service.h"

#include "simulator/bodycheck.h"

#include <QJsonDocument>

#include <utility>

namespace simulator {

using namespace Qt::StringLiterals;

namespace {

/// The order with its first lines, and how many there are.
QJsonObject shortened(QJsonObject order)
{
    constexpr qsizetype mostLines = 50;
    auto lines = order.value("lines"_L1).toArray();
    order.insert("lineCount"_L1, lines.size());
    while (lines.size() > mostLines)
        lines.removeLast();
    order.insert("lines"_L1, lines);
    return order;
}

} // namespace

const QHash<QString, Service::Operation> Service::operations{
    {u"Offline.GetCustomer"_s, &Service::getCustomer},
    {u"Offline.RegisterCustomer"_s, &Service::registerCustomer},
    {u"Offline.EditCustomer"_s, &Service::editCustomer},
    {u"Offline.CheckMobilePhoneAuthorizationCode"_s, &Service::checkAuthorizationCode},
    {u"Offline.ConfirmMobilePhone"_s, &Service::confirmMobilePhone},
    {u"Offline.ResendMobilePhoneConfirmationCode"_s, &Service::resendConfirmationCode},
    {u"Offline.EmailConfirmationLetter"_s, &Service::emailConfirmationLetter},
    {u"Offline.CreateAuthorizedOrder"_s, &Service::createAuthorizedOrder},
    {u"Offline.ChangeStatus"_s, &Service::changeStatus},
};

Service::Service(const Options &options)
    : options(options)
    , random(options.seed ? QRandomGenerator(*options.seed) : QRandomGenerator::securelySeeded())
{}

QString Service::open()
{
    const std::lock_guard lock(mutex);
    return store.open(options.stateFile);
}

Answer Service::answer(const QString &operation, const QByteArray &sent)
{
    const auto known = operations.constFind(operation);
    if (known == operations.constEnd())
        return protocolError(400, u"Unknown operation '%1'"_s.arg(operation));
    QJsonParseError error;
    const auto document = QJsonDocument::fromJson(sent, &error);
    if (!document.isObject())
        return protocolError(400,
                             u"The body is no JSON object: %1 at byte %2"_s.arg(error.errorString())
                                 .arg(error.offset));
    const auto body = document.object();
    if (const auto messages = checkBody(body, operation); !messages.isEmpty())
        return validationError(messages);
    std::unique_lock lock(mutex);
    auto answer = carryOut(*known, body);
    const auto word = std::exchange(message, {});
    // Whoever receives the text may ask the service.
    lock.unlock();
    if (options.print && !word.isEmpty())
        options.print(word);
    return answer;
}

Answer Service::carryOut(Operation operation, const QJsonObject &body)
{
    auto answer = (this->*operation)(body);
    const auto error = store.commit();
    if (error.isEmpty())
        return answer;
    qWarning("%s", qPrintable(error));
    message.clear();
    return {.httpCode = 500};
}

QJsonObject Service::dump() const
{
    const std::lock_guard lock(mutex);
    QJsonObject collections;
    for (const auto name : {kept::customers, kept::codes, kept::letters, kept::orders})
        collections.insert(name, store.all(name));
    return collections;
}

QJsonObject Service::since(qint64 &change) const
{
    const std::lock_guard lock(mutex);
    const auto known = std::exchange(change, store.lastChange());
    auto news = known == change ? QJsonObject() : store.since(known);
    auto orders = news.value(kept::orders).toArray();
    for (auto entry : orders)
        entry = shortened(entry.toObject());
    if (!orders.isEmpty())
        news.insert(kept::orders, orders);
    return news;
}

void Service::reset()
{
    const std::lock_guard lock(mutex);
    failingReloads.clear();
    store.reset();
    if (const auto error = store.commit(); !error.isEmpty())
        qWarning("%s", qPrintable(error));
}

} // namespace simulator
