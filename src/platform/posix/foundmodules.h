#pragma once

#include "platform/modules.h"

#include <array>
#include <cstddef>
#include <mutex>
#include <optional>
#include <string_view>

namespace platform::posix {

/// How many modules have come to this process and gone from it.
struct ModuleTurnover {
    unsigned long long come = 0;
    unsigned long long gone = 0;

    static ModuleTurnover now();
    friend bool operator==(const ModuleTurnover&, const ModuleTurnover&) = default;
};

/// What lookups have found. Forgotten as soon as any module comes or goes. A module counts as
/// gone when it is unmapped: until then one that is being freed is still found, and its handle
/// is no reference. Needs no destructor: threads of a module outlive its static objects. Any
/// thread.
template <class Name>
class FoundModules {
public:
    /// What `search` finds for that name in that module. Not held while it searches: the
    /// system's loader has a lock of its own.
    template <class Search>
    void* find(ModuleHandle module, Name name, Search search) {
        const ModuleTurnover before = ModuleTurnover::now();
        if (const std::optional<void*> known = look(before, module, name)) {
            return *known;
        }
        void* const found = search();
        if (ModuleTurnover::now() == before) {
            keep(before, module, name, found);
        }
        return found;
    }

private:
    static constexpr std::size_t longestName = 40;

    struct Entry {
        ModuleHandle module = nullptr;
        std::array<typename Name::value_type, longestName> text{};
        std::size_t length = 0;
        void* found = nullptr;
    };

    std::optional<void*> look(const ModuleTurnover& now, ModuleHandle module, Name name) {
        const std::lock_guard lock(mutex);
        if (now != turnover) {
            turnover = now;
            count = 0;
        }
        for (std::size_t i = 0; i < count; ++i) {
            const Entry& entry = entries[i];
            if (entry.module == module && Name(entry.text.data(), entry.length) == name) {
                return entry.found;
            }
        }
        return std::nullopt;
    }

    void keep(const ModuleTurnover& now, ModuleHandle module, Name name, void* found) {
        const std::lock_guard lock(mutex);
        if (now != turnover || count == entries.size() || name.size() > longestName) {
            return;
        }
        Entry& entry = entries[count++];
        entry.module = module;
        entry.length = name.copy(entry.text.data(), longestName);
        entry.found = found;
    }

    std::mutex mutex;
    ModuleTurnover turnover;
    std::array<Entry, 32> entries; ///< the plug-in binds about twenty exports
    std::size_t count = 0;
};

} // namespace platform::posix
