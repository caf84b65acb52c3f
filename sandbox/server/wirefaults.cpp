#include "sandbox/server/wirefaults.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace sandbox {
namespace {

constexpr std::size_t wholePiece = 65536;
constexpr int firstRedirect = 300;
constexpr int firstError = 400;
constexpr int noContent = 204;

/// How the bytes of an answer go out.
struct Way {
    std::size_t size;        ///< bytes that do
    bool isAnnounced = true; ///< the whole length
    bool isChunked = false;
    bool isReset = false; ///< in place of an end
    std::size_t piece = wholePiece;
    std::chrono::milliseconds pause{0};
    std::optional<std::size_t> holdAt = {};
};

Way wayOf(const Fault& fault, const Answer& answer) {
    Way way{answer.body.size()};
    const auto number = [&](const char* name) {
        return static_cast<std::size_t>(fault.number(name));
    };
    if (fault.name == "broken" || fault.name == "cut") {
        way.size = number("byte");
        way.isReset = fault.name == "broken";
        way.isAnnounced = way.isReset || fault.flag("announced");
    } else if (fault.name == "chunked" || fault.name == "slow") {
        way.piece = number("size");
        way.isChunked = fault.name == "chunked";
        way.pause = std::chrono::milliseconds(way.isChunked ? 0 : fault.number("ms"));
    } else if (fault.name == "hold") {
        way.holdAt = number("byte");
    }
    return way;
}

std::string headOf(const Answer& answer, const Way& way) {
    std::string head = "HTTP/1.1 " + std::to_string(answer.status) + " As the fault has it\r\n" +
                       "Connection: close\r\n";
    if (answer.status >= firstRedirect && answer.status < firstError) {
        head += "Location: /elsewhere\r\n";
    }
    if (answer.status == noContent) {
        return head + "\r\n";
    }
    head += "Content-Type: " + answer.type + "\r\n";
    if (way.isChunked) {
        head += "Transfer-Encoding: chunked\r\n";
    } else if (way.isAnnounced) {
        head += "Content-Length: " + std::to_string(answer.body.size()) + "\r\n";
    }
    return head + "\r\n";
}

std::string chunkHead(std::size_t size) {
    constexpr const char* digits = "0123456789abcdef";
    std::string text;
    for (; size > 0; size /= 16) {
        text.insert(text.begin(), digits[size % 16]);
    }
    return text + "\r\n";
}

/// Bytes of the next piece: up to the next place where something happens.
std::size_t nextLength(const Way& way, std::size_t offset) {
    std::size_t end = std::min(way.size, offset + way.piece);
    if (way.holdAt && offset < *way.holdAt) {
        end = std::min(end, *way.holdAt);
    }
    return end - offset;
}

void sendBody(const std::string& body, const Way& way, const Transfer& transfer,
              Connection& connection) {
    for (std::size_t offset = 0; offset < way.size;) {
        if (way.holdAt == offset) {
            transfer.gate.pass(transfer.ticket);
        }
        const std::size_t length = nextLength(way, offset);
        std::string piece = body.substr(offset, length);
        if (way.isChunked) {
            piece = chunkHead(length).append(piece).append("\r\n");
        }
        offset += length;
        if (transfer.told) {
            transfer.told(offset);
        }
        if (transfer.stopping || !connection.sendAll(piece)) {
            return;
        }
        std::this_thread::sleep_for(way.pause);
    }
    if (way.isChunked) {
        connection.sendAll("0\r\n\r\n");
    }
}

} // namespace

void sendWithFault(const Fault& fault, const Answer& answer, const Transfer& transfer,
                   Connection& connection) {
    if (fault.name == "silent") {
        connection.awaitClient(fault.has("ms") ? std::optional(fault.number("ms")) : std::nullopt,
                               transfer.stopping);
    } else if (fault.name != "refused") {
        const Way way = wayOf(fault, answer);
        if (connection.sendAll(headOf(answer, way)) && answer.status != noContent) {
            sendBody(answer.body, way, transfer, connection);
        }
    }
    if (fault.name == "refused" || fault.name == "broken") {
        connection.endByReset();
    } else {
        connection.end();
    }
}

} // namespace sandbox
