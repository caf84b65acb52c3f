#include "doctor/healthyclient.h"

#include <sys/stat.h>

#include "sandbox/common/clientpath.h"
#include "sandbox/materials/cabwriter.h"
#include "sandbox/materials/pefile.h"

namespace fs = std::filesystem;
using materials::md5Hex;

namespace {

constexpr const char* paddingKey = "KEY_UPDATE_KELVAR_PADDING_FILE_LIST";
constexpr const char* tempKey = "KEY_UPDATE_KELVAR_TEMP_FILE_LIST";

std::string textOf(const materials::Bytes& bytes) {
    return {bytes.begin(), bytes.end()};
}

void writeFile(const fs::path& file, const std::string& text) {
    fs::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << text;
}

} // namespace

HealthyClient::HealthyClient() {
    const auto core = image("1.3.0.1600");
    const auto guard = image("1.3.0.1600");
    const std::string rules = "rules of today";
    put("OrvSecurityver.dll", image("1.2.0.1500"));
    put("engine\\core.dll", core);
    put("data\\rules.dat", rules);
    put("guard\\guard.dll", textOf(image("1.2.0.1500")) + "older and longer");
    put("update\\notes.txt", "out of a cabinet");
    for (const char* module : {"xnbase.dll", "XNSetting.dll", "xnuser.dll", "xnquiet.dll",
                               "OrvBase.dll", "XNGuardBase.dll", "xnplugins\\xrefresher.dll"}) {
        put(module, "a module");
    }
    const auto cabinet =
        materials::buildCabinet(materials::CabMethod::stored, {{"Notes.txt", {1, 2, 3}}});
    overwritten["storage/rules-1"] = textOf(cabinet);
    put("update\\setup.exe", "of an earlier package");
    waiting = md5Hex(guard);
    old = std::string(31, '0') + "7";
    put("update\\" + waiting, guard);
    put("update\\temp\\" + old, "the former core");
    versions = {{"update\\version.dat", "1.3.0.1600"},
                {"update\\virtuslib.dat", "2026-11-20"},
                {"data\\rules.dat", "1.3.0.1600"}};
    settings = {{"KEY_UPDATE_UPGRADE", ""}, {"KEY_UPDATE_KELVAR_LAST_CHECK_TIME", 1}};
    setJson(paddingKey, {{"guard\\guard.dll", waiting}});
    setJson(tempKey, {old});
    replace("update\\" + waiting, "guard\\guard.dll");
    removeAtRestart("update\\temp\\" + old);
    listEntry("Engine\\core.dll", "1.3.0.1600", md5Hex(core), true, core.size());
    listEntry("data\\rules.dat", "1.3.0.1600", md5Hex({rules.begin(), rules.end()}), false,
              rules.size());
    listEntry("guard\\guard.dll", "1.3.0.1600", waiting, true, guard.size() + 16);
    listEntry("orvsecurityver.dll", "1.1.0.1", std::string(32, 'A'), true, 5);
}

materials::Bytes HealthyClient::image(const std::string& version) {
    materials::PeFile file;
    file.version[0] = static_cast<std::uint16_t>(version[0] - '0');
    file.version[1] = static_cast<std::uint16_t>(version[2] - '0');
    file.version[3] = static_cast<std::uint16_t>(std::stoi(version.substr(6)));
    return materials::buildPeFile(file);
}

fs::path HealthyClient::file(const std::string& path) const {
    std::string name = path;
    std::replace(name.begin(), name.end(), '\\', '/');
    return root() / "client" / name;
}

void HealthyClient::put(const std::string& path, const materials::Bytes& content) {
    writeFile(file(path), textOf(content));
}

void HealthyClient::put(const std::string& path, const std::string& text) {
    writeFile(file(path), text);
}

void HealthyClient::remove(const std::string& path) {
    fs::remove_all(file(path));
}

void HealthyClient::putPipe(const std::string& ofRun) {
    putFolder(ofRun);
    fs::remove(root() / ofRun);
    mkfifo((root() / ofRun).c_str(), 0600);
}

void HealthyClient::putFolder(const std::string& ofRun) {
    overwritten[ofRun] = std::nullopt;
    fs::remove(root() / ofRun);
    fs::create_directories(root() / ofRun);
}

void HealthyClient::setJson(const std::string& key, const nlohmann::json& value) {
    settings[key] = value.dump();
}

void HealthyClient::listEntry(const std::string& name, const std::string& version,
                              const std::string& md5, bool isPe, std::size_t size) {
    list += "<File Name=\"" + name + "\" Version=\"" + version + "\" MD5=\"" + md5 + "\" IsPE=\"" +
            (isPe ? "true" : "false") + "\" Size=\"" + std::to_string(size) + "\"/>\n";
}

void HealthyClient::replaceInList(const std::string& text, const std::string& by) {
    list.replace(list.find(text), text.size(), by);
}

std::string HealthyClient::full(const std::string& path) const {
    return sandbox::toClientPath(root() / "client") + "\\" + path;
}

void HealthyClient::replace(const std::string& from, const std::string& to) {
    delayed.push_back("replace\t" + full(from) + "\t" + full(to));
}

void HealthyClient::removeAtRestart(const std::string& path) {
    delayed.push_back("delete\t" + full(path));
}

void HealthyClient::restart() {
    fs::rename(file("update\\" + waiting), file("guard\\guard.dll"));
    remove("update\\temp\\" + old);
    settings[tempKey] = "";
    delayed.clear();
}

void HealthyClient::write() {
    std::string journal;
    for (const std::string& line : delayed) {
        journal += line + "\n";
    }
    std::map<std::string, std::optional<std::string>> files{
        {"sandbox/config.json", "{}"},
        {"sandbox/filelist-start.xml", ""},
        {"sandbox/settings.json", settings.dump()},
        {"sandbox/versions.json", versions.dump()},
        {"home/OrvSecurity/config/uninst/filelist.xml",
         "<?xml version=\"1.0\"?>\n<Root><FileList>\n" + list + "</FileList></Root>"},
        {"client/delayed-moves.journal", journal}};
    for (const auto& [name, text] : overwritten) {
        files[name] = text;
    }
    for (const auto& [name, text] : files) {
        if (text) {
            writeFile(root() / name, *text);
        }
    }
}

sandbox::doctor::Report HealthyClient::examine() {
    write();
    return sandbox::doctor::examine(sandbox::doctor::placesOf(root()));
}
