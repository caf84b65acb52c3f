#include "sandbox/server/connection.h"

#include <algorithm>

#include "sandbox/common/events.h"
#include "sandbox/platform/peersocket.h"

namespace sandbox {
namespace {

constexpr int ioTimeout = 30000; // milliseconds; a client that stands still is given up
constexpr int look = 20;
constexpr const char* loopback = "127.0.0.1";

thread_local Connection* served = nullptr;

} // namespace

Connection::Connection(int connected) : peer(connected) {
    served = this;
}

Connection::~Connection() {
    served = nullptr;
    if (isReset) {
        closeByReset(peer);
    } else {
        closeInOrder(peer);
    }
}

Connection& Connection::current() {
    return *served;
}

bool Connection::awaitRequest(int milliseconds, const std::function<bool()>& running) const {
    for (int waited = 0; waited < milliseconds && running(); waited += look) {
        if (from < filled || isReadable(peer, look)) {
            return true;
        }
    }
    return false;
}

bool Connection::sendAll(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t sent = write(bytes.data(), bytes.size());
        if (sent <= 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

void Connection::endByReset() {
    isReset = true;
    end();
}

void Connection::awaitClient(std::optional<std::int64_t> milliseconds,
                             const std::atomic<bool>& stopping) const {
    const std::int64_t begin = monotonicMilliseconds();
    while (!stopping && !isClosedByPeer(peer) &&
           (!milliseconds || monotonicMilliseconds() - begin < *milliseconds)) {
        isReadable(peer, look);
    }
}

bool Connection::is_readable() const {
    return from < filled || isReadable(peer, ioTimeout);
}

bool Connection::is_writable() const {
    return !ended && !isClosedByPeer(peer);
}

ssize_t Connection::read(char* bytes, std::size_t size) {
    if (from == filled) {
        const long received = receiveFrom(peer, buffer.data(), buffer.size(), ioTimeout);
        if (received <= 0) {
            return received;
        }
        from = 0;
        filled = static_cast<std::size_t>(received);
    }
    const std::size_t taken = std::min(size, filled - from);
    std::copy_n(buffer.data() + from, taken, bytes);
    from += taken;
    return static_cast<ssize_t>(taken);
}

ssize_t Connection::write(const char* bytes, std::size_t size) {
    return ended ? -1 : sendTo(peer, bytes, size, ioTimeout);
}

void Connection::get_remote_ip_and_port(std::string& ip, int& port) const {
    ip = loopback;
    port = 0;
}

void Connection::get_local_ip_and_port(std::string& ip, int& port) const {
    get_remote_ip_and_port(ip, port);
}

bool ConnectionServer::process_and_close_socket(socket_t connected) {
    Connection connection(connected);
    const int keepAlive = static_cast<int>(keep_alive_timeout_sec_) * 1000;
    bool good = true;
    for (std::size_t left = keep_alive_max_count_;
         left > 0 && good && connection.awaitRequest(keepAlive, [this] { return is_running(); });
         --left) {
        bool isLast = false;
        good = process_request(connection, left == 1, isLast, nullptr) && !isLast &&
               !connection.hasEnded();
    }
    return good;
}

} // namespace sandbox
