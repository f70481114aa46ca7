/* Readers of the SHOW statements. Every one ends in two slots, post-processing and output,
   whose child 0 is the clause or null. */
#include "OrmakParser.h"
#include "StatementReaders.h"
#include "TreeReader.h"
#include "../OrmakExecutors.h"

namespace ormak {
namespace {

pANTLR3_BASE_TREE post(pANTLR3_BASE_TREE statement) { return tree::list(statement, tree::count(statement) - 2); }

pANTLR3_BASE_TREE output(pANTLR3_BASE_TREE statement) { return tree::list(statement, tree::count(statement) - 1); }

} // namespace

int read_show_use_directory(pANTLR3_BASE_TREE statement, int programming_language) {
    return ormak_show_use_directory(post(statement), output(statement), programming_language);
}

int read_show_use_file(pANTLR3_BASE_TREE statement, int programming_language) {
    return ormak_show_use_file(post(statement), output(statement), programming_language);
}

int read_show_all_use_file(pANTLR3_BASE_TREE statement, int programming_language) {
    return ormak_show_all_use_file(post(statement), output(statement), programming_language);
}

int read_show_use_group(pANTLR3_BASE_TREE statement, int programming_language) {
    return ormak_show_use_group(post(statement), output(statement), programming_language);
}

int read_show_ormak_version(pANTLR3_BASE_TREE statement, int programming_language) {
    return ormak_show_ormak_version(post(statement), output(statement), programming_language);
}

int read_show_hdf5_version(pANTLR3_BASE_TREE statement, int programming_language) {
    return ormak_show_hdf5_version(post(statement), output(statement), programming_language);
}

int read_show_pcre_version(pANTLR3_BASE_TREE statement, int programming_language) {
    return ormak_show_pcre_version(post(statement), output(statement), programming_language);
}

int read_show_zlib_version(pANTLR3_BASE_TREE statement, int programming_language) {
    return ormak_show_zlib_version(post(statement), output(statement), programming_language);
}

int read_show_mpi_version(pANTLR3_BASE_TREE statement, int programming_language) {
    return ormak_show_mpi_version(post(statement), output(statement), programming_language);
}

int read_show_execute_status(pANTLR3_BASE_TREE statement, int programming_language) {
    return ormak_show_execute_status(post(statement), output(statement), programming_language);
}

int read_show_external_link_prefix(pANTLR3_BASE_TREE statement, int programming_language) {
    return ormak_show_external_link_prefix(post(statement), output(statement), programming_language);
}

int read_show_flush(pANTLR3_BASE_TREE statement, int programming_language) {
    return ormak_show_flush(post(statement), output(statement), programming_language);
}

int read_show_debug(pANTLR3_BASE_TREE statement, int programming_language) {
    return ormak_show_debug(post(statement), output(statement), programming_language);
}

int read_show_file_validity(pANTLR3_BASE_TREE statement, int programming_language) {
    return ormak_show_file_validity(tree::list(statement, 0), post(statement), output(statement), programming_language);
}

/* Slot 0 holds USE for the file in use; slot 1 the bound: FROM the low, TO the high one. */
int read_show_library_bounds(pANTLR3_BASE_TREE statement, int programming_language) {
    int object_type = tree::flag(statement, 0) == 0 ? ORMAK_FILE : -1;
    int parameter_type = tree::flag(statement, 1) == 0 ? (tree::choice(statement, 1) == FROM_KEYWORD ? 0 : 1) : -1;
    return ormak_show_library_bounds(object_type, parameter_type, post(statement), output(statement),
                                     programming_language);
}

/* The file in use (slot 0) stands before the kind of object (slot 1), FILE when left out. */
int read_show_cache(pANTLR3_BASE_TREE statement, int programming_language) {
    int object_type = -1;
    if (tree::flag(statement, 0) != 0)
        object_type = tree::choice(statement, 1) == DATASET_KEYWORD ? ORMAK_DATASET : ORMAK_FILE;
    int parameter_type = -1;
    switch (tree::choice(statement, 2)) {
    case -1: break;
    case SLOTS_KEYWORD: parameter_type = 0; break;
    case SIZE_KEYWORD: parameter_type = 1; break;
    default: parameter_type = 2;
    }
    return ormak_show_cache(object_type, parameter_type, post(statement), output(statement), programming_language);
}

int read_show_atomic(pANTLR3_BASE_TREE statement, int programming_language) {
    return ormak_show_atomic(tree::flag(statement, 0), post(statement), output(statement), programming_language);
}

} // namespace ormak
