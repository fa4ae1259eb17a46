#include "converter/converter.h"
#include "interface/interface.h"
#include "model/isodate.h"
#include "plugin/plugin.h"

#include <host/abstractdocument.h>
#include <host/dialog.h>
#include <host/savetofilelogic.h>

#include <QMetaProperty>

namespace lmmindbox {

namespace {

const auto customerKey = QStringLiteral("customer");

} // namespace

bool Plugin::commit(const QSharedPointer<AbstractDocument> &document)
{
    constexpr int sale = 1;
    if (document->getKind() != sale)
        return true;

    const auto [payload, transactionId] =
        converter->getOrderPayload(customer, document->getTotal());
    const auto result = interface->createAuthorizedOrder(payload, false);
    if (result.success() || result.noConnection) {
        interface->changeOrderStatus(converter->getChangeOrderStatusPayload(transactionId), false);
    } else {
        const tr::Tr refused(QStringLiteral("lmmindboxCreateAuthorizedOrderError"),
                             QStringLiteral("Не удалось создать заказ"));
        MockFactory<Dialog>::create()->showMessage(result.getError(refused), 0, 0);
    }
    return true;
}

void Plugin::storePluginData()
{
    const auto &meta = Customer::staticMetaObject;
    QVariantMap record;
    for (int i = 0; i < meta.propertyCount(); ++i) {
        const auto property = meta.property(i);
        record.insert(QLatin1String(property.name()), property.readOnGadget(&customer));
    }
    setPluginData(customerKey, QJsonObject::fromVariantMap(record));
    MockFactory<SaveToFileLogic>::create()->save(currentDocument, {});
}

bool Plugin::restoreLoyaltySystem()
{
    if (!hasCard())
        return true;

    const auto record = getPluginData(customerKey, {}).toMap();
    const auto &meta = Customer::staticMetaObject;
    Customer restored;
    for (int i = 0; i < meta.propertyCount(); ++i) {
        const auto property = meta.property(i);
        auto value = record.value(QLatin1String(property.name()));
        const auto isDateText = property.metaType() == QMetaType::fromType<QDate>() &&
                                value.metaType() == QMetaType::fromType<QString>();
        if (isDateText)
            value = readIsoDate(value.toString());
        if (value.isValid())
            property.writeOnGadget(&restored, value);
    }
    customer = restored;
    return true;
}

void Plugin::clearLoyaltyData()
{
    BasicLoyaltySystem::clearLoyaltyData();
    customer = {};
    codeSent = false;
    confirmedEmails.clear();
}

} // namespace lmmindbox
