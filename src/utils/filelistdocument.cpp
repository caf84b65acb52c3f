#include "utils/filelistdocument.h"

#include <algorithm>
#include <cctype>
#include <iterator>

FileListDocument::FileListDocument() {
    for (std::size_t c = 0; c < lowerCase.size(); ++c) {
        lowerCase[c] = static_cast<unsigned char>(std::tolower(static_cast<int>(c)));
    }
}

pugi::xml_parse_result FileListDocument::load(const std::string& systemPath) {
    entries.clear();
    const pugi::xml_parse_result result = document.load_file(systemPath.c_str());
    const auto files = _list().children("File");
    entries.reserve(static_cast<std::size_t>(std::distance(files.begin(), files.end())));
    for (const pugi::xml_node entry : files) {
        _index(entry);
    }
    return result;
}

void FileListDocument::save(const std::string& systemPath) const {
    document.save_file(systemPath.c_str(), "\t", pugi::format_indent, pugi::encoding_auto);
}

pugi::xml_node FileListDocument::find(std::string_view name) const {
    return _find(_hashOf(name), name);
}

pugi::xml_node FileListDocument::_find(std::uint64_t hash, std::string_view name) const {
    const auto [first, last] = entries.equal_range(hash);
    const auto found = std::find_if(first, last, [&](const auto& entry) {
        return _isSameName(entry.second.attribute("Name").as_string(), name);
    });
    return found == last ? pugi::xml_node() : found->second;
}

pugi::xml_node FileListDocument::append(const std::string& name) {
    pugi::xml_node entry = _list().append_child("File");
    entry.append_attribute("Name").set_value(name.c_str());
    _index(entry);
    return entry;
}

pugi::xml_node FileListDocument::_list() const {
    return document.child("Root").child("FileList");
}

void FileListDocument::_index(const pugi::xml_node& entry) {
    const std::string_view name = entry.attribute("Name").as_string();
    const std::uint64_t hash = _hashOf(name);
    if (!name.empty() && !_find(hash, name)) { // the first of a name counts
        entries.emplace(hash, entry);
    }
}

// FNV-1a over the name in lower case.
std::uint64_t FileListDocument::_hashOf(std::string_view name) const {
    std::uint64_t hash = 14695981039346656037U;
    for (const char c : name) {
        hash = (hash ^ lowerCase[static_cast<unsigned char>(c)]) * 1099511628211U;
    }
    return hash;
}

bool FileListDocument::_isSameName(std::string_view a, std::string_view b) const {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [this](char x, char y) {
        return lowerCase[static_cast<unsigned char>(x)] == lowerCase[static_cast<unsigned char>(y)];
    });
}
