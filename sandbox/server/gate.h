#pragma once

#include <condition_variable>
#include <cstddef>
#include <mutex>

namespace sandbox {

/// Holds a transfer back until somebody lets it go on. Any thread.
class Gate {
public:
    /// What a transfer waits for begins with its request: the gate may have been opened and shut
    /// again when the transfer comes to its place, or ahead of its thread's turn.
    class Ticket {
        friend class Gate;
        explicit Ticket(std::size_t count) : changes(count) {}
        std::size_t changes;
    };
    Ticket ticket() const;

    /// Blocks until the gate is open, or was since the ticket was given out.
    void pass(const Ticket& ticket);

    /// Whether somebody waits.
    bool isHeld() const;

    /// For those who wait and those who come.
    void open();
    void shut();

private:
    void change(bool toOpen);

    mutable std::mutex guard;
    std::condition_variable changed;
    bool isOpen = false;
    std::size_t changes = 0; ///< openings and shuttings
    std::size_t waiting = 0; ///< since the last of them
};

} // namespace sandbox
