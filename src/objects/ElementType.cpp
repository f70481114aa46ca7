#include <limits.h>

#include <algorithm>

#include "ElementType.h"
#include "DataTypes.h"
#include "../language/TreeReader.h"
#include "../session/Session.h"
#include "../transfer/Values.h"

namespace ormak {

std::vector<hsize_t> space_dimensions(int data_type, const std::vector<hsize_t> &dimensions) {
    size_t rank = dimensions.size();
    if (is_text_type(data_type)) rank = rank >= 2 ? rank - 1 : 0;
    if (rank == 0) return {1};
    return std::vector<hsize_t>(dimensions.begin(), dimensions.begin() + (long)rank);
}

int check_rank(const std::vector<hsize_t> &dimensions, const char *kind, const char *name) {
    if (dimensions.size() > ORMAK_MAX_DIMENSIONS)
        return fail(ORMAK_ERROR_INVALID_VALUE, "Error when creating %s \"%s\" as it has more than %d dimensions", kind, name,
                    ORMAK_MAX_DIMENSIONS);
    return ORMAK_SUCCESS;
}

int check_type_options(int data_type, int char_set, const char *tag_value, const char *kind, const char *name) {
    if (char_set != -1 && !is_string_type(data_type))
        return fail(ORMAK_ERROR_UNEXPECTED_DATA_TYPE,
                    "Error when setting charset of %s \"%s\" as data type is neither char nor varchar", kind, name);
    if (tag_value && data_type != ORMAK_OPAQUE)
        return fail(ORMAK_ERROR_UNEXPECTED_DATA_TYPE, "Error when setting tag of %s \"%s\" as data type is not opaque",
                    kind, name);
    return ORMAK_SUCCESS;
}

int check_compound_values(int data_type, bool with_values, const char *kind, const char *name) {
    if (data_type == ORMAK_COMPOUND && with_values)
        return fail(ORMAK_ERROR_NOT_SUPPORTED,
                    "Error when creating %s \"%s\" as values of a compound data type are not supported", kind, name);
    return ORMAK_SUCCESS;
}

int element_count(const std::vector<hsize_t> &space_dimensions, bool with_values, const char *kind, const char *name,
                  int &count) {
    long long total = 1;
    for (hsize_t dimension : space_dimensions) {
        total = dimension > (hsize_t)INT_MAX ? (long long)INT_MAX + 1 : total * (long long)dimension;
        if (total > INT_MAX) break;
    }
    if (total > INT_MAX && with_values)
        return fail(ORMAK_ERROR_INVALID_VALUE, "Error when creating %s \"%s\" as its values would be more than %d elements",
                    kind, name, INT_MAX);
    count = (int)std::min<long long>(total, INT_MAX);
    return ORMAK_SUCCESS;
}

int ElementType::build(const ElementRequest &r, int compound_size, const char *kind, const char *name) {
    auto failed = [&](const char *what) {
        return fail(ORMAK_ERROR_UNKNOWN, "Error when setting %s to create %s \"%s\"", what, kind, name);
    };
    if (r.data_type == ORMAK_COMPOUND) size = compound_size;
    else if (is_text_type(r.data_type)) size = r.dimensions.empty() ? 1 : (int)r.dimensions.back();
    else size = member_width(r.data_type);

    if (r.data_type == ORMAK_OPAQUE || r.data_type == ORMAK_COMPOUND) {
        owned_type_ = H5Tcreate(r.data_type == ORMAK_OPAQUE ? H5T_OPAQUE : H5T_COMPOUND, (size_t)size);
        type = owned_type_.get();
        if (type < 0) return failed("data type");
        hid_t compound = type;
        if (r.data_type == ORMAK_COMPOUND &&
            _ormak_create_compound(&compound, tree::child(r.compound, 0)) != ORMAK_SUCCESS)
            return failed("data type");
    } else {
        type = _ormak_get_data_type(r.data_type, r.endianness);
        /* HDF5's own numeric types are never closed. */
        if (!is_fixed_numeric(r.data_type)) owned_type_ = type;
        if (type < 0) return failed("data type");
    }
    if (r.char_set == ORMAK_UTF8 && H5Tset_cset(type, H5T_CSET_UTF8) < 0) return failed("charset");
    if (r.data_type == ORMAK_CHAR && !r.dimensions.empty() && H5Tset_size(type, (size_t)size) < 0)
        return failed("data type size");
    if (r.data_type == ORMAK_VARCHAR && H5Tset_size(type, H5T_VARIABLE) < 0) return failed("data type size");
    if (r.tag_value && H5Tset_tag(type, r.tag_value) < 0) return failed("tag");

    memory = type;
    if (is_fixed_numeric(r.data_type)) {
        memory = _ormak_get_data_type(r.data_type, -1);
    } else if (is_variable_numeric(r.data_type)) {
        owned_memory_ = _ormak_get_data_type(r.data_type, -1);
        memory = owned_memory_.get();
    }
    return memory < 0 ? failed("data type") : ORMAK_SUCCESS;
}

} // namespace ormak
