#include <benchmark/benchmark.h>

#include "host/hostmodules.h"
#include "host/log.h"
#include "platform/debug.h"

// One log line with three values. The module that takes it is a real one and does nothing.

namespace {

struct Values {
    std::string md5 = "0123456789abcdef0123456789abcdef";
    std::string path = "update\\0123456789abcdef0123456789abcdef";
    int count = 1234;
};

std::string lineOf(const Values& values) {
    std::string line("update plugin, kelvar, task download, download name:");
    line += ' ';
    line += values.md5;
    line += ' ';
    line += values.path;
    line += ' ';
    line += std::to_string(values.count);
    line += ' ';
    return line;
}

void logLine(benchmark::State& state) {
    Values values;
    benchmark::DoNotOptimize(values);
    for ([[maybe_unused]] auto _ : state) {
        XLOG(logProgress, "update plugin, kelvar, task download, download name:", values.md5,
             values.path, values.count);
    }
}
BENCHMARK(logLine);

/// All of it but the debug output, which is the system's.
void logLineToModule(benchmark::State& state) {
    Values values;
    benchmark::DoNotOptimize(values);
    for ([[maybe_unused]] auto _ : state) {
        const std::string line =
            logdetail::lineOf("update plugin, kelvar, task download, download name:", values.md5,
                              values.path, values.count);
        hostmodules::writeLog(logProgress, __FILE__, __LINE__, "logLineToModule", line.c_str(),
                              line.size());
    }
}
BENCHMARK(logLineToModule);

void lineByHand(benchmark::State& state) {
    Values values;
    benchmark::DoNotOptimize(values);
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(lineOf(values));
    }
}
BENCHMARK(lineByHand);

/// The same on its way to the debug output, which no log line is spared.
void writtenLineByHand(benchmark::State& state) {
    Values values;
    benchmark::DoNotOptimize(values);
    for ([[maybe_unused]] auto _ : state) {
        platform::debugOutput(lineOf(values).c_str());
    }
}
BENCHMARK(writtenLineByHand);

} // namespace
