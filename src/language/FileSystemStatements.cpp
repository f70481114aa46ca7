/* Readers of the file-system statements. */
#include "OrmakParser.h"
#include "StatementReaders.h"
#include "TreeReader.h"
#include "../OrmakExecutors.h"

namespace ormak {

int read_bound_low(pANTLR3_BASE_TREE slot) {
    switch (tree::type(tree::child(slot, 0))) {
    case LATEST_KEYWORD: return ORMAK_LATEST;
    case VERSION_18_KEYWORD: return ORMAK_VERSION_18;
    default: return ORMAK_EARLIEST;
    }
}

LibraryBounds read_library_bounds(pANTLR3_BASE_TREE statement, int first_slot) {
    LibraryBounds bounds = {-1, -1, -1};
    if (tree::flag(statement, first_slot) != 0) return bounds;
    bounds.present = 0;
    if (tree::flag(statement, first_slot + 1) == 0) bounds.low = read_bound_low(tree::slot(statement, first_slot + 1));
    if (tree::flag(statement, first_slot + 2) == 0) bounds.high = ORMAK_LATEST;
    return bounds;
}

int read_create_directory(pANTLR3_BASE_TREE statement, int) {
    return ormak_create_directory(tree::list(statement, 0));
}

int read_create_file(pANTLR3_BASE_TREE statement, int) {
    LibraryBounds bounds = read_library_bounds(statement, 3);
    return ormak_create_file(tree::list(statement, 2), tree::flag(statement, 0), tree::flag(statement, 1),
                             bounds.present, bounds.low, bounds.high);
}

int read_rename_directory(pANTLR3_BASE_TREE statement, int) {
    return ormak_rename_directory(tree::list(statement, 0), tree::list(statement, 1));
}

int read_rename_file(pANTLR3_BASE_TREE statement, int) {
    return ormak_rename_file(tree::list(statement, 1), tree::list(statement, 2), tree::flag(statement, 0));
}

int read_copy_file(pANTLR3_BASE_TREE statement, int) {
    return ormak_copy_file(tree::list(statement, 1), tree::list(statement, 2), tree::flag(statement, 0));
}

int read_drop_directory(pANTLR3_BASE_TREE statement, int) {
    return ormak_drop_directory(tree::list(statement, 0));
}

int read_drop_file(pANTLR3_BASE_TREE statement, int) { return ormak_drop_file(tree::list(statement, 0)); }

/* The name is the root's own child here, not a slot. */
int read_use_directory(pANTLR3_BASE_TREE statement, int) {
    return ormak_use_directory(tree::text(tree::child(statement, 0)));
}

} // namespace ormak
