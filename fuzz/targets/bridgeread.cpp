#include "fuzz/bridgemessages.h"
#include "fuzz/fuzz.h"
#include "updatekelvar/fetch/xpbjson.h"

// JSON of the update platform into messages. Input: a letter for the kind of message, and the
// text.

FUZZ_TARGET(bridgeread) {
    std::string text = input;
    const auto [message, enumAsName] = fuzz::takeBridgeCase(text);
    if (!XPbJson().fromJsonString(text, message.get(), enumAsName)) {
        fuzz::require(message->ByteSizeLong() == 0, "a text that is not read changes nothing");
        return;
    }
    fuzz::requireRoundTrip(*message, enumAsName);
}
