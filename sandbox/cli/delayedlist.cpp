#include <iostream>
#include <nlohmann/json.hpp>

#include "sandbox/common/jsonfile.h"
#include "sandbox/platform/delayed.h"

/// delayedlist FILE FOLDER: writes what the system keeps for its next start and lies below
/// the folder as JSON: {"moves": [{"from": path, "to": path}], "faults": [text]}. For
/// xsandbox, which cannot ask a Windows under Wine itself. Status 1 when it cannot.
int main(int count, char** arguments) {
    try {
        if (count != 3) {
            std::cerr << "delayedlist FILE FOLDER\n";
            return 1;
        }
        const sandbox::PendingList list = sandbox::pendingList(arguments[2]);
        nlohmann::json json{{"moves", nlohmann::json::array()}, {"faults", list.faults}};
        for (const sandbox::PendingMove& move : list.moves) {
            json["moves"].push_back({{"from", move.from}, {"to", move.to}});
        }
        return sandbox::writeJson(arguments[1], json) ? 0 : 1;
    } catch (const std::exception& error) {
        std::cerr << "delayedlist: " << error.what() << "\n";
        return 1;
    }
}
