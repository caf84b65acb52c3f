#include "sandbox/common/clientpath.h"
#include "sandbox/report/section.h"

namespace sandbox::report {
namespace {

constexpr std::size_t longestHash = 12;
constexpr std::size_t longestHashInTable = 32;

/// A hash is cut where it only names.
std::string shortHash(const std::string& md5) {
    return md5.size() == longestHashInTable ? md5.substr(0, longestHash) : md5;
}

bool sameText(const std::string& a, const std::string& b) {
    return !a.empty() && comparablePath(a) == comparablePath(b);
}

} // namespace

std::string orUntold(const std::string& text) {
    return text.empty() ? "?" : text;
}

std::string titleOf(const Material& row) {
    return !row.name.empty() ? row.name : !row.id.empty() ? row.id : shortHash(row.md5);
}

Section materialSection(const Material& row) {
    Section section{titleOf(row) + ": " + row.decision +
                    (row.reason.empty() ? "" : ", " + row.reason)};
    section.lines.push_back("target " + orUntold(row.target) + ", version " +
                            orUntold(row.version) + ", module " + orUntold(row.module) + ", hash " +
                            orUntold(row.md5) +
                            (row.group && !row.group->empty() ? ", group " + *row.group : ""));
    section.lines.push_back(row.nameFrom.empty()
                                ? "the log does not tell which of the materials it is"
                                : "which material it is, tells: " + row.nameFrom);
    section.lines.insert(section.lines.end(), row.notes.begin(), row.notes.end());
    section.titles = {"test", "left", "", "right", "verdict", "told by"};
    for (const Test& test : row.tests) {
        const bool isBare = test.left.empty() && test.op.empty() && test.right.empty();
        section.rows.push_back({test.what, orUntold(test.left), test.op,
                                isBare || !test.op.empty() ? orUntold(test.right) : test.right,
                                test.verdict, test.from});
    }
    return section;
}

std::vector<const Material*> materialsLike(const KelvarRun& run, const std::string& text) {
    std::vector<const Material*> found;
    for (const std::size_t at : run.order) {
        const Material& row = run.materials[at];
        const bool isHash = text.size() >= 4 && row.md5.compare(0, text.size(), text) == 0;
        if (isHash || sameText(row.name, text) || sameText(row.id, text) ||
            sameText(row.fileId, text) || endsWithPath(row.target, text)) {
            found.push_back(&row);
        }
    }
    return found;
}

} // namespace sandbox::report
