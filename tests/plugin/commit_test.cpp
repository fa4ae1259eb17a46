#include "fakes.h"

namespace lmmindbox {
namespace {

using testing::InSequence;
using testing::Return;

class MockConverter : public Converter
{
public:
    MOCK_METHOD((std::pair<QJsonObject, QString>), getOrderPayload, (const Customer &, double),
                (const, override));
    MOCK_METHOD(QJsonObject, getChangeOrderStatusPayload, (const QString &), (override));
};

class Commit : public WorkflowTest
{
protected:
    Commit()
    {
        document->addGoodsItem(u"4600"_s, u"Молоко"_s, 10, 2);
        plugin.customer = makeCustomer(u"79160000001"_s, true);
        plugin.converter = converter;
        ON_CALL(*converter, getOrderPayload).WillByDefault(Return(std::pair(payload, u"id"_s)));
    }

    static CreateOrderResult order(ProcessingStatus status, const OperationResult &result = {})
    {
        CreateOrderResult order(result);
        order.processingStatus = status;
        return order;
    }

    const QJsonObject payload = {{u"payload"_s, 1}};
    const QJsonObject change = {{u"change"_s, 2}};
    QSharedPointer<testing::StrictMock<MockConverter>> converter{
        new testing::StrictMock<MockConverter>};
};

TEST_F(Commit, AnOrderThatIsThereOrWaitsIsFollowedByItsStatus)
{
    for (const auto &result :
         {order(ProcessingStatus::Processed), order(ProcessingStatus::Calculated),
          order(ProcessingStatus::Unknown, withoutConnection())}) {
        InSequence inOrder;
        EXPECT_CALL(*converter, getOrderPayload(plugin.customer, 20.0));
        EXPECT_CALL(*service, createAuthorizedOrder(payload, false)).WillOnce(Return(result));
        EXPECT_CALL(*converter, getChangeOrderStatusPayload(u"id"_s)).WillOnce(Return(change));
        EXPECT_CALL(*service, changeOrderStatus(change, false))
            .WillOnce(Return(withoutConnection()));
        EXPECT_TRUE(plugin.commit(document));
        // A sale without a customer is reported as well.
        plugin.customer = {};
    }
}

TEST_F(Commit, ARefusedOrderIsShownAndTheSaleGoesOn)
{
    auto own = makeResult(OperationStatus::Error);
    own.error = {u"own"_s, u"own"_s};
    EXPECT_CALL(*converter, getOrderPayload).Times(2);
    EXPECT_CALL(*service, createAuthorizedOrder)
        .WillOnce(
            Return(order(ProcessingStatus::NotProcessed, makeResult(OperationStatus::Success))))
        .WillOnce(Return(order(ProcessingStatus::Unknown, own)));
    InSequence inOrder;
    EXPECT_CALL(dialog, showMessage(isText("lmmindboxCreateAuthorizedOrderError",
                                           "Не удалось создать заказ"),
                                    0, 0));
    EXPECT_CALL(dialog, showMessage(own.error, 0, 0));
    EXPECT_TRUE(plugin.commit(document));
    EXPECT_TRUE(plugin.commit(document));
    EXPECT_EQ(plugin.customer.mobilePhone, u"79160000001"_s);
}

TEST_F(Commit, OnlySalesAreReported)
{
    DocumentHeader header;
    header.kind = 2;
    EXPECT_TRUE(plugin.commit(QSharedPointer<AbstractDocument>::create(header)));
}

TEST_F(Commit, CustomerIsKeptWithTheReceiptAndRestored)
{
    plugin.customer.lastName = QString();
    plugin.customer.consentToElectronicChecks = true;
    plugin.customer.sex = u"female"_s;
    EXPECT_CALL(saveToFile, save(document, QString())).Times(2);
    for (const auto &birthDate : {QDate(1990, 3, 5), QDate()}) {
        plugin.customer.birthDate = birthDate;
        plugin.storePluginData();

        const auto record = plugin.getPluginData(u"customer"_s, {}).toJsonObject();
        EXPECT_EQ(record.size(), 9);
        EXPECT_EQ(record["birthDate"_L1],
                  birthDate.isValid() ? QJsonValue(u"1990-03-05"_s) : QJsonValue());
        EXPECT_EQ(record["lastName"_L1], u""_s);

        auto expected = plugin.customer;
        expected.processingStatus = ProcessingStatus::Unknown;
        OpenPlugin other{service};
        other.setDocument(document);
        other.codeSent = true;
        other.confirmedEmails = {u"a@b"_s};
        EXPECT_TRUE(other.restoreLoyaltySystem());
        EXPECT_EQ(other.customer, expected);
        EXPECT_TRUE(other.codeSent);
        EXPECT_EQ(other.confirmedEmails.size(), 1);
    }
}

TEST_F(Commit, RestoreTakesWhatItCanFromAForeignRecord)
{
    const auto restored = [this](const QVariant &record) {
        plugin.setPluginData(u"customer"_s, record);
        EXPECT_TRUE(plugin.restoreLoyaltySystem());
        return plugin.customer;
    };
    Customer expected;
    expected.email = u"a@b"_s;
    EXPECT_EQ(restored(QJsonObject{{u"email"_s, u"a@b"_s},
                                   {u"birthDate"_s, u"1990/03/05"_s},
                                   {u"firstName"_s, QJsonObject()},
                                   {u"processingStatus"_s, 2},
                                   {u"email\0x"_s, u"x"_s},
                                   {u"Email"_s, u"x"_s}}),
              expected);
    const QDateTime birth(QDate(1990, 3, 5), QTime(9, 0));
    EXPECT_EQ(restored(QVariantMap{{u"birthDate"_s, birth}}).birthDate, birth.date());
    EXPECT_EQ(restored(5), Customer());

    plugin.customer = expected;
    plugin.setPluginData({});
    EXPECT_TRUE(plugin.restoreLoyaltySystem());
    EXPECT_EQ(plugin.customer, Customer());

    plugin.customer = expected;
    document->setCardRecord(nullptr);
    EXPECT_TRUE(plugin.restoreLoyaltySystem());
    EXPECT_EQ(plugin.customer, expected);
}

TEST_F(Commit, ClearingForgetsTheCustomerButNotItsRecord)
{
    plugin.setPluginData(u"customer"_s, 5);
    plugin.codeSent = true;
    plugin.confirmedEmails = {u"a@b"_s};
    plugin.clearLoyaltyData();
    EXPECT_EQ(plugin.customer, Customer());
    EXPECT_FALSE(plugin.codeSent);
    EXPECT_TRUE(plugin.confirmedEmails.isEmpty());
    EXPECT_EQ(plugin.getPluginData(u"customer"_s, {}), QVariant(5));
}

} // namespace
} // namespace lmmindbox
