#include "benchmarks/measure.h"
#include "benchmarks/rows.h"

#include "converter/converter.h"
#include "interface/interface.h"
#include "model/customer.h"

#include <host/abstractdocument.h>
#include <host/session.h>

#include <QJsonDocument>
#include <QLocale>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace bench {

QSharedPointer<AbstractDocument> makeReceipt(int lines)
{
    constexpr int everyDayCampaign = 417;
    constexpr int usualMode = 1;
    constexpr int changeMode = 6;
    auto receipt = QSharedPointer<AbstractDocument>::create(DocumentHeader());
    for (int i = 0; i < lines; ++i) {
        const auto item = receipt->addGoodsItem(QString::number(4'600'000'000'000 + i),
                                                u"Молоко 3,2 % 1 л"_s, 79.9 + i % 100, 1 + i % 3);
        receipt->addImpactDetail({item->getPosnum(), everyDayCampaign, usualMode, 0, 7.5});
        if (i % 3 == 0)
            receipt->addImpactDetail({item->getPosnum(), 0, changeMode, 0, 0.4});
    }
    return receipt;
}

QJsonObject orderOf(const QSharedPointer<AbstractDocument> &receipt)
{
    Singleton<Session>::instance()->setCurrentDocument(receipt);
    lmmindbox::Converter converter;
    lmmindbox::Customer customer;
    customer.mobilePhone = confirmedPhone;
    auto order = converter.getOrderPayload(customer, receipt->getTotal()).first;
    Singleton<Session>::instance()->setCurrentDocument(nullptr);
    return order;
}

SentRequest sentOrder()
{
    const auto order = orderOf(makeReceipt(usualLines));
    return record([&](auto &service) { (void)service.createAuthorizedOrder(order, true); });
}

void measureLookUp()
{
    lmmindbox::Interface interface;
    UsualExchange usual;
    const auto sent = record([](auto &service) { (void)service.getCustomer(confirmedPhone); });
    compare(
        {u"look-up"_s, u"the usual Qt way"_s},
        [&] { return interface.getCustomer(confirmedPhone).customer.found(); },
        [&] {
            const auto answer = QJsonDocument::fromJson(usual.answerTo(sent)).object();
            return interface.getCustomer(answer).found();
        });
}

void measurePayloads()
{
    for (const auto lines : {1, 100, 10'000}) {
        const auto receipt = makeReceipt(lines);
        const auto ours = [&] {
            return QJsonDocument(orderOf(receipt)).toJson(QJsonDocument::Compact);
        };
        const auto text = ours();
        const Row row{u"order payload, lines: %1"_s.arg(QLocale(QLocale::English).toString(lines)),
                      u"Qt reads and writes its JSON"_s, std::clamp(100'000 / lines, 50, 1'000),
                      std::max(1, 30 / lines)};
        compare(
            row, [&] { return ours() == text; },
            [&] { return QJsonDocument::fromJson(text).toJson(QJsonDocument::Compact) == text; });
    }
}

} // namespace bench
