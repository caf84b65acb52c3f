#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

#include <pugixml.hpp>

/// A loaded `filelist.xml` with an index of its entries: a run may bring thousands of items, and
/// the list has as many entries. One thread at a time.
class FileListDocument {
public:
    FileListDocument();

    /// Takes the document of that path, which is the system's, in place of the one it had.
    pugi::xml_parse_result load(const std::string& systemPath);
    void save(const std::string& systemPath) const;

    /// The first entry of that name, in any case; null without one. An entry with an empty name
    /// is never found.
    pugi::xml_node find(std::string_view name) const;

    /// A new entry with its name and nothing else; null in a document without a list.
    pugi::xml_node append(const std::string& name);

private:
    pugi::xml_node _list() const;
    void _index(const pugi::xml_node& entry);
    pugi::xml_node _find(std::uint64_t hash, std::string_view name) const;
    std::uint64_t _hashOf(std::string_view name) const;
    bool _isSameName(std::string_view a, std::string_view b) const;

    pugi::xml_document document;
    std::array<unsigned char, 256> lowerCase; ///< as the process's locale has it
    std::unordered_multimap<std::uint64_t, pugi::xml_node> entries; ///< by the hash of the name
};
