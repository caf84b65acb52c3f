#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/notificationcenter.h"
#include "updatepkg/upgradedata.h"
#include "utils/mutex.h"

class XUpdatePkg;

/// Holds the offer of a package for the process, and takes the user interface's commands
/// from the notification centre, on whatever thread that delivers. Any thread; no lock is
/// held during a call of the host or of the channel.
class XUpdatePkgTrace : public NC::Observer {
public:
    /// Made at the first call, with what the settings hold, and never destroyed: the centre
    /// keeps it as an observer.
    static XUpdatePkgTrace& instance();

    XUpdatePkgTrace(const XUpdatePkgTrace&) = delete;
    XUpdatePkgTrace& operator=(const XUpdatePkgTrace&) = delete;

    /// Who carries commands out. Must live as long as the process.
    void setOwner(XUpdatePkg* channel);

    std::shared_ptr<UpgradeData> getData() const;

    /// Takes `data` over and stores it; of null nothing is stored.
    void setData(const std::shared_ptr<UpgradeData>& data);

    /// Empties the stored offer. The one in memory stays, for the user interface.
    void clearData();

    /// Whether the user does not want this version; an empty one is never ignored.
    bool isIgnoredVersion(const std::string& version) const;

    void onNotification(NC::INotification* notification) override;

protected:
    XUpdatePkgTrace(); ///< not private, so that a test sees what a start brings
    ~XUpdatePkgTrace() = default;

private:
    void _command(std::int32_t code);
    void _loadData();
    void _loadIgnoreVersions();
    void _addIgnoreVersion();
    void _saveIgnoreVersions(const std::vector<std::string>& versions);

    mutable Mutex lock;
    std::shared_ptr<UpgradeData> current XR_GUARDED_BY(lock);
    std::vector<std::string> ignoreVersions XR_GUARDED_BY(lock);
    XUpdatePkg* owner XR_GUARDED_BY(lock) = nullptr;
};
