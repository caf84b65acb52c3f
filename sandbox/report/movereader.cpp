#include "sandbox/report/movereader.h"

#include <algorithm>
#include <utility>

#include "sandbox/common/clientpath.h"

namespace sandbox::report {
namespace {

/// The number, and nothing for a text that is none.
std::optional<std::size_t> numberOf(const std::string& text) {
    const bool isNumber = !text.empty() && text.size() < 9 &&
                          text.find_first_not_of("0123456789") == std::string::npos;
    return isNumber ? std::optional<std::size_t>(std::stoul(text)) : std::nullopt;
}

/// The list of waiting files drops an older schedule together with its file. Where that is the
/// very file of this run's schedule, the restart finds none.
void loseWaiting(const std::string& path, KelvarRun& run) {
    for (Material& row : run.materials) {
        if (row.isScheduled && sameName(path.substr(path.rfind('\\') + 1), row.md5)) {
            row.notes.emplace_back("the run also deletes the file that waits, as an older schedule "
                                   "names it too; where that works, the restart finds none");
        }
    }
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
    takeBackError.clear();
    return *found;
}

Material* MoveReader::current(KelvarRun& run) {
    return run.tried.empty() ? nullptr : &run.materials[run.tried.back()];
}

void MoveReader::see(const Saying& saying, const LogLine& line, KelvarRun& run) {
    run.stage = std::max(run.stage, KelvarRun::Stage::move);
    switch (saying.says) {
    case Says::moveAll:
        run.rows = numberOf(saying.values[0]);
        run.groups = numberOf(saying.values[1]);
        run.freeRows = numberOf(saying.values[2]);
        break;
    case Says::badMoveName:
    case Says::badPath:
    case Says::targetIsFolder:
    case Says::badMember:
    case Says::bigCabinet:
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
        why = Material::Try::untold;
        details = {};
        break;
    }
    case Says::moves:
        break;
    default:
        if (saying.says < Says::paddingCounts) {
            replace(saying, line, run);
        } else {
            record(saying, line, run);
        }
    }
}

void MoveReader::refuse(const Saying& saying, const LogLine& line, KelvarRun& run) {
    const auto keep = [&](Material::Try reason) {
        why = reason;
        details = {};
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
        why = Material::Try::cabinet;
        details = {"its member " + saying.values[0], ""};
        return;
    case Says::bigCabinet:
        why = Material::Try::cabinet;
        details = {"all it asks for, " + saying.values[0] + " members, " + saying.values[1] +
                       " bytes",
                   ""};
        return;
    case Says::badMoveName:
        why = Material::Try::badName;
        details = {saying.values[1], ""};
        refused(saying.values[0]);
        return;
    case Says::badPath:
    case Says::targetIsFolder:
        keep(saying.says == Says::badPath ? Material::Try::badPath : Material::Try::isFolder);
        refused(saying.values[1]).target = saying.values[0];
        return;
    case Says::cabinetFailed:
        if (why != Material::Try::cabinet) {
            why = Material::Try::cabinet;
            details = {};
        }
        refused(saying.values[0]).fileId = saying.values[1];
        return;
    default:
        refused(saying.values[0]).fileId = saying.values[1];
    }
}

void MoveReader::record(const Saying& saying, const LogLine& line, KelvarRun& run) {
    settleSchedules(run);
    run.stage = KelvarRun::Stage::record;
    switch (saying.says) {
    case Says::paddingCounts:
        run.movesDone = true;
        break;
    case Says::waitingDeleted:
        loseWaiting(saying.values[0], run);
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
