// A till in one file: it loads the loyalty plugin, sells to the owner of a phone, abandons a
// second receipt, and delivers what was queued.
//
// usage: foreignhost SETTINGS DIRECTORY PHONE    the cashier's answers come from standard input

#include <host/abstractdocument.h>
#include <host/basicloyaltysystem.h>
#include <host/config.h>
#include <host/dbqueuebroker.h>
#include <host/dialog.h>
#include <host/dialogpresenter.h>
#include <host/documentjson.h>
#include <host/logging.h>
#include <host/privatefile.h>
#include <host/receiptkeeper.h>
#include <host/session.h>
#include <interface/interface.h>
#include <interface/ordermessage.h>

#include <QCoreApplication>
#include <QJsonDocument>
#include <QPluginLoader>

#include <iostream>

namespace {

void say(const QString &text)
{
    std::cout << text.toStdString() << std::endl;
}

/// The cashier's next line; nothing at the end of the input.
std::optional<QString> answer()
{
    std::string line;
    if (!std::getline(std::cin, line))
        return std::nullopt;
    return QString::fromStdString(line);
}

/// Dialogs on standard input and output. The end of the input cancels: an empty answer to the code
/// dialog is asked again, so a host that answered with empty texts for ever would never end.
class Cashier : public DialogPresenter
{
public:
    void showError(const tr::Tr &text) override
    {
        say(QStringLiteral("error: ") + text.toString());
    }
    void showMessage(const tr::Tr &text) override
    {
        say(QStringLiteral("message: ") + text.toString());
    }
    bool showChoice(const tr::Tr &question, const tr::Tr &ok, const tr::Tr &) override
    {
        say(QStringLiteral("%1 (1: %2)").arg(question.toString(), ok.toString()));
        return answer() == QStringLiteral("1");
    }
    core::BasicDialog::Result showInputText(const InputTextRequest &request) override
    {
        say(request.message.toString());
        const auto text = answer();
        return text ? core::BasicDialog::Result(*text) : core::BasicDialog::Result();
    }
    QVariantMap showForm(const FormRequest &request) override
    {
        QVariantMap answers;
        for (const auto &field : request.fields) {
            if (!field.editable) {
                answers.insert(field.key, field.value);
                continue;
            }
            say(field.label.toString());
            const auto text = answer();
            if (!text)
                return {}; // cancelled, as a whole
            if (field.kind == FormFieldKind::Date)
                answers.insert(field.key, QDate::fromString(*text, QStringLiteral("dd.MM.yyyy")));
            else if (field.kind == FormFieldKind::Choice)
                answers.insert(field.key, text->toInt()); // the option's index
            else
                answers.insert(field.key, *text);
        }
        return answers;
    }
    void showProgress(const ProgressRequest &request) override { say(request.message.toString()); }
    void hideProgress() override {}
};

class Progress : public ProgressDisplay
{
public:
    void setProgress(const tr::Tr &text, int value) override
    {
        say(QStringLiteral("%1 %2 %").arg(text.toString()).arg(value));
    }
};

/// Keeps the receipt at hand in a file, for itself and for the plugin.
class Keeper : public ReceiptKeeper
{
public:
    explicit Keeper(QString file)
        : file(std::move(file))
    {}
    bool keep(const QSharedPointer<AbstractDocument> &document) override
    {
        QString error;
        const auto json = documentjson::toJson(*document, error);
        return error.isEmpty() && !privatefile::write(file, QJsonDocument(json).toJson());
    }

private:
    QString file;
};

class Till
{
public:
    Till(BasicLoyaltySystem &system, Keeper &keeper)
        : system(system)
        , keeper(keeper)
    {}

    void open(int number)
    {
        receipt = QSharedPointer<AbstractDocument>::create(
            DocumentHeader{DocumentHeader::sale, 12, 3, 1, number, QDateTime::currentDateTime()});
        Singleton<Session>::instance()->setCurrentDocument(receipt);
        system.setDocument(receipt);
    }

    void add(const QString &code, const QString &name, double price, double quantity)
    {
        receipt->addGoodsItem(code, name, price, quantity);
        keeper.keep(receipt);
    }

    void identify(const QString &phone)
    {
        const auto number = system.getCardNumber({loyalty::CardNumberInputData::typed, phone});
        if (!number.success) {
            say(number.message.toString());
            return;
        }
        auto card = QSharedPointer<DocumentCardRecord>::create(number.number);
        receipt->setCardRecord(card);
        if (system.identifyByCard(card, ECardNumberType::Typed)) {
            receipt->setCardRecord(card); // by reference: it may be another one now
            say(QStringLiteral("customer: ") + card->getCard()->getClient()->getName());
        } else {
            say(QStringLiteral("no customer: ") +
                system.getLastErrorString()); // which may be empty
            forgetHolder();
        }
        keeper.keep(receipt);
    }

    /// \return Whether the order is with the service or in the queue.
    bool commit()
    {
        auto *const queue = Singleton<DBQueueBroker>::instance();
        queue->beginBatch(); // all messages of a receipt or none
        system.commit(receipt);
        const auto isQueued = queue->endBatch();
        if (!isQueued)
            say(QStringLiteral("commit it again later: ") + queue->lastError());
        system.clearAfterClose();
        close();
        return isQueued;
    }

    void abandon()
    {
        system.cancel(receipt);
        forgetHolder();
        close();
    }

private:
    void forgetHolder()
    {
        system.clearLoyaltyData();
        system.clearData();
        receipt->setCardRecord({});
    }

    void close()
    {
        system.clearLoyaltyData();
        receipt.reset();
        Singleton<Session>::instance()->setCurrentDocument({});
        system.setDocument({});
    }

    BasicLoyaltySystem &system;
    Keeper &keeper;
    QSharedPointer<AbstractDocument> receipt;
};

/// Delivers in the order of the queue until it is empty or the service does not take a message.
/// \return How many were delivered.
int deliver()
{
    namespace words = lmmindbox::ordermessage;
    constexpr bool atOnce = true; // and not into the queue again
    auto *const queue = Singleton<DBQueueBroker>::instance();
    lmmindbox::Interface service;
    int delivered = 0;
    while (const auto next = queue->first(words::queue)) {
        const auto payload = next->message.value(words::payload).toObject();
        const auto isOrder = next->message.value(words::method) == words::create;
        const lmmindbox::OperationResult result =
            isOrder ? service.createAuthorizedOrder(payload, atOnce)
                    : service.changeOrderStatus(payload, atOnce);
        if (!result.success()) {
            say(QStringLiteral("not delivered, HTTP code %1").arg(result.httpCode));
            break;
        }
        queue->remove(next->id);
        ++delivered;
    }
    return delivered;
}

int fail(const QString &reason)
{
    std::cerr << "foreignhost: " << reason.toStdString() << std::endl;
    return 1;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const auto arguments = QCoreApplication::arguments();
    if (arguments.size() != 4)
        return fail(QStringLiteral("usage: foreignhost SETTINGS DIRECTORY PHONE"));
    const auto directory = arguments.at(2);

    // Before the plugin is loaded: it reads its settings when it is created.
    if (const auto error = Singleton<Config>::instance()->load(arguments.at(1)))
        return fail(*error);
    if (const auto error = logging::start(directory + QStringLiteral("/host.log"), false))
        return fail(*error);
    Singleton<DBQueueBroker>::instance()->setFile(directory + QStringLiteral("/queue.db"));
    Cashier cashier;
    Dialog::setPresenter(&cashier);
    Keeper keeper(directory + QStringLiteral("/receipt.json"));
    auto *const session = Singleton<Session>::instance();
    session->setReceiptKeeper(&keeper);
    session->setProgressDisplay(QSharedPointer<Progress>::create());

    QPluginLoader loader(QStringLiteral(LOYALTY_PLUGIN));
    auto *const system = qobject_cast<BasicLoyaltySystem *>(loader.instance());
    if (!system)
        return fail(loader.errorString());
    if (!system->init())
        return fail(QStringLiteral("the plugin cannot be initialised"));
    system->registerLoyaltySystem();

    Till till(*system, keeper);
    till.open(1);
    till.add(QStringLiteral("4600"), QStringLiteral("Milk"), 89.90, 2);
    till.identify(arguments.at(3));
    const auto isReported = till.commit();
    till.open(2);
    till.add(QStringLiteral("4601"), QStringLiteral("Bread"), 45, 1);
    till.abandon();
    say(QStringLiteral("delivered: %1").arg(deliver()));

    system->deregisterLoyaltySystem();
    system->deinit();
    session->setReceiptKeeper(nullptr);
    session->setProgressDisplay({});
    Dialog::setPresenter(nullptr);
    logging::stop();
    return isReported ? 0 : 1;
}
