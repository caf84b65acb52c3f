#include "updatekelvar/task/xtaskkelvarmove.h"

#include "host/hostmodules.h"
#include "host/log.h"
#include "utils/utils.h"

namespace {

/// Text without the first occurrence of `part`.
std::string without(std::string text, const std::string& part) {
    if (const std::size_t at = text.find(part); at != std::string::npos) {
        text.erase(at, part.size());
    }
    return text;
}

template <class Row>
void append(std::vector<Row>& to, const std::vector<Row>& from) {
    to.insert(to.end(), from.begin(), from.end());
}

XExecMap execMapOf(const XMaterialMetaData& row) {
    XExecMap map;
    row.exec->getExecMap(map);
    return map;
}

} // namespace

void XTaskKelvarMove::check(const XBatchGetMaterialMetaData* data, FinishCallback finish) {
    XLOG(logProgress, "update plugin, kelvar, task move, check ...");
    if (!data) {
        end(finish, false);
        return;
    }
    if (utils::getAppDir().empty()) {
        XLOG(logProgress, "update plugin, kelvar, task move, no application folder.");
        end(finish, false);
        return;
    }
    if (!_canMove()) {
        XLOG(logProgress, "update plugin, kelvar, task move, can't move . ");
        end(finish, false);
        return;
    }
    const auto copy = std::make_shared<XBatchGetMaterialMetaData>(*data);
    bool virusLibMoved = false;
    bool allMoved = false;
    Rows nonPeMoved;
    Rows peMoved;
    if (!_moveAllFile(copy, &virusLibMoved, &allMoved, nonPeMoved, peMoved)) {
        end(finish, false);
        return;
    }
    Rows moved = peMoved;
    for (const XMaterialMetaData* row : nonPeMoved) {
        _saveFileVersion(*row);
        moved.push_back(row);
    }
    if (!moved.empty()) {
        _updateFileList(moved);
    }
    if (allMoved) {
        _saveChannelVersion(copy->version);
    }
    if (virusLibMoved && !copy->virusLibVersion.empty()) {
        _saveVirusLibVersion(copy->virusLibVersion);
    }
    _notifyVersion(copy->version); // also when not all files were placed
    if (copy->hasSp) {
        XLOG(logProgress, "update plugin, kelvar, task move, install sp. ");
        hostmodules::runProcess(L"orvdefender.exe", L"--cmdline=install_sp");
    }
    execMgr.execAll();
    end(finish, true);
}

bool XTaskKelvarMove::_canMove() {
    return utils::canRestartTray();
}

bool XTaskKelvarMove::_moveAllFile(const std::shared_ptr<XBatchGetMaterialMetaData>& data,
                                   bool* virusLibMoved, bool* allMoved, Rows& nonPeMoved,
                                   Rows& peMoved) {
    if (!data) {
        return false;
    }
    nonPeMoved.clear();
    peMoved.clear();
    std::vector<Rows> groups;
    Rows free;
    _splitByDepends(data, groups, free);
    XLOG(logProgress, "update plugin, move task, move all file, all:", data->materials.size(),
         ", depends:", groups.size(), ", non depend:", free.size());
    Run run{.appDir = _getAppDir() + "\\",
            .updateDir = _getUpdateDir() + "\\",
            .tempDir = _getTempDir() + "\\",
            .nonPeMoved = nonPeMoved,
            .peMoved = peMoved};
    for (const XMaterialMetaData* row : free) {
        _moveFreeRow(run, *row);
    }
    run.anyMoved = run.movedCount > 0;
    for (const Rows& group : groups) {
        _moveGroup(run, group);
    }
    utils::saveTempFileList(run.tempNames);
    TextMap succ;
    for (const Rows* rows : {&nonPeMoved, &peMoved}) {
        for (const XMaterialMetaData* row : *rows) {
            succ[row->filePath] = row->md5;
        }
    }
    _updatePadding(run.updateDir, run.newPadding, succ);
    *virusLibMoved = run.virusLib;
    *allMoved = run.movedCount == data->materials.size();
    return run.anyMoved && run.movedCount > 0;
}

void XTaskKelvarMove::_moveFreeRow(Run& run, const XMaterialMetaData& row) {
    run.tempNames.push_back(row.md5); // every row that is tried, also one that fails
    XMovePaths paths;
    bool isPE = true;
    bool peeding = false;
    if (!_moveOneFile(run.appDir, run.updateDir, run.tempDir, row, paths, &isPE, &peeding)) {
        return;
    }
    ++run.movedCount;
    run.virusLib = run.virusLib || _isVirusLib(row);
    if (row.exec) {
        execMgr.addExec(execMapOf(row));
    }
    (isPE ? run.peMoved : run.nonPeMoved).push_back(&row);
    if (peeding) {
        run.newPadding[row.filePath] = row.fileMd5;
    }
}

void XTaskKelvarMove::_moveGroup(Run& run, const Rows& rows) {
    Group group;
    for (const XMaterialMetaData* row : rows) {
        if (!_moveGroupRow(run, group, *row)) {
            // The rows counted and listed so far stay so, and what was scheduled stays
            // scheduled: only what was placed is taken back.
            for (const XMovePaths& paths : group.moved) {
                _rollbackFile(paths.src, paths.dst, paths.temp);
            }
            return;
        }
    }
    if (group.anyPeeding && !group.inPlace.empty()) {
        _peedingGroup(run, group); // no program of such a group starts in this run
    } else {
        for (const XExecMap& exec : group.execs) {
            execMgr.addExec(exec);
        }
    }
    run.anyMoved = run.anyMoved || run.movedCount > 0;
    run.virusLib = run.virusLib || group.virusLib;
    // Never cleared: rows of earlier groups come again, those of failed groups too. All
    // that follows works by key.
    append(run.peMoved, run.groupPe);
    append(run.nonPeMoved, run.groupNonPe);
}

bool XTaskKelvarMove::_moveGroupRow(Run& run, Group& group, const XMaterialMetaData& row) {
    run.tempNames.push_back(row.md5);
    XMovePaths paths;
    bool isPE = true;
    bool peeding = false;
    if (!_moveOneFile(run.appDir, run.updateDir, run.tempDir, row, paths, &isPE, &peeding)) {
        return false;
    }
    ++run.movedCount;
    group.moved.push_back(paths);
    group.virusLib = group.virusLib || _isVirusLib(row);
    if (row.exec) {
        group.execs.push_back(execMapOf(row));
    }
    (isPE ? run.groupPe : run.groupNonPe).push_back(&row);
    if (peeding) {
        group.anyPeeding = true;
        run.newPadding[row.filePath] = row.fileMd5;
    } else {
        group.inPlace.push_back(paths);
    }
    return true;
}

void XTaskKelvarMove::_peedingGroup(Run& run, const Group& group) {
    for (const XMovePaths& paths : group.inPlace) {
        _rollbackFile(paths.src, paths.dst, paths.temp);
        _peedingFile(paths.src, paths.dst);
        run.newPadding[without(paths.dst, run.appDir)] = without(paths.src, run.updateDir);
    }
}

bool XTaskKelvarMove::_splitByDepends(const std::shared_ptr<XBatchGetMaterialMetaData>& data,
                                      std::vector<Rows>& groups, Rows& free) {
    if (!data) {
        return false;
    }
    groups.clear();
    free.clear();
    std::map<std::string, Rows> byKey;
    for (const XMaterialMetaData& row : data->materials) {
        (row.dependent.empty() ? free : byKey[row.dependent]).push_back(&row);
    }
    for (auto& [key, rows] : byKey) {
        groups.push_back(std::move(rows));
    }
    return true;
}

bool XTaskKelvarMove::_isVirusLib(const XMaterialMetaData& row) {
    return utils::toLower(row.material.module.id) == virusLibModule;
}
