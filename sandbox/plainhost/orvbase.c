/* OrvBase.dll: which module stands behind an id, and facts about the machine. */
#include "orvobject.h"
#include "plain.h"
#include "sandbox/platform/plainsystem.h"

static void* resolve(IXModuleRegistry* self, const wchar_t* moduleId) {
    static const struct {
        const wchar_t* id;
        const wchar_t* file;
    } modules[] = {{L"module.base", L"OrvBase.dll"},
                   {L"module.xnguardbase", L"XNGuardBase.dll"},
                   {L"module.libcurl", L"xncurl.dll"}};
    for (size_t i = 0; i < sizeof modules / sizeof *modules; ++i) {
        if (wcscmp(modules[i].id, moduleId) == 0) {
            return plainLoad(modules[i].file); /* stays loaded for good */
        }
    }
    return NULL;
}

static const void* query(IXNBaseInfo* self, uint32_t code, const uint32_t* value) {
    static const uint32_t system[284 / sizeof(uint32_t)] = {284, 10, 0, 19045};
    return code == 0x200100 && *value == 1 ? system : NULL;
}

static const struct IXModuleRegistryTable registryTable = {.unknown = ORV_UNKNOWN,
                                                           .resolve = resolve};
static const struct IXNBaseInfoTable infoTable = {.unknown = ORV_UNKNOWN, .query = query};
static const IUnknownTable unknownTable = ORV_UNKNOWN;
static IXModuleRegistry registry = {&registryTable};
static IXNBaseInfo info = {&infoTable};
static const IUnknownTable* held[] = {&unknownTable, &unknownTable, &unknownTable};

const struct OrvOffer orvOffers[] = {
    {{0x62C4D866, 0xAC50, 0x4A39, {0xB2, 0xEC, 0xCA, 0x50, 0xE5, 0xAC, 0x94, 0xCD}}, &registry},
    {{0xBE29AE26, 0xD1F3, 0x4E58, {0x84, 0x3D, 0x5D, 0x0A, 0x48, 0x5D, 0xFE, 0x24}}, &info},
    {{0xDCBDC082, 0x7349, 0x4FB8, {0x88, 0x50, 0x35, 0x04, 0xCB, 0x47, 0x7C, 0x72}}, &held[0]},
    {{0x52203844, 0x735C, 0x447B, {0xAC, 0xBC, 0x73, 0x45, 0x63, 0x37, 0x67, 0x2C}}, &held[1]},
    {{0xFC588690, 0x8589, 0x4EDA, {0xBB, 0xB4, 0x2E, 0x41, 0x96, 0x4C, 0xB5, 0x80}}, &held[2]},
    {{0, 0, 0, {0}}, NULL},
};
