#include "host/restconnection.h"

#include "host/config.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QLoggingCategory>
#include <QUrl>

#include <algorithm>
#include <limits>
#include <memory>
#include <poll.h>
#include <utility>

namespace {

Q_LOGGING_CATEGORY(log, "till.http", QtInfoMsg)

struct ListDeleter
{
    void operator()(curl_slist *list) const { curl_slist_free_all(list); }
};
using HeaderList = std::unique_ptr<curl_slist, ListDeleter>;

/// Whether it may be a header's name.
bool isToken(const QByteArray &name)
{
    constexpr QByteArrayView allowed("!#$%&'*+-.^_`|~0123456789"
                                     "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ");
    return !name.isEmpty() &&
           std::ranges::all_of(name, [&](char character) { return allowed.contains(character); });
}

/// Whether the character may not stand in a header's value.
bool isControl(char character)
{
    constexpr char lastControl = '\x1F';
    constexpr char deletion = '\x7F';
    return (character >= 0 && character <= lastControl && character != '\t') ||
           character == deletion;
}

/// The headers as libcurl takes them; null, with the reason, when one must not be sent.
HeaderList headerList(const QHash<QString, QString> &headers, QString &error)
{
    // Waiting for "100 Continue" would cost a round trip.
    HeaderList list(curl_slist_append(nullptr, "Expect:"));
    auto hasContentType = false;
    const auto append = [&list](const QByteArray &line) {
        // libcurl answers null when there is no memory, and keeps the list as it was.
        if (auto *const longer = curl_slist_append(list.get(), line.constData())) {
            [[maybe_unused]] auto *const shorter = list.release();
            list.reset(longer);
        }
    };
    for (auto header = headers.cbegin(); header != headers.cend(); ++header) {
        const auto name = header.key().toUtf8();
        const auto value = header.value().toUtf8();
        if (!isToken(name) || std::ranges::any_of(value, isControl)) {
            error =
                QStringLiteral("a header's name or value holds a character that is not allowed");
            return {};
        }
        hasContentType = hasContentType || name.compare("content-type", Qt::CaseInsensitive) == 0;
        // With a colon and nothing behind it libcurl would leave the header out.
        append(value.trimmed().isEmpty() ? name + ';' : name + ": " + value);
    }
    if (!hasContentType)
        append("Content-Type: application/json; charset=utf-8");
    return list;
}

} // namespace

RestClient::Connection::Connection()
{
    static const auto initialised = curl_global_init(CURL_GLOBAL_DEFAULT);
    handle = initialised == CURLE_OK ? curl_easy_init() : nullptr;
    if (!handle)
        return;
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_ERRORBUFFER, errorText.data());
    set(CURLOPT_PROTOCOLS_STR, "http,https");
    set(CURLOPT_FOLLOWLOCATION, 0L);
    set(CURLOPT_SSL_VERIFYPEER, 1L);
    set(CURLOPT_SSL_VERIFYHOST, 2L);
    set(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
    // HTTP/2 has repetitions of its own that could send a body twice.
    set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    // A connection found dead would otherwise stay beside the fresh one and be taken again.
    set(CURLOPT_MAXCONNECTS, 1L);
    set(CURLOPT_TCP_NODELAY, 1L);
    set(CURLOPT_TCP_KEEPALIVE, 1L);
    set(CURLOPT_TCP_KEEPIDLE, 20L);
    set(CURLOPT_TCP_KEEPINTVL, 5L);
    // Without this a time-out while a name is resolved would wait for the resolver all the same.
    set(CURLOPT_QUICK_EXIT, 1L);
    set(CURLOPT_POST, 1L);
    set(CURLOPT_PREREQFUNCTION, refuseRepetition);
    set(CURLOPT_PREREQDATA, this);
    set(CURLOPT_HEADERFUNCTION, receiveHeader);
    set(CURLOPT_HEADERDATA, this);
    set(CURLOPT_WRITEFUNCTION, receiveBody);
    set(CURLOPT_WRITEDATA, this);
    trustConfiguredAuthority();
}

void RestClient::Connection::warnOfOption(CURLoption option, CURLcode code)
{
    qCWarning(log, "libcurl refuses option %d: %s", option, curl_easy_strerror(code));
}

void RestClient::Connection::trustConfiguredAuthority()
{
    const auto file = Singleton<Config>::instance()->getText(QStringLiteral("Http:caFile"));
    if (file.isEmpty())
        return;
    // The system's directory of authorities stays in force beside the file.
    set(CURLOPT_CAINFO, QFile::encodeName(file).constData());
    if (const QFileInfo info(file); !info.isFile() || !info.isReadable())
        qCWarning(log,
                  "%ls: the certificate authority of the setting \"Http:caFile\" cannot be "
                  "read, https will not work",
                  qUtf16Printable(file));
}

http::Response RestClient::Connection::exchange(const QUrl &url, const QByteArray &body,
                                                const QHash<QString, QString> &headers,
                                                qint64 timeout)
{
    error.clear();
    retryAfter = {};
    proxy = Proxy::of(url);
    if (!handle) {
        error = QStringLiteral("libcurl cannot be initialised");
        return {0, CURLE_FAILED_INIT, {}};
    }
    const auto scheme = url.scheme();
    if (!url.isValid() || url.host().isEmpty() ||
        (scheme != QLatin1String("http") && scheme != QLatin1String("https"))) {
        error = QStringLiteral("expected an http or https URL with a host");
        return {0, CURLE_URL_MALFORMAT, {}};
    }
    const auto list = headerList(headers, error);
    if (!list)
        return {0, CURLE_BAD_FUNCTION_ARGUMENT, {}};

    set(CURLOPT_URL, url.toEncoded(QUrl::RemoveFragment).constData());
    set(CURLOPT_HTTPHEADER, list.get());
    // An empty one keeps libcurl from asking the environment, which it does for loopback too.
    set(CURLOPT_PROXY, proxy.address.constData());
    // Given in one piece, a body of usual size leaves in one segment with the head.
    set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body.size()));
    set(CURLOPT_POSTFIELDS, body.constData());
    set(CURLOPT_TIMEOUT_MS,
        static_cast<long>(std::min<qint64>(timeout, std::numeric_limits<int>::max())));
    set(CURLOPT_FRESH_CONNECT, idleConnectionIsDirty() ? 1L : 0L);
    auto response = perform();
    set(CURLOPT_HTTPHEADER, static_cast<curl_slist *>(nullptr));
    return response;
}

/// Whether something has arrived on the kept connection since the last answer. Nothing may, so it
/// is the connection's end, which libcurl overlooks behind a TLS record.
bool RestClient::Connection::idleConnectionIsDirty() const
{
    auto socket = CURL_SOCKET_BAD;
    if (curl_easy_getinfo(handle, CURLINFO_ACTIVESOCKET, &socket) != CURLE_OK ||
        socket == CURL_SOCKET_BAD)
        return false;
    pollfd state{socket, POLLIN, 0};
    return ::poll(&state, 1, 0) != 0;
}

http::Response RestClient::Connection::perform()
{
    answer = {};
    received = 0;
    sentBefore.reset();
    headComplete = false;
    errorText.front() = '\0';
    auto code = curl_easy_perform(handle);
    if (code == CURLE_ABORTED_BY_CALLBACK) { // a repetition was refused
        code = CURLE_GOT_NOTHING;
        errorText.front() = '\0';
    }
    if (received > maximumAnswerSize)
        error = QStringLiteral("the answer is longer than %1 bytes").arg(maximumAnswerSize);
    else if (code != CURLE_OK)
        error = proxy.harmless(
            QString::fromUtf8(errorText.front() ? errorText.data() : curl_easy_strerror(code)));
    else if (isAnswerCut())
        error = QStringLiteral("the answer is cut");
    if (!error.isEmpty()) {
        error += proxy.note();
        return {0, code == CURLE_OK ? CURLE_PARTIAL_FILE : code, {}};
    }
    long httpCode = 0;
    curl_easy_getinfo(handle, CURLINFO_RESPONSE_CODE, &httpCode);
    constexpr long tooManyRequests = 429;
    constexpr long unavailable = 503;
    if (httpCode == tooManyRequests ||
        httpCode == unavailable) { // elsewhere it means another thing
        curl_off_t seconds = 0;
        curl_easy_getinfo(handle, CURLINFO_RETRY_AFTER, &seconds);
        retryAfter = std::chrono::seconds(seconds);
    }
    return {static_cast<int>(httpCode), code, std::exchange(answer, {})};
}

/// Whether the connection ended inside the answer where libcurl cannot know or does not mind: in
/// the head, or in a body that lasts until the connection ends.
bool RestClient::Connection::isAnswerCut() const
{
    if (!headComplete)
        return true;
    const auto begin = answer.trimmed().left(1);
    const auto isLengthKnown = hasHeader("Content-Length") || hasHeader("Transfer-Encoding");
    return !isLengthKnown && (begin == "{" || begin == "[") &&
           QJsonDocument::fromJson(answer).isNull();
}

bool RestClient::Connection::hasHeader(const char *name) const
{
    curl_header *found = nullptr;
    return curl_easy_header(handle, name, 0, CURLH_HEADER, -1, &found) == CURLHE_OK;
}

/// libcurl repeats a request by itself on a fresh connection when a kept one turns out to be dead.
/// It may while nothing of it has gone out, unlike what a proxy was told before: a request that the
/// service may have executed is never sent twice.
int RestClient::Connection::refuseRepetition(void *connection, char * /*peerAddress*/,
                                             char * /*ownAddress*/, int /*peerPort*/,
                                             int /*ownPort*/)
{
    auto *const self = static_cast<Connection *>(connection);
    long sent = 0;
    curl_easy_getinfo(self->handle, CURLINFO_REQUEST_SIZE, &sent);
    if (!self->sentBefore)
        self->sentBefore = sent;
    return sent == *self->sentBefore ? CURL_PREREQFUNC_OK : CURL_PREREQFUNC_ABORT;
}

bool RestClient::Connection::countReceived(size_t size)
{
    received += static_cast<qint64>(size);
    return received <= maximumAnswerSize;
}

size_t RestClient::Connection::receiveHeader(char *from, size_t size, size_t count,
                                             void *connection)
{
    auto *const self = static_cast<Connection *>(connection);
    const auto length = size * count;
    if (!self->countReceived(length))
        return 0;
    const QByteArrayView line(from, static_cast<qsizetype>(length));
    // Several heads come when the first ones are interim.
    self->headComplete = line == "\r\n" || line == "\n";
    return length;
}

size_t RestClient::Connection::receiveBody(char *from, size_t size, size_t count, void *connection)
{
    auto *const self = static_cast<Connection *>(connection);
    const auto length = size * count;
    if (!self->countReceived(length))
        return 0;
    self->answer.append(from, static_cast<qsizetype>(length));
    return length;
}
