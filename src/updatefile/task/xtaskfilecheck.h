#pragma once

#include <functional>
#include <memory>
#include <nlohmann/json_fwd.hpp>

#include "updatefile/updatefilelist.h"
#include "xtaskbase.h"

/// Asks the upgrade server for the channel's files, merges the answer into the stored list
/// and goes on to the download. check returns at once; the rest of the run is on the host's
/// delivery thread. One object serves all runs, of which two may be under way, and has to
/// outlive them. An answer that is no JSON throws nlohmann::json::exception.
class XTaskFileCheck final : public XTaskBase {
public:
    using XTaskBase::check;
    void check(FinishCallback finish) override;

private:
    using ListPtr = std::shared_ptr<XUpdateFileList>;
    /// Receives the answer, null for a failure. Runs twice when there is no server address.
    using ListCallback = std::function<void(const ListPtr& answer)>;

    static void _doHttp(const XUpdateFileList& list, const ListCallback& callback);
    static nlohmann::json _buildInfo(const XUpdateFileList& list);
};
