#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace till {

struct Settings;

/// The result of one check of "till check".
struct Finding
{
    enum class Level { Ok, Warning, Failed };

    Level level = Level::Ok;
    QString check; ///< The check's name for programs, such as "service.lookup"; never renamed.
    QString found;
    QString key;  ///< The setting to blame; empty for none.
    QString mend; ///< What to do; empty when there is nothing to do.
};

/// All findings of "till check", and its two figures for a monitor.
struct Findings
{
    QList<Finding> list;
    Finding::Level worst = Finding::Level::Ok;
    std::optional<qint64> certificateExpires; ///< Seconds since 1970.
    std::optional<qint64> clockAhead;         ///< Seconds that this clock is ahead.

    /// Adds a finding. In `mend`, "%1" becomes the setting with its file and line; an empty one
    /// says to correct the setting. A second finding about the same setting only raises the level
    /// of the first, so that a setting is blamed once. An `Ok` finding blames nothing.
    void add(Finding::Level level, const char *check, const QString &found, const QString &key = {},
             const QString &mend = {});
    void ok(const char *check, const QString &found) { add(Finding::Level::Ok, check, found); }
    /// Whether that check or setting has failed, so that checks which need it are skipped.
    bool hasFailed(const QString &checkOrKey) const;
};

/// Whether the host of a URL is a loopback address or name.
bool isLoopback(const QString &host);

// The checks. Each adds its findings.

/// Checks the settings and the files that they name.
void checkSettings(Findings &findings);
/// Formats sample receipts with the masks.
void checkMasks(Findings &findings);
/// Loads the loyalty plugin.
void checkPlugin(const Settings &settings, Findings &findings);
/// Checks data directory, log, disk space, store and queue, and names the processes at work.
void checkPlace(const Settings &settings, Findings &findings);
/// Checks proxy, connection, certificate and clock, and looks up that phone.
void checkService(const QString &phone, Findings &findings);

} // namespace till
