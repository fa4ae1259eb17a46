#pragma once

#include <QMultiMap>
#include <QSslConfiguration>
#include <QString>
#include <QTcpSocket>
#include <QUrlQuery>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <stop_token>
#include <thread>

namespace simulator {

/// A client's request.
struct Request
{
    QString method{}; ///< Empty when the request cannot be read; nothing follows it.
    QString path{};
    QUrlQuery query{};                     ///< A plus is a blank, as for web servers.
    QMultiMap<QString, QString> headers{}; ///< By name in lower case.
    QString head{};                        ///< As it came, without the value of "Authorization".
    QByteArray body{};

    /// The value in the query; empty when there is none.
    QString item(const QString &name) const
    {
        return query.queryItemValue(name, QUrl::FullyDecoded);
    }
    /// Whether the header stands once, with this value.
    bool has(const QString &header, const QString &value) const
    {
        return headers.values(header) == QStringList{value};
    }
};

class HttpServer;

/// A client's connection, for the thread that serves it.
class Connection
{
public:
    Connection(const HttpServer &server, int descriptor, int number);
    ~Connection();
    Q_DISABLE_COPY_MOVE(Connection)

    const int number; ///< Counted from 1.

    /// Waits for the next request; nothing when none begins in time or it ends in its middle.
    std::optional<Request> next();
    /// Sends all of it. Returns false when the client does not take it.
    bool send(const QByteArray &bytes);
    /// Closes the connection after the current request.
    void end() { isLast = true; }

private:
    bool receive(std::chrono::milliseconds atMost);

    const HttpServer &server;
    const std::unique_ptr<QTcpSocket> socket;
    QByteArray received; ///< Not yet read as a request.
    bool isLast = false;
};

/// An HTTP server on loopback with a thread for each connection, so that no client waits for
/// another one's idle connection.
class HttpServer
{
public:
    using Serve = std::function<void(const Request &request, Connection &connection)>;

    /// `serve` answers a request. A connection is closed when it idles for this time.
    HttpServer(Serve serve, std::chrono::milliseconds idle)
        : serve(std::move(serve))
        , idle(idle)
    {}
    ~HttpServer() { stop(); }
    Q_DISABLE_COPY_MOVE(HttpServer)

    /// Lets the server speak TLS. Returns false when a file cannot be used.
    [[nodiscard]] bool useCertificate(const QString &certificateFile,
                                      const QString &privateKeyFile);
    /// Listens on the port; 0 takes a free one. Returns the port; 0 when it cannot be had.
    [[nodiscard]] int listen(int port);
    /// Waits, at most until a stop. Returns whether the server goes on.
    bool pause(std::chrono::nanoseconds time) const;
    /// Closes every connection, even before its answer, and waits until no request is served.
    void stop();

private:
    friend Connection;

    void acceptConnections();
    void serveConnection(int socket, int number);

    const Serve serve;
    const std::chrono::milliseconds idle;
    std::optional<QSslConfiguration> certificate;
    int listener = -1;
    std::thread accepting;
    std::stop_source stopping;
    std::mutex mutex; ///< Guards the open connections' sockets.
    std::condition_variable ended;
    std::set<int> sockets;
};

} // namespace simulator
