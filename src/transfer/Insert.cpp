/* INSERT: writes values into existing datasets and attributes, whole or through a
   selection, into single chunks as they stand (DIRECTLY), or collectively over the ranks
   (PARALLEL). Each target takes the values by its own type and shape; nothing is created
   and no extent changes. */
#include <algorithm>
#include <string>

#include "InputRedirecting.h"
#include "ObjectAccess.h"
#include "Values.h"
#include "../OrmakExecutors.h"
#include "../files/FileNames.h"
#include "../files/ObjectCache.h"
#include "../language/TreeReader.h"
#include "../objects/ObjectStatement.h"
#include "../session/Handle.h"
#include "../session/Session.h"

#include <hdf5_hl.h>

namespace tree = ormak::tree;

namespace {

/* What the statement says, shared by its targets. */
struct Insert {
    int direct, direct_mask, direct_mask_value, direct_size, direct_size_value, object_parallel, object_type;
    pANTLR3_BASE_TREE data_list;
    int programming_language;
    ormak::InputClause input;
    hid_t transfer = H5P_DEFAULT; /* collective transfer under PARALLEL */
};

const char *kind_word(int object_type) {
    if (object_type == ORMAK_DATASET) return "dataset";
    if (object_type == ORMAK_ATTRIBUTE) return "attribute";
    return "object";
}

std::string insert_message(const char *word) { return std::string("Error when inserting data into ") + word + " \"%s\""; }

/* The plain message of the statement by its keyword, made once rather than per statement. */
const ormak::ObjectMessage &item_message(int object_type) {
    static const ormak::ObjectMessage messages[] = {ormak::ObjectMessage(insert_message("object")),
                                                    ormak::ObjectMessage(insert_message("dataset")),
                                                    ormak::ObjectMessage(insert_message("attribute"))};
    return messages[object_type == ORMAK_DATASET ? 1 : object_type == ORMAK_ATTRIBUTE ? 2 : 0];
}

int refuse(int status, const char *word, const char *name, const char *cause) {
    return ormak::ObjectMessage(insert_message(word)).fail(status, name, cause);
}

bool is_variable(int data_type) {
    return ormak::is_variable_numeric(data_type) || data_type == ORMAK_VARCHAR;
}

/* Checks that need no target, made once before any is touched. */
int check_statement(Insert &s, const char *first) {
    if (s.direct == 0) {
        if (s.object_type == ORMAK_ATTRIBUTE)
            return refuse(ORMAK_ERROR_NOT_SUPPORTED, "object", first, " as direct write does not support attributes");
        if (s.direct_mask == 0 && s.direct_mask_value < 0)
            return refuse(ORMAK_ERROR_INVALID_VALUE, "object", first,
                          " as direct (filter) mask is not equal to or greater than 0");
        if (s.direct_size == 0 && s.direct_size_value <= 0)
            return refuse(ORMAK_ERROR_INVALID_VALUE, "object", first, " as direct size is not greater than 0");
    }
    if (s.object_parallel == 0) {
        if (s.direct == 0)
            return refuse(ORMAK_ERROR_NOT_SUPPORTED, "object", first,
                          " as parallel HDF5 library does not support direct write");
        if (current_file && current_file->parallel == -1)
            return ormak::fail(ORMAK_ERROR_NOT_SUPPORTED,
                               "Error when inserting data into %s \"%s\" in parallel as the file was not opened for "
                               "parallel operations",
                               kind_word(s.object_type), first);
    }
    return ORMAK_SUCCESS;
}

/* One target: resolve, open, select, have the values delivered, write. */
int insert_one(Insert &s, pANTLR3_BASE_TREE target, const char *name, bool cached) {
    const char *word = kind_word(s.object_type);
    if (ormak::ends_with_slash(name))
        return refuse(ORMAK_ERROR_UNKNOWN, word, name, " as it should not end with \"/\"");
    if (s.direct == 0) {
        if (tree::count(tree::slot(target, 2)) > 0)
            return refuse(ORMAK_ERROR_NOT_SUPPORTED, "object", name, " as direct write does not support hyperslab selections");
        if (tree::count(tree::slot(target, 4)) > 1)
            return refuse(ORMAK_ERROR_NOT_SUPPORTED, "object", name, " as direct write does not support point selections");
    }
    ormak::ObjectAccess access(ormak::kInsertWords, s.object_type, cached && current_file->parallel != 0);
    int status = access.resolve(name);
    if (status != ORMAK_SUCCESS) return status;
    if (access.type == ORMAK_ATTRIBUTE && s.direct == 0)
        return refuse(ORMAK_ERROR_NOT_SUPPORTED, "object", name, " as direct write does not support attributes");
    if (access.type == ORMAK_ATTRIBUTE && s.object_parallel == 0)
        return refuse(ORMAK_ERROR_NOT_SUPPORTED, word, name,
                      " as parallel HDF5 library does not support writing attributes in parallel");
    if ((status = access.open(s.direct == 0, property_dataset_access_list1)) != ORMAK_SUCCESS) return status;
    if (s.direct == 0 && is_variable(access.data_type))
        return refuse(ORMAK_ERROR_NOT_SUPPORTED, "object", name, " as direct write does not support variable-length data types");
    /* HDF5's scale-offset filter overruns its buffer on what the n-bit filter packs, so no
       value may be written through both. */
    if (access.type == ORMAK_DATASET && s.direct != 0 && access.passes_nbit_then_scaleoffset())
        return refuse(ORMAK_ERROR_NOT_SUPPORTED, word, name,
                      " as data can not pass the n-bit filter followed by the scale-offset filter");
    if (current_file->parallel == 0 && is_variable(access.data_type))
        return refuse(ORMAK_ERROR_NOT_SUPPORTED, word, name,
                      " as parallel HDF5 library does not support writing variable-length data types in parallel");

    /* A direct write walks a value list by the chunk's dimensions, and its buffer holds at
       least what the chunk (or the given size) takes from it. */
    long long count = 0;
    size_t chunk_bytes = 0;
    if (s.direct == 0) {
        if ((status = access.chunk_offset(target)) != ORMAK_SUCCESS) return status;
        long long whole = 1, chunk = 1;
        for (hsize_t d : access.dimensions) whole *= (long long)d;
        for (hsize_t d : access.chunk_dimensions) chunk *= (long long)d;
        chunk_bytes = s.direct_size == 0 ? (size_t)s.direct_size_value : (size_t)(chunk * access.size);
        count = std::max({whole, chunk, ((long long)chunk_bytes + access.size - 1) / access.size});
    } else {
        if ((status = access.select(target, s.object_parallel == 0)) != ORMAK_SUCCESS) return status;
        count = access.count;
    }
    if (count > INT32_MAX)
        return refuse(ORMAK_ERROR_INVALID_VALUE, word, name, " as it has more than 2147483647 elements to write");

    ormak::InputBuffer values;
    if (count > 0 && (s.input.variable_size == -1 || s.input.variable_size > 0)) {
        ormak::InputClause input = s.input;
        /* No values and no FROM clause: the cursor in use. */
        if (input.input_type == -1) input.input_type = 2;
        const ormak::Dimensions &walk = s.direct == 0 ? access.chunk_dimensions : access.dimensions;
        status = values.fill(input, access.data_type, (int)count, access.size, access.selection, walk.data(),
                             (int)walk.size(), s.data_list, s.programming_language);
        if (status != ORMAK_SUCCESS) return status;
    }

    herr_t written = 0;
    errno = 0;
    if (access.type == ORMAK_ATTRIBUTE) {
        written = H5Awrite(access.attribute, access.memory_type, values.data());
    } else if (s.direct == 0) {
        uint32_t mask = s.direct_mask == 0 ? (uint32_t)s.direct_mask_value : 0;
        written = H5DOwrite_chunk(access.dataset, H5P_DEFAULT, mask, access.offset.data(), chunk_bytes, values.data());
    } else if (access.selection == -1) {
        if (count > 0 || values.data())
            written = H5Dwrite(access.dataset, access.memory_type, H5S_ALL, H5S_ALL, H5P_DEFAULT, values.data());
    } else if (count == 0) {
        /* Under PARALLEL a rank with nothing to give still takes part in the collective write. */
        if (s.object_parallel == 0 && mpi_size > 0)
            written = H5Dwrite(access.dataset, access.memory_type, H5S_ALL, access.dataspace, s.transfer, values.data());
    } else {
        written = H5Dwrite(access.dataset, access.memory_type, access.memory_space((hsize_t)count), access.dataspace,
                           s.transfer, values.data());
    }
    if (written < 0) return ormak::ObjectMessage(insert_message(word)).fail_call(name);
    return ORMAK_SUCCESS;
}

} // namespace

extern "C" int ormak_insert(pANTLR3_BASE_TREE object_selection_list, int direct, int direct_mask, int direct_mask_value,
                            int direct_size, int direct_size_value, int object_parallel, int object_type,
                            pANTLR3_BASE_TREE data_list, pANTLR3_BASE_TREE input_redirecting,
                            int programming_language) {
    Insert s{direct, direct_mask, direct_mask_value, direct_size, direct_size_value, object_parallel, object_type,
             data_list, programming_language, {}, H5P_DEFAULT};
    const char *first = ormak::tree_first_object_name(object_selection_list);
    ormak::Handle transfer(H5Pclose);
    int status = check_statement(s, first);
    if (status == ORMAK_SUCCESS) status = s.input.decode(input_redirecting, first, object_type, data_list);
    if (status == ORMAK_SUCCESS && object_parallel == 0 && mpi_size > 0) {
        transfer = H5Pcreate(H5P_DATASET_XFER);
        if (!transfer.valid() || H5Pset_dxpl_mpio(transfer, H5FD_MPIO_COLLECTIVE) < 0)
            status = ormak::fail(ORMAK_ERROR_UNKNOWN, "Error when setting data property for MPI-IO access");
        s.transfer = transfer.get();
    }
    if (status == ORMAK_SUCCESS) {
        /* Objects of the files in use are held open between statements, but not for a file
           that an item opens itself, nor when the ranks write together. A chunk written as
           it stands passes by what HDF5 keeps of the chunk with an open dataset (a held one
           would then read the chunk with the filter mask it had): direct writes close the
           held objects and open afresh. */
        if (direct == 0) ormak::object_cache::forget_all();
        status = ormak::for_each_object(
            object_selection_list, item_message(object_type),
            [&](const ormak::ObjectItem &item) {
                return insert_one(s, tree::child(object_selection_list, item.index), item.object_name,
                                  item.file_name == nullptr && object_parallel != 0 && direct != 0);
            },
            object_parallel);
    }
    transfer.reset();
    /* A statement run in a loop gathers no trace while debug is off. */
    if (debug_status != 0) return status;
    return ormak::trace("ormak_insert", status,
                        {{"object_selection_list", (const void *)object_selection_list},
                         {"direct", direct},
                         {"direct_mask", direct_mask},
                         {"direct_mask_value", direct_mask_value},
                         {"direct_size", direct_size},
                         {"direct_size_value", direct_size_value},
                         {"object_parallel", object_parallel},
                         {"object_type", object_type},
                         {"data_list", (const void *)data_list},
                         {"input_redirecting", (const void *)input_redirecting},
                         {"programming_language", programming_language}});
}
