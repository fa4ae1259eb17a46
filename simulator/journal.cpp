#include "simulator/journal.h"

#include <QJsonDocument>

#include <sys/file.h>
#include <unistd.h>

namespace simulator {

bool Journal::open(const QString &path,
                   const std::function<bool(const QJsonObject &record)> &replay)
{
    torn = false;
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
    QByteArray lines;
    for (const auto &record : records)
        lines += QJsonDocument(record).toJson(QJsonDocument::Compact) + '\n';
    const auto size = file.size();
    if (file.write(lines) == lines.size() && fdatasync(file.handle()) == 0)
        return true;
    error = QStringLiteral("journal %1: %2").arg(file.fileName(), file.errorString());
    // Half a record would make the next one unreadable.
    file.resize(size);
    return false;
}

bool Journal::clear()
{
    return !file.isOpen() || (file.resize(0) && fdatasync(file.handle()) == 0);
}

bool Journal::fail(const QString &reason)
{
    error = QStringLiteral("journal %1: %2").arg(file.fileName(), reason);
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
    qsizetype start = 0;
    for (int number = 1; start < content.size(); ++number) {
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
    return true;
}

} // namespace simulator
