#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "sandbox/check/located.h"

namespace sandbox::check {

/// A material as the platform offers it, with what is known of its file.
struct Material {
    std::string name; ///< what its author calls it
    std::size_t line = 1;
    std::optional<Located> path; ///< the target
    std::optional<Located> version;
    std::optional<Located> module;
    std::optional<Located> md5; ///< of the stored file, as claimed by hand
    std::map<std::string, Located> parameters;
    bool isCabinet = false;
    std::vector<Located> members; ///< of the cabinet, its own file first where that is known
    Located size{"0", 1};         ///< of the file that it brings

    // What is there, as far as it is known.
    std::optional<std::string> storedMd5;
    std::optional<std::string> contentMd5;  ///< of the file that it brings
    std::optional<std::string> fileVersion; ///< of its version resource; empty without one
    std::optional<std::string> standing;    ///< version at the target on the client

    std::string target() const { return path ? path->text : ""; }
    const Located* parameter(const char* key) const {
        const auto found = parameters.find(key);
        return found == parameters.end() || found->second.text.empty() ? nullptr : &found->second;
    }
};

/// What is offered together.
struct Offered {
    std::optional<Located> version; ///< of the packet
    /// Ids of the packet's modules, when they are known.
    std::optional<std::map<std::string, Located>> modules;
    std::vector<Material> materials;
    /// Lower-case names of what the client can start; empty when the client is not known.
    std::set<std::string> programs;
    /// Keys of the folders below update that the client has by itself, when it is known.
    std::optional<std::set<std::string>> updateFolders;
};

/// What is wrong with one of them by itself.
void checkMaterial(const Offered& offered, const Material& material, Mistakes& mistakes);

/// What is wrong with them together.
void checkTogether(const Offered& offered, Mistakes& mistakes);

} // namespace sandbox::check
