#include "sandbox/common/clientpath.h"

#include <algorithm>

namespace sandbox {

std::string pathText(const std::filesystem::path& native) {
    const std::u8string text = native.u8string();
    return {text.begin(), text.end()};
}

std::filesystem::path pathOf(const std::string& text) {
    return std::u8string(text.begin(), text.end());
}

std::string toClientPath(const std::filesystem::path& native) {
    std::string path = pathText(native);
    std::replace(path.begin(), path.end(), '/', '\\');
    return path;
}

std::string comparablePath(const std::string& clientPath) {
    std::string key = clientPath;
    for (char& c : key) {
        if (c == '/') {
            c = '\\';
        } else if (c >= 'A' && c <= 'Z') {
            c = static_cast<char>(c - 'A' + 'a');
        }
    }
    return key;
}

bool sameName(const std::string& a, const std::string& b) {
    return comparablePath(a) == comparablePath(b);
}

std::string leafOf(const std::string& clientPath) {
    return clientPath.substr(clientPath.find_last_of("\\/") + 1);
}

} // namespace sandbox
