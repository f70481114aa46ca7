/* Readers of the statements that define objects inside files. */
#include <stdlib.h>

#include "DefinitionReadings.h"
#include "OrmakParser.h"
#include "StatementReaders.h"
#include "TreeReader.h"
#include "../OrmakExecutors.h"

namespace ormak {

int read_create_group(pANTLR3_BASE_TREE statement, int) {
    StorageThresholds objects = read_storage_thresholds(tree::slot(statement, 3));
    StorageThresholds attributes = read_storage_thresholds(tree::slot(statement, 5));
    return ormak_create_group(tree::list(statement, 1), tree::flag(statement, 0), read_order(tree::slot(statement, 2)),
                              objects.present, objects.max_compact, objects.min_dense,
                              read_order(tree::slot(statement, 4)), attributes.present, attributes.max_compact,
                              attributes.min_dense);
}

/* SOFT or left out 0, HARD 1. */
int read_create_link(pANTLR3_BASE_TREE statement, int) {
    int link_type = tree::flag(statement, 1) == 0 && tree::choice(statement, 1) != SOFT_KEYWORD ? 1 : 0;
    return ormak_create_link(tree::list(statement, 2), tree::list(statement, 3), link_type, tree::flag(statement, 0));
}

int read_create_external_link(pANTLR3_BASE_TREE statement, int) {
    return ormak_create_external_link(tree::list(statement, 1), tree::list(statement, 2), tree::flag(statement, 0));
}

/* EARLY 1, INCREMENTAL 2, LATE 4; -1 left out. */
static int read_allocation(pANTLR3_BASE_TREE statement, int index) {
    switch (tree::choice(statement, index)) {
    case -1: return -1;
    case EARLY_KEYWORD: return ORMAK_EARLY;
    case INCREMENTAL_KEYWORD: return ORMAK_INCREMENTAL;
    default: return ORMAK_LATE;
    }
}

int read_create_dataset(pANTLR3_BASE_TREE statement, int programming_language) {
    int storage_type = -1;
    std::vector<hsize_t> chunk;
    switch (tree::choice(statement, 2)) {
    case -1: break;
    case CONTIGUOUS_KEYWORD: storage_type = ORMAK_CONTIGUOUS; break;
    case COMPACT_KEYWORD: storage_type = ORMAK_COMPACT; break;
    default:
        storage_type = ORMAK_CHUNKED;
        chunk = read_chunk_sizes(tree::child(tree::slot(statement, 2), 1));
    }
    DataTypeSlot type = read_data_type(statement, 6);
    Dimensions dimensions = read_dimensions(tree::list(statement, 8));

    pANTLR3_BASE_TREE fill_list = nullptr;
    int fill_undefined = -1;
    if (tree::flag(statement, 10) == 0) {
        if (tree::choice(statement, 10) == LIST) fill_list = tree::list(statement, 10);
        else fill_undefined = 0;
    }
    StorageThresholds attributes = read_storage_thresholds(tree::slot(statement, 12));
    pANTLR3_BASE_TREE nbit = tree::slot(statement, 13);
    pANTLR3_BASE_TREE scaleoffset = tree::slot(statement, 14);
    pANTLR3_BASE_TREE zlib = tree::slot(statement, 16);
    int zlib_level = tree::count(zlib) == 0 ? -1 : tree::count(zlib) == 1 ? 9 : atoi(tree::text(tree::child(zlib, 1)));

    return ormak_create_dataset(
        tree::list(statement, 3), tree::flag(statement, 0), read_allocation(statement, 1), type.data_type,
        type.compound, read_endianness(tree::slot(statement, 4)), dimensions.current.data(),
        (int)dimensions.current.size(), dimensions.extendible == 0 ? dimensions.maximum.data() : nullptr,
        dimensions.extendible, read_charset(tree::slot(statement, 5)), tree::name(statement, 9), fill_list,
        fill_undefined, storage_type, chunk.data(), (int)chunk.size(), read_order(tree::slot(statement, 11)),
        attributes.present, attributes.max_compact, attributes.min_dense, tree::flag(statement, 13),
        tree::count(nbit) ? atoi(tree::text(tree::child(nbit, 0))) : -1,
        tree::count(nbit) ? atoi(tree::text(tree::child(nbit, 1))) : -1, tree::flag(statement, 14),
        tree::count(scaleoffset) ? atoi(tree::text(tree::child(scaleoffset, 0))) : -1, tree::flag(statement, 15),
        tree::count(zlib) ? 0 : -1, zlib_level, tree::flag(statement, 17), tree::list(statement, 18),
        tree::list(statement, 19), programming_language);
}

/* An attribute's dimensions, a number_list: each number as written, the mark -2 for a
   negative one. */
static std::vector<hsize_t> read_attribute_dimensions(pANTLR3_BASE_TREE number_list) {
    std::vector<hsize_t> dimensions;
    for (int i = 0; i < tree::count(number_list); i++) {
        long long size = atoll(tree::text(tree::child(number_list, i)));
        dimensions.push_back(size < 0 ? (hsize_t)-2 : (hsize_t)size);
    }
    return dimensions;
}

int read_create_attribute(pANTLR3_BASE_TREE statement, int programming_language) {
    DataTypeSlot type = read_data_type(statement, 4);
    std::vector<hsize_t> dimensions = read_attribute_dimensions(tree::list(statement, 6));
    return ormak_create_attribute(tree::list(statement, 1), tree::flag(statement, 0), type.data_type, type.compound,
                                  read_endianness(tree::slot(statement, 2)),
                                  dimensions.empty() ? nullptr : dimensions.data(), (int)dimensions.size(),
                                  read_charset(tree::slot(statement, 3)), tree::name(statement, 7),
                                  tree::list(statement, 8), tree::list(statement, 9), programming_language);
}

int read_alter_dimension(pANTLR3_BASE_TREE statement, int) {
    return ormak_alter_dimension(tree::list(statement, 0), tree::list(statement, 1));
}

int read_rename_object(pANTLR3_BASE_TREE statement, int) {
    return ormak_rename_object(tree::list(statement, 2), tree::list(statement, 3), read_object_type(tree::slot(statement, 1)),
                               tree::flag(statement, 0));
}

int read_copy_object(pANTLR3_BASE_TREE statement, int) {
    return ormak_copy_object(tree::list(statement, 2), tree::list(statement, 3), read_object_type(tree::slot(statement, 1)),
                             tree::flag(statement, 0));
}

/* Slots: the kind, the list, the file, the object, LIKE (the expression and the depths). */
int read_drop_object(pANTLR3_BASE_TREE statement, int) {
    const int object_type = read_object_type(tree::slot(statement, 0));
    pANTLR3_BASE_TREE list = tree::slot(statement, 1);
    if (tree::count(list) == 1) return ormak_drop_object(tree::child(list, 0), object_type);
    const char *file_name = tree::name(statement, 2);
    pANTLR3_BASE_TREE like = tree::slot(statement, 4);
    const char *object_name = tree::name(statement, 3);
    if (tree::count(like) == 0) return ormak_drop_object(nullptr, object_type);
    return ormak_drop_object_like(file_name, object_name, object_type, tree::text(tree::child(like, 0)),
                                  tree::count(like) == 1 ? nullptr : tree::child(like, 1));
}

} // namespace ormak
