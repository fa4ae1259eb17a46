#pragma once

#include "host/export.h"

#include <QByteArray>
#include <QString>

class QUrl;

/// Whether the host, as a URL names it, is this machine by its loopback.
HOST_EXPORT bool isLoopback(const QString &host);

/// The proxy that stands between the till and a service.
struct HOST_EXPORT Proxy
{
    QByteArray address; ///< As it was set; empty for none.
    QString source;     ///< The setting or environment variable that names it.

    /// For an exchange with that URL: none for loopback, else that of the setting "Http:proxy",
    /// else that of the environment (http_proxy, https_proxy, all_proxy). Hosts that "no_proxy"
    /// names are the transport's to except.
    static Proxy of(const QUrl &url);

    /// Names the proxy behind the description of a failure; empty for none.
    QString note() const;
    /// The text without the credentials that the proxy's address may hold.
    QString harmless(QString text) const;
};
