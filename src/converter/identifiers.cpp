#include "converter/converter.h"

#include <host/config.h>
#include <host/documentlogic.h>
#include <host/goodsitem.h>
#include <host/simpleformatter.h>

namespace lmmindbox {

std::pair<QJsonObject, QString> Converter::getIds() const
{
    const auto *config = Singleton<Config>::instance();
    const auto name = config->getText(QStringLiteral("LmMindbox:requestTransactionIdName"),
                                      QStringLiteral("externalOrderIdLm"));
    const auto mask = config->getText(
        QStringLiteral("LmMindbox:requestTransactionIdMask"),
        QStringLiteral("%(document.shopCode[04d])%(document.cashCode[02d])%(document.shift[04d])"
                       "%(document.num[07d])%(document.dateTimeBeg[hhmmss])"));
    const auto formatter = MockFactory<SimpleFormatter>::create();
    const auto sources = MockFactory<DocumentLogic>::create()->getFormatterSources({});
    const auto id = formatter->format(mask, sources, 0, {});
    return {{{name, id}}, id};
}

QJsonObject Converter::getProductIds(const QSharedPointer<GoodsItem> &item) const
{
    const auto *config = Singleton<Config>::instance();
    const auto name = config->getText(QStringLiteral("LmMindbox:productIdName"),
                                      QStringLiteral("websiteLumaret"));
    const auto mask = config->getText(QStringLiteral("LmMindbox:productIdMask"),
                                      QStringLiteral("%(position.code[s])"));
    const auto value = MockFactory<SimpleFormatter>::create()->format(mask, {item}, 0, {});
    return {{QStringLiteral("ids"), QJsonObject{{name, value}}}};
}

} // namespace lmmindbox
