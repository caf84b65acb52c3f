#include <gtest/gtest.h>

#include <algorithm>

#include "sandbox/platform/delayed.h"
#include "sandbox/platform/heldfile.h"
#include "support/material.h"
#include "updatekelvar/task/xtaskkelvardownload.h"
#include "updatekelvar/task/xtaskkelvarmove.h"

// What a storage that nobody verifies can do, behind the MD5 tests of a run.

namespace {

using materials::Bytes;

/// A client whose a.dll is old.
struct Client {
    Client() { host.has("a.dll", material::pe({1, 0, 0, 0})); }

    /// A download and a move of one row, with what the storage sends for it.
    void run(const XMaterialMetaData& row, const Bytes& sent) {
        XBatchGetMaterialMetaData list;
        list.materials.push_back(row);
        list.materials[0].downloadUrl = "http://s/x";
        host.onTransfer = [&sent](const std::string&) {
            return FakeHost::Transfer{0, std::string(sent.begin(), sent.end()), 4096};
        };
        XTaskKelvarDownload task;
        task.setNext(std::make_shared<XTaskKelvarMove>());
        task.check(&list, nullptr);
    }
    /// Whether the restart is to put the waiting file of that name in place.
    bool isPending(const std::string& name) const {
        const auto moves = sandbox::pendingMoves(host.folder);
        return std::any_of(moves.begin(), moves.end(), [&](const sandbox::PendingMove& move) {
            return move.from.ends_with("\\" + name) && move.to.ends_with("\\a.dll");
        });
    }

    FakeHost host;
};

Bytes cabinet(const std::vector<materials::CabMember>& members) {
    return materials::buildCabinet(materials::CabMethod::stored, members);
}

/// The MD5 keeps wrong bytes out of the run in which they come, and not out of a place from
/// which the system has been told to move.
TEST(StorageTest, AFileThatWaitsForTheRestartIsMovedAsItStandsThen) {
    const Bytes good = material::pe({2, 0, 0, 0});
    const Bytes evil = material::bytes("evil");
    const Bytes packed = cabinet({{"a.dll", good}});
    const XMaterialMetaData plainRow = material::plain("a.dll", "2", good);
    const XMaterialMetaData packedRow = material::packed("a.dll", "2", good, packed);
    const std::string waiting = plainRow.md5;
    const Bytes other = material::pe({3, 0, 0, 0});
    const XMaterialMetaData otherRow =
        material::packed("b.dll", "3", other, cabinet({{"b.dll", other}}));
    const struct {
        const char* how;
        XMaterialMetaData row;
        Bytes sent;
        int runs;
        XMaterialMetaData lastRow;
        Bytes lastSent;
        bool isRefused;
    } rows[] = {
        // the second of two right runs takes the waiting file away, and the third fetches it
        {"itself", plainRow, good, 2, plainRow, evil, true},
        {"its cabinet", packedRow, packed, 1, packedRow, cabinet({{"a.dll", evil}}), true},
        {"another cabinet", plainRow, good, 1, otherRow,
         cabinet({{"b.dll", other}, {waiting, evil}}), false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.how);
        Client client;
        const sandbox::HeldFile inUse(client.host.diskPath("a.dll"));
        for (int i = 0; i < row.runs; ++i) {
            client.run(row.row, row.sent);
        }
        client.run(row.lastRow, row.lastSent);
        EXPECT_EQ(client.host.logged("needMove, md5 diff"), row.isRefused);
        EXPECT_TRUE(client.isPending(waiting));
        EXPECT_EQ(client.host.bytesOf("update\\" + waiting), "evil");
    }
}

TEST(StorageTest, ACabinetIsExpandedWhateverItsOwnMd5Is) {
    const Bytes good = material::pe({2, 0, 0, 0});
    const Bytes announced = cabinet({{"a.dll", good}});
    Client client;
    client.host.has("update\\setup.exe", "the package");
    client.run(material::packed("a.dll", "2", good, announced),
               cabinet({{"a.dll", good}, {"setup.exe", material::bytes("evil")}}));
    EXPECT_EQ(client.host.bytesOf("a.dll"), std::string(good.begin(), good.end()));
    EXPECT_EQ(client.host.bytesOf("update\\setup.exe"), "evil");
}

} // namespace
