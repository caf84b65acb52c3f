#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "sandbox/server/offer.h"
#include "sandbox/server/upgradeoffer.h"

/// What the servers have, one version after the other. One thread.
namespace soak {

/// Makes packets, packages and data files into the storage folder of the servers, and removes
/// those that nobody asks for any more. All throw std::runtime_error when a file cannot be
/// written.
class Supply {
public:
    /// `setup` is the setup program of the client's system.
    Supply(std::filesystem::path storageFolder, const std::filesystem::path& setup);

    /// The next packet: a free image, a free data file with a program, a group of two, and an
    /// image that is in use all the time. Each target is that of the packet before.
    void nextPacket();
    const sandbox::Offer& packet() const { return current; }

    /// The next package; its setup may be one that changes nothing.
    void nextPackage(bool fails);
    const sandbox::UpgradeOffer& upgrade() const { return offered; }
    /// All versions that the client may run with so far.
    const std::vector<std::string>& clientVersions() const { return versions; }

    std::size_t packets() const { return packetCount; }
    std::size_t packages() const { return versions.size() - 1; }

private:
    using Stored = std::vector<std::filesystem::path>;

    void material(const std::string& name, const std::string& path,
                  const std::vector<std::uint8_t>& file, const std::string& group = "",
                  const std::string& exec = "");
    void cabinet(const std::string& name, const std::string& path,
                 const std::vector<std::uint8_t>& file);
    void offer(sandbox::OfferedMaterial material, const std::string& path,
               const std::vector<std::uint8_t>& file, const std::vector<std::uint8_t>& stored);
    void dataFile(int type, const char* name);
    std::string keep(const std::string& name, const std::vector<std::uint8_t>& bytes,
                     Stored& generation);

    const std::filesystem::path storage;
    const std::vector<std::uint8_t> program;
    sandbox::Offer current;
    sandbox::UpgradeOffer offered;
    std::vector<std::string> versions;
    std::size_t packetCount = 0;
    std::vector<Stored> packetFiles;  ///< of the packets whose files are still there
    std::vector<Stored> packageFiles; ///< likewise
    Stored dataFiles;
};

/// Versions and names that the client of the soak begins with.
inline constexpr const char* firstPacket = "1.2.0.1500";
inline constexpr const char* firstClient = "1.2.0.1500";

} // namespace soak
