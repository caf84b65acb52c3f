#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

/// A data file of the file channel.
struct XFileTypeName {
    std::int32_t fileType;
    const char* name;
};

/// All files that the channel knows. An entry of another type is dropped where a list is read.
inline constexpr std::array<XFileTypeName, 2> fileTypeNames{{
    {1000, "patchlib0.dat"},
    {1001, "patchlib1.dat"},
}};

/// Null for a type that is not in the table.
const char* fileNameOfType(std::int32_t fileType);

/// What the server offers, or offered last, for one file.
struct XUpdateFileData {
    std::int32_t fileType = 0;
    std::int64_t fileSize = 0; ///< not used by the download
    std::string fileVersion = "0.0.0.0";
    std::string fileMD5; ///< hexadecimal digits of any case
    std::string fileURL;

    /// Takes each member that is there with the right type; the other fields stay.
    void fromJson(const nlohmann::json& object);
    nlohmann::json toJson() const;

    /// Whether the entry says where to get its file.
    bool hasUrl() const { return fileType != 0 && !fileURL.empty(); }
};

/// The entries in the order in which they came. Not for two threads at a time. Reading throws
/// nlohmann::json::exception when the text is no JSON.
class XUpdateFileList {
public:
    using Entry = std::shared_ptr<XUpdateFileData>;

    std::size_t size() const { return entries.size(); }
    const Entry& operator[](std::size_t index) const { return entries[index]; }
    void append(Entry entry) { entries.push_back(std::move(entry)); }
    void erase(std::size_t index);

    /// Takes the array "list" of the object "data" of an answer.
    void fromResponse(const std::string& text);

    /// Takes the array "list" of the stored object, and behind it an entry with defaults for
    /// every known type that it leaves out; an empty text leaves out all.
    void fromStored(const std::string& text);
    std::string toStored() const;

    /// Puts each entry of `other` that has a URL in the place of the own one of its type, at
    /// the end of the list. Null counts as empty.
    void merge(const std::shared_ptr<XUpdateFileList>& other);

    /// Erases the first entry of that type.
    void removeType(std::int32_t fileType);

private:
    void _read(const nlohmann::json& array);
    void _fill();

    /// The first entry of that type, or the size of the list.
    std::size_t _indexOf(std::int32_t fileType) const;

    std::vector<Entry> entries;
};

/// Reads the stored list into a new one; a text that is no JSON counts as none. Always true.
bool loadFileList(std::shared_ptr<XUpdateFileList>& out);

/// Stores the list. Always true.
bool saveFileList(const std::shared_ptr<XUpdateFileList>& list);
