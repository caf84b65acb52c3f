#include "platform/ini.h"
#include "fuzz/fuzz.h"
#include "tests/platform/temporaryfolder.h"

// The test file beside the host. Input: section, key, and the file in the lines behind.

namespace {

constexpr std::size_t bufferSize = 256;
constexpr int missing = -7;
constexpr const char* missingText = "missing";
constexpr const char* lastSection = "a section behind";

std::string upper(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
    return text;
}

} // namespace

FUZZ_TARGET(ini) {
    static const TemporaryFolder folder;
    std::string text = input;
    const std::string section = fuzz::takeLine(text);
    const std::string key = fuzz::takeLine(text);
    const std::string file = folder.write("test.ini", text);
    const auto read = [&](const std::string& path, const std::string& sectionName,
                          const std::string& keyName) {
        return platform::profileString(path, sectionName.c_str(), keyName.c_str(), missingText,
                                       bufferSize);
    };
    const std::string value = read(file, section, key);
    fuzz::require(value.size() < bufferSize, "a value fits its buffer");
    fuzz::require(value.find_first_of("\r\n") == value.npos, "a value is within its line", value);
    fuzz::require(read(file, upper(section), upper(key)) == value, "names match in any case");
    if (upper(section).find(upper(lastSection)) == section.npos) {
        const std::string longer =
            folder.write("longer.ini", text + "\n[" + lastSection + "]\n" + key + "=other");
        fuzz::require(read(longer, section, key) == value, "another section changes nothing");
    }
    const std::string plain = folder.write("plain.ini", "[s]\nk=\"" + value + "\"\n");
    fuzz::require(read(plain, "s", "k") == value, "a quoted value reads back the same", value);
    const int number = platform::profileInt(file, section.c_str(), key.c_str(), missing);
    fuzz::require(value == missingText || number == platform::profileInt(plain, "s", "k", missing),
                  "a number follows from its text", value);
}
