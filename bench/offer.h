#pragma once

#include <filesystem>
#include <string>
#include <vector>

/// What a measured platform offers: materials made by rule, the same at each call.
namespace bench {

struct Material {
    std::string id; ///< name in the storage
    std::string path;
    std::string md5;     ///< of the stored file
    std::string fileMd5; ///< of the file that is put in place
    bool isCabinet = false;
};

/// `count` materials, 70 in a hundred of them cabinets, stored below `folder`, where an earlier
/// call with the same numbers may have left them. Most files have 10 to 500 KB, one in a
/// hundred has 5 MB; both divided by `divisor`. The file "list" names them for programs without
/// a plug-in, a line each: id, MD5, MD5 of the file, "cab" or "plain", path.
std::vector<Material> makeMaterials(const std::filesystem::path& folder, std::size_t count,
                                    std::size_t divisor);

/// The platform's fifth answer for these materials; each row has all eight parameters.
std::string materialAnswer(const std::vector<Material>& materials);

/// Rows for an answer alone, with nothing stored.
std::vector<Material> unstoredMaterials(std::size_t count);

/// The other answers of the conversation by their path, for a storage at `address`.
std::string otherAnswer(const std::string& path, const std::vector<Material>& materials,
                        const std::string& address);

} // namespace bench
