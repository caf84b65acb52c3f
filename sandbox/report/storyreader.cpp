#include "sandbox/report/storyreader.h"

#include <utility>

#include "sandbox/report/question.h"

namespace sandbox::report {
namespace {

bool begins(const std::string& text, const char* with) {
    return text.rfind(with, 0) == 0;
}

/// Lines that other channels write too.
bool isShared(Says says) {
    return says == Says::transferFailed || says == Says::windowOpen ||
           says == Says::fileListFailed || says == Says::queueEnds;
}

bool isOfKelvar(const std::string& text) {
    return begins(text, "update plugin, kelvar") || begins(text, "update plugin, move task") ||
           begins(text, "update plugin, download task") ||
           begins(text, "update plugin, update padding") || begins(text, "updatekelvar, ");
}

/// Lines that say nothing of whose thread it is.
bool isNeutral(const std::string& text) {
    return begins(text, "update plugin, queue") ||
           begins(text, "update plugin, download task, perform err") ||
           begins(text, "update plugin, can restart tray") ||
           begins(text, "update plugin, kelvar, check diff and update") ||
           begins(text, "update plugin, kelvar, load file list failed") ||
           begins(text, "there is ") || begins(text, "load ") || begins(text, "get ");
}

std::string windowOf(const std::string& text) {
    constexpr std::size_t begin = sizeof "update plugin, can restart tray, " - 1;
    return text.substr(begin, text.find(" is exist") - begin);
}

std::string openWindow(const std::string& name) {
    return name.empty() ? "a window" : "the window \"" + name + "\"";
}

} // namespace

KelvarRun& StoryReader::run(const LogLine& line) {
    if (!isOpen && line.thread.empty() && !story.runs.empty()) {
        isOpen = true; // what looked like its end was that of another channel's chain
        story.runs.back().success.reset();
    } else if (!isOpen) {
        begin(line);
        story.runs.back().beginsInMidRun = true;
    }
    return story.runs.back();
}

void StoryReader::begin(const LogLine& line) {
    close();
    isOpen = true;
    moves = {};
    KelvarRun& opened = story.runs.emplace_back();
    opened.number = story.runs.size();
    opened.firstLine = opened.lastLine = line.number;
    opened.begin = opened.end = line.at;
}

void StoryReader::see(const LogLine& line) {
    Thread& thread = threads[line.thread];
    const std::optional<Saying> saying = sayingOf(line.text);
    if (!isNeutral(line.text)) {
        thread.inKelvar = isOfKelvar(line.text);
    }
    if (saying && (thread.inKelvar || !isShared(saying->says))) {
        take(*saying, line, thread);
    }
}

void StoryReader::take(const Saying& saying, const LogLine& line, Thread& thread) {
    switch (saying.says) {
    case Says::driven:
        return;
    case Says::gate:
        thread.atShutGate = false;
        return;
    case Says::gateShut:
        thread.atShutGate = true;
        ++story.shutGates;
        return;
    case Says::fetch:
        begin(line);
        return;
    case Says::queueEnds:
        finish(saying, line, thread);
        return;
    case Says::windowOpen:
        thread.window = windowOf(line.text);
        return;
    default:
        break;
    }
    KelvarRun& in = run(line);
    in.lastLine = line.number;
    in.end = line.at ? line.at : in.end;
    if (saying.says <= Says::storage) {
        converse(saying, line);
        return;
    }
    answerLast(in, Question::Outcome::answered);
    if (saying.says <= Says::upToDate) {
        filter(saying, in);
    } else if (saying.says <= Says::transferFailed || saying.says == Says::noFolder) {
        fetch(saying, line);
    } else if (saying.says == Says::cannotMove) {
        in.stage = KelvarRun::Stage::move;
        in.endWords = "nothing was moved: " + openWindow(std::exchange(thread.window, {})) +
                      " of the client was open";
    } else {
        moves.see(saying, line, in);
    }
}

void StoryReader::answerLast(KelvarRun& in, Question::Outcome outcome) {
    if (!in.questions.empty() && in.questions.back().outcome == Question::Outcome::untold) {
        in.questions.back().outcome = outcome;
    }
}

void StoryReader::converse(const Saying& saying, const LogLine& line) {
    KelvarRun& in = run(line);
    switch (saying.says) {
    case Says::request:
        answerLast(in, Question::Outcome::answered);
        ask(in, saying.values[0], saying.values[1], line.number);
        break;
    case Says::responseError:
        if (!in.questions.empty()) {
            in.questions.back().outcome = Question::Outcome::refused;
            in.questions.back().error = saying.values[0];
            in.questions.back().status = saying.values[1];
        }
        break;
    case Says::noAnswer: {
        // With an answer that was taken for one, its rows were of another number than asked.
        const std::string unanswered = unansweredOf(line.text);
        in.endWords = noAnswerWords(in, unanswered);
        const bool isLast = !in.questions.empty() && in.questions.back().name == unanswered;
        answerLast(in, isLast ? Question::Outcome::empty : Question::Outcome::answered);
        break;
    }
    default:
        answerLast(in, Question::Outcome::answered);
        in.storage = saying.values[0];
        break;
    }
}

void StoryReader::filter(const Saying& saying, KelvarRun& in) {
    Material& dropped = in.materials.emplace_back();
    dropped.md5 = saying.values[0];
    dropped.filter = saying.says == Says::notForClient   ? Material::Filter::client
                     : saying.says == Says::notForSystem ? Material::Filter::system
                                                         : Material::Filter::file;
}

void StoryReader::fetch(const Saying& saying, const LogLine& line) {
    KelvarRun& in = run(line);
    in.stage = KelvarRun::Stage::download;
    in.cameToDownload = true;
    const bool isRow = saying.says == Says::badDownloadName || saying.says == Says::haveLocal ||
                       saying.says == Says::fetches;
    if (isRow) {
        Material& row = in.materials.emplace_back();
        row.md5 = saying.values[0];
        row.isListed = true;
        row.fetchLine = line.number;
        row.fetch = saying.says == Says::haveLocal ? Material::Fetch::there
                    : saying.says == Says::fetches ? Material::Fetch::fetched
                                                   : Material::Fetch::badName;
        if (saying.says == Says::fetches) {
            row.url = saying.values[1];
            row.fileId = row.url.substr(row.url.rfind('/') + 1);
        } else if (saying.says == Says::badDownloadName) {
            row.detail[0] = saying.values[1];
        }
        return;
    }
    if (saying.says == Says::noFolder) {
        in.endWords = "the path of the host's executable is too long";
    }
    if (in.materials.empty() || !in.materials.back().isListed) {
        return; // the line with its name is not in the log
    }
    Material& row = in.materials.back();
    row.fetchLine = saying.says == Says::transfer ? line.number : row.fetchLine;
    const bool hasFailed = saying.says == Says::noUrl || saying.says == Says::cannotOpen ||
                           saying.says == Says::transferFailed;
    if (!hasFailed) {
        return;
    }
    row.fetch = Material::Fetch::failed;
    row.fetchError = saying.says == Says::noUrl        ? "it has no URL"
                     : saying.says == Says::cannotOpen ? "cannot open " + saying.values[0]
                                                       : "libcurl " + saying.values[0];
    const std::string words = transferErrorWords(saying.values[0]);
    row.fetchError += saying.says == Says::transferFailed && !words.empty() ? ", " + words : "";
}

void StoryReader::finish(const Saying& saying, const LogLine& line, Thread& thread) {
    if (thread.atShutGate || !isOpen) {
        thread.atShutGate = false;
        return;
    }
    KelvarRun& in = story.runs.back();
    in.lastLine = line.number;
    in.end = line.at ? line.at : in.end;
    in.success = saying.values[0] == "1";
    in.stage = KelvarRun::Stage::ended;
    close();
}

void StoryReader::close() {
    if (isOpen) {
        moves.end(story.runs.back());
        isOpen = false;
    }
}

Story StoryReader::end() {
    close();
    return std::move(story);
}

} // namespace sandbox::report
