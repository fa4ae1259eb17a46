#pragma once

#include <QString>

namespace till {

/// Moves a file that cannot be read into "damaged/" of the data directory, under a name that is
/// free there; a database's own "-wal" and "-shm" go with it. \return Where it is now, or why it
/// could not be moved, in words.
QString putAside(const QString &file, const QString &dataDirectory);

} // namespace till
