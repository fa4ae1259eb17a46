#include "simulator/journal.h"

#include <QJsonDocument>

#include <cerrno>
#include <sys/file.h>
#include <unistd.h>

namespace simulator {

namespace {

constexpr QByteArrayView header = "Journal of the service simulator, version 1\n";

} // namespace

bool Journal::open(const QString &path,
                   const std::function<bool(const QJsonObject &record)> &replay)
{
    torn = false;
    broken = false;
    error.clear();
    file.setFileName(path);
    const auto ownerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
    if (!file.open(QIODevice::ReadWrite | QIODevice::Append | QIODevice::Unbuffered, ownerOnly))
        return fail(file.errorString());
    if (!lock() || !read(replay))
        return false;
    // The umask or an earlier hand may have set other ones.
    return file.setPermissions(ownerOnly) || fail(file.errorString());
}

bool Journal::wasTorn() const
{
    return torn;
}

QString Journal::errorString() const
{
    return error;
}

bool Journal::append(std::initializer_list<QJsonObject> records)
{
    if (!file.isOpen())
        return true;
    if (broken)
        return complain(QStringLiteral("half a record stands at its end"));
    QByteArray lines;
    for (const auto &record : records)
        lines += QJsonDocument(record).toJson(QJsonDocument::Compact) + '\n';
    const auto size = file.size();
    if (write(lines))
        return true;
    // Half a record would make the next one unreadable.
    broken = !file.resize(size);
    return false;
}

bool Journal::clear()
{
    if (!file.isOpen())
        return true;
    if (!file.resize(header.size()) || fdatasync(file.handle()) != 0)
        return complain(qt_error_string(errno));
    broken = false;
    return true;
}

bool Journal::complain(const QString &reason)
{
    error = QStringLiteral("journal %1: %2").arg(file.fileName(), reason);
    return false;
}

bool Journal::fail(const QString &reason)
{
    complain(reason);
    file.close();
    return false;
}

bool Journal::lock()
{
    if (flock(file.handle(), LOCK_EX | LOCK_NB) == 0)
        return true;
    return fail(QStringLiteral("another simulator uses it"));
}

bool Journal::read(const std::function<bool(const QJsonObject &record)> &replay)
{
    file.seek(0);
    // Read in one piece: the file is unbuffered so that appending it is one write.
    const auto content = file.readAll();
    const bool hasHeader = content.startsWith(header);
    // A kill may have cut the header short, too.
    if (!hasHeader && !header.startsWith(content))
        return fail(
            QStringLiteral("line 1 must be '%1'").arg(QString::fromLatin1(header.trimmed())));
    auto start = hasHeader ? header.size() : 0;
    for (int number = 2; start < content.size(); ++number) {
        const auto end = content.indexOf('\n', start);
        if (end < 0)
            break;
        const auto record = QJsonDocument::fromJson(content.mid(start, end - start)).object();
        if (!replay(record))
            return fail(QStringLiteral("line %1 is no record of a simulator").arg(number));
        start = end + 1;
    }
    torn = start < content.size();
    if (torn && !file.resize(start))
        return fail(file.errorString());
    if (hasHeader || write(header.toByteArray()))
        return true;
    file.close();
    return false;
}

bool Journal::write(const QByteArray &lines)
{
    // The file's own text says nothing when only a part was written or the sync failed.
    errno = 0;
    return (file.write(lines) == lines.size() && fdatasync(file.handle()) == 0) ||
           complain(qt_error_string(errno));
}

} // namespace simulator
