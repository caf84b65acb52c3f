#include <functional>
#include <gtest/gtest.h>
#include <sstream>

#include "sandbox/faults/clientfaults.h"
#include "soak/demands.h"
#include "soak/programme.h"
#include "soak/report.h"

// What a soak has shown: a sound one, and each way in which it is none.

namespace soak {
namespace {

constexpr int looks = 1400;

/// A soak of an hour in which all went as it should.
Findings sound() {
    Findings found;
    for (int i = 0; i < looks; ++i) {
        found.courses.heap.push_back({i * 20.0, 640'000, 0});
        for (auto* course :
             {&found.courses.memory, &found.courses.threads, &found.courses.handles}) {
            course->push_back({i * 2.5, 100, 0});
        }
    }
    found.seconds = looks * 2.5;
    found.turns = programme().size();
    found.packets = 900;
    found.packetsDone = 780;
    found.isServedAtLast = true;
    for (const Turn& turn : programme()) {
        for (const sandbox::Fault& fault : faultsOf(turn.faults)) {
            ++(sandbox::isOfClient(fault) ? found.clientFaults : found.faults)[fault.title()];
        }
        found.done.emplace_back(turn.does, 1);
    }
    found.hostExit = 0;
    return found;
}

struct Spoiled {
    const char* name;
    std::function<void(Findings&)> change;
    Outcome outcome;
};

TEST(OutcomeTest, OnlyABusyHostOfEnoughTimeIsSound) {
    const Spoiled table[] = {
        {"nothing", [](Findings&) {}, Outcome::sound},
        {"a queue that rests", [](Findings& found) { found.packetsDone = 20; }, Outcome::faulty},
        {"one that rests since the last fault",
         [](Findings& found) { found.isServedAtLast = false; }, Outcome::faulty},
        {"a fault without effect", [](Findings& found) { found.faults.erase("cut on base"); },
         Outcome::faulty},
        {"a fault of the client's side without",
         [](Findings& found) { found.clientFaults.erase("drop on packageCheck"); },
         Outcome::faulty},
        {"a turn that does nothing",
         [](Findings& found) {
             for (auto& [what, count] : found.done) {
                 count = what == cancelsOfTheUser ? 0 : count;
             }
         },
         Outcome::faulty},
        {"one whose turn has not come",
         [](Findings& found) {
             found.faults.erase("cut on base");
             found.turns = 3;
         },
         Outcome::sound},
        {"a leak",
         [](Findings& found) {
             for (Point& point : found.courses.heap) {
                 point.value += 19 * point.at;
             }
         },
         Outcome::faulty},
        {"a host that crashed at its end", [](Findings& found) { found.hostExit = 139; },
         Outcome::faulty},
        {"one that ended too early",
         [](Findings& found) {
             found.isHostGone = true;
             found.courses.heap.clear();
         },
         Outcome::faulty},
        {"broken off", [](Findings& found) { found.isBrokenOff = true; }, Outcome::untold},
        {"five samples", [](Findings& found) { found.courses.threads.resize(5); }, Outcome::untold},
        {"no look at the heap", [](Findings& found) { found.courses.heap.clear(); },
         Outcome::untold},
    };
    for (const Spoiled& row : table) {
        Findings found = sound();
        row.change(found);
        std::ostringstream out;
        EXPECT_EQ(report(found, out), row.outcome) << row.name << '\n' << out.str();
    }
}

} // namespace
} // namespace soak
