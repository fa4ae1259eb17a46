#pragma once

#include <QList>
#include <QString>

#include <optional>
#include <utility>

namespace till {

/// Metrics in the OpenMetrics text format, as far as Prometheus' node exporter reads it too.
class MetricsText
{
public:
    using Labels = QList<std::pair<const char *, QString>>;

    /// Begins a family; its samples follow.
    void family(const char *name, const char *type, const char *help);
    /// \param suffix Behind the family's name, such as "_total".
    void sample(double value, const Labels &labels = {}, const char *suffix = "");
    /// A family of one sample.
    void gauge(const char *name, double value, const char *help);

    QString text() const { return lines + QLatin1String("# EOF\n"); }
    /// Writes the text into a file that others may read, so that whoever reads it sees the old text
    /// or the new one. \return Why it is not there, nothing when it is.
    [[nodiscard]] std::optional<QString> writeTo(const QString &file) const;

private:
    QString lines;
    QString name;
};

} // namespace till
