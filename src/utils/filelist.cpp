#include "utils/filelist.h"

#include <array>

#include "host/hostmodules.h"
#include "host/log.h"
#include "platform/files.h"
#include "platform/text.h"
#include "utils/filelistdocument.h"
#include "utils/utils.h"

namespace {

/// Loads the document; a fault is logged under the name of the calling operation.
bool load(FileListDocument& doc, const std::string& path, const char* function) {
    const pugi::xml_parse_result result = doc.load(platform::systemPath(path));
    if (!result) {
        log(logFault, __FILE__, __LINE__, function, "update plugin, kelvar, load file list failed[",
            static_cast<int>(result.status), "], description[", result.description(), "]");
    }
    return static_cast<bool>(result);
}

} // namespace

void XNFileListHelper::updateFileListItems(const std::vector<XNFileItem>& items) {
    XLOG(logProgress, "update plugin, kelvar, update fileList items, count:", items.size());
    const std::string path = _getFileListPath();
    FileListDocument doc;
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
    doc.save(platform::systemPath(path));
}

void XNFileListHelper::checkDiffAndUpdate(const std::vector<XNFileItem>& items) {
    XLOG(logProgress, "update plugin, kelvar, check diff and update, count:", items.size());
    const std::string path = _getFileListPath();
    FileListDocument doc;
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
        doc.save(platform::systemPath(path));
    }
}

bool XNFileListHelper::_findItem(const FileListDocument& doc, const std::string& name) {
    return !doc.find(name).empty();
}

bool XNFileListHelper::_getItem(const FileListDocument& doc, const std::string& name,
                                XNFileItem& out) {
    const pugi::xml_node entry = doc.find(name);
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

void XNFileListHelper::updateItem(FileListDocument& doc, const XNFileItem& item) {
    XLOG(logProgress, "update plugin, kelvar, updateItem, name:", item.name);
    const pugi::xml_node entry = doc.find(item.name);
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

void XNFileListHelper::_addItem(FileListDocument& doc, const XNFileItem& item) {
    pugi::xml_node entry = doc.append(item.name);
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
