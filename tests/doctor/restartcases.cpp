#include "doctor/plantedcases.h"

// What waits for the restart, and what is left behind.

namespace {

using materials::md5Hex;
using sandbox::doctor::Code;
using Client = HealthyClient;

/// A further file that waits for the restart, with all that belongs to it.
std::string addWaiting(Client& client, const std::string& target) {
    const std::string text = "new content of " + target;
    std::string name = md5Hex({text.begin(), text.end()});
    client.put("update\\" + name, text);
    client.setJson(paddingSetting, {{"guard\\guard.dll", client.waiting}, {target, name}});
    client.replace("update\\" + name, target);
    return name;
}

const Case restartRows[] = {
    {"PaddingClimbs",
     [](Client& c) {
         c.setJson(paddingSetting,
                   {{"guard\\guard.dll", c.waiting}, {"..\\a.dll", c.waiting + "x"}});
     },
     Code::paddingOutside, "..\\a.dll"},
    {"PaddingTwice",
     [](Client& c) {
         c.setJson(paddingSetting,
                   {{"guard\\guard.dll", c.waiting}, {"other.dll", "\\" + c.waiting}});
     },
     Code::paddingDouble, "other.dll"},
    {"WaitingGone", [](Client& c) { c.remove("update\\" + c.waiting); }, Code::waitingGone,
     "guard.dll"},
    {"WaitingChanged",
     [](Client& c) {
         const std::string name = addWaiting(c, "new.dat");
         c.put("update\\" + name, "something else");
     },
     Code::waitingChanged, "update\\"},
    {"WaitingForNothing",
     [](Client& c) {
         addWaiting(c, "new.dat");
         c.delayed.pop_back();
     },
     Code::waitingNotScheduled, "update\\"},
    {"JournalDamaged", [](Client& c) { c.delayed.emplace_back("rename\ta\tb"); },
     Code::delayedDamaged, "delayed moves"},
    {"JournalIsPipe", [](Client& c) { c.putPipe("client/delayed-moves.journal"); },
     Code::delayedUnreadable, "delayed-moves.journal"},
    {"JournalIsFolder", [](Client& c) { c.putFolder("client/delayed-moves.journal"); },
     Code::delayedUnreadable, "delayed-moves.journal"},
    {"MovesOut", [](Client& c) { c.replace("update\\notes.txt", "..\\outside.txt"); },
     Code::delayedOutside, "notes.txt"},
    {"MovesIn", [](Client& c) { c.replace("..\\strange.dll", "engine\\core.dll"); },
     Code::delayedOutside, "strange"},
    {"MovesAnother", [](Client& c) { c.replace("data\\rules.dat", "data\\rules.old"); },
     Code::delayedForeign, "rules.dat"},
    {"DeletesClientFile", [](Client& c) { c.removeAtRestart("engine\\core.dll"); },
     Code::delayedDelete, "core.dll"},
    {"MovedTwice", [](Client& c) { c.replace("update\\notes.txt", "GUARD\\guard.dll"); },
     Code::delayedDouble, "notes.txt"},
    {"SourceGone", [](Client& c) { c.replace("update\\gone", "new.dat"); }, Code::delayedSourceGone,
     "update\\gone"},
    {"MovedUnlisted", [](Client& c) { c.replace("update\\notes.txt", "notes.txt"); },
     Code::delayedUnlisted, "notes.txt"},
    {"Orphan", [](Client& c) { c.put("update\\" + md5Hex({'o'}), "o"); }, Code::updateLeftover,
     "update\\"},
    {"Stray", [](Client& c) { c.put("update\\stray.txt", "by hand"); }, Code::updateForeign,
     "stray.txt"},
    {"Transfer", [](Client& c) { c.put("update\\_1001", "half"); }, Code::transferLeftover,
     "_1001"},
    {"OldFile", [](Client& c) { c.put("update\\temp\\" + c.old + "_0", "older"); },
     Code::tempLeftover, "_0"},
};

} // namespace

std::vector<Case> restartCases() {
    return {std::begin(restartRows), std::end(restartRows)};
}
