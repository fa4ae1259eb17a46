// A till in one file: it loads the loyalty plugin, sells to the owner of a phone, abandons a second
// receipt, and delivers the queued messages.
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
#include <host/messagesink.h>
#include <host/privatefile.h>
#include <host/receiptkeeper.h>
#include <host/session.h>
#include <interface/interface.h>
#include <interface/ordermessage.h>

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QPluginLoader>

#include <iostream>

using namespace Qt::StringLiterals;

namespace {

void say(const QString &text)
{
    std::cout << text.toStdString() << std::endl;
}

/// The cashier's next line; null at the end of the input.
std::optional<QString> answer()
{
    std::string line;
    if (!std::getline(std::cin, line))
        return std::nullopt;
    return QString::fromStdString(line);
}

/// Dialogs on standard input and output. The end of the input must cancel a dialog: the plugin
/// repeats the code dialog after an empty answer, so endless empty answers would loop for ever.
class Cashier : public DialogPresenter
{
public:
    void showError(const tr::Tr &text) override { say(u"error: "_s + text.toString()); }
    void showMessage(const tr::Tr &text) override { say(u"message: "_s + text.toString()); }
    bool showChoice(const tr::Tr &question, const tr::Tr &ok, const tr::Tr &) override
    {
        say(u"%1 (1: %2)"_s.arg(question.toString(), ok.toString()));
        return answer() == u"1"_s;
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
                return {}; // the whole form is cancelled
            if (field.kind == FormFieldKind::Date)
                answers.insert(field.key, QDate::fromString(*text, u"dd.MM.yyyy"_s));
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
        say(u"%1 %2 %"_s.arg(text.toString()).arg(value));
    }
};

/// Saves the current receipt in a file, for the host and for the plugin.
class Keeper : public ReceiptKeeper
{
public:
    explicit Keeper(QString file)
        : file(std::move(file))
    {}
    bool keep(const QSharedPointer<AbstractDocument> &document) override
    {
        const auto json = QJsonDocument(documentjson::toJson(*document)).toJson();
        return privatefile::write(file, json).has_value();
    }

private:
    QString file;
};

/// The queue, saved as one file.
class Queue : public MessageSink
{
public:
    explicit Queue(QString file)
        : file(std::move(file))
    {}
    bool put(const QString &, const QJsonObject &message, const QString &) override
    {
        messages.append(message);
        return save();
    }
    bool save()
    {
        return isSaved = privatefile::write(file, QJsonDocument(messages).toJson()).has_value();
    }

    QString file;
    QJsonArray messages;
    bool isSaved = true;
};

class Till
{
public:
    Till(BasicLoyaltySystem &system, Keeper &keeper, Queue &queue)
        : system(system)
        , keeper(keeper)
        , queue(queue)
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
            receipt->setCardRecord(card); // the plugin may have replaced the record
            say(u"customer: "_s + card->getCard()->getClient()->getName());
        } else {
            say(u"no customer: "_s + system.getLastErrorString()); // may be empty
            forgetHolder();
        }
        keeper.keep(receipt);
    }

    /// \return Whether the order has reached the service or the queue.
    bool commit()
    {
        system.commit(receipt);
        if (!queue.isSaved)
            say(u"commit it again later: its messages are not saved"_s);
        system.clearAfterClose();
        close();
        return queue.isSaved;
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
    Queue &queue;
    QSharedPointer<AbstractDocument> receipt;
};

/// Delivers the queue in order until it is empty or the service does not accept a message.
/// \return The number of delivered messages.
int deliver(Queue &queue)
{
    namespace words = lmmindbox::ordermessage;
    constexpr bool atOnce = true; // do not queue the message again
    lmmindbox::Interface service;
    int delivered = 0;
    while (!queue.messages.isEmpty()) {
        const auto message = queue.messages.first().toObject();
        const auto payload = message.value(words::payload).toObject();
        const auto isOrder = message.value(words::method) == words::create;
        const lmmindbox::OperationResult result =
            isOrder ? service.createAuthorizedOrder(payload, atOnce)
                    : service.changeOrderStatus(payload, atOnce);
        if (!result.success()) {
            say(u"not delivered, HTTP code %1"_s.arg(result.httpCode));
            break;
        }
        queue.messages.removeFirst();
        queue.save();
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
        return fail(u"usage: foreignhost SETTINGS DIRECTORY PHONE"_s);
    const auto directory = arguments.at(2);

    // Load the settings first: the plugin reads them when it is created.
    if (const auto loaded = Singleton<Config>::instance()->load(arguments.at(1)); !loaded)
        return fail(loaded.error().text());
    if (const auto log = logging::start(directory + u"/host.log"_s, false); !log)
        return fail(log.error());
    Queue queue(directory + u"/queue.json"_s);
    Singleton<DBQueueBroker>::instance()->setSink(&queue);
    Cashier cashier;
    Dialog::setPresenter(&cashier);
    Keeper keeper(directory + u"/receipt.json"_s);
    auto *const session = Singleton<Session>::instance();
    session->setReceiptKeeper(&keeper);
    session->setProgressDisplay(QSharedPointer<Progress>::create());

    QPluginLoader loader(QStringLiteral(LOYALTY_PLUGIN));
    auto *const system = qobject_cast<BasicLoyaltySystem *>(loader.instance());
    if (!system)
        return fail(loader.errorString());
    if (!system->init())
        return fail(u"the plugin cannot be initialised"_s);
    system->registerLoyaltySystem();

    Till till(*system, keeper, queue);
    till.open(1);
    till.add(u"4600"_s, u"Milk"_s, 89.90, 2);
    till.identify(arguments.at(3));
    const auto isReported = till.commit();
    till.open(2);
    till.add(u"4601"_s, u"Bread"_s, 45, 1);
    till.abandon();
    say(u"delivered: %1"_s.arg(deliver(queue)));

    system->deregisterLoyaltySystem();
    system->deinit();
    session->setReceiptKeeper(nullptr);
    session->setProgressDisplay({});
    Dialog::setPresenter(nullptr);
    Singleton<DBQueueBroker>::instance()->setSink(nullptr);
    logging::stop();
    return isReported ? 0 : 1;
}
