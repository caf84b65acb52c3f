#pragma once

#include <map>
#include <string>
#include <vector>

/// From a program to the parameter texts that it is started with, once each.
using XExecMap = std::map<std::string, std::vector<std::string>>;

/// The programs that a material asks for: entries joined by ")&&(", each with the two
/// values %process% and %param% in quotes, without an escape for a quote:
/// (%process%="a.exe" %param%="--x")&&(%process%="b.exe" %param%="--y"). Parsed once,
/// then only read. Held by the shared pointer that made it.
class IXMaterialExec {
public:
    /// -1 for an empty text, else 0: an entry without a value gives an empty text there.
    virtual int parseExec(const std::string& exec) = 0;
    /// Always 0.
    virtual int getExecMap(XExecMap& out) = 0;

protected:
    ~IXMaterialExec() = default;
};

class XMaterialExec final : public IXMaterialExec {
public:
    int parseExec(const std::string& exec) override;
    int getExecMap(XExecMap& out) override;

private:
    int _parseItem(const std::string& item);
    std::string _findValue(const std::string& item, const std::string& key, std::size_t from);

    XExecMap execMap;
};
