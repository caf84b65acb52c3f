#pragma once

#include "sandbox/check/jsontext.h"
#include "sandbox/check/material.h"
#include "sandbox/check/scenariocheck.h"

/// The parts of the check of a scenario. What is not of its shape is passed over: it has been
/// told already.
namespace sandbox::check {

/// What the scenario's platform offers to the scenario's client.
Offered offeredIn(const JsonText& scenario, const HashesOf& hashesOf);

/// The version at a path of the scenario's object `client`, empty for none; nothing when no file
/// stands there.
std::optional<std::string> standingAt(const nlohmann::json& client, const std::string& target);

/// Files of the client, and what keeps them in use.
void checkClient(const JsonText& scenario, Mistakes& mistakes);

/// Names of the materials, and the files that they bring.
void checkMaterialFiles(const JsonText& scenario, Mistakes& mistakes);

/// The steps: names that are not there, words that mean nothing, faults.
void checkPhases(const JsonText& scenario, Mistakes& mistakes);

/// What the steps expect to become of a material.
struct Expected {
    std::set<std::string> reasons; ///< for which one refuses it
    bool isPlaced = false;         ///< one has it in place, or waiting
};

Expected expectedOf(const JsonText& scenario, const std::string& material);

/// The elements of an array, or of a member that is one; empty when it is another kind.
nlohmann::json listAt(const nlohmann::json& object, const char* member);
/// The object, or an empty one.
nlohmann::json objectAt(const nlohmann::json& object, const char* member);
/// The text, or an empty one.
std::string textAt(const nlohmann::json& object, const char* member);

} // namespace sandbox::check
