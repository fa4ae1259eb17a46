#include "fuzz/fuzzing.h"
#include "tests/plugin/fakehttp.h"

#include "plugin/plugin.h"
#include "till/console.h"
#include "till/consolepresenter.h"
#include "till/deliverer.h"
#include "till/receiptcounter.h"
#include "till/receiptstore.h"
#include "till/sale.h"
#include "till/salecommands.h"

#include <host/dbqueuebroker.h>
#include <host/dialog.h>
#include <host/savetofilelogic.h>

#include <QDir>
#include <QDirIterator>
#include <QUrlQuery>

#include <sstream>

namespace {

/// A service that knows a customer from the second look on and takes "1234" for their code.
class SmallService : public FakeRestClient
{
public:
    void send(const QUrl &url, const QJsonDocument &document,
              const QHash<QString, QString> &headers) override
    {
        FakeRestClient::send(url, document, headers);
        const auto operation = QUrlQuery(url).queryItemValue(QStringLiteral("operation"));
        if (operation == QLatin1String("Offline.GetCustomer"))
            answer = requests % 2 == 1
                         ? R"({"status":"Success","customer":{"processingStatus":"NotFound"}})"
                         : R"({"status":"Success","customer":{"processingStatus":"Found",
                               "mobilePhone":79160000001}})";
        else if (operation == QLatin1String("Offline.RegisterCustomer"))
            answer = R"({"status":"Success","customer":{"processingStatus":"Created"}})";
        else if (document.toJson().contains("1234"))
            answer = R"({"status":"Success",
                         "smsConfirmation":{"processingStatus":"MobilePhoneConfirmed"}})";
        else
            answer = R"({"status":"Success",
                         "smsConfirmation":{"processingStatus":"IncorrectConfirmationCode"}})";
    }
};

/// Every receipt that a sale left behind can be read, and no queued order is without one.
void checkFiles(const QString &directory)
{
    SaveToFileLogic files;
    int count = 0;
    for (const auto *place : {"/committed", "/committing", "/damaged"}) {
        QDirIterator entries(directory + QLatin1String(place), QDir::Files);
        while (entries.hasNext()) {
            require(!files.load(entries.next()).document.isNull());
            ++count;
        }
    }
    auto *const broker = Singleton<DBQueueBroker>::instance();
    for (const auto &message : broker->waiting(till::loyaltyQueue(), 1000)) {
        require(--count >= 0);
        require(broker->remove(message.id));
    }
}

void sell(Bytes bytes, const QString &directory)
{
    static SmallService service;
    static lmmindbox::Plugin plugin;
    static const auto ready = plugin.init();
    require(ready);
    service.requests = 0;

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
    const auto directory = scratchDirectory() + QLatin1String("/till");
    Singleton<DBQueueBroker>::instance()->setFile(scratchDirectory() + QLatin1String("/queue.db"));
    QDir(directory).removeRecursively();
    sell({data, size}, directory);
    sell({}, directory);
    checkFiles(directory);
    return 0;
}
