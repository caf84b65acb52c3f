#include "platform/cabinet.h"

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
    explicit Iteration(const CabinetCallback& target) : callback(target) {}

    static UINT CALLBACK notify(void* context, UINT notification, UINT_PTR parameter, UINT_PTR) {
        auto& iteration = *static_cast<Iteration*>(context);
        try {
            return iteration.answer(notification, parameter);
        } catch (...) {
            // Nothing may be thrown through the system's frames.
            iteration.thrown = std::current_exception();
            return notification == SPFILENOTIFY_FILEINCABINET ? FILEOP_ABORT : ERROR_CANCELLED;
        }
    }

    bool finish(bool result) {
        if (!result && isWriting) {
            ::DeleteFileA(member.fullTargetName.c_str());
        }
        if (thrown) {
            std::rethrow_exception(thrown);
        }
        return result;
    }

private:
    UINT answer(UINT notification, UINT_PTR parameter) {
        switch (notification) {
        case SPFILENOTIFY_FILEINCABINET:
            return offer(*reinterpret_cast<FILE_IN_CABINET_INFO_A*>(parameter));
        case SPFILENOTIFY_FILEEXTRACTED:
            return extracted(*reinterpret_cast<const FILEPATHS_A*>(parameter));
        case SPFILENOTIFY_NEEDNEWCABINET: {
            const auto& cabinet = *reinterpret_cast<const CABINET_INFO_A*>(parameter);
            CabinetMember wanted{cabinet.CabinetFile ? cabinet.CabinetFile : "", 0, {}};
            callback(CabinetNotification::needNewCabinet, wanted);
            return ERROR_FILE_NOT_FOUND;
        }
        default:
            return NO_ERROR;
        }
    }

    UINT offer(FILE_IN_CABINET_INFO_A& file) {
        member = {file.NameInCabinet, file.FileSize, {}};
        const std::uint32_t wanted = callback(CabinetNotification::fileInCabinet, member);
        if (wanted == cabinetSkip) {
            return FILEOP_SKIP;
        }
        if (wanted != cabinetDoIt || member.fullTargetName.size() >= MAX_PATH) {
            return FILEOP_ABORT;
        }
        const std::string& target = member.fullTargetName;
        *std::copy(target.begin(), target.end(), file.FullTargetName) = '\0';
        // What stood there before is never deleted, as it may not even have been opened.
        isWriting = ::GetFileAttributesA(target.c_str()) == INVALID_FILE_ATTRIBUTES;
        return FILEOP_DOIT;
    }

    UINT extracted(const FILEPATHS_A& paths) {
        if (paths.Win32Error != NO_ERROR) {
            return paths.Win32Error;
        }
        isWriting = false;
        return callback(CabinetNotification::fileExtracted, member);
    }

    const CabinetCallback& callback;
    CabinetMember member;
    bool isWriting = false;
    std::exception_ptr thrown;
};

} // namespace

bool iterateCabinet(const std::string& path, const CabinetCallback& callback) {
    Iteration iteration(callback);
    const bool result =
        ::SetupIterateCabinetA(path.c_str(), 0, Iteration::notify, &iteration) != FALSE;
    return iteration.finish(result);
}

} // namespace platform
