#include <algorithm>
#include <array>
#include <cstdlib>

#include "sandbox/check/exectext.h"
#include "sandbox/check/expression.h"
#include "sandbox/check/material.h"
#include "sandbox/check/misspelling.h"
#include "sandbox/check/targetpath.h"
#include "sandbox/common/clientpath.h"
#include "sandbox/common/dottedversion.h"
#include "sandbox/common/filefacts.h"

namespace sandbox::check {
namespace {

constexpr std::array<const char*, 8> knownParameters{
    "osver", "file_path", "file_md5", "check_sys", "check_app", "non_cab", "dependent", "exec"};
constexpr std::size_t longestTarget = 200;         // 259 with the folder of the client
constexpr unsigned long long largest = 2147483647; // sizes are kept in 32 bits with a sign

class MaterialCheck {
public:
    MaterialCheck(const Offered& all, const Material& one, Mistakes& found)
        : offered(all), material(one), mistakes(found) {}

    void run() {
        checkTarget();
        checkVersion();
        checkHashes();
        checkParameters();
        checkConditions();
        if (const Located* exec = material.parameter("exec")) {
            checkExec(*exec, offered.programs, mistakes);
        }
        checkCabinet();
        if (std::strtoull(material.size.text.c_str(), nullptr, 10) > largest) {
            add(material.size.line, "size-32-bit",
                material.size.text + " bytes: the client keeps sizes in 32 bits with a sign");
        }
    }

private:
    void checkTarget() {
        if (!material.path) {
            return;
        }
        const std::string& path = material.path->text;
        const std::string refusal = refusalOf(path);
        if (!refusal.empty()) {
            add(material.path->line, "target-refused",
                "the client refuses the target \"" + path + "\": " + refusal);
        } else if (!isAscii(path)) {
            add(material.path->line, "target-not-ascii",
                "the target \"" + path +
                    "\" goes to the system as bytes, which are other letters on a machine of "
                    "another language");
        } else if (path.size() > longestTarget) {
            add(material.path->line, "target-too-long",
                "a target of " + std::to_string(path.size()) +
                    " characters does not fit behind the client's folder: 259 in all");
        }
    }

    void checkVersion() {
        if (!material.version) {
            return;
        }
        const auto& [version, line] = *material.version;
        if (!isDottedVersion(version) || version.size() > longestVersion) {
            add(line, "version-form",
                "\"" + version + "\" is no version: dotted numbers, at most 63 characters");
            return;
        }
        const std::string own = material.fileVersion.value_or("");
        if (material.standing && compareVersions(version, *material.standing) <= 0) {
            addNeverNewer(line, version);
        } else if (material.standing && !own.empty() &&
                   compareVersions(own, *material.standing) <= 0) {
            addNeverNewer(line, own + " of the file");
        } else if (!own.empty() && compareVersions(own, version) < 0) {
            add(line, "version-not-the-files",
                "the row says " + version + " and its file " + own +
                    ": once it is in place it is offered, fetched and refused again each time");
        }
    }

    void addNeverNewer(std::size_t line, const std::string& version) {
        add(line, "version-never-newer",
            "version " + version + " is never newer than what stands on the client, " +
                (material.standing->empty() ? "which has none" : *material.standing));
    }

    void checkHash(const Located& hash, const char* what, const std::optional<std::string>& right) {
        const std::string refusal = nameRefusalOf(hash.text);
        if (!refusal.empty()) {
            add(hash.line, "hash-refused",
                std::string("the client refuses the ") + what + " \"" + hash.text +
                    "\": " + refusal);
        } else if (!isMd5(hash.text)) {
            add(hash.line, "hash-form",
                std::string("the ") + what + " \"" + hash.text + "\" is no MD5");
        } else if (right && lowered(hash.text) != *right) {
            add(hash.line, "hash-wrong",
                std::string("the ") + what + " is " + hash.text + ", and that of the file is " +
                    *right);
        }
    }

    void checkHashes() {
        if (material.md5) {
            checkHash(*material.md5, "md5", material.storedMd5);
        }
        if (const auto hash = material.parameters.find("file_md5");
            hash != material.parameters.end()) {
            checkHash(hash->second, "file_md5", material.contentMd5);
        }
    }

    void checkParameters() {
        for (const auto& [key, value] : material.parameters) {
            const auto meant = meantBy(key, knownParameters);
            if (meant) {
                add(value.line, "parameter-misspelt",
                    "nobody reads the parameter \"" + key + "\"; is \"" + *meant + "\" meant?");
            }
        }
        if (const auto nonCab = material.parameters.find("non_cab");
            nonCab != material.parameters.end()) {
            checkNonCab(nonCab->second);
        }
    }

    /// An empty text is one too: it counts as 0.
    void checkNonCab(const Located& nonCab) {
        if (!nonCab.text.empty() && nonCab.text != "0" && nonCab.text != "1") {
            add(nonCab.line, "non-cab-form",
                "non_cab is 0 or 1; \"" + nonCab.text + "\" counts as " +
                    (std::strtol(nonCab.text.c_str(), nullptr, 10) != 0 ? "1" : "0"));
        } else if ((nonCab.text == "1") == material.isCabinet) {
            add(nonCab.line, "non-cab-wrong",
                material.isCabinet ? "non_cab 1 puts the cabinet itself in place"
                                   : "without non_cab 1 the client takes the file for a cabinet");
        }
    }

    void checkConditions() {
        const Located* system = material.parameter("osver");
        const Located* range = material.parameter("check_sys");
        if (system != nullptr) {
            checkSystemVersion(*system, mistakes);
        }
        if (system != nullptr && range != nullptr) {
            add(range->line, "check-sys-unused", "check_sys is not looked at beside osver");
        }
        if (range != nullptr) {
            checkExpression(*range, "check_sys", systemTag, mistakes);
        }
        if (const Located* client = material.parameter("check_app")) {
            checkExpression(*client, "check_app", clientTag, mistakes);
        }
    }

    void checkCabinet() {
        if (!material.isCabinet || !material.path || material.members.empty()) {
            return;
        }
        const std::string leaf = comparablePath(leafOf(material.target()));
        std::set<std::string> names;
        for (const Located& member : material.members) {
            checkMember(member, names);
        }
        if (names.count(leaf) == 0) {
            add(material.members.front().line, "cabinet-member-missing",
                "no member of the cabinet is called \"" + leaf + "\", as the target is");
        }
    }

    void checkMember(const Located& member, std::set<std::string>& names) {
        const std::string key = comparablePath(member.text);
        const std::size_t folder = key.find_last_of('\\');
        if (const std::string refusal = refusalOf(member.text); !refusal.empty()) {
            add(member.line, "cabinet-member-outside",
                "the member \"" + member.text + "\" fails the cabinet: " + refusal);
        } else if (!names.insert(key).second) {
            add(member.line, "cabinet-member-twice",
                "two members are called \"" + member.text + "\"");
        } else if (folder != key.npos && offered.updateFolders &&
                   offered.updateFolders->count(key.substr(0, folder)) == 0) {
            add(member.line, "cabinet-member-folder",
                "the cabinet does not expand: nobody makes the folder of \"" + member.text +
                    "\" in update");
        }
    }

    void add(std::size_t line, const char* code, const std::string& text) {
        mistakes.add(line, code, material.name + ": " + text);
    }

    const Offered& offered;
    const Material& material;
    Mistakes& mistakes;
};

} // namespace

void checkMaterial(const Offered& offered, const Material& material, Mistakes& mistakes) {
    MaterialCheck(offered, material, mistakes).run();
}

} // namespace sandbox::check
