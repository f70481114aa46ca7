/* Readers of USE FILE, USE GROUP and the CLOSE statements. */
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

namespace {

/* A cache value of USE FILE: 0 left out, 1 DEFAULT, 2 a number beside it. */
struct UseCacheValue {
    int selector = 0;
    int value = -1;
    double real = -1.0;
};

UseCacheValue read_use_cache_value(pANTLR3_BASE_TREE statement, int index) {
    UseCacheValue result;
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

} // namespace

int read_use_file(pANTLR3_BASE_TREE statement, int) {
    int parallel_words = tree::count(tree::slot(statement, 1));
    LibraryBounds bounds = read_library_bounds(statement, 3);
    int cache = tree::flag(statement, 6);
    UseCacheValue slots, size, preemption;
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

} // namespace ormak
