#pragma once

#include <host/abstractdocument.h>
#include <host/database.h>

namespace till {

/// The tables of a till's store.
Database::Schema storeSchema();

/// A column's time, in UTC.
QDateTime utcOf(const QVariant &column);

/// The columns that `headerOf` reads, of a table called "r".
#define HEADER_COLUMNS "r.shop, r.cash, r.shift, r.number, r.kind, r.begun"
DocumentHeader headerOf(const Database::Row &row);

} // namespace till
