#include "host/database.h"

Transaction::Transaction(Database &database)
    : database(database)
    , isBegun(database.transactions > 0 ? database.open()
                                        : database.write("BEGIN IMMEDIATE").has_value())
    , isOpen(isBegun)
{
    database.transactions += isOpen ? 1 : 0;
}

Transaction::~Transaction()
{
    if (!isOpen)
        return;
    --database.transactions;
    // Closing undoes it; an outer one must not go on without a part of itself.
    database.close();
}

bool Transaction::commit()
{
    if (!isOpen)
        return false;
    isOpen = false;
    --database.transactions;
    // Closed by a failed statement, it must not be opened again to commit nothing.
    return database.connection.isOpen() &&
           (database.transactions > 0 || database.write("COMMIT").has_value());
}
