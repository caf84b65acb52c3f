#include <gtest/gtest.h>

#include "hostile/cabinets.h"
#include "hostile/disk.h"
#include "platform/wine.h"
#include "support/material.h"
#include "updatekelvar/task/xtaskkelvarmove.h"

// The cabinets of the hostile test in the move alone, with whichever reader the system has.

namespace {

using namespace hostile;

constexpr std::size_t largestOnWine = 64 << 10; ///< where a member takes milliseconds

class Client {
public:
    Client() {
        fake::setExecutable(host.clientPath("around\\client\\trayhost.exe"));
        host.has(target, before);
        host.has("around\\beside\\other.dll", std::string("other"));
        std::filesystem::create_directories(host.diskPath("around\\client\\update\\temp"));
    }

    /// Runs the task on a material in that cabinet; what it has touched beside what it may.
    std::vector<std::string> takes(const Bytes& cabinet, bool mayWrite) {
        const XMaterialMetaData row =
            material::packed("bin\\c.dll", "2.0.0.0", wantedFile(), cabinet);
        const std::string update = "around/client/update/";
        host.has("around\\client\\update\\" + row.md5, cabinet);
        XBatchGetMaterialMetaData list;
        list.materials.push_back(row);
        const Listing first = listed(host.folder);
        XTaskKelvarMove().check(&list, [&](bool) { ++finished; });
        return differences(first, listed(host.folder),
                           {"around/client/bin/c.dll", "around/client/delayed-moves.journal",
                            mayWrite ? update : update + row.md5});
    }
    bool isOld() const { return holds(before); }
    bool isNew() const { return holds(wantedFile()); }

    int finished = 0;
    FakeHost host;

private:
    bool holds(const Bytes& bytes) const {
        return host.bytesOf(target) == std::string(bytes.begin(), bytes.end());
    }

    const std::string target = "around\\client\\bin\\c.dll";
    const Bytes before = material::pe({1, 0, 0, 0});
};

TEST(BadCabinets, WriteNothingWhereTheyMustNot) {
    for (const BadCabinet& bad : badCabinets()) {
        if (onWine() && bad.bytes.size() > largestOnWine) {
            continue;
        }
        SCOPED_TRACE(std::string(bad.group) + ", " + bad.what);
        Client client;
        EXPECT_EQ(client.takes(bad.bytes, bad.fate != Fate::untouched), std::vector<std::string>());
        EXPECT_EQ(client.finished, 1);
        EXPECT_TRUE(client.isOld() || client.isNew());
        EXPECT_TRUE(bad.fate == Fate::either || client.isNew() == (bad.fate == Fate::placed));
        const bool isAny = bad.reason == Reason::any;
        EXPECT_TRUE(isAny || client.host.logged("task premove, bad member:") ==
                                 (bad.reason == Reason::badMember));
        EXPECT_TRUE(isAny || client.host.logged("cabinet asks for too much, members:") ==
                                 (bad.reason == Reason::tooMuch));
    }
}

} // namespace
