#pragma once

namespace simulator {

/// Shuts this process's accepted connections at the local TCP port: the other end reads the end
/// of the stream, and whatever is written here afterwards is lost. With `peerPort` only the
/// connection from that port. The HTTP library keeps its sockets to itself, so they are looked up
/// among the process's descriptors.
void shutConnections(int localPort, int peerPort = 0);

} // namespace simulator
