#include <algorithm>

#include "sandbox/check/material.h"
#include "sandbox/check/targetpath.h"
#include "sandbox/common/clientpath.h"
#include "sandbox/common/dottedversion.h"
#include "sandbox/common/filefacts.h"

namespace sandbox::check {
namespace {

constexpr const char* virusModule = "/orvviruslib";

using Groups = std::map<std::string, std::vector<const Material*>>;

/// Names that an author may have meant as one.
std::string nearName(const std::string& name) {
    std::string letters = comparablePath(name);
    letters.erase(std::remove(letters.begin(), letters.end(), ' '), letters.end());
    return letters;
}

class Together {
public:
    Together(const Offered& all, Mistakes& found) : offered(all), mistakes(found) {}

    void run() {
        checkPacket();
        checkTargets();
        checkFiles();
        checkGroups();
        checkVirusLibrary();
    }

private:
    void checkPacket() {
        if (offered.version && !isToldToPlatform(offered.version->text)) {
            mistakes.add(offered.version->line, "packet-version",
                         "a client at version \"" + offered.version->text +
                             "\" reports itself as 0.0.0.0: four numbers are asked for, none "
                             "below its counterpart in 1.0.0.1001");
        }
    }

    void checkTargets() {
        std::map<std::string, const Material*> known;
        for (const Material& material : offered.materials) {
            if (!refusalOf(material.target()).empty()) {
                continue;
            }
            const auto [other, isNew] = known.emplace(targetKey(material.target()), &material);
            if (!isNew) {
                mistakes.add(material.path->line, "target-twice",
                             material.name + " and " + other->second->name + " have one target, " +
                                 material.target() +
                                 (material.target() == other->second->target()
                                      ? ""
                                      : ", also spelled " + other->second->target()) +
                                 "; the second is refused as not newer");
            }
        }
    }

    /// A plain file is moved from where all rows with its hash look for it.
    void checkFiles() {
        std::map<std::string, const Material*> known;
        for (const Material& material : offered.materials) {
            const std::string hash = material.md5 ? lowered(material.md5->text) : "";
            if (hash.empty()) {
                continue;
            }
            const auto [other, isNew] = known.emplace(hash, &material);
            if (!isNew) {
                mistakes.add(material.md5->line, "file-shared",
                             material.name + " and " + other->second->name +
                                 " have one stored file: the first takes it away, and the second "
                                 "is refused");
            }
        }
    }

    void checkGroups() {
        Groups groups;
        for (const Material& material : offered.materials) {
            if (const Located* group = material.parameter("dependent")) {
                groups[group->text].push_back(&material);
            }
        }
        std::map<std::string, std::string> nearNames;
        for (const auto& [name, members] : groups) {
            const Located& first = *members.front()->parameter("dependent");
            checkGroup(name, members, first);
            const auto [other, isNew] = nearNames.emplace(nearName(name), name);
            if (!isNew) {
                mistakes.add(first.line, "group-name-near",
                             "the groups \"" + other->second + "\" and \"" + name +
                                 "\" are two: names are compared to the byte");
            }
        }
    }

    void checkGroup(const std::string& name, const std::vector<const Material*>& members,
                    const Located& first) {
        if (members.size() == 1) {
            mistakes.add(first.line, "group-of-one",
                         members.front()->name + " is alone in its group \"" + name + "\"");
        }
        const bool isModule = name.rfind('/', 0) == 0 && offered.modules;
        if (isModule && offered.modules->count(name) == 0 && !hasModule(name)) {
            mistakes.add(first.line, "dependent-unknown-module",
                         members.front()->name + " depends on " + name +
                             ", which is no module of the packet; \"dependent\" is the name of a "
                             "group and nothing else");
        }
    }

    bool hasModule(const std::string& id) const {
        return std::any_of(offered.materials.begin(), offered.materials.end(),
                           [&](const Material& material) {
                               return material.module && material.module->text == id;
                           });
    }

    /// Its version comes from the packet's module, whose id is compared to the byte.
    void checkVirusLibrary() {
        const auto found = std::find_if(
            offered.materials.begin(), offered.materials.end(), [](const Material& material) {
                return material.module && lowered(material.module->text) == virusModule;
            });
        if (offered.modules && found != offered.materials.end() &&
            offered.modules->count(virusModule) == 0) {
            mistakes.add(found->module->line, "viruslib-module",
                         found->name + " is of the virus library, but the packet has no module " +
                             virusModule + ": the library's version is not stored");
        }
    }

    const Offered& offered;
    Mistakes& mistakes;
};

} // namespace

void checkTogether(const Offered& offered, Mistakes& mistakes) {
    Together(offered, mistakes).run();
}

} // namespace sandbox::check
