#include "sandbox/report/saying.h"

#include <array>
#include <map>
#include <string_view>

namespace sandbox::report {
namespace {

/// A line begins with `begins`; `between` parts its values.
struct SayingForm {
    std::string_view begins;
    Says says;
    std::array<std::string_view, 2> between{};
};

constexpr SayingForm sayingForms[] = {
    {"update plugin, kelvar, check update ...", Says::driven},
    {"update plugin, kelvar, task condition, check ...", Says::gate},
    {"update plugin, kelvar, task condition, check times fail, so ignore.", Says::gateShut},
    {"update plugin, kelvar, task fetch, check ...", Says::fetch},
    {"update plugin, kelvar http, request:", Says::request, {" , data: "}},
    {"update plugin, kelvar http, response error:", Says::responseError, {" ,code: "}},
    {"update plugin, kelvar, task fetch, upgradePacketData nil .", Says::noAnswer},
    {"update plugin, kelvar, task fetch, fullPacketDiffData nil .", Says::noAnswer},
    {"update plugin, kelvar, task fetch, getPacketMeta nil .", Says::noAnswer},
    {"update plugin, kelvar, task fetch, fileStorageAddr nil .", Says::noAnswer},
    {"update plugin, kelvar, task fetch, batchGetMaterialMetaData nil .", Says::noAnswer},
    {"update plugin, kelvar, fetch material meta, addr:", Says::storage},
    {"update plugin, kelvar, task fetch, filter app ver faild, name:", Says::notForClient},
    {"update plugin, kelvar, task fetch, filter os ver faild, name:", Says::notForSystem},
    {"update plugin, kelvar, task fetch, filter file ver faild, name:", Says::upToDate},
    {"update plugin, kelvar, task download, check ...", Says::download},
    {"update plugin, kelvar, task download, bad name, md5:",
     Says::badDownloadName,
     {" , file md5: "}},
    {"update plugin, kelvar, task download, have local file:", Says::haveLocal},
    {"update plugin, kelvar, task download, download name:", Says::fetches, {" , url: "}},
    {"update plugin, kelvar, task download, no application folder.", Says::noFolder},
    {"update plugin, download task, param err, url:", Says::noUrl},
    {"update plugin, download task, url:", Says::transfer},
    {"update plugin, download task, open err, path", Says::cannotOpen},
    {"update plugin, download task, perform err:", Says::transferFailed},
    {"update plugin, kelvar, task move, check ...", Says::moves},
    {"update plugin, kelvar, task move, can't move .", Says::cannotMove},
    {"update plugin, kelvar, task move, no application folder.", Says::noFolder},
    {"update plugin, can restart tray, safe is exist.", Says::windowOpen},
    {"update plugin, can restart tray, settingui is exist.", Says::windowOpen},
    {"update plugin, can restart tray, operatecenter is exist.", Says::windowOpen},
    {"update plugin, can restart tray, repair is exist.", Says::windowOpen},
    {"update plugin, move task, move all file, all:",
     Says::moveAll,
     {" , depends: ", " , non depend: "}},
    {"update plugin, kelvar, task move, bad name, md5:", Says::badMoveName, {" , file md5: "}},
    {"update plugin, kelvar, task move, bad path:", Says::badPath, {" , md5: "}},
    {"update plugin, kelvar, task move, target is a folder:", Says::targetIsFolder, {" , md5: "}},
    {"update plugin, kelvar, task premove, bad member:", Says::badMember, {" , cabinet: "}},
    {"update plugin, kelvar, task premove, cabinet asks for too much, members:",
     Says::bigCabinet,
     {" , unpacked bytes: ", " , cabinet: "}},
    {"update plugin, kelvar, task premove, error:", Says::cabinetFailed, {"  to  "}},
    {"update plugin, kelvar, needMove, src not exist:", Says::sourceMissing},
    {"update plugin, kelvar, needMove, md5 diff, meta.fileMd5:",
     Says::hashDiffers,
     {" , file md5: "}},
    {"update plugin, kelvar, needMove, ver err, srcfile ver:",
     Says::notNewer,
     {" , dstfile ver: "}},
    {"update plugin, kelvar, task move, not need move:", Says::notNeeded, {"  to  "}},
    {"update plugin, kelvar, task move, move:", Says::move, {"  to  "}},
    {"update plugin, move task, move dst to temp error, code:", Says::targetInUse},
    {"update plugin, move task, move temp reboot error, code:", Says::oldFileStays},
    {"update plugin, move task, move src to dst error, code:", Says::replaceFailed},
    {"update plugin, move task, set peeding :", Says::scheduled},
    {"update plugin, move task, peeding src to dst error, code:", Says::scheduleFailed},
    {"update plugin, move task, rollback 1 error, code:", Says::takeBackFailed},
    {"update plugin, move task, rollback 2 error, code:", Says::oldFileLost},
    {"update plugin, update padding, padding count:", Says::paddingCounts, {" , succ count: "}},
    {"update plugin, update padding, move succ, delete:", Says::waitingDeleted, {" , lasterror: "}},
    {"update plugin, update padding, dupl padding, delete:",
     Says::waitingDeleted,
     {" , lasterror: "}},
    {"update plugin, update padding, ", Says::paddingNote},
    {"update plugin, kelvar, update fileList items, count:", Says::fileListCount},
    {"update plugin, kelvar, load file list failed[",
     Says::fileListFailed,
     {" ], description[ ", " ]"}},
    {"update plugin, kelvar, task move, install sp.", Says::servicePack},
    {"update plugin, kelvar, task move, version too long, length:", Says::versionTooLong},
    {"update plugin, kelvar, exec:", Says::program, {" , params: "}},
    {"update plugin, queue, task finished, succ:", Says::queueEnds},
};

/// The first value may hold anything, and what parts it from the next one too.
bool isPartedAtTheEnd(Says says) {
    return says == Says::badPath || says == Says::targetIsFolder || says == Says::badMember ||
           says == Says::hashDiffers;
}

std::vector<std::string> valuesOf(std::string rest, const SayingForm& form) {
    std::vector<std::string> values;
    for (const std::string_view between : form.between) {
        if (between.empty()) {
            break;
        }
        // The line's own last blank was cut with the line.
        rest += ' ';
        const std::size_t at =
            isPartedAtTheEnd(form.says) ? rest.rfind(between) : rest.find(between);
        if (at == std::string::npos) {
            break;
        }
        values.push_back(trimmed(rest.substr(0, at)));
        rest = rest.substr(at + between.size());
    }
    values.push_back(trimmed(rest));
    std::size_t wanted = 1;
    for (const std::string_view between : form.between) {
        wanted += between.empty() ? 0U : 1U;
    }
    values.resize(wanted);
    return values;
}

std::string wordsOf(const std::map<std::string, std::string>& table, const std::string& number) {
    const auto found = table.find(number);
    return found == table.end() ? "" : found->second;
}

} // namespace

std::string trimmed(const std::string& text) {
    const std::size_t begin = text.find_first_not_of(' ');
    const std::size_t end = text.find_last_not_of(' ');
    return begin == std::string::npos ? "" : text.substr(begin, end - begin + 1);
}

std::optional<Saying> sayingOf(const std::string& text) {
    for (const SayingForm& form : sayingForms) {
        if (text.compare(0, form.begins.size(), form.begins) == 0) {
            return Saying{form.says, valuesOf(text.substr(form.begins.size()), form)};
        }
    }
    return std::nullopt;
}

std::string transferErrorWords(const std::string& number) {
    static const std::map<std::string, std::string> words{
        {"3", "malformed URL"},
        {"6", "host not found"},
        {"7", "no connection"},
        {"18", "body cut short"},
        {"23", "the file could not be written"},
        {"28", "time-out"},
        {"35", "TLS"},
        {"52", "empty answer"},
        {"56", "connection broken"},
    };
    return wordsOf(words, number);
}

std::string systemErrorWords(const std::string& number) {
    static const std::map<std::string, std::string> words{
        {"2", "no such file"},
        {"3", "no such folder"},
        {"5", "access denied"},
        {"17", "another volume"},
        {"29", "the system cannot write"},
        {"32", "in use by another process"},
        {"87", "a parameter is wrong"},
        {"112", "disk full"},
        {"145", "folder not empty"},
        {"183", "already there"},
        {"206", "path too long"},
    };
    return wordsOf(words, number);
}

} // namespace sandbox::report
