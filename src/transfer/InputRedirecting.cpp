/* The frame of input redirecting: the FROM clause decoded, the source chosen, the buffer
   released by its ownership. */
#include <stdint.h>
#include <stdlib.h>

#include "InputRedirecting.h"
#include "InputSources.h"
#include "LiteralValues.h"
#include "OrmakParser.h"
#include "../OrmakPrivateStructures.h"
#include "../language/TreeReader.h"
#include "../session/Session.h"

namespace tree = ormak::tree;

namespace {

/* The word for the target in messages. */
const char *object_word(int object_type) {
    if (object_type == ORMAK_DATASET) return "dataset";
    if (object_type == ORMAK_ATTRIBUTE) return "attribute";
    return "object";
}

char *slot_text(pANTLR3_BASE_TREE redirecting, int index) { return (char *)tree::name(redirecting, index); }

} // namespace

extern "C" {

int _ormak_get_input_redirecting_parameters(const pANTLR3_BASE_TREE redirecting, const char *object_name,
                                            int object_type, const pANTLR3_BASE_TREE data_list, int *input_type,
                                            char **file_name, int *file_eof, char **file_separator,
                                            char **file_subseparator, int *variable_number, int *variable_size) {
    *input_type = -1;
    *file_name = *file_separator = *file_subseparator = nullptr;
    *file_eof = *variable_number = *variable_size = -1;
    if (redirecting == nullptr) {
        *input_type = data_list ? 1 : -1;
        return ORMAK_SUCCESS;
    }
    if (tree::flag(redirecting, 0) == 0) {
        *input_type = 2;
        return ORMAK_SUCCESS;
    }
    if (tree::flag(redirecting, 1) == 0) {
        *input_type = 4;
        *file_name = slot_text(redirecting, 1);
        if (tree::flag(redirecting, 2) == 0) *file_eof = tree::choice(redirecting, 2) == DOS_KEYWORD ? 1 : 2;
        *file_separator = slot_text(redirecting, 3);
        *file_subseparator = slot_text(redirecting, 4);
        return ORMAK_SUCCESS;
    }
    if (tree::flag(redirecting, 5) == 0) {
        *input_type = 8;
        *file_name = slot_text(redirecting, 5);
        return ORMAK_SUCCESS;
    }
    *input_type = 16;
    pANTLR3_BASE_TREE memory = tree::slot(redirecting, 6);
    *variable_number = atoi(tree::text(tree::child(memory, 0)));
    pANTLR3_BASE_TREE size = tree::child(memory, 1);
    if (size) {
        const char *text = tree::text(size);
        *variable_size = tree::type(size) == INTEGER_NUMBER_KEYWORD ? atoi(text) : (int)strtol(text, nullptr, 0);
    }
    const char *word = object_word(object_type);
    if (object_name == nullptr) object_name = "";
    if (*variable_number < 0 || *variable_number > ORMAK_VARIABLE_COUNT - 1)
        return ormak::fail(ORMAK_ERROR_INVALID_VALUE,
                           "Error when inserting data into %s \"%s\" as memory number \"%d\" is not between 0 and %d", word,
                           object_name, *variable_number, ORMAK_VARIABLE_COUNT - 1);
    if (variable_list[*variable_number].address == UINTPTR_MAX)
        return ormak::fail(ORMAK_ERROR_NOT_REGISTERED,
                           "Error when inserting data into %s \"%s\" as memory number \"%d\" is not registered", word,
                           object_name, *variable_number);
    if (size && *variable_size < 0)
        return ormak::fail(ORMAK_ERROR_INVALID_VALUE,
                           "Error when inserting data into %s \"%s\" as memory size is not equal to or greater than 0",
                           word, object_name);
    return ORMAK_SUCCESS;
}

int _ormak_input_redirecting(int data_type, int data_count, int data_size, int selection,
                             const hsize_t *dimension_list, int dimension_count, void **data, int *data_allocated,
                             char **data_auxiliary, int input_type, const pANTLR3_BASE_TREE data_list,
                             const char *file_name, int file_eof, const char *file_separator,
                             const char *file_subseparator, int variable_number, int variable_size,
                             int programming_language) {
    int status = ORMAK_SUCCESS;
    if (data_count > 0) {
        switch (input_type) {
        case 1:
            status = ormak::literal_input(data_type, data_count, data_size, selection, dimension_list, dimension_count,
                                          data_list, data, data_allocated, data_auxiliary);
            break;
        case 2:
            status = ormak::cursor_input(data_type, data_count, data_size, data, data_allocated, data_auxiliary);
            break;
        case 4:
            status = ormak::text_file_input(data_type, data_count, data_size, data, data_allocated, data_auxiliary,
                                            file_name, file_eof, file_separator, file_subseparator);
            break;
        case 8:
            status = ormak::binary_file_input(data_type, data_count, data_size, data, data_allocated, data_auxiliary,
                                              file_name);
            break;
        case 16:
            status = ormak::memory_input(data_type, data_count, data_size, selection, data, data_allocated,
                                         variable_number, variable_size, programming_language);
            break;
        default: break;
        }
    }
    return ormak::trace("_ormak_input_redirecting", status,
                        {{"data_type", data_type},
                         {"data_count", data_count},
                         {"data_size", data_size},
                         {"selection", selection},
                         {"dimension_list", (const void *)dimension_list},
                         {"dimension_count", dimension_count},
                         {"data", (const void *)data},
                         {"data_allocated", (const void *)data_allocated},
                         {"data_auxiliary", (const void *)data_auxiliary},
                         {"input_type", input_type},
                         {"data_list", (const void *)data_list},
                         {"file_name", file_name},
                         {"file_eof", file_eof},
                         {"file_separator", file_separator},
                         {"file_subseparator", file_subseparator},
                         {"variable_number", variable_number},
                         {"variable_size", variable_size},
                         {"programming_language", programming_language}});
}

} // extern "C"

namespace ormak {

int InputBuffer::fill(const InputClause &clause, int data_type, int data_count, int data_size, int selection,
                      const hsize_t *dimension_list, int dimension_count, pANTLR3_BASE_TREE data_list,
                      int programming_language) {
    release();
    data_type_ = data_type;
    count_ = data_count;
    return _ormak_input_redirecting(data_type, data_count, data_size, selection, dimension_list, dimension_count,
                                    &data_, &allocated_, &auxiliary_, clause.input_type, data_list, clause.file_name,
                                    clause.file_eof, clause.file_separator, clause.file_subseparator,
                                    clause.variable_number, clause.variable_size, programming_language);
}

int InputBuffer::literal_element(int data_type, int data_size, pANTLR3_BASE_TREE data_list) {
    release();
    data_type_ = data_type;
    count_ = 1;
    const hsize_t one = 1;
    return literal_input(data_type, 1, data_size, -1, &one, 1, data_list, &data_, &allocated_, &auxiliary_);
}

void InputBuffer::release() {
    if (data_ && allocated_ == 1) free(((ORMAK_VARIABLE_LENGTH *)data_)[0].address);
    if (data_ && allocated_ == kOwnedStrings)
        for (int i = 0; i < count_; i++) free(((char **)data_)[i]);
    if (allocated_ >= 0) free(data_);
    free(auxiliary_);
    data_ = nullptr;
    auxiliary_ = nullptr;
    allocated_ = -1;
    count_ = 0;
}

} // namespace ormak
