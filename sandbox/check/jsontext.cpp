#include "sandbox/check/jsontext.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <set>
#include <vector>

#include "sandbox/common/jsondepth.h"

namespace sandbox::check {
namespace {

using Json = nlohmann::json;

/// Deeper values have the line of what is around them: their pointers would only grow.
constexpr std::size_t deepest = 64;

/// Walks a text and counts its lines. All copies of an iterator share the count.
class CountingIterator {
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    struct Count {
        std::size_t line = 1;
        std::size_t before = 1; ///< the line ahead of the last character
    };

    CountingIterator(const char* start, Count& shared) : at(start), count(&shared) {}

    reference operator*() const { return *at; }
    CountingIterator& operator++() {
        count->before = count->line;
        count->line += *at++ == '\n' ? 1 : 0;
        return *this;
    }
    bool operator==(const CountingIterator& other) const { return at == other.at; }
    bool operator!=(const CountingIterator& other) const { return at != other.at; }

private:
    const char* at;
    Count* count;
};

/// Notes where values begin while the library reads.
class LineNotes final : public nlohmann::json_sax<Json> {
public:
    LineNotes(const CountingIterator::Count& counted, std::map<std::string, std::size_t>& noted,
              Mistakes& found)
        : count(counted), lines(noted), mistakes(found) {}

    bool null() override { return value(count.line); }
    bool boolean(bool /*value*/) override { return value(count.line); }
    // A number ends with the character behind it, which the library has read already.
    bool number_integer(number_integer_t /*value*/) override { return value(count.before); }
    bool number_unsigned(number_unsigned_t /*value*/) override { return value(count.before); }
    bool number_float(number_float_t /*value*/, const string_t& /*text*/) override {
        return value(count.before);
    }
    bool string(string_t& /*value*/) override { return value(count.line); }
    bool binary(binary_t& /*value*/) override { return true; }
    bool start_object(std::size_t /*size*/) override { return open(false); }
    bool start_array(std::size_t /*size*/) override { return open(true); }
    bool end_object() override { return close(); }
    bool end_array() override { return close(); }

    bool key(string_t& name) override {
        Frame& frame = frames.back();
        frame.member = name;
        if (!frame.names.insert(name).second) {
            mistakes.add(count.line, "member-twice", "the member \"" + name + "\" stands twice");
        }
        memberLine = count.line;
        return true;
    }

    bool parse_error(std::size_t /*position*/, const std::string& /*last*/,
                     const nlohmann::detail::exception& /*error*/) override {
        return false;
    }

private:
    struct Frame {
        std::string pointer;
        bool isArray = false;
        std::size_t index = 0;
        std::string member;
        std::set<std::string> names;
    };

    /// The place of the value that comes now.
    std::string takePointer() {
        if (frames.empty()) {
            return "";
        }
        Frame& frame = frames.back();
        return frame.isArray ? elementOf(frame.pointer, frame.index++)
                             : memberOf(frame.pointer, frame.member);
    }

    void note(const std::string& pointer, std::size_t line) {
        const bool isMember = !frames.empty() && !frames.back().isArray;
        if (frames.size() < deepest) {
            lines[pointer] = isMember ? memberLine : line;
        }
    }

    bool value(std::size_t line) {
        note(takePointer(), line);
        return true;
    }

    bool open(bool isArray) {
        const std::string pointer = takePointer();
        note(pointer, count.line);
        frames.push_back({frames.size() < deepest ? pointer : "", isArray, 0, {}, {}});
        return true;
    }

    bool close() {
        frames.pop_back();
        return true;
    }

    const CountingIterator::Count& count;
    std::map<std::string, std::size_t>& lines;
    Mistakes& mistakes;
    std::vector<Frame> frames;
    std::size_t memberLine = 1;
};

/// What the library says, without its number and place.
std::string reasonOf(const Json::exception& error) {
    const std::string text = error.what();
    const std::size_t place = text.find(": ");
    return place == std::string::npos ? text : text.substr(place + 2);
}

std::size_t lineAt(const std::string& text, std::size_t position) {
    const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(position, text.size()));
    return 1 + static_cast<std::size_t>(std::count(text.begin(), end, '\n'));
}

} // namespace

JsonText::JsonText(const std::string& text, Mistakes& mistakes) : parsed(Json::value_t::discarded) {
    if (const auto line = lineTooDeep(text)) {
        mistakes.add(*line, "syntax", tooDeep);
        return;
    }
    CountingIterator::Count count;
    LineNotes notes(count, lines, mistakes);
    const char* begin = text.data();
    Json::sax_parse(CountingIterator(begin, count), CountingIterator(begin + text.size(), count),
                    &notes);
    try {
        parsed = Json::parse(text);
    } catch (const Json::parse_error& error) {
        const std::size_t wrong = error.byte == 0 ? 0 : error.byte - 1; // the last one read
        mistakes.add(lineAt(text, wrong), "syntax", reasonOf(error));
    } catch (const Json::exception& error) { // a number that no machine holds
        mistakes.add(count.line, "syntax", reasonOf(error));
    }
}

std::size_t JsonText::lineOf(std::string pointer) const {
    while (true) {
        const auto found = lines.find(pointer);
        if (found != lines.end()) {
            return found->second;
        }
        if (pointer.empty()) {
            return 1;
        }
        pointer.erase(pointer.find_last_of('/'));
    }
}

std::string memberOf(const std::string& pointer, const std::string& name) {
    std::string escaped;
    for (const char c : name) {
        escaped += c == '~' ? "~0" : c == '/' ? "~1" : std::string(1, c);
    }
    return pointer + "/" + escaped;
}

std::string elementOf(const std::string& pointer, std::size_t index) {
    return pointer + "/" + std::to_string(index);
}

} // namespace sandbox::check
