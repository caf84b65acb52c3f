#include "sandbox/platform/peersocket.h"

#include <chrono>
#include <linux/sockios.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace sandbox {
namespace {

constexpr int deliveryLooks = 1000; // for bytes on their way
constexpr std::chrono::milliseconds lookPause{1};

bool isReady(int socket, short events, int milliseconds) {
    pollfd one{socket, events, 0};
    return poll(&one, 1, milliseconds) > 0;
}

} // namespace

long receiveFrom(int socket, char* bytes, std::size_t size, int milliseconds) {
    return isReady(socket, POLLIN, milliseconds) ? recv(socket, bytes, size, 0) : -1;
}

long sendTo(int socket, const char* bytes, std::size_t size, int milliseconds) {
    return isReady(socket, POLLOUT, milliseconds) ? send(socket, bytes, size, MSG_NOSIGNAL) : -1;
}

bool isReadable(int socket, int milliseconds) {
    return isReady(socket, POLLIN, milliseconds);
}

bool isClosedByPeer(int socket) {
    char byte = 0;
    return isReady(socket, POLLIN, 0) && recv(socket, &byte, 1, MSG_PEEK | MSG_DONTWAIT) <= 0;
}

void closeInOrder(int socket) {
    shutdown(socket, SHUT_RDWR);
    close(socket);
}

void closeByReset(int socket) {
    // A reset throws away what is still to be sent.
    int waiting = 0;
    for (int i = 0; i < deliveryLooks && ioctl(socket, SIOCOUTQ, &waiting) == 0 && waiting > 0;
         ++i) {
        std::this_thread::sleep_for(lookPause);
    }
    const linger atOnce{1, 0};
    setsockopt(socket, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    close(socket);
}

} // namespace sandbox
