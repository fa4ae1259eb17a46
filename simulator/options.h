#pragma once

#include <QString>

#include <chrono>
#include <functional>
#include <optional>

namespace simulator {

using namespace Qt::StringLiterals;

/// The options of a simulated service.
struct Options
{
    int port = 0; ///< 0 takes any free port.
    QString endpoint = u"till-demo"_s;
    QString secretKey = u"demo-secret"_s;
    QString stateFile{};       ///< The file of the state; empty keeps the state in memory only.
    QString certificateFile{}; ///< PEM; with `privateKeyFile` the service speaks TLS.
    QString privateKeyFile{};  ///< PEM.
    std::chrono::milliseconds codeLifetime = std::chrono::minutes(5);
    std::chrono::seconds keepAlive{30}; ///< How long an idle connection stays open.
    std::optional<quint32> seed{};      ///< Makes the SMS codes the same in every run.
    int capacity = 0;                   ///< Operations a second; 0 sets no limit.
    /// Receives one text per call, from any thread; a text never holds the secret key. The function
    /// must not call the simulator.
    std::function<void(const QString &text)> print = [](const QString & /*text*/) {};
};

} // namespace simulator
