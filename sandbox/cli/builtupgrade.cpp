#include "sandbox/cli/builtupgrade.h"

#include <stdexcept>

#include "sandbox/cli/filebytes.h"
#include "sandbox/common/config.h"
#include "sandbox/materials/setuppackage.h"
#include "sandbox/server/upgrademessages.h"

namespace sandbox {
namespace {

using Json = nlohmann::json;

constexpr const char* packageName = "package";
constexpr const char* noVersion = "0.0.0.0";
constexpr std::size_t idDigits = 12;

/// Writes the bytes into the storage; the id under which they lie there.
std::string store(BuiltUpgrade& built, const std::filesystem::path& storage,
                  const std::string& name, const std::string& file, const Bytes& bytes) {
    std::string id = file + "-" + md5Of(bytes).substr(0, idDigits);
    writeBytes(storage / id, bytes);
    built.names[id] = name;
    return id;
}

Bytes packageBytes(const PackagePlan& plan, std::uint64_t seed,
                   const std::filesystem::path& program) {
    materials::SetupPayload payload{plan.served.version, plan.fails, {}};
    for (const ClientFile& file : plan.files) {
        payload.files.push_back({file.path, bytesOf(file.file, seed, packageName + file.path)});
    }
    return materials::buildPackage(readBytes(program), payload, plan.size, seed);
}

void buildPackage(BuiltUpgrade& built, std::uint64_t seed, const std::filesystem::path& program,
                  const std::filesystem::path& storage) {
    const PackagePlan& plan = *built.plan.package;
    const Bytes bytes = packageBytes(plan, seed, program);
    built.packageSize = bytes.size();
    OfferedPackage& offered = built.offer.package.emplace();
    offered.version = plan.served.version;
    offered.fileId = store(built, storage, packageName, "setup", bytes);
    offered.md5 = plan.served.md5.empty() ? md5Of(bytes) : plan.served.md5;
    offered.url = plan.served.url;
    offered.content = plan.content;
    offered.isForce = plan.isForce;
    offered.size = plan.announced.value_or(bytes.size());
}

void buildFile(BuiltUpgrade& built, const ServedFilePlan& plan, std::uint64_t seed,
               const std::filesystem::path& storage) {
    const Bytes bytes = bytesOf(plan.file, seed, plan.name + plan.served.version);
    OfferedFile offered;
    offered.type = plan.type;
    offered.name = plan.name;
    offered.version = plan.served.version;
    offered.fileId = store(built, storage, plan.name, plan.name, bytes);
    offered.md5 = plan.served.md5.empty() ? md5Of(bytes) : plan.served.md5;
    offered.url = plan.served.url;
    offered.size = bytes.size();
    built.offer.files.push_back(std::move(offered));
}

std::string fourParts(const Config::Os& os) {
    return std::to_string(os.major) + "." + std::to_string(os.minor) + "." +
           std::to_string(os.build) + ".0";
}

} // namespace

BuiltUpgrade buildUpgrade(const UpgradePlan& plan, const Scenario& scenario,
                          const ClientSystem& system, const std::filesystem::path& binaries,
                          const std::string& address) {
    BuiltUpgrade built;
    built.plan = plan;
    built.address = address;
    const auto storage = system.folders().storage();
    if (plan.package) {
        buildPackage(built, scenario.seed, binaries / system.programFile("setupprogram"), storage);
    }
    for (const ServedFilePlan& file : plan.files) {
        buildFile(built, file, scenario.seed, storage);
    }
    return built;
}

ExpectedUpgrade expectedUpgradeOf(const Scenario& scenario, const BuiltUpgrade& built,
                                  const Json& options) {
    const Config config = scenario.client.config.get<Config>();
    const Json asks = options.value("asks", Json::object());
    ExpectedUpgrade expected;
    expected.channel = config.channelType;
    expected.phone = asks.value("phone", config.login.phone);
    expected.token = asks.value("token", config.login.tokenText);
    // The package check looks whether the log-in is valid, the file check does not.
    expected.packagePhone = config.login.token ? expected.phone : "";
    expected.packageToken = config.login.token ? expected.token : "";
    expected.language = scenario.client.settings.value("language", "zh_CN");
    expected.osVersion = asks.value("osVersion", fourParts(config.os));
    expected.versions = {asks.value("clientVersion", scenario.client.version)};
    if (built.offer.package) {
        expected.versions.push_back(built.offer.package->version);
    }
    const Json files = asks.value("files", Json::object());
    for (const char* type : {"1000", "1001"}) {
        expected.files.emplace_back(std::stoi(type), files.value(type, noVersion));
    }
    return expected;
}

void addValues(const BuiltUpgrade& built, NamedValues& values) {
    if (const auto& package = built.offer.package) {
        values[packageName] = {{"md5", package->md5},
                               {"url", urlOf(*package, built.address)},
                               {"size", std::to_string(built.packageSize)}};
    }
    for (const OfferedFile& file : built.offer.files) {
        values[file.name] = {{"md5", file.md5},
                             {"url", urlOf(file, built.address)},
                             {"size", std::to_string(file.size)}};
    }
}

std::string recordText(const BuiltUpgrade& built, int status, bool byUser) {
    if (!built.offer.package) {
        throw std::runtime_error("\"record\" is told where there is no package");
    }
    const OfferedPackage& package = *built.offer.package;
    return Json{{"needUpgrade", true},
                {"isForce", package.isForce},
                {"version", package.version},
                {"packageMD5", package.md5},
                {"packageURL", urlOf(package, built.address)},
                {"content", package.content},
                {"fileSize", package.size},
                {"status", status},
                {"isUIUpgradeFinished", byUser}}
        .dump();
}

} // namespace sandbox
