#include "till/office/commands.h"

#include "till/core/catalogue.h"
#include "till/office/answer.h"
#include "till/office/finding.h"
#include "till/office/metricstext.h"
#include "till/office/texts.h"

#include <host/config.h>
#include <host/logging.h>

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>
#include <QMap>

#include <algorithm>
#include <array>

namespace till {

namespace {

QLatin1String nameOf(Finding::Level level)
{
    constexpr std::array names{QLatin1String("ok"), QLatin1String("warning"),
                               QLatin1String("failed")};
    return names.at(static_cast<size_t>(level));
}

Finding::Level worstOf(const Findings &findings)
{
    auto level = Finding::Level::Ok;
    for (const auto &finding : findings.list)
        level = std::max(level, finding.level);
    return level;
}

void checkFile(const QString &file, Findings &findings)
{
    constexpr auto others =
        QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
    if ((QFileInfo(file).permissions() & others) != 0)
        findings.warn("settings.file", Office::tr("%1: others may read the secret key").arg(file),
                      Office::tr("chmod 600 %1").arg(file));
    else
        findings.ok("settings.file", file);
}

Findings check(const SettingsOverrides &overrides, const CheckRequest &request)
{
    Findings findings;
    QString error;
    const auto settings = loadSettings(overrides, error);
    if (const auto problem = installLanguage(settings.language))
        findings.fail("settings.values", *problem, Office::tr("Correct Till:language."));
    if (!error.isEmpty()) {
        findings.fail("settings.file", error,
                      Office::tr("Correct the line, or name another file with --config."));
        return findings;
    }
    checkFile(Config::filePath(overrides.config), findings);
    checkSettingsAndMasks(findings);
    checkPlugin(settings, findings);
    checkPlace(settings, findings);
    checkService(request.phone, findings);
    return findings;
}

void printText(const Findings &findings, std::ostream &output)
{
    for (const auto &finding : findings.list) {
        printLine(output, QStringLiteral("%1 %2 %3")
                              .arg(nameOf(finding.level), -7)
                              .arg(finding.check, -19)
                              .arg(finding.found));
        if (!finding.mend.isEmpty())
            printLine(output, QStringLiteral("        -> %1").arg(finding.mend));
    }
}

QJsonObject toJson(const Findings &findings)
{
    QJsonArray list;
    for (const auto &[level, check, found, mend] : findings.list)
        list.append(QJsonObject{{QLatin1String("level"), nameOf(level)},
                                {QLatin1String("check"), check},
                                {QLatin1String("found"), found},
                                {QLatin1String("mend"), mend}});
    QJsonObject json{{QLatin1String("level"), nameOf(worstOf(findings))},
                     {QLatin1String("findings"), list}};
    if (findings.certificateExpires)
        json.insert(QLatin1String("certificateExpires"), *findings.certificateExpires);
    if (findings.clockAhead)
        json.insert(QLatin1String("clockAhead"), *findings.clockAhead);
    return json;
}

std::optional<QString> writeMetrics(const Findings &findings, const QString &file)
{
    QMap<QString, Finding::Level> levels;
    for (const auto &finding : findings.list)
        levels[finding.check] = std::max(levels.value(finding.check), finding.level);
    MetricsText metrics;
    metrics.family("loyalty_till_check_level", "gauge",
                   "What \"till check\" found: 0 ok, 1 warning, 2 failed.");
    for (auto level = levels.cbegin(); level != levels.cend(); ++level)
        metrics.sample(static_cast<double>(*level), {{"check", level.key()}});
    if (findings.certificateExpires)
        metrics.gauge("loyalty_till_certificate_expiry_timestamp_seconds",
                      static_cast<double>(*findings.certificateExpires),
                      "When the first certificate of the service's chain ends.");
    if (findings.clockAhead)
        metrics.gauge("loyalty_till_clock_ahead_seconds", static_cast<double>(*findings.clockAhead),
                      "How far this clock is ahead of the service's.");
    return metrics.writeTo(file);
}

} // namespace

int runCheck(const SettingsOverrides &overrides, const CheckRequest &request, std::ostream &output)
{
    (void)logging::start({}, false); // whatever goes wrong is a finding
    auto findings = check(overrides, request);
    if (!request.metrics.isEmpty()) {
        if (const auto problem = writeMetrics(findings, request.metrics))
            findings.fail("metrics", *problem,
                          Office::tr("Name a file in a directory that this user may write."));
    }
    if (request.asJson)
        printJson(output, toJson(findings));
    else
        printText(findings, output);
    return static_cast<int>(worstOf(findings));
}

} // namespace till
