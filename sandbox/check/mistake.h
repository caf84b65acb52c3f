#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace sandbox::check {

/// What is wrong in a file that an author wrote. The code is stable, for programs; all codes
/// are in docs/authoring.md.
struct Mistake {
    std::string file;
    std::size_t line = 1;
    std::string code;
    std::string text;

    bool operator==(const Mistake&) const = default;
};

/// Collects the mistakes of one file.
class Mistakes {
public:
    explicit Mistakes(std::string fileName) : file(std::move(fileName)) {}

    void add(std::size_t line, const char* code, const std::string& text) {
        found.push_back({file, line, code, text});
    }

    /// In the order of their lines.
    std::vector<Mistake> sorted() const;

private:
    std::string file;
    std::vector<Mistake> found;
};

} // namespace sandbox::check
