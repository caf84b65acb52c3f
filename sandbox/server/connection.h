#pragma once

#include <array>
#include <atomic>
#include <httplib.h>
#include <optional>
#include <string_view>

namespace sandbox {

/// One connection of the server, from its first request to its last: what the server library
/// reads and writes, and beside it what a faulty server sends. Used by the thread that serves
/// it; closes the socket with the object.
class Connection final : public httplib::Stream {
public:
    explicit Connection(int connected);
    ~Connection() override;
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /// That of the request which this thread serves.
    static Connection& current();

    /// Whether a request comes before the time is over or `running` has become false.
    bool awaitRequest(int milliseconds, const std::function<bool()>& running) const;

    /// Sends the bytes; false when the client takes no more.
    bool sendAll(std::string_view bytes);

    /// From now on nothing goes out, and the connection closes when its request is done.
    void end() { ended = true; }
    void endByReset();
    bool hasEnded() const { return ended; }

    /// Waits until the client closes its end, the time is over, or the server stops.
    void awaitClient(std::optional<std::int64_t> milliseconds,
                     const std::atomic<bool>& stopping) const;

    bool is_readable() const override;
    bool is_writable() const override;
    ssize_t read(char* bytes, std::size_t size) override;
    ssize_t write(const char* bytes, std::size_t size) override;
    void get_remote_ip_and_port(std::string& ip, int& port) const override;
    void get_local_ip_and_port(std::string& ip, int& port) const override;
    socket_t socket() const override { return peer; }

private:
    static constexpr std::size_t bufferSize = 4096;

    const int peer;
    std::array<char, bufferSize> buffer{}; ///< received and not yet read: lines come byte by byte
    std::size_t from = 0;
    std::size_t filled = 0;
    bool ended = false;
    bool isReset = false;
};

/// The library's server on connections of this kind.
class ConnectionServer : public httplib::Server {
private:
    bool process_and_close_socket(socket_t connected) override;
};

} // namespace sandbox
