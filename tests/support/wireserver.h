#pragma once

#include <QByteArray>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

/// The server's reply to one request.
struct Reply
{
    QByteArray bytes;
    bool closes = false;
    int dripMilliseconds = 0; ///< Pause before every byte.
};

inline QByteArray okReply(const QByteArray &body)
{
    return "HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" +
           body;
}

/// Answers each request with scripted bytes and repeats the last reply. Serves one connection at a
/// time.
class WireServer
{
public:
    explicit WireServer(std::vector<Reply> script)
        : script(std::move(script))
        , listener(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto *const any = reinterpret_cast<sockaddr *>(&address);
        if (::bind(listener, any, size) == 0 && ::listen(listener, 8) == 0 &&
            ::getsockname(listener, any, &size) == 0)
            port = ntohs(address.sin_port);
        thread = std::thread([this] { run(); });
    }
    ~WireServer()
    {
        stopping = true;
        thread.join();
        ::close(listener);
    }
    Q_DISABLE_COPY_MOVE(WireServer)

    int port = 0;
    std::atomic<int> connections = 0;
    std::atomic<int> requests = 0;
    std::atomic<int> closes = 0; ///< Connections that the server closed.
    QByteArray received() const
    {
        const std::scoped_lock lock(mutex);
        return bytes;
    }

private:
    void run()
    {
        while (awaits(listener)) {
            const auto socket = ::accept(listener, nullptr, nullptr);
            ++connections;
            while (readRequest(socket) && answer(socket)) {
            }
            ::close(socket);
            ++closes;
        }
    }

    bool awaits(int socket) const
    {
        pollfd state{socket, POLLIN, 0};
        while (!stopping) {
            if (::poll(&state, 1, 10) > 0)
                return true;
        }
        return false;
    }

    /// Reads a request or the beginning of a TLS handshake.
    bool readRequest(int socket)
    {
        QByteArray request;
        std::array<char, 65536> part{};
        while (awaits(socket)) {
            const auto length = ::recv(socket, part.data(), part.size(), 0);
            if (length <= 0)
                return false;
            request.append(part.data(), length);
            const auto head = request.indexOf("\r\n\r\n");
            const auto field = request.indexOf("Content-Length: ");
            const auto body = field < 0 ? 0 : std::atoi(request.constData() + field + 16);
            if (request.startsWith('\x16') || (head >= 0 && request.size() >= head + 4 + body)) {
                const std::scoped_lock lock(mutex);
                bytes += request;
                return true;
            }
        }
        return false;
    }

    bool answer(int socket)
    {
        const auto index = static_cast<size_t>(requests++);
        const auto &reply = script.at(std::min(index, script.size() - 1));
        const auto step = reply.dripMilliseconds > 0 ? 1 : reply.bytes.size();
        for (qsizetype sent = 0; sent < reply.bytes.size() && !stopping; sent += step) {
            std::this_thread::sleep_for(std::chrono::milliseconds(reply.dripMilliseconds));
            if (::send(socket, reply.bytes.constData() + sent, static_cast<size_t>(step),
                       MSG_NOSIGNAL) != step)
                return false;
        }
        return !reply.closes;
    }

    std::vector<Reply> script;
    int listener;
    std::thread thread;
    std::atomic<bool> stopping = false;
    mutable std::mutex mutex;
    QByteArray bytes;
};
