/* The cursor in use as a source: read from its head, never moved. The cursor's type says how
   an element is read, the target's how it is stored; nothing is refused, values convert. */
#include <stdlib.h>
#include <string.h>

#include "InputSources.h"
#include "Values.h"
#include "../OrmakPrivateStructures.h"
#include "../session/Session.h"

namespace ormak {

namespace {

int out_of_memory() {
    return fail(ORMAK_ERROR_NOT_ENOUGH_MEMORY, "Error when setting data as there is not enough memory available");
}

/* Elements of the cursor, and the members of all their subcursors. */
void totals(const ORMAK_CURSOR *cursor, long long *count, long long *members, long long *text) {
    *count = *members = *text = 0;
    for (const ormak_cursor_data *e = cursor->head; e; e = e->next) {
        (*count)++;
        if (e->subcursor) *members += e->subcursor->count;
        if (e->data) *text += e->size;
    }
}

/* Calls visit(number) for every member an element carries by the cursor's type: a number
   for numeric types, each member of a variable-length value, each byte of a fixed text or
   opaque value, each byte of a string (without its terminator). */
template <typename Visit>
void for_each_member(int cursor_type, const ormak_cursor_data *e, Visit visit) {
    if (is_fixed_numeric(cursor_type)) {
        if (e->data) visit(read_number(cursor_type, e->data));
        else visit(Number::of_signed(0));
    } else if (cursor_type == ORMAK_VARCHAR) {
        for (int i = 0; e->data && i < e->size; i++) visit(Number::of_unsigned(((unsigned char *)e->data)[i]));
    } else if (e->subcursor) {
        for (const ormak_cursor_data *m = e->subcursor->head; m; m = m->next) {
            if (is_variable_numeric(cursor_type)) visit(read_number(cursor_type, m->data));
            else visit(Number::of_unsigned(m->data ? *(unsigned char *)m->data : 0));
        }
    }
}

/* The first value of an element: the number, the first member, the first byte of a string. */
Number first_value(int cursor_type, const ormak_cursor_data *e) {
    if (e->data == nullptr) return Number::of_signed(0);
    if (is_fixed_numeric(cursor_type) || is_variable_numeric(cursor_type)) return read_number(cursor_type, e->data);
    return Number::of_unsigned(*(unsigned char *)e->data);
}

int fixed_target(const ORMAK_CURSOR *cursor, int data_type, int data_count, int data_size, void **data,
                 int *data_allocated) {
    char *buffer = (char *)calloc((size_t)data_count, (size_t)data_size);
    if (buffer == nullptr) return out_of_memory();
    *data = buffer;
    *data_allocated = 0;
    const int type = cursor->data_type;
    const bool text_type = data_type == ORMAK_CHAR || data_type == ORMAK_OPAQUE;
    int position = 0;
    if (text_type && data_size > 1) {
        /* A text of several bytes takes one element of the cursor: its bytes, cut or padded. */
        for (const ormak_cursor_data *e = cursor->head; e && position < data_count; e = e->next, position++) {
            char *element = buffer + (size_t)position * data_size;
            if (is_fixed_numeric(type) || is_variable_numeric(type)) {
                write_number(ORMAK_UNSIGNED_TINYINT, element, first_value(type, e));
                continue;
            }
            int i = 0;
            for_each_member(type, e, [&](const Number &n) {
                if (i < data_size) write_number(ORMAK_UNSIGNED_TINYINT, element + i++, n);
            });
        }
        return ORMAK_SUCCESS;
    }
    for (const ormak_cursor_data *e = cursor->head; e && position < data_count; e = e->next) {
        if (is_fixed_numeric(type) || is_variable_numeric(type) || type == ORMAK_VARCHAR) {
            write_number(data_type, buffer + (size_t)position++ * data_size, first_value(type, e));
        } else {
            for_each_member(type, e, [&](const Number &n) {
                if (position < data_count) write_number(data_type, buffer + (size_t)position++ * data_size, n);
            });
        }
    }
    return ORMAK_SUCCESS;
}

int string_target(const ORMAK_CURSOR *cursor, int data_count, void **data, int *data_allocated,
                  char **data_auxiliary) {
    char **pointers = (char **)calloc((size_t)data_count, sizeof *pointers);
    if (pointers == nullptr) return out_of_memory();
    *data = pointers;
    *data_allocated = 0;
    const int type = cursor->data_type;
    long long count, members, text;
    totals(cursor, &count, &members, &text);
    if (type == ORMAK_VARCHAR) {
        /* The strings stay in the cursor: no copy. */
        int position = 0;
        for (const ormak_cursor_data *e = cursor->head; e && position < data_count; e = e->next)
            pointers[position++] = (char *)e->data;
        return ORMAK_SUCCESS;
    }
    long long room = is_fixed_numeric(type) ? 2 * count : members + count;
    if (room == 0) return ORMAK_SUCCESS;
    char *strings = (char *)malloc((size_t)room);
    if (strings == nullptr) return out_of_memory();
    *data_auxiliary = strings;
    long long used = 0;
    int position = 0;
    for (const ormak_cursor_data *e = cursor->head; e && position < data_count; e = e->next) {
        pointers[position++] = strings + used;
        /* A number is one character of its value, not its decimal text: 65 gives A. */
        for_each_member(type, e, [&](const Number &n) { write_number(ORMAK_UNSIGNED_TINYINT, strings + used++, n); });
        strings[used++] = '\0';
    }
    return ORMAK_SUCCESS;
}

int variable_target(const ORMAK_CURSOR *cursor, int data_type, int data_count, void **data, int *data_allocated,
                    char **data_auxiliary) {
    ORMAK_VARIABLE_LENGTH *records = (ORMAK_VARIABLE_LENGTH *)calloc((size_t)data_count, sizeof *records);
    if (records == nullptr) return out_of_memory();
    *data = records;
    *data_allocated = 0;
    const int type = cursor->data_type;
    const int width = member_width(data_type);
    long long count, members, text;
    totals(cursor, &count, &members, &text);
    long long room = is_fixed_numeric(type) ? count : type == ORMAK_VARCHAR ? text : members;
    if (room == 0) return ORMAK_SUCCESS;
    char *block = (char *)malloc((size_t)room * width);
    if (block == nullptr) return out_of_memory();
    *data_auxiliary = block;
    long long used = 0;
    int position = 0;
    for (const ormak_cursor_data *e = cursor->head; e && position < data_count; e = e->next, position++) {
        long long first = used;
        for_each_member(type, e, [&](const Number &n) { write_number(data_type, block + (size_t)used++ * width, n); });
        records[position].count = (uint64_t)(used - first);
        records[position].address = used > first ? block + (size_t)first * width : nullptr;
    }
    return ORMAK_SUCCESS;
}

} // namespace

int cursor_input(int data_type, int data_count, int data_size, void **data, int *data_allocated,
                 char **data_auxiliary) {
    const ORMAK_CURSOR *cursor = current_cursor;
    if (data_type == ORMAK_VARCHAR) return string_target(cursor, data_count, data, data_allocated, data_auxiliary);
    if (is_variable_numeric(data_type))
        return variable_target(cursor, data_type, data_count, data, data_allocated, data_auxiliary);
    return fixed_target(cursor, data_type, data_count, data_size, data, data_allocated);
}

} // namespace ormak
