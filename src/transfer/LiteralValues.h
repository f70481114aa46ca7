/* Value lists of a statement turned into the buffer that a write takes, in row-major order of
   the dimensions: nested lists are rows, a lone comma leaves a position out, surplus values
   are ignored and missing ones are zero, null or absent. */
#ifndef ORMAK_LITERAL_VALUES_H
#define ORMAK_LITERAL_VALUES_H

#include <antlr3.h>
#include <hdf5.h>

#include "../OrmakStructures.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Fixed-length elements of object_size bytes from element *data_position on. */
void _ormak_insert_fixed_length(int object_type, int object_size, const pANTLR3_BASE_TREE data_list,
                                const hsize_t *dimension_list, int dimension_count, int dimension_current, char *data,
                                int *data_position);
/* Variable-length elements whose members go to data_auxiliary; flag 1 takes the whole list
   as the members of one element. */
void _ormak_insert_variable_length(int object_type, int object_size, const pANTLR3_BASE_TREE data_list,
                                   const hsize_t *dimension_list, int dimension_count, int dimension_current,
                                   ORMAK_VARIABLE_LENGTH *data, int *data_position, char *data_auxiliary,
                                   int *data_auxiliary_position, int flag);
/* Pointers to the texts of the tree itself, with no copy. */
void _ormak_insert_variable_char(const pANTLR3_BASE_TREE data_list, const hsize_t *dimension_list,
                                 int dimension_count, int dimension_current, char **data, int *data_position);
/* The sizing pass of the variable-length walk: members (*position0) and elements (*position1). */
void _ormak_insert_calculate(const pANTLR3_BASE_TREE data_list, const hsize_t *dimension_list, int dimension_count,
                             int dimension_current, int *position0, int *position1, int flag);

#ifdef __cplusplus
}

namespace ormak {

/* The buffer of `data_count` elements for a value list, allocated here; a selection makes the
   list flat. Fails only for lack of memory, leaving what was allocated in the out-arguments. */
int literal_input(int data_type, int data_count, int data_size, int selection, const hsize_t *dimension_list,
                  int dimension_count, pANTLR3_BASE_TREE data_list, void **data, int *data_allocated,
                  char **data_auxiliary);

} // namespace ormak
#endif

#endif
