#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <vector>

#include "DataTypes.h"
#include "OrmakParser.h"
#include "../language/DefinitionReadings.h"
#include "../language/TreeReader.h"
#include "../session/Handle.h"
#include "../session/Session.h"
#include "../transfer/Values.h"

namespace tree = ormak::tree;

namespace {

/* Native, little endian and big endian forms of one fixed numeric type. */
struct Forms {
    int flag;
    hid_t native, little, big;
};

const Forms *numeric_forms(int flag) {
    static const Forms table[] = {
        {ORMAK_TINYINT, H5T_NATIVE_SCHAR, H5T_STD_I8LE, H5T_STD_I8BE},
        {ORMAK_UNSIGNED_TINYINT, H5T_NATIVE_UCHAR, H5T_STD_U8LE, H5T_STD_U8BE},
        {ORMAK_SMALLINT, H5T_NATIVE_SHORT, H5T_STD_I16LE, H5T_STD_I16BE},
        {ORMAK_UNSIGNED_SMALLINT, H5T_NATIVE_USHORT, H5T_STD_U16LE, H5T_STD_U16BE},
        {ORMAK_INT, H5T_NATIVE_INT, H5T_STD_I32LE, H5T_STD_I32BE},
        {ORMAK_UNSIGNED_INT, H5T_NATIVE_UINT, H5T_STD_U32LE, H5T_STD_U32BE},
        {ORMAK_BIGINT, H5T_NATIVE_LLONG, H5T_STD_I64LE, H5T_STD_I64BE},
        {ORMAK_UNSIGNED_BIGINT, H5T_NATIVE_ULLONG, H5T_STD_U64LE, H5T_STD_U64BE},
        {ORMAK_FLOAT, H5T_NATIVE_FLOAT, H5T_IEEE_F32LE, H5T_IEEE_F32BE},
        {ORMAK_DOUBLE, H5T_NATIVE_DOUBLE, H5T_IEEE_F64LE, H5T_IEEE_F64BE},
    };
    for (const Forms &forms : table)
        if (forms.flag == flag) return &forms;
    return nullptr;
}

/* The fixed type under a variable-length flag (VARTINYINT is over TINYINT); -1 for others. */
int base_of_variable(int flag) { return ormak::is_variable_numeric(flag) ? ormak::fixed_of(flag) : -1; }

/* The bytes a member of a compound takes, by its type keyword. */
int member_size(int token_type) {
    switch (token_type) {
    case TINYINT_KEYWORD: case UNSIGNED_TINYINT_KEYWORD: case CHAR_KEYWORD: case OPAQUE_KEYWORD: return 1;
    case SMALLINT_KEYWORD: case UNSIGNED_SMALLINT_KEYWORD: return 2;
    case INT_KEYWORD: case UNSIGNED_INT_KEYWORD: case FLOAT_KEYWORD: return 4;
    case BIGINT_KEYWORD: case UNSIGNED_BIGINT_KEYWORD: case DOUBLE_KEYWORD: case VARCHAR_KEYWORD: return 8;
    default: return 16;
    }
}

/* Walks the flat members of one compound level: name, separator, type, an optional
   "( n )" and a comma. Calls visit(name, type node) for each; stops at a non-zero result. */
template <typename Visit>
int walk_members(pANTLR3_BASE_TREE compound, Visit visit) {
    int count = tree::count(compound);
    for (int i = 0; i + 2 < count;) {
        pANTLR3_BASE_TREE name = tree::child(compound, i);
        pANTLR3_BASE_TREE type = tree::child(compound, i + 2);
        int status = visit(tree::text(name), type);
        if (status != ORMAK_SUCCESS) return status;
        i += 3;
        if (tree::type(tree::child(compound, i)) == LEFT_PARENTHESIS_KEYWORD) i += 3;
        if (tree::type(tree::child(compound, i)) == COMMA_KEYWORD) i += 1;
    }
    return ORMAK_SUCCESS;
}

/* The bytes of one compound level and all below it, members back to back. */
int compound_size(pANTLR3_BASE_TREE compound) {
    int size = 0;
    walk_members(compound, [&](const char *, pANTLR3_BASE_TREE type) {
        size += tree::type(type) == LIST ? compound_size(type) : member_size(tree::type(type));
        return ORMAK_SUCCESS;
    });
    return size;
}

/* The HDF5 type of one member keyword, owned by the caller. */
hid_t member_type(int token_type) {
    int flag = ormak::data_type_flag(token_type);
    if (flag == ORMAK_OPAQUE) return H5Tcreate(H5T_OPAQUE, 1);
    hid_t type = _ormak_get_data_type(flag, -1);
    if (flag == ORMAK_VARCHAR) H5Tset_size(type, H5T_VARIABLE);
    return numeric_forms(flag) ? H5Tcopy(type) : type;
}

/* The flag of a variable-length type's base, by comparing with the fixed forms. */
int variable_flag(hid_t base) {
    for (int flag = ORMAK_VARTINYINT; flag <= ORMAK_VARDOUBLE; flag <<= 1) {
        const Forms *forms = numeric_forms(base_of_variable(flag));
        if (H5Tequal(base, forms->little) > 0 || H5Tequal(base, forms->big) > 0) return flag;
    }
    return ORMAK_ERROR_NOT_SUPPORTED;
}

int integer_flag(bool is_signed, size_t size) {
    if (size == 1) return is_signed ? ORMAK_TINYINT : ORMAK_UNSIGNED_TINYINT;
    if (size == 2) return is_signed ? ORMAK_SMALLINT : ORMAK_UNSIGNED_SMALLINT;
    if (size == 4) return is_signed ? ORMAK_INT : ORMAK_UNSIGNED_INT;
    return is_signed ? ORMAK_BIGINT : ORMAK_UNSIGNED_BIGINT;
}

/* The flag of a member's type; a negative status for what the language can not hold. */
int member_flag(hid_t type) {
    switch (H5Tget_class(type)) {
    case H5T_INTEGER: return integer_flag(H5Tget_sign(type) != H5T_SGN_NONE, H5Tget_size(type));
    case H5T_FLOAT: return H5Tget_size(type) == 4 ? ORMAK_FLOAT : ORMAK_DOUBLE;
    case H5T_STRING: return H5Tis_variable_str(type) > 0 ? ORMAK_VARCHAR : ORMAK_CHAR;
    case H5T_VLEN: {
        ormak::Handle base(H5Tclose, H5Tget_super(type));
        return variable_flag(base);
    }
    case H5T_OPAQUE: return ORMAK_OPAQUE;
    case H5T_BITFIELD: return ORMAK_BITFIELD;
    case H5T_ENUM: return ORMAK_ENUMERATION;
    case H5T_COMPOUND: return ORMAK_COMPOUND;
    case H5T_ARRAY: return 67108864;
    case H5T_REFERENCE: return 134217728;
    default: return ORMAK_ERROR_NOT_SUPPORTED;
    }
}

int flatten(hid_t data_type_id, const char *parent_name, int *parent_offset, _ormak_compound **list, int *count,
            int *current) {
    int members = H5Tget_nmembers(data_type_id);
    for (int i = 0; i < members; i++) {
        if (*current == *count) {
            _ormak_compound *grown = (_ormak_compound *)realloc(*list, sizeof(_ormak_compound) * (*count + 32));
            if (grown == nullptr) return ORMAK_ERROR_NOT_ENOUGH_MEMORY;
            *list = grown;
            *count += 32;
        }
        char *name = H5Tget_member_name(data_type_id, (unsigned)i);
        if (name == nullptr) return ORMAK_ERROR_NOT_ENOUGH_MEMORY;
        _ormak_compound *record = &(*list)[*current];
        if (parent_name) snprintf(record->name, sizeof record->name, "%s.%s", parent_name, name);
        else snprintf(record->name, sizeof record->name, "%s", name);

        ormak::Handle type(H5Tclose, H5Tget_member_type(data_type_id, (unsigned)i));
        int flag = member_flag(type);
        if (flag < 0) {
            H5free_memory(name);
            return flag;
        }
        record->data_type = flag;
        record->offset = *parent_offset + (int)H5Tget_member_offset(data_type_id, (unsigned)i);
        (*current)++;
        int status = ORMAK_SUCCESS;
        if (flag == ORMAK_COMPOUND) {
            int offset = record->offset;
            status = flatten(type, name, &offset, list, count, current);
            *parent_offset += (int)H5Tget_size(type);
        }
        H5free_memory(name);
        if (status != ORMAK_SUCCESS) return status;
    }
    return ORMAK_SUCCESS;
}

} // namespace

extern "C" {

hid_t _ormak_get_data_type(int type, int endianness) {
    int base = base_of_variable(type);
    const Forms *forms = numeric_forms(base == -1 ? type : base);
    if (forms == nullptr) return H5Tcopy(H5T_C_S1);
    hid_t fixed = endianness == ORMAK_LITTLE_ENDIAN ? forms->little
                  : endianness == ORMAK_BIG_ENDIAN  ? forms->big
                                                    : forms->native;
    return base == -1 ? fixed : H5Tvlen_create(fixed);
}

int _ormak_check_compound_member_names(const char *object_name, int object_type, const pANTLR3_BASE_TREE compound,
                                       int *size) {
    const char *kind = object_type == ORMAK_ATTRIBUTE ? "attribute" : "dataset";
    /* Names must differ on each level; a nested level is a level of its own. */
    std::vector<const char *> names;
    return walk_members(compound, [&](const char *name, pANTLR3_BASE_TREE type) {
        for (const char *earlier : names)
            if (strcmp(earlier, name) == 0)
                return ormak::fail(ORMAK_ERROR_ALREADY_EXISTS,
                                   "Error when creating %s \"%s\" as compound member \"%s\" already exists", kind,
                                   object_name, name);
        names.push_back(name);
        if (tree::type(type) == LIST) return _ormak_check_compound_member_names(object_name, object_type, type, size);
        *size += member_size(tree::type(type));
        return ORMAK_SUCCESS;
    });
}

int _ormak_create_compound(hid_t *compound_id, const pANTLR3_BASE_TREE compound) {
    size_t offset = 0;
    return walk_members(compound, [&](const char *name, pANTLR3_BASE_TREE type) {
        ormak::Handle member(H5Tclose);
        if (tree::type(type) == LIST) {
            int status = ORMAK_SUCCESS;
            member = H5Tcreate(H5T_COMPOUND, (size_t)compound_size(type));
            hid_t nested = member.get();
            if (member < 0 || (status = _ormak_create_compound(&nested, type)) != ORMAK_SUCCESS)
                return status != ORMAK_SUCCESS ? status : ORMAK_ERROR_UNKNOWN;
        } else {
            member = member_type(tree::type(type));
        }
        if (member < 0 || H5Tinsert(*compound_id, name, offset, member) < 0) return ORMAK_ERROR_UNKNOWN;
        offset += H5Tget_size(member);
        return ORMAK_SUCCESS;
    });
}

int _ormak_get_type_flag(hid_t data_type_id) { return member_flag(data_type_id); }

int _ormak_get_compound(hid_t data_type_id, const char *parent_name, int *parent_offset,
                        struct _ormak_compound **compound_list, int *compound_count, int *compound_current) {
    int status = flatten(data_type_id, parent_name, parent_offset, compound_list, compound_count, compound_current);
    if (status != ORMAK_SUCCESS) {
        free(*compound_list);
        *compound_list = nullptr;
        *compound_count = *compound_current = 0;
    }
    return status;
}

} // extern "C"
