#include "sandbox/report/naming.h"

#include <algorithm>
#include <set>

#include "sandbox/common/clientpath.h"

namespace sandbox::report {
namespace {

constexpr std::size_t hashInName = 12; ///< the sandbox's files: "m01-6d33f6d67f1b"

std::string lastElement(const std::string& id) {
    return id.substr(id.rfind('/') + 1);
}

/// The sandbox's storage names a file by its material and its hash.
std::string nameInFile(const Material& row) {
    const std::string end = "-" + row.md5.substr(0, hashInName);
    const bool isOurs = row.md5.size() >= hashInName && row.fileId.size() > end.size() &&
                        row.fileId.compare(row.fileId.size() - end.size(), end.size(), end) == 0;
    return isOurs ? row.fileId.substr(0, row.fileId.size() - end.size()) : "";
}

void takeAsked(Material& row, const AskedMaterial& asked) {
    row.id = asked.id;
    row.module = asked.module;
    row.version = asked.version;
}

void takePlanned(Material& row, const Planned* planned) {
    if (planned != nullptr) {
        row.group = planned->group;
        row.target = planned->path;
        row.module = row.module.empty() ? planned->module : row.module;
        row.version = row.version.empty() ? planned->version : row.version;
    }
}

/// With every material on one road, the rows stand in the order of the question.
bool areInOrder(const KelvarRun& run) {
    const bool allPassed = std::all_of(run.materials.begin(), run.materials.end(),
                                       [](const Material& row) { return row.isListed; });
    const bool allDropped =
        std::all_of(run.materials.begin(), run.materials.end(), [&](const Material& row) {
            return row.filter != Material::Filter::passed && row.filter == run.materials[0].filter;
        });
    return run.materials.size() == run.askedFor.size() && !run.materials.empty() &&
           (allPassed || allDropped);
}

std::vector<const AskedMaterial*> notTaken(const KelvarRun& run) {
    std::set<std::string> taken;
    for (const Material& row : run.materials) {
        taken.insert(row.id);
    }
    std::vector<const AskedMaterial*> rest;
    for (const AskedMaterial& asked : run.askedFor) {
        if (taken.count(asked.id) == 0) {
            rest.push_back(&asked);
        }
    }
    return rest;
}

void nameByFile(KelvarRun& run, const Knowledge& known) {
    for (Material& row : run.materials) {
        row.name = known.nameOf(row.fileId, row.md5);
        row.nameFrom = row.name.empty() ? "" : "storage";
        if (row.name.empty()) {
            row.name = nameInFile(row);
            row.nameFrom = row.name.empty() ? "" : "the file's name";
        }
        const auto asked = std::find_if(
            run.askedFor.begin(), run.askedFor.end(), [&](const AskedMaterial& candidate) {
                return !row.name.empty() && lastElement(candidate.id) == row.name;
            });
        if (asked != run.askedFor.end()) {
            takeAsked(row, *asked);
        }
    }
}

void nameByOrder(KelvarRun& run) {
    const bool isOnePerRow = areInOrder(run);
    for (std::size_t i = 0; isOnePerRow && i < run.materials.size(); ++i) {
        Material& row = run.materials[i];
        if (row.id.empty()) {
            takeAsked(row, run.askedFor[i]);
            row.nameFrom = "the order of the question";
        }
    }
    std::vector<Material*> unnamed;
    for (Material& row : run.materials) {
        if (row.id.empty()) {
            unnamed.push_back(&row);
        }
    }
    const auto rest = notTaken(run);
    if (unnamed.size() == 1 && rest.size() == 1 && run.materials.size() == run.askedFor.size()) {
        takeAsked(*unnamed[0], *rest[0]);
        unnamed[0]->nameFrom = "the only one left";
    }
}

/// Materials that are asked for and have no line of their own, or are among the unnamed.
void addRest(KelvarRun& run) {
    const auto rest = notTaken(run);
    const auto isUnnamed = [](const Material& row) {
        return row.id.empty();
    };
    if (rest.empty()) {
        return;
    }
    if (std::any_of(run.materials.begin(), run.materials.end(), isUnnamed)) {
        std::string names;
        for (const AskedMaterial* asked : rest) {
            names += (names.empty() ? "" : ", ") + asked->id;
        }
        run.notes.push_back("the log has hashes where it tells of materials, and does not tell "
                            "which of these is which: " +
                            names);
        return;
    }
    for (const AskedMaterial* asked : rest) {
        takeAsked(run.materials.emplace_back(), *asked);
        run.materials.back().nameFrom = "the question";
    }
}

} // namespace

const Planned* plannedOf(const Material& row, const KelvarRun& run, const Knowledge& known) {
    const Planned* planned = run.isOfferChanged ? nullptr : known.planned(row.name);
    const bool isElsewhere =
        planned != nullptr && !row.target.empty() && !endsWithPath(row.target, planned->path);
    return isElsewhere ? nullptr : planned;
}

void nameMaterials(KelvarRun& run, const Knowledge& known) {
    nameByFile(run, known);
    nameByOrder(run);
    addRest(run);
    for (Material& row : run.materials) {
        row.name = row.name.empty() ? lastElement(row.id) : row.name;
        takePlanned(row, plannedOf(row, run, known));
    }
    // In the question's order, those without a name behind.
    const auto placeOf = [&](const Material& row) {
        const auto asked =
            std::find_if(run.askedFor.begin(), run.askedFor.end(),
                         [&](const AskedMaterial& candidate) { return candidate.id == row.id; });
        return asked - run.askedFor.begin();
    };
    run.order.clear();
    for (std::size_t i = 0; i < run.materials.size(); ++i) {
        run.order.push_back(i);
    }
    std::stable_sort(run.order.begin(), run.order.end(), [&](std::size_t a, std::size_t b) {
        return placeOf(run.materials[a]) < placeOf(run.materials[b]);
    });
}

} // namespace sandbox::report
