#include "workflow.h"

namespace lmmindbox {
namespace {

class Commit : public WorkflowTest
{
protected:
    Commit()
    {
        document->addGoodsItem(u"4600"_s, u"Молоко"_s, 10, 2);
        Singleton<Session>::instance()->setCurrentDocument(document);
        plugin.customer = customerIn(known);
    }
    ~Commit() override { Singleton<Session>::instance()->setCurrentDocument(nullptr); }

    QString creation() const
    {
        return u"Offline.CreateAuthorizedOrder "_s +
               compact(Converter().getOrderPayload(plugin.customer, 20).first);
    }

    FakeQueue queue;
};

TEST_F(Commit, AnOrderThatIsThereOrWaitsIsFollowedByItsStatus)
{
    const QJsonObject status{{u"method"_s, u"change"_s},
                             {u"payload"_s, Converter().getChangeOrderStatusPayload({})}};
    for (const auto &answer :
         {QByteArray(R"({"order":{"processingStatus":"Processed"}})"),
          QByteArray(R"({"order":{"processingStatus":"Calculated"}})"), lost}) {
        around.answers = {answer};
        EXPECT_TRUE(plugin.commit(document));
        EXPECT_EQ(around.seen().filter(u"Offline"_s), QStringList(creation()));
        ASSERT_EQ(queue.messages.size(), answer == lost ? 2 : 1);
        EXPECT_EQ(queue.messages.takeLast(), status);
        // A sale without a customer is reported too.
        plugin.customer = {};
    }
}

TEST_F(Commit, ARefusedOrderIsShownAndTheSaleGoesOnAndAReturnIsNotReported)
{
    around.answers = {R"({"status":"Success","order":{"processingStatus":"NotProcessed"}})"};
    EXPECT_TRUE(plugin.commit(document));
    EXPECT_EQ(around.seen(),
              QStringList(
                  {u"I Создание заказа авторизованного клиента"_s, creation(),
                   u"message 0 0 lmmindboxCreateAuthorizedOrderError/Не удалось создать заказ"_s}));
    EXPECT_EQ(plugin.customer, customerIn(known));

    DocumentHeader header;
    header.kind = 2;
    EXPECT_TRUE(plugin.commit(QSharedPointer<AbstractDocument>::create(header)));
    EXPECT_TRUE(queue.messages.isEmpty());
}

TEST_F(Commit, CustomerIsKeptWithTheReceiptAndRestored)
{
    plugin.fillClientInfo(card, plugin.customer);
    plugin.customer.lastName = QString();
    plugin.customer.consentToElectronicChecks = true;
    plugin.customer.sex = u"female"_s;
    auto record = json(R"({"birthDate": null, "consentToElectronicChecks": true,
        "email": "anna@example.org", "firstName": "Анна", "isEmailConfirmed": false,
        "isMobilePhoneConfirmed": true, "lastName": "", "mobilePhone": "79160000001",
        "sex": "female"})");
    for (const auto &birthDate : {QDate(), QDate(1990, 3, 5)}) {
        plugin.customer.birthDate = birthDate;
        plugin.storePluginData();
        EXPECT_EQ(around.seen(), QStringList(u"save Анна 79160000001"_s));
        EXPECT_EQ(plugin.getPluginData(u"customer"_s, {}).toJsonObject(), record);
        record.insert("birthDate"_L1, u"1990-03-05"_s);

        auto expected = plugin.customer;
        expected.processingStatus = ProcessingStatus::Unknown;
        OpenPlugin other;
        other.setDocument(document);
        other.codeSent = true;
        other.confirmedEmails = {u"a@b"_s};
        EXPECT_TRUE(other.restoreLoyaltySystem());
        EXPECT_EQ(other.customer, expected);
        EXPECT_TRUE(other.codeSent);
        EXPECT_EQ(other.confirmedEmails.size(), 1);
        around.seen();
    }
}

TEST_F(Commit, RestoreTakesWhatItCanFromAForeignRecord)
{
    const auto restored = [this](const QVariantMap &data) {
        plugin.setPluginData(data);
        EXPECT_TRUE(plugin.restoreLoyaltySystem());
        return plugin.customer;
    };
    const auto key = u"customer"_s;
    Customer expected;
    expected.email = u"a@b"_s;
    const auto record = json(R"({"email": "a@b", "birthDate": "1990/03/05", "firstName": {},
        "processingStatus": 2, "email\u0000x": "x", "Email": "x"})");
    EXPECT_EQ(restored({{key, record}}), expected);
    const QDateTime birth(QDate(1990, 3, 5), QTime(9, 0));
    EXPECT_EQ(restored({{key, QVariantMap{{u"birthDate"_s, birth}}}}).birthDate, birth.date());
    EXPECT_EQ(restored({{key, 5}}), Customer());
    plugin.customer = expected;
    EXPECT_EQ(restored({}), Customer());

    plugin.customer = expected;
    document->setCardRecord(nullptr);
    EXPECT_EQ(restored({}), expected);
}

TEST_F(Commit, ClearingForgetsTheCustomerButNotItsRecord)
{
    plugin.setPluginData(u"customer"_s, 5);
    plugin.setPluginData(u"visits"_s, 7); // beside it, not in its place
    plugin.codeSent = true;
    plugin.confirmedEmails = {u"a@b"_s};
    plugin.lastError = {{}, u"before"_s};
    plugin.clearLoyaltyData();
    EXPECT_EQ(plugin.customer, Customer());
    EXPECT_FALSE(plugin.codeSent);
    EXPECT_TRUE(plugin.confirmedEmails.isEmpty());
    EXPECT_EQ(plugin.getLastErrorString(), QString());
    EXPECT_EQ(plugin.getPluginData(u"customer"_s, {}), QVariant(5));
}

} // namespace
} // namespace lmmindbox
