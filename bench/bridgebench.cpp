#include <benchmark/benchmark.h>

#include <string>

#include "kelvar/api.pb.h"
#include "updatekelvar/fetch/xpbjson.h"

// What the platform's longest answer costs: materials with all their parameters.

namespace {

std::string materialAnswer(int rows) {
    std::string metas;
    for (int i = 0; i < rows; ++i) {
        const std::string number = std::to_string(i);
        metas += i == 0 ? "" : ",";
        metas += R"({"version":1,"meta":{"file_id":"file-)";
        metas += number;
        metas += R"(","file_type":1,"md5":"0123456789abcdef0123456789abcdef","file_hash":"",)";
        metas += R"("execute_type":0,"execute_param":"","is_referenced":true,"extends":)";
        metas += R"({"osver":"","file_path":"bin/module)";
        metas += number;
        metas += R"(.dll","file_md5":"fedcba9876543210fedcba9876543210","check_sys":)";
        metas += R"("%sysver%>=\"10.0\"","check_app":"%appver%>=\"1.0\"","non_cab":"0",)";
        metas += R"("dependent":"group","exec":""}}})";
    }
    return R"({"status":[],"metas":[)" + metas + "]}";
}

void readMaterialAnswer(benchmark::State& state) {
    const std::string text = materialAnswer(static_cast<int>(state.range(0)));
    for ([[maybe_unused]] auto _ : state) {
        kelvar::BatchGetMaterialMeta_Response response;
        benchmark::DoNotOptimize(XPbJson().fromJsonString(text, &response, false));
        if (response.metas_size() != state.range(0)) {
            state.SkipWithError("rows were lost");
        }
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(readMaterialAnswer)->Arg(1'000)->Arg(10'000)->Unit(benchmark::kMillisecond);

void writeMaterialRequest(benchmark::State& state) {
    kelvar::BatchGetMaterialMeta_Request request;
    for (int i = 0; i < state.range(0); ++i) {
        auto& key = *request.add_keys()->mutable_key();
        key.set_ver("1.0.0." + std::to_string(i));
        key.mutable_material_id()->set_id("material-" + std::to_string(i));
    }
    std::string text;
    for ([[maybe_unused]] auto _ : state) {
        XPbJson().toJsonString(request, text, false);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(writeMaterialRequest)->Arg(10'000)->Unit(benchmark::kMillisecond);

} // namespace
