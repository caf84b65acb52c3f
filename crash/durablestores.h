#pragma once

#include <filesystem>
#include <map>
#include <string>

#include "host/ifileversionstore.h"
#include "host/ikeyvaluestore.h"

/// The client's settings store and its version store, in one file that outlives the process
/// and that two of them may share.
namespace crash {

struct Stored {
    std::map<std::string, std::string> texts;
    std::map<std::string, std::uint64_t> numbers;
    std::map<std::string, std::string> versions;

    bool operator==(const Stored&) const = default;
};

/// What stands where the process ended in the middle of a write.
std::string halfOf(const std::string& text);

Stored readStores(const std::filesystem::path& file);
void writeStores(const std::filesystem::path& file, const Stored& stored);

/// Each write is an operation.
class DurableSettings final : public IKeyValueStore {
public:
    explicit DurableSettings(std::filesystem::path place) : file(std::move(place)) {}

    bool getString(const char* key, char* buffer, std::uint32_t* size) override;
    bool getUInt64(const char* key, std::uint64_t* value) override;
    bool getUInt32(const char* key, std::uint32_t* value) override;
    bool setString(const char* key, const char* value) override;
    bool setUInt64(const char* key, std::uint64_t value) override;

private:
    std::filesystem::path file;
};

class DurableVersions final : public IFileVersionStore {
public:
    explicit DurableVersions(std::filesystem::path place) : file(std::move(place)) {}

    int getVersion(const char* path, char* buffer, int* length) override;
    int updateVersion(const char* path, const char* version) override;
    int createVersion(const char* path, const char* version) override;

private:
    int store(const char* path, const std::string& version);

    std::filesystem::path file;
};

} // namespace crash
