/* XNSetting.dll: settings and notifications. Nothing is stored on disk. */
#include <string.h>

#include "hostinterface.h"
#include "plain.h"

static struct Setting {
    char key[64];
    char text[256];
    uint64_t number; /* 0 is no value */
} settings[8] = {
    {"KEY_UPDATE_KELVAR_LAST_CHECK_TIME", "", 1}}; /* long ago: the first tick checks */
static atomic_flag settingsLock = ATOMIC_FLAG_INIT;

/* The setting, a new one if it is not there. Locked; give it back with unlock. */
static struct Setting* take(const char* key) {
    struct Setting* setting = settings;
    lock(&settingsLock);
    while (*setting->key && strcmp(setting->key, key) != 0) {
        require(++setting < settings + sizeof settings / sizeof *settings, "room for a setting");
    }
    require(strlen(key) < sizeof setting->key, "a key's length");
    strcpy(setting->key, key);
    return setting;
}

static bool getString(IKeyValueStore* self, const char* key, char* buffer, uint32_t* size) {
    const char* const text = take(key)->text;
    const uint32_t needed = *text ? (uint32_t)strlen(text) + 1 : 0;
    const bool fits = buffer && needed > 0 && needed <= *size;
    if (fits) {
        strcpy(buffer, text);
    }
    *size = needed;
    unlock(&settingsLock);
    return fits;
}

static bool getUInt32(IKeyValueStore* self, const char* key, uint32_t* value) {
    require(take(key)->number == 0, "a number of 64 bits is not asked for as one of 32");
    unlock(&settingsLock);
    return false;
}

static bool setString(IKeyValueStore* self, const char* key, const char* value) {
    struct Setting* const setting = take(key);
    require(strlen(value) < sizeof setting->text, "a setting's length");
    strcpy(setting->text, value);
    unlock(&settingsLock);
    return true;
}

static bool getUInt64(IKeyValueStore* self, const char* key, uint64_t* value) {
    *value = take(key)->number;
    unlock(&settingsLock);
    return *value != 0;
}

static bool setUInt64(IKeyValueStore* self, const char* key, uint64_t value) {
    take(key)->number = value;
    unlock(&settingsLock);
    return true;
}

IKeyValueStore* GetKV(void) {
    static const struct IKeyValueStoreTable table = {.getString = getString,
                                                     .getUInt64 = getUInt64,
                                                     .getUInt32 = getUInt32,
                                                     .setString = setString,
                                                     .setUInt64 = setUInt64};
    static IKeyValueStore store = {&table};
    return &store;
}

struct Notification {
    INotification object;
    int type;
    const void* data;
};

static int typeOf(INotification* self) {
    return ((struct Notification*)self)->type;
}

static const void* dataOf(INotification* self) {
    return ((struct Notification*)self)->data;
}

static Observer* observers[4];
static int observerCount;
static atomic_flag observersLock = ATOMIC_FLAG_INIT;

static void registerObserver(INotificationCenter* self, Observer* observer) {
    lock(&observersLock);
    require(observerCount < 4, "room for an observer");
    observers[observerCount++] = observer;
    unlock(&observersLock);
}

/* The observers are told within the call, so nothing has to be copied. */
static void post(INotificationCenter* self, int type, const void* data, uint32_t size) {
    static const struct INotificationTable table = {.type = typeOf, .data = dataOf};
    require(type != 14 || size == sizeof(KelvarVersionRecord), "the size of a record");
    struct Notification notification = {{&table}, type, data};
    lock(&observersLock);
    const int count = observerCount;
    unlock(&observersLock);
    for (int i = 0; i < count; ++i) {
        observers[i]->table->onNotification(observers[i], &notification.object);
    }
}

INotificationCenter* GetNotificationCenter(void) {
    static const struct INotificationCenterTable table = {.registerObserver = registerObserver,
                                                          .post = post};
    static INotificationCenter center = {&table};
    return &center;
}
