#pragma once

/// The user centre, from `uc::IUserCenter* GetUserCenter()` of xnuser.dll. All objects
/// are borrowed; texts are zero-terminated and stay the centre's. Any thread.
namespace uc {

/// One of the three states that make up a log-in: token, device, service.
class IUserState {
public:
    virtual void reserved0() = 0;
    virtual void reserved1() = 0;
    virtual bool isValid() = 0;         ///< slot 2
    virtual const char* token() = 0;    ///< slot 3
    virtual const char* identity() = 0; ///< slot 4; "oid-id-…"
    virtual void reserved5() = 0;
    virtual const char* phone() = 0; ///< slot 6

protected:
    ~IUserState() = default;
};

/// Events of the user centre. Called on the centre's own thread; the arguments are the
/// centre's and are not read here. Only the third event means something here: the
/// user's state has changed.
class IUserStateObserver {
public:
    virtual void event0(void* argument) = 0;
    virtual void event1(void* argument) = 0;
    virtual void event2(void* argument) = 0; ///< the user's state has changed
    virtual void event3() = 0;
    virtual void event4(void* argument) = 0;
    virtual void event5() = 0;
    virtual void event6() = 0;

protected:
    ~IUserStateObserver() = default;
};

/// Gives every event an empty body.
class UserStateObserverBase : public IUserStateObserver {
public:
    void event0(void* /*argument*/) override {}
    void event1(void* /*argument*/) override {}
    void event2(void* /*argument*/) override {}
    void event3() override {}
    void event4(void* /*argument*/) override {}
    void event5() override {}
    void event6() override {}

protected:
    ~UserStateObserverBase() = default;
};

class IUserStateSource {
public:
    virtual void registerObserver(IUserStateObserver* observer) = 0; ///< slot 0; for good

protected:
    ~IUserStateSource() = default;
};

class IUserCenter {
public:
    virtual IUserState* tokenState() = 0;   ///< slot 0; null when there is none
    virtual IUserState* deviceState() = 0;  ///< slot 1; likewise
    virtual IUserState* serviceState() = 0; ///< slot 2; likewise
    virtual void reserved3() = 0;
    virtual IUserStateSource* stateSource() = 0; ///< slot 4

protected:
    ~IUserCenter() = default;
};

} // namespace uc
