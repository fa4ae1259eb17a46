#include "simulator/service.h"

#include "simulator/bodyshapes.h"
#include "simulator/envelopecheck.h"
#include "simulator/presets.h"

#include <QJsonDocument>

#include <utility>

namespace simulator {

struct Service::Operation
{
    std::span<const Member> body;
    Answer (Service::*handler)(const QJsonObject &body);
};

Service::Service(Options options)
    : options(std::move(options))
    , random(this->options.seed ? QRandomGenerator(*this->options.seed)
                                : QRandomGenerator::securelySeeded())
{}

bool Service::open()
{
    const std::lock_guard lock(mutex);
    if (options.journalFile.isEmpty())
        return true;
    // A start that failed may have read half of the journal.
    customers = CustomerStore();
    orderStore = OrderStore();
    if (!journal.open(options.journalFile,
                      [this](const QJsonObject &record) { return apply(record); }))
        return false;
    if (journal.wasTorn())
        qWarning("journal %s: dropped a last line that was cut short",
                 qPrintable(options.journalFile));
    return true;
}

QString Service::errorString() const
{
    const std::lock_guard lock(mutex);
    return journal.errorString();
}

Answer Service::answer(const ReceivedRequest &request)
{
    if (auto refused = checkEnvelope(request, options))
        return *std::move(refused);
    const auto name = request.queryItem(QLatin1String("operation"));
    const auto operation = operations().constFind(name);
    if (operation == operations().constEnd())
        return protocolError(400, QStringLiteral("Unknown operation '%1'").arg(name));
    QJsonParseError error;
    const auto document = QJsonDocument::fromJson(request.body, &error);
    if (!document.isObject())
        return protocolError(400, QStringLiteral("The body is no JSON object: %1 at byte %2")
                                      .arg(error.errorString())
                                      .arg(error.offset));
    const auto body = document.object();
    if (const auto messages = checkBody(body, operation->body); !messages.isEmpty())
        return validationError(messages);
    std::unique_lock lock(mutex);
    auto answer = (this->*operation->handler)(body);
    const auto sent = std::exchange(message, {});
    // Whoever receives the text may ask the service.
    lock.unlock();
    if (options.print && !sent.isEmpty())
        options.print(sent);
    return answer;
}

QString Service::lastCode(const QString &phone) const
{
    const std::lock_guard lock(mutex);
    return customers.code(normalizedPhone(phone)).text;
}

QJsonArray Service::orders() const
{
    const std::lock_guard lock(mutex);
    return orderStore.toJson();
}

QJsonObject Service::dump() const
{
    const std::lock_guard lock(mutex);
    auto result = customers.toJson();
    result.insert(QLatin1String("orders"), orderStore.toJson());
    return result;
}

void Service::reset()
{
    const std::lock_guard lock(mutex);
    customers = CustomerStore();
    orderStore = OrderStore();
    failingReloads.clear();
    if (!journal.clear())
        qWarning("%s", qPrintable(journal.errorString()));
}

const QHash<QString, Service::Operation> &Service::operations()
{
    static const QHash<QString, Operation> table{
        {QStringLiteral("Offline.GetCustomer"), {shapes::phone, &Service::getCustomer}},
        {QStringLiteral("Offline.RegisterCustomer"),
         {shapes::customer, &Service::registerCustomer}},
        {QStringLiteral("Offline.EditCustomer"), {shapes::customer, &Service::editCustomer}},
        {QStringLiteral("Offline.CheckMobilePhoneAuthorizationCode"),
         {shapes::authorizationCode, &Service::checkAuthorizationCode}},
        {QStringLiteral("Offline.ConfirmMobilePhone"),
         {shapes::confirmation, &Service::confirmMobilePhone}},
        {QStringLiteral("Offline.ResendMobilePhoneConfirmationCode"),
         {shapes::phone, &Service::resendConfirmationCode}},
        {QStringLiteral("Offline.EmailConfirmationLetter"),
         {shapes::email, &Service::emailConfirmationLetter}},
        {QStringLiteral("Offline.CreateAuthorizedOrder"),
         {shapes::authorizedOrder, &Service::createAuthorizedOrder}},
        {QStringLiteral("Offline.ChangeStatus"), {shapes::statusChange, &Service::changeStatus}},
    };
    return table;
}

bool Service::keep(std::initializer_list<QJsonObject> records)
{
    if (!journal.append(records)) {
        qWarning("%s", qPrintable(journal.errorString()));
        return false;
    }
    for (const auto &record : records)
        apply(record);
    return true;
}

bool Service::apply(const QJsonObject &record)
{
    return customers.apply(record) || orderStore.apply(record);
}

Answer Service::notKept()
{
    return {.httpCode = 500};
}

} // namespace simulator
