#pragma once

#include <ostream>
#include <string>
#include <vector>

/// One mistake that is written into a scenario without any; exactly that one is to be found.
struct Case {
    std::string name;
    std::string text; ///< of the right scenario; the first of it is replaced
    std::string by;
    std::string code;
    int below = 0; ///< lines from the text's begin to the mistake
};

inline void PrintTo(const Case& tested, std::ostream* out) {
    *out << tested.name;
}

std::vector<Case> formatCases();
std::vector<Case> clientCases();
std::vector<Case> conditionCases();
std::vector<Case> materialCases();
