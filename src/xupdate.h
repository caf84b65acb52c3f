#pragma once

/// A channel: decides whether a check can run, and runs it on its own.
class IUpdate {
public:
    /// Quick set-up at registration, on the host's thread; must not call the manager.
    virtual int init() = 0;
    /// One drive, on the host's thread; returns quickly. The result is not read.
    virtual int checkUpdate() = 0;
    virtual ~IUpdate() = default;
};

class XUpdate : public IUpdate {
public:
    int init() override { return 0; }
    int checkUpdate() override { return 0; }

    /// Whether a user is logged in: token, device and service state are all valid.
    /// Any thread; logs nothing.
    bool canCheck();
};
