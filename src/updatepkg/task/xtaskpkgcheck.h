#pragma once

#include <functional>
#include <memory>
#include <string>

#include "updatepkg/task/xtaskpkgbase.h"
#include "updatepkg/upgradedata.h"

/// Asks the upgrade server for a newer package. In the automatic chain a good answer goes on
/// to the download. On the user's request it runs alone, looks first whether an installation
/// has come to its end, and reports the result to the user interface. Held by shared_ptr:
/// without an address the answer's step runs twice, the second time when the chain has ended.
class XTaskPkgCheck final : public XTaskPkgBase,
                            public std::enable_shared_from_this<XTaskPkgCheck> {
public:
    using XTaskBase::check;

    XTaskPkgCheck(bool isAutoCheck, std::shared_ptr<XUpdatePkgSender> sender)
        : XTaskPkgBase(std::move(sender)), m_isAutoCheck(isAutoCheck) {}

    void check(FinishCallback finish) override;

private:
    /// Gets what the server answered, or null when it did not.
    using Receiver = std::function<void(const std::shared_ptr<UpgradeData>& data)>;

    bool _confirmInstalled();
    static void _requestUpgrade(const FinishCallback& finish);
    static void _checkUpdate(const Receiver& callback);
    static void _refreshVersionFile();

    const bool m_isAutoCheck;
};
