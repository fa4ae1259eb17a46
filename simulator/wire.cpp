#include "simulator/wire.h"

#include <QJsonDocument>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <charconv>
#include <filesystem>
#include <system_error>

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
    std::error_code error;
    for (auto entry = std::filesystem::directory_iterator("/proc/self/fd", error);
         !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        const auto name = entry->path().filename().string();
        int descriptor = -1;
        std::from_chars(name.data(), name.data() + name.size(), descriptor);
        if (portOf(descriptor, getsockname) != localPort)
            continue;
        // The listening socket has no peer.
        const auto peer = portOf(descriptor, getpeername);
        if (peer != 0 && (peerPort == 0 || peer == peerPort))
            shutdown(descriptor, SHUT_RDWR);
    }
}

} // namespace simulator
