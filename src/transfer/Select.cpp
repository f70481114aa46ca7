/* SELECT: reads one dataset or attribute, whole, through a selection or one chunk as it is
   stored, lets post-processing reorder and cut the result, and hands it to the road out.
   A result for a memory variable that is large enough is read straight into its block. */
#include <stdlib.h>

#include <algorithm>
#include <string>
#include <vector>

#include "ObjectAccess.h"
#include "OutputRedirecting.h"
#include "Values.h"
#include "../OrmakExecutors.h"
#include "../files/FileNames.h"
#include "../files/FilesInUse.h"
#include "../files/ObjectCache.h"
#include "../language/TreeReader.h"
#include "../session/Handle.h"
#include "../session/Session.h"

#include <hdf5_hl.h>

namespace tree = ormak::tree;

namespace {

constexpr int kJava = 4;

const char *kind_word(int object_type) {
    if (object_type == ORMAK_DATASET) return "dataset";
    if (object_type == ORMAK_ATTRIBUTE) return "attribute";
    return "object";
}

int refuse(int status, const char *word, const char *name, const char *cause) {
    return ormak::fail(status, "Error when reading data from %s \"%s\"%s", word, name, cause);
}

bool is_variable(int data_type) { return ormak::is_variable_numeric(data_type) || data_type == ORMAK_VARCHAR; }

/* Bytes of one slice of a streamed result. */
constexpr long long kSlice = 16ll << 20;

/* Reads the whole dataset slice by slice along its first dimension, each slice appended to
   the binary file (the first one truncating it when the clause says so). The bytes are
   those of one read and one write of the whole. */
int stream_binary(ormak::ObjectAccess &access, const ormak::OutputClause &output, int count, hid_t transfer,
                  const char *word, int programming_language) {
    const ormak::Dimensions &dimensions = access.dimensions;
    const hsize_t rows = dimensions.empty() ? 1 : dimensions[0];
    const long long row_elements = rows ? count / (long long)rows : 0;
    const long long row_bytes = row_elements * access.size;
    const hsize_t slice_rows = (hsize_t)std::max(1ll, kSlice / std::max(row_bytes, 1ll));
    std::vector<char> slice((size_t)(std::min<hsize_t>(slice_rows, rows) * row_bytes));
    std::vector<hsize_t> start(dimensions.size(), 0), extent(dimensions.begin(), dimensions.end());
    for (hsize_t row = 0; row < rows; row += slice_rows) {
        const hsize_t taken = std::min(slice_rows, rows - row);
        start[0] = row;
        extent[0] = taken;
        const hsize_t elements = taken * (hsize_t)row_elements;
        ormak::Handle memory(H5Sclose, H5Screate_simple(1, &elements, nullptr));
        if (H5Sselect_hyperslab(access.dataspace, H5S_SELECT_SET, start.data(), nullptr, extent.data(), nullptr) < 0 ||
            H5Dread(access.dataset, access.memory_type, memory, access.dataspace, transfer, slice.data()) < 0)
            return refuse(ORMAK_ERROR_UNKNOWN, word, access.name, "");
        int status = _ormak_output_redirecting(slice.data(), access.data_type, (int)elements, access.size, 0, 8,
                                               row == 0 ? output.file_truncate : -1, output.file_name, -1, nullptr,
                                               nullptr, -1, -1, -1, -1, programming_language);
        if (status != ORMAK_SUCCESS) return status;
    }
    return ORMAK_SUCCESS;
}

/* A chunk cache parameter by its selector: the current one, the file's, the default, or the
   given value. */
template <typename T>
T cache_value(int selector, T current, T file, T built_in, T given) {
    switch (selector) {
    case 1: return file;
    case 2: return built_in;
    case 3: return given;
    default: return current;
    }
}

} // namespace

extern "C" int ormak_select(pANTLR3_BASE_TREE object_selection, int direct, int object_parallel, int object_type,
                            int cache, int cache_slots, int cache_slots_value, int cache_size, int cache_size_value,
                            int cache_preemption, double cache_preemption_value,
                            pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting,
                            int programming_language) {
    const char *word = kind_word(object_type);
    const char *file_name = tree::text(tree::child(tree::slot(object_selection, 0), 0));
    const char *name = tree::text(tree::child(object_selection, 1));
    if (name == nullptr) name = "";
    bool file_opened = false;
    int status = ORMAK_SUCCESS;

    /* Objects of the files in use are held open between statements, but not for a file that
       the statement opens itself, nor when it reads collectively, with a chunk cache of its
       own or a chunk as it is stored. A dataset held open keeps the chunk cache it was opened
       with, and HDF5 keeps what it knows of a chunk with it, which a direct transfer passes
       by: these statements close the held objects and open afresh. */
    const bool cached = file_name == nullptr && object_parallel != 0 && cache != 0 && direct != 0;
    if (cache == 0 || direct == 0) ormak::object_cache::forget_all();

    /* Everything the statement opens lives in here, and is closed before a file that the
       statement opened for the object. */
    auto run = [&]() -> int {
        ormak::OutputClause output;
        ormak::Handle access_list(H5Pclose), transfer(H5Pclose);
        ormak::ObjectAccess access(ormak::kSelectWords, object_type,
                                   cached && current_file && current_file->parallel != 0);
        ormak::ResultBuffer result;
        if (file_name) {
            int opened = _ormak_use_file(file_name, object_parallel);
            if (opened != ORMAK_SUCCESS) return opened;
            file_opened = true;
        } else if (current_file == nullptr) {
            return refuse(ORMAK_ERROR_NOT_OPEN, word, name, " as no file is in use");
        }
        if (ormak::ends_with_slash(name)) return refuse(ORMAK_ERROR_UNKNOWN, word, name, " as it should not end with \"/\"");
        if (direct == 0) {
            if (object_type == ORMAK_ATTRIBUTE)
                return refuse(ORMAK_ERROR_NOT_SUPPORTED, "object", name, " as direct read does not support attributes");
            if (tree::count(tree::slot(object_selection, 2)) > 0)
                return refuse(ORMAK_ERROR_NOT_SUPPORTED, "object", name,
                              " as direct read does not support hyperslab selections");
            if (tree::count(tree::slot(object_selection, 4)) > 1)
                return refuse(ORMAK_ERROR_NOT_SUPPORTED, "object", name,
                              " as direct read does not support point selections");
        }
        if (object_parallel == 0) {
            if (direct == 0)
                return refuse(ORMAK_ERROR_NOT_SUPPORTED, "object", name,
                              " as parallel HDF5 library does not support direct read");
            if (current_file->parallel == -1)
                return ormak::fail(ORMAK_ERROR_NOT_SUPPORTED,
                                   "Error when reading data from %s \"%s\" in parallel as the file was not opened for "
                                   "parallel operations",
                                   word, name);
        }
        if (cache == 0) {
            if (cache_slots == 0 && cache_size == 0 && cache_preemption == 0)
                return ormak::fail(ORMAK_ERROR_UNKNOWN, "Error when setting cache since no parameters were provided");
            if (cache_slots == 3 && cache_slots_value < 0)
                return ormak::fail(ORMAK_ERROR_INVALID_VALUE,
                                   "Error when setting cache since slots is not equal to or greater than 0");
            if (cache_size == 3 && cache_size_value < 0)
                return ormak::fail(ORMAK_ERROR_INVALID_VALUE,
                                   "Error when setting cache since size is not equal to or greater than 0");
            if (cache_preemption == 3 && (cache_preemption_value < 0 || cache_preemption_value > 1))
                return ormak::fail(ORMAK_ERROR_INVALID_VALUE,
                                   "Error when setting cache since preemption is not between 0 and 1");
        }
        int step = output.decode(output_redirecting);
        int count = 0;
        if (step != ORMAK_SUCCESS) return step;
        if (object_parallel == 0 && mpi_size > 0) {
            transfer = H5Pcreate(H5P_DATASET_XFER);
            if (!transfer.valid() || H5Pset_dxpl_mpio(transfer, H5FD_MPIO_COLLECTIVE) < 0)
                return ormak::fail(ORMAK_ERROR_UNKNOWN, "Error when setting data property for MPI-IO access");
        }
        if ((step = access.resolve(name)) != ORMAK_SUCCESS) return step;
        if (access.type == ORMAK_ATTRIBUTE && direct == 0)
            return refuse(ORMAK_ERROR_NOT_SUPPORTED, "object", name, " as direct read does not support attributes");
        if (access.type == ORMAK_ATTRIBUTE && object_parallel == 0)
            return refuse(ORMAK_ERROR_NOT_SUPPORTED, word, name,
                          " as parallel HDF5 library does not support writing attributes in parallel");
        if (access.type == ORMAK_DATASET && cache == 0) {
            size_t slots, size;
            double preemption;
            if (H5Pget_chunk_cache(property_dataset_access_list0, &slots, &size, &preemption) < 0)
                return ormak::fail(ORMAK_ERROR_UNKNOWN, "Error when getting cache parameters");
            slots = cache_value<size_t>(cache_slots, slots, (size_t)-1, 521, (size_t)cache_slots_value);
            size = cache_value<size_t>(cache_size, size, (size_t)-1, 1048576, (size_t)cache_size_value);
            preemption = cache_value<double>(cache_preemption, preemption, -1.0, 0.75, cache_preemption_value);
            access_list = H5Pcreate(H5P_DATASET_ACCESS);
            if (!access_list.valid() || H5Pset_chunk_cache(access_list, slots, size, preemption) < 0)
                return ormak::fail(ORMAK_ERROR_UNKNOWN, "Error when setting cache parameters for dataset \"%s\"", name);
        }
        if (access.type == ORMAK_DATASET && prefix_status == 0 && !access.held()) {
            if (!access_list.valid()) access_list = H5Pcreate(H5P_DATASET_ACCESS);
            if (!access_list.valid() || H5Pset_elink_prefix(access_list, external_link_prefix) < 0)
                return ormak::fail(ORMAK_ERROR_UNKNOWN, "Error when setting external link prefix");
        }
        if ((step = access.open(direct == 0, access_list.valid() ? access_list.get() : H5P_DEFAULT)) != ORMAK_SUCCESS)
            return step;
        if (direct == 0 && is_variable(access.data_type))
            return refuse(ORMAK_ERROR_NOT_SUPPORTED, "object", name,
                          " as direct read does not support variable-length data types");
        /* The chunk numbers are checked as a point first, then as chunks. */
        if ((step = access.select(object_selection, object_parallel == 0)) != ORMAK_SUCCESS) return step;
        count = access.count;
        if (direct == 0) {
            if ((step = access.chunk_offset(object_selection)) != ORMAK_SUCCESS) return step;
            long long chunk = 1;
            for (hsize_t d : access.chunk_dimensions) chunk *= (long long)d;
            count = (int)chunk;
        }

        /* A whole dataset bound as it is for a binary file goes in slices through one
           small buffer: a large result then costs no fresh memory. */
        if (direct != 0 && access.type == ORMAK_DATASET && access.selection == -1 && post_processing_list == nullptr &&
            output.kind() == 8 && !is_variable(access.data_type) && (long long)count * access.size > kSlice) {
            step = stream_binary(access, output, count, transfer.valid() ? transfer.get() : H5P_DEFAULT, word,
                                 programming_language);
            if (step != ORMAK_SUCCESS) return step;
            last_data_count = (uint64_t)count;
            return ORMAK_SUCCESS;
        }
        /* A memory variable given no room takes nothing: there is no read. */
        if (output.kind() == 16 && output.variable_size == 0) {
            result.adopt(nullptr, access.data_type, 0, access.size, -1);
        } else {
            if (result.prepare(output, access.data_type, count, access.size, programming_language) != ORMAK_SUCCESS)
                return refuse(ORMAK_ERROR_NOT_ENOUGH_MEMORY, word, name, " as there is not enough memory available");
            if (count > 0) {
                herr_t read;
                if (access.type == ORMAK_ATTRIBUTE) {
                    read = H5Aread(access.attribute, access.memory_type, result.data());
                } else if (direct == 0) {
                    uint32_t mask = 0;
                    read = H5DOread_chunk(access.dataset, H5P_DEFAULT, access.offset.data(), &mask, result.data());
                } else if (access.selection == -1) {
                    read = H5Dread(access.dataset, access.memory_type, H5S_ALL, H5S_ALL, H5P_DEFAULT, result.data());
                } else {
                    read = H5Dread(access.dataset, access.memory_type, access.memory_space((hsize_t)count),
                                   access.dataspace, transfer.valid() ? transfer.get() : H5P_DEFAULT, result.data());
                }
                if (read < 0) return refuse(ORMAK_ERROR_UNKNOWN, word, name, "");
                if (is_variable(access.data_type)) result.own_elements();
            }
            if (result.count() > 0 && post_processing_list) {
                step = _ormak_post_processing(post_processing_list, result.data(), access.data_type, &result.count(),
                                              access.size);
                if (step != ORMAK_SUCCESS) return step;
            }
        }
        if ((step = output.write(result, programming_language)) != ORMAK_SUCCESS) return step;
        last_data_count = (uint64_t)result.count();
        return ORMAK_SUCCESS;
    };

    status = run();
    if (file_opened) {
        int closed = _ormak_close_file();
        if (closed != ORMAK_SUCCESS) status = closed;
    }
    /* A statement run in a loop gathers no trace while debug is off. */
    if (debug_status != 0) return status;
    return ormak::trace("ormak_select", status,
                        {{"object_selection", (const void *)object_selection},
                         {"direct", direct},
                         {"object_parallel", object_parallel},
                         {"object_type", object_type},
                         {"cache", cache},
                         {"cache_slots", cache_slots},
                         {"cache_slots_value", cache_slots_value},
                         {"cache_size", cache_size},
                         {"cache_size_value", cache_size_value},
                         {"cache_preemption", cache_preemption},
                         {"cache_preemption_value", cache_preemption_value},
                         {"post_processing_list", (const void *)post_processing_list},
                         {"output_redirecting", (const void *)output_redirecting},
                         {"programming_language", programming_language}});
}
