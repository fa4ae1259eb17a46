#include "host/savetofilelogic.h"

#include "host/abstractdocument.h"
#include "host/receiptkeeper.h"
#include "host/session.h"

template class MockFactory<SaveToFileLogic>;

bool SaveToFileLogic::save(const QSharedPointer<AbstractDocument> &document,
                           const QString & /*fileName*/)
{
    auto *const keeper = Singleton<Session>::instance()->getReceiptKeeper();
    return document && keeper && keeper->keep(document);
}
