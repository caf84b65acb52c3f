/* xnbase.dll: log, loader, addresses, programs and the versions of data files. */
#include <string.h>

#include "hostinterface.h"
#include "plain.h"
#include "sandbox/platform/plainsystem.h"

static struct PlainWatch watch;

struct PlainWatch* plainWatch(void) {
    return &watch;
}

static bool startsWith(const char* text, size_t length, const char* start) {
    return length >= strlen(start) && memcmp(text, start, strlen(start)) == 0;
}

/* Any thread. */
void writeLog(int level, const char* file, int line, const char* function, const char* text,
              size_t length) {
    require(level == 2 || level == 4, "a log level");
    fprintf(stderr, "%d %s:%d %s: %.*s\n", level, file, line, function, (int)length, text);
    if (startsWith(text, length, "update plugin, queue, run ...")) {
        atomic_fetch_add(&watch.openChains, 1);
    } else if (startsWith(text, length, "update plugin, queue, run end.")) {
        atomic_fetch_sub(&watch.openChains, 1);
    }
}

/* A real one tests the module's signature first. */
void* loadXNLibrary(const wchar_t* name, const wchar_t* directory, bool flag, int* error) {
    wchar_t path[260] = L"";
    require(flag && *error == 0, "loadXNLibrary's flag and error");
    require(wcslen(directory) + wcslen(name) < 258, "the length of a module's path");
    if (*directory) {
        wcscat(wcscpy(path, directory), L"\\");
    }
    return plainLoad(wcscat(path, name));
}

bool homeDirectory(unsigned char flag, wchar_t* buffer, int size) {
    require(flag == 1 && size == 260 && *buffer == 0, "homeDirectory's arguments");
    wcscpy(buffer, L"home");
    return true;
}

void runProcess(const wchar_t* file, const wchar_t* parameters) {
    if (wcscmp(file, L"helper.exe") == 0 && wcscmp(parameters, L"--go") == 0) {
        ++watch.programs;
    } else if (wcscmp(file, L"orvdefender.exe") == 0) {
        atomic_fetch_sub(&watch.openChains, 1); /* this chain never ends */
    }
}

enum { pathSize = 260, versionSize = 64, versionCount = 4 };

static struct Version {
    char path[pathSize];
    char version[versionSize];
} versions[versionCount] = {{"update\\version.dat", OLD_VERSION}};
static atomic_flag versionsLock = ATOMIC_FLAG_INIT;

/* The entry of that path; of an empty path, the first that is free. */
static struct Version* findVersion(const char* path) {
    for (int i = 0; i < versionCount; ++i) {
        if (strcmp(versions[i].path, path) == 0) {
            return &versions[i];
        }
    }
    return NULL;
}

static int getVersion(IFileVersionStore* self, const char* path, char* buffer, int* length) {
    lock(&versionsLock);
    const struct Version* found = findVersion(path);
    *length = found ? (int)strlen(strcpy(buffer, found->version)) : 0;
    unlock(&versionsLock);
    return 0;
}

static int putVersion(const char* path, const char* version, bool isNew) {
    require(strlen(path) < pathSize && strlen(version) < versionSize, "a version's length");
    lock(&versionsLock);
    struct Version* const found = findVersion(path);
    require(isNew == !found, "create for a new version, update for one that is there");
    struct Version* const entry = found ? found : findVersion("");
    require(entry != NULL, "room for a version");
    strcpy(entry->path, path);
    strcpy(entry->version, version);
    unlock(&versionsLock);
    return 0;
}

static int updateVersion(IFileVersionStore* self, const char* path, const char* version) {
    return putVersion(path, version, false);
}

static int createVersion(IFileVersionStore* self, const char* path, const char* version) {
    return putVersion(path, version, true);
}

IFileVersionStore* getFileVer(void) {
    static const struct IFileVersionStoreTable table = {
        .getVersion = getVersion, .updateVersion = updateVersion, .createVersion = createVersion};
    static IFileVersionStore store = {&table};
    return &store;
}
