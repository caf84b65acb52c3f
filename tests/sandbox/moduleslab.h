#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "platform/modules.h"
#include "sandbox/common/folders.h"

/// The modules under test lie in a run folder of this process' own, as the client's host
/// has them, and are reached by name only.
namespace lab {

/// Lays a run folder out below `parent` with this program and the modules in it.
sandbox::Folders layOut(const std::filesystem::path& parent);

void* address(const wchar_t* module, const char* name);

template <class Function>
Function bind(const wchar_t* module, const char* name) {
    return reinterpret_cast<Function>(address(module, name));
}

/// The events from its making on.
class Events {
public:
    Events();
    std::vector<nlohmann::json> of(const std::string& kind) const;

private:
    std::uintmax_t start;
};

} // namespace lab
