#include "host/documentwatcher.h"

DocumentWatcher::~DocumentWatcher() = default;

void DocumentWatcher::setDocument(const QSharedPointer<AbstractDocument> &document)
{
    currentDocument = document;
}
