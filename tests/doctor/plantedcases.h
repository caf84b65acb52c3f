#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "doctor/healthyclient.h"

/// One defect that is planted in a healthy client; exactly that one is to be found.
struct Case {
    const char* name;
    void (*plant)(HealthyClient& client);
    sandbox::doctor::Code code;
    const char* file; ///< part of what the finding is about
};

inline void PrintTo(const Case& tested, std::ostream* out) {
    *out << tested.name;
}

inline constexpr const char* paddingSetting = "KEY_UPDATE_KELVAR_PADDING_FILE_LIST";
inline const std::string otherMd5(32, 'b');

std::vector<Case> fileCases();
std::vector<Case> storeCases();
std::vector<Case> restartCases();
