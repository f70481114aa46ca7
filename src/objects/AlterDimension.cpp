/* ALTER DIMENSION: changes the current sizes of chunked datasets. One list of new dimensions
   serves every dataset of the statement; each entry sets a dimension, moves it by a signed
   amount taken against that dataset's own size, or, left empty, keeps it. */
#include <stdlib.h>

#include "ObjectStatement.h"
#include "OrmakParser.h"
#include "../OrmakExecutors.h"
#include "../files/CanonicalPath.h"
#include "../files/FileNames.h"
#include "../language/TreeReader.h"
#include "../session/Handle.h"
#include "../session/Session.h"

namespace tree = ormak::tree;

namespace {

using ormak::fail;

/* One dataset's sizes: the walk changes `current` in memory only. */
struct Extent {
    int rank = 0;
    hsize_t current[ORMAK_MAX_DIMENSIONS];
    hsize_t maximum[ORMAK_MAX_DIMENSIONS];
};

/* The digits of a number token as an unsigned count; a number too large for it gives the
   largest count, which no dimension can take. */
hsize_t amount(const char *digits) { return (hsize_t)strtoull(digits, nullptr, 10); }

/* The new size that one number token asks for: "+n" and "-n" against the current size, any
   other text as it is. */
int new_size(const char *text, hsize_t current, const ormak::ObjectMessage &message, const char *name,
             hsize_t &value) {
    if (text[0] == '-') {
        hsize_t less = amount(text + 1);
        if (less > current)
            return message.fail(ORMAK_ERROR_INVALID_VALUE, name, " as new dimension is not equal to or greater than 0");
        value = current - less;
    } else if (text[0] == '+') {
        hsize_t more = amount(text + 1);
        value = more > H5S_UNLIMITED - current ? H5S_UNLIMITED : current + more;
    } else {
        value = amount(text);
    }
    return ORMAK_SUCCESS;
}

/* Walks the list over the dimensions: a number and the comma behind it fill one position, a
   lone comma keeps the dimension at its position. Entries past the rank are ignored. */
int walk(pANTLR3_BASE_TREE dimension_list, Extent &extent, const ormak::ObjectMessage &message, const char *name) {
    int count = tree::count(dimension_list);
    for (int j = 0, position = 0; j < count && position < extent.rank; j++, position++) {
        pANTLR3_BASE_TREE node = tree::child(dimension_list, j);
        if (tree::type(node) == COMMA_KEYWORD) continue;
        hsize_t value = 0;
        int status = new_size(tree::text(node), extent.current[position], message, name, value);
        if (status != ORMAK_SUCCESS) return status;
        /* An unlimited dimension can take any size that HDF5 can describe. */
        hsize_t maximum = extent.maximum[position] == H5S_UNLIMITED ? H5S_UNLIMITED - 1 : extent.maximum[position];
        if (value > maximum)
            return message.fail(ORMAK_ERROR_INVALID_VALUE, name,
                                " as new dimension is not equal to or lower than maximum dimension");
        extent.current[position] = value;
        j++;
    }
    return ORMAK_SUCCESS;
}

int alter_one(const ormak::ObjectItem &item, pANTLR3_BASE_TREE dimension_list, const ormak::ObjectMessage &message) {
    const char *name = item.object_name;
    if (ormak::ends_with_slash(name))
        return message.fail(ORMAK_ERROR_UNKNOWN, name, " as it should not end with \"/\"");
    char path[ORMAK_TEXT_SIZE];
    if (!ormak::canonical_path(name, path)) return message.fail(ORMAK_ERROR_UNKNOWN, name, " as its path is too long");
    hid_t group = current_file->group_id;
    if (H5Lexists(group, path, property_link_access_list) <= 0)
        return message.fail(ORMAK_ERROR_NOT_FOUND, name, " as it does not exist");
    H5O_info_t info;
    if (H5Oget_info_by_name2(group, path, &info, H5O_INFO_BASIC, property_link_access_list) < 0)
        return ormak::info_failure(path, name);
    if (info.type != H5O_TYPE_DATASET)
        return fail(ORMAK_ERROR_UNEXPECTED_TYPE, "Error when altering dimensions of object \"%s\" as it is not a dataset",
                    name);

    ormak::Handle dataset(H5Dclose, H5Dopen2(group, path, property_dataset_access_list1));
    if (!dataset.valid()) return fail(ORMAK_ERROR_UNKNOWN, "Error when opening dataset \"%s\"", name);
    ormak::Handle list(H5Pclose, H5Dget_create_plist(dataset));
    if (!list.valid()) return fail(ORMAK_ERROR_UNKNOWN, "Error when getting information about dataset \"%s\"", name);
    if (H5Pget_layout(list) != H5D_CHUNKED)
        return message.fail(ORMAK_ERROR_UNEXPECTED_STORAGE_TYPE, name, " as storage type is not chunked");
    ormak::Handle space(H5Sclose, H5Dget_space(dataset));
    Extent extent;
    extent.rank = space.valid() ? H5Sget_simple_extent_dims(space, extent.current, extent.maximum) : -1;
    if (extent.rank < 0)
        return fail(ORMAK_ERROR_UNKNOWN, "Error when getting information about dataset \"%s\"", name);

    int status = walk(dimension_list, extent, message, name);
    if (status != ORMAK_SUCCESS) return status;
    if (H5Dset_extent(dataset, extent.current) < 0) return message.fail_call(name);
    return ORMAK_SUCCESS;
}

} // namespace

extern "C" int ormak_alter_dimension(pANTLR3_BASE_TREE dataset_list, pANTLR3_BASE_TREE dimension_list) {
    const ormak::ObjectMessage message("Error when altering dimensions of dataset \"%s\"");
    int status = ormak::for_each_object(dataset_list, message, [&](const ormak::ObjectItem &item) {
        return alter_one(item, dimension_list, message);
    });
    return ormak::trace("ormak_alter_dimension", status,
                        {{"dataset_list", (const void *)dataset_list}, {"dimension_list", (const void *)dimension_list}});
}
