#include "till/office/finding.h"

#include "till/core/deliverer.h"
#include "till/core/settings.h"
#include "till/core/storeschema.h"
#include "till/core/till.h"
#include "till/office/answer.h"

#include <host/database.h>
#include <host/privatefile.h>

#include <QFile>
#include <QFileInfo>
#include <QLocale>

#include <array>
#include <filesystem>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace till {

namespace {

using enum Finding::Level;

/// The path itself or, before the first start, its nearest existing parent.
QString existing(const QString &path)
{
    auto directory = QFileInfo(path).absoluteFilePath();
    while (!QFileInfo::exists(directory) && directory != "/"_L1)
        directory = QFileInfo(directory).path();
    return directory;
}

bool isWritable(const QString &path, int rights)
{
    return ::access(QFile::encodeName(path).constData(), rights) == 0;
}

void checkDirectory(const QString &directory, Findings &findings)
{
    constexpr auto check = "place.directory";
    const auto there = existing(directory);
    const QFileInfo info(there);
    if (!info.isDir() || !isWritable(there, W_OK | X_OK))
        findings.add(Failed, check, Office::tr("%1 cannot be written").arg(there),
                     u"Till:dataDir"_s,
                     Office::tr("Give the directory to the till's user, or correct %1."));
    else if (there == directory && info.ownerId() != ::geteuid())
        findings.add(Warning, check,
                     Office::tr("%1 belongs to the user %2").arg(directory, info.owner()), {},
                     Office::tr("Run the till's programs as that user."));
    else if (there == directory && privatefile::isOpenToOthers(directory))
        findings.add(Warning, check, Office::tr("%1 is open to other users").arg(directory), {},
                     u"chmod 700 "_s + directory);
    else
        findings.ok(check, directory);
}

/// Only a warning: a till sells without a log, too.
void checkLog(const QString &file, Findings &findings)
{
    if (file.isEmpty()) {
        findings.ok("place.log", Office::tr("standard error"));
        return;
    }
    const auto there = existing(file);
    // A missing log needs a directory to be made in; an existing one must not be a directory.
    const auto isGood = (there != file) == QFileInfo(there).isDir() && isWritable(there, W_OK);
    findings.add(isGood ? Ok : Warning, "place.log",
                 isGood ? file : Office::tr("%1 cannot be written").arg(there), u"Till:log"_s,
                 Office::tr("Give it to the till's user, or correct %1."));
}

void checkSpace(const QString &directory, Findings &findings)
{
    constexpr qint64 leastBytes = 5LL << 20;
    constexpr qint64 fewBytes = 200LL << 20;
    // Qt looks in the list of mounts, which a container may not show.
    std::error_code error;
    const auto space =
        std::filesystem::space(QFile::encodeName(existing(directory)).toStdString(), error);
    const auto free = error ? 0 : static_cast<qint64>(space.available);
    const auto doubt = free < fewBytes ? Warning : Ok;
    findings.add(free < leastBytes ? Failed : doubt, "place.space",
                 Office::tr("%1 free").arg(QLocale::c().formattedDataSize(free)), {},
                 Office::tr("Make room on the file system of %1.").arg(directory));
}

/// The remedies, in the order of `DatabaseError::Kind`.
constexpr std::array mends{
    QT_TRANSLATE_NOOP("Office", "Check which program locks the file, and the file's rights."),
    QT_TRANSLATE_NOOP("Office",
                      "Start the till: it moves the file into \"damaged\" and begins a new one."),
    QT_TRANSLATE_NOOP("Office", "Another program's file: name another directory in Till:dataDir."),
    QT_TRANSLATE_NOOP("Office", "Install the newer version again."),
};

/// The tables, indexes and triggers that this store lacks.
QString missingIn(Database &database)
{
    QStringList missing;
    const auto schema = storeSchema();
    for (const auto *const statement : schema.statements)
        missing.append(QString::fromLatin1(statement).remove("UNIQUE "_L1).section(u' ', 2, 2));
    const auto rows = database.run("SELECT name FROM sqlite_master");
    for (const auto &row : rows.value_or(QList<Database::Row>()))
        missing.removeAll(row.first().toString());
    return missing.join(", "_L1);
}

/// \return Whether the store can be used.
bool checkStore(Database &database, Findings &findings)
{
    constexpr auto check = "store";
    const auto whole = database.check();
    const auto missing = missingIn(database);
    if (!whole)
        findings.add(Failed, check, Office::tr("it cannot be used: \"%1\"").arg(whole.error().text),
                     {}, Office::tr(mends.at(static_cast<size_t>(whole.error().kind))));
    else if (!missing.isEmpty())
        findings.add(Failed, check, Office::tr("%1 lacks %2").arg(database.file(), missing), {},
                     Office::tr("Restore the file, or move it away: the till begins a new one."));
    else
        findings.ok(check, Office::tr("%1, whole").arg(database.file()));
    return whole && missing.isEmpty();
}

void checkQueue(const DeliveryState &state, Findings &findings)
{
    constexpr qint64 longWait = 15LL * 60;
    const auto age = state.waiting > 0 ? state.oldestWaiting.secsTo(Clock::now()) : 0;
    findings.add(
        age > longWait ? Warning : Ok, "queue.waiting",
        state.waiting > 0
            ? Office::tr("%1 messages wait, the oldest for %2 s").arg(state.waiting).arg(age)
            : Office::tr("no message waits"),
        {}, Office::tr(R"("till queue" tells the reason; "till deliver" must run.)"));
    findings.add(state.parked > 0 ? Warning : Ok, "queue.parked",
                 Office::tr("parked messages: %1").arg(state.parked), {},
                 Office::tr("\"till queue parked\" tells the reason, \"till queue retry\" sends "
                            "them again."));
    findings.add(state.refused > 0 ? Warning : Ok, "receipts.refused",
                 Office::tr("refused receipts: %1").arg(state.refused), {},
                 Office::tr("\"till receipts --refused\" tells the reason, \"till report\" "
                            "reports them again."));
}

} // namespace

void checkPlace(const Settings &settings, Findings &findings)
{
    const auto &directory = settings.dataDirectory;
    checkDirectory(directory, findings);
    if (!findings.hasFailed(u"place.directory"_s) || !settings.logFile.startsWith(directory))
        checkLog(settings.logFile, findings);
    checkSpace(directory, findings);
    const auto file = Store::fileIn(directory);
    if (!QFileInfo::exists(file)) {
        findings.ok("store", Office::tr("none yet; the first start creates it"));
    } else if (Database database(file, storeSchema()); checkStore(database, findings)) {
        database.close();
        checkQueue(Store(directory).deliveryState(), findings);
    }
    findings.ok("till", ProcessLock::holderOf(Till::lockFile(directory))
                            ? Office::tr("one is selling here; a second one will not start")
                            : Office::tr("none is selling here"));
    findings.ok("deliverer", ProcessLock::holderOf(Deliverer::lockFile(directory))
                                 ? Office::tr("one is at work")
                                 : Office::tr("none is at work now"));
}

} // namespace till
