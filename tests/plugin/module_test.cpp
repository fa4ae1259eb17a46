#include "tests/support/fakehttp.h"
#include "tests/support/fakequeue.h"

#include <host/abstractdocument.h>
#include <host/basicloyaltysystem.h>
#include <host/dialog.h>
#include <host/session.h>

#include <QPluginLoader>
#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace {

using namespace Qt::StringLiterals;

class RecordingDialog : public Dialog
{
public:
    RecordingDialog() { MockFactory<Dialog>::mocked = this; }
    ~RecordingDialog() override { MockFactory<Dialog>::mocked = nullptr; }
    Q_DISABLE_COPY_MOVE(RecordingDialog)

    void showMessage(const tr::Tr &text, int, int) override { titles.append(text.getId()); }

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
        QSharedPointer<DocumentCardRecord>::create(u"79160000001"_s);
};

TEST_F(Module, IsFoundByItsMetadataAndAnswersCastsInTheirOrder)
{
    const auto metaData = loader.metaData();
    EXPECT_EQ(metaData["IID"_L1].toString().toStdString(), "LmMindbox");
    EXPECT_EQ(metaData["className"_L1].toString().toStdString(), "Plugin");
    EXPECT_EQ(metaData["MetaData"_L1]["version"_L1].toString().toStdString(), PLUGIN_VERSION);

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

TEST_F(Module, UsesTheProgramsSubstitutesAndSingletons)
{
    EXPECT_EQ(http.timeout, 5000);
    http.answer = R"({"status": "Success"})";
    EXPECT_FALSE(system->identifyByCard(card, ECardNumberType::Typed));
    EXPECT_EQ(http.sentBody["customer"_L1]["mobilePhone"_L1].toString(),
              card->getNumber().toString());
    EXPECT_EQ(system->getLastErrorString(), u"Не удалось получить информацию о клиенте"_s);

    const FakeQueue queue;
    http.answer = R"({"order": {"processingStatus": "Processed"}})";
    EXPECT_TRUE(system->commit(document));
    ASSERT_EQ(queue.messages.size(), 1);
    EXPECT_EQ(queue.messages.first()["method"_L1].toString().toStdString(), "change");

    http.answer = R"({"status": "Success", "order": {"processingStatus": "NotProcessed"}})";
    EXPECT_TRUE(system->commit(document));
    EXPECT_THAT(dialog.titles, testing::ElementsAre(u"lmmindboxCreateAuthorizedOrderError"_s));
}

} // namespace
