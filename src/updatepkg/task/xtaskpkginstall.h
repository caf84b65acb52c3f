#pragma once

#include <memory>
#include <utility>

#include "updatepkg/task/xtaskpkgbase.h"

/// Starts the setup program that the download left in the update folder, and no more: the
/// next check that the user asks for sees whether the client has become the new version. At
/// the end of the automatic chain it may be refused, on the user's command it never is.
class XTaskPkgInstall final : public XTaskPkgBase {
public:
    using XTaskBase::check;

    XTaskPkgInstall(bool isAuto, std::shared_ptr<XUpdatePkgSender> sender)
        : XTaskPkgBase(std::move(sender)), m_isAuto(isAuto) {}

    /// In mute mode the automatic one never calls `finish`: its queue stays busy until a
    /// command stops it.
    void check(FinishCallback finish) override;

private:
    bool canInstall() const;
    void _runSetup(const char* path) const;

    const bool m_isAuto;
};
