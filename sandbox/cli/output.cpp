#include "sandbox/cli/output.h"

#include "sandbox/cli/exitstatus.h"

namespace sandbox {
namespace {

/// Takes everything and keeps nothing.
std::ostream& nowhere() {
    static std::ostream stream(nullptr);
    return stream;
}

/// Names of files are bytes, which JSON may not hold as they are.
std::string documentOf(const nlohmann::json& members) {
    return members.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

} // namespace

Output::Output(std::ostream& standardOutput, Terminal terminal, bool asJson)
    : stream(standardOutput), json(asJson), text(asJson ? nowhere() : standardOutput, terminal) {}

void Output::result(const nlohmann::json& told) {
    members.update(told);
}

void Output::end(const std::string& verb, int status) {
    if (!json) {
        return;
    }
    members["verb"] = verb;
    members["status"] = status;
    stream << documentOf(members) << std::endl;
}

void Output::fail(const std::string& verb, const std::string& error) {
    members = {{"error", error}};
    end(verb, exitSandboxFailed);
}

} // namespace sandbox
