#include "orvobject.h"

#include <string.h>

#include "plain.h"

static const long noInterface = (int32_t)0x80004002U;
static atomic_long references; /* on all objects of the module */

long plainReferences(void) {
    return atomic_load(&references);
}

unsigned long orvAddRef(void* self) {
    return (unsigned long)atomic_fetch_add(&references, 1) + 1;
}

unsigned long orvRelease(void* self) {
    return (unsigned long)atomic_fetch_sub(&references, 1) - 1;
}

long orvQueryInterface(void* self, const Guid* id, void** object) {
    for (const struct OrvOffer* offer = orvOffers; offer->object; ++offer) {
        if (offer->object == self && memcmp(&offer->id, id, sizeof *id) == 0) {
            orvAddRef(self);
            *object = self;
            return 0;
        }
    }
    *object = NULL;
    return noInterface;
}

long CreateOrvObject(const Guid* id, void** object) {
    for (const struct OrvOffer* offer = orvOffers; offer->object; ++offer) {
        if (orvQueryInterface(offer->object, id, object) == 0) {
            return 0;
        }
    }
    return noInterface;
}
