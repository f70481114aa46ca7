/* Private records and the process-wide session of the Ormak library. */
#ifndef ORMAK_PRIVATE_STRUCTURES_H
#define ORMAK_PRIVATE_STRUCTURES_H

#include <stdint.h>
#include <hdf5.h>
#include "Ormak.h"

#define ORMAK_TEXT_SIZE 1024
#define ORMAK_MAX_COMPONENTS 32
#define ORMAK_MAX_DIMENSIONS 32
#define ORMAK_VARIABLE_COUNT 8

/* One memory variable slot: a block of the caller's memory known by its number. */
typedef struct _ormak_variable {
    uintptr_t address;
    int data_type;
    int count;
    int size;
    int dimension_count;
    int dimension_list[ORMAK_MAX_DIMENSIONS];
    int element_count;
    int *element_list;
    int transient;
    int used;
} _ormak_variable;

/* One file in use, a link of the chain that current_file heads. */
typedef struct _ormak_file {
    char file_name[ORMAK_TEXT_SIZE];
    char group_name[ORMAK_TEXT_SIZE];
    char group_name_list[ORMAK_MAX_COMPONENTS][ORMAK_TEXT_SIZE];
    int group_name_list_count;
    int parallel;
    hid_t file_id;
    hid_t group_id;
    hid_t property_access_list;
    struct _ormak_file *next;
    struct _ormak_file *previous;
} _ormak_file;

/* One member of a compound type, flattened: a nested member's name is "parent.member". */
typedef struct _ormak_compound {
    char name[ORMAK_TEXT_SIZE];
    int data_type;
    int offset;
} _ormak_compound;

/* The session: one per process, alive from load to unload. */
extern void *error_data;
extern H5E_auto2_t error_function;
extern void *java_environment;
extern hid_t property_file_access_list;
extern hid_t property_group_access_list;
extern hid_t property_dataset_access_list0;
extern hid_t property_dataset_access_list1;
extern hid_t property_link_access_list;
extern _ormak_variable variable_list[ORMAK_VARIABLE_COUNT];
extern _ormak_file *current_file;
extern ORMAK_CURSOR default_cursor;
extern ORMAK_CURSOR *current_cursor;
extern char object_name_list[ORMAK_MAX_COMPONENTS][ORMAK_TEXT_SIZE];
extern int object_name_list_count;
extern char error_message[ORMAK_TEXT_SIZE];
extern char external_link_prefix[ORMAK_TEXT_SIZE];
extern uint64_t last_data_count;
extern int execute_status;
extern int recognition_status;
extern int atomic_status;
extern int prefix_status;
extern int flush_status;
extern int debug_status;
extern int error_line;
extern int error_position;
extern int file_use_count;
extern int global_data_size;
extern int mpi_size;
extern int mpi_rank;

#endif
