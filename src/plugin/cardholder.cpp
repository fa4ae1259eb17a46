#include "plugin/plugin.h"

#include <host/abstractdocument.h>

namespace lmmindbox {

void Plugin::fillClientInfo(QSharedPointer<DocumentCardRecord> &card, const Customer &holder) const
{
    const auto client = QSharedPointer<Client>::create();
    client->setName(QStringLiteral("%1 %2").arg(holder.firstName, holder.lastName).trimmed());
    if (client->getName().isEmpty())
        client->setName(QStringLiteral("Не указаны ФИО"));
    client->setPhoneNumber(holder.mobilePhone);
    client->setEmail(holder.email);
    if (!holder.email.isEmpty() && holder.consentToElectronicChecks) {
        // The host keeps this order.
        client->setOption(ClientOptions::ElectronicReceipt);
        client->setOption(ClientOptions::NoPaperReceipt);
    }
    client->setSex(holder.sex == QLatin1String("female") ? Client::Sex::Female : Client::Sex::Male);
    client->setBirthday(holder.birthDate);
    card->getCard()->setClient(client);
    if (currentDocument)
        currentDocument->update();
}

} // namespace lmmindbox
