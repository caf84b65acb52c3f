#include "sandbox/cli/rowtracker.h"

#include <algorithm>

#include "sandbox/common/clientpath.h"

namespace sandbox {
namespace {

constexpr const char* takenBack = "its group was taken back";
constexpr const char* notTried = "not tried, its group had failed";

std::string firstWord(const std::string& text) {
    const std::size_t begin = text.find_first_not_of(' ');
    return begin == std::string::npos ? "" : text.substr(begin, text.find(' ', begin) - begin);
}

std::string trimmed(const std::string& text) {
    const std::size_t begin = text.find_first_not_of(' ');
    const std::size_t end = text.find_last_not_of(' ');
    return begin == std::string::npos ? "" : text.substr(begin, end - begin + 1);
}

} // namespace

/// What a log line that begins with `begins` says.
struct RowTracker::Rule {
    enum class Says { filtered, attempted, refused, outside, why, failed, waits, fetches, done };
    const char* begins;
    Says says;
    const char* reason;
};

const std::vector<RowTracker::Rule>& RowTracker::rules() {
    using Says = Rule::Says;
    static const std::vector<Rule> table{
        {"update plugin, kelvar, task fetch, filter app ver faild, name:", Says::filtered,
         "for another client version"},
        {"update plugin, kelvar, task fetch, filter os ver faild, name:", Says::filtered,
         "for another system version"},
        {"update plugin, kelvar, task fetch, filter file ver faild, name:", Says::filtered,
         "already up to date"},
        {"update plugin, kelvar, task download, bad name, md5:", Says::filtered,
         "hash is no plain name"},
        {"update plugin, kelvar, task download, download name:", Says::fetches, ""},
        {"update plugin, download task, perform err:", Says::failed, "download failed"},
        {"update plugin, download task, open err, path", Says::failed, "download failed"},
        {"update plugin, download task, param err, url:", Says::failed, "download failed"},
        {"update plugin, kelvar, task move, bad name, md5:", Says::refused,
         "hash is no plain name"},
        {"update plugin, kelvar, task move, bad path:", Says::outside, "target outside the client"},
        {"update plugin, kelvar, task premove, error:", Says::refused, "cabinet does not expand"},
        {"update plugin, kelvar, needMove, src not exist:", Says::why,
         "file is missing in its cabinet"},
        {"update plugin, kelvar, needMove, md5 diff, meta.fileMd5:", Says::why,
         "content is not the announced one"},
        {"update plugin, kelvar, needMove, ver err, srcfile ver:", Says::why,
         "not newer than what stands"},
        {"update plugin, kelvar, task move, not need move:", Says::refused, nullptr},
        {"update plugin, kelvar, task move, move:", Says::attempted, ""},
        {"update plugin, move task, set peeding :", Says::waits, ""},
        {"update plugin, move task, move src to dst error, code:", Says::failed,
         "cannot be put in place"},
        {"update plugin, move task, peeding src to dst error, code:", Says::failed,
         "cannot be left to the restart"},
        {"update plugin, update padding, padding count:", Says::done, ""},
    };
    return table;
}

RowTracker::RowTracker(const std::vector<const BuiltMaterial*>& offered, Listener listener)
    : settled(std::move(listener)) {
    for (const BuiltMaterial* material : offered) {
        rows.push_back({material, RowState::left, ""});
    }
}

Row* RowTracker::byMd5(const std::string& md5) {
    const auto found = std::find_if(
        rows.begin(), rows.end(), [&](const Row& row) { return row.material->offered.md5 == md5; });
    return found == rows.end() ? nullptr : &*found;
}

Row* RowTracker::byTarget(const std::string& clientPath) {
    const std::string path = comparablePath(clientPath);
    const auto found = std::find_if(rows.begin(), rows.end(), [&](const Row& row) {
        const std::string target = "\\" + comparablePath(row.material->path);
        return path.size() > target.size() &&
               path.compare(path.size() - target.size(), target.size(), target) == 0;
    });
    return found == rows.end() ? nullptr : &*found;
}

void RowTracker::see(const std::string& text) {
    const auto rule = std::find_if(rules().begin(), rules().end(), [&](const Rule& candidate) {
        return text.rfind(candidate.begins, 0) == 0;
    });
    if (rule == rules().end()) {
        return;
    }
    const std::string rest = trimmed(text.substr(std::string_view(rule->begins).size()));
    switch (rule->says) {
    case Rule::Says::filtered:
        filtered(rest, rule->reason);
        break;
    case Rule::Says::why:
        refusal = rule->reason;
        break;
    case Rule::Says::refused:
        attempted(rest, rule->reason != nullptr ? rule->reason : refusal.c_str());
        break;
    case Rule::Says::outside: // the path comes first and may hold blanks
        attempted(rest.substr(rest.rfind(':') + 1), rule->reason);
        break;
    case Rule::Says::attempted:
        attempted(rest, nullptr);
        break;
    case Rule::Says::failed:
        if (current != nullptr) {
            refuse(*current, rule->reason);
        }
        break;
    case Rule::Says::waits:
        if (Row* row = byTarget(rest)) {
            row->state = RowState::waiting;
        }
        break;
    case Rule::Says::fetches:
        fetched.insert(firstWord(rest));
        current = byMd5(firstWord(rest));
        break;
    case Rule::Says::done:
        settleOpen();
        break;
    }
}

void RowTracker::filtered(const std::string& rest, const char* reason) {
    if (Row* row = byMd5(firstWord(rest))) {
        row->state = RowState::refused;
        row->reason = reason;
        settled(*row);
    }
}

void RowTracker::attempted(const std::string& rest, const char* reason) {
    Row* row = byMd5(firstWord(rest));
    if (row == nullptr) {
        return;
    }
    const std::string& group = row->material->group;
    if (group.empty() || open.empty() || open.front()->material->group != group) {
        settleOpen();
    }
    current = row;
    open.push_back(row);
    row->state = RowState::placed;
    if (reason != nullptr) {
        refuse(*row, reason);
    }
}

void RowTracker::refuse(Row& row, const std::string& reason) {
    row.state = RowState::refused;
    row.reason = reason;
    if (std::find(open.begin(), open.end(), &row) == open.end()) {
        settled(row);
    } else if (!row.material->group.empty()) {
        takeGroupBack(row);
    }
}

void RowTracker::takeGroupBack(const Row& failed) {
    for (Row& row : rows) {
        if (&row == &failed || row.material->group != failed.material->group) {
            continue;
        }
        if (row.state == RowState::placed) {
            row.state = RowState::refused;
            row.reason = takenBack;
        } else if (row.state == RowState::left) {
            row.state = RowState::refused;
            row.reason = notTried;
            open.push_back(&row);
        }
    }
}

void RowTracker::settleOpen() {
    for (const Row* row : open) {
        settled(*row);
    }
    open.clear();
    current = nullptr;
}

std::string wordOf(RowState state) {
    switch (state) {
    case RowState::refused:
        return "refused";
    case RowState::placed:
        return "placed";
    case RowState::waiting:
        return "waiting";
    default:
        return "left";
    }
}

} // namespace sandbox
