#pragma once

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "sandbox/platform/sockets.h"

/// A server on loopback that answers one request of a few bytes a connection: "/echo" with
/// the body in brackets, "/hang" not before the server goes, any other path with 404.
class HttpServer {
public:
    HttpServer() {
        sandbox::startSockets();
        listener = socket(AF_INET, SOCK_STREAM, 0);
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        const bool isOpen =
            bind(listener, reinterpret_cast<sockaddr*>(&address), size) == 0 &&
            getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size) == 0 &&
            listen(listener, 5) == 0;
        EXPECT_TRUE(isOpen) << "no port of loopback";
        thread = std::thread([this] { loop(); });
    }
    ~HttpServer() {
        stopped = true;
        const sandbox::Socket waker = socket(AF_INET, SOCK_STREAM, 0);
        EXPECT_EQ(connect(waker, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
        thread.join();
        sandbox::closeSocket(waker);
        sandbox::closeSocket(listener);
        for (const sandbox::Socket client : clients) {
            sandbox::closeSocket(client);
        }
    }
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;

    std::string url(const std::string& path) const {
        return "http://127.0.0.1:" + std::to_string(ntohs(address.sin_port)) + path;
    }

private:
    void loop() {
        while (true) {
            clients.push_back(accept(listener, nullptr, nullptr));
            if (stopped) {
                return;
            }
            serve(clients.back());
        }
    }

    static void serve(sandbox::Socket client) {
        const std::string request = receive(client);
        if (!request.starts_with("POST /hang ")) {
            const std::string answer = answerTo(request);
            send(client, answer.data(), static_cast<sandbox::SocketSize>(answer.size()), 0);
        }
    }

    /// A request with its head and a body of four bytes; less when the client goes.
    static std::string receive(sandbox::Socket client) {
        constexpr sandbox::SocketSize blockSize = 4096;
        char block[blockSize];
        std::string text;
        for (auto end = text.npos; end == text.npos || text.size() < end + 8;
             end = text.find("\r\n\r\n")) {
            const auto size = recv(client, block, blockSize, 0);
            if (size <= 0) {
                break;
            }
            text.append(block, static_cast<std::size_t>(size));
        }
        return text;
    }

    static std::string answerTo(const std::string& request) {
        const bool echo = request.starts_with("POST /echo ");
        const std::string body =
            echo ? std::string("[\0", 2) + request.substr(request.size() - 4) + ']' : "";
        return std::string("HTTP/1.1 ") + (echo ? "200 OK" : "404 Not Found") +
               "\r\nConnection: close\r\nContent-Length: " + std::to_string(body.size()) +
               "\r\n\r\n" + body;
    }

    sandbox::Socket listener;
    sockaddr_in address{};
    std::vector<sandbox::Socket> clients; ///< of the loop's thread until that has ended
    std::atomic<bool> stopped = false;
    std::thread thread;
};
