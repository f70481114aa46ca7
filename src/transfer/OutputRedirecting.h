/* The one road by which results leave a statement: the INTO clause decoded, and one buffer
   of results moved into the cursor in use, a text file, a binary file or a memory variable. */
#ifndef ORMAK_OUTPUT_REDIRECTING_H
#define ORMAK_OUTPUT_REDIRECTING_H

#include <antlr3.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Decodes the INTO subtree (null when there is none): output_type -1 nothing, 2 cursor,
   4 text file, 8 binary file, 16 memory, with the rest of the clause; what the clause does
   not name keeps its absent value (-1 or null). The texts point into the tree. Refuses a
   negative split, a memory number out of range or not registered, and a negative memory
   size. */
int _ormak_get_output_redirecting_parameters(const pANTLR3_BASE_TREE redirecting, int *output_type,
                                             int *file_truncate, char **file_name, int *file_eof,
                                             char **file_separator, char **file_subseparator,
                                             int *file_split_defined, int *file_split, int *variable_number,
                                             int *variable_size);

/* Moves `data_count` results of `data_type` at `data` (`data_size` bytes each; for VARCHAR
   one string pointer each with `data_size` 1, for the variable-length types one record each
   with `data_size` the width of a member) to output_type 2, 4, 8 or 16. `data_allocated` is
   0 for a buffer of the executor, -1 for the variable's own block or no buffer; `data` stays
   the executor's to release. Only the file branches fail. */
int _ormak_output_redirecting(const void *data, int data_type, int data_count, int data_size, int data_allocated,
                              int output_type, int file_truncate, const char *file_name, int file_eof,
                              const char *file_separator, const char *file_subseparator, int file_split_defined,
                              int file_split, int variable_number, int variable_size, int programming_language);

#ifdef __cplusplus
}

namespace ormak {

class ResultBuffer;

/* What an INTO clause says, decoded once per statement. */
struct OutputClause {
    int output_type = -1;
    int file_truncate = -1;
    char *file_name = nullptr;
    int file_eof = -1;
    char *file_separator = nullptr;
    char *file_subseparator = nullptr;
    int file_split_defined = -1;
    int file_split = -1;
    int variable_number = -1;
    int variable_size = -1;

    int decode(pANTLR3_BASE_TREE redirecting) {
        return _ormak_get_output_redirecting_parameters(redirecting, &output_type, &file_truncate, &file_name,
                                                        &file_eof, &file_separator, &file_subseparator,
                                                        &file_split_defined, &file_split, &variable_number,
                                                        &variable_size);
    }

    /* Where the results go: a statement without INTO fills the cursor in use. */
    int kind() const { return output_type == -1 ? 2 : output_type; }

    /* Whether `data_count` results fit in the memory variable's own block, so that the read
       lands there with no copy: memory output, a caller other than Java, and no size or one
       that holds them (bytes for fixed-length types, elements for the others). */
    bool lands_in_variable(int data_type, int data_count, int data_size, int programming_language) const;

    /* Moves the results where the clause says and, for memory, hands the strings or members
       that were delivered over to the caller's block. */
    int write(ResultBuffer &results, int programming_language) const;
};

/* The buffer of a result statement, released by its ownership when it goes. The results
   land in the memory variable's own block when the clause allows it; otherwise the block is
   the buffer's. Strings and variable-length members that were allocated one by one (as
   HDF5 reads them) are freed with it, but for those handed over to a memory variable. */
class ResultBuffer {
public:
    ResultBuffer() = default;
    ResultBuffer(const ResultBuffer &) = delete;
    ResultBuffer &operator=(const ResultBuffer &) = delete;
    ~ResultBuffer() { release(); }

    /* Room for `data_count` results: the variable's block when clause.lands_in_variable,
       else a new block. 0, or -8 when memory is out, with the message left to the caller. */
    int prepare(const OutputClause &clause, int data_type, int data_count, int data_size, int programming_language);
    /* Takes a block made elsewhere, with the ownership of data_allocated (-1, 0, or 1 with
       the first record's address a block of all members). */
    void adopt(void *data, int data_type, int data_count, int data_size, int data_allocated);
    /* Call once the read has filled the elements: from now on each string or member block
       they point to belongs to the buffer. */
    void own_elements() { owns_elements_ = true; }
    /* The first `count` elements' strings or members belong to the caller's block now. */
    void hand_over(int count) { handed_ = count; }
    void release();

    void *data() const { return data_; }
    int data_type() const { return data_type_; }
    int data_size() const { return data_size_; }
    int allocated() const { return allocated_; }
    /* The number of results, which post-processing may lower in place. */
    int &count() { return count_; }
    int count() const { return count_; }

private:
    void *data_ = nullptr;
    int allocated_ = -1;
    int data_type_ = -1;
    int data_size_ = 0;
    int count_ = 0;
    bool owns_elements_ = false;
    int handed_ = 0;
};

} // namespace ormak
#endif

#endif
