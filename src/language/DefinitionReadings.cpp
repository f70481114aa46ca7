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

DataTypeSlot read_data_type(pANTLR3_BASE_TREE statement, int type_slot) {
    pANTLR3_BASE_TREE slot = tree::slot(statement, type_slot);
    if (tree::count(slot) == 0) return {ORMAK_COMPOUND, tree::slot(statement, type_slot + 1)};
    return {data_type_flag(tree::type(tree::child(slot, 0))), nullptr};
}

} // namespace ormak
