#include "till/office/metrics.h"

#include "till/core/deliverer.h"
#include "till/core/till.h"
#include "till/office/answer.h"
#include "till/office/commands.h"

#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace till {

namespace {

/// In Prometheus' text format.
QString metricsText(const QList<Metric> &metrics)
{
    QString text;
    for (const auto &[name, help, samples] : metrics) {
        const QString family = "loyalty_till_"_L1 + QLatin1StringView(name);
        text += u"# HELP %1 %2\n# TYPE %1 %3\n"_s.arg(
            family, QLatin1StringView(help), family.endsWith("_total"_L1) ? u"counter" : u"gauge");
        for (const auto &[labels, value] : samples) {
            QStringList pairs;
            for (const auto &[label, content] : labels)
                pairs.append(u"%1=\"%2\""_s.arg(QLatin1StringView(label), content));
            const auto which = pairs.isEmpty() ? QString() : u"{%1}"_s.arg(pairs.join(u','));
            text += family + which + u' ' + value.toString() + u'\n';
        }
    }
    return text;
}

QList<Metric> stateMetrics(Store &store)
{
    const auto state = store.deliveryState();
    const auto readable = gauge("store_readable", "Whether the till's store can be read.",
                                state.error.isEmpty() ? 1 : 0);
    if (!state.error.isEmpty())
        return {readable};
    const auto oldest = state.waiting > 0 ? state.oldestWaiting.secsTo(Clock::now()) : 0;
    Metric receipts{
        "receipts", "Committed receipts in the store by the outcome of their report.", {}};
    for (const auto outcome : {Report::None, Report::Reported, Report::Queued, Report::Refused}) {
        const auto name = outcome == Report::None ? u"none"_s : nameOf(outcome);
        if (const auto count = store.countReported(outcome))
            receipts.samples.append({{{"outcome", name}}, *count});
    }
    return {readable, gauge("waiting_messages", "Messages that wait for delivery.", state.waiting),
            gauge("oldest_waiting_seconds", "Age of the oldest waiting message.",
                  std::max<qint64>(0, oldest)),
            gauge("parked_messages", "Parked messages (dead letters).", state.parked), receipts};
}

QList<Metric> exchangeMetrics(const QList<ExchangeCount> &counts)
{
    Metric exchanges{"exchanges_total", "Requests to the service by operation and outcome.", {}};
    Metric seconds{"exchange_seconds_total", "Total duration of the requests.", {}};
    qint64 lastSuccess = 0;
    for (const auto &[operation, outcome, count, duration, last] : counts) {
        const Metric::Labels labels{{"operation", operation}, {"outcome", outcome}};
        exchanges.samples.append({labels, count});
        seconds.samples.append({labels, duration});
        if (outcome == "success"_L1)
            lastSuccess = std::max(lastSuccess, last);
    }
    return {exchanges, seconds,
            gauge("last_success_timestamp_seconds",
                  "Time of the last successful request; 0 for none.", lastSuccess)};
}

} // namespace

std::optional<QString> writeMetrics(const QString &file, const QList<Metric> &metrics)
{
    constexpr auto rights = QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                            QFileDevice::ReadGroup | QFileDevice::ReadOther;
    // QSaveFile would replace a pipe or a device by a file.
    if (const QFileInfo info(file); info.exists() && !info.isFile())
        return Office::tr("%1: expected a regular file").arg(file);
    QSaveFile target(file);
    const auto bytes = metricsText(metrics).toUtf8();
    // commit() does not notice that the last bytes found no room on the disk; flush() does.
    if (target.open(QFileDevice::WriteOnly) && target.setPermissions(rights) &&
        target.write(bytes) == bytes.size() && target.flush() && target.commit())
        return std::nullopt;
    return Office::tr("%1: cannot be written: %2").arg(file, target.errorString());
}

int runMetrics(const Settings &settings, const QString &file, std::ostream &output)
{
    const auto &directory = settings.dataDirectory;
    Store store(directory);
    const Metric::Labels labels{{"version", u"" TILL_VERSION ""_s},
                                {"qt", QString::fromLatin1(qVersion())},
                                {"shop", QString::number(settings.place.shopCode)},
                                {"register", QString::number(settings.place.cashCode)}};
    const auto metrics =
        QList<Metric>{{"info", "The till's version and place; always 1.", {{labels, 1}}},
                      gauge("selling", "Whether a till is selling.",
                            ProcessLock::holderOf(Till::lockFile(directory)) ? 1 : 0),
                      gauge("unstored_receipts",
                            "Unsaved receipts of the till that sells, or sold last.",
                            Store::unsavedIn(directory))} +
        stateMetrics(store) + exchangeMetrics(store.exchanges().value_or(QList<ExchangeCount>()));
    if (file.isEmpty()) {
        output << metricsText(metrics).toStdString() << std::flush;
        return 0;
    }
    const auto problem = writeMetrics(file, metrics);
    return problem ? fail(output, *problem) : 0;
}

} // namespace till
