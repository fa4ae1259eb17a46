#pragma once

#include "simulator/answer.h"

#include <QByteArray>

#include <httplib.h>

/// Between the HTTP library's texts and ours; included only where the library itself is used.
namespace simulator {

inline constexpr auto jsonType = "application/json; charset=utf-8";

QByteArray bytes(const std::string &text);
/// The JSON of an answer; no byte for an empty object.
QByteArray bodyBytes(const QJsonObject &body);
void send(const Answer &answer, httplib::Response &response);
/// Refuses what a page from elsewhere has a browser ask.
void refuse(httplib::Response &response);

/// Shuts this process's accepted connections at the local TCP port: the other end reads the end
/// of the stream, and whatever is written here afterwards is lost. With `peerPort` only the
/// connection from that port. The HTTP library keeps its sockets to itself, so they are looked up
/// among the process's descriptors.
void shutConnections(int localPort, int peerPort = 0);

} // namespace simulator
