#pragma once

#include <memory>
#include <string>

#include <google/protobuf/message.h>

/// The messages on which the JSON bridge is tried, and what its format carries of them.
namespace fuzz {

/// A kind of message and a way to name its enumerations. Inputs begin with a letter for it,
/// a capital one where enumerations go by name.
struct BridgeCase {
    std::unique_ptr<google::protobuf::Message> message;
    bool enumAsName;
};
BridgeCase takeBridgeCase(std::string& input);

/// Writes a message and demands that the text is one line of plain characters and reads back
/// as the format's rules say: without what it never carries, and with all else.
void requireRoundTrip(const google::protobuf::Message& message, bool enumAsName);

} // namespace fuzz
