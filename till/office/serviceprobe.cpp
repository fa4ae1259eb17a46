#include "till/office/serviceprobe.h"

#include <host/config.h>
#include <host/proxy.h>

#include <QFile>
#include <QHash>
#include <QTimeZone>
#include <QUrl>

#include <array>
#include <curl/curl.h>
#include <memory>

namespace till {

namespace {

struct HandleDeleter
{
    void operator()(CURL *handle) const { curl_easy_cleanup(handle); }
};
using Handle = std::unique_ptr<CURL, HandleDeleter>;

size_t discard(char * /*from*/, size_t size, size_t count, void * /*into*/)
{
    return size * count;
}

QList<ShownCertificate> shownChain(CURL *handle)
{
    curl_certinfo *info = nullptr;
    curl_easy_getinfo(handle, CURLINFO_CERTINFO, &info);
    QList<ShownCertificate> chain;
    for (int i = 0; info && i < info->num_of_certs; ++i) {
        QHash<QString, QString> lines;
        for (const auto *line = info->certinfo[i]; line; line = line->next) {
            const auto text = QString::fromUtf8(line->data);
            lines.insert(text.section(u':', 0, 0), text.section(u':', 1));
        }
        const auto expires = lines.value(QStringLiteral("Expire date")).toUtf8();
        chain.append({lines.value(QStringLiteral("Subject")), lines.value(QStringLiteral("Issuer")),
                      QDateTime::fromSecsSinceEpoch(curl_getdate(expires.constData(), nullptr),
                                                    QTimeZone::utc())});
    }
    return chain;
}

/// How far a running-out of time had come, or which step a failure belongs to.
ServiceProbe::Failure failureOf(CURLcode code, CURL *handle)
{
    using Failure = ServiceProbe::Failure;
    switch (code) {
    case CURLE_OK:
        return Failure::None;
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY:
        return Failure::Name;
    case CURLE_COULDNT_CONNECT:
        return Failure::Connection;
    case CURLE_SSL_CONNECT_ERROR:
        return Failure::Tls;
    case CURLE_SSL_CACERT_BADFILE:
        return Failure::Authorities;
    case CURLE_PEER_FAILED_VERIFICATION:
        return Failure::Certificate;
    default:
        break;
    }
    curl_off_t named = 0;
    curl_off_t connected = 0;
    curl_easy_getinfo(handle, CURLINFO_NAMELOOKUP_TIME_T, &named);
    curl_easy_getinfo(handle, CURLINFO_CONNECT_TIME_T, &connected);
    if (named == 0)
        return Failure::Name;
    if (connected == 0)
        return Failure::Connection;
    return code == CURLE_OPERATION_TIMEDOUT ? Failure::Silent : Failure::Answer;
}

std::optional<std::chrono::seconds> clockAhead(CURL *handle)
{
    curl_header *date = nullptr;
    if (curl_easy_header(handle, "Date", 0, CURLH_HEADER, -1, &date) != CURLHE_OK)
        return std::nullopt;
    const auto told = curl_getdate(date->value, nullptr);
    if (told < 0)
        return std::nullopt;
    return std::chrono::seconds(QDateTime::currentSecsSinceEpoch() - told);
}

Handle prepare(const QUrl &url, const Proxy &proxy, std::chrono::milliseconds timeout)
{
    Handle handle(curl_easy_init());
    auto *const raw = handle.get();
    const auto set = [raw](CURLoption option, auto value) { curl_easy_setopt(raw, option, value); };
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_URL, url.toEncoded(QUrl::RemoveUserInfo).constData());
    set(CURLOPT_PROTOCOLS_STR, "http,https");
    set(CURLOPT_TIMEOUT_MS, static_cast<long>(timeout.count()));
    set(CURLOPT_PROXY, proxy.address.constData());
    set(CURLOPT_WRITEFUNCTION, discard);
    set(CURLOPT_CERTINFO, 1L);
    const auto authority = Singleton<Config>::instance()->getText(QStringLiteral("Http:caFile"));
    if (!authority.isEmpty())
        set(CURLOPT_CAINFO, QFile::encodeName(authority).constData());
    return handle;
}

void readConnection(CURL *handle, ServiceProbe &probe)
{
    const char *address = nullptr;
    curl_off_t connected = 0;
    curl_easy_getinfo(handle, CURLINFO_PRIMARY_IP, &address);
    curl_easy_getinfo(handle, CURLINFO_CONNECT_TIME_T, &connected);
    probe.address = QString::fromLatin1(address);
    probe.connectTime = std::chrono::milliseconds(connected / 1'000);
}

/// Whether somebody accepts connections and does not speak TLS; a running-out of time in the middle
/// of the handshake looks as if nobody did.
void examineSilence(QUrl url, const Proxy &proxy, std::chrono::milliseconds timeout,
                    ServiceProbe &probe)
{
    constexpr int httpsPort = 443;
    url.setPort(url.port(httpsPort));
    url.setScheme(QStringLiteral("http"));
    const auto handle = prepare(url, proxy, timeout);
    curl_easy_setopt(handle.get(), CURLOPT_CONNECT_ONLY, 1L);
    if (curl_easy_perform(handle.get()) != CURLE_OK)
        return;
    probe.failure = ServiceProbe::Failure::Tls;
    readConnection(handle.get(), probe);
}

/// Looks at a certificate that is not trusted; nothing is sent to its owner.
void examineCertificate(const QUrl &url, const Proxy &proxy, std::chrono::milliseconds timeout,
                        ServiceProbe &probe)
{
    const auto handle = prepare(url, proxy, timeout);
    curl_easy_setopt(handle.get(), CURLOPT_CONNECT_ONLY, 1L);
    curl_easy_setopt(handle.get(), CURLOPT_SSL_VERIFYHOST, 0L);
    probe.isOfOtherHost = curl_easy_perform(handle.get()) == CURLE_OK;
    if (!probe.isOfOtherHost) {
        curl_easy_setopt(handle.get(), CURLOPT_SSL_VERIFYPEER, 0L);
        curl_easy_perform(handle.get());
    }
    probe.chain = shownChain(handle.get());
}

} // namespace

ServiceProbe probeService(const QUrl &url, std::chrono::milliseconds timeout)
{
    const auto proxy = Proxy::of(url);
    const auto handle = prepare(url, proxy, timeout);
    std::array<char, CURL_ERROR_SIZE> errorText{};
    curl_easy_setopt(handle.get(), CURLOPT_ERRORBUFFER, errorText.data());
    const auto code = curl_easy_perform(handle.get());

    ServiceProbe probe;
    probe.failure = failureOf(code, handle.get());
    if (code != CURLE_OK)
        probe.reason = proxy.harmless(
            QString::fromUtf8(errorText.front() ? errorText.data() : curl_easy_strerror(code)));
    readConnection(handle.get(), probe);
    probe.clockAhead = clockAhead(handle.get());
    if (probe.failure == ServiceProbe::Failure::Certificate)
        examineCertificate(url, proxy, timeout, probe);
    else if (code == CURLE_OPERATION_TIMEDOUT && url.scheme() == QLatin1String("https") &&
             probe.failure == ServiceProbe::Failure::Connection)
        examineSilence(url, proxy, timeout, probe);
    else
        probe.chain = shownChain(handle.get());
    return probe;
}

} // namespace till
