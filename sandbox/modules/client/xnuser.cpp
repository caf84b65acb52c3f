#include <algorithm>
#include <atomic>
#include <list>
#include <vector>

#include "host/usercenter.h"
#include "sandbox/common/config.h"
#include "sandbox/common/events.h"
#include "sandbox/common/folders.h"
#include "sandbox/common/worker.h"
#include "sandbox/faults/clientfaults.h"
#include "sandbox/modules/xnbase/listener.h"
#include "sandbox/platform/filewrites.h"
#include "utils/mutex.h"

namespace {

using Login = sandbox::Config::Login;

/// The log-in of the configuration, or as a fault has it.
Login wantedLogin() {
    Login login = sandbox::readConfig().login;
    const auto faults = sandbox::ClientFaults::read();
    for (const bool isIn : {false, true}) {
        if (faults.meets(isIn ? "logged-in" : "logged-out")) {
            login.token = login.device = login.service = isIn;
        }
    }
    return login;
}

/// The log-in as it is now. Texts that were handed out stay good: none is thrown away, and one
/// that comes again is taken again.
class CurrentLogin {
public:
    const Login& get() const { return *current; }

    void become(Login login) {
        const auto known = std::find(all.begin(), all.end(), login);
        current = known == all.end() ? &all.emplace_back(std::move(login)) : &*known;
    }

private:
    std::list<Login> all{wantedLogin()}; ///< changed by one thread
    std::atomic<const Login*> current{&all.back()};
};

class UserState final : public uc::IUserState {
public:
    UserState(const CurrentLogin& user, bool Login::*state) : login(user), member(state) {}

    void reserved0() override {}
    void reserved1() override {}
    bool isValid() override { return login.get().*member; }
    const char* token() override { return login.get().tokenText.c_str(); }
    const char* identity() override { return login.get().identity.c_str(); }
    void reserved5() override {}
    const char* phone() override { return login.get().phone.c_str(); }

private:
    const CurrentLogin& login;
    bool Login::*member;
};

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

    void tellChange() {
        deliveries.post([this] {
            for (uc::IUserStateObserver* observer : receivers()) {
                sandbox::guarded("IUserStateObserver", [&] { observer->event2(nullptr); });
            }
        });
    }

    bool idle() const { return deliveries.idle(); }

private:
    std::vector<uc::IUserStateObserver*> receivers() {
        MutexLock lock(mutex);
        return observers;
    }

    Mutex mutex;
    std::vector<uc::IUserStateObserver*> observers XR_GUARDED_BY(mutex);
    sandbox::Worker deliveries{"user state delivery"};
};

class UserCenter final : public uc::IUserCenter {
public:
    UserCenter() { tell(login.get()); }

    uc::IUserState* tokenState() override { return &tokens; }
    uc::IUserState* deviceState() override { return &devices; }
    uc::IUserState* serviceState() override { return &services; }
    void reserved3() override {}
    uc::IUserStateSource* stateSource() override { return &source; }

    /// Takes a log-in in that another process has put into the configuration, or a fault.
    void follow() {
        const sandbox::Folders folders = sandbox::processFolders();
        const auto text = sandbox::readFile(folders.config());
        const std::string faults = sandbox::readFile(folders.clientFaults()).value_or("");
        if (!text || *text + faults == seen) {
            return;
        }
        seen = *text + faults;
        const Login wanted = wantedLogin();
        if (wanted == login.get()) {
            return;
        }
        login.become(wanted);
        tell(wanted);
        source.tellChange();
    }

    bool idle() const { return source.idle(); }

private:
    static void tell(const Login& now) {
        sandbox::emit({{"kind", "login"},
                       {"token", now.token},
                       {"device", now.device},
                       {"service", now.service}});
    }

    CurrentLogin login;
    UserState tokens{login, &Login::token};
    UserState devices{login, &Login::device};
    UserState services{login, &Login::service};
    StateSource source;
    std::string seen; ///< configuration and faults
};

UserCenter& center() {
    static UserCenter& instance = *new UserCenter;
    return instance;
}

} // namespace

extern "C" uc::IUserCenter* GetUserCenter() {
    return &center();
}

extern "C" bool sandboxIdle() {
    return center().idle();
}

extern "C" void sandboxPoll() {
    center().follow();
}

static_assert(std::is_same_v<decltype(&sandboxIdle), sandbox::Idle>);
static_assert(std::is_same_v<decltype(&sandboxPoll), sandbox::Poll>);
