#include "simulator/httpserver.h"

#include <QFile>
#include <QRegularExpression>
#include <QSslCertificate>
#include <QSslKey>
#include <QSslSocket>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <utility>

namespace simulator {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds longestPart =
    5s; // Between two parts of a request or an answer.
constexpr qsizetype longestHead = 65'536;
constexpr qsizetype longestBody = 64'000'000;
constexpr QByteArrayView headEnd = "\r\n\r\n";

/// A request without its body; one without a method when the head is malformed.
Request readHead(const QString &head)
{
    static const QRegularExpression start(uR"(^([A-Z]+) (/[^ ?]*)\??([^ ]*) HTTP/1\.1$)"_s);
    static const QRegularExpression field(uR"(^([^\s:]+):[ \t]*(.*?)[ \t]*$)"_s);
    auto lines = head.split(u"\r\n"_s);
    const auto first = start.match(lines.takeFirst());
    if (!first.hasMatch())
        return {};
    Request request{.method = first.captured(1),
                    .path = QUrl::fromPercentEncoding(first.captured(2).toUtf8()),
                    .query = QUrlQuery(first.captured(3).replace(u'+', "%20"_L1)),
                    .head = first.captured() + "\r\n"_L1};
    for (const auto &line : lines) {
        const auto header = field.match(line);
        if (!header.hasMatch())
            return {};
        const auto name = header.captured(1).toLower();
        request.headers.insert(name, header.captured(2));
        request.head += (name == "authorization"_L1 ? u"Authorization: …"_s : line) + "\r\n"_L1;
    }
    return request;
}

} // namespace

Connection::Connection(const HttpServer &server, int descriptor, int number)
    : number(number)
    , server(server)
    , socket(server.certificate ? std::make_unique<QSslSocket>() : std::make_unique<QTcpSocket>())
{
    socket->setSocketDescriptor(descriptor);
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    if (server.certificate) {
        auto &secured = static_cast<QSslSocket &>(*socket);
        secured.setSslConfiguration(*server.certificate);
        secured.startServerEncryption();
    }
}

Connection::~Connection()
{
    socket->disconnectFromHost();
    if (socket->state() != QAbstractSocket::UnconnectedState)
        socket->waitForDisconnected(1000);
}

std::optional<Request> Connection::next()
{
    auto end = received.indexOf(headEnd);
    while (end < 0 && received.size() < longestHead && !isLast) {
        if (!receive(received.isEmpty() ? server.idle : longestPart))
            return {};
        end = received.indexOf(headEnd);
    }
    if (end < 0 || isLast)
        return {};
    auto request = readHead(QString::fromUtf8(received.first(end)));
    received.remove(0, end + headEnd.size());
    bool isNumber = true;
    const auto lengths = request.headers.values(u"content-length"_s).join(u',');
    const auto length = lengths.isEmpty() ? 0 : qsizetype(lengths.toUInt(&isNumber));
    if (!isNumber || length > longestBody || request.headers.contains(u"transfer-encoding"_s))
        request = {};
    isLast = request.method.isEmpty() || request.has(u"connection"_s, u"close"_s);
    if (request.method.isEmpty())
        return request;
    if (request.has(u"expect"_s, u"100-continue"_s))
        send("HTTP/1.1 100 Continue\r\n\r\n");
    while (received.size() < length) {
        if (!receive(longestPart))
            return {};
    }
    request.body = received.first(length);
    received.remove(0, length);
    return request;
}

bool Connection::receive(std::chrono::milliseconds atMost)
{
    if (!socket->waitForReadyRead(int(atMost.count())))
        return false;
    received += socket->readAll();
    return true;
}

bool Connection::send(const QByteArray &bytes)
{
    socket->write(bytes);
    while (socket->bytesToWrite() > 0) {
        if (!socket->waitForBytesWritten(int(longestPart.count())))
            return false;
    }
    return socket->state() == QAbstractSocket::ConnectedState;
}

bool HttpServer::useCertificate(const QString &certificateFile, const QString &privateKeyFile)
{
    const auto chain = QSslCertificate::fromPath(certificateFile);
    QFile file(privateKeyFile);
    if (chain.isEmpty() || !file.open(QIODevice::ReadOnly))
        return false;
    const QSslKey key(&file, chain.first().publicKey().algorithm());
    certificate.emplace();
    certificate->setLocalCertificateChain(chain);
    certificate->setPrivateKey(key);
    return !key.isNull();
}

int HttpServer::listen(int port)
{
    sockaddr_in address{.sin_family = AF_INET,
                        .sin_port = htons(quint16(port)),
                        .sin_addr = {htonl(INADDR_LOOPBACK)},
                        .sin_zero = {}};
    auto *const any = reinterpret_cast<sockaddr *>(&address);
    socklen_t size = sizeof(address);
    const int on = 1;
    listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (listener < 0 || ::setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &on, sizeof(on)) != 0 ||
        ::bind(listener, any, size) != 0 || ::listen(listener, SOMAXCONN) != 0 ||
        ::getsockname(listener, any, &size) != 0)
        return 0;
    accepting = std::thread(&HttpServer::acceptConnections, this);
    return ntohs(address.sin_port);
}

bool HttpServer::pause(std::chrono::nanoseconds time) const
{
    const auto stop = stopping.get_token();
    std::mutex unshared;
    std::unique_lock lock(unshared);
    std::condition_variable_any().wait_for(lock, stop, time, [] { return false; });
    return !stop.stop_requested();
}

void HttpServer::acceptConnections()
{
    for (int number = 1; !stopping.stop_requested();) {
        const int socket = ::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (socket < 0) {
            // No descriptor is free, for example.
            pause(10ms);
            continue;
        }
        const std::lock_guard lock(mutex);
        sockets.insert(socket);
        std::thread(&HttpServer::serveConnection, this, socket, number++).detach();
    }
}

void HttpServer::serveConnection(int socket, int number)
{
    std::optional<Connection> connection(std::in_place, *this, socket, number);
    while (const auto request = connection->next())
        serve(*request, *connection);
    const std::lock_guard lock(mutex);
    // Still locked: a stop must not close another connection with the same descriptor.
    connection.reset();
    sockets.erase(socket);
    ended.notify_all();
}

void HttpServer::stop()
{
    stopping.request_stop();
    ::shutdown(listener, SHUT_RDWR);
    if (accepting.joinable())
        accepting.join();
    ::close(std::exchange(listener, -1));
    std::unique_lock lock(mutex);
    for (const int socket : sockets)
        ::shutdown(socket, SHUT_RDWR);
    ended.wait(lock, [this] { return sockets.empty(); });
}

} // namespace simulator
