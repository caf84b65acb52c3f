#include "sandbox/platform/programnames.h"

namespace sandbox {

std::string programFile(const std::string& name) {
    return name + ".exe";
}

std::string imageFile(const std::string& module) {
    return module;
}

} // namespace sandbox
