/* The dispatch table: statement root to the reader that calls its executor. */
#include "OrmakParser.h"
#include "StatementReaders.h"
#include "TreeReader.h"
#include "../OrmakPrivateStructures.h"
#include "../files/ObjectCache.h"

namespace ormak {
namespace {

struct Row {
    int root;
    StatementReader reader;
};

const Row rows[] = {
    {CREATE_DIRECTORY, read_create_directory},
    {CREATE_FILE, read_create_file},
    {CREATE_GROUP, read_create_group},
    {CREATE_DATASET, read_create_dataset},
    {CREATE_ATTRIBUTE, read_create_attribute},
    {CREATE_LINK, read_create_link},
    {CREATE_EXTERNAL_LINK, read_create_external_link},
    {ALTER_DIMENSION, read_alter_dimension},
    {RENAME_DIRECTORY, read_rename_directory},
    {RENAME_FILE, read_rename_file},
    {COPY_FILE, read_copy_file},
    {RENAME_OBJECT, read_rename_object},
    {COPY_OBJECT, read_copy_object},
    {DROP_DIRECTORY, read_drop_directory},
    {DROP_FILE, read_drop_file},
    {DROP_OBJECT, read_drop_object},
    {INSERT, read_insert},
    {SELECT, read_select},
    {USE_DIRECTORY, read_use_directory},
    {USE_FILE, read_use_file},
    {USE_GROUP, read_use_group},
    {FLUSH, read_flush},
    {CLOSE_FILE, read_close_file},
    {CLOSE_ALL_FILE, read_close_all_file},
    {CLOSE_GROUP, read_close_group},
    {SET_LIBRARY_BOUNDS, read_set_library_bounds},
    {SET_CACHE, read_set_cache},
    {SET_ATOMIC, read_set_atomic},
    {SET_EXTERNAL_LINK_PREFIX, read_set_external_link_prefix},
    {SET_FLUSH, read_set_flush},
    {SET_DEBUG, read_set_debug},
    {SHOW_USE_DIRECTORY, read_show_use_directory},
    {SHOW_USE_FILE, read_show_use_file},
    {SHOW_ALL_USE_FILE, read_show_all_use_file},
    {SHOW_USE_GROUP, read_show_use_group},
    {SHOW_ORMAK_VERSION, read_show_ormak_version},
    {SHOW_HDF5_VERSION, read_show_hdf5_version},
    {SHOW_PCRE_VERSION, read_show_pcre_version},
    {SHOW_ZLIB_VERSION, read_show_zlib_version},
    {SHOW_MPI_VERSION, read_show_mpi_version},
    {SHOW_EXECUTE_STATUS, read_show_execute_status},
    {SHOW_EXTERNAL_LINK_PREFIX, read_show_external_link_prefix},
    {SHOW_FLUSH, read_show_flush},
    {SHOW_DEBUG, read_show_debug},
    {SHOW_OBJECT, read_show_object},
    {SHOW_DIRECTORY, read_show_directory},
    {SHOW_FILE, read_show_file},
    {SHOW_FILE_VALIDITY, read_show_file_validity},
    {SHOW_LIBRARY_BOUNDS, read_show_library_bounds},
    {SHOW_CACHE, read_show_cache},
    {SHOW_ATOMIC, read_show_atomic},
    {SHOW_TYPE, read_show_type},
    {SHOW_DATA_TYPE, read_show_data_type},
    {SHOW_ENDIANNESS, read_show_endianness},
    {SHOW_CHARSET, read_show_charset},
    {SHOW_TAG, read_show_tag},
    {SHOW_SIZE, read_show_size},
    {SHOW_ORDER, read_show_order},
    {SHOW_STORAGE_TYPE, read_show_storage_type},
    {SHOW_STORAGE_ALLOCATION, read_show_storage_allocation},
    {SHOW_FILL_TYPE, read_show_fill_type},
    {SHOW_MASK, read_show_mask},
    {SHOW_DIMENSION, read_show_dimension},
    {SHOW_STORAGE_DIMENSION, read_show_storage_dimension},
    {SHOW_FILL_VALUE, read_show_fill_value},
    {SHOW_FILE_SIZE, read_show_file_size},
};

/* Statements that leave the objects held open by SELECT and INSERT as they are: those two
   themselves, which change no name, and those that only touch the session or move between
   files and groups in use (the held objects are known by file and canonical path). Every
   other statement may create, drop, rename, link or reshape objects, close files, change
   how objects open (access lists, the directory external links start from) or look at the
   file's storage, which a held object's unwritten chunks would change: the held objects are
   closed before it runs. */
bool keeps_held_objects(int root) {
    switch (root) {
    case SELECT: case INSERT: case FLUSH: case USE_FILE: case USE_GROUP: case CLOSE_GROUP:
    case SET_DEBUG: case SET_FLUSH: case SET_ATOMIC:
    case SHOW_USE_DIRECTORY: case SHOW_USE_FILE: case SHOW_ALL_USE_FILE: case SHOW_USE_GROUP:
    case SHOW_ORMAK_VERSION: case SHOW_HDF5_VERSION: case SHOW_PCRE_VERSION: case SHOW_ZLIB_VERSION:
    case SHOW_MPI_VERSION: case SHOW_EXECUTE_STATUS: case SHOW_EXTERNAL_LINK_PREFIX: case SHOW_FLUSH:
    case SHOW_DEBUG: case SHOW_LIBRARY_BOUNDS: case SHOW_CACHE: case SHOW_ATOMIC:
        return true;
    default:
        return false;
    }
}

} // namespace

bool is_unknown_statement(pANTLR3_BASE_TREE statement) { return tree::type(statement) == UNKNOWN; }

int dispatch(pANTLR3_BASE_TREE statement, int programming_language) {
    int root = tree::type(statement);
    if (!keeps_held_objects(root)) object_cache::forget_all();
    for (const Row &row : rows) {
        if (row.root == root) return row.reader(statement, programming_language);
    }
    return ORMAK_ERROR_PARSE;
}

} // namespace ormak
