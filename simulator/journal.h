#pragma once

#include <QFile>
#include <QJsonObject>
#include <QString>

#include <functional>
#include <initializer_list>

namespace simulator {

/// The file of records from which the state is rebuilt after a kill: a header line that tells it
/// from any other file, then one JSON object a line.
///
/// Open in one process at a time, readable only by its owner. Without a file every operation
/// succeeds and keeps nothing.
class Journal
{
public:
    /// Opens or creates the file and hands each record to `replay`, which returns false for one
    /// that it does not understand; such a file, and one without the header, is refused and left
    /// as it is. A last line that a kill cut short is dropped. Returns false with `errorString`
    /// set when the file cannot be used.
    [[nodiscard]] bool open(const QString &path,
                            const std::function<bool(const QJsonObject &record)> &replay);
    /// Whether `open` dropped a line that was cut short.
    bool wasTorn() const;
    QString errorString() const;

    /// On the disk when it returns true. When it returns false, with `errorString` set, nothing of
    /// it is in the file; should that fail too, every further append is refused until `clear`.
    [[nodiscard]] bool append(std::initializer_list<QJsonObject> records);
    /// Drops every record. Returns false with `errorString` set when that fails.
    [[nodiscard]] bool clear();

private:
    bool complain(const QString &reason);
    bool fail(const QString &reason);
    bool lock();
    bool read(const std::function<bool(const QJsonObject &record)> &replay);
    bool write(const QByteArray &lines);

    QFile file;
    bool torn = false;
    bool broken = false; ///< Half a record may stand at the end of the file.
    QString error;
};

} // namespace simulator
