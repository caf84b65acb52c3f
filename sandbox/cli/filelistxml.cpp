#include "sandbox/cli/filelistxml.h"

#include <pugixml.hpp>
#include <stdexcept>

#include "sandbox/cli/filebytes.h"

namespace sandbox {
namespace {

ListedFile madeUp(std::size_t number) {
    std::string digits = std::to_string(number);
    digits.insert(0, digits.size() < 3 ? 3 - digits.size() : 0, '0');
    const std::string name = "components\\part" + digits + ".dat";
    return {name, "1.0.0." + std::to_string(1000 + number), md5Of(Bytes(name.begin(), name.end())),
            "false", std::to_string(1024 * number)};
}

void append(pugi::xml_node list, const ListedFile& entry) {
    pugi::xml_node file = list.append_child("File");
    file.append_attribute("Name").set_value(entry.name.c_str());
    file.append_attribute("Version").set_value(entry.version.c_str());
    file.append_attribute("MD5").set_value(entry.md5.c_str());
    file.append_attribute("IsPE").set_value(entry.isPe.c_str());
    file.append_attribute("Size").set_value(entry.size.c_str());
}

} // namespace

void writeFileList(const std::filesystem::path& file, const std::vector<ListedFile>& entries,
                   std::size_t total) {
    pugi::xml_document document;
    pugi::xml_node list = document.append_child("Root").append_child("FileList");
    for (const ListedFile& entry : entries) {
        append(list, entry);
    }
    for (std::size_t number = entries.size() + 1; number <= total; ++number) {
        append(list, madeUp(number));
    }
    std::filesystem::create_directories(file.parent_path());
    if (!document.save_file(file.c_str(), "\t")) {
        throw std::runtime_error("cannot write " + file.string());
    }
}

} // namespace sandbox
