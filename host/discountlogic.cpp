#include "host/discountlogic.h"

#include "host/abstractdocument.h"

template class MockFactory<DiscountLogic>;

QList<QSharedPointer<DocumentImpactDetail>>
DiscountLogic::getImpactDetailsForPosition(int posnum,
                                           const QSharedPointer<AbstractDocument> &document) const
{
    if (!document)
        return {};
    return document->getImpactDetails(posnum);
}
