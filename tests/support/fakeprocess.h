#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

/// What stands in for the process, modules, clock and debug output of the platform.
/// Unit tests link this in place of the real ones. Everything may be called on any
/// thread.
namespace fake {

/// Thrown where the real process would end.
struct ProcessEnded {
    std::string title;
    std::string text;
    int exitCode;
};

/// Takes back what a former test set.
void reset();

void setExecutable(const std::string& clientPath);

// --- modules ---

using Exports = std::map<std::string, void*>;
enum class Presence { loaded, loadable };

/// Puts a module there: in the process already, or to be had by a load.
void addModule(const std::wstring& name, Exports exports, Presence presence);

/// Gives a module that is there an export, or another one in its place.
void addExport(const std::wstring& module, const std::string& name, void* address);

/// Takes an export away, or a whole module.
void remove(const std::wstring& module, const std::string& name = "");

/// A load as the loader of the client does it: null when there is no such module.
void* load(const std::wstring& name);

/// References that loads have taken and frees not given back.
int references(const std::wstring& name);

// --- clock ---

enum class Waits {
    manual,    ///< timed waits last until the clock is set on
    immediate, ///< they end at once as timed out, and the clock goes on by their length
};
void setWaits(Waits waits);

/// From here on the tick count is this and goes on only by `advance` and by immediate
/// waits.
void setTick(std::uint32_t tick);
void advance(std::uint32_t milliseconds);

/// Blocks until that many threads are in a timed wait of the manual kind.
void awaitWaiters(int count);

// --- debug output ---

std::vector<std::string> debugLines();

} // namespace fake
