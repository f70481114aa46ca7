/* The language's data types as HDF5 types, and compound member lists. */
#ifndef ORMAK_DATA_TYPES_H
#define ORMAK_DATA_TYPES_H

#include <antlr3.h>
#include <hdf5.h>

#include "../OrmakPrivateStructures.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The HDF5 type of a data type flag in a byte order (-1 native, 1 little, 2 big endian).
   Predefined types belong to HDF5 and are never closed; copies and variable-length types
   belong to the caller. A string type comes back with size 1. */
hid_t _ormak_get_data_type(int type, int endianness);
/* Checks one level of a compound's members for repeated names, descends into nested
   compounds, and adds the members' sizes to *size. */
int _ormak_check_compound_member_names(const char *object_name, int object_type, const pANTLR3_BASE_TREE compound,
                                       int *size);
/* Inserts the members of a compound's member list into *compound_id, one after the other. */
int _ormak_create_compound(hid_t *compound_id, const pANTLR3_BASE_TREE compound);
/* Flattens an existing compound type into a growing list of members. */
int _ormak_get_compound(hid_t data_type_id, const char *parent_name, int *parent_offset,
                        struct _ormak_compound **compound_list, int *compound_count, int *compound_current);
/* The data type flag of a stored type, as for the members of a compound: ORMAK_BITFIELD,
   ORMAK_ENUMERATION, ORMAK_COMPOUND, a flag above those for arrays and references, and a
   negative status for variable-length types over anything but a numeric type. */
int _ormak_get_type_flag(hid_t data_type_id);

#ifdef __cplusplus
}
#endif

#endif
