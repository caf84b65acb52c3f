#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "sandbox/server/offer.h"

namespace sandbox {

/// What a request is answered.
struct Answered {
    int status = 200;
    std::string body;
    std::optional<std::size_t> stopAt; ///< bytes of the body after which the connection ends
};

/// The right body, or what goes out in its place.
inline Answered answeredWith(const AnswerFault& fault, const std::string& body) {
    return {fault.status, fault.body.value_or(body), fault.stopAt};
}

} // namespace sandbox
