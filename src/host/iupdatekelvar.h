#pragma once

#include <cstddef>

namespace XRefresher {

/// The virus library's version. Made by the export
/// `XRefresher::IUpdateKelvar* GetUpdateKelvar()`; the caller frees it with release.
/// Any thread.
class IUpdateKelvar {
public:
    /// Bytes that the caller's buffer must have.
    static constexpr std::size_t versionSize = 128;

    /// Slot 0. Writes the zero-terminated version, "0000-00-00" when none is known;
    /// leaves the buffer alone when there is no version store.
    virtual void getVersion(char* version) = 0;
    /// Slot 1. 0 when done, -1 when there is no version store.
    virtual int setVersion(const char* version) = 0;
    /// Slot 2. Deletes the object.
    virtual void release() = 0;

protected:
    ~IUpdateKelvar() = default;
};

} // namespace XRefresher
