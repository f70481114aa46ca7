/* Readers of the statements that move data. */
#include <stdlib.h>

#include "OrmakParser.h"
#include "StatementReaders.h"
#include "TreeReader.h"
#include "../OrmakExecutors.h"

namespace ormak {

namespace {

/* DATASET 8, ATTRIBUTE or AT 16; -1 when the statement names no kind. */
int read_object_kind(pANTLR3_BASE_TREE statement, int index) {
    int kind = tree::choice(statement, index);
    if (kind == -1) return -1;
    return kind == DATASET_KEYWORD ? ORMAK_DATASET : ORMAK_ATTRIBUTE;
}

} // namespace

int read_insert(pANTLR3_BASE_TREE statement, int programming_language) {
    int direct = tree::flag(statement, 0);
    int mask = -1, mask_value = -1, size = -1, size_value = -1;
    /* The mask and size belong to DIRECTLY and are read only with it. */
    if (direct == 0 && tree::flag(statement, 1) == 0) {
        mask = 0;
        mask_value = read_number(tree::list(statement, 1));
    }
    if (direct == 0 && tree::flag(statement, 2) == 0) {
        size = 0;
        size_value = read_number(tree::list(statement, 2));
    }
    return ormak_insert(tree::list(statement, 5), direct, mask, mask_value, size, size_value, tree::flag(statement, 3),
                        read_object_kind(statement, 4), tree::list(statement, 6), tree::list(statement, 7),
                        programming_language);
}

} // namespace ormak
