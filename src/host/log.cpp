#include "host/log.h"

#include "host/hostmodules.h"
#include "platform/debug.h"

std::string qualifiedName(std::string_view signature) {
    std::string name;
    functionname::spell(signature, [&name](char c) { name += c; });
    return name;
}

void writeLogLine(int level, const char* file, int line, const char* function,
                  const std::string& text) {
    platform::debugOutput(text.c_str());
    hostmodules::writeLog(level, file, line, function, text.c_str(), text.size());
}
