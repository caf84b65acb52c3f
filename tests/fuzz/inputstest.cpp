#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

#include "fuzz/fuzz.h"

// Runs every target over its seeds and over what was found with it and mended: one folder a
// target in `seeds` and `regressions` of the given folder. Each input is named before it runs,
// as a broken promise ends the program.

namespace {

namespace fs = std::filesystem;

std::size_t runAll(const fuzz::Target& target, const fs::path& folder) {
    std::size_t count = 0;
    std::error_code missing;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, missing)) {
        std::cout << entry.path().string() << std::endl;
        std::ifstream file(entry.path(), std::ios::binary);
        target.run({std::istreambuf_iterator<char>(file), {}});
        ++count;
    }
    return count;
}

/// Whether every folder of inputs has a target that reads it.
bool areAllRead(const fs::path& folder) {
    bool all = true;
    std::error_code missing;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, missing)) {
        const std::string name = entry.path().filename().string();
        if (std::none_of(fuzz::targets().begin(), fuzz::targets().end(),
                         [&](const fuzz::Target& target) { return target.name == name; })) {
            std::cerr << entry.path().string() << ": no target of that name\n";
            all = false;
        }
    }
    return all;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: fuzz_inputs FOLDER\n";
        return 2;
    }
    const fs::path folder = argv[1];
    bool succ = !fuzz::targets().empty() && areAllRead(folder / "seeds") &&
                areAllRead(folder / "regressions");
    for (const fuzz::Target& target : fuzz::targets()) {
        runAll(target, folder / "regressions" / target.name);
        if (runAll(target, folder / "seeds" / target.name) == 0) {
            std::cerr << target.name << ": no seeds\n";
            succ = false;
        }
    }
    return succ ? 0 : 1;
}
