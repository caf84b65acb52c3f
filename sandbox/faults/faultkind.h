#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Every fault that a scenario can name: where it may stand, what it takes, what it does.
/// Constant data; any thread.
namespace sandbox {

/// Where a fault may stand, one bit each.
enum Place : unsigned {
    placeQuestion = 1,    ///< the questions of the Kelvar channel that no other bit tells
    placePacketMeta = 2,  ///< GetPacketMeta
    placeMaterials = 4,   ///< BatchGetMaterialMeta
    placeCheck = 8,       ///< the two checks of the upgrade server
    placeFile = 16,       ///< a material, the package, a data file
    placeModules = 32,    ///< the client's sibling modules
    placeClient = 64,     ///< the client's files
    placeStartState = 128 ///< the client as it is laid out: said of it, not of a step
};

inline constexpr unsigned placeQuestions = placeQuestion | placePacketMeta | placeMaterials;
inline constexpr unsigned placeAnswers = placeQuestions | placeCheck;
inline constexpr unsigned placeServed = placeAnswers | placeFile;

enum class ParameterKind { number, text, flag };

/// What a number may be. The upper ends keep a slip of the hand from filling the memory.
struct Range {
    std::int64_t least;
    std::int64_t most;
};

struct Parameter {
    const char* name;
    ParameterKind kind;
    const char* meaning;        ///< with its unit
    const char* byDefault = ""; ///< JSON; empty: it has to be told
    bool isOptional = false;    ///< may be untold, and has no default then
    Range range{0, 0};          ///< of a number
};

struct FaultKind {
    const char* name;
    /// What happened; "{x}" stands for the value of the parameter x.
    const char* words;
    std::span<const Parameter> parameters;
    const char* example; ///< as the scenario tells it
    unsigned places;
    /// The client ends up with the right answer, so that what it asks next can be told.
    bool keepsAnswer = false;
};

std::span<const FaultKind> faultKinds();

/// Null for a name that no fault has.
const FaultKind* findFaultKind(std::string_view name);

/// The names of all that may stand at one of the places, with commas between.
std::string faultNames(unsigned places);

/// What stands at a place, in the words of a scenario; nothing for a name that has no meaning
/// of its own, as that of a material.
std::optional<unsigned> fixedPlaceOf(std::string_view on);

/// The names that have a place of their own.
std::vector<std::string> fixedPlaces();

/// The places of a kind in words.
std::string placeWords(unsigned places);

/// "1 to 64".
std::string rangeWords(const Range& range);

} // namespace sandbox
