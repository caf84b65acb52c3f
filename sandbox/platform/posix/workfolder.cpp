#include "sandbox/platform/workfolder.h"

#include <cstdlib>
#include <string>
#include <system_error>

namespace sandbox {

WorkFolder::WorkFolder() {
    std::error_code error;
    std::string pattern =
        (std::filesystem::temp_directory_path(error) / "xsandbox-XXXXXX").string();
    if (!error && ::mkdtemp(pattern.data()) != nullptr) {
        folder = pattern;
    }
}

WorkFolder::~WorkFolder() {
    std::error_code ignored;
    if (!folder.empty()) {
        std::filesystem::remove_all(folder, ignored);
    }
}

} // namespace sandbox
