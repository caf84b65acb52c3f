#pragma once

#include <gtest/gtest.h>
#include <string>

#include "sandbox/report/explanation.h"

// The plug-in's lines, as the tests write logs of them.

#define KELVAR "update plugin, kelvar, "
#define A "aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa"
#define B "bbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbb"
#define C "cccccccccccccccccccccccccccccccc"
#define D "dddddddddddddddddddddddddddddddd"
#define FETCH(md5, id)                                                                             \
    KELVAR "task download, download name: " md5 " , url: http://s/" id " \n"                       \
           "update plugin, download task, url: http://s/" id " \n"
#define MOVE(md5, id) KELVAR "task move, move: " md5 "  to  " id " \n"
#define NEWER_STANDS(md5, id)                                                                      \
    KELVAR "needMove, ver err, srcfile ver: 1.2 , dstfile ver: 1.3 \n" KELVAR                      \
           "task move, not need move: " md5 "  to  " id " \n"
#define ALL(rows, groups, free)                                                                    \
    "update plugin, move task, move all file, all: " rows " , depends: " groups                    \
    " , non depend: " free " \n"
#define ENDS(succ)                                                                                 \
    "update plugin, update padding, padding count: 0 , succ count: 1 \n" QUEUE_ENDS(succ)
#define QUEUE_ENDS(succ) "update plugin, queue, task finished, succ: " succ " \n"
#define BEGIN KELVAR "task fetch, check ... \n"
#define KEY(name)                                                                                  \
    R"({"key":{"material_id":{"id":"/m/)" name R"(","module_id":{"id":"/x"}},"ver":"1.3"}})"
#define ASKS(keys)                                                                                 \
    "update plugin, kelvar http, request: http://p/MaterialV2/BatchGetMaterialMeta "               \
    ", data: {\"keys\":[" keys "]}\n \n"
#define FETCHED_ALL FETCH(A, "a") FETCH(B, "b") FETCH(C, "c") FETCH(D, "d")
#define MOVE_ERROR(what, code) "update plugin, move task, " what " error, code: " code " \n"
#define PADDING(path) "update plugin, move task, set peeding : C:\\x\\" path " \n"
#define WAITS(path) MOVE_ERROR("move dst to temp", "32") PADDING(path)

namespace sandbox::report {

/// A log, and what is to be told of it.
struct FieldLog {
    const char* name;
    std::string log;
    const char* summary;
};

inline std::string nameOf(const testing::TestParamInfo<FieldLog>& row) {
    return row.param.name;
}

/// A run in one line: "1: aaaa placed; bbbb refused (already up to date) | why it ended".
inline std::string summaryOf(const Explanation& told) {
    std::string text;
    for (const KelvarRun& run : told.runs) {
        text += (text.empty() ? "" : "\n") + std::to_string(run.number) + ": ";
        for (const std::size_t at : run.order) {
            const Material& row = run.materials[at];
            text += (row.id.empty() ? row.md5.substr(0, 4) : row.id) + " " + row.decision +
                    (row.reason.empty() ? "" : " (" + row.reason + ")") + "; ";
        }
        text += "| " + run.endWords;
    }
    return text;
}

} // namespace sandbox::report
