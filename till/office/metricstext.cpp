#include "till/office/metricstext.h"

#include <QSaveFile>

namespace till {

namespace {

QString escaped(QString text)
{
    return text.replace(u'\\', QLatin1String("\\\\"))
        .replace(u'"', QLatin1String("\\\""))
        .replace(u'\n', QLatin1String("\\n"));
}

} // namespace

void MetricsText::family(const char *familyName, const char *type, const char *help)
{
    name = QLatin1String(familyName);
    lines += QStringLiteral("# HELP %1 %2\n# TYPE %1 %3\n")
                 .arg(name, QLatin1String(help), QLatin1String(type));
}

void MetricsText::sample(double value, const Labels &labels, const char *suffix)
{
    QStringList pairs;
    for (const auto &[label, text] : labels)
        pairs.append(QStringLiteral("%1=\"%2\"").arg(QLatin1String(label), escaped(text)));
    constexpr int digits = 15;
    lines += name + QLatin1String(suffix);
    if (!pairs.isEmpty())
        lines += u'{' + pairs.join(u',') + u'}';
    lines += u' ' + QString::number(value, 'g', digits) + u'\n';
}

void MetricsText::gauge(const char *familyName, double value, const char *help)
{
    family(familyName, "gauge", help);
    sample(value);
}

std::optional<QString> MetricsText::writeTo(const QString &file) const
{
    constexpr auto rights = QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                            QFileDevice::ReadGroup | QFileDevice::ReadOther;
    QSaveFile target(file);
    const auto bytes = text().toUtf8();
    // Its own commit does not notice that the last bytes did not fit on the disk.
    if (target.open(QFileDevice::WriteOnly) && target.setPermissions(rights) &&
        target.write(bytes) == bytes.size() && target.flush() && target.commit())
        return std::nullopt;
    return QStringLiteral("%1: cannot be written: %2").arg(file, target.errorString());
}

} // namespace till
