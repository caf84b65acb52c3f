#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>

#include "sandbox/report/explanation.h"

// The folder of a run, as the tests make it up.

namespace runfolder {

using namespace sandbox::report;
namespace fs = std::filesystem;

/// 2026-11-21 12:00:00 UTC; the log's clock is an hour ahead of it.
inline constexpr std::int64_t noon = 1795262400000;
inline constexpr std::int64_t hour = 3600000;

inline std::string at(std::int64_t milliseconds) {
    return "\"at\":" + std::to_string(noon - hour + milliseconds);
}

class FolderTest : public testing::Test {
protected:
    void SetUp() override {
        std::string pattern = (fs::temp_directory_path() / "xreport-XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        root = pattern;
        fs::create_directories(root / "sandbox");
    }
    void TearDown() override { fs::remove_all(root); }

    void put(const std::string& file, const std::string& text) const {
        fs::create_directories((root / file).parent_path());
        std::ofstream(root / file) << text;
    }

    /// An event at the log's first line, so that both clocks can be laid beside each other.
    void putEvents(const std::string& events) const {
        put("sandbox/events.jsonl",
            R"({"kind":"log","text":"update plugin, kelvar, task fetch, check ... ",)" + at(2) +
                "}\n" + events);
    }

    Explanation explained() const { return explainFolder(sandbox::Folders(root)); }

    fs::path root;
};

} // namespace runfolder
