#include "benchmarks/bareexchange.h"

#include "interface/interface.h"
#include "tests/support/fakehttp.h"

namespace bench {

namespace {

size_t receive(char *from, size_t size, size_t count, void *answer)
{
    static_cast<std::string *>(answer)->append(from, size * count);
    return size * count;
}

} // namespace

SentRequest record(const std::function<void(lmmindbox::Interface &)> &operation)
{
    FakeRestClient client;
    lmmindbox::Interface interface;
    operation(interface);
    return {client.sentUrl.toEncoded(),
            QJsonDocument(client.sentBody).toJson(QJsonDocument::Compact), client.sentHeaders};
}

BareExchange::BareExchange()
    : handle(curl_easy_init())
{
    FakeRestClient client;
    lmmindbox::Interface interface;
    (void)interface.sendRequest({}, {}, {});
    headers = curl_slist_append(headers, "Expect:");
    for (auto header = client.sentHeaders.cbegin(); header != client.sentHeaders.cend(); ++header) {
        const auto line = header.key().toUtf8() + ": " + header.value().toUtf8();
        headers = curl_slist_append(headers, line.constData());
    }
    curl_easy_setopt(handle, CURLOPT_TCP_NODELAY, 1L);
    curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, receive);
    curl_easy_setopt(handle, CURLOPT_WRITEDATA, &answer);
}

BareExchange::~BareExchange()
{
    curl_easy_cleanup(handle);
    curl_slist_free_all(headers);
}

void BareExchange::setTimeout(std::chrono::milliseconds time)
{
    curl_easy_setopt(handle, CURLOPT_TIMEOUT_MS, static_cast<long>(time.count()));
}

bool BareExchange::post(const SentRequest &request)
{
    curl_easy_setopt(handle, CURLOPT_URL, request.url.constData());
    curl_easy_setopt(handle, CURLOPT_HTTPHEADER, headers);
    curl_easy_setopt(handle, CURLOPT_POSTFIELDS, request.body.constData());
    curl_easy_setopt(handle, CURLOPT_POSTFIELDSIZE, static_cast<long>(request.body.size()));
    // The service refuses with HTTP code 200, too.
    return perform() && answer.find(R"("status":"Success")") != std::string::npos;
}

QByteArray BareExchange::get(const QByteArray &url)
{
    curl_easy_setopt(handle, CURLOPT_URL, url.constData());
    curl_easy_setopt(handle, CURLOPT_HTTPGET, 1L);
    return perform() ? QByteArray::fromStdString(answer) : QByteArray();
}

bool BareExchange::perform()
{
    answer.clear();
    long code = 0;
    return curl_easy_perform(handle) == CURLE_OK &&
           curl_easy_getinfo(handle, CURLINFO_RESPONSE_CODE, &code) == CURLE_OK && code == 200;
}

} // namespace bench
