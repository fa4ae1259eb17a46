#include "host/proxy.h"

#include "host/config.h"

#include <QUrl>

#include <arpa/inet.h>

bool isLoopback(const QString &host)
{
    in_addr address{};
    constexpr int networkBits = 24;
    if (::inet_pton(AF_INET, host.toLatin1().constData(), &address) == 1)
        return ntohl(address.s_addr) >> networkBits == IN_LOOPBACKNET;
    return host == QLatin1String("::1") || host == QLatin1String("localhost") ||
           host.endsWith(QLatin1String(".localhost"));
}

Proxy Proxy::of(const QUrl &url)
{
    if (isLoopback(url.host()))
        return {};
    const auto setting = QStringLiteral("Http:proxy");
    const auto configured = Singleton<Config>::instance()->getText(setting).toUtf8();
    if (!configured.isEmpty())
        return {configured, setting};
    // HTTP_PROXY in capitals is a header's name where programs answer requests.
    const auto names = url.scheme() == QLatin1String("https")
                           ? QList<const char *>{"https_proxy", "HTTPS_PROXY"}
                           : QList<const char *>{"http_proxy"};
    for (const auto *name : names + QList<const char *>{"all_proxy", "ALL_PROXY"}) {
        const auto address = qgetenv(name);
        if (!address.isEmpty())
            return {address, QString::fromLatin1(name)};
    }
    return {};
}

QString Proxy::note() const
{
    if (address.isEmpty())
        return {};
    return QStringLiteral("; %1 sets the proxy %2")
        .arg(source, harmless(QString::fromUtf8(address)));
}

QString Proxy::harmless(QString text) const
{
    const auto end = address.lastIndexOf('@');
    if (end < 0)
        return text;
    const auto scheme = address.indexOf("://");
    const auto begin = scheme < 0 ? 0 : scheme + 3;
    return text.remove(QString::fromUtf8(address.sliced(begin, end + 1 - begin)));
}
