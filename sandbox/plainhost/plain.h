/* What the parts of the plain client share: the one material, and a word on what is wrong. */
#ifndef PLAINHOST_PLAIN_H
#define PLAINHOST_PLAIN_H

#include <stdatomic.h>
#include <stdbool.h>
#include <stdio.h>
#include <stdlib.h>

/* An object of which there is one has no need of its first argument. */
#pragma GCC diagnostic ignored "-Wunused-parameter"

#define OLD_VERSION "1.2.0.1500"
#define NEW_VERSION "1.3.0.1600"
#define LIBRARY_VERSION "1.3.0.77"
#define STORAGE "http://files.invalid/store"
#define QUESTIONS 5 /* of one update */
#define MATERIAL_ID "plain"
#define MATERIAL_MD5 "d5c6e5b1785231e2d0075d7300c37647"
#define MATERIAL_BYTES "plain\r\n\0\x1a\xff bytes\n" /* with some that texts do not have */

/* What xnbase.dll saw. */
struct PlainWatch {
    atomic_int openChains; /* by the log */
    int answers;
    int programs; /* of the material */
};
typedef struct PlainWatch* (*PlainWatchFn)(void);
typedef bool (*PlainDeliverFn)(void);    /* of xnbase.dll: an answer or a task, if one waits */
typedef void (*PlainTellEventsFn)(void); /* of xnuser.dll: tells each observer every event */
typedef long (*PlainReferencesFn)(void); /* of modules with COM-like objects: those held now */

/* Siblings are called from several threads. The locks are held for moments only. */
static inline void lock(atomic_flag* flag) {
    while (atomic_flag_test_and_set(flag)) {
    }
}

static inline void unlock(atomic_flag* flag) {
    atomic_flag_clear(flag);
}

/* Ends the process where the contract is broken: from there on nothing can be trusted. */
static inline void require(bool holds, const char* what) {
    if (!holds) {
        fprintf(stderr, "plainhost: broken: %s\n", what);
        fflush(NULL);
        _Exit(2);
    }
}

#endif
