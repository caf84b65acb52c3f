#include "platform/cabinet.h"

#include "platform/cabinetindex.h"
#include "platform/files.h"
#include "platform/posix/mspackfiles.h"

#include <memory>
#include <vector>

namespace platform {

namespace {

using posix::MspackFiles;

std::vector<CabinetEntry> indexOf(const std::string& path) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(openFile(path, "rb"), std::fclose);
    return file ? readCabinetIndex(file.get()).value_or(std::vector<CabinetEntry>())
                : std::vector<CabinetEntry>();
}

/// An open cabinet; owns the decompressor and its list of members.
class Cabinet {
public:
    explicit Cabinet(const std::string& path)
        : files(path), decompressor(mspack_create_cab_decompressor(&files)) {
        if (decompressor) {
            content = decompressor->open(decompressor, path.c_str());
        }
    }
    ~Cabinet() {
        if (content) {
            decompressor->close(decompressor, content);
        }
        if (decompressor) {
            mspack_destroy_cab_decompressor(decompressor);
        }
    }
    Cabinet(const Cabinet&) = delete;
    Cabinet& operator=(const Cabinet&) = delete;

    bool iterate(const CabinetCallback& callback) {
        if (!content) {
            return false;
        }
        std::size_t index = 0;
        for (mscabd_file* file = content->files; file; file = file->next, ++index) {
            if (!visit(*file, index, callback)) {
                return false;
            }
        }
        return true;
    }

private:
    bool visit(mscabd_file& file, std::size_t index, const CabinetCallback& callback) {
        CabinetMember member{file.filename, file.length, {}};
        const std::uint32_t answer = callback(CabinetNotification::fileInCabinet, member);
        if (answer == cabinetSkip) {
            return true;
        }
        return answer == cabinetDoIt && isWhole(index, callback) && extract(file, member) &&
               callback(CabinetNotification::fileExtracted, member) == 0;
    }

    /// Whether the data of a member lies in this cabinet alone.
    bool isWhole(std::size_t index, const CabinetCallback& callback) {
        if (!entries) {
            entries = indexOf(files.cabinetPath());
        }
        const std::uint16_t folder =
            index < entries->size() ? (*entries)[index].folder : continuedFromPrevious;
        if (folder == continuedToNext || folder == continuedOnBothSides) {
            CabinetMember wanted{content->nextname ? content->nextname : "", 0, {}};
            callback(CabinetNotification::needNewCabinet, wanted);
            return false;
        }
        return folder != continuedFromPrevious;
    }

    bool extract(mscabd_file& file, const CabinetMember& member) {
        files.output() = {};
        const int error = decompressor->extract(decompressor, &file, member.fullTargetName.c_str());
        if (error == MSPACK_ERR_OK && files.output().complete) {
            return true;
        }
        if (files.output().opened) {
            removeFile(member.fullTargetName);
        }
        return false;
    }

    MspackFiles files;
    mscab_decompressor* decompressor;
    mscabd_cabinet* content = nullptr;
    std::optional<std::vector<CabinetEntry>> entries; ///< read when a member is to be extracted
};

} // namespace

bool iterateCabinet(const std::string& path, const CabinetCallback& callback) {
    return Cabinet(path).iterate(callback);
}

} // namespace platform
