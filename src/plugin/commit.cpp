#include "converter/converter.h"
#include "interface/interface.h"
#include "plugin/plugin.h"

#include <host/abstractdocument.h>
#include <host/dialog.h>

namespace lmmindbox {

bool Plugin::commit(const QSharedPointer<AbstractDocument> &document)
{
    if (document->getKind() != DocumentHeader::sale)
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

} // namespace lmmindbox
