#pragma once

#include "host/client.h"
#include "host/export.h"

#include <QSharedPointer>

/// A loyalty card.
class HOST_EXPORT Card
{
public:
    /// Null removes the holder.
    void setClient(const QSharedPointer<Client> &newClient) { client = newClient; }
    /// The card's holder; null while not known.
    QSharedPointer<Client> getClient() const { return client; }

private:
    QSharedPointer<Client> client;
};
