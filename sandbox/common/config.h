#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace sandbox {

/// What the client of a run is like; config.json. The defaults describe a healthy one.
/// Its JSON has the members' names; a missing member keeps the default.
struct Config {
    struct Os {
        std::uint32_t major = 10;
        std::uint32_t minor = 0;
        std::uint32_t build = 19045;
    };
    struct Login {
        bool token = true; ///< whether that state is valid; so the two below
        bool device = true;
        bool service = true;
        std::string identity = "1001-2002-x";
        std::string tokenText;
        std::string phone;

        bool operator==(const Login& other) const = default;
    };

    std::optional<std::string> serverAddress;
    std::optional<std::string> upgradeAddress;
    std::string homeDirectory; ///< native path; empty stands for the run's own home folder
    std::uint32_t httpTimeoutMs = 20000;
    Os os;
    Login login;
    int muteMode = 0;
    std::string channelType = "tulsar_upgrade_1.0";
    std::vector<std::string> instances;    ///< names of the windows that are open
    std::vector<std::string> absentIds;    ///< module ids that the registry does not know
    std::vector<std::string> badSignature; ///< files whose signature is wrong
};

/// Throws nlohmann::json::exception for a member of the wrong kind.
void from_json(const nlohmann::json& json, Config& config);
void to_json(nlohmann::json& json, const Config& config);

/// The configuration of this process' run, read at each call. Without a file the
/// defaults; with a damaged one the defaults and a failure event. Any thread.
Config readConfig();

/// The same, read at the first call and held for the life of the process: not for a
/// module that may be unloaded.
const Config& processConfig();

} // namespace sandbox
