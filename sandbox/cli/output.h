#pragma once

#include <ostream>
#include <string>

#include <nlohmann/json.hpp>

#include "sandbox/cli/console.h"

namespace sandbox {

/// What a verb tells: text for people as it goes on, or one JSON object for programs at its end.
/// One thread.
class Output {
public:
    /// As JSON the console prints nothing.
    Output(std::ostream& standardOutput, Terminal terminal, bool asJson);

    Console& console() { return text; }
    bool isJson() const { return json; }

    /// Members of the verb's object; may be called again, a later member replaces an earlier
    /// one. "verb" and "status" are added at the end. Without effect for people.
    void result(const nlohmann::json& told);

    /// The verb has ended: prints its object where JSON is asked for. Called once, by main.
    void end(const std::string& verb, int status);
    /// The same for a verb that could not be carried out, or for a wrong call; then without
    /// what the verb had to tell until then.
    void fail(const std::string& verb, const std::string& error);

private:
    std::ostream& stream;
    bool json;
    Console text;
    nlohmann::json members = nlohmann::json::object();
};

} // namespace sandbox
