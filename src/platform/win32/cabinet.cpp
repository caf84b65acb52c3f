#include "platform/cabinet.h"

#include "platform/win32/pathlimit.h"
#include "platform/win32/windowsapi.h"

#include <setupapi.h>

#include <algorithm>
#include <exception>

namespace platform {

static_assert(static_cast<UINT>(CabinetNotification::fileInCabinet) == SPFILENOTIFY_FILEINCABINET);
static_assert(static_cast<UINT>(CabinetNotification::needNewCabinet) ==
              SPFILENOTIFY_NEEDNEWCABINET);
static_assert(static_cast<UINT>(CabinetNotification::fileExtracted) == SPFILENOTIFY_FILEEXTRACTED);

namespace {

/// One walk through a cabinet: what the system's callback needs to know.
class Iteration {
public:
    Iteration(const std::string& path, const CabinetCallback& target)
        : cabinet(path), callback(target) {}

    bool run() {
        const bool worked = ::SetupIterateCabinetA(cabinet.c_str(), 0, notify, this) != FALSE;
        if ((!worked || ended) && isWriting) {
            ::DeleteFileA(member.fullTargetName.c_str());
        }
        if (thrown) {
            std::rethrow_exception(thrown);
        }
        return worked && !ended;
    }

private:
    static UINT CALLBACK notify(void* context, UINT notification, UINT_PTR parameter, UINT_PTR) {
        auto& iteration = *static_cast<Iteration*>(context);
        // Wine takes an abort for a skip: it goes on, and ends as if all were well.
        if (iteration.ended) {
            return refusalOf(notification);
        }
        try {
            return iteration.answer(notification, parameter);
        } catch (...) {
            // Nothing may be thrown through the system's frames.
            iteration.thrown = std::current_exception();
            iteration.ended = true;
            return refusalOf(notification);
        }
    }

    static UINT refusalOf(UINT notification) {
        return notification == SPFILENOTIFY_FILEINCABINET ? FILEOP_ABORT : ERROR_CANCELLED;
    }

    UINT answer(UINT notification, UINT_PTR parameter) {
        switch (notification) {
        case SPFILENOTIFY_FILEINCABINET:
            return offer(*reinterpret_cast<FILE_IN_CABINET_INFO_A*>(parameter));
        case SPFILENOTIFY_FILEEXTRACTED:
            return extracted(*reinterpret_cast<const FILEPATHS_A*>(parameter));
        case SPFILENOTIFY_NEEDNEWCABINET:
            return needed(*reinterpret_cast<const CABINET_INFO_A*>(parameter));
        default:
            return NO_ERROR;
        }
    }

    UINT offer(FILE_IN_CABINET_INFO_A& file) {
        isWriting = false; // the member before is whole
        member = {file.NameInCabinet, file.FileSize, {}};
        const std::uint32_t wanted = callback(CabinetNotification::fileInCabinet, member);
        if (wanted == cabinetSkip) {
            return FILEOP_SKIP;
        }
        const std::string& target = member.fullTargetName;
        // A member over the cabinet would be read from what it writes.
        if (wanted != cabinetDoIt || !win32::fits(target) ||
            ::lstrcmpiA(target.c_str(), cabinet.c_str()) == 0) {
            ended = true;
            return FILEOP_ABORT;
        }
        *std::copy(target.begin(), target.end(), file.FullTargetName) = '\0';
        // What stood there before is never deleted, as it may not even have been opened.
        isWriting = ::GetFileAttributesA(target.c_str()) == INVALID_FILE_ATTRIBUTES;
        cut(target);
        return FILEOP_DOIT;
    }

    /// Wine writes into what stands there as it is: the end of a longer file would stay.
    static void cut(const std::string& target) {
        const HANDLE file = ::CreateFileA(target.c_str(), GENERIC_WRITE, 0, nullptr,
                                          TRUNCATE_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (file != INVALID_HANDLE_VALUE) {
            ::CloseHandle(file);
        }
    }

    /// Wine says so of a damaged member too, and fails then: it counts as whole only when
    /// the next one comes.
    UINT extracted(const FILEPATHS_A& paths) {
        if (paths.Win32Error != NO_ERROR) {
            return paths.Win32Error;
        }
        const std::uint32_t error = callback(CabinetNotification::fileExtracted, member);
        if (error != 0) {
            ended = true;
            isWriting = false;
        }
        return error;
    }

    UINT needed(const CABINET_INFO_A& next) {
        CabinetMember wanted{next.CabinetFile ? next.CabinetFile : "", 0, {}};
        callback(CabinetNotification::needNewCabinet, wanted);
        ended = true;
        return ERROR_FILE_NOT_FOUND;
    }

    const std::string& cabinet;
    const CabinetCallback& callback;
    CabinetMember member;
    bool isWriting = false; ///< the member's file is new and may be half-written
    bool ended = false;
    std::exception_ptr thrown;
};

} // namespace

bool iterateCabinet(const std::string& path, const CabinetCallback& callback) {
    return win32::fits(path) && Iteration(path, callback).run();
}

} // namespace platform
