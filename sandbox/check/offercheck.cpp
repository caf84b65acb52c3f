#include "sandbox/check/offercheck.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <stdexcept>

#include "sandbox/check/jsontext.h"
#include "sandbox/check/material.h"
#include "sandbox/check/members.h"
#include "sandbox/check/offershape.h"
#include "sandbox/check/targetpath.h"
#include "sandbox/common/cabinetfile.h"
#include "sandbox/common/clientpath.h"
#include "sandbox/platform/filewrites.h"

namespace sandbox::check {

namespace fs = std::filesystem;

namespace {

using Json = nlohmann::json;

constexpr std::array<const char*, 2> neededParameters{"file_path", "file_md5"};

/// Whether the row can be read; what is of another kind has been told already.
bool isReadable(const Json& row) {
    const Json& meta = objectAt(row, "meta");
    const auto isText = [&](const char* member) {
        return !meta.contains(member) || meta.at(member).is_string();
    };
    return row.is_object() && row.contains("meta") && row.at("meta").is_object() &&
           isText("file_id") && isText("md5") &&
           (!meta.contains("extends") || meta.at("extends").is_object());
}

/// One row of the answer, with its file.
class RowReader {
public:
    RowReader(const JsonText& whole, std::size_t number, const fs::path& storage, Mistakes& found)
        : offer(whole), folder(storage), mistakes(found),
          pointer(memberOf(elementOf("/metas", number), "meta")),
          meta(objectAt(whole.value().at("metas").at(number), "meta")),
          couplePointer(elementOf("/full_packet_diff/materials", number)),
          coupled(coupleAt(whole.value(), number)) {}

    Material read() {
        const std::string& id = textAt(meta, "file_id");
        material.name = id.empty() ? pointer : id;
        material.line = offer.lineOf(pointer);
        material.md5 = Located{textAt(meta, "md5"), lineOf("md5")};
        readCouple();
        readParameters();
        if (material.parameters.count("file_path") != 0) {
            material.path = parameter("file_path");
        }
        const fs::path file = folder / pathOf(id);
        std::error_code error; // a name may be longer than the system's
        if (!nameRefusalOf(id).empty() || !fs::is_regular_file(file, error)) {
            mistakes.add(lineOf("file_id"), "file-missing",
                         "there is no file \"" + id + "\" in the folder");
        } else {
            readFile(file);
        }
        return material;
    }

private:
    std::size_t lineOf(const char* member) const { return offer.lineOf(memberOf(pointer, member)); }

    Located parameter(const char* key) const {
        const auto found = material.parameters.find(key);
        return found == material.parameters.end() ? Located{"", lineOf("extends")} : found->second;
    }

    /// Null for a row that the packet does not have.
    static const Json& coupleAt(const Json& whole, std::size_t number) {
        static const Json none;
        const Json& couples = listAt(objectAt(whole, "full_packet_diff"), "materials");
        return number < couples.size() ? couples[number] : none;
    }

    void readCouple() {
        if (!coupled.is_object()) {
            return;
        }
        const Json& key = objectAt(coupled, "material_id");
        if (!coupled.contains("target_version") || coupled.at("target_version").is_string()) {
            material.version = Located{textAt(coupled, "target_version"),
                                       offer.lineOf(memberOf(couplePointer, "target_version"))};
        }
        material.module =
            Located{textAt(objectAt(key, "module_id"), "id"),
                    offer.lineOf(memberOf(memberOf(couplePointer, "material_id"), "module_id"))};
    }

    void readParameters() {
        const Json& parameters = objectAt(meta, "extends");
        const std::string place = memberOf(pointer, "extends");
        for (const auto& [key, value] : parameters.items()) {
            const std::size_t line = offer.lineOf(memberOf(place, key));
            if (value.is_string()) {
                material.parameters[key] = {value.get<std::string>(), line};
            } else {
                mistakes.add(line, "parameter-kind",
                             material.name + ": the parameter \"" + key +
                                 "\" is no text, so it is not read");
            }
        }
        for (const char* key : neededParameters) {
            if (!parameters.contains(key)) {
                mistakes.add(lineOf("extends"), "parameter-missing",
                             material.name + " has no parameter \"" + key + "\"");
            }
        }
    }

    void readFile(const fs::path& file) {
        const auto facts = factsOf(file, material.name);
        if (!facts) {
            mistakes.add(lineOf("file_id"), "file-missing",
                         "the file \"" + material.name + "\" cannot be read");
            return;
        }
        material.storedMd5 = facts->md5;
        material.isCabinet = isCabinetFile(file);
        const bool saysPlain = std::strtol(parameter("non_cab").text.c_str(), nullptr, 10) != 0;
        if (!material.isCabinet && material.parameters.count("non_cab") == 0) {
            mistakes.add(lineOf("extends"), "non-cab-wrong",
                         material.name +
                             ": without non_cab 1 the client takes the file for a cabinet");
        }
        if (material.isCabinet && !saysPlain) {
            readCabinet(file);
        } else {
            takeContent(*facts);
        }
    }

    void readCabinet(const fs::path& file) {
        const auto names = membersOf(file);
        for (const std::string& name : names) {
            material.members.push_back({name, lineOf("file_id")});
        }
        const std::string own = leafOf(material.target());
        if (const auto content = memberFacts(file, own)) {
            takeContent(*content);
        } else if (names.empty() || hasMember(names, own)) {
            mistakes.add(lineOf("file_id"), "cabinet-damaged",
                         material.name + ": the cabinet cannot be expanded");
        }
    }

    static bool hasMember(const std::vector<std::string>& names, const std::string& name) {
        return std::any_of(names.begin(), names.end(),
                           [&](const std::string& member) { return sameName(member, name); });
    }

    void takeContent(const FileFacts& content) {
        material.contentMd5 = content.md5;
        material.fileVersion = content.version;
        material.size = {std::to_string(content.size), lineOf("file_id")};
    }

    const JsonText& offer;
    const fs::path& folder;
    Mistakes& mistakes;
    std::string pointer;
    const Json& meta;
    std::string couplePointer;
    const Json& coupled; ///< its material in the packet
    Material material;
};

void readPacket(const JsonText& offer, std::size_t rows, Offered& offered, Mistakes& mistakes) {
    const Json& packet = objectAt(offer.value(), "full_packet_diff");
    if (packet.empty()) {
        return;
    }
    const std::string place = "/full_packet_diff";
    offered.version =
        Located{textAt(packet, "target_version"), offer.lineOf(memberOf(place, "target_version"))};
    offered.modules.emplace();
    for (const Json& module : listAt(packet, "modules")) {
        (*offered.modules)[textAt(objectAt(module, "module_id"), "id")] = {};
    }
    const std::size_t keys = listAt(packet, "materials").size();
    if (keys != rows) {
        mistakes.add(offer.lineOf(memberOf(place, "materials")), "count-differs",
                     std::to_string(keys) + " materials have " + std::to_string(rows) +
                         " metas: the client drops the whole answer");
    }
}

} // namespace

std::vector<Mistake> checkOffer(const fs::path& folder) {
    const fs::path file = folder / offerFile;
    const auto text = readFile(file);
    if (!text) {
        throw std::runtime_error(folder.string() + " holds no " + offerFile +
                                 ", the platform's answer to BatchGetMaterialMeta");
    }
    Mistakes mistakes(file.string());
    const JsonText offer(*text, mistakes);
    if (offer.value().is_discarded()) {
        return mistakes.sorted();
    }
    checkShape(offer, "", offerShape(), mistakes);
    Offered offered;
    const Json& rows = listAt(offer.value(), "metas");
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (isReadable(rows[i])) {
            offered.materials.push_back(RowReader(offer, i, folder, mistakes).read());
        }
    }
    readPacket(offer, rows.size(), offered, mistakes);
    for (const Material& material : offered.materials) {
        checkMaterial(offered, material, mistakes);
    }
    checkTogether(offered, mistakes);
    return mistakes.sorted();
}

} // namespace sandbox::check
