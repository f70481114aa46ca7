/* Session settings: library bounds, caches, atomicity, external link prefix, automatic
   flush and debug. All checks come before any change, so a refused SET changes nothing. */
#include <string.h>

#include "FilesInUse.h"
#include "../OrmakExecutors.h"
#include "../session/Session.h"

using ormak::fail;

namespace {

const size_t default_slots = 521;
const size_t default_size = 1048576;
const double default_preemption = 0.75;

/* One cache value by its selector: 0 keep, 1 the file's, 2 the built-in default, 3 a number. */
template <typename T>
T settle(int selector, T current, T file_value, T default_value, T given) {
    switch (selector) {
    case 1: return file_value;
    case 2: return default_value;
    case 3: return given;
    default: return current;
    }
}

/* The three lists that carry the prefix, in the order they are set. */
struct PrefixList {
    hid_t *list;
    hid_t list_class;
};

} // namespace

extern "C" {

int _ormak_flush(int flush_type) {
    if (current_file == nullptr) return ORMAK_ERROR_UNKNOWN;
    H5F_scope_t scope = flush_type == ORMAK_GLOBAL ? H5F_SCOPE_GLOBAL : H5F_SCOPE_LOCAL;
    return H5Fflush(current_file->file_id, scope) < 0 ? ORMAK_ERROR_UNKNOWN : ORMAK_SUCCESS;
}

int ormak_flush(int flush_type) {
    int status = current_file ? _ormak_flush(flush_type) : ORMAK_SUCCESS;
    return ormak::trace("ormak_flush", status, {{"flush_type", flush_type}});
}

int ormak_set_library_bounds(int bound_low_value, int bound_high_value) {
    int status = ORMAK_SUCCESS;
    H5F_libver_t low, high;
    if (bound_low_value == -1 && bound_high_value == -1) {
        status = fail(ORMAK_ERROR_UNKNOWN, "Error when setting library bounds since no parameters were provided");
    } else if (H5Pget_libver_bounds(property_file_access_list, &low, &high) < 0) {
        status = fail(ORMAK_ERROR_UNKNOWN, "Error when getting library bounds");
    } else {
        if (bound_low_value != -1) low = bound_low_value == ORMAK_EARLIEST ? H5F_LIBVER_EARLIEST : H5F_LIBVER_LATEST;
        if (bound_high_value != -1) high = H5F_LIBVER_LATEST;
        if (H5Pset_libver_bounds(property_file_access_list, low, high) < 0)
            status = fail(ORMAK_ERROR_UNKNOWN, "Error when setting library bounds");
    }
    return ormak::trace("ormak_set_library_bounds", status,
                        {{"bound_low_value", bound_low_value}, {"bound_high_value", bound_high_value}});
}

int ormak_set_cache(int object_type, int cache_slots, int cache_slots_value, int cache_size, int cache_size_value,
                    int cache_preemption, double cache_preemption_value) {
    int status = ORMAK_SUCCESS;
    bool file = object_type == ORMAK_FILE;
    const char *what = file ? "file" : "dataset";
    if (cache_slots == 0 && cache_size == 0 && cache_preemption == 0) {
        status = fail(ORMAK_ERROR_UNKNOWN, "Error when setting %s cache since no parameters were provided", what);
    } else if (cache_slots == 3 && cache_slots_value < 0) {
        status = fail(ORMAK_ERROR_INVALID_VALUE, "Error when setting %s cache since slots is not equal to or greater than 0",
                      what);
    } else if (cache_size == 3 && cache_size_value < 0) {
        status = fail(ORMAK_ERROR_INVALID_VALUE, "Error when setting %s cache since size is not equal to or greater than 0",
                      what);
    } else if (cache_preemption == 3 && (cache_preemption_value < 0.0 || cache_preemption_value > 1.0)) {
        status = fail(ORMAK_ERROR_INVALID_VALUE, "Error when setting %s cache since preemption is not between 0 and 1",
                      what);
    } else if (file && (cache_slots == 1 || cache_size == 1 || cache_preemption == 1)) {
        /* Only a dataset's cache can take its numbers from the file's. */
        status = fail(ORMAK_ERROR_UNKNOWN, "Error when setting file cache since FILE applies to the dataset cache only");
    } else if (file) {
        int elements;
        size_t slots, size;
        double preemption;
        if (H5Pget_cache(property_file_access_list, &elements, &slots, &size, &preemption) < 0) {
            status = fail(ORMAK_ERROR_UNKNOWN, "Error when getting file cache parameters");
        } else {
            slots = settle<size_t>(cache_slots, slots, slots, default_slots, (size_t)cache_slots_value);
            size = settle<size_t>(cache_size, size, size, default_size, (size_t)cache_size_value);
            preemption = settle<double>(cache_preemption, preemption, preemption, default_preemption,
                                        cache_preemption_value);
            if (H5Pset_cache(property_file_access_list, elements, slots, size, preemption) < 0)
                status = fail(ORMAK_ERROR_UNKNOWN, "Error when setting file cache parameters");
        }
    } else {
        size_t slots, size;
        double preemption;
        if (H5Pget_chunk_cache(property_dataset_access_list0, &slots, &size, &preemption) < 0) {
            status = fail(ORMAK_ERROR_UNKNOWN, "Error when getting dataset cache parameters");
        } else {
            slots = settle<size_t>(cache_slots, slots, H5D_CHUNK_CACHE_NSLOTS_DEFAULT, default_slots,
                                   (size_t)cache_slots_value);
            size = settle<size_t>(cache_size, size, H5D_CHUNK_CACHE_NBYTES_DEFAULT, default_size,
                                  (size_t)cache_size_value);
            preemption = settle<double>(cache_preemption, preemption, H5D_CHUNK_CACHE_W0_DEFAULT, default_preemption,
                                        cache_preemption_value);
            if (H5Pset_chunk_cache(property_dataset_access_list0, slots, size, preemption) < 0)
                status = fail(ORMAK_ERROR_UNKNOWN, "Error when setting dataset cache parameters");
        }
    }
    return ormak::trace("ormak_set_cache", status,
                        {{"object_type", object_type},
                         {"cache_slots", cache_slots},
                         {"cache_slots_value", cache_slots_value},
                         {"cache_size", cache_size},
                         {"cache_size_value", cache_size_value},
                         {"cache_preemption", cache_preemption},
                         {"cache_preemption_value", cache_preemption_value}});
}

int ormak_set_atomic(int use_file, int atomic_set) {
    int status = ORMAK_SUCCESS;
    if (use_file != 0) {
        atomic_status = atomic_set;
    } else if (current_file == nullptr) {
        status = fail(ORMAK_ERROR_NOT_OPEN, "Error when setting atomicity of MPI operations as no file is in use");
    } else if (current_file->parallel != 0) {
        status = fail(ORMAK_ERROR_NOT_SUPPORTED,
                      "Error when setting atomicity of MPI operations as the file was not opened for parallel operations");
    } else if (H5Fset_mpi_atomicity(current_file->file_id, atomic_set == 0 ? 1 : 0) < 0) {
        status = fail(ORMAK_ERROR_UNKNOWN, "Error when setting atomicity of MPI operations");
    }
    return ormak::trace("ormak_set_atomic", status, {{"use_file", use_file}, {"atomic_set", atomic_set}});
}

int ormak_set_external_link_prefix(const char *prefix_value) {
    int status = ORMAK_SUCCESS;
    PrefixList lists[] = {{&property_group_access_list, H5P_GROUP_ACCESS},
                          {&property_dataset_access_list1, H5P_DATASET_ACCESS},
                          {&property_link_access_list, H5P_LINK_ACCESS}};
    if (prefix_value == nullptr) {
        external_link_prefix[0] = '\0';
        prefix_status = -1;
        for (PrefixList &entry : lists) {
            if (*entry.list != 0) H5Pclose(*entry.list);
            *entry.list = 0;
        }
    } else if (strlen(prefix_value) >= sizeof external_link_prefix) {
        status = fail(ORMAK_ERROR_UNKNOWN,
                      "Error when setting external link prefix as it is longer than 1023 characters");
    } else {
        strcpy(external_link_prefix, prefix_value);
        prefix_status = 0;
        for (PrefixList &entry : lists) {
            if (*entry.list == 0) *entry.list = H5Pcreate(entry.list_class);
            if (*entry.list < 0 || H5Pset_elink_prefix(*entry.list, external_link_prefix) < 0) {
                if (*entry.list > 0) H5Pclose(*entry.list);
                *entry.list = 0;
                external_link_prefix[0] = '\0';
                prefix_status = -1;
                status = fail(ORMAK_ERROR_UNKNOWN, "Error when setting external link prefix");
                break;
            }
        }
    }
    return ormak::trace("ormak_set_external_link_prefix", status, {{"prefix_value", prefix_value}});
}

int ormak_set_flush(int flush_type, int flush_set) {
    flush_status = flush_set == 0 ? flush_type : -1;
    return ormak::trace("ormak_set_flush", ORMAK_SUCCESS, {{"flush_type", flush_type}, {"flush_set", flush_set}});
}

int ormak_set_debug(int debug_set) {
    if (debug_set == 0) H5Eset_auto2(H5E_DEFAULT, error_function, error_data);
    else H5Eset_auto2(H5E_DEFAULT, nullptr, nullptr);
    debug_status = debug_set;
    return ormak::trace("ormak_set_debug", ORMAK_SUCCESS, {{"debug_set", debug_set}});
}

} // extern "C"
