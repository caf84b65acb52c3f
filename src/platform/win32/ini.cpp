#include "platform/ini.h"

#include "platform/win32/windowsapi.h"

#include <vector>

namespace platform {

std::string profileString(const std::string& file, const char* section, const char* key,
                          const std::string& defaultValue, std::size_t limit) {
    if (limit == 0) {
        return {};
    }
    std::vector<char> buffer(limit);
    const DWORD length =
        ::GetPrivateProfileStringA(section, key, defaultValue.c_str(), buffer.data(),
                                   static_cast<DWORD>(buffer.size()), file.c_str());
    return {buffer.data(), length};
}

int profileInt(const std::string& file, const char* section, const char* key, int defaultValue) {
    return static_cast<int>(::GetPrivateProfileIntA(section, key, defaultValue, file.c_str()));
}

} // namespace platform
