/* Statement readers: each reads one statement's slots into plain arguments and calls
   that statement's executor. The dispatch table maps statement roots to them. */
#ifndef ORMAK_STATEMENT_READERS_H
#define ORMAK_STATEMENT_READERS_H

#include <antlr3.h>

namespace ormak {

using StatementReader = int (*)(pANTLR3_BASE_TREE statement, int programming_language);

/* Runs one statement of the tree; a root without a reader is refused with status -1. */
int dispatch(pANTLR3_BASE_TREE statement, int programming_language);
/* Whether the statement root is one that stops the script before anything runs. */
bool is_unknown_statement(pANTLR3_BASE_TREE statement);

/* Library bounds clause: presence, low and high slots in a row. */
struct LibraryBounds {
    int present;
    int low;
    int high;
};
LibraryBounds read_library_bounds(pANTLR3_BASE_TREE statement, int first_slot);
/* A written low bound: EARLIEST 1, LATEST 2, the 1.8 version 4. */
int read_bound_low(pANTLR3_BASE_TREE slot);

/* A cache value of SET CACHE and SELECT: selector 0 left out, 1 FILE, 2 DEFAULT, 3 a number
   beside it, in `value` (and `real` for a preemption). */
struct CacheValue {
    int selector = 0;
    int value = -1;
    double real = -1.0;
};
CacheValue read_set_cache_value(pANTLR3_BASE_TREE statement, int index);

/* A number slot's value: strtol with radix 0 for a hexadecimal token, atoi for any other. */
int read_number(pANTLR3_BASE_TREE node);

int read_create_directory(pANTLR3_BASE_TREE statement, int programming_language);
int read_create_file(pANTLR3_BASE_TREE statement, int programming_language);
int read_create_group(pANTLR3_BASE_TREE statement, int programming_language);
int read_create_link(pANTLR3_BASE_TREE statement, int programming_language);
int read_create_external_link(pANTLR3_BASE_TREE statement, int programming_language);
int read_create_dataset(pANTLR3_BASE_TREE statement, int programming_language);
int read_create_attribute(pANTLR3_BASE_TREE statement, int programming_language);
int read_alter_dimension(pANTLR3_BASE_TREE statement, int programming_language);
int read_rename_directory(pANTLR3_BASE_TREE statement, int programming_language);
int read_rename_file(pANTLR3_BASE_TREE statement, int programming_language);
int read_copy_file(pANTLR3_BASE_TREE statement, int programming_language);
int read_rename_object(pANTLR3_BASE_TREE statement, int programming_language);
int read_copy_object(pANTLR3_BASE_TREE statement, int programming_language);
int read_drop_directory(pANTLR3_BASE_TREE statement, int programming_language);
int read_drop_file(pANTLR3_BASE_TREE statement, int programming_language);
int read_drop_object(pANTLR3_BASE_TREE statement, int programming_language);
int read_insert(pANTLR3_BASE_TREE statement, int programming_language);
int read_select(pANTLR3_BASE_TREE statement, int programming_language);
int read_use_directory(pANTLR3_BASE_TREE statement, int programming_language);
int read_use_file(pANTLR3_BASE_TREE statement, int programming_language);
int read_use_group(pANTLR3_BASE_TREE statement, int programming_language);
int read_close_file(pANTLR3_BASE_TREE statement, int programming_language);
int read_close_all_file(pANTLR3_BASE_TREE statement, int programming_language);
int read_close_group(pANTLR3_BASE_TREE statement, int programming_language);
int read_flush(pANTLR3_BASE_TREE statement, int programming_language);
int read_set_library_bounds(pANTLR3_BASE_TREE statement, int programming_language);
int read_set_cache(pANTLR3_BASE_TREE statement, int programming_language);
int read_set_atomic(pANTLR3_BASE_TREE statement, int programming_language);
int read_set_external_link_prefix(pANTLR3_BASE_TREE statement, int programming_language);
int read_set_flush(pANTLR3_BASE_TREE statement, int programming_language);
int read_set_debug(pANTLR3_BASE_TREE statement, int programming_language);
int read_show_use_directory(pANTLR3_BASE_TREE statement, int programming_language);
int read_show_use_file(pANTLR3_BASE_TREE statement, int programming_language);
int read_show_all_use_file(pANTLR3_BASE_TREE statement, int programming_language);
int read_show_use_group(pANTLR3_BASE_TREE statement, int programming_language);
int read_show_ormak_version(pANTLR3_BASE_TREE statement, int programming_language);
int read_show_hdf5_version(pANTLR3_BASE_TREE statement, int programming_language);
int read_show_pcre_version(pANTLR3_BASE_TREE statement, int programming_language);
int read_show_zlib_version(pANTLR3_BASE_TREE statement, int programming_language);
int read_show_mpi_version(pANTLR3_BASE_TREE statement, int programming_language);
int read_show_execute_status(pANTLR3_BASE_TREE statement, int programming_language);
int read_show_external_link_prefix(pANTLR3_BASE_TREE statement, int programming_language);
int read_show_flush(pANTLR3_BASE_TREE statement, int programming_language);
int read_show_debug(pANTLR3_BASE_TREE statement, int programming_language);
int read_show_object(pANTLR3_BASE_TREE statement, int programming_language);
int read_show_directory(pANTLR3_BASE_TREE statement, int programming_language);
int read_show_file(pANTLR3_BASE_TREE statement, int programming_language);
int read_show_file_validity(pANTLR3_BASE_TREE statement, int programming_language);
int read_show_library_bounds(pANTLR3_BASE_TREE statement, int programming_language);
int read_show_cache(pANTLR3_BASE_TREE statement, int programming_language);
int read_show_atomic(pANTLR3_BASE_TREE statement, int programming_language);
int read_show_type(pANTLR3_BASE_TREE statement, int programming_language);
int read_show_data_type(pANTLR3_BASE_TREE statement, int programming_language);
int read_show_endianness(pANTLR3_BASE_TREE statement, int programming_language);
int read_show_charset(pANTLR3_BASE_TREE statement, int programming_language);
int read_show_tag(pANTLR3_BASE_TREE statement, int programming_language);
int read_show_size(pANTLR3_BASE_TREE statement, int programming_language);
int read_show_order(pANTLR3_BASE_TREE statement, int programming_language);
int read_show_storage_type(pANTLR3_BASE_TREE statement, int programming_language);
int read_show_storage_allocation(pANTLR3_BASE_TREE statement, int programming_language);
int read_show_fill_type(pANTLR3_BASE_TREE statement, int programming_language);
int read_show_mask(pANTLR3_BASE_TREE statement, int programming_language);
int read_show_dimension(pANTLR3_BASE_TREE statement, int programming_language);
int read_show_storage_dimension(pANTLR3_BASE_TREE statement, int programming_language);
int read_show_fill_value(pANTLR3_BASE_TREE statement, int programming_language);
int read_show_file_size(pANTLR3_BASE_TREE statement, int programming_language);

} // namespace ormak

#endif
