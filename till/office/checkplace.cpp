#include "till/office/finding.h"

#include "till/core/deliverer.h"
#include "till/core/filelock.h"
#include "till/core/settings.h"
#include "till/core/store.h"
#include "till/office/texts.h"

#include <host/database.h>
#include <host/dbqueuebroker.h>

#include <QFile>
#include <QFileInfo>
#include <QLocale>

#include <filesystem>
#include <unistd.h>

namespace till {

namespace {

/// The directory itself or, before the first start, the nearest one above it that is there.
QString existing(QString directory)
{
    while (!QFileInfo::exists(directory) && directory != QLatin1String("/"))
        directory = QFileInfo(directory).path();
    return directory;
}

void checkDirectory(const QString &directory, Findings &findings)
{
    constexpr auto check = "place.directory";
    const auto there = existing(directory);
    const QFileInfo info(there);
    constexpr auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup |
                            QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
    if (!info.isDir() || ::access(QFile::encodeName(there).constData(), W_OK | X_OK) != 0)
        findings.fail(
            check, Office::tr("%1 cannot be written").arg(there),
            Office::tr("Give the directory to the till's user, or correct Till:dataDir."));
    else if (there == directory && info.ownerId() != ::geteuid())
        findings.warn(check, Office::tr("%1 belongs to the user %2").arg(directory, info.owner()),
                      Office::tr("Run the till's programs as that user: runuser -u %1 till check")
                          .arg(info.owner()));
    else if (there == directory && (info.permissions() & others) != 0)
        findings.warn(check, Office::tr("%1 is open to other users").arg(directory),
                      Office::tr("chmod 700 %1").arg(directory));
    else
        findings.ok(check, directory);
}

/// A till whose log cannot be written sells all the same.
void checkLog(const QString &file, Findings &findings)
{
    constexpr auto check = "place.log";
    if (file.isEmpty()) {
        findings.ok(check, Office::tr("standard error"));
        return;
    }
    const auto there = existing(file);
    // A directory is good to make the log in, but no log.
    const auto isGood = (there != file) == QFileInfo(there).isDir();
    if (!isGood || ::access(QFile::encodeName(there).constData(), W_OK) != 0)
        findings.warn(check, Office::tr("%1 cannot be written").arg(there),
                      Office::tr("Give it to the till's user, or correct Till:log."));
    else
        findings.ok(check, file);
}

void checkSpace(const QString &directory, Findings &findings)
{
    constexpr qint64 leastBytes = 5LL << 20;
    constexpr qint64 fewBytes = 200LL << 20;
    // Qt's own answer needs the mount in the list of mounts, which a container may not show.
    std::error_code error;
    const auto space =
        std::filesystem::space(QFile::encodeName(existing(directory)).toStdString(), error);
    const auto free = error ? 0 : static_cast<qint64>(space.available);
    const auto text = Office::tr("%1 free").arg(QLocale::c().formattedDataSize(free));
    findings.add(Finding::levelOf(free < leastBytes, free < fewBytes), "place.space", text,
                 Office::tr("Make room on the file system of %1.").arg(directory));
}

/// Opens the store, and so brings one of an older version forward. \return Whether it is good.
bool checkStore(Database &database, Findings &findings)
{
    constexpr auto check = "store";
    if (const auto damage = database.findDamage(); damage && damage->isEmpty()) {
        const auto version = database.read("PRAGMA user_version");
        findings.ok(check, Office::tr("%1, whole, version %2")
                               .arg(database.file(),
                                    version ? version->first().first().toString() : QString()));
        return true;
    }
    const auto text = database.lastError();
    switch (database.problem()) {
    case Database::Problem::Newer:
    case Database::Problem::Foreign:
        findings.fail(check, text,
                      Office::tr("Install the newer version, or another Till:dataDir."));
        break;
    case Database::Problem::Unavailable:
        findings.fail(check, text, Office::tr("See who holds or locks the file, and its rights."));
        break;
    case Database::Problem::Damaged:
    case Database::Problem::None:
        findings.fail(check, text,
                      Office::tr("Start the till: it puts the file aside, into \"damaged\", and "
                                 "begins a new one."));
    }
    return false;
}

void checkQueue(const DeliveryState &state, Findings &findings)
{
    constexpr qint64 longWait = 15LL * 60;
    const auto age =
        state.waiting > 0 ? state.oldestWaiting.secsTo(QDateTime::currentDateTimeUtc()) : 0;
    const auto waiting =
        Office::tr("%1 messages wait, the oldest for %2 s").arg(state.waiting).arg(age);
    findings.add(Finding::levelOf(false, age > longWait), "queue.waiting", waiting,
                 Office::tr("\"till queue\" says what keeps it; \"till deliver\" must run."));
    if (state.parked > 0)
        findings.warn(
            "queue.parked", Office::tr("%1 messages are parked").arg(state.parked),
            Office::tr("\"till queue parked\" says why, \"till queue retry\" sends again."));
    else
        findings.ok("queue.parked", Office::tr("none"));
    if (state.refused > 0)
        findings.warn(
            "receipts.refused", Office::tr("%1 receipts are refused").arg(state.refused),
            Office::tr("\"till receipts --refused\" says why, \"till report\" reports again."));
    else
        findings.ok("receipts.refused", Office::tr("none"));
}

} // namespace

void checkPlace(const Settings &settings, Findings &findings)
{
    const auto &directory = settings.dataDirectory;
    checkDirectory(directory, findings);
    checkLog(settings.logFile, findings);
    checkSpace(directory, findings);
    const auto file = Store::fileIn(directory);
    if (!QFileInfo::exists(file)) {
        findings.ok("store", Office::tr("none yet; the first start makes it"));
    } else if (Database database(file); checkStore(database, findings)) {
        database.close();
        checkQueue(Store(directory).deliveryState(loyaltyQueue()), findings);
    }
    findings.ok("till", FileLock::isHeld(directory + QLatin1String("/till.lock"))
                            ? Office::tr("one is selling here; a second one does not start")
                            : Office::tr("none is selling here"));
    findings.ok("deliverer", FileLock::isHeld(directory)
                                 ? Office::tr("one is at work")
                                 : Office::tr("none is at work at this moment"));
}

} // namespace till
