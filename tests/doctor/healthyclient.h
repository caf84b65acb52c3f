#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "platform/temporaryfolder.h"
#include "sandbox/doctor/doctor.h"
#include "sandbox/materials/content.h"

/// A run's folder with a small client in which nothing is wrong: a file and a data file in
/// place, one old file on its way out, and one file that waits for the restart.
class HealthyClient {
public:
    HealthyClient();

    static materials::Bytes image(const std::string& version);

    // Files of the client, by client path.
    void put(const std::string& path, const materials::Bytes& content);
    void put(const std::string& path, const std::string& text);
    void remove(const std::string& path);
    std::filesystem::path file(const std::string& path) const;

    // Its stores and lists. Written by `examine`.
    nlohmann::json settings;
    nlohmann::json versions;
    std::string list;                 ///< entries of filelist.xml
    std::vector<std::string> delayed; ///< lines of the journal
    /// Files of the run that hold something else; nothing for one that is not there.
    std::map<std::string, std::optional<std::string>> overwritten;

    /// A pipe, or a folder, in place of a file of the run.
    void putPipe(const std::string& ofRun);
    void putFolder(const std::string& ofRun);

    void setJson(const std::string& key, const nlohmann::json& value);
    void listEntry(const std::string& name, const std::string& version, const std::string& md5,
                   bool isPe, std::size_t size);
    void replaceInList(const std::string& text, const std::string& by);
    void replace(const std::string& from, const std::string& to);
    void removeAtRestart(const std::string& path);
    std::string full(const std::string& path) const; ///< as the system's list has it

    /// What the restart does to it.
    void restart();

    void write();
    sandbox::doctor::Report examine();
    std::filesystem::path root() const { return folder.onDisk("run"); }

    std::string waiting; ///< the name of the waiting file
    std::string old;     ///< the name of the old file

private:
    TemporaryFolder folder;
};
