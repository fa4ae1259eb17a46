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
        document->addGoodsItem(QStringLiteral("4600"), QStringLiteral("Молоко"), 10, 2);
        plugin.customer = makeCustomer(QStringLiteral("79160000001"), true);
        plugin.converter = converter;
        ON_CALL(*converter, getOrderPayload)
            .WillByDefault(Return(std::pair(payload, QStringLiteral("id"))));
    }

    static CreateOrderResult order(ProcessingStatus status, const OperationResult &result = {})
    {
        CreateOrderResult order(result);
        order.processingStatus = status;
        return order;
    }

    const QJsonObject payload = {{QStringLiteral("payload"), 1}};
    const QJsonObject change = {{QStringLiteral("change"), 2}};
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
        EXPECT_CALL(*converter, getChangeOrderStatusPayload(QStringLiteral("id")))
            .WillOnce(Return(change));
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
    own.error = {QStringLiteral("own"), QStringLiteral("own")};
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
    EXPECT_EQ(plugin.customer.mobilePhone, QStringLiteral("79160000001"));
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
    plugin.customer.sex = QStringLiteral("female");
    EXPECT_CALL(saveToFile, save(document, QString())).Times(2);
    for (const auto &birthDate : {QDate(1990, 3, 5), QDate()}) {
        plugin.customer.birthDate = birthDate;
        plugin.storePluginData();

        const auto record = plugin.getPluginData(QStringLiteral("customer"), {}).toJsonObject();
        EXPECT_EQ(record.size(), 9);
        EXPECT_EQ(record[QLatin1String("birthDate")],
                  birthDate.isValid() ? QJsonValue(QStringLiteral("1990-03-05")) : QJsonValue());
        EXPECT_EQ(record[QLatin1String("lastName")], QStringLiteral(""));

        auto expected = plugin.customer;
        expected.processingStatus = ProcessingStatus::Unknown;
        OpenPlugin other{service};
        other.setDocument(document);
        other.codeSent = true;
        other.confirmedEmails = {QStringLiteral("a@b")};
        EXPECT_TRUE(other.restoreLoyaltySystem());
        EXPECT_EQ(other.customer, expected);
        EXPECT_TRUE(other.codeSent);
        EXPECT_EQ(other.confirmedEmails.size(), 1);
    }
}

TEST_F(Commit, RestoreTakesWhatItCanFromAForeignRecord)
{
    const auto restored = [this](const QVariant &record) {
        plugin.setPluginData(QStringLiteral("customer"), record);
        EXPECT_TRUE(plugin.restoreLoyaltySystem());
        return plugin.customer;
    };
    Customer expected;
    expected.email = QStringLiteral("a@b");
    EXPECT_EQ(restored(QJsonObject{{QStringLiteral("email"), QStringLiteral("a@b")},
                                   {QStringLiteral("birthDate"), QStringLiteral("1990/03/05")},
                                   {QStringLiteral("firstName"), QJsonObject()},
                                   {QStringLiteral("processingStatus"), 2},
                                   {QStringLiteral("email\0x"), QStringLiteral("x")},
                                   {QStringLiteral("Email"), QStringLiteral("x")}}),
              expected);
    const QDateTime birth(QDate(1990, 3, 5), QTime(9, 0));
    EXPECT_EQ(restored(QVariantMap{{QStringLiteral("birthDate"), birth}}).birthDate, birth.date());
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
    plugin.setPluginData(QStringLiteral("customer"), 5);
    plugin.codeSent = true;
    plugin.confirmedEmails = {QStringLiteral("a@b")};
    plugin.clearLoyaltyData();
    EXPECT_EQ(plugin.customer, Customer());
    EXPECT_FALSE(plugin.codeSent);
    EXPECT_TRUE(plugin.confirmedEmails.isEmpty());
    EXPECT_EQ(plugin.getPluginData(QStringLiteral("customer"), {}), QVariant(5));
}

} // namespace
} // namespace lmmindbox
