#pragma once

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "sandbox/common/folders.h"

/// Changes of a run's client that its host, which may run, takes in at once.
namespace sandbox {

/// Throws std::runtime_error when applySet would refuse a member of `change`, or its value.
void checkSet(const nlohmann::json& change);

/// Carries every member of `change` out: of the client `login`, `token`, `device`, `service`
/// ("on", "off" or a boolean; `login` stands for the three, or is an object of the
/// configuration's members), `muteMode`, `settingsWindow` ("open", "closed") and `instances`,
/// and of the settings store the keys that the plug-in uses, null removes one. Throws
/// std::runtime_error, with nothing changed, for an unknown member or a wrong value; and
/// when a file is damaged or cannot be written, with no change of that one.
void applySet(const Folders& folders, const nlohmann::json& change);

/// The change that texts of the form "KEY=VALUE" ask for. Throws std::runtime_error for another
/// form, an unknown key and a number that is too large.
nlohmann::json readChange(const std::vector<std::string>& arguments);

/// The names that can be set, with their values, a line each.
std::string namesToSet();

} // namespace sandbox
