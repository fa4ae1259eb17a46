#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace till {

/// One thing that "till check" has looked at.
struct Finding
{
    enum class Level { Ok, Warning, Failed };

    Level level = Level::Ok;
    QString check; ///< Which one, for programs: "service.lookup". Stays from version to version.
    QString found;
    QString mend = {}; ///< What to do; empty when there is nothing to do.
};

/// All that "till check" has found, and the two figures in it that a monitor follows.
struct Findings
{
    QList<Finding> list;
    std::optional<qint64> certificateExpires; ///< Seconds since 1970.
    std::optional<qint64> clockAhead;         ///< Seconds that this clock is ahead.

    void ok(const char *check, const QString &found)
    {
        list.append({Finding::Level::Ok, QString::fromLatin1(check), found});
    }
    void warn(const char *check, const QString &found, const QString &mend)
    {
        list.append({Finding::Level::Warning, QString::fromLatin1(check), found, mend});
    }
    void fail(const char *check, const QString &found, const QString &mend)
    {
        list.append({Finding::Level::Failed, QString::fromLatin1(check), found, mend});
    }
    Finding::Level worst() const
    {
        auto level = Finding::Level::Ok;
        for (const auto &finding : list)
            level = std::max(level, finding.level);
        return level;
    }
};

struct Settings;

// The checks, each adding what it has found.

/// The settings themselves, and the masks over sample receipts.
void checkSettingsAndMasks(Findings &findings);
/// The loyalty plugin's module.
void checkPlugin(const Settings &settings, Findings &findings);
/// Data directory, disk, store, and who is at work in it.
void checkPlace(const Settings &settings, Findings &findings);
/// Way to the service, certificate, clock, and one look-up of that phone.
void checkService(const QString &phone, Findings &findings);

} // namespace till
