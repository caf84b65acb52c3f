#pragma once

#include <string>

#include "sandbox/server/requests.h"
#include "sandbox/server/upgradeoffer.h"

/// The two conversations of the upgrade server: what a client sends, to the byte, and what
/// it is answered.
namespace sandbox {

inline constexpr const char* packageCheckPath = "/upgrade/v2/upgrade/check";
inline constexpr const char* fileCheckPath = "/upgrade/v1/file/check";
inline constexpr const char* upgradeFilesFolder = "/upgrade/files/";

/// The body of a client that runs with that version.
std::string packageCheckBody(const ExpectedUpgrade& expected, const std::string& version);
std::string fileCheckBody(const ExpectedUpgrade& expected);

/// What is wrong with the headers; empty when the type and, where it is not empty, the
/// token stand there once, and nothing beside them but what HTTP itself needs.
std::string upgradeHeaderDifference(const Headers& headers, const std::string& token);

/// Where a client is told to fetch the file.
std::string urlOf(const OfferedPackage& package, const std::string& address);
std::string urlOf(const OfferedFile& file, const std::string& address);

/// `address` is the server's own without a trailing "/"; without a package no upgrade.
std::string packageAnswer(const OfferedPackage* package, const std::string& address);
std::string fileAnswer(const UpgradeOffer& offer, const std::string& address);

} // namespace sandbox
