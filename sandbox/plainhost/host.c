/* The plain host: one whole update with objects made in C. It runs in the client's folder, and
 * its exit status is 0 when all that the update has to leave behind is there. */
#include <string.h>

#include "hostinterface.h"
#include "plain.h"
#include "sandbox/platform/plainsystem.h"

enum { pause = 10, looks = 3000, looksATick = 100 };

static void* load(const wchar_t* file) {
    void* const module = plainLoad(file);
    require(module != NULL, "a module could not be loaded");
    return module;
}

static PlainFunction find(void* module, const char* name) {
    const PlainFunction function = plainFind(module, name);
    require(function != NULL, name);
    return function;
}

static int failures;

static void check(bool holds, const char* what) {
    printf("%s: %s\n", holds ? "ok" : "FAILED", what);
    failures += holds ? 0 : 1;
}

/* Told by slot 0 of an observer of the notification centre. */
static KelvarVersionRecord posted;
static int posts;

static void onNotification(Observer* self, INotification* notification) {
    if (notification->table->type(notification) == 14) {
        memcpy(&posted, notification->table->data(notification), sizeof posted);
        ++posts;
    }
}

/* Ticks and delivers answers until the conversation and the chain are at their end. */
static bool drive(IXTrayPlugin* plugin, struct PlainWatch* watch, PlainDeliverFn deliver) {
    for (int look = 0; look < looks; ++look) {
        if (deliver()) {
            continue;
        }
        if (watch->answers == QUESTIONS && atomic_load(&watch->openChains) == 0) {
            return true;
        }
        if (watch->answers < QUESTIONS && look % looksATick == 0) {
            plugin->table->tick(plugin);
        }
        plainSleep(pause);
    }
    return false;
}

static size_t contentOf(const char* path, char* buffer, size_t size) {
    FILE* const file = fopen(path, "rb");
    const size_t length = file ? fread(buffer, 1, size - 1, file) : 0;
    if (file) {
        fclose(file);
    }
    buffer[length] = '\0';
    return length;
}

static void checkFiles(void) {
    char content[4096];
    const size_t size = contentOf("data/plain.dat", content, sizeof content);
    check(size == sizeof MATERIAL_BYTES - 1 && memcmp(content, MATERIAL_BYTES, size) == 0,
          "the material is in place");
    contentOf("home/OrvSecurity/config/uninst/filelist.xml", content, sizeof content);
    check(strstr(content, "data\\plain.dat") != NULL, "the file list names it");
}

static void checkVersion(IFileVersionStore* store, const char* path, const char* wanted) {
    char version[64] = "";
    int length = 0;
    check(store->table->getVersion(store, path, version, &length) == 0 &&
              length == (int)strlen(wanted) && strcmp(version, wanted) == 0,
          path);
}

static void checkSettings(IKeyValueStore* settings) {
    char names[256] = "";
    uint32_t size = sizeof names;
    uint64_t time = 0;
    settings->table->getString(settings, "KEY_UPDATE_KELVAR_TEMP_FILE_LIST", names, &size);
    check(strcmp(names, "[\"" MATERIAL_MD5 "\"]") == 0, "the list of old files");
    settings->table->getUInt64(settings, "KEY_UPDATE_KELVAR_LAST_CHECK_TIME", &time);
    check(time > 1, "the time of the check");
}

static void checkNotification(void) {
    const KelvarVersionRecord wanted = {0, NEW_VERSION};
    check(posts == 1 && memcmp(&posted, &wanted, sizeof wanted) == 0, "the notification");
}

/* The plug-in's own service, as any module of the client may use it. */
static void checkLibraryVersion(GetUpdateKelvarFn getUpdateKelvar, const char* wanted) {
    char version[128] = "";
    IUpdateKelvar* const service = getUpdateKelvar();
    service->table->getVersion(service, version);
    check(strcmp(version, wanted) == 0, "the virus library's version");
    check(service->table->setVersion(service, "1.3.0.78") == 0, "it can be set");
    service->table->release(service);
}

static void checkReferences(void* module, long wanted, const char* what) {
    check(((PlainReferencesFn)find(module, "plainReferences"))() == wanted, what);
}

int main(void) {
    static const struct ObserverTable observerTable = {onNotification};
    static Observer observer = {&observerTable};
    static IXTrayPlugin* plugin; /* never freed */

    /* The plug-in never loads these three; the other modules come when they are needed. */
    void* const base = load(L"xnbase.dll");
    void* const orvBase = load(L"OrvBase.dll");
    void* const guard = load(L"XNGuardBase.dll");
    void* const refresher = load(L"xnplugins\\xrefresher.dll");

    void* const setting = load(L"XNSetting.dll");
    INotificationCenter* const center =
        ((GetNotificationCenterFn)find(setting, "GetNotificationCenter"))();
    center->table->registerObserver(center, &observer);

    struct PlainWatch* const watch = ((PlainWatchFn)find(base, "plainWatch"))();
    plugin = ((CreateUpdatePluginFn)find(refresher, "CreateUpdatePlugin"))();
    check(plugin->table->start(plugin, NULL), "the plug-in starts");
    ((PlainTellEventsFn)find(load(L"xnuser.dll"), "plainTellEvents"))();
    check(drive(plugin, watch, (PlainDeliverFn)find(base, "plainDeliver")), "the update ends");

    IFileVersionStore* const versions = ((GetFileVerFn)find(base, "getFileVer"))();
    const GetUpdateKelvarFn getUpdateKelvar = (GetUpdateKelvarFn)find(refresher, "GetUpdateKelvar");
    checkFiles();
    checkVersion(versions, "update\\version.dat", NEW_VERSION);
    checkVersion(versions, "data\\plain.dat", NEW_VERSION);
    checkLibraryVersion(getUpdateKelvar, LIBRARY_VERSION);
    checkVersion(versions, "update\\virtuslib.dat", "1.3.0.78");
    checkSettings(((GetKVFn)find(setting, "GetKV"))());
    checkNotification();
    check(watch->programs == 1, "the material's program");
    checkReferences(orvBase, 4, "OrvBase.dll: the registry and three more are held");
    checkReferences(guard, 1, "XNGuardBase.dll: one object is held");
    checkReferences(load(L"xncurl.dll"), 0, "xncurl.dll: the service was released");
    return failures == 0 ? 0 : 1;
}
