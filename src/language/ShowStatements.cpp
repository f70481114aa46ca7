/* Readers of the SHOW statements. Every one ends in two slots, post-processing and output,
   whose child 0 is the clause or null. */
#include "OrmakParser.h"
#include "DefinitionReadings.h"
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

/* Slots: kind, file, object, LIKE (the expression and the depths), WHERE, ORDER CREATION. A
   LIKE clause chooses the walk. */
int read_show_object(pANTLR3_BASE_TREE statement, int programming_language) {
    const int object_type = read_object_type(tree::slot(statement, 0));
    pANTLR3_BASE_TREE like = tree::slot(statement, 3);
    pANTLR3_BASE_TREE where_list = tree::count(tree::slot(statement, 4)) > 0 ? tree::slot(statement, 4) : nullptr;
    const int order_creation = tree::flag(statement, 5);
    if (tree::count(like) > 0)
        return ormak_show_object_like(tree::name(statement, 1), tree::name(statement, 2), object_type,
                                      tree::text(tree::child(like, 0)), tree::child(like, 1), where_list,
                                      order_creation, post(statement), output(statement), programming_language);
    return ormak_show_object(tree::name(statement, 1), tree::name(statement, 2), object_type, where_list,
                             order_creation, post(statement), output(statement), programming_language);
}

/* Slots: the path, LIKE (the expression and the depths). */
int read_show_directory(pANTLR3_BASE_TREE statement, int programming_language) {
    pANTLR3_BASE_TREE like = tree::slot(statement, 1);
    return ormak_show_directory(tree::name(statement, 0), tree::text(tree::child(like, 0)), tree::child(like, 1),
                                post(statement), output(statement), programming_language);
}

int read_show_file(pANTLR3_BASE_TREE statement, int programming_language) {
    pANTLR3_BASE_TREE like = tree::slot(statement, 1);
    return ormak_show_file(tree::name(statement, 0), tree::text(tree::child(like, 0)), tree::child(like, 1),
                           post(statement), output(statement), programming_language);
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

namespace {

/* Slot 0 of a statement with a kind of object: DATASET, ATTRIBUTE or any. */
int object_kind(pANTLR3_BASE_TREE statement) {
    switch (tree::choice(statement, 0)) {
    case -1: return -1;
    case DATASET_KEYWORD: return ORMAK_DATASET;
    default: return ORMAK_ATTRIBUTE;
    }
}

} // namespace

int read_show_type(pANTLR3_BASE_TREE statement, int programming_language) {
    return ormak_show_type(tree::list(statement, 0), post(statement), output(statement), programming_language);
}

int read_show_data_type(pANTLR3_BASE_TREE statement, int programming_language) {
    return ormak_show_data_type(tree::list(statement, 1), object_kind(statement), post(statement), output(statement),
                                programming_language);
}

int read_show_endianness(pANTLR3_BASE_TREE statement, int programming_language) {
    return ormak_show_endianness(tree::list(statement, 1), object_kind(statement), post(statement), output(statement),
                                 programming_language);
}

int read_show_charset(pANTLR3_BASE_TREE statement, int programming_language) {
    return ormak_show_charset(tree::list(statement, 1), object_kind(statement), post(statement), output(statement),
                              programming_language);
}

int read_show_tag(pANTLR3_BASE_TREE statement, int programming_language) {
    return ormak_show_tag(tree::list(statement, 1), object_kind(statement), post(statement), output(statement),
                          programming_language);
}

int read_show_size(pANTLR3_BASE_TREE statement, int programming_language) {
    return ormak_show_size(tree::list(statement, 1), object_kind(statement), post(statement), output(statement),
                           programming_language);
}

/* ATTRIBUTE in slot 0 asks for the order of attributes. */
int read_show_order(pANTLR3_BASE_TREE statement, int programming_language) {
    return ormak_show_order(tree::list(statement, 1), tree::flag(statement, 0) == 0 ? ORMAK_ATTRIBUTE : -1,
                            post(statement), output(statement), programming_language);
}

int read_show_storage_type(pANTLR3_BASE_TREE statement, int programming_language) {
    return ormak_show_storage_type(tree::list(statement, 0), post(statement), output(statement), programming_language);
}

int read_show_storage_allocation(pANTLR3_BASE_TREE statement, int programming_language) {
    return ormak_show_storage_allocation(tree::list(statement, 0), post(statement), output(statement),
                                         programming_language);
}

int read_show_fill_type(pANTLR3_BASE_TREE statement, int programming_language) {
    return ormak_show_fill_type(tree::list(statement, 0), post(statement), output(statement), programming_language);
}

int read_show_mask(pANTLR3_BASE_TREE statement, int programming_language) {
    return ormak_show_mask(tree::list(statement, 0), post(statement), output(statement), programming_language);
}

/* Slots: kind, MAX, file, the name itself. */
int read_show_dimension(pANTLR3_BASE_TREE statement, int programming_language) {
    return ormak_show_dimension(tree::name(statement, 2), tree::text(tree::slot(statement, 3)), object_kind(statement),
                                tree::flag(statement, 1) == 0 ? 1 : 0, post(statement), output(statement),
                                programming_language);
}

int read_show_storage_dimension(pANTLR3_BASE_TREE statement, int programming_language) {
    return ormak_show_storage_dimension(tree::name(statement, 0), tree::text(tree::slot(statement, 1)),
                                        post(statement), output(statement), programming_language);
}

int read_show_fill_value(pANTLR3_BASE_TREE statement, int programming_language) {
    return ormak_show_fill_value(tree::name(statement, 0), tree::text(tree::slot(statement, 1)), post(statement),
                                 output(statement), programming_language);
}

int read_show_file_size(pANTLR3_BASE_TREE statement, int programming_language) {
    return ormak_show_file_size(tree::list(statement, 0), post(statement), output(statement), programming_language);
}

} // namespace ormak
