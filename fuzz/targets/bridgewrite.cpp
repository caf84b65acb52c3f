#include <google/protobuf/stubs/logging.h>

#include "fuzz/bridgemessages.h"
#include "fuzz/fuzz.h"

// Messages into JSON. Input: a letter for the kind of message, and the message in protobuf's own
// encoding.

FUZZ_TARGET(bridgewrite) {
    google::protobuf::SetLogHandler(nullptr); // it reports each text that is not UTF-8
    std::string bytes = input;
    const auto [message, enumAsName] = fuzz::takeBridgeCase(bytes);
    if (message->ParseFromString(bytes)) {
        fuzz::requireRoundTrip(*message, enumAsName);
    }
}
