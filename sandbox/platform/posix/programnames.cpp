#include "sandbox/platform/programnames.h"

namespace sandbox {

std::string programFile(const std::string& name) {
    return name;
}

std::string imageFile(const std::string& module) {
    return module + ".so"; // an ELF file has no version resource
}

} // namespace sandbox
