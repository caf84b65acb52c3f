#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

/// Plain functions that the channels share. They hold no state and no lock; any thread.
/// Paths are client paths; a version is a text of numbers joined by dots.
namespace utils {

// --- the client ---

/// Folder of the host's executable, without a separator at its end. Empty when its path
/// is too long for the system's functions: then nothing may be read or written.
std::string getAppDir();

/// Channel id of this client; empty when the module that knows it is missing.
std::string getChannelType();

/// Version of the client: that of OrvSecurityver.dll.
std::string getSecurityVersion();

/// Version of the client's data: the entry of "update\version.dat".
std::string getDataVersion();

/// Version of the operating system as "major.minor.build", with ".0" behind it when
/// `fourParts`. Empty when the module that knows it is missing.
std::string getOSVersion(bool fourParts);

/// Whether no window of the client is open; yes when the service that knows is missing.
bool canRestartTray();

/// Whether a user is logged in; logs what decided it.
bool isLogined();

/// The test file beside the host's executable. False without it, with the arguments left
/// as they are.
bool readTestConfig(std::string& channelId, int& updateTime, bool& testParam);

// --- versions ---

/// Version of a file: that of its version resource or, without one, that which the
/// version store holds for it. `*isFileVersion` tells which. A relative path lies below
/// the application folder. Empty when there is neither.
std::string getFileVersion(const char* path, bool* isFileVersion);

/// Whether a file has a version resource.
bool hasFileVersion(const char* path);

/// -1, 0 or 1. Compares part by part as numbers; with equal leading parts the longer
/// version is the greater, so 1.2.0 is newer than 1.2.
int compareVersion(const std::string& a, const std::string& b);

/// Entry of a data file in the version store, which names files relative to the
/// application folder. Empty when there is none.
std::string getDataFileVersion(const std::string& path);

/// Writes an entry, as a first or as a new version. False without a version store.
bool setDataFileVersion(const std::string& path, const std::string& version);

// --- files ---

/// MD5 of a file as 32 upper-case hexadecimal digits; empty when it does not open.
std::string getFileMd5(const char* path);

/// Size of a file as a signed 32-bit number, widened; 0 when there is none.
std::int64_t getFileSize(const char* path);

// --- text ---

/// Pieces of a text between delimiters. A trailing delimiter gives an empty last piece.
void splitString(const std::string& text, const std::string& delimiter,
                 std::vector<std::string>& parts);

/// Leading decimal number of a text as atoi reads it, held to the range of int.
int toInt(const std::string& text);

/// Text with ASCII letters in lower case.
std::string toLower(std::string text);

// --- time ---

/// Milliseconds of tick count since `tick`, a zero-extended tick count. Negative when the
/// count has begun anew since then, which keeps a gate shut.
std::int64_t elapsedSince(std::uint64_t tick);

// --- stored lists of the Kelvar channel ---
// The load operations throw nlohmann::json::exception when the stored text is no JSON;
// the save operations when a text is not UTF-8. An empty list is not saved: the stored
// value stays. Loading an empty value leaves the argument as it is.

void saveTempFileList(const std::vector<std::string>& files);
void loadTempFileList(std::vector<std::string>& files);
void clearTempFileList();
void savePaddingFileList(const std::map<std::string, std::string>& files);
void loadPaddingFileList(std::map<std::string, std::string>& files);
void clearPaddingFileList();

} // namespace utils
