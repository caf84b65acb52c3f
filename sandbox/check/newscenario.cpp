#include "sandbox/check/newscenario.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <stdexcept>
#include <system_error>

#include <nlohmann/json.hpp>

namespace sandbox::check {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* base = R"json({
  "title": "A client of version 1.2.0.1500 gets one new file",
  "comment": "A scenario: a client, what the update platform has for it, and what is to stand afterwards. xsandbox run plays it, xsandbox check reads it. Client paths have \\ between names, which JSON writes twice. A member comment may stand in every object.",
  "seed": 1,
  "client": {
    "comment": "The client before the first step. Files have made-up bytes that follow from the seed; kinds are pe (an image with a version), data, program and holder. versions is the version store, with what the client tells the platform as update\\version.dat.",
    "version": "1.2.0.1500",
    "versions": {"update\\version.dat": "1.2.0.1500"},
    "files": [{"path": "bin\\app.dll", "kind": "pe", "version": "1.2.0.1500", "size": 8192}],
    "fileListEntries": 10,
    "background": ["orvdefender.exe --install"]
  },
  "platform": {
    "comment": "The packet and its materials. A version of the packet needs four numbers, none below its counterpart in 1.0.0.1001.",
    "version": "1.3.0.1600",
    "materials": [{
      "name": "app",
      "comment": "Replaces a file of the client: the version has to be newer than what stands. The path may have / too.",
      "version": "1.3.0.1600",
      "path": "bin/app.dll",
      "file": {"kind": "pe", "version": "1.3.0.1600", "size": 20000}
    }]
  },
  "phases": [{
    "do": "run",
    "title": "the client asks, and takes what is new",
    "asks": {"comment": "What the client has to send; oid and id are of the user who is logged in.",
             "version": "1.2.0.1500", "oid": 1001, "id": 2002},
    "expect": {
      "comment": "What changes against the step before. What is not told has to be as it was: every file, every entry of the stores, every waiting file.",
      "materials": {"app": ["placed", "1.3.0.1600"]},
      "downloads": ["app"],
      "programs": [],
      "notifications": ["type 14 1.3.0.1600"],
      "versions": {"update\\version.dat": "1.3.0.1600"},
      "fileList": {"entries": 10, "of": ["app"]},
      "settings": {"KEY_UPDATE_KELVAR_TEMP_FILE_LIST": ["{app.md5}"]},
      "update": ["temp\\{app.md5}"],
      "delayed": {"replaces": 0, "deletes": 1}
    }
  }]
})json";

/// What a part adds: to the client, to the materials, to what the run is to bring, and steps.
struct Part {
    const char* name;
    const char* client;
    const char* materials;
    const char* expect;
    const char* steps;
};

constexpr std::array<Part, 5> parts{{
    {"cabinet", "{}",
     R"json([{
  "name": "packed",
  "comment": "Comes in a cabinet: stored, mszip, lzx or quantum. The member called as the target is put in place; others stay in the folder update.",
  "version": "1.3.0.1600", "path": "lang/zh_CN.dat",
  "file": {"kind": "data", "size": 3000},
  "cabinet": {"method": "mszip", "with": [{"name": "notes.txt", "size": 300}]}
}])json",
     R"json({
  "materials": {"packed": ["placed", "1.3.0.1600"]}, "downloads": ["packed"],
  "versions": {"lang\\zh_CN.dat": "1.3.0.1600"}, "fileList": {"entries": 1, "of": ["packed"]},
  "settings": {"KEY_UPDATE_KELVAR_TEMP_FILE_LIST": ["{packed.md5}"]}, "update": ["notes.txt"]
})json",
     "[]"},
    {"condition", "{}",
     R"json([{
  "name": "later",
  "comment": "For clients from 2.0 on, so this one leaves it. Clauses are joined by &&; blanks make an operator that is none.",
  "version": "1.3.0.1600", "path": "bin/later.dll",
  "parameters": {"check_app": "%appver%>=\"2.0.0.0\"&&%appver%<\"3.0.0.0\""},
  "file": {"kind": "pe", "version": "1.3.0.1600", "size": 9000}
}])json",
     R"json({"materials": {"later": ["refused", null, "for another client version"]}})json", "[]"},
    {"program", R"json({"files": [{"path": "tools\\index.exe", "kind": "program"}]})json",
     R"json([{
  "name": "index",
  "comment": "Asks for a program when it is in place. Program and parameters stand in double quotes; further entries follow behind )&&(.",
  "version": "1.3.0.1600", "path": "tools/index.dat",
  "parameters": {"exec": "(%process%=\"tools\\index.exe\" %param%=\"--all\")"},
  "file": {"kind": "data", "size": 2000}
}])json",
     R"json({
  "materials": {"index": ["placed", "1.3.0.1600"]}, "downloads": ["index"],
  "programs": ["tools\\index.exe --all"],
  "versions": {"tools\\index.dat": "1.3.0.1600"}, "fileList": {"entries": 1, "of": ["index"]},
  "settings": {"KEY_UPDATE_KELVAR_TEMP_FILE_LIST": ["{index.md5}"]}
})json",
     "[]"},
    {"waiting",
     R"json({
  "files": [{"path": "guard\\guard.dll", "kind": "pe", "version": "1.2.0.1500", "size": 8192},
            {"path": "guard\\keeper.exe", "kind": "holder"}],
  "held": [{"file": "guard\\guard.dll", "by": "guard\\keeper.exe"}]
})json",
     R"json([{
  "name": "guard",
  "comment": "Its target is in use, so it waits in the folder update for the restart.",
  "version": "1.3.0.1600", "path": "guard/guard.dll",
  "file": {"kind": "pe", "version": "1.3.0.1600", "size": 9000}
}])json",
     R"json({
  "materials": {"guard": ["waiting", "1.2.0.1500"]}, "downloads": ["guard"],
  "fileList": {"entries": 0, "of": ["guard"]},
  "settings": {"KEY_UPDATE_KELVAR_TEMP_FILE_LIST": ["{guard.md5}"],
               "KEY_UPDATE_KELVAR_PADDING_FILE_LIST": {"guard\\guard.dll": "{guard.fileMd5}"}},
  "update": ["{guard.md5}"], "delayed": {"replaces": 1, "deletes": 0}
})json",
     R"json([{
  "do": "restart", "title": "the machine restarts",
  "expect": {"materials": {"guard": ["placed", "1.3.0.1600"]}, "update": []}
}])json"},
    {"group", "{}",
     R"json([{
  "name": "first",
  "comment": "A group: rows with the same text in dependent are put in place together or not at all. Groups come behind all other rows.",
  "version": "1.3.0.1600", "path": "pair/first.dll", "parameters": {"dependent": "pair"},
  "file": {"kind": "pe", "version": "1.3.0.1600", "size": 9000}
}, {
  "name": "second",
  "version": "1.3.0.1600", "path": "pair/second.dll", "parameters": {"dependent": "pair"},
  "file": {"kind": "pe", "version": "1.3.0.1600", "size": 9000}
}])json",
     R"json({
  "materials": {"first": ["placed", "1.3.0.1600"], "second": ["placed", "1.3.0.1600"]},
  "downloads": ["first", "second"], "fileList": {"entries": 2, "of": ["first", "second"]},
  "settings": {"KEY_UPDATE_KELVAR_TEMP_FILE_LIST": ["{first.md5}", "{second.md5}"]}
})json",
     "[]"},
}};

/// Joins objects member by member, appends arrays, adds numbers up.
void join(Json& into, const Json& more) {
    if (into.is_null()) {
        into = more;
    } else if (more.is_object()) {
        for (const auto& [name, value] : more.items()) {
            join(into[name], value);
        }
    } else if (more.is_array()) {
        into.insert(into.end(), more.begin(), more.end());
    } else if (more.is_number()) {
        into = into.get<int>() + more.get<int>();
    }
}

/// What a restart leaves in folder update: all that neither waited nor was an old file.
Json leftByRestart(const Json& update) {
    Json left = Json::array();
    for (const Json& name : update) {
        if (name.get_ref<const std::string&>().find('{') == std::string::npos) {
            left.push_back(name);
        }
    }
    return left;
}

[[noreturn]] void refuseFile(const std::filesystem::path& file, int error) {
    throw std::runtime_error(error == EEXIST ? file.string() + " is there already"
                                             : "cannot write " + file.string() + ": " +
                                                   std::generic_category().message(error));
}

/// Makes the file with the system's word that it was not there, so that no other's is lost.
void makeFile(const std::filesystem::path& file, const std::string& text) {
    std::FILE* made = std::fopen(file.c_str(), "wx");
    if (made == nullptr) {
        refuseFile(file, errno);
    }
    const bool isWritten = std::fwrite(text.data(), 1, text.size(), made) == text.size();
    const int error = errno;
    if (std::fclose(made) != 0 || !isWritten) {
        const int reason = isWritten ? errno : error;
        std::error_code ignored;
        std::filesystem::remove(file, ignored);
        refuseFile(file, reason);
    }
}

void addPart(Json& scenario, const Part& part) {
    join(scenario["client"], Json::parse(part.client));
    join(scenario["platform"]["materials"], Json::parse(part.materials));
    join(scenario["phases"][0]["expect"], Json::parse(part.expect));
    join(scenario["phases"], Json::parse(part.steps));
}

} // namespace

std::string namesOfNewParts() {
    std::string names;
    for (const std::string& name : newParts()) {
        names += (names.empty() ? "" : ", ") + name;
    }
    return names;
}

const std::set<std::string>& newParts() {
    static const std::set<std::string> names = [] {
        std::set<std::string> all;
        for (const Part& part : parts) {
            all.insert(part.name);
        }
        return all;
    }();
    return names;
}

void writeNewScenario(const std::filesystem::path& file, const std::set<std::string>& wanted) {
    for (const std::string& name : wanted) {
        if (newParts().count(name) == 0) {
            throw std::runtime_error("a scenario has no part \"" + name + "\"; there are " +
                                     namesOfNewParts());
        }
    }
    Json scenario = Json::parse(base);
    for (const Part& part : parts) {
        if (wanted.count(part.name) != 0) {
            addPart(scenario, part);
        }
    }
    for (std::size_t i = 1; i < scenario["phases"].size(); ++i) {
        scenario["phases"][i]["expect"]["update"] =
            leftByRestart(scenario["phases"][0]["expect"]["update"]);
    }
    makeFile(file, scenario.dump(2) + '\n');
}

} // namespace sandbox::check
