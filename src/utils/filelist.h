#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// One entry of the list of installed files.
struct XNFileItem {
    std::string name; ///< relative to the application folder, with backslashes
    std::string version;
    std::string md5; ///< in either case
    bool isPE = false;
    std::uint64_t size = 0; ///< bytes
};

class FileListDocument;

/// Keeps `filelist.xml` in the client's home folder true, which the uninstaller reads:
/// Root / FileList / File with Name, Version, MD5, IsPE and Size. Changes an existing
/// document and never makes one; one that does not load stays as it is, after a log line.
/// Nothing is kept between calls and nothing locked: the later of two saves wins.
class XNFileListHelper {
public:
    /// Adds or changes all items and saves.
    void updateFileListItems(const std::vector<XNFileItem>& items);

    /// Adds or changes the items that differ and saves only if one did.
    void checkDiffAndUpdate(const std::vector<XNFileItem>& items);

private:
    static bool _findItem(const FileListDocument& doc, const std::string& name);
    static bool _getItem(const FileListDocument& doc, const std::string& name, XNFileItem& out);
    static void updateItem(FileListDocument& doc, const XNFileItem& item);
    static void _addItem(FileListDocument& doc, const XNFileItem& item);
    static bool _isSameItem(const XNFileItem& a, const XNFileItem& b);
    static std::string _getFileListPath();
};
