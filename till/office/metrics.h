#pragma once

#include <QList>
#include <QString>
#include <QVariant>

#include <optional>
#include <utility>

namespace till {

/// A family of the till's metrics: a counter when its name ends in "_total", else a gauge.
struct Metric
{
    using Labels = QList<std::pair<const char *, QString>>;

    const char *name; ///< Without "loyalty_till_".
    const char *help;
    QList<std::pair<Labels, QVariant>> samples;
};

/// A gauge of one sample.
inline Metric gauge(const char *name, const char *help, const QVariant &value)
{
    return {name, help, {{{}, value}}};
}

/// Replaces the file by the metrics at once, so that a reader sees the old text or the new one. All
/// users may read the file. \return Why it failed; nothing on success.
[[nodiscard]] std::optional<QString> writeMetrics(const QString &file,
                                                  const QList<Metric> &metrics);

} // namespace till
