/* USE FILE, USE GROUP, CLOSE FILE, CLOSE GROUP, CLOSE ALL FILE: the stack of open files,
   newest on top, each with its current group. */
#include <errno.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>

#include "CanonicalPath.h"
#include "FileNames.h"
#include "FilesInUse.h"
#include "ObjectCache.h"
#include "../OrmakExecutors.h"
#include "../language/TreeReader.h"
#include "../session/Handle.h"
#include "../session/Session.h"

using ormak::fail;
namespace tree = ormak::tree;

namespace {

/* How a file is opened: what USE FILE may set, and what the open for one object keeps. */
struct OpenOptions {
    bool readonly = false;
    bool parallel = false;
    bool atomic = false;
    bool set_low_bound = false;
    H5F_libver_t low_bound = H5F_LIBVER_EARLIEST;
    bool set_cache = false;
    size_t slots = 0;
    size_t size = 0;
    double preemption = 0.0;
};

_ormak_file *find_in_use(const char *name) {
    for (_ormak_file *file = current_file; file; file = file->previous)
        if (strcmp(file->file_name, name) == 0) return file;
    return nullptr;
}

void unlink_record(_ormak_file *file) {
    if (file->next) file->next->previous = file->previous;
    if (file->previous) file->previous->next = file->next;
    if (current_file == file) current_file = file->previous;
    file->next = file->previous = nullptr;
}

void push_record(_ormak_file *file) {
    file->next = nullptr;
    file->previous = current_file;
    if (current_file) current_file->next = file;
    current_file = file;
}

/* Opens one file and puts its record on top; on failure nothing of it stays open. */
int open_file(const char *name, const OpenOptions &options) {
    if (!ormak::name_fits(name))
        return fail(ORMAK_ERROR_UNKNOWN, "Error when opening file \"%.64s...\" as its name is longer than 1023 characters",
                    name);
    if (ormak::ends_with_slash(name))
        return fail(ORMAK_ERROR_UNKNOWN, "Error when opening file \"%s\" as it should not end with \"/\"", name);

    struct stat64 info;
    if (stat64(name, &info) != 0) {
        int error = errno;
        if (error == ENOENT) return fail(ORMAK_ERROR_NOT_FOUND, "Error when opening file \"%s\" as it does not exist", name);
        if (error == EACCES)
            return fail(ORMAK_ERROR_NO_ACCESS, "Error when opening file \"%s\" as it is not accessible", name);
        return fail(ORMAK_ERROR_UNKNOWN, "Error when opening file \"%s\"", name);
    }
    if (!S_ISREG(info.st_mode))
        return fail(ORMAK_ERROR_NOT_FOUND, "Error when opening file \"%s\" as it does not exist", name);
    if (H5Fis_hdf5(name) <= 0)
        return fail(ORMAK_ERROR_INVALID_FILE, "Error when opening file \"%s\" as it is not a valid HDF5 file", name);

    _ormak_file *record = (_ormak_file *)malloc(sizeof(_ormak_file));
    if (record == nullptr)
        return fail(ORMAK_ERROR_NOT_ENOUGH_MEMORY,
                    "Error when opening file \"%s\" as there is not enough memory available", name);

    int status = ORMAK_SUCCESS;
    ormak::Handle access(H5Pclose, H5Pcopy(property_file_access_list));
    ormak::Handle file(H5Fclose);
    if (options.parallel && H5Pset_fapl_mpio(access, MPI_COMM_WORLD, MPI_INFO_NULL) < 0) {
        status = fail(ORMAK_ERROR_UNKNOWN, "Error when setting file property for MPI-IO access");
    } else if (options.set_low_bound && H5Pset_libver_bounds(access, options.low_bound, H5F_LIBVER_LATEST) < 0) {
        status = fail(ORMAK_ERROR_UNKNOWN, "Error when setting library bounds");
    } else if (options.set_cache && H5Pset_cache(access, 0, options.slots, options.size, options.preemption) < 0) {
        status = fail(ORMAK_ERROR_UNKNOWN, "Error when setting cache parameters to open file \"%s\"", name);
    } else if ((file = H5Fopen(name, options.readonly ? H5F_ACC_RDONLY : H5F_ACC_RDWR, access)) < 0) {
        status = ormak::fail_errno(errno, "Error when opening file \"%s\"", name);
    } else if (options.atomic && options.parallel && H5Fset_mpi_atomicity(file, 1) < 0) {
        status = fail(ORMAK_ERROR_UNKNOWN, "Error when setting atomicity of MPI operations");
    }
    if (status != ORMAK_SUCCESS) {
        file.reset();
        access.reset();
        free(record);
        return status;
    }

    snprintf(record->file_name, sizeof record->file_name, "%s", name);
    strcpy(record->group_name, "/");
    record->group_name_list_count = 0;
    record->parallel = options.parallel ? 0 : -1;
    record->group_id = H5Gopen2(file, "/", property_group_access_list);
    record->file_id = file.release();
    record->property_access_list = access.release();
    push_record(record);
    file_use_count++;
    return ORMAK_SUCCESS;
}

/* Closes what a record holds; the record stays in the list when the file will not close. */
int close_record(_ormak_file *file) {
    /* Objects held open would keep the file open past its close, or make the close fail
       under a strict close degree. */
    ormak::object_cache::forget(file);
    if (file->group_id >= 0) H5Gclose(file->group_id);
    file->group_id = -1;
    if (file->property_access_list >= 0) H5Pclose(file->property_access_list);
    file->property_access_list = -1;
    if (H5Fclose(file->file_id) < 0)
        return fail(ORMAK_ERROR_UNKNOWN, "Error when closing file \"%s\"", file->file_name);
    unlink_record(file);
    free(file);
    file_use_count--;
    return ORMAK_SUCCESS;
}

/* Checks and settles the cache of USE FILE: absent keeps the session's value, DEFAULT takes
   the built-in one. Selectors: 0 absent, 1 DEFAULT, 2 a value. */
int settle_cache(int cache_slots, int cache_slots_value, int cache_size, int cache_size_value, int cache_preemption,
                 double cache_preemption_value, OpenOptions &options) {
    if (cache_slots == 0 && cache_size == 0 && cache_preemption == 0)
        return fail(ORMAK_ERROR_UNKNOWN, "Error when setting cache since no parameters were provided");
    if (cache_slots == 2 && cache_slots_value < 0)
        return fail(ORMAK_ERROR_INVALID_VALUE, "Error when setting cache since slots is not equal to or greater than 0");
    if (cache_size == 2 && cache_size_value < 0)
        return fail(ORMAK_ERROR_INVALID_VALUE, "Error when setting cache since size is not equal to or greater than 0");
    if (cache_preemption == 2 && (cache_preemption_value < 0.0 || cache_preemption_value > 1.0))
        return fail(ORMAK_ERROR_INVALID_VALUE, "Error when setting cache since preemption is not between 0 and 1");
    int metadata_elements = 0;
    if (H5Pget_cache(property_file_access_list, &metadata_elements, &options.slots, &options.size,
                     &options.preemption) < 0)
        return fail(ORMAK_ERROR_UNKNOWN, "Error when getting cache parameters");
    if (cache_slots == 1) options.slots = 521;
    if (cache_slots == 2) options.slots = (size_t)cache_slots_value;
    if (cache_size == 1) options.size = 1048576;
    if (cache_size == 2) options.size = (size_t)cache_size_value;
    if (cache_preemption == 1) options.preemption = 0.75;
    if (cache_preemption == 2) options.preemption = cache_preemption_value;
    options.set_cache = true;
    return ORMAK_SUCCESS;
}

} // namespace

extern "C" {

int _ormak_use_file(const char *file_name, int file_parallel) {
    OpenOptions options;
    options.parallel = file_parallel == 0;
    options.atomic = atomic_status == 0;
    return open_file(file_name, options);
}

int _ormak_close_file(void) {
    if (current_file == nullptr) return ORMAK_SUCCESS;
    return close_record(current_file);
}

char *_ormak_show_use_group(void) { return current_file ? current_file->group_name : nullptr; }

int ormak_use_file(pANTLR3_BASE_TREE file_list, int file_readonly, int atomic, int file_parallel, int library_bounds,
                   int library_bound_low_value, int library_bound_high_value, int cache, int cache_slots,
                   int cache_slots_value, int cache_size, int cache_size_value, int cache_preemption,
                   double cache_preemption_value) {
    int status = ORMAK_SUCCESS;
    OpenOptions options;
    options.readonly = file_readonly == 0;
    options.parallel = file_parallel == 0;
    options.atomic = atomic == 0 || atomic_status == 0;

    if (library_bounds == 0 && library_bound_low_value == -1 && library_bound_high_value == -1) {
        status = fail(ORMAK_ERROR_UNKNOWN, "Error when setting library bounds since no parameters were provided");
    } else if (cache == 0) {
        status = settle_cache(cache_slots, cache_slots_value, cache_size, cache_size_value, cache_preemption,
                              cache_preemption_value, options);
    }
    if (library_bounds == 0 && library_bound_low_value != -1) {
        options.set_low_bound = true;
        options.low_bound = library_bound_low_value == ORMAK_EARLIEST ? H5F_LIBVER_EARLIEST : H5F_LIBVER_LATEST;
    }

    for (int i = 0; status == ORMAK_SUCCESS && i < tree::count(file_list); i++) {
        const char *name = tree::text(tree::child(file_list, i));
        /* A file in use already only comes back on top, as it is. */
        _ormak_file *in_use = ormak::ends_with_slash(name) ? nullptr : find_in_use(name);
        if (in_use) {
            unlink_record(in_use);
            push_record(in_use);
            continue;
        }
        status = open_file(name, options);
    }

    return ormak::trace("ormak_use_file", status,
                        {{"file_list", (const void *)file_list},
                         {"file_readonly", file_readonly},
                         {"atomic", atomic},
                         {"file_parallel", file_parallel},
                         {"library_bounds", library_bounds},
                         {"library_bound_low_value", library_bound_low_value},
                         {"library_bound_high_value", library_bound_high_value},
                         {"cache", cache},
                         {"cache_slots", cache_slots},
                         {"cache_slots_value", cache_slots_value},
                         {"cache_size", cache_size},
                         {"cache_size_value", cache_size_value},
                         {"cache_premmption", cache_preemption},
                         {"cache_preemption_value", cache_preemption_value}});
}

/* Checks that the path names a group that can be opened, following links. */
static int check_group(const char *group_name, const char *path) {
    if (H5Lexists(current_file->file_id, path, property_link_access_list) <= 0)
        return fail(ORMAK_ERROR_NOT_FOUND, "Error when opening group \"%s\" as it does not exist", group_name);
    H5O_info_t info;
    if (H5Oget_info_by_name2(current_file->group_id, path, &info, H5O_INFO_BASIC, property_link_access_list) < 0) {
        H5L_info_t link;
        if (H5Lget_info(current_file->group_id, path, &link, property_link_access_list) >= 0 &&
            (link.type == H5L_TYPE_SOFT || link.type == H5L_TYPE_EXTERNAL))
            return fail(ORMAK_ERROR_DANGLING_LINK, "Error when opening object \"%s\" as it is a dangling link",
                        group_name);
        return fail(ORMAK_ERROR_UNKNOWN, "Error when getting information about group \"%s\"", group_name);
    }
    if (info.type != H5O_TYPE_GROUP)
        return fail(ORMAK_ERROR_NOT_FOUND, "Error when opening group \"%s\" as it does not exist", group_name);
    return ORMAK_SUCCESS;
}

int ormak_use_group(const char *group_name) {
    int status = ORMAK_SUCCESS;
    char path[ORMAK_TEXT_SIZE];
    if (current_file == nullptr) {
        status = fail(ORMAK_ERROR_NOT_OPEN, "Error when opening group \"%s\" as no file is in use", group_name);
    } else if (!ormak::canonical_path(group_name, path)) {
        status = fail(ORMAK_ERROR_UNKNOWN, "Error when opening group \"%.64s...\" as its path is too long", group_name);
    } else if (strlen(path) <= 1 || (status = check_group(group_name, path)) == ORMAK_SUCCESS) {
        /* The components are read before any other name is resolved. */
        int count = object_name_list_count;
        hid_t group = H5Gopen2(current_file->group_id, path, property_group_access_list);
        if (group < 0) {
            status = fail(ORMAK_ERROR_UNKNOWN, "Error when opening group \"%s\"", group_name);
        } else {
            H5Gclose(current_file->group_id);
            current_file->group_id = group;
            for (int i = 0; i < count; i++)
                memcpy(current_file->group_name_list[i], object_name_list[i], ORMAK_TEXT_SIZE);
            current_file->group_name_list_count = count;
            snprintf(current_file->group_name, sizeof current_file->group_name, "%s", path);
        }
    }
    return ormak::trace("ormak_use_group", status, {{"group_name", group_name}});
}

int ormak_close_group(void) {
    if (current_file) {
        H5Gclose(current_file->group_id);
        strcpy(current_file->group_name, "/");
        current_file->group_name_list_count = 0;
        current_file->group_id = H5Gopen2(current_file->file_id, "/", property_group_access_list);
    }
    return ormak::trace("ormak_close_group", ORMAK_SUCCESS, {});
}

int ormak_close_file(pANTLR3_BASE_TREE file_list) {
    int status = ORMAK_SUCCESS;
    if (file_list == nullptr) {
        status = _ormak_close_file();
    } else {
        for (int i = 0; status == ORMAK_SUCCESS && i < tree::count(file_list); i++) {
            const char *name = tree::text(tree::child(file_list, i));
            if (ormak::ends_with_slash(name)) {
                status = fail(ORMAK_ERROR_UNKNOWN, "Error when closing file \"%s\" as it should not end with \"/\"", name);
            } else if (_ormak_file *file = find_in_use(name)) {
                status = close_record(file);
            } else {
                status = fail(ORMAK_ERROR_NOT_OPEN, "Error when closing file \"%s\" as it is not used", name);
            }
        }
    }
    return ormak::trace("ormak_close_file", status, {{"file_list", (const void *)file_list}});
}

int ormak_close_all_file(void) {
    int status = ORMAK_SUCCESS;
    while (current_file && status == ORMAK_SUCCESS) status = close_record(current_file);
    return ormak::trace("ormak_close_all_file", status, {});
}

} // extern "C"
