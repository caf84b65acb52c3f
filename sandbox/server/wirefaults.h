#pragma once

#include <atomic>
#include <cstdint>
#include <functional>

#include "sandbox/server/bodyfaults.h"
#include "sandbox/server/connection.h"
#include "sandbox/server/gate.h"

namespace sandbox {

/// What a faulty transfer needs beside its bytes.
struct Transfer {
    std::function<void(std::uint64_t sent)> told; ///< ahead of the bytes; may be empty
    Gate& gate;                                   ///< outlives the transfer
    Gate::Ticket ticket;                          ///< of the time of the request
    const std::atomic<bool>& stopping;            ///< the server
};

/// Sends the answer on the connection as the fault has it, on the thread that serves the
/// request, and ends the connection.
void sendWithFault(const Fault& fault, const Answer& answer, const Transfer& transfer,
                   Connection& connection);

} // namespace sandbox
