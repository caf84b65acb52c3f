#include "updatekelvar/data/materialcheck.h"

#include <algorithm>
#include <string_view>

#include "utils/utils.h"

namespace {

constexpr std::string_view clauseSeparator = "&&";

} // namespace

int XMaterialCheck::parse(const std::string& expression) {
    if (expression.empty()) {
        return -1;
    }
    std::size_t start = 0;
    while (start < expression.size()) {
        const std::size_t end =
            std::min(expression.find(clauseSeparator, start), expression.size());
        _parseClause(expression.substr(start, end - start));
        start = end + clauseSeparator.size();
    }
    return 0;
}

void XMaterialCheck::_parseClause(const std::string& clause) {
    const std::string tag = _getTag();
    const std::size_t tagAt = clause.find(tag);
    const std::size_t open = clause.find('"');
    if (tagAt == std::string::npos || open == std::string::npos) {
        return;
    }
    const std::size_t opAt = tagAt + tag.size();
    const std::size_t close = clause.find('"', open + 1);
    if (close == std::string::npos || open < opAt) {
        return;
    }
    _setBound(clause.substr(opAt, open - opAt), clause.substr(open + 1, close - open - 1));
}

void XMaterialCheck::_setBound(const std::string& op, const std::string& version) {
    if (op == ">=" || op == ">") {
        lowOp = op == ">" ? greater : greaterEqual;
        lowVersion = version;
    } else if (op == "<=" || op == "<" || op == "==") {
        highOp = op == "<" ? less : op == "<=" ? lessEqual : equal;
        highVersion = version;
    }
}

bool XMaterialCheck::check() {
    if (lowVersion.empty() && highVersion.empty()) {
        return true;
    }
    const std::string current = _getCurVersion();
    const int low = utils::compareVersion(current, lowVersion);
    const int high = utils::compareVersion(current, highVersion);
    const bool aboveLow = (lowOp != greaterEqual || low >= 0) && (lowOp != greater || low > 0);
    const bool belowHigh = (highOp != lessEqual || high <= 0) && (highOp != less || high < 0) &&
                           (highOp != equal || high == 0);
    return aboveLow && belowHigh;
}

std::string XMaterialAppVerCheck::_getTag() {
    return "%appver%";
}

std::string XMaterialAppVerCheck::_getCurVersion() {
    return utils::getSecurityVersion();
}

std::string XMaterialSysVerCheck::_getTag() {
    return "%sysver%";
}

std::string XMaterialSysVerCheck::_getCurVersion() {
    return utils::getOSVersion(false);
}
