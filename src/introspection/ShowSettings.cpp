/* SHOW statements of the settings of files (library bounds, caches, MPI atomicity), and
   SHOW FILE VALIDITY. */
#include <errno.h>
#include <stdio.h>
#include <sys/stat.h>

#include "ShowFrame.h"
#include "../OrmakExecutors.h"
#include "../files/FileNames.h"
#include "../language/TreeReader.h"

namespace tree = ormak::tree;

namespace {

/* A bound as the language tells it. */
int bound_word(H5F_libver_t bound) {
    if (bound == H5F_LIBVER_EARLIEST) return ORMAK_EARLIEST;
    if (bound == H5F_LIBVER_LATEST) return ORMAK_LATEST;
    return -1;
}

} // namespace

extern "C" {

int ormak_show_library_bounds(int object_type, int parameter_type, pANTLR3_BASE_TREE post_processing_list,
                              pANTLR3_BASE_TREE output_redirecting, int programming_language) {
    ormak::ShowFrame frame(post_processing_list, output_redirecting, programming_language);
    const bool in_use = object_type != -1;
    char memory_message[ORMAK_TEXT_SIZE * 2];
    int status = frame.decode();
    H5F_libver_t low = H5F_LIBVER_EARLIEST, high = H5F_LIBVER_LATEST;
    if (status == ORMAK_SUCCESS && in_use && current_file == nullptr) {
        status = ormak::fail(ORMAK_ERROR_NOT_OPEN, "Error when showing library bounds as no file is in use");
    } else if (status == ORMAK_SUCCESS &&
               H5Pget_libver_bounds(in_use ? current_file->property_access_list : property_file_access_list, &low,
                                    &high) < 0) {
        status = in_use ? ormak::fail(ORMAK_ERROR_UNKNOWN, "Error when getting library bounds of file \"%s\"",
                                      current_file->file_name)
                        : ormak::fail(ORMAK_ERROR_UNKNOWN, "Error when getting library bounds");
    }
    if (status == ORMAK_SUCCESS) {
        if (in_use)
            snprintf(memory_message, sizeof memory_message,
                     "Error when showing library bounds of file \"%s\" as there is not enough memory available",
                     current_file->file_name);
        else
            snprintf(memory_message, sizeof memory_message,
                     "Error when showing library bounds as there is not enough memory available");
        status = frame.begin(ORMAK_INT, parameter_type == -1 ? 2 : 1, memory_message);
    }
    if (status == ORMAK_SUCCESS && parameter_type != 1) status = frame.add_int(bound_word(low));
    if (status == ORMAK_SUCCESS && parameter_type != 0) status = frame.add_int(bound_word(high));
    if (status == ORMAK_SUCCESS) status = frame.deliver();
    return frame.finish("ormak_show_library_bounds", status,
                        {{"object_type", object_type}, {"parameter_type", parameter_type}});
}

int ormak_show_cache(int object_type, int parameter_type, pANTLR3_BASE_TREE post_processing_list,
                     pANTLR3_BASE_TREE output_redirecting, int programming_language) {
    ormak::ShowFrame frame(post_processing_list, output_redirecting, programming_language);
    const char *what = object_type == ORMAK_FILE      ? "file cache"
                       : object_type == ORMAK_DATASET ? "dataset cache"
                                                      : "cache";
    char memory_message[ORMAK_TEXT_SIZE];
    snprintf(memory_message, sizeof memory_message,
             "Error when showing %s parameters as there is not enough memory available", what);
    size_t slots = 0, size = 0;
    double preemption = 0.0;
    int status = frame.decode();
    if (status == ORMAK_SUCCESS) {
        herr_t got;
        if (object_type == ORMAK_DATASET) {
            got = H5Pget_chunk_cache(property_dataset_access_list0, &slots, &size, &preemption);
        } else if (object_type == ORMAK_FILE) {
            got = H5Pget_cache(property_file_access_list, nullptr, &slots, &size, &preemption);
        } else if (current_file == nullptr) {
            status = ormak::fail(ORMAK_ERROR_NOT_OPEN, "Error when showing cache parameters as no file is in use");
            got = 0;
        } else {
            got = H5Pget_cache(current_file->property_access_list, nullptr, &slots, &size, &preemption);
        }
        if (got < 0) status = ormak::fail(ORMAK_ERROR_UNKNOWN, "Error when getting %s parameters", what);
    }
    if (status == ORMAK_SUCCESS) {
        switch (parameter_type) {
        case 0:
        case 1:
            /* One count, in its low 32 bits. */
            status = frame.begin(ORMAK_INT, 1, memory_message);
            if (status == ORMAK_SUCCESS) status = frame.add_int((int)(uint32_t)(parameter_type == 0 ? slots : size));
            break;
        case 2:
            status = frame.begin(ORMAK_DOUBLE, 1, memory_message);
            if (status == ORMAK_SUCCESS) status = frame.add_double(preemption);
            break;
        default:
            status = frame.begin(ORMAK_DOUBLE, 3, memory_message);
            if (status == ORMAK_SUCCESS) status = frame.add_double((double)slots);
            if (status == ORMAK_SUCCESS) status = frame.add_double((double)size);
            if (status == ORMAK_SUCCESS) status = frame.add_double(preemption);
        }
    }
    if (status == ORMAK_SUCCESS) status = frame.deliver();
    return frame.finish("ormak_show_cache", status, {{"object_type", object_type}, {"parameter_type", parameter_type}});
}

int ormak_show_atomic(int use_file, pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting,
                      int programming_language) {
    ormak::ShowFrame frame(post_processing_list, output_redirecting, programming_language);
    int status = ORMAK_SUCCESS;
    /* About the file in use, its checks come before the clause is read. */
    if (use_file == 0 && current_file == nullptr)
        status = ormak::fail(ORMAK_ERROR_NOT_OPEN,
                             "Error when showing atomicity of MPI operations as no file is in use");
    else if (use_file == 0 && current_file->parallel == -1)
        status = ormak::fail(ORMAK_ERROR_NOT_SUPPORTED,
                             "Error when showing atomicity of MPI operations as the file was not opened for parallel "
                             "operations");
    if (status == ORMAK_SUCCESS) status = frame.decode();
    if (status == ORMAK_SUCCESS)
        status = frame.begin(ORMAK_INT, 1,
                             "Error when showing atomicity of MPI operations as there is not enough memory available");
    if (status == ORMAK_SUCCESS) {
        int value = atomic_status;
        if (use_file == 0) {
            hbool_t atomic = 0;
            if (H5Fget_mpi_atomicity(current_file->file_id, &atomic) < 0)
                status = ormak::fail(ORMAK_ERROR_UNKNOWN, "Error when showing atomicity of MPI operations");
            value = atomic ? 0 : -1;
        }
        if (status == ORMAK_SUCCESS) status = frame.add_int(value);
    }
    if (status == ORMAK_SUCCESS) status = frame.deliver();
    return frame.finish("ormak_show_atomic", status, {{"use_file", use_file}});
}

int ormak_show_file_validity(pANTLR3_BASE_TREE file_list, pANTLR3_BASE_TREE post_processing_list,
                             pANTLR3_BASE_TREE output_redirecting, int programming_language) {
    ormak::ShowFrame frame(post_processing_list, output_redirecting, programming_language);
    const int count = tree::count(file_list);
    const char *first = tree::text(tree::child(file_list, 0));
    char memory_message[ORMAK_TEXT_SIZE * 2];
    snprintf(memory_message, sizeof memory_message,
             "Error when showing validity of file \"%s\" as there is not enough memory available", first ? first : "");
    int status = frame.decode();
    if (status == ORMAK_SUCCESS) status = frame.begin(ORMAK_INT, count, memory_message);
    for (int i = 0; status == ORMAK_SUCCESS && i < count; i++) {
        const char *name = tree::text(tree::child(file_list, i));
        struct stat64 info;
        if (ormak::ends_with_slash(name)) {
            status = ormak::fail(ORMAK_ERROR_UNKNOWN,
                                 "Error when showing validity of file \"%s\" as it should not end with \"/\"", name);
            break;
        }
        /* A directory does not exist for this statement. */
        if (stat64(name, &info) != 0 || !S_ISREG(info.st_mode)) {
            status = ormak::fail(ORMAK_ERROR_NOT_FOUND,
                                 "Error when showing validity of file \"%s\" as it does not exist", name);
            break;
        }
        errno = 0;
        const htri_t valid = H5Fis_hdf5(name);
        if (valid < 0) {
            const int error = errno;
            if (error == ENOENT)
                status = ormak::fail(ORMAK_ERROR_NOT_FOUND,
                                     "Error when showing validity of file \"%s\" as it does not exist", name);
            else if (error == EACCES)
                status = ormak::fail(ORMAK_ERROR_NO_ACCESS,
                                     "Error when showing validity of file \"%s\" as it is not accessible", name);
            else
                status = ormak::fail(ORMAK_ERROR_UNKNOWN, "Error when showing validity of file \"%s\"", name);
            break;
        }
        status = frame.add_int(valid > 0 ? 0 : -1);
    }
    if (status == ORMAK_SUCCESS) status = frame.deliver();
    return frame.finish("ormak_show_file_validity", status, {{"file_list", (const void *)file_list}});
}

} // extern "C"
