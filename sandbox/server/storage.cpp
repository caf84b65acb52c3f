#include "sandbox/server/storage.h"

#include <filesystem>

namespace sandbox {

StoredFile::StoredFile(const std::string& path) : file(std::fopen(path.c_str(), "rb")) {
    std::error_code error;
    bytes = file ? std::filesystem::file_size(path, error) : 0;
    if (error) {
        file.reset();
        bytes = 0;
    }
}

std::string StoredFile::read(std::uint64_t offset, std::size_t length) {
    std::string piece(length, '\0');
    if (!file || std::fseek(file.get(), static_cast<long>(offset), SEEK_SET) != 0) {
        return "";
    }
    piece.resize(std::fread(piece.data(), 1, length, file.get()));
    return piece;
}

bool isPlainName(const std::string& name) {
    return !name.empty() && name.find_first_of("/\\:") == std::string::npos && name != "." &&
           name != "..";
}

} // namespace sandbox
