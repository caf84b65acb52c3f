#include <vector>

#include "host/usercenter.h"
#include "sandbox/common/config.h"
#include "sandbox/common/events.h"
#include "utils/mutex.h"

namespace {

class UserState final : public uc::IUserState {
public:
    UserState(bool isGood, const sandbox::Config::Login& user) : valid(isGood), login(user) {}

    void reserved0() override {}
    void reserved1() override {}
    bool isValid() override { return valid; }
    const char* token() override { return login.tokenText.c_str(); }
    const char* identity() override { return login.identity.c_str(); }
    void reserved5() override {}
    const char* phone() override { return login.phone.c_str(); }

private:
    bool valid;
    const sandbox::Config::Login& login;
};

/// The log-in of a sandbox run does not change, so observers are held and never called.
class StateSource final : public uc::IUserStateSource {
public:
    void registerObserver(uc::IUserStateObserver* observer) override {
        if (!observer) {
            sandbox::emitFailure("IUserStateSource::registerObserver", "no observer");
            return;
        }
        MutexLock lock(mutex);
        observers.push_back(observer);
    }

private:
    Mutex mutex;
    std::vector<uc::IUserStateObserver*> observers XR_GUARDED_BY(mutex);
};

class UserCenter final : public uc::IUserCenter {
public:
    uc::IUserState* tokenState() override { return &tokens; }
    uc::IUserState* deviceState() override { return &devices; }
    uc::IUserState* serviceState() override { return &services; }
    void reserved3() override {}
    uc::IUserStateSource* stateSource() override { return &source; }

private:
    const sandbox::Config::Login login = sandbox::readConfig().login;
    UserState tokens{login.token, login};
    UserState devices{login.device, login};
    UserState services{login.service, login};
    StateSource source;
};

} // namespace

extern "C" uc::IUserCenter* GetUserCenter() {
    static UserCenter& center = *new UserCenter;
    return &center;
}
