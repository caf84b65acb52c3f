#include <string>

#include "host/xnbase.h"
#include "sandbox/common/events.h"

namespace {

std::string textOf(const char* field) {
    return field ? field : "";
}

} // namespace

extern "C" void event(const char* first, const char* second, const char* third, const char* fourth,
                      const char* fifth, const char* sixth, const char* seventh) {
    sandbox::emit({{"kind", "event"},
                   {"fields",
                    {textOf(first), textOf(second), textOf(third), textOf(fourth), textOf(fifth),
                     textOf(sixth), textOf(seventh)}}});
}

static_assert(std::is_same_v<decltype(&event), xnbase::event>);
