#include "utils/filelist.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string_view>

#include <pugixml.hpp>

#include "host/hostmodules.h"
#include "host/log.h"
#include "platform/files.h"
#include "platform/text.h"
#include "utils/utils.h"

namespace {

pugi::xml_node fileListOf(const pugi::xml_document& doc) {
    return doc.child("Root").child("FileList");
}

bool isSameName(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](unsigned char x, unsigned char y) {
        return std::tolower(x) == std::tolower(y);
    });
}

/// The first entry of that name, in any case; an empty name in the document is none.
pugi::xml_node entryOf(const pugi::xml_document& doc, const std::string& name) {
    for (const pugi::xml_node file : fileListOf(doc).children("File")) {
        const std::string_view found = file.attribute("Name").as_string();
        if (!found.empty() && isSameName(found, name)) {
            return file;
        }
    }
    return {};
}

/// Loads the document; a fault is logged under the name of the calling operation.
bool load(pugi::xml_document& doc, const std::string& path, const char* function) {
    const pugi::xml_parse_result result = doc.load_file(platform::systemPath(path).c_str());
    if (!result) {
        log(logFault, __FILE__, __LINE__, function, "update plugin, kelvar, load file list failed[",
            static_cast<int>(result.status), "], description[", result.description(), "]");
    }
    return static_cast<bool>(result);
}

void save(const pugi::xml_document& doc, const std::string& path) {
    doc.save_file(platform::systemPath(path).c_str(), "\t", pugi::format_indent,
                  pugi::encoding_auto);
}

} // namespace

void XNFileListHelper::updateFileListItems(const std::vector<XNFileItem>& items) {
    XLOG(logProgress, "update plugin, kelvar, update fileList items, count:", items.size());
    const std::string path = _getFileListPath();
    pugi::xml_document doc;
    if (items.empty() || !load(doc, path, XLOG_SIGNATURE)) {
        return;
    }
    for (const XNFileItem& item : items) {
        if (_findItem(doc, item.name)) {
            updateItem(doc, item);
        } else {
            _addItem(doc, item);
        }
    }
    save(doc, path);
}

void XNFileListHelper::checkDiffAndUpdate(const std::vector<XNFileItem>& items) {
    XLOG(logProgress, "update plugin, kelvar, check diff and update, count:", items.size());
    const std::string path = _getFileListPath();
    pugi::xml_document doc;
    if (items.empty() || !load(doc, path, XLOG_SIGNATURE)) {
        return;
    }
    bool changed = false;
    for (const XNFileItem& item : items) {
        XNFileItem stored;
        if (!_getItem(doc, item.name, stored)) {
            changed = true;
            _addItem(doc, item);
        } else if (!_isSameItem(stored, item)) {
            changed = true;
            updateItem(doc, item);
        }
    }
    if (changed) {
        save(doc, path);
    }
}

bool XNFileListHelper::_findItem(const pugi::xml_document& doc, const std::string& name) {
    return !entryOf(doc, name).empty();
}

bool XNFileListHelper::_getItem(const pugi::xml_document& doc, const std::string& name,
                                XNFileItem& out) {
    const pugi::xml_node entry = entryOf(doc, name);
    if (!entry) {
        return false;
    }
    out.name = entry.attribute("Name").as_string();
    out.isPE = entry.attribute("IsPE").as_bool();
    out.version = entry.attribute("Version").as_string();
    out.size = entry.attribute("Size").as_ullong();
    out.md5 = entry.attribute("MD5").as_string();
    return true;
}

void XNFileListHelper::updateItem(pugi::xml_document& doc, const XNFileItem& item) {
    XLOG(logProgress, "update plugin, kelvar, updateItem, name:", item.name);
    const pugi::xml_node entry = entryOf(doc, item.name);
    if (!entry) {
        return;
    }
    // An attribute that the entry lacks is not made: writing to it does nothing.
    const bool written = entry.attribute("Version").set_value(item.version.c_str());
    entry.attribute("MD5").set_value(item.md5.c_str());
    entry.attribute("IsPE").set_value(item.isPE);
    entry.attribute("Size").set_value(static_cast<unsigned long long>(item.size));
    XLOG(logProgress, "update plugin, kelvar, updateItem, found, ret:", written);
}

void XNFileListHelper::_addItem(pugi::xml_document& doc, const XNFileItem& item) {
    pugi::xml_node entry = fileListOf(doc).append_child("File");
    entry.append_attribute("Name").set_value(item.name.c_str());
    entry.append_attribute("Version").set_value(item.version.c_str());
    entry.append_attribute("MD5").set_value(item.md5.c_str());
    entry.append_attribute("IsPE").set_value(item.isPE);
    entry.append_attribute("Size").set_value(static_cast<unsigned long long>(item.size));
}

bool XNFileListHelper::_isSameItem(const XNFileItem& a, const XNFileItem& b) {
    return utils::toLower(a.md5) == utils::toLower(b.md5) &&
           utils::compareVersion(a.version, b.version) == 0 && a.size == b.size && a.isPE == b.isPE;
}

std::string XNFileListHelper::_getFileListPath() {
    std::array<wchar_t, platform::maxPath + 1> buffer{};
    std::string home;
    if (hostmodules::homeDirectory(1, buffer.data(), static_cast<int>(platform::maxPath))) {
        home = platform::toUtf8(buffer.data());
    }
    return home + "\\OrvSecurity\\config\\uninst\\filelist.xml";
}
