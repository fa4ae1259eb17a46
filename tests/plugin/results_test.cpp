#include "fakes.h"

#include "model/jsonpath.h"
#include "model/order.h"

namespace lmmindbox {
namespace {

class Answer : public testing::Test
{
protected:
    OperationResult read(const QByteArray &answer, int httpCode = 200)
    {
        http.answer = answer;
        http.httpCode = httpCode;
        return client.sendRequest(u"Offline.GetCustomer"_s, {}, {});
    }
    Customer readCustomer(const QByteArray &customer)
    {
        return read(R"({"status": "Success", "customer": )" + customer + "}").customer;
    }

    FakeRestClient http;
    Interface client;
};

TEST_F(Answer, StatusIsReadExactlyAndAnErrorMessageOutweighsIt)
{
    const std::pair<const char *, OperationStatus> cases[] = {
        {R"({"status": "Success"})", OperationStatus::Success},
        {R"({"status": "ValidationError"})", OperationStatus::ValidationError},
        {R"({"status": "ProtocolError"})", OperationStatus::ProtocolError},
        {R"({"status": "success"})", OperationStatus::Undefined},
        {R"({"status": "Error"})", OperationStatus::Undefined},
        {R"({"status": " Success"})", OperationStatus::Undefined},
        {R"({"status": ["Success"]})", OperationStatus::Undefined},
        {R"({"other": 1})", OperationStatus::Undefined},
        {R"({"status": "Success", "errorMessage": "x"})", OperationStatus::Error},
        {R"({"status": "Success", "errorMessage": null})", OperationStatus::Error},
    };
    for (const auto &[answer, status] : cases) {
        SCOPED_TRACE(answer);
        for (const auto httpCode : {200, 500}) {
            const auto result = read(answer, httpCode);
            EXPECT_EQ(result.status, status);
            EXPECT_FALSE(result.noConnection);
            EXPECT_TRUE(result.error.isEmpty());
        }
    }
}

TEST_F(Answer, NoConnectionIsAnAnswerWithoutContentUnlessItsCodeIs200)
{
    const QByteArray deep = "{\"a\":" + QByteArray(100'000, '[') + QByteArray(100'000, ']') + "}";
    http.transportCode = 28;
    for (const QByteArray &content :
         {QByteArray(), QByteArray("{}"), QByteArray("<html>busy</html>"), QByteArray("[1]"),
          QByteArray(R"({"status": "Succ)"), QByteArray("{\"status\": \"\xff\xfe\"}"), deep}) {
        SCOPED_TRACE(content.left(40).toStdString());
        for (const auto httpCode : {0, 204, 500}) {
            const auto result = read(content, httpCode);
            EXPECT_EQ(result.status, OperationStatus::Error);
            EXPECT_TRUE(result.noConnection);
            EXPECT_EQ(result.httpCode, httpCode);
            EXPECT_EQ(result.transportCode, 28);
            EXPECT_EQ(result.getError({u"own"_s, u"own"_s}),
                      tr::Tr(u"mindboxNoConnectionError"_s, u"Ошибка связи с сервером"_s));
        }
        const auto result = read(content, 200);
        EXPECT_EQ(result.status, OperationStatus::Undefined);
        EXPECT_FALSE(result.noConnection);
        EXPECT_EQ(result.customer, Customer());
    }
}

TEST_F(Answer, EveryFieldOfTheCustomerIsReadByItself)
{
    Customer expected;
    expected.mobilePhone = u"79001234567"_s;
    expected.isMobilePhoneConfirmed = true;
    expected.email = u"anna@example.org"_s;
    expected.consentToElectronicChecks = true;
    expected.firstName = u"Анна"_s;
    expected.lastName = u"Иванова"_s;
    expected.birthDate = QDate(1990, 3, 5);
    expected.sex = u"female"_s;
    expected.processingStatus = ProcessingStatus::Found;
    EXPECT_EQ(readCustomer(R"({
        "mobilePhone": 79001234567, "isMobilePhoneConfirmed": true, "isEmailConfirmed": true,
        "email": "anna@example.org", "customFields": {"consentToElectronicChecks": true},
        "firstName": "Анна", "lastName": "Иванова", "birthDate": "1990-03-05", "sex": "female",
        "processingStatus": "Found"})"),
              expected);

    for (const auto *mistyped : {
             R"({"isMobilePhoneConfirmed": "true", "customFields": {"consentToElectronicChecks": 1},
                 "email": 5, "firstName": true, "lastName": ["x"], "birthDate": "05.03.1990",
                 "sex": 1, "processingStatus": "found", "mobilePhone": {"x": 1}})",
             R"({"birthDate": "1990.03.05", "mobilePhone": null})",
             R"({"birthDate": "1990-02-30", "customFields": null})",
             R"({"birthDate": "1990-03-05T00:00:00"})",
             "null",
             "{}",
         })
        EXPECT_EQ(readCustomer(mistyped), Customer()) << mistyped;
}

TEST_F(Answer, PhoneOfAnyScalarTypeComesOutAsItsText)
{
    EXPECT_EQ(readCustomer(R"({"mobilePhone": "+7 (900) 1"})").mobilePhone, u"+7 (900) 1"_s);
    EXPECT_EQ(readCustomer(R"({"mobilePhone": 7.9001234567e10})").mobilePhone, u"79001234567"_s);
    EXPECT_EQ(readCustomer(R"({"mobilePhone": true})").mobilePhone, u"true"_s);
    // The path reader returns the first value that is no object.
    const auto customer = readCustomer("\"x\"");
    EXPECT_EQ(customer.mobilePhone, u"x"_s);
    EXPECT_EQ(customer.sex, u"x"_s);
    EXPECT_EQ(read(R"({"errorMessage": "", "customer": "x"})").customer, customer);
}

TEST_F(Answer, EachResultHasItsOwnIdeaOfSuccess)
{
    const std::pair<const char *, QLatin1String> cases[] = {
        {R"({"status": "Success"})", {}},
        {R"({"order": {"processingStatus": "Processed"}})", "order"_L1},
        {R"({"status": "ProtocolError", "order": {"processingStatus": "Calculated"}})", "order"_L1},
        {R"({"status": "Success", "order": {"processingStatus": "NotProcessed"}})", {}},
        {R"({"status": "Success", "customer": {"processingStatus": "NotFound"}})", "look-up"_L1},
        {R"({"status": "Success", "customer": {"processingStatus": "Changed"}})", {}},
        {R"({"status": "ValidationError", "customer": {"processingStatus": "Found"}})", {}},
        {R"({"status": "ProtocolError", "customer": {"processingStatus": "Created"}})",
         "registration"_L1},
    };
    for (const auto &[answer, kind] : cases) {
        SCOPED_TRACE(answer);
        const auto result = read(answer);
        EXPECT_EQ(CreateOrderResult(result).success(), kind == "order"_L1);
        EXPECT_EQ(GetCustomerResult(result).success(), kind == "look-up"_L1);
        EXPECT_EQ(RegisterCustomerResult(result).success(), kind == "registration"_L1);
    }
    for (const auto &[text, status] :
         {std::pair("MobilePhoneConfirmed", 6), std::pair("IncorrectConfirmationCode", 11),
          std::pair("AlreadyConfirmed", 7), std::pair("Created ", 0)}) {
        const SmsConfirmationResult sms(
            read(QByteArray(R"({"authenticationCode": "0012", "smsConfirmation": )") +
                 R"({"processingStatus": ")" + text + "\"}}"));
        EXPECT_EQ(sms.processingStatus, ProcessingStatus{status}) << text;
        EXPECT_EQ(sms.authenticationCode, u"0012"_s);
    }
    EXPECT_EQ(SmsConfirmationResult(read(R"({"authenticationCode": 12})")).authenticationCode,
              QString());
}

TEST(JsonPath, EndsAtTheFirstValueThatIsNoObjectAndNeverReturnsAnObject)
{
    const QStringList path = {u"a"_s, u"b"_s};
    EXPECT_EQ(getJsonValueByPath(json(R"({"a": {"b": 5}})"), path), QJsonValue(5));
    EXPECT_EQ(getJsonValueByPath(json(R"({"a": 5})"), path), QJsonValue(5));
    EXPECT_TRUE(getJsonValueByPath(json(R"({"a": {"b": {"c": 1}}})"), path).isNull());
    EXPECT_TRUE(getJsonValueByPath({}, path).isNull());
    EXPECT_TRUE(getJsonValueByPath(json(R"({"a": 5})"), {}).isNull());
}

TEST(CustomerEditText, NamesEverythingButTheBirthday)
{
    CustomerEdit edit;
    edit.name = u"Пётр"_s;
    edit.phone = u"79001234567"_s;
    edit.sex = Client::Sex::Male;
    edit.email = u"p@example.org"_s;
    EXPECT_EQ(edit.toString(), u"имя: Пётр; телефон: 79001234567; пол: муж; "
                               "email: p@example.org"_s);
}

TEST(OrderRecord, IsReadFromItsWrapperButItsIdFromBesideIt)
{
    const auto order = [](const char *text) { return Order(json(text)); };
    EXPECT_TRUE(order(R"({"order": {"lines": []}})").isEmpty());
    EXPECT_FALSE(order(R"({"lines": [{}]})").isEmpty());
    EXPECT_TRUE(order(R"({"order": 5, "lines": [{}]})").data.isEmpty());
    EXPECT_EQ(order(R"({"ids": {"offlineTransactionIdVantor": "A-1"},
                        "order": {"ids": {"offlineTransactionIdVantor": "B-1"}}})")
                  .transactionId,
              u"A-1"_s);
    EXPECT_TRUE(order(R"({"ids": {"offlineTransactionIdVantor": 1}})").transactionId.isEmpty());

    auto *config = Singleton<Config>::instance();
    config->set(u"Mindbox:responseTransactionIdName"_s, u"x.y"_s);
    EXPECT_EQ(order(R"({"ids": {"x": {"y": "A-2"}}})").transactionId, u"A-2"_s);
    config->clear();
}

} // namespace
} // namespace lmmindbox
