#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <thread>

// One crime for each sanitizer, to show that a build with it does catch one.

namespace {

int racedValue = 0;

void race() {
    std::thread other([] { ++racedValue; });
    ++racedValue;
    other.join();
}

void readPastTheEnd(std::size_t size) {
    const auto bytes = std::make_unique<char[]>(size);
    const volatile char* past = bytes.get() + size;
    std::printf("%d\n", *past);
}

void overflow(int value) {
    std::printf("%d\n", value + std::numeric_limits<int>::max());
}

void leak() {
    static volatile std::size_t size = 100;
    void* volatile lost = std::malloc(size);
    std::printf("%d\n", lost != nullptr);
    lost = nullptr;
}

} // namespace

int main(int argc, char** argv) {
    const char* crime = argc > 1 ? argv[1] : "";
    if (std::strcmp(crime, "race") == 0) {
        race();
    } else if (std::strcmp(crime, "address") == 0) {
        readPastTheEnd(static_cast<std::size_t>(argc));
    } else if (std::strcmp(crime, "undefined") == 0) {
        overflow(argc);
    } else if (std::strcmp(crime, "leak") == 0) {
        leak();
    }
    return 0;
}
