#include <stdlib.h>

#include "DefinitionReadings.h"
#include "OrmakParser.h"
#include "TreeReader.h"
#include "../Ormak.h"

namespace ormak {

int read_object_type(pANTLR3_BASE_TREE slot) {
    if (tree::count(slot) == 0) return -1;
    switch (tree::type(tree::child(slot, 0))) {
    case GROUP_KEYWORD: return ORMAK_GROUP;
    case DATASET_KEYWORD: return ORMAK_DATASET;
    case ATTRIBUTE_KEYWORD:
    case AT_KEYWORD: return ORMAK_ATTRIBUTE;
    case LINK_KEYWORD: return ORMAK_SOFT_LINK;
    default: return ORMAK_EXTERNAL_LINK;
    }
}

int read_endianness(pANTLR3_BASE_TREE slot) {
    if (tree::count(slot) == 0) return -1;
    switch (tree::type(tree::child(slot, 0))) {
    case NATIVE_KEYWORD: return -1;
    case LITTLE_ENDIAN_KEYWORD: return ORMAK_LITTLE_ENDIAN;
    default: return ORMAK_BIG_ENDIAN;
    }
}

int read_charset(pANTLR3_BASE_TREE slot) {
    if (tree::count(slot) == 0) return -1;
    return tree::type(tree::child(slot, 0)) == ASCII_KEYWORD ? ORMAK_ASCII : ORMAK_UTF8;
}

int read_order(pANTLR3_BASE_TREE slot) {
    if (tree::count(slot) == 0) return -1;
    return tree::type(tree::child(slot, 0)) == TRACKED_KEYWORD ? ORMAK_TRACKED : ORMAK_INDEXED;
}

StorageThresholds read_storage_thresholds(pANTLR3_BASE_TREE slot) {
    if (tree::count(slot) == 0) return {-1, -1, -1};
    return {0, atoi(tree::text(tree::child(slot, 0))), atoi(tree::text(tree::child(slot, 1)))};
}

int data_type_flag(int token_type) {
    switch (token_type) {
    case TINYINT_KEYWORD: return ORMAK_TINYINT;
    case UNSIGNED_TINYINT_KEYWORD: return ORMAK_UNSIGNED_TINYINT;
    case SMALLINT_KEYWORD: return ORMAK_SMALLINT;
    case UNSIGNED_SMALLINT_KEYWORD: return ORMAK_UNSIGNED_SMALLINT;
    case INT_KEYWORD: return ORMAK_INT;
    case UNSIGNED_INT_KEYWORD: return ORMAK_UNSIGNED_INT;
    case BIGINT_KEYWORD: return ORMAK_BIGINT;
    case UNSIGNED_BIGINT_KEYWORD: return ORMAK_UNSIGNED_BIGINT;
    case FLOAT_KEYWORD: return ORMAK_FLOAT;
    case DOUBLE_KEYWORD: return ORMAK_DOUBLE;
    case CHAR_KEYWORD: return ORMAK_CHAR;
    case VARTINYINT_KEYWORD: return ORMAK_VARTINYINT;
    case UNSIGNED_VARTINYINT_KEYWORD: return ORMAK_UNSIGNED_VARTINYINT;
    case VARSMALLINT_KEYWORD: return ORMAK_VARSMALLINT;
    case UNSIGNED_VARSMALLINT_KEYWORD: return ORMAK_UNSIGNED_VARSMALLINT;
    case VARINT_KEYWORD: return ORMAK_VARINT;
    case UNSIGNED_VARINT_KEYWORD: return ORMAK_UNSIGNED_VARINT;
    case VARBIGINT_KEYWORD: return ORMAK_VARBIGINT;
    case UNSIGNED_VARBIGINT_KEYWORD: return ORMAK_UNSIGNED_VARBIGINT;
    case VARFLOAT_KEYWORD: return ORMAK_VARFLOAT;
    case VARDOUBLE_KEYWORD: return ORMAK_VARDOUBLE;
    case VARCHAR_KEYWORD: return ORMAK_VARCHAR;
    default: return ORMAK_OPAQUE;
    }
}

Dimensions read_dimensions(pANTLR3_BASE_TREE dimension_list) {
    const hsize_t mark = (hsize_t)-2;
    Dimensions dimensions{{}, {}, -1};
    int count = tree::count(dimension_list);
    for (int i = 0; i < count; i++) {
        pANTLR3_BASE_TREE node = tree::child(dimension_list, i);
        if (tree::type(node) != INTEGER_NUMBER_KEYWORD) {
            /* UNLIMITED alone: one element now, no limit. */
            dimensions.current.push_back(1);
            dimensions.maximum.push_back(H5S_UNLIMITED);
            dimensions.extendible = 0;
            continue;
        }
        long long size = atoll(tree::text(node));
        hsize_t current = size < 0 ? mark : (hsize_t)size;
        hsize_t maximum = current;
        if (tree::type(tree::child(dimension_list, i + 1)) == TO_KEYWORD) {
            pANTLR3_BASE_TREE limit = tree::child(dimension_list, i + 2);
            if (tree::type(limit) == INTEGER_NUMBER_KEYWORD) {
                hsize_t written = (hsize_t)atoll(tree::text(limit));
                maximum = written >= current ? written : mark;
            } else {
                maximum = H5S_UNLIMITED;
            }
            if (size < 0) maximum = mark;
            dimensions.extendible = 0;
            i += 2;
        }
        dimensions.current.push_back(current);
        dimensions.maximum.push_back(maximum);
    }
    return dimensions;
}

std::vector<hsize_t> read_chunk_sizes(pANTLR3_BASE_TREE number_optional_list) {
    std::vector<hsize_t> sizes;
    for (int i = 0; i < tree::count(number_optional_list); i++) {
        pANTLR3_BASE_TREE node = tree::child(number_optional_list, i);
        if (tree::type(node) == COMMA_KEYWORD) {
            sizes.push_back((hsize_t)-1);
        } else {
            int size = atoi(tree::text(node));
            sizes.push_back(size > 0 ? (hsize_t)size : (hsize_t)-2);
        }
    }
    return sizes;
}

DataTypeSlot read_data_type(pANTLR3_BASE_TREE statement, int type_slot) {
    pANTLR3_BASE_TREE slot = tree::slot(statement, type_slot);
    if (tree::count(slot) == 0) return {ORMAK_COMPOUND, tree::slot(statement, type_slot + 1)};
    return {data_type_flag(tree::type(tree::child(slot, 0))), nullptr};
}

} // namespace ormak
