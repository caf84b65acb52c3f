#pragma once

#include <map>
#include <set>
#include <string>

#include "sandbox/check/jsontext.h"
#include "sandbox/check/material.h"
#include "sandbox/check/scenariocheck.h"

/// The parts of the check of a scenario. What is not of its shape is passed over: it has been
/// told already.
namespace sandbox::check {

/// What the scenario's platform offers to the scenario's client.
Offered offeredIn(const JsonText& scenario, const HashesOf& hashesOf);

/// A file of the client ahead of the first step.
struct StandingFile {
    std::string kind;
    std::string version;    ///< of its resource or of the version store; empty for none
    std::size_t number = 0; ///< of its entry, from 0
};

/// By the key of its path. Of two at one path the first.
using StandingFiles = std::map<std::string, StandingFile>;

/// Keys of the modules that every client has.
std::set<std::string> moduleKeys();

StandingFiles standingIn(const nlohmann::json& client);

/// The client itself: its version, files and folders, and what keeps files in use.
void checkClient(const JsonText& scenario, const StandingFiles& standing, Mistakes& mistakes);

/// That `by`, which stands at `pointer`, is a program of the client that keeps files in use.
void checkHolder(const JsonText& scenario, const StandingFiles& standing,
                 const std::string& pointer, const std::string& by, Mistakes& mistakes);

/// A file whose bytes are made: the version of an image, and a path of the client when it has one.
void checkMadeFile(const JsonText& scenario, const std::string& pointer, Mistakes& mistakes);

/// Names of the materials, and the files that they bring.
void checkMaterialFiles(const JsonText& scenario, Mistakes& mistakes);

/// What the upgrade server has, from the start and by the changes of the runs.
void checkUpgrades(const JsonText& scenario, Mistakes& mistakes);

/// Fields of things by the things' names, as texts of an expectation may ask for them.
using NamedFields = std::map<std::string, std::set<std::string>>;

NamedFields namedFieldsIn(const JsonText& scenario);

/// The texts of the expectation at `pointer` that ask for a field that there is not.
void checkNamedFields(const JsonText& scenario, const std::string& pointer,
                      const NamedFields& fields, Mistakes& mistakes);

/// The steps: names that are not there, words that mean nothing, faults.
void checkPhases(const JsonText& scenario, const StandingFiles& standing, Mistakes& mistakes);

/// The steps of the `ui` that stands at `pointer`.
void checkUiSteps(const JsonText& scenario, const std::string& pointer, const nlohmann::json& steps,
                  Mistakes& mistakes);

/// Every `set`, of a run and of its `ui`.
void checkSets(const JsonText& scenario, const SetRefusal& refusalOfSet, Mistakes& mistakes);

/// What the steps expect to become of a material.
struct Expected {
    std::set<std::string> reasons; ///< for which one refuses it
    bool isPlaced = false;         ///< one has it in place, or waiting
};

Expected expectedOf(const JsonText& scenario, const std::string& material);

} // namespace sandbox::check
