#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include <nlohmann/json.hpp>

/// The run's observations, one JSON object a line in events.jsonl. Any thread, any
/// process of the run. An event that cannot be written is lost.
namespace sandbox {

/// Milliseconds since the system started; the "t" of events.
std::int64_t monotonicMilliseconds();

/// Milliseconds since the begin of 1970 UTC; the "at" of events.
std::int64_t wallMilliseconds();

/// Appends `event` with its "t" and "at" to the file. Bytes that are not UTF-8 become U+FFFD.
void appendEvent(const std::filesystem::path& file, nlohmann::json event);

/// The same for the run that this process is the host of.
void emit(nlohmann::json event);

/// An event that fails the run: an exception at a module's border or a misuse of one.
void emitFailure(const std::string& where, const std::string& text);

/// Runs `call`; what leaves it by an exception becomes a failure of `where`.
template <class Call>
void guarded(const char* where, Call&& call) {
    try {
        call();
    } catch (const std::exception& error) {
        emitFailure(where, error.what());
    } catch (...) {
        emitFailure(where, "an exception of an unknown type");
    }
}

} // namespace sandbox
