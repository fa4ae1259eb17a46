#include "plugin/plugin.h"

#include <host/savetofilelogic.h>

#include <QJsonObject>
#include <QMetaProperty>

namespace lmmindbox {

namespace {

const auto customerKey = QStringLiteral("customer");

} // namespace

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
        // Qt's own conversion also accepts other spellings of a date.
        if (property.metaType() == QMetaType::fromType<QDate>() &&
            value.metaType() == QMetaType::fromType<QString>())
            value = Customer::readBirthDate(value.toString());
        property.writeOnGadget(&restored, value);
    }
    customer = restored;
    return true;
}

} // namespace lmmindbox
