#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

/// What a session of the plug-in does to the disk and to the client's stores, one operation
/// after the other, and what is to go wrong with one of them. One session a process; the calls
/// come from one thread at a time.
namespace crash {

enum class Operation {
    storeSetting,
    storeVersion,
    makeFolder,
    openToWrite,
    write,
    closeWritten,
    openToRead,
    searchFolder,
    move,
    moveAtRestart,
    remove,
};
inline constexpr std::array operationNames{
    "setting stored", "version stored",      "folder made", "file opened to write",
    "bytes written",  "written file closed", "file read",   "folder searched",
    "file moved",     "left to the restart", "file deleted"};
static_assert(operationNames.size() == static_cast<std::size_t>(Operation::remove) + 1);

enum class Disturbance {
    none,
    fails,        ///< the operation fails with its most likely error
    diesBefore,   ///< the process ends ahead of it
    diesAfter,    ///< the process ends behind it
    losesOpen,    ///< and files open for writing are cut to nothing, a stored text to its half
    losesAll,     ///< and every byte that the process wrote into a file is zero
    fullDisk,     ///< from this operation on nothing is written
    storeIsGone,  ///< from this look-up of the settings store on there is none
    clockSetBack, ///< the tick count begins anew ahead of it
    otherHost,    ///< ahead of it another host runs from its start to its end
    cancelled,    ///< ahead of it the user cancels
};
inline constexpr std::array disturbanceNames{
    "undisturbed", "fails",      "dies before", "dies after", "loses open files", "loses power",
    "disk full",   "store gone", "clock back",  "two hosts",  "cancelled"};
static_assert(disturbanceNames.size() == static_cast<std::size_t>(Disturbance::cancelled) + 1);

struct Plan {
    Disturbance disturbance = Disturbance::none;
    std::size_t at = 0; ///< which operation, or which look-up of the store; counts from 1
    std::function<void()> visitor = {}; ///< of otherHost, clockSetBack and cancelled
    std::function<void()> atDeath = {}; ///< runs ahead of the end of the process
};

struct Step {
    Operation operation = Operation::write;
    std::string what = {}; ///< the files or the key
};

inline constexpr int diedAsPlanned = 77;

/// Counts from now on.
void begin(Plan plan);

/// The operations so far, and how often the settings store was looked up.
const std::vector<Step>& countedSteps();
std::size_t storeLookups();

/// Counts a look-up; false when there is no store any more.
bool lookUpStore();

/// An operation while it is carried out. The process may end in the constructor and in the
/// destructor.
class Counted {
public:
    Counted(Operation operation, std::string what);
    ~Counted();
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

    /// Whether it is to fail, and the disk is full.
    bool fails() const { return failing; }
    bool isFull() const { return full; }
    /// Whether what it stores is to be cut.
    bool isCut() const;

private:
    bool isMeant = false;
    bool failing = false;
    bool full = false;
};

} // namespace crash
