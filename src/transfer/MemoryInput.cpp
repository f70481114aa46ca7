/* A registered memory variable as a source. The block is read as the target's type says;
   where its layout is the target's and it is large enough, the write takes it in place. */
#include <stdlib.h>
#include <string.h>

#include <algorithm>

#include "InputRedirecting.h"
#include "InputSources.h"
#include "Values.h"
#include "../OrmakPrivateStructures.h"
#include "../session/Session.h"

namespace ormak {

namespace {

/* Java: the binding copies into a buffer of ours. 64: the caller's cells are wider. */
constexpr int kJava = 4;
constexpr int kWideCells = 64;

bool narrows(int data_type) {
    switch (data_type) {
    case ORMAK_TINYINT: case ORMAK_UNSIGNED_TINYINT: case ORMAK_SMALLINT: case ORMAK_UNSIGNED_SMALLINT:
    case ORMAK_FLOAT: case ORMAK_CHAR: return true;
    default: return false;
    }
}

/* Wide cells into the target's elements: byte 0 (and 1) of 4-byte cells, or a double of an
   8-byte cell into a float. A size that ends inside an element keeps the bytes it covers. */
void narrow(int data_type, int data_count, int data_size, int variable_size, const char *cells, char *buffer) {
    const long long needed = (long long)data_count * data_size;
    const long long given = variable_size < 0 || variable_size >= needed ? needed : variable_size;
    const int cell = data_type == ORMAK_FLOAT ? 8 : 4;
    const int width = data_type == ORMAK_CHAR ? 1 : data_size;
    const long long whole = given / width;
    for (long long i = 0; i < whole; i++) {
        if (data_type == ORMAK_FLOAT) {
            double value;
            memcpy(&value, cells + i * cell, sizeof value);
            float narrowed = (float)value;
            memcpy(buffer + i * width, &narrowed, sizeof narrowed);
        } else {
            memcpy(buffer + i * width, cells + i * cell, (size_t)width);
        }
    }
    memcpy(buffer + whole * width, cells + whole * cell, (size_t)(given % width));
}

} // namespace

int memory_input(int data_type, int data_count, int data_size, int selection, void **data, int *data_allocated,
                 int variable_number, int variable_size, int programming_language) {
    _ormak_variable *slot = &variable_list[variable_number];
    const bool fixed = is_fixed_numeric(data_type) || data_type == ORMAK_CHAR || data_type == ORMAK_OPAQUE;
    const long long needed = fixed ? (long long)data_count * data_size : data_count;
    const bool buffered = programming_language == kJava || (programming_language == kWideCells && narrows(data_type)) ||
                          (variable_size != -1 && variable_size < needed);
    if (!buffered) {
        *data = (void *)slot->address;
        *data_allocated = -1;
        return ORMAK_SUCCESS;
    }
    const size_t unit = fixed ? 1 : data_type == ORMAK_VARCHAR ? sizeof(char *) : sizeof(ORMAK_VARIABLE_LENGTH);
    /* Cleared, so that nothing the source leaves out reaches the file as it stood. */
    char *buffer = (char *)calloc((size_t)needed, unit);
    if (buffer == nullptr) {
        *data_allocated = -1;
        return fail(ORMAK_ERROR_NOT_ENOUGH_MEMORY,
                    "Error when reading data from memory number \"%d\" as there is not enough memory available",
                    variable_number);
    }
    *data = buffer;
    *data_allocated = 0;
    const char *block = (const char *)slot->address;
    const long long given = variable_size < 0 ? needed : std::min<long long>(variable_size, needed);

    if (programming_language == kJava && (fixed || data_type == ORMAK_VARCHAR)) {
        /* The binding fills the buffer through the accessors by slot number. */
        slot->address = (uintptr_t)buffer;
        int delivered = _ormak_variable_operation(0, variable_number, (int)given);
        if (data_type == ORMAK_VARCHAR) *data_allocated = kOwnedStrings;
        long long kept = variable_size < 0 ? std::max(0, delivered) : given;
        if (selection == -1 && kept < needed) memset(buffer + kept * unit, 0, (size_t)(needed - kept) * unit);
        return ORMAK_SUCCESS;
    }
    /* Java has no accessors for variable-length records, and its slot's address is only
       scratch: they stay absent. */
    if (programming_language == kJava) return ORMAK_SUCCESS;
    if (programming_language == kWideCells && narrows(data_type)) {
        narrow(data_type, data_count, data_size, variable_size, block, buffer);
        return ORMAK_SUCCESS;
    }
    /* The block is smaller than the target: what it holds, then zeros (or nulls). */
    if (given > 0) memcpy(buffer, block, (size_t)given * unit);
    return ORMAK_SUCCESS;
}

} // namespace ormak
