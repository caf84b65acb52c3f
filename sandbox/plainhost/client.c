/* xnuser.dll, xnquiet.dll and OrvSecurityver.dll: each of the three exports its function. */
#include <string.h>

#include "hostinterface.h"
#include "plain.h"

static bool isValid(IUserState* self) {
    return true;
}

static const char* identity(IUserState* self) {
    return "1001-2002-plain";
}

static const char* token(IUserState* self) {
    return "plain token";
}

static const char* phone(IUserState* self) {
    return "";
}

static IUserState* tokenState(IUserCenter* self) {
    static const struct IUserStateTable table = {
        .isValid = isValid, .token = token, .identity = identity, .phone = phone};
    static IUserState state = {&table};
    return &state;
}

/* The device's and the service's: with them the user is logged in. */
static IUserState* otherState(IUserCenter* self) {
    static const struct IUserStateTable table = {.isValid = isValid};
    static IUserState state = {&table};
    return &state;
}

static IUserStateObserver* observers[4];

/* On the host's thread, when the plug-in starts. */
static void registerObserver(IUserStateSource* self, IUserStateObserver* observer) {
    IUserStateObserver** place = observers;
    while (*place) {
        require(++place < observers + 4, "room for an observer");
    }
    *place = observer;
}

static IUserStateSource* stateSource(IUserCenter* self) {
    static const struct IUserStateSourceTable table = {registerObserver};
    static IUserStateSource source = {&table};
    return &source;
}

IUserCenter* GetUserCenter(void) {
    static const struct IUserCenterTable table = {.tokenState = tokenState,
                                                  .deviceState = otherState,
                                                  .serviceState = otherState,
                                                  .stateSource = stateSource};
    static IUserCenter center = {&table};
    return &center;
}

void plainTellEvents(void) {
    for (IUserStateObserver** at = observers; at < observers + 4 && *at; ++at) {
        const struct IUserStateObserverTable* const table = (*at)->table;
        table->event0(*at, NULL);
        table->event1(*at, NULL);
        table->event2(*at, NULL);
        table->event3(*at);
        table->event4(*at, NULL);
        table->event5(*at);
        table->event6(*at);
    }
}

int IsMuteMode(void) {
    return 0;
}

int GetChannelType(char* buffer, int* length) {
    static const char channel[] = "plain_upgrade_1.0";
    require(*length == 64, "the channel's buffer");
    *length = (int)strlen(strcpy(buffer, channel));
    return 0;
}
