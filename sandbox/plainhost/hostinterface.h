/* The host interface in C, as docs/host-interface.md tells it. A start for whoever embeds the
 * plug-in or replaces a module with another compiler or language. */
#ifndef PLAINHOST_HOSTINTERFACE_H
#define PLAINHOST_HOSTINTERFACE_H

#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>
#include <wchar.h>

/* An object: memory that begins with a pointer to its table of functions, in slot order. */
#define OBJECT(name)                                                                               \
    typedef struct name name;                                                                      \
    struct name {                                                                                  \
        const struct name##Table* table;                                                           \
    }

/* xrefresher.dll */

OBJECT(IXTrayPlugin);
struct IXTrayPluginTable {
    bool (*start)(IXTrayPlugin* self, void* context);
    void (*tick)(IXTrayPlugin* self);
};

OBJECT(IUpdateKelvar);
struct IUpdateKelvarTable {
    void (*getVersion)(IUpdateKelvar* self, char* version); /* into 128 bytes */
    int (*setVersion)(IUpdateKelvar* self, const char* version);
    void (*release)(IUpdateKelvar* self);
};

typedef IXTrayPlugin* (*CreateUpdatePluginFn)(void);
typedef IUpdateKelvar* (*GetUpdateKelvarFn)(void);

/* xnbase.dll */

OBJECT(IFileVersionStore);
struct IFileVersionStoreTable {
    int (*getVersion)(IFileVersionStore* self, const char* path, char* buffer, int* length);
    int (*updateVersion)(IFileVersionStore* self, const char* path, const char* version);
    int (*createVersion)(IFileVersionStore* self, const char* path, const char* version);
};

OBJECT(IXEnvConfig);
struct IXEnvConfigTable {
    const char* (*upgradeAddress)(IXEnvConfig* self);
    void (*reserved1[4])(void);
    const char* (*serverAddress)(IXEnvConfig* self);
};

OBJECT(IXHttpHeader);
struct IXHttpHeaderTable {
    void (*reserved0[2])(void);
    void (*add)(IXHttpHeader* self, const char* name, const char* value);
};

OBJECT(Response);
struct ResponseTable {
    void (*reserved0[3])(void);
    int (*error)(Response* self);
    int (*status)(Response* self);
    const char* (*body)(Response* self);
    size_t (*size)(Response* self);
};

/* Slots 0 and 1 of what the plug-in hands over. */
typedef struct CountedTable {
    long (*addRef)(void* self);
    long (*release)(void* self);
} CountedTable;

OBJECT(Callback);
struct CallbackTable {
    CountedTable counted;
    void (*onResponse)(Callback* self, Response* response);
};

OBJECT(Task);
struct TaskTable {
    CountedTable counted;
    void (*run)(Task* self);
};

typedef IFileVersionStore* (*GetFileVerFn)(void);

/* XNSetting.dll */

OBJECT(IKeyValueStore);
struct IKeyValueStoreTable {
    bool (*getString)(IKeyValueStore* self, const char* key, char* buffer, uint32_t* size);
    bool (*getUInt64)(IKeyValueStore* self, const char* key, uint64_t* value);
    bool (*getUInt32)(IKeyValueStore* self, const char* key, uint32_t* value);
    bool (*setString)(IKeyValueStore* self, const char* key, const char* value);
    bool (*setUInt64)(IKeyValueStore* self, const char* key, uint64_t value);
};

OBJECT(INotification);
struct INotificationTable {
    int (*type)(INotification* self);
    const void* (*data)(INotification* self);
};

OBJECT(Observer);
struct ObserverTable {
    void (*onNotification)(Observer* self, INotification* notification);
};

OBJECT(INotificationCenter);
struct INotificationCenterTable {
    void (*registerObserver)(INotificationCenter* self, Observer* observer);
    void (*reserved1)(void);
    void (*post)(INotificationCenter* self, int type, const void* data, uint32_t size);
};

/* Type 14. */
typedef struct KelvarVersionRecord {
    uint32_t reserved;
    char version[128]; /* without a zero when it is full */
} KelvarVersionRecord;
_Static_assert(sizeof(KelvarVersionRecord) == 132, "the record of type 14 has 132 bytes");

typedef IKeyValueStore* (*GetKVFn)(void);
typedef INotificationCenter* (*GetNotificationCenterFn)(void);

/* xnuser.dll */

OBJECT(IUserState);
struct IUserStateTable {
    void (*reserved0[2])(void);
    bool (*isValid)(IUserState* self);
    const char* (*token)(IUserState* self);
    const char* (*identity)(IUserState* self);
    void (*reserved5)(void);
    const char* (*phone)(IUserState* self);
};

OBJECT(IUserStateObserver);
struct IUserStateObserverTable {
    void (*event0)(IUserStateObserver* self, void* argument);
    void (*event1)(IUserStateObserver* self, void* argument);
    void (*event2)(IUserStateObserver* self, void* argument); /* the user's state has changed */
    void (*event3)(IUserStateObserver* self);
    void (*event4)(IUserStateObserver* self, void* argument);
    void (*event5)(IUserStateObserver* self);
    void (*event6)(IUserStateObserver* self);
};

OBJECT(IUserStateSource);
struct IUserStateSourceTable {
    void (*registerObserver)(IUserStateSource* self, IUserStateObserver* observer);
};

OBJECT(IUserCenter);
struct IUserCenterTable {
    IUserState* (*tokenState)(IUserCenter* self);
    IUserState* (*deviceState)(IUserCenter* self);
    IUserState* (*serviceState)(IUserCenter* self);
    void (*reserved3)(void);
    IUserStateSource* (*stateSource)(IUserCenter* self);
};

/* COM-like objects: CreateOrvObject of OrvBase.dll, XNGuardBase.dll and modules of ids */

typedef struct Guid {
    uint32_t data1;
    uint16_t data2;
    uint16_t data3;
    uint8_t data4[8];
} Guid;
_Static_assert(sizeof(Guid) == 16, "ids are compared as bytes");

/* Slots 0 to 2 of every such table. */
typedef struct IUnknownTable {
    long (*QueryInterface)(void* self, const Guid* id, void** object);
    unsigned long (*AddRef)(void* self);
    unsigned long (*Release)(void* self);
} IUnknownTable;

OBJECT(IXModuleRegistry);
struct IXModuleRegistryTable {
    IUnknownTable unknown;
    void* (*resolve)(IXModuleRegistry* self, const wchar_t* moduleId);
};

OBJECT(IXNBaseInfo);
struct IXNBaseInfoTable {
    IUnknownTable unknown;
    void (*reserved3)(void);
    const void* (*query)(IXNBaseInfo* self, uint32_t code, const uint32_t* value);
};

OBJECT(IXNGuardBase);
struct IXNGuardBaseTable {
    IUnknownTable unknown;
    void (*reserved3[10])(void);
    int (*instanceExists)(IXNGuardBase* self, const wchar_t* name, int flag);
};

OBJECT(IXCurlService);
struct IXCurlServiceTable {
    IUnknownTable unknown;
    void* (*curl_easy_init)(IXCurlService* self);
    int (*curl_easy_setopt)(IXCurlService* self, void* handle, int option, ...);
    int (*curl_easy_perform)(IXCurlService* self, void* handle);
    void (*curl_easy_cleanup)(IXCurlService* self, void* handle);
};

#endif
