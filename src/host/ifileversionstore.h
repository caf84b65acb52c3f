#pragma once

/// Versions of data files, from `IFileVersionStore* getFileVer()` of xnbase.dll.
/// Borrowed. Paths are relative to the client's folder ("update\\version.dat"). Any
/// thread.
class IFileVersionStore {
public:
    /// Bytes of the buffer that getVersion fills.
    static constexpr int bufferSize = 64;

    /// Slot 0. 0 when done; `*length` is the length of the text without its
    /// terminating zero and stays 0 when the file has no version.
    virtual int getVersion(const char* path, char* buffer, int* length) = 0;
    virtual int updateVersion(const char* path, const char* version) = 0; ///< slot 1
    virtual int createVersion(const char* path, const char* version) = 0; ///< slot 2

protected:
    ~IFileVersionStore() = default;
};
