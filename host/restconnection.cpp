#include "host/restconnection.h"

#include "host/config.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QUrl>

#include <log4qt/logger.h>
#include <log4qt/logmanager.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <poll.h>
#include <tl/expected.hpp>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

void warn(const QString &text)
{
    Log4Qt::LogManager::logger(u"till.http"_s)->warn(text);
}

struct ListDeleter
{
    void operator()(curl_slist *list) const { curl_slist_free_all(list); }
};
using HeaderList = std::unique_ptr<curl_slist, ListDeleter>;

/// The headers in libcurl's form, or the reason why one must not be sent.
tl::expected<HeaderList, QString> headerList(const QHash<QString, QString> &headers)
{
    static const QRegularExpression token(uR"(^[!#$%&'*+.^_`|~0-9A-Za-z-]+\z)"_s);
    const auto isControl = [](QChar character) {
        return (character < u' ' && character != u'\t') || character == u'\x7F';
    };
    // An empty "Expect" saves the round trip of "100 Continue".
    HeaderList list(curl_slist_append(nullptr, "Expect:"));
    const auto append = [&list](const QString &line) {
        // Without memory libcurl returns null and keeps the list as it was.
        if (auto *const longer = curl_slist_append(list.get(), line.toUtf8().constData())) {
            [[maybe_unused]] auto *const shorter = list.release();
            list.reset(longer);
        }
    };
    for (auto header = headers.cbegin(); header != headers.cend(); ++header) {
        const auto &value = header.value();
        if (!token.match(header.key()).hasMatch() || std::ranges::any_of(value, isControl))
            return tl::unexpected(
                u"a header's name or value holds a character that is not allowed"_s);
        // libcurl drops a header with nothing after the colon; a semicolon sends it empty.
        append(header.key() + (value.trimmed().isEmpty() ? u";"_s : u": "_s + value));
    }
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
    // HTTP/2 has its own retries, which could send a body twice.
    set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    // Otherwise libcurl would keep a dead connection beside the fresh one and use it again.
    set(CURLOPT_MAXCONNECTS, 1L);
    set(CURLOPT_TCP_NODELAY, 1L);
    set(CURLOPT_TCP_KEEPALIVE, 1L);
    set(CURLOPT_TCP_KEEPIDLE, 20L);
    set(CURLOPT_TCP_KEEPINTVL, 5L);
    // Without this, a time-out during name resolution would still wait for the resolver.
    set(CURLOPT_QUICK_EXIT, 1L);
    set(CURLOPT_POST, 1L);
    set(CURLOPT_PREREQFUNCTION, refuseRepetition);
    set(CURLOPT_PREREQDATA, this);
    set(CURLOPT_HEADERFUNCTION, receiveHeader);
    set(CURLOPT_HEADERDATA, this);
    set(CURLOPT_WRITEFUNCTION, receiveBody);
    set(CURLOPT_WRITEDATA, this);
    trustConfiguredAuthority();
    setProxy();
}

void RestClient::Connection::warnOfOption(CURLoption option, CURLcode code)
{
    warn(u"libcurl refuses option %1: %2"_s.arg(option).arg(
        QLatin1StringView(curl_easy_strerror(code))));
}

void RestClient::Connection::trustConfiguredAuthority()
{
    const auto file = Singleton<Config>::instance()->getText(u"Http:caFile"_s);
    if (file.isEmpty())
        return;
    // The system's directory of authorities stays in use too.
    set(CURLOPT_CAINFO, QFile::encodeName(file).constData());
    if (const QFileInfo info(file); !info.isFile() || !info.isReadable())
        warn(u"%1: the certificate authority of the setting \"Http:caFile\" cannot be read, https "
             "will not work"_s.arg(file));
}

/// Without the setting libcurl uses the environment, whose proxy may cover loopback too.
void RestClient::Connection::setProxy()
{
    const auto setting = Singleton<Config>::instance()->getText(u"Http:proxy"_s);
    if (!setting.isEmpty())
        set(CURLOPT_PROXY, setting.toUtf8().constData());
    auto exceptions = qgetenv(qEnvironmentVariableIsSet("no_proxy") ? "no_proxy" : "NO_PROXY");
    if (exceptions != "*")
        exceptions = "localhost,127.0.0.0/8,::1," + exceptions;
    set(CURLOPT_NOPROXY, exceptions.constData());
}

http::Response RestClient::Connection::exchange(const QUrl &url, const QByteArray &body,
                                                const QHash<QString, QString> &headers,
                                                qint64 timeout)
{
    error.clear();
    retryAfter = {};
    if (!handle) {
        error = u"libcurl cannot be initialised"_s;
        return {0, CURLE_FAILED_INIT, {}};
    }
    const auto scheme = url.scheme();
    if (!url.isValid() || url.host().isEmpty() || (scheme != "http"_L1 && scheme != "https"_L1)) {
        error = u"expected an http or https URL with a host"_s;
        return {0, CURLE_URL_MALFORMAT, {}};
    }
    const auto list = headerList(headers);
    if (!list) {
        error = list.error();
        return {0, CURLE_BAD_FUNCTION_ARGUMENT, {}};
    }

    set(CURLOPT_URL, url.toEncoded(QUrl::RemoveFragment).constData());
    set(CURLOPT_HTTPHEADER, list->get());
    // As one piece, a body of usual size leaves in one segment with the head.
    set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body.size()));
    set(CURLOPT_POSTFIELDS, body.constData());
    set(CURLOPT_TIMEOUT_MS,
        static_cast<long>(std::min<qint64>(timeout, std::numeric_limits<int>::max())));
    set(CURLOPT_FRESH_CONNECT, idleConnectionIsDirty() ? 1L : 0L);
    auto response = perform();
    set(CURLOPT_HTTPHEADER, static_cast<curl_slist *>(nullptr));
    return response;
}

/// Whether anything has arrived on the kept connection since the last answer. That can only be the
/// connection's end, which libcurl overlooks behind a TLS record.
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
    if (code == CURLE_ABORTED_BY_CALLBACK) { // a retry was refused
        code = CURLE_GOT_NOTHING;
        errorText.front() = '\0';
    }
    // An "@" may stand behind a proxy's password.
    const auto isTold = errorText.front() && !std::ranges::count(errorText, '@');
    if (received > maximumAnswerSize)
        error = u"the answer is longer than %1 bytes"_s.arg(maximumAnswerSize);
    else if (code != CURLE_OK)
        error = QString::fromUtf8(isTold ? errorText.data() : curl_easy_strerror(code));
    else if (isAnswerCut())
        error = u"the answer is cut"_s;
    if (!error.isEmpty()) {
        error += peerNote();
        return {0, code == CURLE_OK ? CURLE_PARTIAL_FILE : code, {}};
    }
    long httpCode = 0;
    curl_easy_getinfo(handle, CURLINFO_RESPONSE_CODE, &httpCode);
    constexpr long tooManyRequests = 429;
    constexpr long unavailable = 503;
    if (httpCode == tooManyRequests ||
        httpCode == unavailable) { // with other codes Retry-After means something else
        curl_off_t seconds = 0;
        curl_easy_getinfo(handle, CURLINFO_RETRY_AFTER, &seconds);
        retryAfter = std::chrono::seconds(seconds);
    }
    return {static_cast<int>(httpCode), code, std::exchange(answer, {})};
}

QString RestClient::Connection::peerNote() const
{
    const char *address = nullptr;
    long port = 0;
    curl_easy_getinfo(handle, CURLINFO_PRIMARY_IP, &address);
    curl_easy_getinfo(handle, CURLINFO_PRIMARY_PORT, &port);
    return address && *address ? u"; the peer is %1 port %2"_s.arg(QLatin1StringView(address),
                                                                   QString::number(port))
                               : QString();
}

/// Whether the connection broke inside the answer where libcurl does not notice: in the head, or in
/// a body without a length.
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

/// libcurl retries a request on a fresh connection when a kept one turns out to be dead. Allowed
/// only while no byte of the request has been sent (bytes to a proxy before it do not count),
/// because the service might execute a second copy.
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
    // There may be interim heads before the final one, and trailers after a chunked body.
    if (line.startsWith("HTTP/"))
        self->headComplete = false;
    else if (line == "\r\n" || line == "\n")
        self->headComplete = true;
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
