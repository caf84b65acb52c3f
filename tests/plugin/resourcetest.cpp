#include <gtest/gtest.h>
#include <vector>
#include <windows.h>

// What the shipped image says of itself. Windows only: nothing else reads these texts.

namespace {

std::string versionText(const char* key) {
    DWORD ignored = 0;
    std::vector<BYTE> resource(::GetFileVersionInfoSizeA("xrefresher.dll", &ignored));
    void* text = nullptr;
    UINT length = 0;
    const std::string path = std::string("\\StringFileInfo\\040904B0\\") + key;
    if (!::GetFileVersionInfoA("xrefresher.dll", 0, static_cast<DWORD>(resource.size()),
                               resource.data()) ||
        !::VerQueryValueA(resource.data(), path.c_str(), &text, &length)) {
        return {};
    }
    return static_cast<const char*>(text);
}

TEST(VersionResource, NamesTheProduct) {
    EXPECT_EQ(versionText("ProductName"), "xrefresher");
    EXPECT_EQ(versionText("OriginalFilename"), "xrefresher.dll");
    EXPECT_EQ(versionText("FileVersion"), VERSION ".0");
    EXPECT_NE(versionText("FileDescription"), "");
}

} // namespace
