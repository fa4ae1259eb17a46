#include "benchmarks/comparison.h"
#include "benchmarks/setup.h"

#include "interface/interface.h"
#include "model/operationresult.h"
#include "tests/support/fakehttp.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace bench {

namespace {

void parseAnswer(benchmark::State &state)
{
    FakeRestClient client;
    client.answer = answerOfSize(state.range(0));
    const lmmindbox::Interface interface;
    const auto calls = state.range(0) > 100'000 ? 1 : 20;
    compare(
        state, calls,
        [&] { return lmmindbox::GetCustomerResult(interface.getRequestResult()).success(); },
        [&] { return QJsonDocument::fromJson(client.answer).isObject(); });
}

} // namespace

QByteArray answerOfSize(qsizetype size)
{
    auto answer = QJsonDocument::fromJson(R"({
        "status": "Success",
        "customer": {
            "processingStatus": "Found", "mobilePhone": 79160000001,
            "isMobilePhoneConfirmed": true, "isEmailConfirmed": true,
            "email": "anna01@example.org", "firstName": "Анна", "lastName": "Иванова",
            "birthDate": "1990-03-05", "sex": "female",
            "ids": {"serviceId": 1048576, "websiteId": "a81-553"},
            "customFields": {"consentToElectronicChecks": true}
        }})")
                      .object();
    const QJsonObject segment = {
        {QStringLiteral("segmentation"),
         QJsonObject{{QStringLiteral("name"), QStringLiteral("Частота покупок")}}},
        {QStringLiteral("segment"),
         QJsonObject{{QStringLiteral("name"), QStringLiteral("Раз в неделю")},
                     {QStringLiteral("rank"), 4.5}}},
    };
    const auto bytes = [&answer] { return QJsonDocument(answer).toJson(QJsonDocument::Compact); };
    const auto segmentSize = QJsonDocument(segment).toJson(QJsonDocument::Compact).size() + 1;
    QJsonArray segments;
    for (auto left = size - bytes().size(); left > 0; left -= segmentSize)
        segments.append(segment);
    answer.insert(QLatin1String("customerSegmentations"), segments);
    return bytes();
}

void registerAnswers()
{
    benchmark::RegisterBenchmark("parseAnswer", parseAnswer)
        ->Arg(1 << 10)
        ->Arg(10 << 10)
        ->Arg(1 << 20)
        ->UseManualTime();
}

} // namespace bench
