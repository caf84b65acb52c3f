#include "soak/sampler.h"

#include <algorithm>
#include <fstream>

namespace soak {
namespace {

constexpr double longestPace = 10;
constexpr double fewestSamples = 24;

/// What is kept by design costs on the client's system.
struct Cost {
    double chainBytes;      ///< of the heap
    double retryBytes;      ///< of the heap
    double nameBytes;       ///< of the heap, for the name of a file in a folder that is watched
    double threadKilobytes; ///< its stack and its share of the heap
    double threadHandles;
};
constexpr Cost nativeCost{2'000, 2'000, 290, 24, 0};
constexpr Cost wineCost{4'000, 4'000, 0, 1000, 4}; ///< a stack is larger, and waits have handles

const Cost& costOn(bool windows) {
    return windows ? wineCost : nativeCost;
}

} // namespace

Sampler::Sampler(std::filesystem::path samplesFile, double length, bool isWindows)
    : file(std::move(samplesFile)), pace(std::min(longestPace, length / fewestSamples)),
      windows(isWindows) {
    std::ofstream(file) << "seconds,heap bytes,own KB,resident KB,threads,handles,CPU s,"
                           "kept chains,kept retries,fault\n";
}

bool Sampler::isTaken(const HeapLook& heap) const {
    return !all.heap.empty() && all.heap.back().at >= heap.tick;
}

void Sampler::look(const HeapLook& heap, const Kept& kept, std::size_t files) {
    const Cost& cost = costOn(windows);
    const double required = cost.chainBytes * static_cast<double>(kept.chains) +
                            cost.retryBytes * static_cast<double>(kept.retries) +
                            cost.nameBytes * static_cast<double>(files);
    all.heap.push_back({heap.tick, heap.bytes, required});
}

void Sampler::take(double now, const Facts& facts, const Kept& kept, const char* fault) {
    next += pace;
    const Cost& cost = costOn(windows);
    all.memory.push_back({now, facts.memory, cost.threadKilobytes * kept.threads()});
    all.threads.push_back({now, facts.threads, kept.threads()});
    all.handles.push_back({now, facts.handles, cost.threadHandles * kept.threads()});
    const double bytes = all.heap.empty() ? 0 : all.heap.back().value;
    std::ofstream(file, std::ios::app)
        << now << ',' << std::to_string(static_cast<long long>(bytes)) << ',' << facts.memory << ','
        << facts.resident << ',' << facts.threads << ',' << facts.handles << ',' << facts.cpuSeconds
        << ',' << kept.chains << ',' << kept.retries << ',' << fault << '\n';
}

} // namespace soak
