#include <cstring>

/// Uses a function of another library: that one is no export of this module.
extern "C" int testAnswer(const char* text) {
    return static_cast<int>(std::strlen(text));
}
