#include "simulator/wire.h"

#include <QDir>
#include <QJsonDocument>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

namespace simulator {

namespace {

using AddressOf = int (*)(int, sockaddr *, socklen_t *);

/// 0 when the descriptor is no IPv4 socket with such an address.
int portOf(int descriptor, AddressOf addressOf)
{
    sockaddr_in address{};
    socklen_t size = sizeof(address);
    if (addressOf(descriptor, reinterpret_cast<sockaddr *>(&address), &size) != 0 ||
        address.sin_family != AF_INET)
        return 0;
    return ntohs(address.sin_port);
}

} // namespace

QByteArray bytes(const std::string &text)
{
    return {text.data(), static_cast<qsizetype>(text.size())};
}

QByteArray bodyBytes(const QJsonObject &body)
{
    return body.isEmpty() ? QByteArray() : QJsonDocument(body).toJson(QJsonDocument::Compact);
}

void send(const Answer &answer, httplib::Response &response)
{
    response.status = answer.httpCode;
    response.set_content(bodyBytes(answer.body).toStdString(), jsonType);
}

void refuse(httplib::Response &response)
{
    send(protocolError(403, QStringLiteral("Only the service's own page may ask this")), response);
}

void shutConnections(int localPort, int peerPort)
{
    const QDir descriptors(QStringLiteral("/proc/self/fd"));
    for (const auto &name : descriptors.entryList(QDir::Files | QDir::System)) {
        const int descriptor = name.toInt();
        if (portOf(descriptor, getsockname) != localPort)
            continue;
        // The listening socket has no peer.
        const auto peer = portOf(descriptor, getpeername);
        if (peer != 0 && (peerPort == 0 || peer == peerPort))
            shutdown(descriptor, SHUT_RDWR);
    }
}

} // namespace simulator
