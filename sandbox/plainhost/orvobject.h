/* COM-like objects that live as long as their module; their references are only counted. */
#ifndef PLAINHOST_ORVOBJECT_H
#define PLAINHOST_ORVOBJECT_H

#include "hostinterface.h"

/* The slots 0 to 2 of every object. */
long orvQueryInterface(void* self, const Guid* id, void** object);
unsigned long orvAddRef(void* self);
unsigned long orvRelease(void* self);
#define ORV_UNKNOWN                                                                                \
    { .QueryInterface = orvQueryInterface, .AddRef = orvAddRef, .Release = orvRelease }

/* What CreateOrvObject of this module offers; an entry without an object ends the list. */
struct OrvOffer {
    Guid id;
    void* object;
};
extern const struct OrvOffer orvOffers[];

#endif
