/* Public records of the Ormak library. */
#ifndef ORMAK_STRUCTURES_H
#define ORMAK_STRUCTURES_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct ormak_cursor_data ormak_cursor_data;
typedef struct ormak_cursor ormak_cursor;

/* One element of a cursor; owns its data block and its subcursor. */
struct ormak_cursor_data {
    void *data;
    int size;
    ormak_cursor_data *next;
    ormak_cursor_data *previous;
    ormak_cursor *subcursor;
};

/* A result set: a doubly linked list of owned copies of values. */
struct ormak_cursor {
    int data_type;
    int count;
    int position;
    ormak_cursor_data *head;
    ormak_cursor_data *tail;
    ormak_cursor_data *current;
};

typedef ormak_cursor ORMAK_CURSOR;

/* One variable-length value, laid out as HDF5's hvl_t. */
typedef struct ormak_variable_length {
    uint64_t count;
    void *address;
} ormak_variable_length;

typedef ormak_variable_length ORMAK_VARIABLE_LENGTH;

#ifdef __cplusplus
}
#endif

#endif
