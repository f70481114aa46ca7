#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <new>
#include <vector>

#include "ObjectAccess.h"
#include "OrmakParser.h"
#include "Values.h"
#include "../files/CanonicalPath.h"
#include "../files/ObjectCache.h"
#include "../language/TreeReader.h"
#include "../objects/DataTypes.h"
#include "../objects/ObjectStatement.h"
#include "../session/Session.h"

namespace ormak {

const AccessWords kInsertWords = {"inserting data into", "inserting data into", "direct write"};
const AccessWords kSelectWords = {"reading data from", "reading data into", "direct read"};

namespace {

/* An undefined stride or block. */
constexpr hsize_t kUndefined = (hsize_t)-1;

H5S_seloper_t operation(int token) {
    switch (token) {
    case OR_KEYWORD: return H5S_SELECT_OR;
    case AND_KEYWORD: return H5S_SELECT_AND;
    case XOR_KEYWORD: return H5S_SELECT_XOR;
    case NOTA_KEYWORD: return H5S_SELECT_NOTA;
    default: return H5S_SELECT_NOTB;
    }
}

/* A coordinate or start below 0 counts from the end of its dimension. */
hsize_t from_end(long long value, hsize_t dimension) {
    return value < 0 ? dimension + (hsize_t)value : (hsize_t)value;
}

int unsigned_flag(bool is_signed, int flag) { return is_signed ? flag : flag << 1; }

} // namespace

const char *ObjectAccess::kind_word() const {
    if (object_type_ == ORMAK_DATASET) return "dataset";
    if (object_type_ == ORMAK_ATTRIBUTE) return "attribute";
    return "object";
}

std::string ObjectAccess::message(const char *word) const {
    return std::string("Error when ") + words_.action + " " + word + " \"%s\"";
}

int ObjectAccess::fail(int status, const char *word, const char *cause) const {
    return ObjectMessage(message(word)).fail(status, name, cause);
}

int ObjectAccess::open_parent(const char *path) {
    std::string parent(path);
    parent.erase(parent.rfind('/') + 1);
    object = H5Oopen(current_file->file_id, parent.c_str(), property_link_access_list);
    return object.valid() ? ORMAK_SUCCESS : -1;
}

ObjectAccess::~ObjectAccess() {
    /* What came from the cache, or went into it, stays open there. */
    if (held_) {
        object.release();
        dataset.release();
        attribute.release();
        dataspace.release();
        data_type_id.release();
        owned_memory_type_.release();
    }
}

void ObjectAccess::take(CachedObject &entry) {
    held_ = &entry;
    type = entry.type;
    object = entry.object;
    dataset = entry.dataset;
    attribute = entry.attribute;
    dataspace = entry.dataspace;
    data_type_id = entry.data_type_id;
    owned_memory_type_ = entry.owned_memory_type;
    memory_type = entry.memory_type;
    data_type = entry.data_type;
    size = entry.size;
    dimensions.assign(entry.dimensions, (size_t)entry.rank);
}

/* Keeps what was just opened, unless it lies in another file than the one in use (reached
   through an external link): held open, it would keep that file open too. */
void ObjectAccess::keep() {
    char here[ORMAK_TEXT_SIZE], there[ORMAK_TEXT_SIZE];
    hid_t opened = type == ORMAK_DATASET ? dataset.get() : attribute.get();
    ssize_t length = H5Fget_name(current_file->file_id, here, sizeof here);
    if (length <= 0 || length >= (ssize_t)sizeof here || H5Fget_name(opened, there, sizeof there) != length ||
        strcmp(here, there) != 0)
        return;
    CachedObject entry;
    entry.file = current_file;
    entry.file_id = current_file->file_id;
    entry.object_type = object_type_;
    strcpy(entry.path, path_);
    entry.type = type;
    entry.object = object;
    entry.dataset = dataset;
    entry.attribute = attribute;
    entry.dataspace = dataspace;
    entry.data_type_id = data_type_id;
    entry.memory_type = memory_type;
    entry.owned_memory_type = owned_memory_type_;
    entry.data_type = data_type;
    entry.size = size;
    entry.rank = (int)dimensions.size();
    std::copy(dimensions.begin(), dimensions.end(), entry.dimensions);
    entry.nbit_then_scaleoffset = -1;
    entry.memory_space = -1;
    entry.used = 0;
    held_ = object_cache::keep(entry);
}

int ObjectAccess::resolve(const char *object_name) {
    name = object_name;
    char *path = path_;
    if (!canonical_path(object_name, path)) return fail(ORMAK_ERROR_UNKNOWN, kind_word(), " as its path is too long");
    if (cached_) {
        if (CachedObject *entry = object_cache::find(current_file, path, object_type_)) {
            take(*entry);
            return ORMAK_SUCCESS;
        }
    }
    const bool root = object_name_list_count == 0;
    if (!root) attribute_name_ = object_name_list[object_name_list_count - 1];
    hid_t file = current_file->file_id;
    auto opening_failed = [&] { return ormak::fail(ORMAK_ERROR_UNKNOWN, "Error when opening object \"%s\"", name); };
    auto attribute_of_parent = [&](const char *missing_word) {
        if (root) return fail(ORMAK_ERROR_NOT_FOUND, missing_word, " as it does not exist");
        if (open_parent(path) != ORMAK_SUCCESS) return opening_failed();
        if (H5Aexists(object, attribute_name_.c_str()) > 0) {
            type = ORMAK_ATTRIBUTE;
            return ORMAK_SUCCESS;
        }
        return fail(ORMAK_ERROR_NOT_FOUND, missing_word, " as it does not exist");
    };

    if (object_type_ == ORMAK_ATTRIBUTE) {
        if (!root && open_parent(path) != ORMAK_SUCCESS) {
            std::string parent(path);
            parent.erase(parent.rfind('/') + 1);
            H5L_info_t link;
            if (H5Lget_info(file, parent.c_str(), &link, property_link_access_list) >= 0 &&
                (link.type == H5L_TYPE_SOFT || link.type == H5L_TYPE_EXTERNAL))
                return ormak::fail(ORMAK_ERROR_DANGLING_LINK, "Error when opening object \"%s\" as it is a dangling link",
                                   name);
            return opening_failed();
        }
        if (!root && H5Aexists(object, attribute_name_.c_str()) > 0) {
            type = ORMAK_ATTRIBUTE;
            return ORMAK_SUCCESS;
        }
        return fail(ORMAK_ERROR_NOT_FOUND, "attribute", " as it does not exist");
    }
    if (H5Lexists(file, path, property_link_access_list) > 0 || root) {
        H5O_info_t info;
        if (H5Oget_info_by_name2(file, path, &info, H5O_INFO_BASIC, property_link_access_list) < 0)
            return info_failure(path, name);
        if (info.type == H5O_TYPE_DATASET) {
            type = ORMAK_DATASET;
            return ORMAK_SUCCESS;
        }
        if (object_type_ == ORMAK_DATASET) return fail(ORMAK_ERROR_UNEXPECTED_TYPE, "object", " as it is not a dataset");
        /* A group may share its name with an attribute of its parent: the attribute is meant. */
        if (!root && open_parent(path) == ORMAK_SUCCESS && H5Aexists(object, attribute_name_.c_str()) > 0) {
            type = ORMAK_ATTRIBUTE;
            return ORMAK_SUCCESS;
        }
        return fail(ORMAK_ERROR_UNEXPECTED_TYPE, "object", " as it is neither a dataset nor an attribute");
    }
    if (object_type_ == ORMAK_DATASET) return fail(ORMAK_ERROR_NOT_FOUND, "dataset", " as it does not exist");
    return attribute_of_parent("object");
}

int ObjectAccess::open(bool chunked, hid_t access_list) {
    auto no_information = [&](const char *word) {
        return ormak::fail(ORMAK_ERROR_UNKNOWN, "Error when getting information about %s \"%s\"", word, name);
    };
    int status = ORMAK_SUCCESS;
    /* Direct chunk access never goes through the cache (see the executors). */
    if (held_) return ORMAK_SUCCESS;
    if (type == ORMAK_DATASET) {
        dataset = H5Dopen2(current_file->file_id, path_, access_list);
        if (!dataset.valid()) return ormak::fail(ORMAK_ERROR_UNKNOWN, "Error when opening dataset \"%s\"", name);
        if (chunked) {
            creation_list = H5Dget_create_plist(dataset);
            if (!creation_list.valid()) return no_information("object");
            if (H5Pget_layout(creation_list) != H5D_CHUNKED)
                return fail(ORMAK_ERROR_UNEXPECTED_STORAGE_TYPE, "object",
                            (std::string(" as ") + words_.direct + " does not support storage type that is not chunked").c_str());
        }
        dataspace = H5Dget_space(dataset);
        data_type_id = H5Dget_type(dataset);
    } else {
        attribute = H5Aopen(object, attribute_name_.c_str(), H5P_DEFAULT);
        if (!attribute.valid()) return ormak::fail(ORMAK_ERROR_UNKNOWN, "Error when opening attribute \"%s\"", name);
        dataspace = H5Aget_space(attribute);
        data_type_id = H5Aget_type(attribute);
    }
    if (!dataspace.valid() || !data_type_id.valid()) return no_information(kind_word());
    int rank = H5Sget_simple_extent_ndims(dataspace);
    if (rank < 0) return no_information(kind_word());
    dimensions.assign((size_t)rank, 0);
    if (rank > 0 && H5Sget_simple_extent_dims(dataspace, dimensions.data(), nullptr) < 0)
        return no_information(kind_word());
    if (chunked) {
        chunk_dimensions.assign((size_t)std::max(rank, 1), 0);
        if (H5Pget_chunk(creation_list, rank, chunk_dimensions.data()) < 0) return no_information("object");
    }
    if ((status = map_type()) != ORMAK_SUCCESS) return status;
    /* Only an object that opened completely is kept. */
    if (cached_) keep();
    return ORMAK_SUCCESS;
}

hid_t ObjectAccess::memory_space(hsize_t elements) {
    if (!held_) {
        owned_memory_space_ = H5Screate_simple(1, &elements, nullptr);
        return owned_memory_space_;
    }
    /* A held object keeps one, so a statement run again on it makes none. */
    hsize_t current = 0;
    hid_t &space = held_->memory_space;
    if (space >= 0 && (H5Sget_simple_extent_dims(space, &current, nullptr) != 1 || current != elements)) {
        if (H5Sset_extent_simple(space, 1, &elements, nullptr) < 0) {
            H5Sclose(space);
            space = -1;
        }
    }
    if (space < 0) space = H5Screate_simple(1, &elements, nullptr);
    return space;
}

bool ObjectAccess::passes_nbit_then_scaleoffset() {
    /* A dataset's filters never change, so the answer is kept with it. */
    if (held_ && held_->nbit_then_scaleoffset >= 0) return held_->nbit_then_scaleoffset == 1;
    Handle list(H5Pclose, H5Dget_create_plist(dataset));
    bool nbit = false, scaleoffset = false;
    for (int i = 0; list.valid() && i < H5Pget_nfilters(list); i++) {
        unsigned flags, values[32];
        size_t count = 32;
        H5Z_filter_t filter = H5Pget_filter2(list, (unsigned)i, &flags, &count, values, 0, nullptr, nullptr);
        nbit = nbit || filter == H5Z_FILTER_NBIT;
        scaleoffset = scaleoffset || filter == H5Z_FILTER_SCALEOFFSET;
    }
    if (held_ && list.valid()) held_->nbit_then_scaleoffset = nbit && scaleoffset ? 1 : 0;
    return nbit && scaleoffset;
}

int ObjectAccess::map_type() {
    hid_t t = data_type_id;
    size = (int)H5Tget_size(t);
    switch (H5Tget_class(t)) {
    case H5T_INTEGER: {
        bool is_signed = H5Tget_sign(t) != H5T_SGN_NONE;
        data_type = unsigned_flag(is_signed, size == 1   ? ORMAK_TINYINT
                                             : size == 2 ? ORMAK_SMALLINT
                                             : size == 4 ? ORMAK_INT
                                                         : ORMAK_BIGINT);
        break;
    }
    case H5T_FLOAT: data_type = size == 4 ? ORMAK_FLOAT : ORMAK_DOUBLE; break;
    case H5T_STRING:
        if (H5Tis_variable_str(t) > 0) {
            data_type = ORMAK_VARCHAR;
            size = 1;
        } else {
            data_type = ORMAK_CHAR;
        }
        break;
    case H5T_OPAQUE: data_type = ORMAK_OPAQUE; break;
    case H5T_VLEN: {
        Handle super(H5Tclose, H5Tget_super(t));
        static const struct { hid_t little, big; int flag; } bases[] = {
            {H5T_STD_I8LE, H5T_STD_I8BE, ORMAK_VARTINYINT},       {H5T_STD_U8LE, H5T_STD_U8BE, ORMAK_UNSIGNED_VARTINYINT},
            {H5T_STD_I16LE, H5T_STD_I16BE, ORMAK_VARSMALLINT},    {H5T_STD_U16LE, H5T_STD_U16BE, ORMAK_UNSIGNED_VARSMALLINT},
            {H5T_STD_I32LE, H5T_STD_I32BE, ORMAK_VARINT},         {H5T_STD_U32LE, H5T_STD_U32BE, ORMAK_UNSIGNED_VARINT},
            {H5T_STD_I64LE, H5T_STD_I64BE, ORMAK_VARBIGINT},      {H5T_STD_U64LE, H5T_STD_U64BE, ORMAK_UNSIGNED_VARBIGINT},
            {H5T_IEEE_F32LE, H5T_IEEE_F32BE, ORMAK_VARFLOAT},     {H5T_IEEE_F64LE, H5T_IEEE_F64BE, ORMAK_VARDOUBLE},
        };
        data_type = -1;
        for (const auto &base : bases)
            if (H5Tequal(super, base.little) > 0 || H5Tequal(super, base.big) > 0) {
                data_type = base.flag;
                break;
            }
        if (data_type == -1) break;
        size = member_width(data_type);
        break;
    }
    default: data_type = -1;
    }
    if (data_type == -1) {
        std::string text = std::string("Error when ") + words_.unsupported + " " + kind_word() + " \"%s\"";
        return ObjectMessage(text).fail(ORMAK_ERROR_NOT_SUPPORTED, name, " as data type is not supported");
    }
    memory_type = data_type_id;
    if (is_fixed_numeric(data_type)) {
        memory_type = _ormak_get_data_type(data_type, -1);
    } else if (is_variable_numeric(data_type)) {
        owned_memory_type_ = _ormak_get_data_type(data_type, -1);
        memory_type = owned_memory_type_.get();
    }
    return ORMAK_SUCCESS;
}

int ObjectAccess::select(pANTLR3_BASE_TREE object_selection, bool parallel) {
    pANTLR3_BASE_TREE slabs = tree::slot(object_selection, 2);
    pANTLR3_BASE_TREE point_list = tree::slot(object_selection, 4);
    const char *either = object_type_ == -1 ? "object" : nullptr;
    if (type == ORMAK_ATTRIBUTE) {
        if (tree::count(slabs) > 0)
            return fail(ORMAK_ERROR_NOT_SUPPORTED, either ? either : "attribute",
                        " as hyperslab selection does not support attributes");
        if (tree::count(point_list) > 0)
            return fail(ORMAK_ERROR_NOT_SUPPORTED, either ? either : "attribute",
                        " as point selection does not support attributes");
    }
    int status = ORMAK_SUCCESS;
    if (type == ORMAK_DATASET && tree::count(slabs) > 0) {
        status = hyperslabs(slabs, tree::slot(object_selection, 3));
    } else if (type == ORMAK_DATASET && tree::count(point_list) > 0) {
        status = points(point_list);
    } else if (parallel && mpi_size > 0) {
        /* A collective statement without a selection writes or reads nothing on any rank. */
        selection = 0;
        if (H5Sselect_none(dataspace) < 0)
            return fail(ORMAK_ERROR_UNKNOWN, either ? either : "dataset", " as hyperslab selection is invalid");
    }
    if (status != ORMAK_SUCCESS) return status;
    if (selection == -1) {
        long long elements = 1;
        for (hsize_t d : dimensions) elements *= (long long)d;
        count = (int)elements;
    } else {
        count = (int)H5Sget_select_npoints(dataspace);
    }
    return ORMAK_SUCCESS;
}

int ObjectAccess::hyperslabs(pANTLR3_BASE_TREE slabs, pANTLR3_BASE_TREE operators) {
    const size_t rank = dimensions.size();
    const char *either = object_type_ == -1 ? "object" : "dataset";
    auto invalid = [&] { return fail(ORMAK_ERROR_UNKNOWN, either, " as hyperslab selection is invalid"); };
    for (int j = 0; j < tree::count(slabs); j++) {
        pANTLR3_BASE_TREE slab = tree::child(slabs, j);
        hsize_t start[ORMAK_MAX_DIMENSIONS], stride[ORMAK_MAX_DIMENSIONS], count_list[ORMAK_MAX_DIMENSIONS],
            block[ORMAK_MAX_DIMENSIONS];
        std::fill(start, start + rank, 0);
        std::fill(stride, stride + rank, kUndefined);
        std::fill(count_list, count_list + rank, 1);
        std::fill(block, block + rank, kUndefined);
        size_t position = 0;
        int field = 0;
        for (int i = 0; i < tree::count(slab) && position < rank; i++) {
            pANTLR3_BASE_TREE node = tree::child(slab, i);
            int token = tree::type(node);
            if (token == INTEGER_NUMBER_KEYWORD) {
                long long value = atoi(tree::text(node));
                selection = 0;
                if (field == 0) {
                    start[position] = from_end(value, dimensions[position]);
                    if (start[position] >= dimensions[position])
                        return ObjectMessage(message("dataset"))
                            .fail(ORMAK_ERROR_UNKNOWN, name, " as hyperslab selection is invalid");
                } else if (field == 1) {
                    stride[position] = (hsize_t)value;
                } else if (field == 2) {
                    count_list[position] = (hsize_t)value;
                } else {
                    block[position] = (hsize_t)value;
                }
                /* The colon behind a field is passed with it; a comma ends the dimension. */
                if (field < 3 && tree::type(tree::child(slab, i + 1)) == COLON_KEYWORD) i++;
                field++;
            } else if (token == COLON_KEYWORD) {
                field++;
            } else {
                field = 0;
                position++;
            }
        }
        for (size_t k = 0; k < rank; k++) {
            if (block[k] == kUndefined) {
                /* A count of 0 leaves the block undefined: nothing can be selected so. */
                if (count_list[k] == 0) return invalid();
                block[k] = (dimensions[k] - start[k]) / count_list[k];
            }
            if (stride[k] == kUndefined || stride[k] < block[k]) stride[k] = block[k];
            if (count_list[k] > 0 && start[k] + (count_list[k] - 1) * stride[k] + block[k] > dimensions[k])
                return invalid();
        }
        H5S_seloper_t op = j == 0 ? H5S_SELECT_SET : operation(tree::type(tree::child(operators, j - 1)));
        if (H5Sselect_hyperslab(dataspace, op, start, stride, count_list, block) < 0)
            return invalid();
    }
    return ORMAK_SUCCESS;
}

int ObjectAccess::points(pANTLR3_BASE_TREE list) {
    const size_t rank = dimensions.size();
    const int n = tree::count(list);
    const char *either = object_type_ == -1 ? "object" : "dataset";
    std::vector<hsize_t> coordinates;
    try {
        coordinates.assign((size_t)n * rank, 0);
    } catch (const std::bad_alloc &) {
        return fail(ORMAK_ERROR_NOT_ENOUGH_MEMORY, either, " as there is not enough memory available");
    }
    selection = 0;
    for (int i = 0; i < n; i++) {
        pANTLR3_BASE_TREE point = tree::child(list, i);
        for (size_t k = 0; k < rank && (int)k < tree::count(point); k++) {
            hsize_t coordinate = from_end(atoi(tree::text(tree::child(point, (int)k))), dimensions[k]);
            if (coordinate >= dimensions[k]) return fail(ORMAK_ERROR_UNKNOWN, either, " as point selection is invalid");
            coordinates[(size_t)i * rank + k] = coordinate;
        }
    }
    if (H5Sselect_elements(dataspace, H5S_SELECT_SET, (size_t)n, coordinates.data()) < 0)
        return fail(ORMAK_ERROR_UNKNOWN, either, " as point selection is invalid");
    return ORMAK_SUCCESS;
}

int ObjectAccess::chunk_offset(pANTLR3_BASE_TREE object_selection) {
    pANTLR3_BASE_TREE numbers = tree::child(tree::slot(object_selection, 4), 0);
    offset.assign(dimensions.size(), 0);
    for (size_t k = 0; k < dimensions.size(); k++) {
        if ((int)k >= tree::count(numbers)) break;
        long long n = atoi(tree::text(tree::child(numbers, (int)k)));
        long long chunk = (long long)chunk_dimensions[k], dimension = (long long)dimensions[k];
        if (n >= 0) {
            long long at = n * chunk;
            if (at >= dimension)
                return ObjectMessage(message("dataset"))
                    .fail(ORMAK_ERROR_INVALID_VALUE, name, " as chunk number is not lower than dimension");
            offset[k] = (hsize_t)at;
        } else {
            long long rest = dimension % chunk;
            long long at = (rest == 0 ? dimension : dimension + chunk - rest) + n * chunk;
            if (at < 0)
                return ObjectMessage(message("dataset"))
                    .fail(ORMAK_ERROR_INVALID_VALUE, name, " as chunk number is not equal to or greater than 0");
            offset[k] = (hsize_t)at;
        }
    }
    return ORMAK_SUCCESS;
}

} // namespace ormak
