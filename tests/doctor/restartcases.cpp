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
    {"PaddingClimbs", Code::paddingOutside, "..\\a.dll",
     [](Client& c) {
         c.setJson(paddingSetting,
                   {{"guard\\guard.dll", c.waiting}, {"..\\a.dll", c.waiting + "x"}});
     }},
    {"PaddingTwice", Code::paddingDouble, "other.dll",
     [](Client& c) {
         c.setJson(paddingSetting,
                   {{"guard\\guard.dll", c.waiting}, {"other.dll", "\\" + c.waiting}});
     }},
    {"WaitingGone", Code::waitingGone, "guard.dll",
     [](Client& c) {
         c.remove("update\\" + c.waiting);
     }},
    {"WaitingChanged", Code::waitingChanged, "update\\",
     [](Client& c) {
         const std::string name = addWaiting(c, "new.dat");
         c.put("update\\" + name, "something else");
     }},
    {"WaitingForNothing", Code::waitingNotScheduled, "update\\",
     [](Client& c) {
         addWaiting(c, "new.dat");
         c.delayed.pop_back();
     }},
    {"JournalDamaged", Code::delayedDamaged, "delayed moves",
     [](Client& c) {
         c.delayed.emplace_back("rename\ta\tb");
     }},
    {"JournalIsPipe", Code::delayedUnreadable, "delayed-moves.journal",
     [](Client& c) {
         c.putPipe("client/delayed-moves.journal");
     }},
    {"JournalIsFolder", Code::delayedUnreadable, "delayed-moves.journal",
     [](Client& c) {
         c.putFolder("client/delayed-moves.journal");
     }},
    {"MovesOut", Code::delayedOutside, "notes.txt",
     [](Client& c) {
         c.replace("update\\notes.txt", "..\\outside.txt");
     }},
    {"MovesIn", Code::delayedOutside, "strange",
     [](Client& c) {
         c.replace("..\\strange.dll", "engine\\core.dll");
     }},
    {"MovesAnother", Code::delayedForeign, "rules.dat",
     [](Client& c) {
         c.replace("data\\rules.dat", "data\\rules.old");
     }},
    {"DeletesClientFile", Code::delayedDelete, "core.dll",
     [](Client& c) {
         c.removeAtRestart("engine\\core.dll");
     }},
    {"MovedTwice", Code::delayedDouble, "notes.txt",
     [](Client& c) {
         c.replace("update\\notes.txt", "GUARD\\guard.dll");
     }},
    {"SourceGone", Code::delayedSourceGone, "update\\gone",
     [](Client& c) {
         c.replace("update\\gone", "new.dat");
     }},
    {"MovedUnlisted", Code::delayedUnlisted, "notes.txt",
     [](Client& c) {
         c.replace("update\\notes.txt", "notes.txt");
     }},
    {"Orphan", Code::updateLeftover, "update\\",
     [](Client& c) {
         c.put("update\\" + md5Hex({'o'}), "o");
     }},
    {"Stray", Code::updateForeign, "stray.txt",
     [](Client& c) {
         c.put("update\\stray.txt", "by hand");
     }},
    {"Transfer", Code::transferLeftover, "_1001",
     [](Client& c) {
         c.put("update\\_1001", "half");
     }},
    {"OldFile", Code::tempLeftover, "_0",
     [](Client& c) {
         c.put("update\\temp\\" + c.old + "_0", "older");
     }},
};

} // namespace

std::vector<Case> restartCases() {
    return {std::begin(restartRows), std::end(restartRows)};
}
