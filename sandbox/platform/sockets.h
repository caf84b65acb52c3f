#pragma once

/// Sockets as both systems have them, and the few names in which these differ.

#include <cstddef>

#ifdef _WIN32
#include <winsock2.h>
#include <ws2tcpip.h>
#else
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>
#endif

namespace sandbox {

#ifdef _WIN32

using Socket = SOCKET;
using SocketSize = int;

/// Once before the first socket; the process' end takes it back.
inline bool startSockets() {
    WSADATA data;
    return WSAStartup(MAKEWORD(2, 2), &data) == 0;
}

inline void closeSocket(Socket socket) {
    closesocket(socket);
}

#else

using Socket = int;
using SocketSize = std::size_t;

inline bool startSockets() {
    return true;
}

inline void closeSocket(Socket socket) {
    ::close(socket);
}

#endif

} // namespace sandbox
