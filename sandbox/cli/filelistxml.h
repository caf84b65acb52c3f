#pragma once

#include <string>
#include <vector>

#include "sandbox/cli/clientstate.h"

namespace sandbox {

/// A filelist.xml with these entries, filled up to `total` by made-up ones.
void writeFileList(const std::filesystem::path& file, const std::vector<ListedFile>& entries,
                   std::size_t total);

} // namespace sandbox
