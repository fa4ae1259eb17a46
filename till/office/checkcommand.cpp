#include "till/office/commands.h"

#include "till/core/catalogue.h"
#include "till/core/settingtable.h"
#include "till/office/answer.h"
#include "till/office/finding.h"
#include "till/office/metrics.h"

#include <host/config.h>
#include <host/logging.h>

#include <QJsonArray>
#include <QJsonObject>
#include <QMap>

#include <algorithm>
#include <array>
#include <tuple>

using namespace Qt::StringLiterals;

namespace till {

namespace {

using enum Finding::Level;

QLatin1StringView nameOf(Finding::Level level)
{
    constexpr std::array names{"ok"_L1, "warning"_L1, "failed"_L1};
    return names.at(static_cast<size_t>(level));
}

/// The setting and, in brackets, its file and line, or the file to put it in.
QString whereSet(const QString &key)
{
    const auto &config = *Singleton<Config>::instance();
    auto place = config.origin(key);
    if (place.isEmpty() && findSetting(key))
        place = config.files().value(0);
    return place.isEmpty() ? key : u"%1 (%2)"_s.arg(key, place);
}

Findings check(const SettingsOverrides &overrides, const QString &phone)
{
    Findings findings;
    const auto settings = loadSettings(overrides);
    if (!settings) {
        const auto &refusal = settings.error();
        findings.add(Failed, "settings.file", refusal.text(), {},
                     refusal.line > 0 ? Office::tr("Correct the line.")
                                      : Office::tr("Give the file to the till's user, or name "
                                                   "another one with --config."));
        return findings;
    }
    std::ignore = installLanguage(settings->language); // an unknown language is a finding
    const auto &config = *Singleton<Config>::instance();
    for (const auto &file : config.exposedFiles())
        findings.add(Warning, "settings.file",
                     Office::tr("%1: other users may read the secret key").arg(file), {},
                     u"chmod 600 "_s + file);
    if (config.exposedFiles().isEmpty())
        findings.ok("settings.file", config.files().join(", "_L1));
    checkSettings(findings);
    checkMasks(findings);
    checkPlugin(*settings, findings);
    checkPlace(*settings, findings);
    checkService(phone, findings);
    return findings;
}

void printText(const Findings &findings, std::ostream &output)
{
    for (const auto &finding : findings.list) {
        printLine(output, u"%1 %2 %3"_s.arg(nameOf(finding.level), -7)
                              .arg(finding.check, -19)
                              .arg(finding.found));
        if (!finding.mend.isEmpty())
            printLine(output, u"        -> "_s + finding.mend);
    }
}

QJsonObject toJson(const Findings &findings)
{
    QJsonArray list;
    for (const auto &[level, check, found, key, mend] : findings.list)
        list.append(QJsonObject{{"level"_L1, nameOf(level)},
                                {"check"_L1, check},
                                {"found"_L1, found},
                                {"mend"_L1, mend},
                                {"setting"_L1, key},
                                {"file"_L1, Singleton<Config>::instance()->origin(key)}});
    QJsonObject json{{"level"_L1, nameOf(findings.worst)}, {"findings"_L1, list}};
    if (findings.certificateExpires)
        json.insert("certificateExpires"_L1, *findings.certificateExpires);
    if (findings.clockAhead)
        json.insert("clockAhead"_L1, *findings.clockAhead);
    return json;
}

QList<Metric> metricsOf(const Findings &findings)
{
    QMap<QString, Finding::Level> levels;
    for (const auto &finding : findings.list)
        levels[finding.check] = std::max(levels.value(finding.check), finding.level);
    Metric level{"check_level", "What \"till check\" found: 0 ok, 1 warning, 2 failed.", {}};
    for (auto entry = levels.cbegin(); entry != levels.cend(); ++entry)
        level.samples.append({{{"check", entry.key()}}, static_cast<int>(*entry)});
    QList metrics{level};
    if (const auto &end = findings.certificateExpires)
        metrics.append(gauge("certificate_expiry_timestamp_seconds",
                             "When the first certificate of the service's chain expires.", *end));
    if (const auto &ahead = findings.clockAhead)
        metrics.append(
            gauge("clock_ahead_seconds", "How far this clock is ahead of the service's.", *ahead));
    return metrics;
}

} // namespace

void Findings::add(Finding::Level level, const char *check, const QString &found,
                   const QString &key, const QString &mend)
{
    worst = std::max(worst, level);
    const auto cause = std::ranges::find_if(
        list, [&key](const Finding &other) { return !key.isEmpty() && other.key == key; });
    auto remedy = mend.isEmpty() ? Office::tr("Correct %1.") : mend;
    if (level == Ok)
        list.append({level, QString::fromLatin1(check), found, {}, {}});
    else if (cause != list.end())
        cause->level = std::max(cause->level, level);
    else
        list.append({level, QString::fromLatin1(check), found, key,
                     remedy.replace("%1"_L1, whereSet(key))});
}

bool Findings::hasFailed(const QString &checkOrKey) const
{
    return std::ranges::any_of(list, [&checkOrKey](const Finding &finding) {
        return finding.level == Failed &&
               (finding.check == checkOrKey || finding.key == checkOrKey);
    });
}

int runCheck(const SettingsOverrides &overrides, const CheckRequest &request, std::ostream &output)
{
    std::ignore = logging::start({}, false); // findings tell all errors
    auto findings = check(overrides, request.phone);
    if (!request.metrics.isEmpty()) {
        if (const auto problem = writeMetrics(request.metrics, metricsOf(findings)))
            findings.add(Failed, "metrics", *problem, {},
                         Office::tr("Name a file in a directory that this user may write."));
    }
    if (request.asJson)
        printJson(output, toJson(findings));
    else
        printText(findings, output);
    return static_cast<int>(findings.worst);
}

} // namespace till
