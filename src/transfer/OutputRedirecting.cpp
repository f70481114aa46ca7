/* The frame of output redirecting: the INTO clause decoded, and the results moved into the
   cursor in use, a file or a memory variable, whose slot then tells what it holds. */
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>

#include "OutputRedirecting.h"
#include "OutputTargets.h"
#include "OrmakParser.h"
#include "Values.h"
#include "../OrmakPrivateStructures.h"
#include "../language/TreeReader.h"
#include "../session/Session.h"

namespace tree = ormak::tree;

namespace {

/* Java: the binding copies out of a buffer of ours. 64: the caller's cells are wider. */
constexpr int kJava = 4;
constexpr int kWideCells = 64;

char *slot_text(pANTLR3_BASE_TREE redirecting, int index) { return (char *)tree::name(redirecting, index); }

/* VARCHAR and the variable-length types hold a pointer per element, and sizes of them count
   elements; every other type is a run of data_size bytes, and sizes count bytes. */
bool holds_pointers(int data_type) { return data_type == ORMAK_VARCHAR || ormak::is_variable_numeric(data_type); }

size_t element_bytes(int data_type, int data_size) {
    if (data_type == ORMAK_VARCHAR) return sizeof(char *);
    if (ormak::is_variable_numeric(data_type)) return sizeof(ORMAK_VARIABLE_LENGTH);
    return data_size > 0 ? (size_t)data_size : 0;
}

/* What the results amount to in the units of a memory size. */
long long amount(int data_type, int data_count, int data_size) {
    return holds_pointers(data_type) ? data_count : (long long)data_count * data_size;
}

int refuse_number(int variable_number) {
    return ormak::fail(ORMAK_ERROR_INVALID_VALUE,
                       "Error when redirecting results into memory number \"%d\" as it is not between 0 and %d",
                       variable_number, ORMAK_VARIABLE_COUNT - 1);
}

int refuse_free_slot(int variable_number) {
    return ormak::fail(ORMAK_ERROR_NOT_REGISTERED,
                       "Error when redirecting results into memory number \"%d\" as it is not registered",
                       variable_number);
}

/* ---- Cursor ---- */

/* The cursor in use, cleared and filled in the shapes of cursors: the first byte of a CHAR
   or OPAQUE element with all its bytes below it, the first member of a variable-length one
   with all its members below it. Adding copies, so the results stay the executor's. */
void cursor_output(const void *data, int data_type, int data_count, int data_size) {
    ormak_cursor_clear(nullptr);
    _ormak_cursor_set_data_type(data_type);
    if (data == nullptr) return;
    const char *bytes = (const char *)data;
    if (data_type == ORMAK_VARCHAR) {
        const char *const *strings = (const char *const *)data;
        for (int i = 0; i < data_count; i++)
            _ormak_cursor_add(strings[i], strings[i] ? (int)strlen(strings[i]) : 0);
    } else if (ormak::is_variable_numeric(data_type)) {
        const ORMAK_VARIABLE_LENGTH *records = (const ORMAK_VARIABLE_LENGTH *)data;
        for (int i = 0; i < data_count; i++) {
            const char *members = (const char *)records[i].address;
            /* A value without members has no first member to show: it is null. */
            if (members == nullptr || records[i].count == 0) {
                _ormak_cursor_add(nullptr, 0);
                continue;
            }
            _ormak_cursor_add(members, data_size);
            for (uint64_t k = 0; k < records[i].count; k++) _ormak_subcursor_add(members + k * data_size, data_size);
        }
    } else if (data_type == ORMAK_CHAR || data_type == ORMAK_OPAQUE) {
        for (int i = 0; i < data_count; i++) {
            const char *element = bytes + (size_t)i * data_size;
            _ormak_cursor_add(element, std::min(data_size, 1));
            if (data_size > 0) _ormak_subcursor_add(element, data_size);
        }
    } else {
        for (int i = 0; i < data_count; i++) _ormak_cursor_add(bytes + (size_t)i * data_size, data_size);
    }
}

/* ---- Memory ---- */

bool widens(int data_type) {
    switch (data_type) {
    case ORMAK_TINYINT: case ORMAK_UNSIGNED_TINYINT: case ORMAK_SMALLINT: case ORMAK_UNSIGNED_SMALLINT:
    case ORMAK_FLOAT: case ORMAK_CHAR: return true;
    default: return false;
    }
}

/* Elements into wider cells: a byte (every byte of a CHAR element) or two into the low bytes
   of a 4-byte cell, with no sign extension, a float into an 8-byte double. A size that ends
   inside an element puts the bytes it covers into a cell of their own, zero behind them.
   The cells are written from the last to the first, so `cells` may be `data` itself: cell i
   lies at or behind element i, and each element is read before its cell is written. */
void widen(const char *data, int data_type, int data_count, int data_size, int variable_size, char *cells) {
    const bool is_float = data_type == ORMAK_FLOAT;
    const size_t cell = is_float ? 8 : 4;
    const size_t width = data_type == ORMAK_SMALLINT || data_type == ORMAK_UNSIGNED_SMALLINT ? 2
                         : is_float                                                    ? 4
                                                                                       : 1;
    const long long total = data_type == ORMAK_CHAR ? (long long)data_count * data_size : data_count;
    long long taken = total;
    size_t rest = 0;
    if (variable_size >= 0 && variable_size < total * (long long)width) {
        taken = variable_size / (long long)width;
        rest = (size_t)(variable_size % (long long)width);
    }
    if (rest > 0) {
        char partial[8] = {};
        memcpy(partial, data + taken * width, rest);
        memcpy(cells + taken * cell, partial, cell);
    }
    for (long long i = taken - 1; i >= 0; i--) {
        char value[8] = {};
        if (is_float) {
            float narrow;
            memcpy(&narrow, data + i * width, sizeof narrow);
            const double wide = narrow;
            memcpy(value, &wide, sizeof wide);
        } else {
            memcpy(value, data + i * width, width);
        }
        memcpy(cells + i * cell, value, cell);
    }
}

/* The slot tells what its block holds: with a size, the capacity rather than the data. A
   transient slot is only marked as written, to be released at the end of the script. */
void report(_ormak_variable *slot, int data_type, int data_count, int data_size, int variable_size) {
    if (slot->transient == 0) {
        slot->used = 0;
        return;
    }
    slot->data_type = data_type;
    if (holds_pointers(data_type)) {
        slot->count = variable_size < 0 ? data_count : variable_size;
        slot->size = -1;
    } else if (variable_size < 0) {
        slot->count = data_count;
        slot->size = (int)((long long)data_count * data_size);
    } else {
        slot->count = data_size > 0 ? variable_size / data_size : 0;
        slot->size = variable_size;
    }
    slot->dimension_count = 1;
    slot->dimension_list[0] = slot->count;
}

int memory_output(const void *data, int data_type, int data_count, int data_size, int variable_number,
                  int variable_size, int programming_language) {
    /* Decoding refused these already; a caller that did not decode must not reach past the
       slots or write through a free one. */
    if (variable_number < 0 || variable_number >= ORMAK_VARIABLE_COUNT) return refuse_number(variable_number);
    _ormak_variable *slot = &variable_list[variable_number];
    if (slot->address == UINTPTR_MAX) return refuse_free_slot(variable_number);
    if (data_count < 0) data_count = 0;
    const long long held = amount(data_type, data_count, data_size);

    if (programming_language == kJava) {
        /* The Java side copies out of our buffer through the accessors, never asked for more
           than the buffer holds. */
        if (data != nullptr && data_count > 0 && variable_size != 0) {
            const long long asked = variable_size < 0 ? (long long)data_count * data_size
                                                      : std::min<long long>(variable_size, held);
            slot->address = (uintptr_t)data;
            _ormak_variable_operation(1, variable_number, (int)asked);
        }
    } else if (programming_language == kWideCells && widens(data_type)) {
        if (data != nullptr) widen((const char *)data, data_type, data_count, data_size, variable_size,
                                   (char *)slot->address);
    } else if (data != nullptr && data != (const void *)slot->address) {
        /* The results did not land in the block: what the size lets in, the rest dropped. */
        const long long taken = variable_size < 0 ? held : std::min<long long>(variable_size, held);
        const size_t unit = holds_pointers(data_type) ? element_bytes(data_type, data_size) : 1;
        if (taken > 0) memcpy((void *)slot->address, data, (size_t)taken * unit);
    }
    report(slot, data_type, data_count, data_size, variable_size);
    return ORMAK_SUCCESS;
}

} // namespace

extern "C" {

int _ormak_get_output_redirecting_parameters(const pANTLR3_BASE_TREE redirecting, int *output_type,
                                             int *file_truncate, char **file_name, int *file_eof,
                                             char **file_separator, char **file_subseparator,
                                             int *file_split_defined, int *file_split, int *variable_number,
                                             int *variable_size) {
    *output_type = *file_truncate = *file_eof = *file_split_defined = *file_split = -1;
    *variable_number = *variable_size = -1;
    *file_name = *file_separator = *file_subseparator = nullptr;
    if (redirecting == nullptr) return ORMAK_SUCCESS;
    if (tree::flag(redirecting, 0) == 0) {
        *output_type = 2;
        return ORMAK_SUCCESS;
    }
    if (tree::flag(redirecting, 2) == 0) {
        *output_type = 4;
        *file_name = slot_text(redirecting, 2);
        if (tree::flag(redirecting, 1) == 0) *file_truncate = 0;
        if (tree::flag(redirecting, 3) == 0) *file_eof = tree::choice(redirecting, 3) == DOS_KEYWORD ? 1 : 2;
        *file_separator = slot_text(redirecting, 4);
        *file_subseparator = slot_text(redirecting, 5);
        if (tree::flag(redirecting, 6) == 0) {
            *file_split_defined = 0;
            *file_split = atoi(tree::name(redirecting, 6));
            if (*file_split < 0)
                return ormak::fail(ORMAK_ERROR_INVALID_VALUE,
                                   "Error when redirecting results into file \"%s\" as split is not equal to or "
                                   "greater than 0",
                                   *file_name);
        }
        return ORMAK_SUCCESS;
    }
    if (tree::flag(redirecting, 7) == 0) {
        *output_type = 8;
        *file_name = slot_text(redirecting, 7);
        if (tree::flag(redirecting, 1) == 0) *file_truncate = 0;
        return ORMAK_SUCCESS;
    }
    *output_type = 16;
    pANTLR3_BASE_TREE memory = tree::slot(redirecting, 8);
    *variable_number = atoi(tree::text(tree::child(memory, 0)));
    pANTLR3_BASE_TREE size = tree::child(memory, 1);
    if (size) {
        const char *text = tree::text(size);
        *variable_size = tree::type(size) == INTEGER_NUMBER_KEYWORD ? atoi(text) : (int)strtol(text, nullptr, 0);
    }
    if (*variable_number < 0 || *variable_number > ORMAK_VARIABLE_COUNT - 1) return refuse_number(*variable_number);
    if (variable_list[*variable_number].address == UINTPTR_MAX) return refuse_free_slot(*variable_number);
    if (size && *variable_size < 0)
        return ormak::fail(ORMAK_ERROR_INVALID_VALUE,
                           "Error when redirecting results into memory number \"%d\" as size is not equal to or "
                           "greater than 0",
                           *variable_number);
    return ORMAK_SUCCESS;
}

int _ormak_output_redirecting(const void *data, int data_type, int data_count, int data_size, int data_allocated,
                              int output_type, int file_truncate, const char *file_name, int file_eof,
                              const char *file_separator, const char *file_subseparator, int file_split_defined,
                              int file_split, int variable_number, int variable_size, int programming_language) {
    int status = ORMAK_SUCCESS;
    switch (output_type) {
    case -1:
    case 2: cursor_output(data, data_type, data_count, data_size); break;
    case 4:
        status = ormak::text_file_output(data, data_type, data_count, data_size, file_truncate, file_name, file_eof,
                                         file_separator, file_subseparator, file_split);
        break;
    case 8:
        status = ormak::binary_file_output(data, data_type, data_count, data_size, file_truncate, file_name);
        break;
    case 16:
        status = memory_output(data, data_type, data_count, data_size, variable_number, variable_size,
                               programming_language);
        break;
    default: break;
    }
    return ormak::trace("_ormak_output_redirecting", status,
                        {{"data", data},
                         {"data_type", data_type},
                         {"data_count", data_count},
                         {"data_size", data_size},
                         {"data_allocated", data_allocated},
                         {"output_type", output_type},
                         {"file_truncate", file_truncate},
                         {"file_name", file_name},
                         {"file_eof", file_eof},
                         {"file_separator", file_separator},
                         {"file_subseparator", file_subseparator},
                         {"file_split_defined", file_split_defined},
                         {"file_split", file_split},
                         {"variable_number", variable_number},
                         {"variable_size", variable_size},
                         {"programming_language", programming_language}});
}

} // extern "C"

namespace ormak {

bool OutputClause::lands_in_variable(int data_type, int data_count, int data_size, int programming_language) const {
    if (output_type != 16 || programming_language == kJava) return false;
    if (variable_number < 0 || variable_number >= ORMAK_VARIABLE_COUNT) return false;
    if (variable_list[variable_number].address == UINTPTR_MAX) return false;
    return variable_size < 0 || variable_size >= amount(data_type, data_count, data_size);
}

int OutputClause::write(ResultBuffer &results, int programming_language) const {
    const int status = _ormak_output_redirecting(
        results.data(), results.data_type(), results.count(), results.data_size(), results.allocated(), kind(),
        file_truncate, file_name, file_eof, file_separator, file_subseparator, file_split_defined, file_split,
        variable_number, variable_size, programming_language);
    if (status == ORMAK_SUCCESS && kind() == 16 && programming_language != kJava) {
        /* The pointers copied into the caller's block take their strings and members along. */
        int handed = results.count();
        const bool in_block = results.data() == (void *)variable_list[variable_number].address;
        if (variable_size >= 0 && !in_block) handed = std::min(handed, variable_size);
        results.hand_over(handed);
    }
    return status;
}

int ResultBuffer::prepare(const OutputClause &clause, int data_type, int data_count, int data_size,
                          int programming_language) {
    release();
    data_type_ = data_type;
    data_size_ = data_size;
    count_ = std::max(data_count, 0);
    if (clause.lands_in_variable(data_type, data_count, data_size, programming_language)) {
        data_ = (void *)variable_list[clause.variable_number].address;
        return ORMAK_SUCCESS;
    }
    const size_t bytes = (size_t)count_ * element_bytes(data_type, data_size);
    if (bytes == 0) return ORMAK_SUCCESS;
    data_ = malloc(bytes);
    if (data_ == nullptr) return ORMAK_ERROR_NOT_ENOUGH_MEMORY;
    allocated_ = 0;
    return ORMAK_SUCCESS;
}

void ResultBuffer::adopt(void *data, int data_type, int data_count, int data_size, int data_allocated) {
    release();
    data_ = data;
    data_type_ = data_type;
    data_size_ = data_size;
    count_ = std::max(data_count, 0);
    allocated_ = data_allocated;
}

void ResultBuffer::release() {
    /* The variable's own block (allocated -1) and all it points to are the caller's. */
    if (data_ != nullptr && allocated_ >= 0) {
        if (owns_elements_ && data_type_ == ORMAK_VARCHAR) {
            for (int i = std::max(handed_, 0); i < count_; i++) free(((char **)data_)[i]);
        } else if (owns_elements_ && is_variable_numeric(data_type_)) {
            for (int i = std::max(handed_, 0); i < count_; i++) free(((ORMAK_VARIABLE_LENGTH *)data_)[i].address);
        } else if (allocated_ == 1 && handed_ <= 0) {
            free(((ORMAK_VARIABLE_LENGTH *)data_)[0].address);
        }
        free(data_);
    }
    data_ = nullptr;
    allocated_ = -1;
    data_type_ = -1;
    data_size_ = 0;
    count_ = 0;
    owns_elements_ = false;
    handed_ = 0;
}

} // namespace ormak
