#include "host/documentlogic.h"

#include "host/abstractdocument.h"
#include "host/session.h"

template class MockFactory<DocumentLogic>;

QList<QSharedPointer<FormatterSource>>
DocumentLogic::getFormatterSources(const QVariantMap & /*parameters*/) const
{
    const auto document = Singleton<Session>::instance()->getCurrentDocument();
    if (!document)
        return {};
    return {document};
}
