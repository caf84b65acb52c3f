#pragma once

#include <filesystem>

#include "soak/facts.h"
#include "soak/findings.h"

namespace soak {

/// Gathers the courses, and writes each sample into a file of comma-separated values. One thread.
class Sampler {
public:
    /// Of a soak of so many seconds.
    Sampler(std::filesystem::path samplesFile, double length, bool isWindows);

    bool isTaken(const HeapLook& heap) const;
    /// Takes what the host has allocated, with so many files in its folder `update`.
    void look(const HeapLook& heap, const Kept& kept, std::size_t files);

    bool isDue(double now) const { return now >= next; }
    /// At that time, while the fault of that name is on.
    void take(double now, const Facts& facts, const Kept& kept, const char* fault);

    const Courses& courses() const { return all; }

private:
    const std::filesystem::path file;
    const double pace;
    const bool windows;
    double next = 0;
    Courses all;
};

} // namespace soak
