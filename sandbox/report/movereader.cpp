#include "sandbox/report/movereader.h"

#include <algorithm>
#include <utility>

namespace sandbox::report {
namespace {

std::string fullError(const std::string& number) {
    const std::string words = systemErrorWords(number);
    return number + (words.empty() ? "" : ", " + words);
}

/// The number, and nothing for a text that is none.
std::optional<std::size_t> numberOf(const std::string& text) {
    const bool isNumber = !text.empty() && text.size() < 9 &&
                          text.find_first_not_of("0123456789") == std::string::npos;
    return isNumber ? std::optional<std::size_t>(std::stoul(text)) : std::nullopt;
}

} // namespace

Material& MoveReader::attempt(const std::string& md5, const LogLine& line, KelvarRun& run) {
    settleSchedules(run);
    const auto isNext = [&](const Material& row) {
        return row.md5 == md5 && row.filter == Material::Filter::passed &&
               row.tried == Material::Try::none;
    };
    auto found = std::find_if(run.materials.begin(), run.materials.end(), isNext);
    if (found == run.materials.end()) {
        run.materials.emplace_back().md5 = md5;
        found = run.materials.end() - 1;
    }
    found->moveLine = line.number;
    run.tried.push_back(static_cast<std::size_t>(found - run.materials.begin()));
    isLocked = false;
    return *found;
}

Material* MoveReader::current(KelvarRun& run) {
    return run.tried.empty() ? nullptr : &run.materials[run.tried.back()];
}

void MoveReader::see(const Saying& saying, const LogLine& line, KelvarRun& run) {
    run.stage = std::max(run.stage, KelvarRun::Stage::move);
    switch (saying.says) {
    case Says::moveAll:
        run.groups = numberOf(saying.values[1]);
        run.freeRows = numberOf(saying.values[2]);
        break;
    case Says::badMoveName:
    case Says::badPath:
    case Says::targetIsFolder:
    case Says::badMember:
    case Says::cabinetFailed:
    case Says::sourceMissing:
    case Says::hashDiffers:
    case Says::notNewer:
    case Says::notNeeded:
        refuse(saying, line, run);
        break;
    case Says::move: {
        Material& row = attempt(saying.values[0], line, run);
        row.tried = Material::Try::moved;
        row.fileId = saying.values[1];
        break;
    }
    case Says::moves:
        break;
    default:
        if (saying.says < Says::paddingCounts) {
            replace(saying, run);
        } else {
            record(saying, line, run);
        }
    }
}

void MoveReader::refuse(const Saying& saying, const LogLine& line, KelvarRun& run) {
    const auto keep = [&](Material::Try reason) {
        why = reason;
        std::copy_n(saying.values.begin(), std::min(details.size(), saying.values.size()),
                    details.begin());
    };
    const auto refused = [&](const std::string& md5) -> Material& {
        Material& row = attempt(md5, line, run);
        row.tried = std::exchange(why, Material::Try::untold);
        row.detail = std::exchange(details, {});
        return row;
    };
    switch (saying.says) {
    case Says::sourceMissing:
        keep(Material::Try::missing);
        return;
    case Says::hashDiffers:
        keep(Material::Try::hash);
        return;
    case Says::notNewer:
        keep(Material::Try::version);
        return;
    case Says::badMember:
        details[0] = saying.values[0];
        return;
    case Says::badMoveName:
        why = Material::Try::badName;
        details[0] = saying.values[1];
        refused(saying.values[0]);
        return;
    case Says::badPath:
    case Says::targetIsFolder:
        keep(saying.says == Says::badPath ? Material::Try::badPath : Material::Try::isFolder);
        refused(saying.values[1]).target = saying.values[0];
        return;
    case Says::cabinetFailed:
        why = Material::Try::cabinet;
        refused(saying.values[0]).fileId = saying.values[1];
        return;
    default:
        refused(saying.values[0]).fileId = saying.values[1];
    }
}

void MoveReader::replace(const Saying& saying, KelvarRun& run) {
    Material* row = current(run);
    if (row == nullptr) {
        return;
    }
    const std::string code = fullError(saying.values[0]);
    switch (saying.says) {
    case Says::targetInUse:
        row->lockedBy = code;
        isLocked = true;
        break;
    case Says::scheduled:
        schedule(saying.values[0], run);
        break;
    case Says::scheduleFailed:
        if (!ofGroup.empty()) {
            ofGroup.back().error = code;
        } else {
            row->isScheduled = false;
            row->scheduleError = code;
        }
        break;
    case Says::replaceFailed:
        row->failedBy = code;
        break;
    case Says::oldFileStays:
        row->notes.push_back("the old file's delete at the restart was not accepted: " + code);
        break;
    default:
        run.notes.push_back(
            saying.says == Says::takeBackFailed
                ? "a new file could not be taken back, " + code
                : "an old file did not come back, " + code +
                      (saying.values[0] == "2" ? ": there was none" : ": the target is missing"));
        row->failedTakeBacks += saying.says == Says::takeBackFailed ? 1U : 0U;
    }
}

void MoveReader::schedule(const std::string& target, KelvarRun& run) {
    if (isLocked) {
        isLocked = false;
        current(run)->isScheduled = true;
        current(run)->target = target;
    } else {
        ofGroup.push_back({target, ""});
    }
}

// A group that waits as a whole: what was in place is taken back and scheduled, in the order
// of the moves, right behind the group's last file.
void MoveReader::settleSchedules(KelvarRun& run) {
    if (ofGroup.empty()) {
        return;
    }
    run.materials[run.tried.back()].groupEndsHere = true;
    auto next = ofGroup.rbegin();
    for (auto at = run.tried.rbegin(); at != run.tried.rend() && next != ofGroup.rend(); ++at) {
        Material& row = run.materials[*at];
        if (row.isInPlace()) {
            row.isScheduled = next->error.empty();
            row.scheduleError = next->error;
            row.withItsGroup = true;
            row.target = next->target;
            ++next;
        }
    }
    ofGroup.clear();
}

void MoveReader::record(const Saying& saying, const LogLine& line, KelvarRun& run) {
    settleSchedules(run);
    run.stage = KelvarRun::Stage::record;
    switch (saying.says) {
    case Says::paddingCounts:
        run.movesDone = true;
        break;
    case Says::program:
        run.programs.push_back({saying.values[0], saying.values[1], line.number, ""});
        break;
    case Says::servicePack:
        run.isServicePack = true;
        run.programs.push_back({"orvdefender.exe", "--cmdline=install_sp", line.number, ""});
        break;
    case Says::versionTooLong:
        run.endWords =
            "the process ended: the virus library's version has " + saying.values[0] + " bytes";
        break;
    case Says::fileListFailed:
        run.notes.push_back("filelist.xml was not read: " + saying.values[1] + " (" +
                            saying.values[0] + ")");
        break;
    default:
        break;
    }
}

} // namespace sandbox::report
