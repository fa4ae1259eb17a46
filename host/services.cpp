#include "host/abstractdocument.h"
#include "host/dbqueuebroker.h"
#include "host/discountlogic.h"
#include "host/documentlogic.h"
#include "host/messagesink.h"
#include "host/receiptkeeper.h"
#include "host/savetofilelogic.h"
#include "host/session.h"

template class MockFactory<DiscountLogic>;
template class MockFactory<DocumentLogic>;
template class MockFactory<SaveToFileLogic>;
template class Singleton<DBQueueBroker>;
template class Singleton<Session>;

bool DBQueueBroker::put(const QString &queue, const QJsonObject &message, const QString &tag)
{
    return sink && sink->put(queue, message, tag);
}

QList<QSharedPointer<DocumentImpactDetail>>
DiscountLogic::getImpactDetailsForPosition(int posnum,
                                           const QSharedPointer<AbstractDocument> &document) const
{
    if (!document)
        return {};
    return document->getImpactDetails(posnum);
}

QList<QSharedPointer<FormatterSource>>
DocumentLogic::getFormatterSources(const QVariantMap & /*parameters*/) const
{
    const auto document = Singleton<Session>::instance()->getCurrentDocument();
    if (!document)
        return {};
    return {document};
}

bool SaveToFileLogic::save(const QSharedPointer<AbstractDocument> &document,
                           const QString & /*fileName*/)
{
    auto *const keeper = Singleton<Session>::instance()->getReceiptKeeper();
    return document && keeper && keeper->keep(document);
}
