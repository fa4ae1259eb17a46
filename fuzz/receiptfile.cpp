#include "fuzz/fuzzing.h"

#include <host/abstractdocument.h>
#include <host/savetofilelogic.h>

#include <QFile>

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    require(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

void compareItems(const GoodsItem &first, const GoodsItem &second)
{
    require(second.getPosnum() == first.getPosnum());
    require(second.getCode() == first.getCode());
    require(second.getName() == first.getName());
    require(second.getPrice() == first.getPrice());
    require(second.getQuantity() == first.getQuantity());
    require(second.getSumb() == first.getSumb());
}

void compareImpacts(const DocumentImpactDetail &first, const DocumentImpactDetail &second)
{
    require(second.getPosnum() == first.getPosnum());
    require(second.getCampaignCode() == first.getCampaignCode());
    require(second.getDiscountMode() == first.getDiscountMode());
    require(second.getImpactSource() == first.getImpactSource());
    require(second.getDiscountSum() == first.getDiscountSum());
}

void compareCards(const DocumentCardRecord &first, const DocumentCardRecord &second)
{
    require(second.getNumber() == first.getNumber());
    const auto client = first.getCard()->getClient();
    const auto sameClient = second.getCard()->getClient();
    require(client.isNull() == sameClient.isNull());
    require(!client || *client == *sameClient);
}

void compareReceipts(const AbstractDocument &first, const AbstractDocument &second)
{
    require(second.getHeader() == first.getHeader());
    require(second.getTotal() == first.getTotal());
    require(second.allPluginData() == first.allPluginData());
    require(second.getCardRecord().isNull() == first.getCardRecord().isNull());
    if (first.getCardRecord())
        compareCards(*first.getCardRecord(), *second.getCardRecord());
    const auto items = first.getGoodsItems();
    require(second.getGoodsItems().size() == items.size());
    for (qsizetype i = 0; i < items.size(); ++i) {
        const auto posnum = items.at(i)->getPosnum();
        compareItems(*items.at(i), *second.getGoodsItems().at(i));
        const auto impacts = first.getImpactDetails(posnum);
        const auto sameImpacts = second.getImpactDetails(posnum);
        require(sameImpacts.size() == impacts.size());
        for (qsizetype j = 0; j < impacts.size(); ++j)
            compareImpacts(*impacts.at(j), *sameImpacts.at(j));
    }
}

} // namespace

/// A file that is read at all comes out the same however often it is saved and read.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    SaveToFileLogic files;
    const auto first = files.load(writeScratchFile(QStringLiteral("foreign"), {data, size}));
    require(first.error.isEmpty() == !first.document.isNull());
    if (!first.document)
        return 0;

    const auto path = scratchDirectory() + QLatin1String("/own");
    require(files.save(first.document, path));
    const auto content = contentOf(path);
    const auto second = files.load(path);
    require(!second.document.isNull());
    compareReceipts(*first.document, *second.document);
    require(files.save(second.document, path));
    require(contentOf(path) == content);
    return 0;
}
