#include "sandbox/check/exectext.h"

#include <optional>

#include "sandbox/common/clientpath.h"

namespace sandbox::check {
namespace {

const std::string separator = ")&&(";
const std::string processKey = "%process%";
const std::string paramKey = "%param%";

class Entry {
public:
    Entry(std::string entryText, const Located& whole, const std::set<std::string>& known,
          Mistakes& found)
        : text(std::move(entryText)), exec(whole), programs(known), mistakes(found) {}

    void check() {
        if (text.find(processKey) == text.npos) {
            return addNoProgram();
        }
        checkProgram();
        checkParameter();
        if (text.find(processKey) != text.rfind(processKey)) {
            add("exec-entries-merged", "more than one program stands in \"" + text +
                                           "\"; entries are joined by " + separator);
        }
    }

private:
    /// What stands in the next quotes behind `key`; nothing when it is not there.
    std::optional<std::string> valueOf(const std::string& key, std::size_t from) const {
        const std::size_t at = text.find(key, from);
        const std::size_t open = at == text.npos ? at : text.find('"', at + key.size());
        const std::size_t close = open == text.npos ? open : text.find('"', open + 1);
        return close == text.npos ? std::nullopt
                                  : std::optional(text.substr(open + 1, close - open - 1));
    }

    void checkProgram() {
        const auto program = valueOf(processKey, 0);
        const std::size_t at = text.find(processKey);
        const std::size_t param = text.find(paramKey, at);
        const std::size_t open = text.find('"', at);
        if (!program || program->empty()) {
            addNoProgram();
        } else if (param < open) {
            add("exec-no-program", "the program of \"" + text +
                                       "\" is not in double quotes, so its parameter is started");
        } else if (!programs.empty() && programs.count(comparablePath(leafOf(*program))) == 0) {
            add("exec-program-unknown",
                *program + " is no file of the client, and no material brings it");
        }
    }

    void addNoProgram() {
        add("exec-no-program", "the entry \"" + text + "\" has no " + processKey +
                                   " in double quotes, so an empty name is started");
    }

    void checkParameter() {
        const std::size_t at = text.find(paramKey);
        if (at == text.npos) {
            return;
        }
        if (at < processKey.size()) {
            add("exec-param-lost", "the entry \"" + text + "\" begins with " + paramKey +
                                       ", which is only looked for from the tenth character on");
        } else if (!valueOf(paramKey, processKey.size())) {
            add("exec-param-lost", "the parameter of \"" + text + "\" is not in double quotes");
        }
    }

    void add(const char* code, const std::string& what) {
        mistakes.add(exec.line, code, "exec: " + what);
    }

    std::string text;
    const Located& exec;
    const std::set<std::string>& programs;
    Mistakes& mistakes;
};

} // namespace

void checkExec(const Located& exec, const std::set<std::string>& programs, Mistakes& mistakes) {
    std::string rest = exec.text;
    while (!rest.empty()) {
        const std::size_t end = rest.find(separator);
        Entry(rest.substr(0, end == rest.npos ? end : end + 1), exec, programs, mistakes).check();
        rest = end == rest.npos ? "" : rest.substr(end + separator.size() - 1);
    }
}

} // namespace sandbox::check
