#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include <pugixml.hpp>

#include "bench/parts.h"
#include "utils/filelist.h"

// The list of installed files, when a run has placed many.

namespace {

namespace fs = std::filesystem;

constexpr int entries = 10'000;

std::string nameOf(int number) {
    return "components\\part" + std::to_string(number / 50) + "\\module" + std::to_string(number) +
           ".dat";
}

/// The home folder with a list of 10,000 entries.
class Home {
public:
    Home() {
        pugi::xml_document document;
        pugi::xml_node list = document.append_child("Root").append_child("FileList");
        for (int i = 0; i < entries; ++i) {
            pugi::xml_node file = list.append_child("File");
            file.append_attribute("Name").set_value(nameOf(i).c_str());
            file.append_attribute("Version").set_value("1.2.0.1500");
            file.append_attribute("MD5").set_value("0123456789abcdef0123456789abcdef");
            file.append_attribute("IsPE").set_value(false);
            file.append_attribute("Size").set_value(100'000 + i);
        }
        fs::create_directories(path().parent_path());
        std::ostringstream stream;
        document.save(stream, "\t");
        text = stream.str();
        restore();
    }
    ~Home() { fs::remove_all(parts::home()); }
    Home(const Home&) = delete;
    Home& operator=(const Home&) = delete;

    /// The list as it is before an update.
    void restore() const { std::ofstream(path(), std::ios::binary) << text; }

    bool hasGrown() const { return fs::file_size(path()) > text.size(); }

    static fs::path path() {
        return fs::path(parts::home()) / "OrvSecurity/config/uninst/filelist.xml";
    }

private:
    std::string text;
};

/// Every other one is in the list already, at the place that is farthest from its number.
std::vector<XNFileItem> itemsToPlace(std::int64_t count) {
    std::vector<XNFileItem> items;
    items.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        items.push_back({nameOf(i % 2 == 0 ? entries - 1 - i : entries + i), "1.3.0.1600",
                         "fedcba9876543210fedcba9876543210", false, 200'000});
    }
    return items;
}

void updateFileList(benchmark::State& state) {
    const Home home;
    const std::vector<XNFileItem> items = itemsToPlace(state.range(0));
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming(); // what stands there already is neither added nor changed
        home.restore();
        state.ResumeTiming();
        XNFileListHelper().updateFileListItems(items);
    }
    if (!home.hasGrown()) {
        state.SkipWithError("nothing was added");
    }
}
BENCHMARK(updateFileList)->Arg(1'000)->Unit(benchmark::kMillisecond);

/// The document alone, as it stands after an update.
void loadAndSaveFileList(benchmark::State& state) {
    const Home home;
    XNFileListHelper().updateFileListItems(itemsToPlace(state.range(0)));
    for ([[maybe_unused]] auto _ : state) {
        pugi::xml_document document;
        if (!document.load_file(Home::path().c_str())) {
            state.SkipWithError("the list cannot be read");
        }
        document.save_file(Home::path().c_str(), "\t", pugi::format_indent, pugi::encoding_auto);
    }
}
BENCHMARK(loadAndSaveFileList)->Arg(1'000)->Unit(benchmark::kMillisecond);

} // namespace
