#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "updatekelvar/data/exec/execmgr.h"
#include "updatekelvar/data/materialdata.h"
#include "xtaskbase.h"

/// Record of one moved file: absolute client paths.
struct XMovePaths {
    std::string src;  ///< the new file in the update folder
    std::string dst;  ///< the target
    std::string temp; ///< where the old target went, or would have gone
};

/// Last task of the chain: puts each file in place below the application folder, keeps
/// groups of files together, records what was done, tells the client and starts the
/// programs that the materials ask for. Made for one run; blocks the caller's thread for
/// all of it. Throws nlohmann::json::exception when a stored list is no JSON.
class XTaskKelvarMove final : public XTaskBase {
public:
    using XTaskBase::check;

    void check(const XBatchGetMaterialMetaData* data, FinishCallback finish) override;

private:
    /// Rows of the list that the run works on and that outlives them.
    using Rows = std::vector<const XMaterialMetaData*>;
    using TextMap = std::map<std::string, std::string>;

    /// What a run of _moveAllFile gathers. The folders end in a backslash.
    struct Run {
        std::string appDir;
        std::string updateDir;
        std::string tempDir;
        std::vector<std::string> tempNames{}; ///< md5 of every row that was tried
        TextMap newPadding{};                 ///< targets scheduled in this run
        std::size_t movedCount = 0;
        bool anyMoved = false;
        bool virusLib = false;
        Rows groupPe{}; ///< never cleared between groups; likewise the next
        Rows groupNonPe{};
        Rows& nonPeMoved;
        Rows& peMoved;
    };

    /// What a group gathers until it is known how it ends.
    struct Group {
        bool virusLib = false;
        bool anyPeeding = false;
        std::vector<XExecMap> execs;
        std::vector<XMovePaths> moved;
        std::vector<XMovePaths> inPlace;
    };

    static bool _canMove();
    bool _moveAllFile(const std::shared_ptr<XBatchGetMaterialMetaData>& data, bool* virusLibMoved,
                      bool* allMoved, Rows& nonPeMoved, Rows& peMoved);
    void _moveFreeRow(Run& run, const XMaterialMetaData& row);
    void _moveGroup(Run& run, const Rows& rows);
    static bool _moveGroupRow(Run& run, Group& group, const XMaterialMetaData& row);
    static void _peedingGroup(Run& run, const Group& group);
    static bool _splitByDepends(const std::shared_ptr<XBatchGetMaterialMetaData>& data,
                                std::vector<Rows>& groups, Rows& free);
    static bool _isVirusLib(const XMaterialMetaData& row);

    // What is recorded after the moves (moverecords.cpp).
    static void _updateFileList(const Rows& moved);
    static bool _saveFileVersion(const XMaterialMetaData& row);
    static bool _saveChannelVersion(const std::string& version);
    static bool _saveVirusLibVersion(const std::string& version);
    static bool _notifyVersion(const std::string& version);

    /// Keeps the list of files that wait for the restart (paddinglist.cpp): `newPadding`
    /// are the targets scheduled in this run, the keys of `succ` those placed or
    /// scheduled. False when there was nothing to do.
    static bool _updatePadding(const std::string& updateDir, const TextMap& newPadding,
                               const TextMap& succ);
    static void _dropUnsafe(TextMap& old);
    static void _dropOvertaken(const std::string& updateDir, const TextMap& succ,
                               const TextMap& old);
    static void _dropInvalid(const std::string& updateDir, TextMap& old);

    // One file (fileplacement.cpp, filereplace.cpp).
    static bool _moveOneFile(const std::string& appDir, const std::string& updateDir,
                             const std::string& tempDir, const XMaterialMetaData& row,
                             XMovePaths& paths, bool* isPE, bool* peeding);
    static bool _isSafe(const XMaterialMetaData& row, const std::string& dst);
    static bool _preMove(const XMaterialMetaData& row, const std::string& appDir,
                         const std::string& updateDir, const std::string& dst, std::string& src);
    static bool _expandCabinet(const XMaterialMetaData& row, const std::string& cabinet,
                               const std::string& updateDir);
    /// Whether the cabinet can be brought out without filling the disk or taking hours.
    static bool _isReasonable(const XMaterialMetaData& row, const std::string& cabinet);
    /// Whether a member of the row's cabinet stays in the update folder and off the cabinet.
    static bool _mayBeWritten(const XMaterialMetaData& row, const std::string& member);
    static bool _needMove(const std::string& src, const std::string& dst,
                          const XMaterialMetaData& row, bool* isPE);
    static bool _moveFile(const std::string& src, const std::string& dst, const std::string& temp,
                          bool* peeding);
    static bool _rollbackFile(const std::string& src, const std::string& dst,
                              const std::string& temp);
    static bool _peedingFile(const std::string& src, const std::string& dst);
    static std::string _uniqueTempPath(const std::string& path);
    static bool _makeDirs(const std::string& appDir, const std::string& dst);

    static std::string _getAppDir();
    static std::string _getUpdateDir();
    static std::string _getTempDir();

    XExecMgr execMgr;
};
