/* The one road by which values enter a dataset or an attribute: the FROM clause decoded, and
   one buffer in the element layout of the target, whatever the source. */
#ifndef ORMAK_INPUT_REDIRECTING_H
#define ORMAK_INPUT_REDIRECTING_H

#include <antlr3.h>
#include <hdf5.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Decodes the FROM subtree (null when there is none): input_type -1 nothing, 1 value list,
   2 cursor, 4 text file, 8 binary file, 16 memory, with the rest of the clause. Refuses a
   memory number out of range or not registered, and a negative memory size. */
int _ormak_get_input_redirecting_parameters(const pANTLR3_BASE_TREE redirecting, const char *object_name,
                                            int object_type, const pANTLR3_BASE_TREE data_list, int *input_type,
                                            char **file_name, int *file_eof, char **file_separator,
                                            char **file_subseparator, int *variable_number, int *variable_size);

/* Delivers `data_count` elements of `data_type` (element or member size `data_size`) in *data.
   *data_allocated tells the ownership: -1 nothing to free (the caller's memory or nothing),
   0 one block, 1 one block whose first record's address is a second block; *data_auxiliary
   is one further block. The caller starts them at null, -1, null, and releases them also on
   failure. */
int _ormak_input_redirecting(int data_type, int data_count, int data_size, int selection,
                             const hsize_t *dimension_list, int dimension_count, void **data, int *data_allocated,
                             char **data_auxiliary, int input_type, const pANTLR3_BASE_TREE data_list,
                             const char *file_name, int file_eof, const char *file_separator,
                             const char *file_subseparator, int variable_number, int variable_size,
                             int programming_language);

#ifdef __cplusplus
}

namespace ormak {

/* What a FROM clause says, decoded once per statement. */
struct InputClause {
    int input_type = -1;
    char *file_name = nullptr;
    int file_eof = -1;
    char *file_separator = nullptr;
    char *file_subseparator = nullptr;
    int variable_number = -1;
    int variable_size = -1;

    int decode(pANTLR3_BASE_TREE redirecting, const char *object_name, int object_type,
               pANTLR3_BASE_TREE data_list) {
        return _ormak_get_input_redirecting_parameters(redirecting, object_name, object_type, data_list, &input_type,
                                                       &file_name, &file_eof, &file_separator, &file_subseparator,
                                                       &variable_number, &variable_size);
    }
};

/* The buffer that input redirecting delivers, released by its ownership when it goes. */
class InputBuffer {
public:
    InputBuffer() = default;
    InputBuffer(const InputBuffer &) = delete;
    InputBuffer &operator=(const InputBuffer &) = delete;
    ~InputBuffer() { release(); }

    /* Fills the buffer from the clause, for `data_count` elements. */
    int fill(const InputClause &clause, int data_type, int data_count, int data_size, int selection,
             const hsize_t *dimension_list, int dimension_count, pANTLR3_BASE_TREE data_list,
             int programming_language);
    /* One element from a value list, as a fill value is made. */
    int literal_element(int data_type, int data_size, pANTLR3_BASE_TREE data_list);
    void release();
    const void *data() const { return data_; }
    bool empty() const { return data_ == nullptr; }

private:
    void *data_ = nullptr;
    int allocated_ = -1;
    char *auxiliary_ = nullptr;
    int data_type_ = -1;
    int count_ = 0;
};

/* Ownership value of a pointer block whose strings were made for the statement: the strings
   are freed with the block. */
constexpr int kOwnedStrings = 2;

} // namespace ormak
#endif

#endif
