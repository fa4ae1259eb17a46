#pragma once

#include "faultydisk.h"

#include <QStringList>

namespace day {

/// The test's own connection to the store; the disk fails none of its calls.
class Look
{
public:
    explicit Look(const QString &store)
    {
        disk.isLookedAt = true;
        sqlite3_open(qPrintable(store), &connection);
    }
    ~Look()
    {
        sqlite3_close(connection);
        disk.isLookedAt = false;
    }
    Q_DISABLE_COPY_MOVE(Look)

    /// A row of two texts, the second one "unreadable", stands behind those that could be read.
    QList<QStringList> rows(const QString &sql) const
    {
        const auto add = [](void *all, int columns, char **values, char ** /*names*/) {
            QStringList row;
            for (int column = 0; column < columns; ++column)
                row.append(QString::fromUtf8(values[column]));
            static_cast<QList<QStringList> *>(all)->append(row);
            return 0;
        };
        QList<QStringList> rows;
        if (sqlite3_exec(connection, qPrintable(sql), add, &rows, nullptr) != SQLITE_OK)
            rows.append({QString::fromUtf8(sqlite3_errmsg(connection)), u"unreadable"_s});
        return rows;
    }

private:
    sqlite3 *connection = nullptr;
};

} // namespace day
