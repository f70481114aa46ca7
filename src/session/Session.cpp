/* The one session of the process: its variables, start and end, and the status getters. */
#include <mpi.h>
#include <stdarg.h>
#include <stdio.h>
#include <string.h>
#include <errno.h>

#include "Session.h"
#include "../results/Variables.h"

void *error_data = nullptr;
H5E_auto2_t error_function = nullptr;
void *java_environment = nullptr;
hid_t property_file_access_list = 0;
hid_t property_group_access_list = 0;
hid_t property_dataset_access_list0 = 0;
hid_t property_dataset_access_list1 = 0;
hid_t property_link_access_list = 0;
_ormak_variable variable_list[ORMAK_VARIABLE_COUNT];
_ormak_file *current_file = nullptr;
ORMAK_CURSOR default_cursor = {ORMAK_UNDEFINED, 0, -1, nullptr, nullptr, nullptr};
ORMAK_CURSOR *current_cursor = &default_cursor;
char object_name_list[ORMAK_MAX_COMPONENTS][ORMAK_TEXT_SIZE];
int object_name_list_count = 0;
char error_message[ORMAK_TEXT_SIZE];
char external_link_prefix[ORMAK_TEXT_SIZE];
uint64_t last_data_count = 0;
int execute_status = 0;
int recognition_status = 0;
int atomic_status = -1;
int prefix_status = -1;
int flush_status = -1;
int debug_status = -1;
int error_line = -1;
int error_position = -1;
int file_use_count = 0;
int global_data_size;
int mpi_size = -1;
int mpi_rank = -1;

/* Whether this library started MPI, and so must end it. */
static bool mpi_started_here = false;

namespace ormak {

int fail(int status, const char *format, ...) {
    va_list arguments;
    va_start(arguments, format);
    vsnprintf(error_message, sizeof error_message, format, arguments);
    va_end(arguments);
    return status;
}

int errno_status(int error_number) {
    if (error_number == ENOSPC) return ORMAK_ERROR_NOT_ENOUGH_SPACE;
    if (error_number == EACCES) return ORMAK_ERROR_NO_ACCESS;
    return ORMAK_ERROR_UNKNOWN;
}

int fail_errno(int error_number, const char *plain_format, const char *name) {
    int status = errno_status(error_number);
    int length = snprintf(error_message, sizeof error_message, plain_format, name);
    if (length < 0 || length >= (int)sizeof error_message - 1) return status;
    const char *cause = "";
    if (status == ORMAK_ERROR_NOT_ENOUGH_SPACE) cause = " as there is not enough space available";
    if (status == ORMAK_ERROR_NO_ACCESS) cause = " as it is not accessible";
    snprintf(error_message + length, sizeof error_message - length, "%s", cause);
    return status;
}

} // namespace ormak

extern "C" {

void ormak_initialize(void) {
    for (int i = 0; i < ORMAK_VARIABLE_COUNT; i++) ormak::variable_slot_empty(&variable_list[i]);
    default_cursor = {ORMAK_UNDEFINED, 0, -1, nullptr, nullptr, nullptr};
    error_data = nullptr;
    error_function = nullptr;

    property_file_access_list = H5Pcreate(H5P_FILE_ACCESS);
    property_group_access_list = 0;
    property_dataset_access_list0 = H5Pcreate(H5P_DATASET_ACCESS);
    property_dataset_access_list1 = 0;
    property_link_access_list = 0;

    current_file = nullptr;
    current_cursor = &default_cursor;
    error_message[0] = '\0';
    external_link_prefix[0] = '\0';

    execute_status = 0;
    recognition_status = 0;
    atomic_status = prefix_status = flush_status = debug_status = -1;
    error_line = error_position = -1;
    last_data_count = 0;
    object_name_list_count = 0;
    file_use_count = 0;

    int already = 0;
    MPI_Initialized(&already);
    if (already) {
        MPI_Comm_size(MPI_COMM_WORLD, &mpi_size);
        MPI_Comm_rank(MPI_COMM_WORLD, &mpi_rank);
    } else if (MPI_Init(nullptr, nullptr) == MPI_SUCCESS) {
        mpi_started_here = true;
        MPI_Comm_size(MPI_COMM_WORLD, &mpi_size);
        MPI_Comm_rank(MPI_COMM_WORLD, &mpi_rank);
    } else {
        mpi_size = mpi_rank = -1;
    }

    H5open();
    H5Eget_auto2(H5E_DEFAULT, &error_function, &error_data);
    H5Eset_auto2(H5E_DEFAULT, nullptr, nullptr);
}

void ormak_finalize(void) {
    ormak::release_scripts();
    for (int i = 0; i < ORMAK_VARIABLE_COUNT; i++) _ormak_variable_unregister(i);
    H5close();
    if (mpi_started_here) {
        int finalized = 0;
        MPI_Finalized(&finalized);
        if (!finalized) MPI_Finalize();
        mpi_started_here = false;
    }
}

__attribute__((constructor)) static void _ormak_initialize(void) { ormak_initialize(); }
__attribute__((destructor)) static void _ormak_finalize(void) { ormak_finalize(); }

int ormak_execute_get_status(void) { return execute_status; }
int ormak_error_get_line(void) { return error_line; }
int ormak_error_get_position(void) { return error_position; }
char *ormak_error_get_message(void) { return error_message[0] ? error_message : nullptr; }
int ormak_mpi_get_size(void) { return mpi_size; }
int ormak_mpi_get_rank(void) { return mpi_rank; }

char *_ormak_error_get_message_with_size(int *message_size) {
    if (message_size) *message_size = (int)strlen(error_message);
    return ormak_error_get_message();
}

uint64_t _ormak_get_last_data_count(void) { return last_data_count; }
const char *_ormak_get_compiler(void) { return "GCC 4.9"; }
const char *_ormak_get_architecture(void) { return "64 bit"; }

int _ormak_execute_reset(void) {
    ormak_cursor_clear(nullptr);
    error_line = error_position = -1;
    error_message[0] = '\0';
    execute_status = 0;
    return execute_status;
}

int ormak_execute(const char *script) {
    if (script == nullptr) return _ormak_execute_reset();
    return _ormak_execute(script, (int)strlen(script), 1);
}

} // extern "C"
