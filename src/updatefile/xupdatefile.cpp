#include "updatefile/xupdatefile.h"

#include <thread>

#include "host/hostmodules.h"
#include "host/log.h"
#include "host/refbase.h"
#include "platform/clock.h"
#include "updatefile/task/xtaskfilecheck.h"
#include "updatefile/task/xtaskfiledownload.h"

namespace {

constexpr std::uint32_t retryWaitMs = 300'000;
constexpr int taskKind = 0; ///< what the host's postTask gets along

} // namespace

int XUpdateFile::init() {
    m_task = std::make_shared<XTaskFileCheck>();
    m_task->setNext(std::make_shared<XTaskFileDownload>());
    uc::IUserCenter* center = hostmodules::getUserCenter();
    if (uc::IUserStateSource* source = center ? center->stateSource() : nullptr) {
        source->registerObserver(this);
    }
    return 0;
}

int XUpdateFile::checkUpdate() {
    XLOG(logProgress, "update plugin, file, check update ... ");
    if (m_retry == 0) {
        XLOG(logProgress, "update plugin, file, check finished, so ignore.");
        return 0;
    }
    if (!canCheck()) {
        XLOG(logProgress, "update plugin, file, can't check, so ignore.");
        return 0;
    }
    if (m_task) {
        const auto counted = std::make_shared<std::atomic<bool>>(false);
        m_task->check([this, counted](bool succ) {
            XLOG(logProgress, "update plugin, file, check finished, succ:", succ);
            // Without a server address a run ends twice; it is still one attempt.
            if (!counted->exchange(true)) {
                _countRun(succ);
            }
        });
    }
    return 0;
}

void XUpdateFile::_countRun(bool succ) {
    std::int32_t left = m_retry;
    std::int32_t now = 0;
    do {
        now = succ || left == 0 ? 0 : left - 1; // finished stays finished
    } while (!m_retry.compare_exchange_weak(left, now));
    if (now > 0) {
        const XN::ScopedRef task(new XN::TaskFunctor([this] { retry(); }));
        hostmodules::postTask(taskKind, task.get());
    }
}

void XUpdateFile::event2(void* /*argument*/) {
    checkUpdate();
}

bool XUpdateFile::retry() {
    XLOG(logProgress, "update plugin, file, retry.");
    // A plain pointer: channels live as long as the process.
    std::thread([this] {
        platform::sleepFor(retryWaitMs);
        checkUpdate();
    }).detach();
    return true;
}
