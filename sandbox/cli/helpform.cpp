#include "sandbox/cli/helpform.h"

#include <algorithm>
#include <sstream>

#include "sandbox/cli/wrapping.h"

namespace sandbox {
namespace {

constexpr std::size_t usualWidth = 80;
constexpr std::size_t mostWidth = 100; // longer lines are hard to read
constexpr std::size_t leastWidth = 40;
constexpr std::size_t nameColumn = 24;

/// A line that is too long goes on under its own beginning.
std::string wrappedLine(const std::string& line, std::size_t width, std::size_t hanging) {
    const std::size_t indent = std::min(line.find_first_not_of(' '), line.size()) + hanging;
    std::string text;
    std::string rest = line;
    for (const std::string& part : wrapped(rest.erase(0, indent - hanging), width - indent)) {
        text += std::string(text.empty() ? indent - hanging : indent, ' ') + part + "\n";
    }
    return text;
}

std::string wrappedText(const std::string& text, std::size_t width, std::size_t hanging) {
    std::istringstream lines(text);
    std::string all;
    for (std::string line; std::getline(lines, line);) {
        all += wrappedLine(line, width, hanging);
    }
    return all;
}

/// A name with what is said about it in the column behind, or below a name that is too long.
std::string entry(const std::string& name, const std::string& words, std::size_t width) {
    std::string text = "  " + name;
    const bool fits = text.size() + 2 <= nameColumn;
    text += fits ? std::string(nameColumn - text.size(), ' ') : "\n" + std::string(nameColumn, ' ');
    bool isFirst = true;
    for (const std::string& line : wrapped(words, width - nameColumn)) {
        text += (isFirst ? "" : std::string(nameColumn, ' ')) + line + "\n";
        isFirst = false;
    }
    return text;
}

class HelpForm : public CLI::Formatter {
public:
    explicit HelpForm(std::size_t columns)
        : width(std::clamp(columns == 0 ? usualWidth : columns, leastWidth, mostWidth)) {
        label("Positionals", "Arguments");
        label("SUBCOMMAND", "VERB");
        label("OPTIONS", "options");
    }

    std::string make_description(const CLI::App* app) const override {
        return wrappedText(app->get_description(), width, 0) + "\n";
    }

    std::string make_option(const CLI::Option* option, bool isPositional) const override {
        std::string words = make_option_desc(option);
        if (const std::string value = option->get_default_str(); !value.empty()) {
            words += " (default: " + value + ")";
        }
        return entry(make_option_name(option, isPositional) + make_option_opts(option), words,
                     width);
    }

    std::string make_option_opts(const CLI::Option* option) const override {
        const std::string& form = option->get_option_text();
        const bool takesValue = option->get_type_size() != 0;
        const std::string value = !form.empty() ? form : takesValue ? option->get_type_name() : "";
        return value.empty() ? "" : " " + value;
    }

    std::string make_subcommand(const CLI::App* command) const override {
        return entry(command->get_name(), command->get_description(), width);
    }

    std::string make_footer(const CLI::App* app) const override {
        return wrappedText(app->get_footer(), width, 3);
    }

private:
    std::size_t width;
};

} // namespace

std::shared_ptr<CLI::Formatter> helpForm(std::size_t width) {
    return std::make_shared<HelpForm>(width);
}

} // namespace sandbox
