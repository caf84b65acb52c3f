#include "sandbox/materials/setuppackage.h"

#include <charconv>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "sandbox/materials/littleendian.h"

namespace materials {
namespace {

using Json = nlohmann::json;

constexpr std::string_view mark = "XSANDBOX-PACKAGE";
constexpr std::size_t lengthDigits = 16;

std::string inDigits(std::size_t length) {
    static constexpr const char* digits = "0123456789abcdef";
    std::string text(lengthDigits, '0');
    for (std::size_t at = lengthDigits; at > 0; --at, length >>= 4) {
        text[at - 1] = digits[length & 15];
    }
    return text;
}

std::size_t fromDigits(const std::string& text) {
    std::size_t length = 0;
    const char* const end = text.data() + text.size();
    const auto [at, fault] = std::from_chars(text.data(), end, length, 16);
    if (fault != std::errc() || at != end) {
        throw std::runtime_error("the payload's length is no number: " + text);
    }
    return length;
}

std::string textOf(const Bytes& bytes, std::size_t at, std::size_t length) {
    return {reinterpret_cast<const char*>(bytes.data()) + at, length};
}

} // namespace

Bytes buildPackage(Bytes program, const SetupPayload& payload, std::size_t size,
                   std::uint64_t seed) {
    Json files = Json::array();
    Bytes package = std::move(program);
    for (const PackedFile& file : payload.files) {
        files.push_back(
            {{"path", file.path}, {"at", package.size()}, {"size", file.content.size()}});
        append(package, file.content);
    }
    const std::string told =
        Json{{"version", payload.version}, {"fails", payload.fails}, {"files", files}}.dump();
    const std::size_t least = package.size() + told.size() + lengthDigits + mark.size();
    if (least > size) {
        throw std::runtime_error("a package has " + std::to_string(least) +
                                 " bytes at least, more than " + std::to_string(size));
    }
    append(package, randomBytes(size - least, seed));
    appendText(package, told);
    appendText(package, inDigits(told.size()));
    appendText(package, mark);
    return package;
}

std::optional<SetupPayload> readPackage(const Bytes& package) {
    constexpr std::size_t tail = lengthDigits + mark.size();
    if (package.size() < tail ||
        textOf(package, package.size() - mark.size(), mark.size()) != mark) {
        return std::nullopt;
    }
    const std::size_t end = package.size() - tail;
    const std::size_t length = fromDigits(textOf(package, end, lengthDigits));
    if (length > end) {
        throw std::runtime_error("the payload begins before the package");
    }
    const Json told = Json::parse(textOf(package, end - length, length));
    SetupPayload payload{told.at("version"), told.at("fails"), {}};
    for (const Json& file : told.at("files")) {
        const auto at = file.at("at").get<std::size_t>();
        const auto size = file.at("size").get<std::size_t>();
        if (at > end || size > end - at) {
            throw std::runtime_error("a file lies outside the package");
        }
        const auto begin = package.begin() + static_cast<std::ptrdiff_t>(at);
        payload.files.push_back(
            {file.at("path"), Bytes(begin, begin + static_cast<std::ptrdiff_t>(size))});
    }
    return payload;
}

} // namespace materials
