#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace till {

/// One thing that "till check" has looked at.
struct Finding
{
    enum class Level { Ok, Warning, Failed };

    /// The worse of two that may be true.
    static Level levelOf(bool isFailed, bool isDoubtful)
    {
        if (isFailed)
            return Level::Failed;
        return isDoubtful ? Level::Warning : Level::Ok;
    }

    Level level = Level::Ok;
    QString check; ///< Which one, for programs: "service.lookup". Stays from version to version.
    QString found;
    QString mend; ///< What to do; empty when there is nothing to do.
};

/// All that "till check" has found, and the two figures in it that a monitor follows.
struct Findings
{
    QList<Finding> list;
    std::optional<qint64> certificateExpires; ///< Seconds since 1970.
    std::optional<qint64> clockAhead;         ///< Seconds that this clock is ahead.

    /// Adds one; what to do is left out where nothing is wrong.
    void add(Finding::Level level, const char *check, const QString &found, const QString &mend)
    {
        list.append({level, QString::fromLatin1(check), found,
                     level == Finding::Level::Ok ? QString() : mend});
    }
    void ok(const char *check, const QString &found) { add(Finding::Level::Ok, check, found, {}); }
    void warn(const char *check, const QString &found, const QString &mend)
    {
        add(Finding::Level::Warning, check, found, mend);
    }
    void fail(const char *check, const QString &found, const QString &mend)
    {
        add(Finding::Level::Failed, check, found, mend);
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
