#include "benchmarks/tillatwork.h"

#include "till/core/sale.h"

#include <host/abstractdocument.h>
#include <host/dbqueuebroker.h>

namespace bench {

TillAtWork::TillAtWork(Setup &setup, const till::BackoffRange &backoff)
    : queueBefore(Singleton<DBQueueBroker>::instance()->file())
{
    settings.dataDirectory = setup.newFile();
    settings.backoff = backoff;
    settings.pluginFile = QStringLiteral(PLUGIN_FILE);
    till = std::make_unique<till::Till>(settings, face);
    problem = till->start().value_or(QString());
}

TillAtWork::~TillAtWork()
{
    till.reset();
    Singleton<DBQueueBroker>::instance()->setFile(queueBefore);
}

void TillAtWork::sell(int positions)
{
    sale().open(DocumentHeader::sale);
    for (int position = 1; position <= positions; ++position) {
        sale().add(QStringLiteral("4600"), QStringLiteral("Молоко 3,2 % 1 л"), 89.9, 1);
        sale().discount(position, 7.5, 417, 1, 0);
    }
}

} // namespace bench
