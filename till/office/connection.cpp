#include "till/office/connection.h"

#include "till/core/settingtable.h"
#include "till/office/finding.h"

#include <QFile>
#include <QHash>
#include <QTimeZone>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace till {

namespace {

size_t discard(char * /*from*/, size_t size, size_t count, void * /*into*/)
{
    return size * count;
}

} // namespace

Connection::Connection(const QUrl &url)
{
    const auto set = [this](CURLoption option, auto value) {
        curl_easy_setopt(handle.get(), option, value);
    };
    findProxy(url);
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_ERRORBUFFER, errorText.data());
    set(CURLOPT_URL, url.toEncoded(QUrl::RemoveUserInfo).constData());
    set(CURLOPT_PROTOCOLS_STR, "http,https");
    set(CURLOPT_TIMEOUT, static_cast<long>(settingNumber("LmMindbox:timeout"_L1)));
    set(CURLOPT_PROXY, proxyAddress.toUtf8().constData());
    set(CURLOPT_WRITEFUNCTION, discard);
    set(CURLOPT_CERTINFO, 1L);
    if (const auto authority = settingText("Http:caFile"_L1); !authority.isEmpty())
        set(CURLOPT_CAINFO, QFile::encodeName(authority).constData());
}

/// Finds the proxy that libcurl takes for that URL.
void Connection::findProxy(const QUrl &url)
{
    if (isLoopback(url.host()))
        return;
    source = u"Http:proxy"_s;
    proxyAddress = settingText("Http:proxy"_L1);
    const auto scheme = url.scheme();
    // Not HTTP_PROXY: a CGI program gets the request header "Proxy" under that name.
    const auto capitals = scheme == "https"_L1 ? u"HTTPS_PROXY"_s : u"all_proxy"_s;
    for (const auto &name : {scheme + "_proxy"_L1, capitals, u"all_proxy"_s, u"ALL_PROXY"_s}) {
        if (proxyAddress.isEmpty()) {
            source = name;
            proxyAddress = qEnvironmentVariable(name.toLatin1().constData());
        }
    }
}

QString Connection::words() const
{
    return QString::fromUtf8(errorText.front() ? errorText.data() : curl_easy_strerror(result));
}

bool Connection::isProxyLoginWanted() const
{
    constexpr long loginWanted = 407;
    return info<long>(CURLINFO_HTTP_CONNECTCODE) == loginWanted ||
           info<long>(CURLINFO_RESPONSE_CODE) == loginWanted;
}

std::optional<Connection::Certificate> Connection::certificate() const
{
    std::optional<Certificate> first;
    const auto *const chain = info<curl_certinfo *>(CURLINFO_CERTINFO);
    for (int i = 0; chain && i < chain->num_of_certs; ++i) {
        QHash<QString, QString> lines;
        for (const auto *line = chain->certinfo[i]; line; line = line->next) {
            const auto text = QString::fromUtf8(line->data);
            lines.insert(text.section(u':', 0, 0), text.section(u':', 1));
        }
        const auto end = lines.value(u"Expire date"_s).toUtf8();
        const auto expires =
            QDateTime::fromSecsSinceEpoch(curl_getdate(end.constData(), nullptr), QTimeZone::utc());
        if (!first || expires < first->expires)
            first = {lines.value(u"Subject"_s), lines.value(u"Issuer"_s), expires};
    }
    return first;
}

std::optional<qint64> Connection::clockAhead() const
{
    curl_header *date = nullptr;
    if (curl_easy_header(handle.get(), "Date", 0, CURLH_HEADER, -1, &date) != CURLHE_OK)
        return std::nullopt;
    const auto told = curl_getdate(date->value, nullptr);
    return told < 0 ? std::nullopt : std::optional(QDateTime::currentSecsSinceEpoch() - told);
}

} // namespace till
