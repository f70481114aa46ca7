/* What SELECT and INSERT resolved and opened, held open between statements, so that a
   statement run again and again on the same object skips the look-ups and the open.

   An entry belongs to one file record and one canonical path (and the keyword the name was
   resolved under), so a change of the current file or group only leads to other entries.
   Anything that could change what a name means or how an object opens forgets them all
   before it runs (the dispatch table decides); closing a file forgets its entries before
   the file closes, so no held object keeps a closed file open or makes its close fail. */
#ifndef ORMAK_OBJECT_CACHE_H
#define ORMAK_OBJECT_CACHE_H

#include <hdf5.h>

#include "../OrmakPrivateStructures.h"

namespace ormak {

/* One resolved and opened dataset or attribute. Its identifiers belong to the cache. */
struct CachedObject {
    const _ormak_file *file;   /* null while the slot is free */
    hid_t file_id;
    int object_type;           /* the statement's keyword: -1, ORMAK_DATASET or ORMAK_ATTRIBUTE */
    char path[ORMAK_TEXT_SIZE];
    int type;                  /* what the name turned out to be */
    hid_t object;              /* the parent of an attribute, or -1 */
    hid_t dataset, attribute;
    /* The extent is fixed while the entry lives (ALTER DIMENSION forgets it); each statement
       sets its own selection on it. */
    hid_t dataspace;
    hid_t data_type_id;
    hid_t memory_type;         /* native form, the stored type, or owned_memory_type */
    hid_t owned_memory_type;   /* a variable-length native type made for it, or -1 */
    int data_type, size, rank;
    hsize_t dimensions[ORMAK_MAX_DIMENSIONS];
    int nbit_then_scaleoffset; /* -1 not asked yet, 0 no, 1 yes */
    /* The flat run of elements that a selection is read into or written from, made at the
       first selection and resized as the next one needs; -1 until then. */
    hid_t memory_space;
    unsigned long long used;   /* tick of the last use: the least recent goes first */
};

namespace object_cache {

/* Entries a session holds at most. */
constexpr int kCapacity = 8;

/* The entry for this name of this file, marked as used; null when there is none. */
CachedObject *find(const _ormak_file *file, const char *path, int object_type);
/* Keeps a filled entry, closing the least recently used one when all slots are taken;
   from now on its identifiers are the cache's. */
CachedObject *keep(const CachedObject &filled);
/* Closes and forgets the entries of one file record, or of all. */
void forget(const _ormak_file *file);
void forget_all();
/* Entries held now. */
int size();

} // namespace object_cache
} // namespace ormak

#endif
