#pragma once

#include <memory>
#include <utility>

#include "updatepkg/xupdatepkgsender.h"
#include "xtaskbase.h"

/// Base of the package channel's tasks: holds what tells the user interface, or null.
class XTaskPkgBase : public XTaskBase {
public:
    explicit XTaskPkgBase(std::shared_ptr<XUpdatePkgSender> sender) : m_sender(std::move(sender)) {}

protected:
    const std::shared_ptr<XUpdatePkgSender> m_sender;
};
