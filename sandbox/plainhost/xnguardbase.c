/* XNGuardBase.dll: which programs of the client are open. None is. */
#include "orvobject.h"
#include "plain.h"

static int instanceExists(IXNGuardBase* self, const wchar_t* name, int flag) {
    require(wcsstr(name, L".INSTANCE") != NULL && flag == 0, "an instance's name");
    return 0;
}

static const struct IXNGuardBaseTable guardTable = {.unknown = ORV_UNKNOWN,
                                                    .instanceExists = instanceExists};
static const IUnknownTable unknownTable = ORV_UNKNOWN;
static IXNGuardBase guard = {&guardTable};
static const IUnknownTable* held = &unknownTable;

const struct OrvOffer orvOffers[] = {
    {{0xED728A2F, 0x1C16, 0x41AE, {0xAB, 0x6E, 0xEA, 0x53, 0x52, 0x95, 0xDC, 0xBD}}, &guard},
    {{0x427FB576, 0xCFB6, 0x4786, {0x94, 0x0D, 0xE1, 0xD0, 0x0E, 0x55, 0x21, 0xBA}}, &held},
    {{0, 0, 0, {0}}, NULL},
};
