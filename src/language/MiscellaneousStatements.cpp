/* Readers of USE FILE, USE GROUP, FLUSH, the CLOSE and the SET statements. */
#include <stdlib.h>

#include "OrmakParser.h"
#include "StatementReaders.h"
#include "TreeReader.h"
#include "../OrmakExecutors.h"

namespace ormak {

int read_number(pANTLR3_BASE_TREE node) {
    const char *text = tree::text(node);
    if (text == nullptr) return -1;
    if (tree::type(node) == HEXADECIMAL_NUMBER_KEYWORD) return (int)strtol(text, nullptr, 0);
    return atoi(text);
}

CacheValue read_set_cache_value(pANTLR3_BASE_TREE statement, int index) {
    CacheValue result;
    pANTLR3_BASE_TREE node = tree::list(statement, index);
    if (node == nullptr) return result;
    switch (tree::type(node)) {
    case FILE_KEYWORD: result.selector = 1; break;
    case DEFAULT_KEYWORD: result.selector = 2; break;
    default:
        result.selector = 3;
        result.value = read_number(node);
        result.real = atof(tree::text(node));
    }
    return result;
}

namespace {

/* A cache value of USE FILE: 0 left out, 1 DEFAULT, 2 a number beside it. */
CacheValue read_use_cache_value(pANTLR3_BASE_TREE statement, int index) {
    CacheValue result;
    pANTLR3_BASE_TREE node = tree::list(statement, index);
    if (node == nullptr) return result;
    if (tree::type(node) == DEFAULT_KEYWORD) {
        result.selector = 1;
        return result;
    }
    result.selector = 2;
    result.value = read_number(node);
    result.real = atof(tree::text(node));
    return result;
}

/* ENABLE 0, DISABLE -1. */
int read_enable(pANTLR3_BASE_TREE node) { return tree::type(node) == ENABLE_KEYWORD ? 0 : -1; }

/* GLOBAL or left out 1, LOCAL 2. */
int read_flush_kind(pANTLR3_BASE_TREE node) { return tree::type(node) == LOCAL_KEYWORD ? ORMAK_LOCAL : ORMAK_GLOBAL; }

} // namespace

int read_use_file(pANTLR3_BASE_TREE statement, int) {
    int parallel_words = tree::count(tree::slot(statement, 1));
    LibraryBounds bounds = read_library_bounds(statement, 3);
    int cache = tree::flag(statement, 6);
    CacheValue slots, size, preemption;
    if (cache == 0) {
        slots = read_use_cache_value(statement, 7);
        size = read_use_cache_value(statement, 8);
        preemption = read_use_cache_value(statement, 9);
    } else {
        slots.selector = size.selector = preemption.selector = -1;
    }
    return ormak_use_file(tree::list(statement, 2), tree::flag(statement, 0), parallel_words >= 2 ? 0 : -1,
                          parallel_words >= 1 ? 0 : -1, bounds.present, bounds.low, bounds.high, cache,
                          slots.selector, slots.value, size.selector, size.value, preemption.selector,
                          preemption.real);
}

/* The name is the root's own child here, not a slot. */
int read_use_group(pANTLR3_BASE_TREE statement, int) { return ormak_use_group(tree::text(tree::child(statement, 0))); }

/* No slot: the list, if written, is the root's child 0. */
int read_close_file(pANTLR3_BASE_TREE statement, int) { return ormak_close_file(tree::child(statement, 0)); }

int read_close_all_file(pANTLR3_BASE_TREE, int) { return ormak_close_all_file(); }

int read_close_group(pANTLR3_BASE_TREE, int) { return ormak_close_group(); }

/* No slot: the kind, if written, is the root's child 0. */
int read_flush(pANTLR3_BASE_TREE statement, int) { return ormak_flush(read_flush_kind(tree::child(statement, 0))); }

int read_set_library_bounds(pANTLR3_BASE_TREE statement, int) {
    int low = tree::flag(statement, 0) == 0 ? read_bound_low(tree::slot(statement, 0)) : -1;
    int high = tree::flag(statement, 1) == 0 ? ORMAK_LATEST : -1;
    return ormak_set_library_bounds(low, high);
}

int read_set_cache(pANTLR3_BASE_TREE statement, int) {
    int object_type = tree::choice(statement, 0) == DATASET_KEYWORD ? ORMAK_DATASET : ORMAK_FILE;
    CacheValue slots = read_set_cache_value(statement, 1);
    CacheValue size = read_set_cache_value(statement, 2);
    CacheValue preemption = read_set_cache_value(statement, 3);
    return ormak_set_cache(object_type, slots.selector, slots.value, size.selector, size.value, preemption.selector,
                           preemption.real);
}

int read_set_atomic(pANTLR3_BASE_TREE statement, int) {
    return ormak_set_atomic(tree::flag(statement, 0), read_enable(tree::list(statement, 1)));
}

int read_set_external_link_prefix(pANTLR3_BASE_TREE statement, int) {
    return ormak_set_external_link_prefix(tree::name(statement, 0));
}

int read_set_flush(pANTLR3_BASE_TREE statement, int) {
    return ormak_set_flush(read_flush_kind(tree::list(statement, 0)), read_enable(tree::list(statement, 1)));
}

/* No slot: the choice is the root's child 0. */
int read_set_debug(pANTLR3_BASE_TREE statement, int) { return ormak_set_debug(read_enable(tree::child(statement, 0))); }

} // namespace ormak
