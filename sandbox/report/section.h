#pragma once

#include <string>
#include <vector>

#include "sandbox/report/explanation.h"

namespace sandbox::report {

/// A part of a report for people: a title, lines, and a table under them.
struct Section {
    std::string title;
    std::vector<std::string> lines{};
    std::vector<std::string> titles{}; ///< of the columns; none for a section without a table
    std::vector<std::vector<std::string>> rows{};
};

/// What the log is, what else was read, which runs it has.
std::vector<Section> headSections(const Explanation& told, const std::string& source);

/// A run: its conversation, a line for each material, groups, programs, faults, the end.
std::vector<Section> runSections(const KelvarRun& run, const Explanation& told);

/// A material with its tests.
Section materialSection(const Material& row);

/// What the other channels decided in these lines.
std::vector<Section> channelSections(const Explanation& told, std::size_t first, std::size_t end);

/// The materials of that name, id, hash or its begin, file id, target or end of a target.
std::vector<const Material*> materialsLike(const KelvarRun& run, const std::string& text);

/// "?" for a text that is not told.
std::string orUntold(const std::string& text);

/// What a material is called: its name, its id, or its hash.
std::string titleOf(const Material& row);

} // namespace sandbox::report
