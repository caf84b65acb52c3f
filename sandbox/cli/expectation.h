#pragma once

#include <string>
#include <vector>

#include "sandbox/cli/comparison.h"

namespace sandbox {

/// The scenario's expectations, phase by phase: each phase tells what changes against
/// the one before, and everything that it does not tell is expected to be as it was.
/// One thread; the materials outlive the object.
class Expectation {
public:
    /// `start` is the client as laid out.
    Expectation(const std::vector<BuiltMaterial>& materials, ClientState start,
                std::vector<std::string> backgroundPrograms);

    /// Every difference between what the phase expects and what stands, in words.
    std::vector<std::string> compare(const nlohmann::json& expect, const PhaseFacts& facts,
                                     const BuiltUpgrade& upgrade, const ClientState& now);

    /// The client as it was last compared, or laid out.
    const ClientState& lastState() const { return before; }

private:
    void standOn(ClientState start);
    void compareLoosely(Comparison& comparison);
    void takeOver(const nlohmann::json& expect, const PhaseFacts& facts);
    void takeOverRecord(const nlohmann::json& record, const BuiltUpgrade& upgrade);
    void takeOverRows(const nlohmann::json& rows);

    const std::vector<BuiltMaterial>& materials;
    ClientState before;
    std::vector<std::string> background;
    Goals goals;
};

} // namespace sandbox
