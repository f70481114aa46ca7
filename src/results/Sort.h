/* The typed sort of the order clause: small lists are sorted at once; from 256 items on, with
   more than one thread, the list is cut into one section per thread, an OpenMP team sorts the
   sections side by side, and sorted sections are merged pairwise in parallel passes. */
#ifndef ORMAK_SORT_H
#define ORMAK_SORT_H

#include <stddef.h>

namespace ormak {

/* What a sort compares, one kind for each family of comparison functions. */
enum SortKind {
    SORT_TINYINT,
    SORT_UNSIGNED_TINYINT,
    SORT_SMALLINT,
    SORT_UNSIGNED_SMALLINT,
    SORT_INT,
    SORT_UNSIGNED_INT,
    SORT_BIGINT,
    SORT_UNSIGNED_BIGINT,
    SORT_FLOAT,
    SORT_DOUBLE,
    SORT_CHAR,      /* fixed texts of `width` bytes, compared as strncmp does */
    SORT_CHAR_CHAR  /* pointers to terminated strings; a null one comes before every string */
};

/* Lists of fewer items are always sorted by one thread. */
const size_t parallel_sort_threshold = 256;

/* The kind for a numeric data type flag (TINYINT to DOUBLE), or for the members of a
   variable-length one (VARTINYINT to VARDOUBLE); false for any other type. */
bool sort_kind_of(int data_type, SortKind *kind);

/* Sorts `count` items at `data` in place, ascending for `order_type` 1 and descending for any
   other value. SORT_CHAR items are `width` bytes wide; their sort sets global_data_size. With
   `threads` above 1 and at least parallel_sort_threshold items, the items are cut into
   `threads` sections; otherwise one sort does the work. Equal items keep no promised order.
   Floats order every NaN before all numbers ascending and after them descending.
   Returns 0, or -8 with the message written when working memory is out: the items are then
   still a permutation of what they were, sorted section by section. */
int sort_items(void *data, size_t count, SortKind kind, int width, int order_type, int threads);

/* Where the sort takes its working memory from: malloc, unless a test puts a failing
   allocation in its place. Blocks are given back with free. */
extern void *(*sort_allocate)(size_t size);

/* Writes the message of a sort that ran out of memory. */
void sort_report_memory(void);

} // namespace ormak

#endif
