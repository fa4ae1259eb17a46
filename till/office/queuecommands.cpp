#include "till/office/commands.h"

#include "till/core/deliverer.h"
#include "till/office/answer.h"
#include "till/office/texts.h"

#include "interface/ordermessage.h"

#include <host/dbqueuebroker.h>
#include <host/privatefile.h>

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>

#include <limits>

namespace till {

namespace {

QString ageText(const QDateTime &since)
{
    constexpr qint64 minute = 60;
    constexpr qint64 hour = 60 * minute;
    const auto seconds = qMax<qint64>(0, since.secsTo(QDateTime::currentDateTimeUtc()));
    return QStringLiteral("%1:%2:%3")
        .arg(seconds / hour)
        .arg(seconds / minute % minute, 2, 10, QLatin1Char('0'))
        .arg(seconds % minute, 2, 10, QLatin1Char('0'));
}

QString methodOf(const QueuedMessage &message)
{
    return message.message.value(lmmindbox::ordermessage::method).toString(QStringLiteral("?"));
}

QJsonArray toJson(const QList<QueuedMessage> &messages)
{
    QJsonArray array;
    for (const auto &message : messages)
        array.append(QJsonObject{
            {QLatin1String("id"), message.id},
            {QLatin1String("queuedAt"), message.queuedAt.toString(Qt::ISODate)},
            {QLatin1String("tries"), message.tries},
            {QLatin1String("lastError"), message.lastError},
            {QLatin1String("message"), message.message},
        });
    return array;
}

/// The identity of the order that a message is about.
QString orderOf(const QueuedMessage &message)
{
    const auto ids =
        message
            .message[lmmindbox::ordermessage::payload][QLatin1String("order")][QLatin1String("ids")]
            .toObject();
    return ids.isEmpty() ? QStringLiteral("?") : ids.constBegin()->toString();
}

QString lineOf(const QueuedMessage &message)
{
    return Office::tr("%1 %2, order %3, age %4, tries %5")
        .arg(QString::number(message.id), methodOf(message), orderOf(message),
             ageText(message.queuedAt), QString::number(message.tries));
}

int list(DBQueueBroker &broker, std::ostream &output, bool asJson)
{
    constexpr int most = 50;
    const auto state = broker.state(loyaltyQueue());
    const auto messages = broker.waiting(loyaltyQueue(), most);
    if (!state || !broker.lastError().isEmpty())
        return fail(output, broker.lastError());
    const auto exitCode = state->parked > 0 ? parkedExit : 0;
    if (asJson) {
        printJson(output, QJsonObject{{QLatin1String("waiting"), state->waiting},
                                      {QLatin1String("parked"), state->parked},
                                      {QLatin1String("messages"), toJson(messages)}});
        return exitCode;
    }
    for (const auto &message : messages)
        printLine(output, lineOf(message));
    if (state->waiting > messages.size())
        printLine(output, Office::tr("the first %1 of %2; \"export\" writes all")
                              .arg(messages.size())
                              .arg(state->waiting));
    printLine(output, textOf(*state));
    return exitCode;
}

int listParked(DBQueueBroker &broker, std::ostream &output, bool asJson)
{
    const auto messages = broker.parked(loyaltyQueue());
    if (!broker.lastError().isEmpty())
        return fail(output, broker.lastError());
    if (asJson) {
        printJson(output, toJson(messages));
    } else {
        for (const auto &message : messages)
            printLine(output, QStringLiteral("%1: %2").arg(lineOf(message), message.lastError));
        printLine(output, Office::tr("parked: %1").arg(messages.size()));
    }
    return messages.isEmpty() ? 0 : parkedExit;
}

int park(DBQueueBroker &broker, std::ostream &output, const QString &which)
{
    bool isNumber = false;
    const auto id = which.toLongLong(&isNumber);
    if (!isNumber)
        return fail(output, Office::tr("Expected a message's number, not \"%1\".").arg(which));
    if (!broker.park(id, QStringLiteral("by hand")))
        return fail(output, broker.lastError());
    printLine(output, Office::tr("parked: %1").arg(id));
    return 0;
}

int retry(DBQueueBroker &broker, std::ostream &output, const QString &which)
{
    auto messages = broker.parked(loyaltyQueue());
    if (!broker.lastError().isEmpty())
        return fail(output, broker.lastError());
    if (which != QLatin1String("all")) {
        messages.removeIf(
            [&which](const auto &message) { return QString::number(message.id) != which; });
        if (messages.isEmpty())
            return fail(output, Office::tr("There is no parked message %1.").arg(which));
    }
    for (const auto &message : std::as_const(messages)) {
        if (!broker.unpark(message.id))
            return fail(output, broker.lastError());
    }
    printLine(output, Office::tr("put back: %1").arg(messages.size()));
    return 0;
}

int exportTo(DBQueueBroker &broker, std::ostream &output, const QString &file)
{
    if (QFileInfo::exists(file) || QFileInfo(file).isSymLink())
        return fail(output, Office::tr("%1: expected a new file").arg(file));
    const auto waiting = broker.waiting(loyaltyQueue(), std::numeric_limits<int>::max());
    if (!broker.lastError().isEmpty())
        return fail(output, broker.lastError());
    const auto parked = broker.parked(loyaltyQueue());
    if (!broker.lastError().isEmpty())
        return fail(output, broker.lastError());
    const QJsonObject content{{QLatin1String("waiting"), toJson(waiting)},
                              {QLatin1String("parked"), toJson(parked)}};
    if (const auto error = privatefile::write(file, QJsonDocument(content).toJson()))
        return fail(output, Office::tr("%1: cannot be written: %2").arg(file, *error));
    printLine(output,
              Office::tr("exported: %1 waiting, %2 parked").arg(waiting.size()).arg(parked.size()));
    return 0;
}

} // namespace

QString textOf(const QueueState &state)
{
    auto text = Office::tr("waiting: %1, parked: %2").arg(state.waiting).arg(state.parked);
    if (const auto &next = state.oldest) {
        text += Office::tr("\nnext: %1 %2, age %3, tries %4")
                    .arg(next->id)
                    .arg(methodOf(*next), ageText(next->queuedAt))
                    .arg(next->tries);
        if (!next->lastError.isEmpty())
            text += Office::tr("\nlast error: %1").arg(next->lastError);
    }
    return text;
}

int runQueueCommand(DBQueueBroker &broker, std::ostream &output, const QStringList &arguments,
                    bool asJson)
{
    const auto verb = arguments.value(0, QStringLiteral("list"));
    const auto count = qMax<qsizetype>(1, arguments.size());
    if (verb == QLatin1String("list") && count == 1)
        return list(broker, output, asJson);
    if (verb == QLatin1String("parked") && count == 1)
        return listParked(broker, output, asJson);
    if (verb == QLatin1String("park") && count == 2)
        return park(broker, output, arguments.at(1));
    if (verb == QLatin1String("retry") && count == 2)
        return retry(broker, output, arguments.at(1));
    if (verb == QLatin1String("export") && count == 2)
        return exportTo(broker, output, arguments.at(1));
    printLine(output, Office::tr("Expected: till queue [list | parked | park ID | retry ID | retry "
                                 "all | export FILE]"));
    return 2;
}

} // namespace till
