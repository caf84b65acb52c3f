#include "support/immortal.h"
#include "updatepkg/pkgtest.h"
#include "updatepkg/task/xtaskpkgdownload.h"
#include "updatepkg/task/xtaskpkginstall.h"
#include "updatepkg/xupdatepkg.h"

namespace {

constexpr const char* package = "the package";
constexpr const char* md5 = "3c2B37c8fe170986ed7a4c96476371e9";
constexpr const char* place = "update\\setup.exe";

std::string offerOf(const std::string& hash) {
    return R"({"needUpgrade":true,"packageURL":"u","fileSize":10,"packageMD5":")" + hash + "\"}";
}

class DeliveryTest : public PkgTest {
protected:
    DeliveryTest() {
        host.onTransfer = [this](const std::string&) {
            EXPECT_EQ(status(), "2");
            return transfer;
        };
    }
    std::string status() {
        const std::string text = stored();
        return text.empty() ? "none" : text.substr(text.find("\"status\":") + 9, 1);
    }
    std::string download(bool chained = false) {
        return run(std::make_shared<XTaskPkgDownload>(sender), chained);
    }
    /// The end and its event, the setup's parameters, the status.
    std::string install(bool isAuto) {
        const auto data = holds(R"({"status":3})");
        host.startedPrograms.clear();
        std::string end = run(std::make_shared<XTaskPkgInstall>(isAuto, sender));
        end = end.substr(0, end.find_first_of(" |"));
        for (const auto& [program, parameters] : host.startedPrograms) {
            EXPECT_EQ(program, L"update\\setup.exe");
            end += "[" + std::string(parameters.begin(), parameters.end()) + "]";
        }
        EXPECT_EQ(data->getIsUIUpgradeFinished(), status() == "4" && !isAuto);
        return end + status();
    }

    FakeHost::Transfer transfer{0, package, 4};
};

TEST_F(DeliveryTest, TheHashAloneDecidesOnAPackage) {
    const std::tuple<const char*, const char*, FakeHost::Transfer, const char*> rows[] = {
        {nullptr, md5, {0, package, 4}, "101|102 40|102 80|102 110|+103|"},
        {package, md5, {7, "", 1}, "101|+103|"}, // used again
        {"longer than it is", md5, {0, package, 99}, "101|102 110|+103|"},
        {nullptr, md5, {56, package, 99}, "101|102 110|+103|"},
        {nullptr, md5, {18, "the", 99}, "101|102 30|-103|"},
        {nullptr, md5, {0, "an error", 99}, "101|102 80|-103|"},
        {nullptr, "", {0, "", 1}, "101|-103|"},
    };
    for (const auto& [onDisk, hash, given, end] : rows) {
        std::filesystem::remove_all(host.diskPath("update"));
        if (onDisk) {
            host.has(place, onDisk);
        }
        holds(offerOf(hash));
        transfer = given;
        const bool good = std::string(end).find('+') != std::string::npos;
        EXPECT_EQ(download(), end);
        EXPECT_EQ(status(), good ? "3" : "6");
        EXPECT_EQ(download(true), good ? "101|" : end) << "no end when it goes on";
    }
    EXPECT_EQ(host.numberOptions.front(), std::pair(64, 0L)) << "the peer is not verified";
    holds(offerOf(md5));
    host.hasHandles = false;
    EXPECT_EQ(download(), "101|-103|") << "no transfer began";
    host.hasHandles = true;
    transfer = {0, package, 4};
    host.without(L"XNSetting.dll", "GetNotificationCenter");
    EXPECT_EQ(download(), "+") << "nobody to tell";
}

TEST_F(DeliveryTest, WithoutAnOfferAPlaceOrATransferThereIsNoPackage) {
    EXPECT_EQ(download(), "101|-103|");
    holds(R"({"needUpgrade":false,"packageURL":"u"})");
    EXPECT_EQ(download(), "101|-103|");
    holds(offerOf(""));
    std::filesystem::create_directories(host.diskPath(place)); // it has no MD5 either
    EXPECT_EQ(download(), "101|-103|");
    EXPECT_EQ(status(), "6");
    host.withoutId(L"module.libcurl");
    fake::setExecutable("");
    EXPECT_EQ(download(), "101|-103|");
    EXPECT_TRUE(host.logged("task download, no application folder.") && host.transfers.empty());
}

TEST_F(DeliveryTest, InstallsWhenItMay) {
    EXPECT_EQ(install(true), "+[/s /nosafe]4");
    host.openWindows = {L"XNREPAIR.INSTANCE"};
    EXPECT_EQ(install(true), "-1003");
    EXPECT_EQ(install(false), "+104[(null)]4");
    host.openWindows.clear();
    host.settings.put(settingkeys::updateType, std::uint64_t{1});
    EXPECT_EQ(install(true), "-1003");
    host.settings.put(settingkeys::updateType, std::uint64_t{2});
    EXPECT_EQ(install(true), "+[/s /nosafe]4") << "1 alone switches it off";
    host.settings.put(settingkeys::updateType, std::uint64_t{1});
    host.user.servicePart.valid = false;
    EXPECT_EQ(install(true), "+[/s /nosafe]none") << "the setting is a user's";
    host.muteMode = 1;
    EXPECT_EQ(install(true), "3");
    EXPECT_EQ(install(false), "+104[(null)]none");
    trace.setData(nullptr);
    EXPECT_EQ(run(std::make_shared<XTaskPkgInstall>(false, sender)), "-");
}

/// The whole channel on its queue.
class PkgDriverTest : public DeliveryTest {
protected:
    PkgDriverTest() {
        const std::string info = offerOf(md5);
        host.answers["check"] = {0, 200, R"({"data":{"needUpgrade":true,"info":)" + info + "}}"};
        EXPECT_EQ(channel.init(), 1);
    }
    ~PkgDriverTest() override { trace.setOwner(nullptr); }

    void tickAfter(std::uint32_t milliseconds) {
        fake::advance(milliseconds);
        EXPECT_EQ(channel.checkUpdate(), 0);
    }
    /// Waits for the end of one more run.
    void awaitEnd() { host.awaitLog("update plugin, queue, run end.", ++runs); }

    XUpdatePkg& channel = immortal<XUpdatePkg>();
    std::size_t runs = 0;
};

TEST_F(PkgDriverTest, ATickBehindTheGateBringsThePackageAndStartsIt) {
    host.onThread = true;
    for (const std::uint32_t wait : {600U, 1U, 1800U}) {
        tickAfter(wait);
        awaitEnd();
    }
    EXPECT_EQ(host.settings.number(settingkeys::pkgLastCheckTime), 1'000'601U);
    EXPECT_EQ(host.count("pkg, task condition, check times fail, so ignore."), 2U);
    EXPECT_EQ(host.bytesOf(place), package);
    EXPECT_EQ(host.startedPrograms.size(), 1U);
    EXPECT_EQ(events(), "101|102 40|102 80|102 110|");
    host.muteMode = 1;
    fake::setWaits(fake::Waits::immediate);
    for (const std::size_t code : {1U, 2U, 3U}) { // each frees a chain that hangs for good
        tickAfter(1);
        host.awaitLog("XTaskPkgInstall check isMugeMode return ", code);
        tickAfter(1800);
        command(static_cast<std::int32_t>(code));
        ASSERT_EQ(host.count("update plugin, queue, has task, ignore"), code) << "the tick alone";
        awaitEnd();
    }
    EXPECT_EQ(host.startedPrograms.size(), 2U);
}

TEST_F(PkgDriverTest, CarriesOutCommands) {
    host.onTransfer = [this](const std::string&) {
        command(5); // seen by the next write
        return transfer;
    };
    for (const int code : {1, 2, 3}) {
        command(code);
        awaitEnd();
    }
    EXPECT_TRUE(host.logged("update plugin, download task, perform err: 23 "));
    EXPECT_EQ(host.bytesOf(place), "");
    EXPECT_NE(events().find("}|101|103|104|"), std::string::npos);
    const std::size_t before = host.log().size();
    const std::int32_t check = 1;
    notify(&check, 14);
    notify(nullptr);
    for (const int code : {-1, 0, 6, 100, 101, 102, 103, 104}) {
        command(code);
    }
    trace.setOwner(nullptr);
    command(1);
    EXPECT_EQ(host.log().size(), before);
}

} // namespace
