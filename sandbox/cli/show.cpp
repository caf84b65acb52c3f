#include "sandbox/cli/show.h"

#include <functional>

namespace sandbox {
namespace {

using Json = nlohmann::json;

constexpr std::size_t longestValue = 72;

std::string brief(const std::string& text) {
    return text.size() <= longestValue ? text : text.substr(0, longestValue - 3) + "...";
}

std::string textOf(const Json& value) {
    return value.is_string() ? value.get<std::string>() : value.is_null() ? "" : value.dump();
}

/// Shows a text apart from a number of the same digits.
std::string briefJson(const Json& value) {
    return brief(value.dump());
}

/// A column of a table: a member of each element, in words.
struct Column {
    const char* title;
    const char* member;
    std::function<std::string(const Json&)> words = textOf;
};

std::function<std::string(const Json&)> either(const char* yes, const char* no) {
    return [yes, no](const Json& value) {
        return value.get<bool>() ? yes : no;
    };
}

std::function<std::string(const Json&)> orElse(const char* absent) {
    return [absent](const Json& value) {
        return value.is_null() ? absent : textOf(value);
    };
}

std::string sizeWords(const Json& value) {
    return sizeText(value.get<std::uint64_t>());
}

std::string inOneLine(const Json& arguments) {
    std::string line;
    for (const Json& argument : arguments) {
        line += (line.empty() ? "" : " ") + textOf(argument);
    }
    return line;
}

void showList(const std::string& heading, const Json& elements, const std::vector<Column>& columns,
              Console& console) {
    Console::Cells titles;
    for (const Column& column : columns) {
        titles.emplace_back(column.title);
    }
    std::vector<Console::Cells> rows;
    for (const Json& element : elements) {
        Console::Cells cells;
        for (const Column& column : columns) {
            cells.push_back(column.words(element.at(column.member)));
        }
        rows.push_back(std::move(cells));
    }
    console.heading(heading);
    console.table(titles, rows);
}

void showMap(const char* heading, const Console::Cells& titles, const Json& members,
             std::string (*words)(const Json&), Console& console) {
    std::vector<Console::Cells> rows;
    for (const auto& [name, content] : members.items()) {
        rows.push_back({name, words(content)});
    }
    console.heading(heading);
    console.table(titles, rows);
}

void showNotifications(const Json& notifications, Console& console) {
    std::vector<Console::Cells> rows;
    for (const Json& told : notifications) {
        const Json& code = told.at("code");
        const std::string text = brief(textOf(told.at("text")));
        const bool isEvent = code.is_number() && code >= 100;
        rows.push_back(
            {textOf(told.at("type")), textOf(told.at("bytes")),
             code.is_null() ? text : (isEvent ? "event " : "command ") + code.dump() + " " + text});
    }
    console.heading("Notifications");
    console.table({"type", "bytes", "content"}, rows);
}

void showFileList(const Json& picture, bool allEntries, Console& console) {
    const Json& entries = picture.at("fileList");
    showList(
        "filelist.xml: " + counted(picture.at("fileListEntries"), "entry") +
            (allEntries ? "" : ", " + std::to_string(entries.size()) + " of them new or changed"),
        entries,
        {{"name", "name"},
         {"was", "was", orElse("(none)")},
         {"version", "version"},
         {"PE", "isPe"},
         {"size", "size"},
         {"md5", "md5"}},
        console);
}

void showFaults(const Json& faults, Console& console) {
    for (const Json& fault : faults) {
        console.row(Mark::fault, {textOf(fault)}, {});
    }
}

void showWaiting(const Json& picture, Console& console) {
    showList("Padding list", picture.at("padding"),
             {{"target", "target"},
              {"waiting file", "file"},
              {"state", "isThere", either("waits", "gone")}},
             console);
    showList("Left to the next restart", picture.at("moves"),
             {{"from", "from"}, {"to", "to", orElse("(delete)")}}, console);
    showFaults(picture.at("faults"), console);
}

} // namespace

void showPicture(const Json& picture, bool allEntries, Console& console) {
    showList(
        "Files of the client", picture.at("files"),
        {{"file", "file"}, {"size", "size", sizeWords}, {"version", "version"}, {"from", "from"}},
        console);
    showFileList(picture, allEntries, console);
    showMap("Version store", {"path", "version"}, picture.at("versions"), textOf, console);
    showMap("Settings", {"key", "value"}, picture.at("settings"), briefJson, console);
    showFaults(picture.at("damaged"), console);
    showList(
        "Files in use", picture.at("holders"),
        {{"file", "file"}, {"process", "process"}, {"state", "runs", either("runs", "has ended")}},
        console);
    showWaiting(picture, console);
    showList("Programs asked for", picture.at("programs"),
             {{"program", "program"}, {"outcome", "started", either("started", "no such program")}},
             console);
    showNotifications(picture.at("notifications"), console);
    showList("Traces of started programs", picture.at("traces"),
             {{"program", "program"}, {"arguments", "arguments", inOneLine}}, console);
}

} // namespace sandbox
