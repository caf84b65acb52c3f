#include "sandbox/common/folders.h"

#include "sandbox/platform/hostprocess.h"

namespace sandbox {

Folders processFolders() {
    return Folders(executableFile().parent_path().parent_path());
}

} // namespace sandbox
