#pragma once

#include <cstddef>

/// The server's end of one connection, by the number of its socket. Native only: the servers
/// of a run are. Each blocks its thread for as long as it says.
namespace sandbox {

/// What the peer has sent next, at most `size` bytes; 0 at its end, below 0 on failure and when
/// nothing comes for that time.
long receiveFrom(int socket, char* bytes, std::size_t size, int milliseconds);

/// Sends what the peer takes of the bytes; below 0 on failure and when it takes none for that
/// time.
long sendTo(int socket, const char* bytes, std::size_t size, int milliseconds);

/// Whether something of the peer, or its end, is there within that time.
bool isReadable(int socket, int milliseconds);

/// Whether the peer has closed its end; what it has sent stays to be received.
bool isClosedByPeer(int socket);

/// Closes so that the peer reads to the end of what was sent.
void closeInOrder(int socket);

/// Closes so that the peer gets all that was sent, and then a reset in place of an end.
void closeByReset(int socket);

} // namespace sandbox
