#pragma once

#include <QString>

#include <chrono>
#include <functional>
#include <optional>

namespace simulator {

/// How a simulated service is reached and what it asks of its clients.
struct Options
{
    int port = 0; ///< 0 takes any free port.
    QString endpoint = QStringLiteral("till-demo");
    QString secretKey = QStringLiteral("demo-secret");
    QString stateFile{};       ///< Where the state survives the process; empty keeps it in memory.
    QString certificateFile{}; ///< PEM; with `privateKeyFile` the service speaks TLS.
    QString privateKeyFile{};  ///< PEM.
    std::chrono::milliseconds codeLifetime = std::chrono::minutes(5);
    std::chrono::seconds keepAlive{30}; ///< How long an idle connection is kept.
    std::optional<quint32> seed{};      ///< Makes the SMS codes the same in every run.
    int capacity = 0;                   ///< Operations a second that it bears; 0 for any number.
    /// Prints every request with the operation's answer, and before it the fault that is played.
    bool verbose = false;
    /// Receives one text per call, from any thread; texts never hold the secret key. It may ask
    /// the simulator. May be empty.
    std::function<void(const QString &text)> print{};
};

} // namespace simulator
