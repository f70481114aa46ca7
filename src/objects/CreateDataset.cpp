/* CREATE DATASET: one definition (type, dimensions, layout, filters, fill value, initial
   values) built once and given to every dataset of the statement. Everything that can be
   checked without a file is checked before the first file is touched. */
#include <string.h>

#include <string>
#include <vector>

#include "ChunkShape.h"
#include "DataTypes.h"
#include "ElementType.h"
#include "ObjectStatement.h"
#include "../OrmakExecutors.h"
#include "../language/TreeReader.h"
#include "../session/Handle.h"
#include "../session/Session.h"
#include "../transfer/InputRedirecting.h"
#include "../transfer/Values.h"

namespace {

using ormak::fail;

/* The statement's arguments, gathered so that its stages can share them. */
struct Request {
    pANTLR3_BASE_TREE dataset_list;
    int dataset_truncate, storage_allocation, data_type;
    pANTLR3_BASE_TREE compound;
    int dataset_endianness;
    std::vector<hsize_t> dimensions, maxima;
    int dataset_extendible, char_set;
    const char *tag_value;
    pANTLR3_BASE_TREE fill_list;
    int fill_undefined, storage_type;
    std::vector<hsize_t> chunk_sizes;
    int attribute_order, attribute_storage, attribute_max_compact, attribute_min_dense;
    int nbit, nbit_precision, nbit_offset, scaleoffset, scaleoffset_value, shuffle, zlib, zlib_level, fletcher32;
    pANTLR3_BASE_TREE data_list, input_redirecting;
    int programming_language;
    const char *first;
};

bool is_integer(int data_type) {
    int fixed = ormak::fixed_of(data_type);
    return ormak::is_fixed_numeric(fixed) && fixed != ORMAK_FLOAT && fixed != ORMAK_DOUBLE;
}
bool has_filter(const Request &r) {
    return r.nbit == 0 || r.scaleoffset == 0 || r.shuffle == 0 || r.zlib == 0 || r.fletcher32 == 0;
}

/* What the checks settle and the definition is built of. */
struct Definition {
    int compound_size = 0;              /* what the member check adds up */
    ormak::InputClause input;
    ormak::Handle list{H5Pclose};
    ormak::ElementType element;          /* type0, and the native form of its values */
    ormak::Handle nbit_type{H5Tclose};   /* type1: the stored type under the n-bit filter */
    ormak::Handle space{H5Sclose};
    std::vector<hsize_t> space_dimensions;
    int count = 1;                       /* elements of the dataspace */
    ormak::InputBuffer fill;
    ormak::InputBuffer data;

    hid_t stored_type() const { return nbit_type.valid() ? nbit_type.get() : element.type; }
};

/* Stage one: checks that need no file, in the order that decides which message is seen. */
int check(const Request &r, Definition &d) {
    const char *name = r.first;
    if (r.storage_type == ORMAK_CHUNKED)
        for (hsize_t size : r.chunk_sizes)
            if (size == (hsize_t)-2)
                return fail(ORMAK_ERROR_INVALID_VALUE,
                            "Error when creating dataset \"%s\" as chunk storage dimension is not equal to or greater than 1",
                            name);
    int status;
    if (r.data_type == ORMAK_COMPOUND) {
        status = _ormak_check_compound_member_names(name, ORMAK_DATASET, ormak::tree::child(r.compound, 0), &d.compound_size);
        if (status != ORMAK_SUCCESS) return status;
    }
    status = ormak::check_rank(r.dimensions, "dataset", name);
    if (status != ORMAK_SUCCESS) return status;
    for (size_t i = 0; i < r.dimensions.size(); i++) {
        if (r.dimensions[i] == (hsize_t)-2)
            return fail(ORMAK_ERROR_INVALID_VALUE,
                        "Error when creating dataset \"%s\" as dimension is not equal to or greater than 0", name);
        if (r.dataset_extendible == 0 && r.maxima[i] == (hsize_t)-2)
            return fail(ORMAK_ERROR_INVALID_VALUE,
                        "Error when creating dataset \"%s\" as extendible dimension is not equal to or greater than dimension",
                        name);
    }
    status = ormak::check_type_options(r.data_type, r.char_set, r.tag_value, "dataset", name);
    if (status != ORMAK_SUCCESS) return status;
    if (r.attribute_storage == 0 && r.attribute_max_compact < 0)
        return fail(ORMAK_ERROR_INVALID_VALUE,
                    "Error when creating dataset \"%s\" as attribute storage max compact is not equal to or greater than 0",
                    name);
    if (r.attribute_storage == 0 && r.attribute_min_dense < 0)
        return fail(ORMAK_ERROR_INVALID_VALUE,
                    "Error when creating dataset \"%s\" as attribute storage min density is not equal to or greater than 0",
                    name);
    const bool text = ormak::is_text_type(r.data_type) || r.data_type == ORMAK_VARCHAR;
    if (r.nbit == 0 && text)
        return fail(ORMAK_ERROR_UNEXPECTED_DATA_TYPE,
                    "Error when setting n-bit filter of dataset \"%s\" as data type is neither an integer nor floating-point",
                    name);
    if (r.scaleoffset == 0 && text)
        return fail(ORMAK_ERROR_UNEXPECTED_DATA_TYPE,
                    "Error when setting scale-offset filter of dataset \"%s\" as data type is neither an integer nor "
                    "floating-point",
                    name);
    if (r.scaleoffset == 0 && r.scaleoffset_value < 0)
        return fail(ORMAK_ERROR_INVALID_VALUE,
                    "Error when creating dataset \"%s\" as scale-offset value is not equal to or greater than 0", name);
    if (r.zlib == 0 && (r.zlib_level < 0 || r.zlib_level > 9))
        return fail(ORMAK_ERROR_INVALID_VALUE, "Error when creating dataset \"%s\" as ZLIB filter level is not between 0 and 9",
                    name);
    status = d.input.decode(r.input_redirecting, name, ORMAK_DATASET, r.data_list);
    if (status != ORMAK_SUCCESS) return status;
    /* HDF5's scale-offset filter overruns its buffer on what the n-bit filter packs: such a
       dataset can be defined, but nothing may pass through the two. */
    if (r.nbit == 0 && r.scaleoffset == 0 && (d.input.input_type != -1 || r.storage_allocation == ORMAK_EARLY))
        return fail(ORMAK_ERROR_NOT_SUPPORTED,
                    "Error when creating dataset \"%s\" as data can not pass the n-bit filter followed by the scale-offset "
                    "filter",
                    name);
    return ormak::check_compound_values(r.data_type, d.input.input_type != -1 || r.fill_list, "dataset", name);
}

int call_failed(const char *what, const char *name) {
    return fail(ORMAK_ERROR_UNKNOWN, "Error when setting %s to create dataset \"%s\"", what, name);
}

/* The dataspace: a text type's last dimension is its size, and no dimension means one element. */
int build_space(const Request &r, Definition &d) {
    d.space_dimensions = ormak::space_dimensions(r.data_type, r.dimensions);
    std::vector<hsize_t> maxima;
    /* A single value, as a text type's lone dimension, has no maximum. */
    bool single = r.dimensions.empty() || (r.dimensions.size() == 1 && ormak::is_text_type(r.data_type));
    if (!single && r.dataset_extendible == 0)
        maxima.assign(r.maxima.begin(), r.maxima.begin() + (long)d.space_dimensions.size());
    int status = ormak::element_count(d.space_dimensions, d.input.input_type != -1, "dataset", r.first, d.count);
    if (status != ORMAK_SUCCESS) return status;
    d.space = H5Screate_simple((int)d.space_dimensions.size(), d.space_dimensions.data(),
                               maxima.empty() ? nullptr : maxima.data());
    return d.space.valid() ? ORMAK_SUCCESS : call_failed("dataspace", r.first);
}

int set_fill_value(const Request &r, Definition &d) {
    if (r.fill_undefined == 0) {
        H5Pset_fill_value(d.list, d.element.type, nullptr);
        return ORMAK_SUCCESS;
    }
    if (r.fill_list == nullptr) return ORMAK_SUCCESS;
    if (d.fill.literal_element(r.data_type, d.element.size, r.fill_list) != ORMAK_SUCCESS)
        return fail(ORMAK_ERROR_NOT_ENOUGH_MEMORY,
                    "Error when setting fill value for dataset \"%s\" as there is not enough memory available", r.first);
    if (H5Pset_fill_value(d.list, d.element.memory, d.fill.data()) < 0)
        return fail(ORMAK_ERROR_UNKNOWN, "Error when setting fill value for dataset \"%s\"", r.first);
    return ORMAK_SUCCESS;
}

int set_layout(const Request &r, Definition &d) {
    const char *name = r.first;
    if (r.storage_type == ORMAK_COMPACT && H5Pset_layout(d.list, H5D_COMPACT) < 0)
        return call_failed("compact storage type", name);
    bool chunked = r.storage_type == ORMAK_CHUNKED ||
                   (r.storage_type == -1 && (r.dataset_extendible == 0 || has_filter(r)));
    if (!chunked) return ORMAK_SUCCESS;
    std::vector<hsize_t> chunk;
    if (r.dimensions.empty() || (r.dimensions.size() == 1 && ormak::is_text_type(r.data_type))) {
        chunk.assign(1, 1);
    } else if (!r.chunk_sizes.empty()) {
        std::vector<hsize_t> maxima;
        if (r.dataset_extendible == 0) maxima.assign(r.maxima.begin(), r.maxima.begin() + (long)d.space_dimensions.size());
        chunk = ormak::explicit_chunk(r.chunk_sizes, d.space_dimensions, maxima);
    } else {
        chunk = ormak::automatic_chunk(d.space_dimensions, d.element.size);
    }
    if (H5Pset_chunk(d.list, (int)chunk.size(), chunk.data()) < 0) return call_failed("chunked storage type", name);
    return ORMAK_SUCCESS;
}

/* The filters, in the order of the pipeline. */
int set_filters(const Request &r, Definition &d) {
    const char *name = r.first;
    if (r.nbit == 0) {
        hid_t base = _ormak_get_data_type(r.data_type, r.dataset_endianness);
        ormak::Handle owned_base(H5Tclose, ormak::is_fixed_numeric(r.data_type) ? -1 : base);
        d.nbit_type = H5Tcopy(base);
        if (!d.nbit_type.valid() || H5Tset_precision(d.nbit_type, (size_t)r.nbit_precision) < 0 ||
            H5Tset_offset(d.nbit_type, (size_t)r.nbit_offset) < 0 || H5Pset_nbit(d.list) < 0)
            return fail(ORMAK_ERROR_UNKNOWN, "Error when setting N-bit filter to create dataset \"%s\"", name);
    }
    if (r.scaleoffset == 0 &&
        H5Pset_scaleoffset(d.list, is_integer(r.data_type) ? H5Z_SO_INT : H5Z_SO_FLOAT_DSCALE, r.scaleoffset_value) < 0)
        return fail(ORMAK_ERROR_UNKNOWN, "Error when setting scale-offset filter to create dataset \"%s\"", name);
    if (r.shuffle == 0 && H5Pset_shuffle(d.list) < 0)
        return fail(ORMAK_ERROR_UNKNOWN, "Error when setting shuffle filter to create dataset \"%s\"", name);
    if (r.zlib == 0 && H5Pset_deflate(d.list, (unsigned)r.zlib_level) < 0)
        return fail(ORMAK_ERROR_UNKNOWN, "Error when setting ZLIB filter to create dataset \"%s\"", name);
    if (r.fletcher32 == 0 && H5Pset_fletcher32(d.list) < 0)
        return fail(ORMAK_ERROR_UNKNOWN, "Error when setting fletcher32 filter to create dataset \"%s\"", name);
    return ORMAK_SUCCESS;
}

/* Stage two: the definition, built once for all datasets of the statement. */
int define(const Request &r, Definition &d) {
    const char *name = r.first;
    d.list = H5Pcreate(H5P_DATASET_CREATE);
    if (!d.list.valid()) return fail(ORMAK_ERROR_UNKNOWN, "Error when creating dataset \"%s\"", name);
    if (r.storage_allocation != -1) {
        H5D_alloc_time_t time = r.storage_allocation == ORMAK_EARLY         ? H5D_ALLOC_TIME_EARLY
                                : r.storage_allocation == ORMAK_INCREMENTAL ? H5D_ALLOC_TIME_INCR
                                                                            : H5D_ALLOC_TIME_LATE;
        if (H5Pset_alloc_time(d.list, time) < 0)
            return fail(ORMAK_ERROR_UNKNOWN, "Error when setting storage allocation to create dataset \"%s\"", name);
    }
    int status;
    const ormak::ElementRequest element{r.data_type, r.compound, r.dataset_endianness, r.char_set, r.tag_value,
                                        r.dimensions};
    if ((status = d.element.build(element, d.compound_size, "dataset", name)) != ORMAK_SUCCESS) return status;
    if ((status = build_space(r, d)) != ORMAK_SUCCESS) return status;
    if ((status = set_fill_value(r, d)) != ORMAK_SUCCESS) return status;
    if (r.attribute_order != -1 && H5Pset_attr_creation_order(d.list, r.attribute_order == ORMAK_TRACKED ? 1u : 3u) < 0)
        return fail(ORMAK_ERROR_UNKNOWN, "Error when setting attribute order %s to create dataset \"%s\"",
                    r.attribute_order == ORMAK_TRACKED ? "tracked" : "indexed", name);
    if (r.attribute_storage == 0 &&
        H5Pset_attr_phase_change(d.list, (unsigned)r.attribute_max_compact, (unsigned)r.attribute_min_dense) < 0)
        return fail(ORMAK_ERROR_UNKNOWN, "Error when setting attribute storage to create dataset \"%s\"", name);
    if ((status = set_layout(r, d)) != ORMAK_SUCCESS) return status;
    return set_filters(r, d);
}

/* Stage three, one item: the dataset, then its values. */
int create_one(const Request &r, Definition &d, const ormak::ObjectItem &item) {
    const ormak::ObjectMessage message("Error when creating dataset \"%s\"");
    const ormak::ObjectMessage writing("Error when inserting data into dataset \"%s\"");
    const char *name = item.object_name;
    if (item.file_name == nullptr && d.input.input_type != -1 && current_file->parallel == 0 &&
        (ormak::is_variable_numeric(r.data_type) || r.data_type == ORMAK_VARCHAR))
        return message.fail(ORMAK_ERROR_NOT_SUPPORTED, name,
                            " as parallel HDF5 library does not support writing variable-length data types in parallel");
    std::string path;
    int status = ormak::prepare_new_object(name, r.dataset_truncate, H5P_DEFAULT, message, path);
    if (status != ORMAK_SUCCESS) return status;
    ormak::Handle dataset(H5Dclose, H5Dcreate2(current_file->file_id, path.c_str(), d.stored_type(), d.space,
                                                H5P_DEFAULT, d.list, property_dataset_access_list1));
    if (!dataset.valid()) return message.fail_call(name);
    if (flush_status != -1 && _ormak_flush(flush_status) != ORMAK_SUCCESS) return message.fail_call(name);
    if (d.input.input_type == -1) return ORMAK_SUCCESS;
    /* The source is read once, for the first dataset, and serves them all. */
    if (item.index == 0) {
        const std::vector<hsize_t> &dimensions = d.space_dimensions;
        status = d.data.fill(d.input, r.data_type, d.count, d.element.size, -1, dimensions.data(), (int)dimensions.size(),
                             r.data_list, r.programming_language);
        if (status != ORMAK_SUCCESS) return status;
    }
    if (!d.data.empty() && H5Dwrite(dataset, d.element.memory, H5S_ALL, H5S_ALL, H5P_DEFAULT, d.data.data()) < 0)
        return writing.fail_call(name);
    return ORMAK_SUCCESS;
}

} // namespace

extern "C" int ormak_create_dataset(pANTLR3_BASE_TREE dataset_list, int dataset_truncate, int storage_allocation,
                                    int data_type, pANTLR3_BASE_TREE compound, int dataset_endianness,
                                    hsize_t *dataset_dimension_list, int dataset_dimension_count,
                                    hsize_t *extendible_dimension_list, int dataset_extendible, int char_set,
                                    const char *tag_value, pANTLR3_BASE_TREE fill_list, int fill_undefined,
                                    int storage_type, hsize_t *storage_dimension_list, int storage_dimension_count,
                                    int attribute_order, int attribute_storage, int attribute_max_compact,
                                    int attribute_min_dense, int nbit, int nbit_precision, int nbit_offset,
                                    int scaleoffset, int scaleoffset_value, int shuffle, int zlib, int zlib_level,
                                    int fletcher32, pANTLR3_BASE_TREE data_list, pANTLR3_BASE_TREE input_redirecting,
                                    int programming_language) {
    int dimension_count = dataset_dimension_list ? dataset_dimension_count : 0;
    int chunk_count = storage_dimension_list ? storage_dimension_count : 0;
    Request r{dataset_list, dataset_truncate, storage_allocation, data_type, compound, dataset_endianness,
              std::vector<hsize_t>(dataset_dimension_list, dataset_dimension_list + dimension_count),
              std::vector<hsize_t>(), dataset_extendible, char_set, tag_value, fill_list, fill_undefined,
              storage_type, std::vector<hsize_t>(storage_dimension_list, storage_dimension_list + chunk_count),
              attribute_order, attribute_storage, attribute_max_compact, attribute_min_dense, nbit, nbit_precision,
              nbit_offset, scaleoffset, scaleoffset_value, shuffle, zlib, zlib_level, fletcher32, data_list,
              input_redirecting, programming_language, ormak::tree_first_object_name(dataset_list)};
    if (dataset_extendible == 0 && extendible_dimension_list)
        r.maxima.assign(extendible_dimension_list, extendible_dimension_list + dimension_count);
    else
        r.dataset_extendible = -1;

    int status;
    {
        Definition d;
        status = check(r, d);
        if (status == ORMAK_SUCCESS) status = define(r, d);
        if (status == ORMAK_SUCCESS) {
            const ormak::ObjectMessage message("Error when creating dataset \"%s\"");
            status = ormak::for_each_object(dataset_list, message,
                                            [&](const ormak::ObjectItem &item) { return create_one(r, d, item); });
        }
    }
    return ormak::trace("ormak_create_dataset", status,
                        {{"dataset_list", (const void *)dataset_list},
                         {"dataset_truncate", dataset_truncate},
                         {"storage_allocation", storage_allocation},
                         {"data_type", data_type},
                         {"compound", (const void *)compound},
                         {"dataset_endianness", dataset_endianness},
                         {"dataset_dimension_list", (const void *)dataset_dimension_list},
                         {"dataset_dimension_count", dataset_dimension_count},
                         {"extendible_dimension_list", (const void *)extendible_dimension_list},
                         {"dataset_extendible", dataset_extendible},
                         {"char_set", char_set},
                         {"tag_value", tag_value},
                         {"fill_list", (const void *)fill_list},
                         {"fill_undefined", fill_undefined},
                         {"storage_type", storage_type},
                         {"storage_dimension_list", (const void *)storage_dimension_list},
                         {"storage_dimension_count", storage_dimension_count},
                         {"attribute_order", attribute_order},
                         {"attribute_storage", attribute_storage},
                         {"attribute_max_compact", attribute_max_compact},
                         {"attribute_min_dense", attribute_min_dense},
                         {"nbit", nbit},
                         {"nbit_precision", nbit_precision},
                         {"nbit_offset", nbit_offset},
                         {"scaleoffset", scaleoffset},
                         {"scaleoffset_value", scaleoffset_value},
                         {"shuffle", shuffle},
                         {"zlib", zlib},
                         {"zlib_level", zlib_level},
                         {"fletcher32", fletcher32},
                         {"data_list", (const void *)data_list},
                         {"input_redirecting", (const void *)input_redirecting},
                         {"programming_language", programming_language}});
}
