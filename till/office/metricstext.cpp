#include "till/office/metricstext.h"

#include <QFile>

#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

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
    const auto target = QFile::encodeName(file);
    const auto unfinished = target + '.' + QByteArray::number(::getpid());
    const auto bytes = text().toUtf8();
    const auto descriptor = ::open(unfinished.constData(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    auto isWritten =
        descriptor >= 0 && ::fchmod(descriptor, 0644) == 0 &&
        ::write(descriptor, bytes.constData(), static_cast<size_t>(bytes.size())) == bytes.size();
    isWritten = (descriptor < 0 || ::close(descriptor) == 0) && isWritten;
    if (isWritten && std::rename(unfinished.constData(), target.constData()) == 0)
        return std::nullopt;
    const auto reason = qt_error_string();
    ::unlink(unfinished.constData());
    return QStringLiteral("%1: cannot be written: %2").arg(file, reason);
}

} // namespace till
