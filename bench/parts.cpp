#include "bench/parts.h"

#include <filesystem>
#include <iostream>

#include <benchmark/benchmark.h>

#include "bench/client/watch.h"
#include "platform/modules.h"

// Runs in the folder of the measured client, with its modules.

namespace parts {

const std::string& home() {
    static const std::string folder =
        (std::filesystem::temp_directory_path() / ("bench-home-" + std::to_string(nanoseconds())))
            .string();
    return folder;
}

} // namespace parts

int main(int argc, char** argv) {
    const platform::ModuleHandle base = platform::loadModule(L"xnbase.dll");
    const auto watchBy = reinterpret_cast<SetBenchWatch>(platform::findExport(base, "benchWatch"));
    if (!watchBy) {
        std::cerr << "parts_bench: no xnbase.dll beside this program\n";
        return 2;
    }
    static BenchWatch& watch = *new BenchWatch;
    watch.home = std::filesystem::path(parts::home()).wstring();
    watchBy(&watch);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
