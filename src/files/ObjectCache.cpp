#include <string.h>

#include "ObjectCache.h"

namespace ormak {
namespace object_cache {
namespace {

/* Plain storage with no destructor: at unload HDF5 closes what is left itself, and nothing
   may call into it after that. */
CachedObject slots[kCapacity];
unsigned long long tick = 0;

/* Whether a record is still one of the files in use. Closing a file forgets its entries
   first, so a record that left the list otherwise went with a session brought up anew, and
   its identifiers with the library's previous run: they are not closed, as they may stand
   for other objects now. */
bool in_use(const _ormak_file *file) {
    for (const _ormak_file *record = current_file; record; record = record->previous)
        if (record == file) return true;
    return false;
}

void close(CachedObject &entry) {
    if (entry.file == nullptr) return;
    if (!in_use(entry.file)) {
        entry.file = nullptr;
        return;
    }
    if (entry.memory_space >= 0) H5Sclose(entry.memory_space);
    if (entry.owned_memory_type >= 0) H5Tclose(entry.owned_memory_type);
    if (entry.data_type_id >= 0) H5Tclose(entry.data_type_id);
    if (entry.dataspace >= 0) H5Sclose(entry.dataspace);
    if (entry.attribute >= 0) H5Aclose(entry.attribute);
    if (entry.dataset >= 0) H5Dclose(entry.dataset);
    if (entry.object >= 0) H5Oclose(entry.object);
    entry.file = nullptr;
}

} // namespace

CachedObject *find(const _ormak_file *file, const char *path, int object_type) {
    for (CachedObject &entry : slots) {
        /* The file identifier too, should a record ever be made again where a closed one was. */
        if (entry.file == file && entry.file_id == file->file_id && entry.object_type == object_type &&
            strcmp(entry.path, path) == 0) {
            entry.used = ++tick;
            return &entry;
        }
    }
    return nullptr;
}

CachedObject *keep(const CachedObject &filled) {
    CachedObject *slot = &slots[0];
    for (CachedObject &entry : slots) {
        if (entry.file == nullptr) {
            slot = &entry;
            break;
        }
        if (entry.used < slot->used) slot = &entry;
    }
    close(*slot);
    *slot = filled;
    slot->used = ++tick;
    return slot;
}

void forget(const _ormak_file *file) {
    for (CachedObject &entry : slots)
        if (entry.file == file) close(entry);
}

void forget_all() {
    for (CachedObject &entry : slots) close(entry);
}

int size() {
    int held = 0;
    for (const CachedObject &entry : slots) held += entry.file != nullptr;
    return held;
}

} // namespace object_cache
} // namespace ormak
