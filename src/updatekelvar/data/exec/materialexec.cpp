#include "updatekelvar/data/exec/materialexec.h"

#include <algorithm>
#include <string_view>

namespace {

constexpr std::string_view entrySeparator = ")&&(";
constexpr std::string_view processKey = "%process%";
constexpr std::string_view paramKey = "%param%";

} // namespace

int XMaterialExec::parseExec(const std::string& exec) {
    if (exec.empty()) {
        return -1;
    }
    std::size_t start = 0;
    for (std::size_t at = exec.find(entrySeparator); at != std::string::npos;
         at = exec.find(entrySeparator, start)) {
        _parseItem(exec.substr(start, at + 1 - start)); // with its closing bracket
        start = at + entrySeparator.size() - 1;         // the next keeps its opening bracket
    }
    _parseItem(exec.substr(start));
    return 0;
}

int XMaterialExec::getExecMap(XExecMap& out) {
    out = execMap;
    return 0;
}

int XMaterialExec::_parseItem(const std::string& item) {
    if (item.empty()) {
        return -1;
    }
    const std::string process = _findValue(item, std::string(processKey), 0);
    // Looked for from a fixed place on: an entry that begins with its parameter has none.
    const std::string param = _findValue(item, std::string(paramKey), processKey.size());
    std::vector<std::string>& list = execMap[process];
    if (std::find(list.begin(), list.end(), param) == list.end()) {
        list.push_back(param);
    }
    return 0;
}

std::string XMaterialExec::_findValue(const std::string& item, const std::string& key,
                                      std::size_t from) {
    const std::size_t at = item.find(key, from);
    if (at == std::string::npos) {
        return {};
    }
    const std::size_t open = item.find('"', at + key.size());
    if (open == std::string::npos) {
        return {};
    }
    const std::size_t close = item.find('"', open + 1);
    return close == std::string::npos ? std::string() : item.substr(open + 1, close - open - 1);
}
