#include "till/office/commands.h"

#include "till/core/store.h"
#include "till/office/answer.h"

#include "interface/ordermessage.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonObject>

#include <limits>

using namespace Qt::StringLiterals;

namespace till {

namespace {

constexpr int everything = std::numeric_limits<int>::max();

QJsonArray toJson(const QList<QueuedMessage> &messages)
{
    QJsonArray array;
    for (const auto &message : messages)
        array.append(QJsonObject{{"id"_L1, message.id},
                                 {"queuedAt"_L1, message.queuedAt.toString(Qt::ISODate)},
                                 {"tries"_L1, message.tries},
                                 {"lastError"_L1, message.lastError},
                                 {"message"_L1, message.message}});
    return array;
}

QString lineOf(const QueuedMessage &queued)
{
    namespace keys = lmmindbox::ordermessage;
    const auto &message = queued.message;
    const auto ids = message[keys::payload]["order"_L1]["ids"_L1].toObject();
    const auto line = Office::tr("%1 %2, order %3, since %4, tries %5")
                          .arg(QString::number(queued.id), message[keys::method].toString(u"?"_s),
                               ids.isEmpty() ? u"?"_s : ids.constBegin()->toString(),
                               queued.queuedAt.toLocalTime().toString(u"dd.MM.yyyy hh:mm:ss"_s),
                               QString::number(queued.tries));
    return queued.lastError.isEmpty() ? line : u"%1: %2"_s.arg(line, queued.lastError);
}

int list(Store &store, std::ostream &output, bool parked, bool asJson)
{
    constexpr int most = 50;
    const auto state = store.deliveryState();
    const auto messages = store.messages(parked, most);
    if (!state.error.isEmpty() || !messages)
        return fail(output, messages ? state.error : messages.error());
    if (asJson) {
        printJson(output, QJsonObject{{"waiting"_L1, state.waiting},
                                      {"parked"_L1, state.parked},
                                      {"messages"_L1, toJson(*messages)}});
    } else {
        for (const auto &message : *messages)
            printLine(output, lineOf(message));
        const auto count = parked ? state.parked : state.waiting;
        if (count > messages->size())
            printLine(output, Office::tr("the first %1 of %2; \"export\" writes them all")
                                  .arg(messages->size())
                                  .arg(count));
        printLine(output, textOf(state));
    }
    return state.parked > 0 ? parkedExit : 0;
}

int park(Store &store, std::ostream &output, const QString &id)
{
    const auto parked = store.setParked({id.toLongLong()}, true);
    if (!parked || *parked == 0)
        return fail(output, parked ? Office::tr("There is no waiting message %1.").arg(id)
                                   : parked.error());
    printLine(output, Office::tr("parked: %1").arg(id));
    return 0;
}

int retry(Store &store, std::ostream &output, const QString &which)
{
    const auto isAll = which == "all"_L1;
    const auto parked = store.messages(true, everything);
    if (!parked)
        return fail(output, parked.error());
    QList<qint64> ids;
    for (const auto &message : *parked) {
        if (isAll || QString::number(message.id) == which)
            ids.append(message.id);
    }
    const auto count = store.setParked(ids, false);
    if (!count || (*count == 0 && !isAll))
        return fail(output, count ? Office::tr("There is no parked message %1.").arg(which)
                                  : count.error());
    printLine(output, Office::tr("put back: %1").arg(*count));
    return 0;
}

int exportTo(Store &store, std::ostream &output, const QString &name)
{
    const auto waiting = store.messages(false, everything);
    const auto parked = store.messages(true, everything);
    if (!waiting || !parked)
        return fail(output, waiting ? parked.error() : waiting.error());
    const QJsonObject content{{"waiting"_L1, toJson(*waiting)}, {"parked"_L1, toJson(*parked)}};
    const auto bytes = QJsonDocument(content).toJson();
    QFile file(name);
    if (!file.open(QIODevice::NewOnly) || file.write(bytes) != bytes.size() || !file.flush())
        return fail(output, Office::tr("%1: expected a new file that can be written: %2")
                                .arg(name, file.errorString()));
    printLine(
        output,
        Office::tr("exported: %1 waiting, %2 parked").arg(waiting->size()).arg(parked->size()));
    return 0;
}

} // namespace

QString textOf(const DeliveryState &state)
{
    return Office::tr("waiting: %1, parked: %2").arg(state.waiting).arg(state.parked);
}

int runQueueCommand(Store &store, std::ostream &output, const QStringList &arguments, bool asJson)
{
    const auto verb = arguments.value(0, u"list"_s);
    const auto hasObject = arguments.size() == 2;
    if (!hasObject && (verb == "list"_L1 || verb == "parked"_L1))
        return list(store, output, verb == "parked"_L1, asJson);
    if (hasObject && verb == "park"_L1)
        return park(store, output, arguments.at(1));
    if (hasObject && verb == "retry"_L1)
        return retry(store, output, arguments.at(1));
    if (hasObject && verb == "export"_L1)
        return exportTo(store, output, arguments.at(1));
    printLine(output, Office::tr("Expected: till queue [list | parked | park ID | retry ID | retry "
                                 "all | export FILE]"));
    return 2;
}

} // namespace till
