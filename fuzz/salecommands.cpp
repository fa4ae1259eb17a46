#include "fuzz/fuzzing.h"
#include "tests/plugin/fakehttp.h"

#include "plugin/plugin.h"
#include "till/console/console.h"
#include "till/console/consolepresenter.h"
#include "till/core/deliverer.h"
#include "till/receiptcounter.h"
#include "till/receiptstore.h"
#include "till/core/sale.h"
#include "till/console/salecommands.h"

#include <host/abstractdocument.h>
#include <host/dbqueuebroker.h>
#include <host/dialog.h>
#include <host/savetofilelogic.h>

#include <QDirIterator>
#include <QFile>
#include <QJsonDocument>
#include <QSet>
#include <QUrlQuery>

#include <sstream>

namespace {

const auto processingStatus = QStringLiteral("processingStatus");

QString identifierOf(const QJsonObject &body)
{
    const auto ids = body.value(QLatin1String("order")).toObject().value(QLatin1String("ids"));
    return ids[QLatin1String("externalOrderIdLm")].toString();
}

/// Answers like the service. It knows a customer from the second look on, keeps the e-mail it is
/// given for them and takes "1234" for their code. What becomes of an order depends on its total.
class SmallService : public FakeRestClient
{
public:
    enum class Fate { Accepted, Refused, Lost };

    void send(const QUrl &url, const QJsonDocument &document,
              const QHash<QString, QString> &headers) override
    {
        FakeRestClient::send(url, document, headers);
        httpCode = 200;
        const auto operation = QUrlQuery(url).queryItemValue(QStringLiteral("operation"));
        if (operation == QLatin1String("Offline.CreateAuthorizedOrder"))
            takeOrder();
        else if (operation == QLatin1String("Offline.ConfirmMobilePhone"))
            checkCode();
        else
            describeCustomer(operation);
    }
    void forgetCustomer()
    {
        looks = 0;
        email.clear();
    }

    QHash<QString, Fate> orders; ///< By identifier.

private:
    void describeCustomer(const QString &operation)
    {
        const auto given = sentBody.value(QLatin1String("customer"))[QLatin1String("email")];
        if (!given.toString().isEmpty())
            email = given.toString();
        auto status = QStringLiteral("Found");
        if (operation == QLatin1String("Offline.RegisterCustomer"))
            status = QStringLiteral("Created");
        else if (operation == QLatin1String("Offline.GetCustomer") && ++looks == 1)
            status = QStringLiteral("NotFound");
        succeed(QStringLiteral("customer"), {{QStringLiteral("mobilePhone"), 79160000001.0},
                                             {QStringLiteral("email"), email},
                                             {processingStatus, status}});
    }
    void checkCode()
    {
        const auto code = sentBody.value(QLatin1String("smsConfirmation"))[QLatin1String("code")];
        const auto isRight = code.toString() == QLatin1String("1234");
        succeed(QStringLiteral("smsConfirmation"),
                {{processingStatus, isRight ? QStringLiteral("MobilePhoneConfirmed")
                                            : QStringLiteral("IncorrectConfirmationCode")}});
    }
    void takeOrder()
    {
        const auto total = sentBody.value(QLatin1String("order"))[QLatin1String("totalPrice")];
        const auto fate = static_cast<Fate>(qRound64(total.toDouble() * 100) % 3);
        orders.insert(identifierOf(sentBody), fate);
        const auto isAccepted = fate == Fate::Accepted;
        succeed(QStringLiteral("order"),
                {{processingStatus,
                  isAccepted ? QStringLiteral("Processed") : QStringLiteral("NotProcessed")}});
        if (fate != Fate::Lost)
            return;
        httpCode = 0;
        answer.clear();
    }
    void succeed(const QString &key, const QJsonObject &content)
    {
        const QJsonObject body = {{QStringLiteral("status"), QStringLiteral("Success")},
                                  {key, content}};
        answer = QJsonDocument(body).toJson(QJsonDocument::Compact);
    }

    int looks = 0;
    QString email;
};

/// Empties the directories and keeps them: making them anew for each input takes its time.
void removeFiles(const QString &directory)
{
    QDirIterator entries(directory, QDir::Files, QDirIterator::Subdirectories);
    while (entries.hasNext())
        require(QFile::remove(entries.next()));
}

/// The orders of the sales left behind; every receipt can be read.
QSet<QString> soldOrders(const QString &directory)
{
    SaveToFileLogic files;
    QSet<QString> orders;
    for (const auto *place : {"/committed", "/committing", "/damaged"}) {
        QDirIterator entries(directory + QLatin1String(place), QDir::Files);
        while (entries.hasNext()) {
            const auto document = files.load(entries.next()).document;
            require(!document.isNull());
            const auto &header = document->getHeader();
            if (header.kind == 1)
                orders.insert(QStringLiteral("%1%2%3%4%5")
                                  .arg(header.shopCode, 4, 10, QLatin1Char('0'))
                                  .arg(header.cashCode, 2, 10, QLatin1Char('0'))
                                  .arg(header.shift, 4, 10, QLatin1Char('0'))
                                  .arg(header.num, 7, 10, QLatin1Char('0'))
                                  .arg(header.dateTimeBeg.toString(QStringLiteral("hhmmss"))));
        }
    }
    return orders;
}

/// Every sale has reached the service or waits for it: its creation when the service did not hear
/// of it, and behind that its status unless the service refused the order.
void checkOrders(const QSet<QString> &sold, const QHash<QString, SmallService::Fate> &sent)
{
    require(sold == QSet<QString>(sent.keyBegin(), sent.keyEnd()));
    QSet<QString> created;
    QSet<QString> changed;
    auto *const broker = Singleton<DBQueueBroker>::instance();
    for (const auto &queued : broker->waiting(till::loyaltyQueue(), 1000)) {
        const auto method = queued.message.value(QLatin1String("method")).toString();
        const auto order = identifierOf(queued.message.value(QLatin1String("payload")).toObject());
        require(sold.contains(order));
        const auto isLost = sent.value(order) == SmallService::Fate::Lost;
        if (method == QLatin1String("create")) {
            require(isLost);
            created.insert(order);
        } else {
            require(method == QLatin1String("change"));
            require(!isLost || created.contains(order));
            changed.insert(order);
        }
        require(broker->remove(queued.id));
    }
    for (auto entry = sent.begin(); entry != sent.end(); ++entry) {
        require(created.contains(entry.key()) == (*entry == SmallService::Fate::Lost));
        require(changed.contains(entry.key()) == (*entry != SmallService::Fate::Refused));
    }
}

void sell(Bytes bytes, const QString &directory)
{
    static lmmindbox::Plugin plugin;
    static const auto ready = plugin.init();
    require(ready);

    std::ostringstream output;
    till::ConsoleInput input(descriptorOf(bytes));
    till::Console console(input, output);
    till::ConsolePresenter presenter(console);
    Dialog::setPresenter(&presenter);
    till::ReceiptStore store(directory);
    require(!store.prepare());
    till::ReceiptCounter counter(directory + QLatin1String("/counter.json"));
    till::Sale sale({plugin, store, counter, console, {}});
    sale.recover();
    till::SaleCommands(sale, console, QString()).run();
    Dialog::setPresenter(nullptr);
}

} // namespace

/// What a cashier types, with the plugin and its dialogs; then the till is started again.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static SmallService service;
    static auto *const broker = Singleton<DBQueueBroker>::instance();
    static const auto directory = scratchDirectory() + QLatin1String("/till");
    if (broker->file().isEmpty())
        broker->setFile(scratchDirectory() + QLatin1String("/queue.db"));
    service.forgetCustomer();
    service.orders.clear();
    removeFiles(directory);
    sell({data, size}, directory);
    sell({}, directory);
    checkOrders(soldOrders(directory), service.orders);
    return 0;
}
