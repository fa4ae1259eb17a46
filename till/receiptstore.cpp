#include "till/receiptstore.h"

#include <host/abstractdocument.h>
#include <host/privatefile.h>
#include <host/savetofilelogic.h>

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <cstdio>

namespace till {

namespace {

constexpr auto committingDirectory = QLatin1String("/committing");
constexpr auto committedDirectory = QLatin1String("/committed");
constexpr auto damagedDirectory = QLatin1String("/damaged");
constexpr auto suffix = QLatin1String(".json");

/// Renames a file so that it bears the new name also after a power cut.
std::optional<QString> moveFile(const QString &from, const QString &to)
{
    if (auto error = privatefile::createDirectory(QFileInfo(to).path()))
        return error;
    if (std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) != 0)
        return QStringLiteral("%1: cannot be moved to %2: %3")
            .arg(from, QFileInfo(to).path(), qt_error_string());
    for (const auto &path : {QFileInfo(to).path(), QFileInfo(from).path()}) {
        if (!privatefile::syncDirectory(path))
            return QStringLiteral("%1: cannot be written to the disk: %2")
                .arg(path, qt_error_string());
    }
    return std::nullopt;
}

std::optional<QString> removeFile(const QString &path)
{
    if (!QFileInfo::exists(path))
        return std::nullopt;
    if (std::remove(QFile::encodeName(path).constData()) == 0 &&
        privatefile::syncDirectory(QFileInfo(path).path()))
        return std::nullopt;
    return QStringLiteral("%1: cannot be removed: %2").arg(path, qt_error_string());
}

std::optional<QString> write(const QSharedPointer<AbstractDocument> &document, const QString &file)
{
    if (MockFactory<SaveToFileLogic>::create()->save(document, file))
        return std::nullopt;
    return QStringLiteral("%1: the receipt cannot be saved; the log says why").arg(file);
}

QStringList namesIn(const QString &path)
{
    auto names = QDir(path).entryList({u'*' + suffix}, QDir::Files, QDir::Name);
    for (auto &name : names)
        name.chop(suffix.size());
    return names;
}

/// Removes what a kill has left of files that were about to replace others.
void removeUnfinished(const QString &path)
{
    QDir place(path);
    const auto pattern = u'*' + suffix + QLatin1String(".??????");
    for (const auto &name : place.entryList({pattern}, QDir::Files))
        place.remove(name);
}

} // namespace

ReceiptStore::ReceiptStore(QString directory)
    : directory(std::move(directory))
{}

std::optional<QString> ReceiptStore::prepare() const
{
    for (const auto &name : {committingDirectory, committedDirectory, damagedDirectory}) {
        if (auto error = privatefile::createDirectory(directory + name))
            return error;
    }
    removeUnfinished(directory);
    removeUnfinished(directory + committingDirectory);
    return std::nullopt;
}

QString ReceiptStore::nameOf(const AbstractDocument &document)
{
    const auto &header = document.getHeader();
    return QStringLiteral("%1-%2-%3-%4-%5")
        .arg(header.shopCode, 4, 10, QLatin1Char('0'))
        .arg(header.cashCode, 2, 10, QLatin1Char('0'))
        .arg(header.shift, 4, 10, QLatin1Char('0'))
        .arg(header.num, 7, 10, QLatin1Char('0'))
        .arg(header.dateTimeBeg.toString(QStringLiteral("yyyyMMddHHmmss")));
}

QString ReceiptStore::openFile() const
{
    return directory + QLatin1String("/open.json");
}

QString ReceiptStore::committingFile(const QString &name) const
{
    return directory + committingDirectory + u'/' + name + suffix;
}

QString ReceiptStore::committedFile(const QString &name) const
{
    return directory + committedDirectory + u'/' + name + suffix;
}

std::optional<QString> ReceiptStore::save(const QSharedPointer<AbstractDocument> &document)
{
    if (!isOpenFileFree()) {
        if (auto error = moveOpenFile(openFileTarget); !isOpenFileFree())
            return error;
    }
    return write(document, openFile());
}

std::optional<QString> ReceiptStore::beginCommit(const QString &name)
{
    const auto isSaved = isOpenFileFree() && hasOpenReceipt();
    return isSaved ? moveOpenFile(committingFile(name)) : std::nullopt;
}

std::optional<QString>
ReceiptStore::writeCommitting(const QSharedPointer<AbstractDocument> &document)
{
    return rewrite(document, committingFile(nameOf(*document)));
}

std::optional<QString> ReceiptStore::archive(const QString &name)
{
    if (openFileHolds(name))
        return moveOpenFile(committedFile(name));
    if (!QFileInfo::exists(committingFile(name)) && QFileInfo::exists(committedFile(name)))
        return std::nullopt;
    return moveFile(committingFile(name), committedFile(name));
}

std::optional<QString>
ReceiptStore::writeCommitted(const QSharedPointer<AbstractDocument> &document)
{
    return rewrite(document, committedFile(nameOf(*document)));
}

std::optional<QString> ReceiptStore::discard()
{
    return isOpenFileFree() ? removeFile(openFile()) : std::nullopt;
}

bool ReceiptStore::hasOpenReceipt() const
{
    return QFileInfo::exists(openFile());
}

bool ReceiptStore::isCommitted(const QString &name) const
{
    return QFileInfo::exists(committingFile(name)) || QFileInfo::exists(committedFile(name));
}

QStringList ReceiptStore::committing() const
{
    return namesIn(directory + committingDirectory);
}

QSharedPointer<AbstractDocument> ReceiptStore::load(const QString &file, QString &error)
{
    const auto loaded = MockFactory<SaveToFileLogic>::create()->load(file);
    if (loaded.document)
        return loaded.document;
    // What only a newer version can read, or what could be read another time, is no waste.
    const auto stays = !loaded.isDamaged && file != openFile();
    error = QStringLiteral("%1; %2").arg(loaded.error,
                                         stays ? QStringLiteral("it stays there") : setAside(file));
    return {};
}

std::pair<int, int> ReceiptStore::highestNumbers() const
{
    std::pair<int, int> highest;
    for (const auto &place : {committingDirectory, committedDirectory, damagedDirectory}) {
        for (const auto &name : namesIn(directory + place)) {
            const auto parts = name.split(u'-');
            if (parts.size() < 5)
                continue;
            highest.first = std::max(highest.first, parts.at(2).toInt());
            highest.second = std::max(highest.second, parts.at(3).toInt());
        }
    }
    return highest;
}

QString ReceiptStore::setAside(const QString &file)
{
    const QFileInfo info(file);
    QString kept;
    for (int number = 1; kept.isEmpty() || QFileInfo::exists(kept); ++number)
        kept = QStringLiteral("%1%2/%3.%4%5")
                   .arg(directory, damagedDirectory, info.completeBaseName())
                   .arg(number)
                   .arg(suffix);
    const auto error = file == openFile() ? moveOpenFile(kept) : moveFile(file, kept);
    return error ? *error : QStringLiteral("it is kept as %1").arg(kept);
}

/// Whether "open.json" still holds that receipt, which is to be elsewhere.
bool ReceiptStore::openFileHolds(const QString &name) const
{
    return openFileTarget == committingFile(name) || openFileTarget == committedFile(name);
}

/// Writes the receipt into the file, and removes what the places before it hold of the receipt.
std::optional<QString> ReceiptStore::rewrite(const QSharedPointer<AbstractDocument> &document,
                                             const QString &file)
{
    if (auto error = write(document, file))
        return error;
    const auto name = nameOf(*document);
    if (openFileHolds(name)) {
        openFileTarget.clear();
        if (auto error = removeFile(openFile()))
            return error;
    }
    return file == committingFile(name) ? std::nullopt : removeFile(committingFile(name));
}

std::optional<QString> ReceiptStore::moveOpenFile(const QString &target)
{
    auto error = moveFile(openFile(), target);
    openFileTarget = error && hasOpenReceipt() ? target : QString();
    return error;
}

} // namespace till
