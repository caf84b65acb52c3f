#pragma once

#include <string>

#include "sandbox/server/offer.h"

namespace sandbox {

/// The right answer to the question of that place in the conversation, as JSON text.
/// `address` is the platform's own address without a trailing "/".
std::string answerTo(std::size_t question, const Offer& offer, const ExpectedRun& run,
                     const std::string& address);

} // namespace sandbox
