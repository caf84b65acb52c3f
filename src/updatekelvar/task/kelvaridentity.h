#pragma once

#include <string>

/// What this process tells the update platform about itself: values that all fetch tasks
/// share. Chains of the tick list and of the service loop may overlap. Any thread.
namespace kelvaridentity {

/// The channel of this client.
std::string channelId();
void setChannelId(const std::string& id);

/// The test switch.
bool testParam();
void setTestParam(bool on);

} // namespace kelvaridentity
