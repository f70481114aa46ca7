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

int read_select(pANTLR3_BASE_TREE statement, int programming_language) {
    int cache = tree::flag(statement, 4);
    CacheValue slots, size, preemption;
    /* The selectors are read only with CACHE; without it they are all -1. */
    if (cache == 0) {
        slots = read_set_cache_value(statement, 5);
        size = read_set_cache_value(statement, 6);
        preemption = read_set_cache_value(statement, 7);
    } else {
        slots.selector = size.selector = preemption.selector = -1;
    }
    return ormak_select(tree::list(statement, 3), tree::flag(statement, 0), tree::flag(statement, 1),
                        read_object_kind(statement, 2), cache, slots.selector, slots.value, size.selector, size.value,
                        preemption.selector, preemption.real, tree::list(statement, 8), tree::list(statement, 9),
                        programming_language);
}

} // namespace ormak
