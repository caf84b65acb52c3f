#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <thread>
#include <vector>

#include "bench/client/watch.h"
#include "host/ikeyvaluestore.h"
#include "host/ixtrayplugin.h"
#include "host/objectloader.h"
#include "host/transfer.h"
#include "platform/modules.h"
#include "platform/text.h"

// The host of a measurement: loads the plug-in into the client's folder that it lies in.
//
//   bench_host load                  the load, the start and the first tick
//   bench_host ticks NUMBER          ticks with every gate shut, and what each takes
//   bench_host fetch URL NUMBER      transfers as the plug-in makes them, and what each takes
//   bench_host run SERVER HOME       one run against the update platform at that address
//
// It answers in lines of one word and a number. Before and after a run it waits for a line, so
// that whoever started it can look at its memory.

namespace {

constexpr const char* packageTime = "KEY_UPDATE_PKG_LAST_CHECK_TIME";
constexpr const char* kelvarTime = "KEY_UPDATE_KELVAR_LAST_CHECK_TIME";
constexpr std::uint64_t beyondEveryTick = 9'000'000'000'000;
constexpr std::uint64_t longAgo = 1;
constexpr auto tickPause = std::chrono::milliseconds(5); // the chains of a tick have ended by then
constexpr std::int64_t runLimit = 300'000'000'000;

struct Client {
    xtray::IXTrayPlugin* plugin = nullptr;
    BenchWatch watch;
};

template <class Function>
Function exportOf(platform::ModuleHandle module, const char* name) {
    return reinterpret_cast<Function>(platform::findExport(module, name));
}

void tell(const char* word, double number) {
    std::cout << word << ' ' << std::fixed << number << std::endl;
}

double microseconds(std::int64_t from) {
    return static_cast<double>(nanoseconds() - from) / 1e3;
}

int numberOf(const std::string& text) {
    return static_cast<int>(std::strtol(text.c_str(), nullptr, 10));
}

/// Where no line comes any more nobody is left to look, and the process ends.
void awaitLine() {
    for (int read = std::getchar(); read != '\n'; read = std::getchar()) {
        if (read == EOF) {
            std::_Exit(1);
        }
    }
}

platform::ModuleHandle load(const wchar_t* file) {
    const platform::ModuleHandle module = platform::loadModule(file);
    if (!module) {
        std::cerr << "bench_host: cannot load " << platform::toUtf8(file) << '\n';
        std::exit(2);
    }
    return module;
}

/// The client's modules, with both stored times set, so that only Kelvar's gate may be open.
void loadModules(Client& client, std::uint64_t lastKelvarCheck) {
    const platform::ModuleHandle base = load(L"xnbase.dll");
    exportOf<SetBenchWatch>(base, "benchWatch")(&client.watch);
    load(L"OrvBase.dll");
    const platform::ModuleHandle setting = load(L"XNSetting.dll");
    exportOf<SetBenchWatch>(setting, "benchWatch")(&client.watch);
    IKeyValueStore* const settings = exportOf<IKeyValueStore* (*)()>(setting, "GetKV")();
    settings->setUInt64(packageTime, beyondEveryTick);
    settings->setUInt64(kelvarTime, lastKelvarCheck);
}

void startPlugin(Client& client) {
    std::int64_t from = nanoseconds();
    const platform::ModuleHandle module = load(L"xnplugins\\xrefresher.dll");
    tell("load_us", microseconds(from));
    from = nanoseconds();
    client.plugin = exportOf<xtray::IXTrayPlugin* (*)()>(module, "CreateUpdatePlugin")();
    client.plugin->start(nullptr);
    tell("start_us", microseconds(from));
}

void tick(Client& client, const char* word) {
    const std::int64_t from = nanoseconds();
    client.plugin->tick();
    tell(word, microseconds(from));
}

void fetch(const std::string& url, int count) {
    const ServicePtr<IXCurlService> service(L"module.libcurl");
    for (; count > 0; --count) {
        std::FILE* const file = std::tmpfile();
        const std::int64_t from = nanoseconds();
        transfer::perform(service.get(), url, &transfer::writeToFile, file, transfer::Peer::anyone);
        tell("fetch_us", microseconds(from));
        static_cast<void>(std::fclose(file));
    }
}

int run(Client& client) {
    startPlugin(client);
    awaitLine();
    const std::int64_t begin = nanoseconds();
    client.plugin->tick();
    while (client.watch.notified == 0) {
        if (nanoseconds() - begin > runLimit) {
            std::cerr << "bench_host: the run has placed nothing\n";
            return 1;
        }
        std::this_thread::sleep_for(
            std::chrono::milliseconds(20)); // the run tells its times itself
    }
    tell("run_us", static_cast<double>(client.watch.notified - client.watch.firstRequest) / 1e3);
    awaitLine();
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    static Client& client = *new Client; // threads of the plug-in may outlive main
    const std::vector<std::string> words(argv + 1, argv + argc);
    const std::string mode = words.empty() ? "" : words[0];
    loadModules(client, mode == "run" ? longAgo : beyondEveryTick);
    int status = 0;
    if (mode == "run" && words.size() == 3) {
        client.watch.server = words[1];
        client.watch.home = platform::toWide(words[2]);
        status = run(client);
    } else if (mode == "fetch" && words.size() == 3) {
        fetch(words[1], numberOf(words[2]));
    } else if (mode == "load" || (mode == "ticks" && words.size() == 2)) {
        startPlugin(client);
        tick(client, "first_tick_us");
        for (int left = mode == "ticks" ? numberOf(words[1]) : 0; left > 0; --left) {
            std::this_thread::sleep_for(tickPause);
            tick(client, "tick_us");
        }
        std::this_thread::sleep_for(tickPause);
    } else {
        std::cerr << "bench_host: load | ticks NUMBER | fetch URL NUMBER | run SERVER HOME\n";
        status = 2;
    }
    std::_Exit(status);
}
