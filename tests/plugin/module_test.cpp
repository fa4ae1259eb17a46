#include "tests/support/fakehttp.h"

#include <host/abstractdocument.h>
#include <host/basicloyaltysystem.h>
#include <host/dbqueuebroker.h>
#include <host/dialog.h>
#include <host/session.h>

#include <QPluginLoader>
#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace {

class RecordingDialog : public Dialog
{
public:
    RecordingDialog() { MockFactory<Dialog>::mocked = this; }
    ~RecordingDialog() override { MockFactory<Dialog>::mocked = nullptr; }
    Q_DISABLE_COPY_MOVE(RecordingDialog)

    QVariantMap showForm(const FormRequest &request) override
    {
        titles.append(request.title.getId());
        return answer;
    }
    void showMessage(const tr::Tr &text, int, int) override { titles.append(text.getId()); }

    QVariantMap answer;
    QStringList titles;
};

class Module : public testing::Test
{
protected:
    void SetUp() override
    {
        plugin = loader.instance();
        ASSERT_NE(plugin, nullptr) << loader.errorString().toStdString();
        system = qobject_cast<BasicLoyaltySystem *>(plugin);
        ASSERT_NE(system, nullptr);
        document->setCardRecord(card);
        system->setDocument(document);
        Singleton<Session>::instance()->setCurrentDocument(document);
    }
    ~Module() override
    {
        Singleton<Session>::instance()->setCurrentDocument(nullptr);
        delete plugin;
    }

    FakeRestClient http;
    RecordingDialog dialog;
    QPluginLoader loader{QStringLiteral(PLUGIN_FILE)};
    QObject *plugin = nullptr;
    BasicLoyaltySystem *system = nullptr;
    QSharedPointer<AbstractDocument> document =
        QSharedPointer<AbstractDocument>::create(DocumentHeader());
    QSharedPointer<DocumentCardRecord> card =
        QSharedPointer<DocumentCardRecord>::create(QStringLiteral("79160000001"));
};

TEST_F(Module, IsFoundByItsMetadataAndAnswersCastsInTheirOrder)
{
    const auto metaData = loader.metaData();
    EXPECT_EQ(metaData[QLatin1String("IID")].toString().toStdString(), "LmMindbox");
    EXPECT_EQ(metaData[QLatin1String("className")].toString().toStdString(), "Plugin");
    EXPECT_EQ(
        metaData[QLatin1String("MetaData")][QLatin1String("version")].toString().toStdString(),
        PLUGIN_VERSION);

    void *base = system;
    EXPECT_EQ(plugin->qt_metacast(nullptr), nullptr);
    EXPECT_EQ(plugin->qt_metacast("lmmindbox::Plugin"), plugin);
    EXPECT_EQ(plugin->qt_metacast("BasicLoyaltySystem"), base);
    EXPECT_EQ(plugin->qt_metacast("LoyaltySystem"), base);
    EXPECT_EQ(plugin->qt_metacast("su.vantor.AbstractPlugin"), static_cast<BasicPlugin *>(system));
    EXPECT_EQ(plugin->qt_metacast("QObject"), plugin);
    EXPECT_EQ(plugin->qt_metacast("Plugin"), nullptr);
}

TEST_F(Module, LivesOnceInAProcessAndAfreshAfterDestruction)
{
    QPluginLoader second{QStringLiteral(PLUGIN_FILE)};
    EXPECT_EQ(second.instance(), plugin);

    system->setOption(LoyaltySystemOption::Offline, true);
    delete plugin;
    plugin = second.instance();
    ASSERT_NE(plugin, nullptr);
    auto *fresh = qobject_cast<BasicLoyaltySystem *>(plugin);
    EXPECT_FALSE(fresh->checkOption(LoyaltySystemOption::Offline));
    EXPECT_TRUE(fresh->checkOption(LoyaltySystemOption{8}));
    EXPECT_EQ(fresh->getStoreDataKey().toStdString(), "loyaltySystem24");
}

TEST_F(Module, ServesTheEditAction)
{
    EXPECT_TRUE(system->init());
    dialog.answer = {{QStringLiteral("name"), QStringLiteral("x")}};
    EXPECT_EQ(system->handle(control::Action(170)), EContext::Result{0});
    // Without a card this action opens no form.
    document->setCardRecord(nullptr);
    EXPECT_EQ(system->handle(control::Action(170)), EContext::Result{3});
    EXPECT_THAT(dialog.titles, testing::ElementsAre(QStringLiteral("lmmindboxEditCustomerTitle")));
}

TEST_F(Module, UsesTheProgramsSubstitutesAndSingletons)
{
    EXPECT_EQ(http.timeout, 5000);
    http.answer = R"({"status": "Success"})";
    EXPECT_FALSE(system->identifyByCard(card, ECardNumberType::Typed));
    EXPECT_EQ(http.sentBody[QLatin1String("customer")][QLatin1String("mobilePhone")].toString(),
              card->getNumber().toString());
    EXPECT_EQ(system->getLastErrorString(),
              QStringLiteral("Не удалось получить информацию о клиенте"));

    const QTemporaryDir directory;
    auto *broker = Singleton<DBQueueBroker>::instance();
    broker->setFile(directory.filePath(QStringLiteral("queue.db")));
    http.answer = R"({"order": {"processingStatus": "Processed"}})";
    EXPECT_TRUE(system->commit(document));
    const auto waiting = broker->waiting(QStringLiteral("lmmindbox"), 10);
    ASSERT_EQ(waiting.size(), 1) << broker->lastError().toStdString();
    EXPECT_EQ(waiting.first().message[QLatin1String("method")].toString().toStdString(), "change");
    broker->setFile({});

    http.answer = R"({"status": "Success", "order": {"processingStatus": "NotProcessed"}})";
    EXPECT_TRUE(system->commit(document));
    EXPECT_THAT(dialog.titles,
                testing::ElementsAre(QStringLiteral("lmmindboxCreateAuthorizedOrderError")));
}

} // namespace
