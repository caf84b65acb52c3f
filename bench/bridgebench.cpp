#include <optional>

#include <benchmark/benchmark.h>

#include <json/json.h>

#include <google/protobuf/util/json_util.h>

#include "bench/offer.h"
#include "kelvar/api.pb.h"
#include "updatekelvar/fetch/xpbjson.h"

// The platform's longest answer, from text to messages and back.

namespace {

using Answer = kelvar::BatchGetMaterialMeta_Response;

const std::string& answerText(std::int64_t rows) {
    static std::map<std::int64_t, std::string> texts;
    std::string& text = texts[rows];
    if (text.empty()) {
        text = bench::materialAnswer(bench::unstoredMaterials(static_cast<std::size_t>(rows)));
    }
    return text;
}

const Answer& answerMessage(std::int64_t rows) {
    static std::map<std::int64_t, Answer> messages;
    Answer& message = messages[rows];
    if (message.metas_size() == 0) {
        XPbJson().fromJsonString(answerText(rows), &message, false);
    }
    return message;
}

template <class Read>
void readAnswer(benchmark::State& state, Read read) {
    const std::string& text = answerText(state.range(0));
    for ([[maybe_unused]] auto _ : state) {
        std::optional<Answer> answer(std::in_place);
        read(text, *answer);
        state.PauseTiming(); // it takes as long to throw away, whoever has read it
        if (answer->metas_size() != state.range(0) ||
            answer->metas(answer->metas_size() - 1).meta().extends_size() != 8) {
            state.SkipWithError("rows or parameters were lost");
        }
        answer.reset();
        state.ResumeTiming();
    }
    state.counters["bytes"] = static_cast<double>(text.size());
}

void read(benchmark::State& state) {
    readAnswer(state, [](const std::string& text, Answer& answer) {
        XPbJson().fromJsonString(text, &answer, false);
    });
}

void readByProtobuf(benchmark::State& state) {
    readAnswer(state, [](const std::string& text, Answer& answer) {
        static_cast<void>(google::protobuf::util::JsonStringToMessage(text, &answer));
    });
}

std::string written(const Answer& message) {
    std::string text;
    XPbJson().toJsonString(message, text, false);
    return text;
}

// What one would write for this one answer with JsonCpp, from values that are at hand.

Json::Value timeOf(const google::protobuf::Timestamp& time) {
    Json::Value value;
    value["seconds"] = Json::Int64{time.seconds()};
    value["nanos"] = time.nanos();
    return value;
}

Json::Value parametersOf(const kelvar::types::material::Meta& meta) {
    Json::Value parameters;
    for (const auto& [key, text] : meta.extends()) {
        Json::Value entry;
        entry["key"] = key;
        entry["value"] = text;
        parameters.append(std::move(entry));
    }
    return parameters;
}

Json::Value metaOf(const kelvar::types::material::Meta& meta) {
    Json::Value value;
    value["file_id"] = meta.file_id();
    value["file_type"] = static_cast<int>(meta.file_type());
    value["md5"] = meta.md5();
    value["file_hash"] = meta.file_hash();
    value["execute_type"] = static_cast<int>(meta.execute_type());
    value["execute_param"] = meta.execute_param();
    value["is_referenced"] = meta.is_referenced();
    value["extends"] = parametersOf(meta);
    value["create_time"] = timeOf(meta.create_time());
    value["update_time"] = timeOf(meta.update_time());
    return value;
}

std::string writtenByHand(const Answer& message) {
    Json::Value root;
    Json::Value& metas = root["metas"];
    for (const auto& row : message.metas()) {
        Json::Value value;
        value["version"] = Json::Int64{row.version()};
        value["meta"] = metaOf(row.meta());
        metas.append(std::move(value));
    }
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
    return Json::FastWriter().write(root);
#pragma GCC diagnostic pop
}

template <class Write>
void writeAnswer(benchmark::State& state, Write write) {
    const Answer& message = answerMessage(state.range(0));
    if (written(message) != writtenByHand(message)) {
        state.SkipWithError("the two ways differ");
    }
    std::size_t bytes = 0;
    for ([[maybe_unused]] auto _ : state) {
        bytes = write(message).size();
    }
    state.counters["bytes"] = static_cast<double>(bytes);
}

void write(benchmark::State& state) {
    writeAnswer(state, written);
}

void writeByJsonCpp(benchmark::State& state) {
    writeAnswer(state, writtenByHand);
}

void answers(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(1'000)->Arg(10'000)->Unit(benchmark::kMillisecond);
}
BENCHMARK(read)->Apply(answers);
BENCHMARK(readByProtobuf)->Apply(answers);
BENCHMARK(write)->Apply(answers);
BENCHMARK(writeByJsonCpp)->Apply(answers);

} // namespace
