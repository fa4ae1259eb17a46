#include "till/office/commands.h"

#include "till/core/deliverer.h"
#include "till/core/exchangecounts.h"
#include "till/core/filelock.h"
#include "till/office/answer.h"
#include "till/office/metricstext.h"

#include <algorithm>

namespace till {

namespace {

void addState(Store &store, MetricsText &metrics)
{
    const auto state = store.deliveryState(loyaltyQueue());
    metrics.gauge("loyalty_till_store_readable", state.error.isEmpty() ? 1 : 0,
                  "Whether the till's store can be read.");
    if (!state.error.isEmpty())
        return;
    const auto oldest =
        state.waiting > 0 ? state.oldestWaiting.msecsTo(QDateTime::currentDateTimeUtc()) : 0;
    constexpr double second = 1'000;
    metrics.gauge("loyalty_till_waiting_messages", static_cast<double>(state.waiting),
                  "Messages that wait for delivery.");
    metrics.gauge("loyalty_till_oldest_waiting_seconds",
                  std::max(0.0, static_cast<double>(oldest) / second),
                  "How long the oldest of them has waited.");
    metrics.gauge("loyalty_till_parked_messages", static_cast<double>(state.parked),
                  "Messages put aside.");
    metrics.family("loyalty_till_receipts", "gauge",
                   "Committed receipts in the store by how their report ended.");
    for (const auto outcome : {Report::None, Report::Reported, Report::Queued, Report::Refused}) {
        const auto name = nameOf(outcome);
        if (const auto count = store.countReported(outcome))
            metrics.sample(static_cast<double>(*count),
                           {{"outcome", name.isEmpty() ? QStringLiteral("none") : name}});
    }
}

void addExchanges(const ExchangeCounts::File &counts, MetricsText &metrics)
{
    constexpr double second = 1'000;
    constexpr double microsecond = 1e-6;
    metrics.gauge("loyalty_till_unstored_receipts", static_cast<double>(counts.unstored),
                  "Receipts that are only in the memory of the till that sells or sold last.");
    metrics.family("loyalty_till_exchange_duration_seconds", "histogram",
                   "Exchanges with the service by operation and outcome.");
    qint64 lastSuccess = 0;
    for (const auto &series : counts.series) {
        if (series.count == 0)
            continue;
        const auto outcome = ExchangeCounts::textOf(series.outcome);
        const MetricsText::Labels labels{{"operation", ExchangeCounts::textOf(series.operation)},
                                         {"outcome", outcome}};
        for (size_t i = 0; i < ExchangeCounts::bounds.size(); ++i) {
            auto bound = QString::number(ExchangeCounts::bounds.at(i) / second);
            if (!bound.contains(u'.'))
                bound += QLatin1String(".0"); // as OpenMetrics spells it
            metrics.sample(static_cast<double>(series.within.at(i)),
                           labels + MetricsText::Labels{{"le", bound}}, "_bucket");
        }
        metrics.sample(static_cast<double>(series.count),
                       labels + MetricsText::Labels{{"le", QStringLiteral("+Inf")}}, "_bucket");
        metrics.sample(static_cast<double>(series.microseconds) * microsecond, labels, "_sum");
        metrics.sample(static_cast<double>(series.count), labels, "_count");
        if (outcome == QLatin1String("success"))
            lastSuccess = std::max(lastSuccess, series.last);
    }
    metrics.gauge("loyalty_till_last_success_timestamp_seconds", static_cast<double>(lastSuccess),
                  "When the service has last done what it was asked for; 0 for never.");
}

} // namespace

int runMetrics(const Settings &settings, const QString &file, std::ostream &output)
{
    const auto &directory = settings.dataDirectory;
    MetricsText metrics;
    metrics.family("loyalty_till_info", "gauge", "The till's version and place; always 1.");
    metrics.sample(1, {{"version", QStringLiteral(TILL_VERSION)},
                       {"qt", QString::fromLatin1(qVersion())},
                       {"shop", QString::number(settings.place.shopCode)},
                       {"register", QString::number(settings.place.cashCode)}});
    metrics.gauge("loyalty_till_selling",
                  FileLock::isHeld(directory + QLatin1String("/till.lock")) ? 1 : 0,
                  "Whether a till is at work.");
    Store store(directory);
    addState(store, metrics);
    addExchanges(ExchangeCounts::read(directory), metrics);
    if (file.isEmpty()) {
        output << metrics.text().toStdString() << std::flush;
        return 0;
    }
    const auto problem = metrics.writeTo(file);
    return problem ? fail(output, *problem) : 0;
}

} // namespace till
