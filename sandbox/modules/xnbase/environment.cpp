#include <algorithm>
#include <optional>

#include "host/xnbase.h"
#include "platform/text.h"
#include "sandbox/common/clientpath.h"
#include "sandbox/common/config.h"
#include "sandbox/common/folders.h"

namespace {

class EnvConfig final : public IXEnvConfig {
public:
    const char* upgradeAddress() override {
        return textOf(sandbox::processConfig().upgradeAddress);
    }
    void reserved1() override {}
    void reserved2() override {}
    void reserved3() override {}
    void reserved4() override {}
    const char* serverAddress() override { return textOf(sandbox::processConfig().serverAddress); }

private:
    static const char* textOf(const std::optional<std::string>& text) {
        return text ? text->c_str() : nullptr;
    }
};

std::wstring homeFolder() {
    const std::string& configured = sandbox::processConfig().homeDirectory;
    return platform::toWide(sandbox::toClientPath(
        configured.empty() ? sandbox::processFolders().home() : sandbox::pathOf(configured)));
}

} // namespace

extern "C" IXEnvConfig* envConfigInstance() {
    static EnvConfig instance;
    return &instance;
}

extern "C" bool homeDirectory(unsigned char /*flag*/, wchar_t* buffer, int size) {
    const std::wstring home = homeFolder();
    if (!buffer || size <= 0 || home.size() >= static_cast<std::size_t>(size)) {
        return false;
    }
    std::copy_n(home.c_str(), home.size() + 1, buffer);
    return true;
}

static_assert(std::is_same_v<decltype(&envConfigInstance), xnbase::envConfigInstance>);
static_assert(std::is_same_v<decltype(&homeDirectory), xnbase::homeDirectory>);
