#pragma once

#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

/// Files under client paths: "\" separates and names match without regard to case. A
/// path is a narrow string of bytes, handed to the system unchanged (posix maps the
/// separators and the case at the call). Any thread. A failed call leaves its reason in
/// lastError. A path of 260 characters or more fails with errorFilenameTooLong.
namespace platform {

/// The longest client path, terminating zero included.
inline constexpr std::size_t maxPath = 260;

/// Whether a file or folder is there (PathFileExistsA).
bool fileExists(const std::string& path);

/// Whether a folder is there (PathIsDirectoryA).
bool isFolder(const std::string& path);

/// Whether a file or folder can be reached (_access with mode 0).
bool canAccess(const std::string& path);

/// Makes one folder; its parent must be there. False when it exists already.
bool makeFolder(const std::string& path);

/// Deletes a file, not a folder. Fails with 32 on a file in use; Windows answers 5 for a
/// running program, which moveFile can still move aside.
bool removeFile(const std::string& path);

/// Opens by the rules of fopen, in binary or text as `mode` says; the caller closes.
/// Null on failure.
std::FILE* openFile(const std::string& path, const char* mode);

/// Size in bytes, or nothing when there is no such file or it is a folder.
std::optional<std::uint64_t> fileSize(const std::string& path);

struct FolderEntry {
    std::string name;
    bool isFolder = false;
};

/// The entries of a folder, "." and ".." included, in the system's order; nothing when
/// the folder cannot be searched.
std::optional<std::vector<FolderEntry>> listFolder(const std::string& path);

/// Flags of moveFile, with the values of MoveFileExA.
inline constexpr std::uint32_t moveReplaceExisting = 1;
inline constexpr std::uint32_t moveDelayUntilReboot = 4;

/// Moves or renames `from` to `to` within a volume. With moveReplaceExisting a file at
/// `to` is replaced. With moveDelayUntilReboot nothing is moved now: the system notes
/// the request durably and carries it out at its next start; a null `to` then means
/// delete. Without moveReplaceExisting an existing `to` is left alone and the call fails
/// with 183. Fails with 32 when `from` or a replaced `to` is in use (not when delayed;
/// Windows may answer 5 for `to`).
bool moveFile(const std::string& from, const char* to, std::uint32_t flags);

/// The path under which a library that opens files by itself finds `path`; empty when it
/// is too long.
std::string systemPath(const std::string& path);

} // namespace platform
