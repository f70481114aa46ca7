/* Public interface of the Ormak library: run scripts of the Ormak language on HDF5 files. */
#ifndef ORMAK_H
#define ORMAK_H

#include <stdint.h>
#include "OrmakStructures.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Status codes. */
#define ORMAK_SUCCESS 0
#define ORMAK_ERROR_PARSE -1
#define ORMAK_ERROR_NOT_FOUND -2
#define ORMAK_ERROR_NO_ACCESS -3
#define ORMAK_ERROR_NOT_OPEN -4
#define ORMAK_ERROR_INVALID_FILE -5
#define ORMAK_ERROR_NOT_SUPPORTED -6
#define ORMAK_ERROR_NOT_ENOUGH_SPACE -7
#define ORMAK_ERROR_NOT_ENOUGH_MEMORY -8
#define ORMAK_ERROR_ALREADY_EXISTS -9
#define ORMAK_ERROR_EMPTY -10
#define ORMAK_ERROR_FULL -11
#define ORMAK_ERROR_BEFORE_FIRST -12
#define ORMAK_ERROR_AFTER_LAST -13
#define ORMAK_ERROR_INVALID_VALUE -14
#define ORMAK_ERROR_NO_ADDRESS -15
#define ORMAK_ERROR_UNEXPECTED_TYPE -16
#define ORMAK_ERROR_UNEXPECTED_DATA_TYPE -17
#define ORMAK_ERROR_UNEXPECTED_STORAGE_TYPE -18
#define ORMAK_ERROR_DANGLING_LINK -19
#define ORMAK_ERROR_NOT_REGISTERED -20
#define ORMAK_ERROR_INVALID_REGULAR_EXPRESSION -21
#define ORMAK_ERROR_UNKNOWN -99

/* Data type flags. */
#define ORMAK_UNDEFINED -1
#define ORMAK_TINYINT 1
#define ORMAK_UNSIGNED_TINYINT 2
#define ORMAK_SMALLINT 4
#define ORMAK_UNSIGNED_SMALLINT 8
#define ORMAK_INT 16
#define ORMAK_UNSIGNED_INT 32
#define ORMAK_BIGINT 64
#define ORMAK_UNSIGNED_BIGINT 128
#define ORMAK_FLOAT 256
#define ORMAK_DOUBLE 512
#define ORMAK_CHAR 1024
#define ORMAK_VARTINYINT 2048
#define ORMAK_UNSIGNED_VARTINYINT 4096
#define ORMAK_VARSMALLINT 8192
#define ORMAK_UNSIGNED_VARSMALLINT 16384
#define ORMAK_VARINT 32768
#define ORMAK_UNSIGNED_VARINT 65536
#define ORMAK_VARBIGINT 131072
#define ORMAK_UNSIGNED_VARBIGINT 262144
#define ORMAK_VARFLOAT 524288
#define ORMAK_VARDOUBLE 1048576
#define ORMAK_VARCHAR 2097152
#define ORMAK_OPAQUE 4194304
#define ORMAK_BITFIELD 8388608
#define ORMAK_ENUMERATION 16777216
#define ORMAK_COMPOUND 33554432

/* Object type flags; an object reached through a link adds the link's flag. */
#define ORMAK_DIRECTORY 1
#define ORMAK_FILE 2
#define ORMAK_GROUP 4
#define ORMAK_DATASET 8
#define ORMAK_ATTRIBUTE 16
#define ORMAK_SOFT_LINK 32
#define ORMAK_EXTERNAL_LINK 64

/* Small enumerations. */
#define ORMAK_LITTLE_ENDIAN 1
#define ORMAK_BIG_ENDIAN 2
#define ORMAK_ASCII 1
#define ORMAK_UTF8 2
#define ORMAK_CONTIGUOUS 1
#define ORMAK_COMPACT 2
#define ORMAK_CHUNKED 4
#define ORMAK_EARLY 1
#define ORMAK_INCREMENTAL 2
#define ORMAK_LATE 4
#define ORMAK_FILL_DEFAULT 1
#define ORMAK_FILL_USER_DEFINED 2
#define ORMAK_FILL_UNDEFINED 4
#define ORMAK_GLOBAL 1
#define ORMAK_LOCAL 2
#define ORMAK_TRACKED 1
#define ORMAK_INDEXED 2
#define ORMAK_EARLIEST 1
#define ORMAK_LATEST 2
#define ORMAK_VERSION_18 4

/* Session and public entry. */
int ormak_execute(const char *script);
int ormak_execute_get_status(void);
int ormak_error_get_line(void);
int ormak_error_get_position(void);
char *ormak_error_get_message(void);
int ormak_mpi_get_size(void);
int ormak_mpi_get_rank(void);
void ormak_initialize(void);
void ormak_finalize(void);

/* Entry points for language bindings. */
int _ormak_execute(const char *script, int script_size, int programming_language);
int _ormak_execute_reset(void);
char *_ormak_error_get_message_with_size(int *message_size);
uint64_t _ormak_get_last_data_count(void);
const char *_ormak_get_compiler(void);
const char *_ormak_get_architecture(void);

/* Canonical paths: absolute, with no "." or ".." and no doubled or trailing "/". */
char *ormak_get_canonical_path(const char *object_name, char *object_name_result);
char *_ormak_get_canonical_path_with_size(const char *object_name, int *object_name_size);

/* Cursors. A null cursor means the cursor in use. Each navigation and value function has a
   subcursor twin that works on the inner values of the current element. */
int ormak_cursor_initialize(ORMAK_CURSOR *cursor);
int ormak_cursor_use(const ORMAK_CURSOR *cursor);
int ormak_cursor_use_default(void);
int ormak_cursor_clear(ORMAK_CURSOR *cursor);
int ormak_cursor_clone(const ORMAK_CURSOR *cursor_original, ORMAK_CURSOR *cursor_clone);

int ormak_cursor_get_data_type(const ORMAK_CURSOR *cursor);
int ormak_cursor_get_count(const ORMAK_CURSOR *cursor);
int ormak_cursor_get_position(const ORMAK_CURSOR *cursor);
int ormak_cursor_get_size(const ORMAK_CURSOR *cursor);
int ormak_subcursor_get_count(const ORMAK_CURSOR *cursor);
int ormak_subcursor_get_position(const ORMAK_CURSOR *cursor);
int ormak_subcursor_get_size(const ORMAK_CURSOR *cursor);

int ormak_cursor_first(ORMAK_CURSOR *cursor);
int ormak_cursor_last(ORMAK_CURSOR *cursor);
int ormak_cursor_next(ORMAK_CURSOR *cursor);
int ormak_cursor_previous(ORMAK_CURSOR *cursor);
int ormak_cursor_absolute(ORMAK_CURSOR *cursor, int position);
int ormak_cursor_relative(ORMAK_CURSOR *cursor, int position);
int ormak_subcursor_first(ORMAK_CURSOR *cursor);
int ormak_subcursor_last(ORMAK_CURSOR *cursor);
int ormak_subcursor_next(ORMAK_CURSOR *cursor);
int ormak_subcursor_previous(ORMAK_CURSOR *cursor);
int ormak_subcursor_absolute(ORMAK_CURSOR *cursor, int position);
int ormak_subcursor_relative(ORMAK_CURSOR *cursor, int position);

/* The value of the current element, unconverted; null where there is none. */
void *ormak_cursor_get(const ORMAK_CURSOR *cursor);
void *ormak_subcursor_get(const ORMAK_CURSOR *cursor);
char *ormak_cursor_get_tinyint(const ORMAK_CURSOR *cursor);
char *ormak_subcursor_get_tinyint(const ORMAK_CURSOR *cursor);
uint8_t *ormak_cursor_get_unsigned_tinyint(const ORMAK_CURSOR *cursor);
uint8_t *ormak_subcursor_get_unsigned_tinyint(const ORMAK_CURSOR *cursor);
int16_t *ormak_cursor_get_smallint(const ORMAK_CURSOR *cursor);
int16_t *ormak_subcursor_get_smallint(const ORMAK_CURSOR *cursor);
uint16_t *ormak_cursor_get_unsigned_smallint(const ORMAK_CURSOR *cursor);
uint16_t *ormak_subcursor_get_unsigned_smallint(const ORMAK_CURSOR *cursor);
int32_t *ormak_cursor_get_int(const ORMAK_CURSOR *cursor);
int32_t *ormak_subcursor_get_int(const ORMAK_CURSOR *cursor);
uint32_t *ormak_cursor_get_unsigned_int(const ORMAK_CURSOR *cursor);
uint32_t *ormak_subcursor_get_unsigned_int(const ORMAK_CURSOR *cursor);
int64_t *ormak_cursor_get_bigint(const ORMAK_CURSOR *cursor);
int64_t *ormak_subcursor_get_bigint(const ORMAK_CURSOR *cursor);
uint64_t *ormak_cursor_get_unsigned_bigint(const ORMAK_CURSOR *cursor);
uint64_t *ormak_subcursor_get_unsigned_bigint(const ORMAK_CURSOR *cursor);
float *ormak_cursor_get_float(const ORMAK_CURSOR *cursor);
float *ormak_subcursor_get_float(const ORMAK_CURSOR *cursor);
double *ormak_cursor_get_double(const ORMAK_CURSOR *cursor);
double *ormak_subcursor_get_double(const ORMAK_CURSOR *cursor);
char *ormak_cursor_get_char(const ORMAK_CURSOR *cursor);
char *ormak_subcursor_get_char(const ORMAK_CURSOR *cursor);

/* Cursors, for executors and bindings. */
void _ormak_cursor_set_data_type(int data_type);
int _ormak_cursor_add(const void *data, int size);
int _ormak_subcursor_add(const void *data, int size);
char *_ormak_cursor_get_char_with_size(const ORMAK_CURSOR *cursor, int *size);
char *_ormak_subcursor_get_char_with_size(const ORMAK_CURSOR *cursor, int *size);
uintptr_t _ormak_cursor_create(void);
void _ormak_cursor_destroy(uintptr_t address);

/* Debug: prints the cursor in use. */
void _ormak_show_debug_information(void);

/* Post-processing: applies the ORDER, TOP, BOTTOM, FROM ... TO and STEP clauses of a result
   statement, in their written order, to `data_count` values at `data` in the layout of
   `data_type`, in place; `data_size` is the width of a CHAR or OPAQUE value. Strings and
   variable-length blocks dropped from the list are freed. 0, or -8 when memory is out. */
struct ANTLR3_BASE_TREE_struct;
int _ormak_post_processing(struct ANTLR3_BASE_TREE_struct *post_processing_list, const void *data, int data_type,
                           int *data_count, int data_size);

/* The typed sort. Comparisons take two items and answer as qsort wants; descending is the
   reverse of ascending. Floats put every NaN before all numbers; strings (char_char, items
   are pointers) put null before every string; char compares fixed texts of
   global_data_size bytes as strncmp does. _ormak_merge_<type> merges the `threads` sorted
   sections that start at index[0], ..., index[threads - 1] into one sorted list of
   `data_count` items; _ormak_merge_<type>_sections merges two adjacent sorted sections of
   the given item counts, the left one first on ties. Both: 0, or -8 when memory is out.
   `order_type` is 1 for ascending, anything else descending. */
int _ormak_compare_tinyint_ascend(const void *value0, const void *value1);
int _ormak_compare_tinyint_descend(const void *value0, const void *value1);
int _ormak_compare_unsigned_tinyint_ascend(const void *value0, const void *value1);
int _ormak_compare_unsigned_tinyint_descend(const void *value0, const void *value1);
int _ormak_compare_smallint_ascend(const void *value0, const void *value1);
int _ormak_compare_smallint_descend(const void *value0, const void *value1);
int _ormak_compare_unsigned_smallint_ascend(const void *value0, const void *value1);
int _ormak_compare_unsigned_smallint_descend(const void *value0, const void *value1);
int _ormak_compare_int_ascend(const void *value0, const void *value1);
int _ormak_compare_int_descend(const void *value0, const void *value1);
int _ormak_compare_unsigned_int_ascend(const void *value0, const void *value1);
int _ormak_compare_unsigned_int_descend(const void *value0, const void *value1);
int _ormak_compare_bigint_ascend(const void *value0, const void *value1);
int _ormak_compare_bigint_descend(const void *value0, const void *value1);
int _ormak_compare_unsigned_bigint_ascend(const void *value0, const void *value1);
int _ormak_compare_unsigned_bigint_descend(const void *value0, const void *value1);
int _ormak_compare_float_ascend(const void *value0, const void *value1);
int _ormak_compare_float_descend(const void *value0, const void *value1);
int _ormak_compare_double_ascend(const void *value0, const void *value1);
int _ormak_compare_double_descend(const void *value0, const void *value1);
int _ormak_compare_char_ascend(const void *value0, const void *value1);
int _ormak_compare_char_descend(const void *value0, const void *value1);
int _ormak_compare_char_char_ascend(const void *value0, const void *value1);
int _ormak_compare_char_char_descend(const void *value0, const void *value1);
int _ormak_merge_tinyint(void *data, int data_count, const int *index, int threads, int order_type);
int _ormak_merge_unsigned_tinyint(void *data, int data_count, const int *index, int threads, int order_type);
int _ormak_merge_smallint(void *data, int data_count, const int *index, int threads, int order_type);
int _ormak_merge_unsigned_smallint(void *data, int data_count, const int *index, int threads, int order_type);
int _ormak_merge_int(void *data, int data_count, const int *index, int threads, int order_type);
int _ormak_merge_unsigned_int(void *data, int data_count, const int *index, int threads, int order_type);
int _ormak_merge_bigint(void *data, int data_count, const int *index, int threads, int order_type);
int _ormak_merge_unsigned_bigint(void *data, int data_count, const int *index, int threads, int order_type);
int _ormak_merge_float(void *data, int data_count, const int *index, int threads, int order_type);
int _ormak_merge_double(void *data, int data_count, const int *index, int threads, int order_type);
int _ormak_merge_char(void *data, int data_count, const int *index, int threads, int order_type);
int _ormak_merge_char_char(void *data, int data_count, const int *index, int threads, int order_type);
int _ormak_merge_tinyint_sections(void *section_left, void *section_right, int section_left_position,
                                  int section_right_position, int order_type);
int _ormak_merge_unsigned_tinyint_sections(void *section_left, void *section_right, int section_left_position,
                                           int section_right_position, int order_type);
int _ormak_merge_smallint_sections(void *section_left, void *section_right, int section_left_position,
                                   int section_right_position, int order_type);
int _ormak_merge_unsigned_smallint_sections(void *section_left, void *section_right, int section_left_position,
                                            int section_right_position, int order_type);
int _ormak_merge_int_sections(void *section_left, void *section_right, int section_left_position,
                              int section_right_position, int order_type);
int _ormak_merge_unsigned_int_sections(void *section_left, void *section_right, int section_left_position,
                                       int section_right_position, int order_type);
int _ormak_merge_bigint_sections(void *section_left, void *section_right, int section_left_position,
                                 int section_right_position, int order_type);
int _ormak_merge_unsigned_bigint_sections(void *section_left, void *section_right, int section_left_position,
                                          int section_right_position, int order_type);
int _ormak_merge_float_sections(void *section_left, void *section_right, int section_left_position,
                                int section_right_position, int order_type);
int _ormak_merge_double_sections(void *section_left, void *section_right, int section_left_position,
                                 int section_right_position, int order_type);
int _ormak_merge_char_sections(void *section_left, void *section_right, int section_left_position,
                               int section_right_position, int order_type);
int _ormak_merge_char_char_sections(void *section_left, void *section_right, int section_left_position,
                                    int section_right_position, int order_type);

/* Memory variables: a block of the caller's memory registered under a number from 0 to 7.
   The functions find it by address; a null address is -15, one in no slot -20. */
int ormak_variable_register(const void *variable);
int ormak_variable_transient_register(const void *variable);
int ormak_variable_unregister(const void *variable);
int ormak_variable_unregister_all(void);
int ormak_variable_get_number(const void *variable);
int ormak_variable_get_data_type(const void *variable);
int ormak_variable_get_count(const void *variable);
int ormak_variable_get_size(const void *variable);
int ormak_variable_get_dimension_count(const void *variable);
int ormak_variable_get_dimension(const void *variable, int index);
int ormak_variable_get_element_count(const void *variable, int index);

/* Memory variables, by number, for bindings. */
int _ormak_variable_register(int number, uintptr_t address, int transient);
int _ormak_variable_unregister(int number);
int _ormak_variable_get_data_type(int number);
int _ormak_variable_get_count(int number);
int _ormak_variable_get_size(int number);
int _ormak_variable_get_dimension_count(int number);
int _ormak_variable_get_dimension(int number, int index);

/* Values in the buffer of a slot, for the Java side: `position` is a byte offset. */
void _ormak_variable_set_char(int number, char data, int position);
void _ormak_variable_set_short(int number, short data, int position);
void _ormak_variable_set_int(int number, int data, int position);
void _ormak_variable_set_long(int number, int64_t data, int position);
void _ormak_variable_set_float(int number, float data, int position);
void _ormak_variable_set_double(int number, double data, int position);
char _ormak_variable_get_char(int number, int position);
short _ormak_variable_get_short(int number, int position);
int _ormak_variable_get_int(int number, int position);
int64_t _ormak_variable_get_long(int number, int position);
float _ormak_variable_get_float(int number, int position);
double _ormak_variable_get_double(int number, int position);
/* Strings: `position` is an index into the array of string pointers in the buffer. */
void _ormak_variable_set_string(int number, char *data, int position, int size);
char *_ormak_variable_get_string(int number, int position);

/* The Java callback: `environment` is the JNIEnv pointer of the calling thread. */
void _ormak_java_set_environment(void *environment);
int _ormak_variable_operation(int type, int number, int size);

#ifdef __cplusplus
}
#endif

#endif
