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
        if (const auto value = property.readOnGadget(&customer); !value.isNull())
            record.insert(QString::fromLatin1(property.name()), value);
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
    for (auto entry = record.begin(); entry != record.end(); ++entry) {
        const auto index = meta.indexOfProperty(entry.key().toLatin1().constData());
        if (index < 0)
            continue;
        const auto property = meta.property(index);
        const auto isDate = property.metaType() == QMetaType::fromType<QDate>();
        property.writeOnGadget(&restored,
                               isDate ? readIsoDate(entry.value().toString()) : entry.value());
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
