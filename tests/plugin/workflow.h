#pragma once

#include "fakes.h"
#include "plugin/plugin.h"

#include <host/dialog.h>
#include <host/savetofilelogic.h>

#include <QUrlQuery>

namespace lmmindbox {

inline QString compact(const QJsonObject &object)
{
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

inline QString textOf(const tr::Tr &text)
{
    return text.getId() + u'/' + text.getDefaultText();
}

/// Service, cashier and till around a plugin. They give their answers in turn; the transcript has
/// what they and the log saw.
class Surroundings : FakeRestClient, Dialog, SaveToFileLogic, ProgressDisplay
{
public:
    Surroundings()
    {
        MockFactory<Dialog>::mocked = this;
        MockFactory<SaveToFileLogic>::mocked = this;
        Singleton<Session>::instance()->setProgressDisplay(
            {static_cast<ProgressDisplay *>(this), [](ProgressDisplay *) {}});
    }
    ~Surroundings() override
    {
        MockFactory<Dialog>::mocked = nullptr;
        MockFactory<SaveToFileLogic>::mocked = nullptr;
        Singleton<Session>::instance()->setProgressDisplay(nullptr);
    }
    Q_DISABLE_COPY_MOVE(Surroundings)

    /// The transcript since the last call.
    QStringList seen()
    {
        note({});
        return std::exchange(transcript, {});
    }

    QByteArrayList answers; ///< An empty one is a lost connection.
    QVariantList inputs;    ///< An invalid one cancels the dialog.
    InputTextRequest input; ///< The last one.
    FormRequest form;       ///< The last one.

private:
    void note(const QString &line)
    {
        for (const auto &logged : LogCapture::take())
            if (!logged.startsWith(u'D'))
                transcript += logged;
        if (!line.isEmpty())
            transcript += line;
    }
    QVariant nextInput()
    {
        EXPECT_FALSE(inputs.isEmpty());
        return inputs.isEmpty() ? QVariant() : inputs.takeFirst();
    }

    void send(const QUrl &url, const QJsonDocument &document,
              const QHash<QString, QString> & /*headers*/) override
    {
        auto body = document.object();
        EXPECT_EQ(body.take("pointOfContact"_L1), u"Offline"_s);
        note(QUrlQuery(url).queryItemValue(u"operation"_s) + u' ' + compact(body));
        EXPECT_FALSE(answers.isEmpty());
        answer = answers.isEmpty() ? QByteArray() : answers.takeFirst();
        httpCode = answer.isEmpty() ? 0 : 200;
    }
    void showError(const tr::Tr &text, int code, int flags) override
    {
        note(u"error %1 %2 "_s.arg(code).arg(flags) + textOf(text));
    }
    void showMessage(const tr::Tr &text, int code, int flags) override
    {
        note(u"message %1 %2 "_s.arg(code).arg(flags) + textOf(text));
    }
    bool showChoice(const tr::Tr &question, int kind, const tr::Tr &ok, const tr::Tr &cancel,
                    int defaultAnswer) override
    {
        note(u"choice %1 %2 "_s.arg(kind).arg(defaultAnswer) + textOf(question) + u' ' +
             textOf(ok) + u' ' + textOf(cancel));
        return nextInput().toBool();
    }
    core::BasicDialog::Result showInputText(const InputTextRequest &request) override
    {
        input = request;
        note(u"input "_s + textOf(request.message));
        const auto typed = nextInput();
        return typed.isValid() ? core::BasicDialog::Result(typed.toString())
                               : core::BasicDialog::Result();
    }
    QVariantMap showForm(const FormRequest &request) override
    {
        form = request;
        auto line = u"form "_s + textOf(request.title);
        for (const auto &field : request.fields)
            line += u'|' + field.value;
        note(line);
        return nextInput().toMap();
    }
    QSharedPointer<SimpleProgress> showProgress(const ProgressRequest &request) override
    {
        EXPECT_FALSE(request.cancellable || request.modal || request.showsTime);
        return showProgress(request.message, request.title);
    }
    QSharedPointer<SimpleProgress> showProgress(const tr::Tr &text, const tr::Tr &details) override
    {
        EXPECT_TRUE(details.isEmpty());
        note(u"progress "_s + textOf(text));
        return {new SimpleProgress, [this](SimpleProgress *progress) {
                    note(u"progress ends"_s);
                    delete progress;
                }};
    }
    void setProgress(const tr::Tr &text, int value) override
    {
        note(u"progress %1 "_s.arg(value) + textOf(text));
    }
    /// Notes the holder of the card and the phone of the customer kept with the receipt.
    bool save(const QSharedPointer<AbstractDocument> &document, const QString &name) override
    {
        const auto customer = document->getPluginData(u"loyaltySystem24"_s)[u"customer"_s].toMap();
        note(u"save%1 "_s.arg(name) + document->getCardRecord()->getCard()->getClient()->getName() +
             u' ' + customer[u"mobilePhone"_s].toString());
        return true;
    }

    QStringList transcript;
};

class OpenPlugin : public Plugin
{
public:
    using Plugin::codeSent;
    using Plugin::confirmedEmails;
    using Plugin::customer;
    using Plugin::interface;
    using Plugin::lastError;
};

/// The real plugin and client with a receipt that has a card.
class WorkflowTest : public testing::Test
{
protected:
    WorkflowTest()
    {
        document->setCardRecord(card);
        plugin.setDocument(document);
        around.seen();
    }
    Customer customerIn(const QByteArray &answer) const
    {
        return plugin.interface->getCustomer(json(answer));
    }

    const QByteArray success = R"({"status":"Success"})";
    const QByteArray refused = R"({"status":"ValidationError"})";
    const QByteArray lost;
    const tr::Tr lostText{u"mindboxNoConnectionError"_s, u"Ошибка связи с сервером"_s};
    const QByteArray notFound =
        R"({"status":"Success","customer":{"processingStatus":"NotFound"}})";
    const QByteArray unconfirmed =
        R"({"status":"Success","customer":{"processingStatus":"Found","firstName":"Анна",
            "mobilePhone":"79160000001","email":"anna@example.org"}})";
    const QByteArray known =
        QByteArray(unconfirmed).replace("Анна\"", "Анна\",\"isMobilePhoneConfirmed\":true");
    const QVariantMap filled{{u"name"_s, u"Мария"_s},
                             {u"phone"_s, u"+7(916)-000-00-02"_s},
                             {u"birthday"_s, QDate(1990, 3, 5)},
                             {u"sex"_s, 0},
                             {u"email"_s, u"m@example.org"_s}};

    LogCapture log{"lmmindbox"};
    Surroundings around;
    OpenPlugin plugin;
    QSharedPointer<AbstractDocument> document =
        QSharedPointer<AbstractDocument>::create(DocumentHeader());
    QSharedPointer<DocumentCardRecord> card =
        QSharedPointer<DocumentCardRecord>::create(u" 8 916 000-00-01 "_s);
};

} // namespace lmmindbox
