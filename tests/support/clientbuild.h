#pragma once

#include <cstdlib>
#include <string>
#include <vector>

/// The client that a test's runs of xsandbox have, as the environment says: without it that of
/// xsandbox's own build. XSANDBOX_BINARIES is another build's folder, and XSANDBOX_WINDOWS is there
/// when that one is for Windows and runs under Wine.
namespace clientbuild {

inline const bool isWindows = std::getenv("XSANDBOX_WINDOWS") != nullptr;

/// What the verbs `run` and `host` are told of it.
inline std::vector<std::string> options() {
    std::vector<std::string> told;
    if (isWindows) {
        told.emplace_back("--windows");
    }
    if (const char* const build = std::getenv("XSANDBOX_BINARIES"); build != nullptr) {
        told.insert(told.end(), {"--binaries", build});
    }
    return told;
}

/// A call of one of them, with that behind it.
inline std::vector<std::string> with(std::vector<std::string> call) {
    const std::vector<std::string> told = options();
    call.insert(call.end(), told.begin(), told.end());
    return call;
}

} // namespace clientbuild
