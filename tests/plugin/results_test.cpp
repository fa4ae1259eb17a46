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
    const struct
    {
        const char *answer;
        OperationStatus status;
    } cases[] = {
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
    for (const auto &c : cases) {
        SCOPED_TRACE(c.answer);
        for (const auto httpCode : {200, 500}) {
            const auto result = read(c.answer, httpCode);
            EXPECT_EQ(result.status, c.status);
            EXPECT_FALSE(result.noConnection);
            EXPECT_TRUE(result.error.isEmpty());
        }
    }
}

TEST_F(Answer, NoConnectionIsAnAnswerWithoutContentUnlessItsCodeIs200)
{
    const QByteArray deep = "{\"a\":" + QByteArray(100'000, '[') + QByteArray(100'000, ']') + "}";
    const QByteArray contents[] = {
        "",  "{}", "<html>busy</html>", "[1]", "{\"status\": \"Succ", "{\"status\": \"\xff\xfe\"}",
        deep};
    http.transportCode = 28;
    for (const auto &content : contents) {
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
    const auto customer = readCustomer(R"({
        "mobilePhone": 79001234567, "isMobilePhoneConfirmed": true, "isEmailConfirmed": true,
        "email": "anna@example.org", "customFields": {"consentToElectronicChecks": true},
        "firstName": "Анна", "lastName": "Иванова", "birthDate": "1990-03-05", "sex": "female",
        "processingStatus": "Found"})");
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
    EXPECT_EQ(customer, expected);

    const char *mistyped[] = {
        R"({"isMobilePhoneConfirmed": "true", "customFields": {"consentToElectronicChecks": 1},
            "email": 5, "firstName": true, "lastName": ["x"], "birthDate": "05.03.1990",
            "sex": 1, "processingStatus": "found", "mobilePhone": {"x": 1}})",
        R"({"birthDate": "1990.03.05", "mobilePhone": null})",
        R"({"birthDate": "1990-02-30", "customFields": null})",
        R"({"birthDate": "1990-03-05T00:00:00"})",
        "null",
        "{}",
    };
    for (const auto *text : mistyped) {
        SCOPED_TRACE(text);
        EXPECT_EQ(readCustomer(text), Customer());
    }
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
    const auto orderSuccess = [this](const char *answer) {
        return CreateOrderResult(read(answer)).success();
    };
    EXPECT_TRUE(orderSuccess(R"({"order": {"processingStatus": "Processed"}})"));
    EXPECT_TRUE(orderSuccess(R"({"status": "ProtocolError",
                                 "order": {"processingStatus": "Calculated"}})"));
    EXPECT_FALSE(orderSuccess(R"({"status": "Success",
                                  "order": {"processingStatus": "NotProcessed"}})"));
    EXPECT_FALSE(orderSuccess(R"({"status": "Success"})"));

    const auto lookUpSuccess = [this](const char *answer) {
        return GetCustomerResult(read(answer)).success();
    };
    EXPECT_TRUE(lookUpSuccess(R"({"status": "Success",
                                  "customer": {"processingStatus": "NotFound"}})"));
    EXPECT_FALSE(lookUpSuccess(R"({"status": "Success",
                                   "customer": {"processingStatus": "Changed"}})"));
    EXPECT_FALSE(lookUpSuccess(R"({"status": "ValidationError",
                                   "customer": {"processingStatus": "Found"}})"));

    EXPECT_TRUE(RegisterCustomerResult(read(R"({"status": "ProtocolError",
        "customer": {"processingStatus": "Created"}})"))
                    .success());
    EXPECT_FALSE(RegisterCustomerResult(read(R"({"status": "Success",
        "customer": {"processingStatus": "Changed"}})"))
                     .success());

    for (const auto &[text, status] :
         {std::pair("MobilePhoneConfirmed", 6), std::pair("IncorrectConfirmationCode", 11),
          std::pair("Created ", 0)}) {
        const auto answer = QByteArray(R"({"smsConfirmation": {"processingStatus": ")") + text;
        EXPECT_EQ(SmsConfirmationResult(read(answer + "\"}}")).processingStatus,
                  ProcessingStatus{status});
    }
    const SmsConfirmationResult sms(read(R"({"status": "Success", "authenticationCode": 123,
        "smsConfirmation": {"processingStatus": "AlreadyConfirmed"}})"));
    EXPECT_EQ(sms.processingStatus, ProcessingStatus::AlreadyConfirmed);
    EXPECT_TRUE(sms.authenticationCode.isEmpty());
    EXPECT_EQ(SmsConfirmationResult(read(R"({"authenticationCode": "0012"})")).authenticationCode,
              u"0012"_s);
}

TEST(JsonPath, EndsAtTheFirstValueThatIsNoObjectAndNeverReturnsAnObject)
{
    const auto read = [](const char *json, const QStringList &keys) {
        return getJsonValueByPath(QJsonDocument::fromJson(json).object(), keys);
    };
    const QStringList path = {u"a"_s, u"b"_s};
    EXPECT_EQ(read(R"({"a": {"b": 5}})", path), QJsonValue(5));
    EXPECT_EQ(read(R"({"a": 5})", path), QJsonValue(5));
    EXPECT_TRUE(read(R"({"a": {"b": {"c": 1}}})", path).isNull());
    EXPECT_TRUE(read(R"({})", path).isNull());
    EXPECT_TRUE(read(R"({"a": 5})", {}).isNull());
}

TEST(CustomerEditText, NamesEverythingButTheBirthday)
{
    EXPECT_EQ(CustomerEdit().toString(), u"имя: ; телефон: ; пол: жен; email: "_s);
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
    const auto order = [](const char *json) {
        return Order(QJsonDocument::fromJson(json).object());
    };
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
