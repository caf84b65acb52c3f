#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "platform/temporaryfolder.h"
#include "sandbox/check/offercheck.h"
#include "sandbox/materials/cabwriter.h"
#include "sandbox/materials/pefile.h"

// A folder as the platform offers it, with one mistake a row.

namespace {

using materials::Bytes;
using Json = nlohmann::json;
using sandbox::check::Mistake;

Bytes bytesOf(const std::string& text) {
    return {text.begin(), text.end()};
}

/// Two right materials: a plain file, and an image in a cabinet.
class Offer {
public:
    Offer() {
        materials::PeFile file;
        file.version = {1, 3, 0, 1600};
        image = materials::buildPeFile(file);
        put("plain", bytesOf("a plain file"));
        put("packed",
            materials::buildCabinet(materials::CabMethod::mszip,
                                    {{"sub\\notes.txt", bytesOf("notes")}, {"A.dll", image}}));
        answer = {{"metas",
                   {row("plain", "data/plain.dat", materials::md5Hex(bytesOf("a plain file"))),
                    row("packed", "bin/a.dll", materials::md5Hex(image))}},
                  {"full_packet_diff",
                   {{"target_version", "1.3.0.1600"},
                    {"modules", {{{"module_id", {{"id", "/net"}}}}}},
                    {"materials", {couple(), couple()}}}}};
        parameters(0)["non_cab"] = "1";
    }

    void put(const std::string& name, const Bytes& content) {
        folder.write(name, content);
        hashes[name] = materials::md5Hex(content);
    }
    Json& meta(std::size_t i) { return answer["metas"][i]["meta"]; }
    Json& parameters(std::size_t i) { return meta(i)["extends"]; }
    Json& packet() { return answer["full_packet_diff"]; }

    /// The mistakes, each as "code at what stands on its line".
    std::vector<std::string> mistakes() {
        const std::string text = answer.dump(1);
        folder.write("materials.json", text);
        std::vector<std::string> found;
        for (const Mistake& mistake : sandbox::check::checkOffer(folder.onDisk(""))) {
            found.push_back(mistake.code + " at " + wordOn(text, mistake.line));
        }
        return found;
    }

    TemporaryFolder folder;
    Json answer;
    std::map<std::string, std::string> hashes;
    Bytes image;

private:
    Json row(const std::string& id, const std::string& path, const std::string& fileMd5) {
        return {{"meta",
                 {{"file_id", id},
                  {"md5", hashes.at(id)},
                  {"extends", {{"file_path", path}, {"file_md5", fileMd5}}}}}};
    }
    static Json couple() {
        return {{"material_id", {{"module_id", {{"id", "/net"}}}}},
                {"target_version", "1.3.0.1600"}};
    }

    /// The member's name on that line.
    static std::string wordOn(const std::string& text, std::size_t line) {
        std::istringstream lines(text);
        std::string found;
        for (std::size_t i = 0; i < line; ++i) {
            std::getline(lines, found);
        }
        const std::size_t open = found.find('"') + 1;
        return found.substr(open, found.find('"', open) - open);
    }
};

struct Case {
    const char* name;
    void (*change)(Offer& offer);
    const char* expected;
};

void PrintTo(const Case& tested, std::ostream* out) {
    *out << tested.name;
}

const std::string otherMd5(32, 'a');

const Case cases[] = {
    {"MetasKind",
     [](Offer& o) {
         o.answer = Json::object();
         o.answer["metas"] = 3;
     },
     "member-kind at metas"},
    {"MetaKind", [](Offer& o) { o.answer["metas"][1]["meta"] = "packed"; }, "member-kind at meta"},
    {"PacketKind", [](Offer& o) { o.packet() = Json::array(); }, "member-kind at full_packet_diff"},
    {"PacketVersionKind", [](Offer& o) { o.packet()["materials"][1]["target_version"] = 1.3; },
     "member-kind at target_version"},
    {"LongName", [](Offer& o) { o.meta(0)["file_id"] = std::string(300, 'a'); },
     "file-missing at file_id"},
    {"EmptyNonCab", [](Offer& o) { o.parameters(0)["non_cab"] = ""; }, "non-cab-wrong at non_cab"},
    {"NoFile", [](Offer& o) { o.meta(0)["file_id"] = "../plain"; }, "file-missing at file_id"},
    {"StoredHash", [](Offer& o) { o.meta(0)["md5"] = otherMd5; }, "hash-wrong at md5"},
    {"FileHash", [](Offer& o) { o.parameters(1)["file_md5"] = otherMd5; },
     "hash-wrong at file_md5"},
    {"NoFileHash", [](Offer& o) { o.parameters(1).erase("file_md5"); },
     "parameter-missing at extends"},
    {"Number", [](Offer& o) { o.parameters(0)["osver"] = 10; }, "parameter-kind at osver"},
    {"NoCabinet", [](Offer& o) { o.parameters(0).erase("non_cab"); }, "non-cab-wrong at extends"},
    {"OtherMember",
     [](Offer& o) {
         o.parameters(1)["file_path"] = "bin/b.dll";
         o.parameters(1)["file_md5"] = otherMd5; // of what, is not known
     },
     "cabinet-member-missing at file_id"},
    {"CutCabinet",
     [](Offer& o) {
         Bytes whole = materials::buildCabinet(materials::CabMethod::stored, {{"a.dll", o.image}});
         whole.resize(whole.size() - 40);
         o.put("packed", whole);
         o.meta(1)["md5"] = o.hashes.at("packed");
     },
     "cabinet-damaged at file_id"},
    {"OlderImage", [](Offer& o) { o.packet()["materials"][1]["target_version"] = "1.3.0.1601"; },
     "version-not-the-files at target_version"},
    {"OneFileForTwo",
     [](Offer& o) {
         o.meta(1) = o.meta(0);
         o.parameters(1)["file_path"] = "data/other.dat";
     },
     "file-shared at md5"},
    {"Count", [](Offer& o) { o.packet()["materials"].erase(1); }, "count-differs at materials"},
    {"GroupOfModule",
     [](Offer& o) {
         o.parameters(0)["dependent"] = "/ui";
         o.parameters(1)["dependent"] = "/ui";
     },
     "dependent-unknown-module at dependent"},
    {"NearGroups",
     [](Offer& o) {
         for (const char* group : {"Net", "net"}) {
             for (std::size_t i : {0U, 1U}) {
                 Json row = o.answer["metas"][i];
                 const std::string name = std::string(group) + std::to_string(i);
                 const Bytes content = bytesOf(name);
                 o.put(name, content);
                 row["meta"] = {{"file_id", name},
                                {"md5", o.hashes.at(name)},
                                {"extends",
                                 {{"file_path", name + (group[0] == 'N' ? "x" : "y")},
                                  {"file_md5", o.hashes.at(name)},
                                  {"non_cab", "1"},
                                  {"dependent", group}}}};
                 o.answer["metas"].push_back(row);
                 o.packet()["materials"].push_back(o.packet()["materials"][0]);
             }
         }
     },
     "group-name-near at dependent"},
};

class PlantedInOffer : public testing::TestWithParam<Case> {};

} // namespace

TEST_P(PlantedInOffer, IsTheOnlyOne) {
    Offer offer;
    GetParam().change(offer);
    EXPECT_EQ(offer.mistakes(), std::vector<std::string>{GetParam().expected});
}

INSTANTIATE_TEST_SUITE_P(Check, PlantedInOffer, testing::ValuesIn(cases),
                         [](const auto& row) { return row.param.name; });

TEST(OfferCheck, FindsNothingInARightOneAndLeavesItAsItWas) {
    Offer offer;
    EXPECT_EQ(offer.mistakes(), std::vector<std::string>());
    EXPECT_EQ(offer.folder.entryCount(), 3U);
}

TEST(OfferCheck, RefusesAFolderWithoutAnAnswer) {
    const TemporaryFolder empty;
    EXPECT_THROW(sandbox::check::checkOffer(empty.onDisk("")), std::runtime_error);
}
