/* The typed sort and merge of the order clause, and its comparison functions.
   Every ordering here is a strict weak order, so that no sort can be led outside its items:
   integers by value, floats by value with every NaN equal to each other and before all
   numbers, fixed texts as strncmp over their width, strings with null before every string.
   Descending is always the exact reverse of ascending. */
#include <math.h>
#include <omp.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <functional>

#include "Sort.h"
#include "../OrmakPrivateStructures.h"

namespace ormak {

void *(*sort_allocate)(size_t size) = malloc;

void sort_report_memory(void) {
    snprintf(error_message, sizeof error_message, "Error when ordering as there is not enough memory available");
}

bool sort_kind_of(int data_type, SortKind *kind) {
    switch (data_type) {
    case ORMAK_TINYINT: case ORMAK_VARTINYINT: *kind = SORT_TINYINT; return true;
    case ORMAK_UNSIGNED_TINYINT: case ORMAK_UNSIGNED_VARTINYINT: *kind = SORT_UNSIGNED_TINYINT; return true;
    case ORMAK_SMALLINT: case ORMAK_VARSMALLINT: *kind = SORT_SMALLINT; return true;
    case ORMAK_UNSIGNED_SMALLINT: case ORMAK_UNSIGNED_VARSMALLINT: *kind = SORT_UNSIGNED_SMALLINT; return true;
    case ORMAK_INT: case ORMAK_VARINT: *kind = SORT_INT; return true;
    case ORMAK_UNSIGNED_INT: case ORMAK_UNSIGNED_VARINT: *kind = SORT_UNSIGNED_INT; return true;
    case ORMAK_BIGINT: case ORMAK_VARBIGINT: *kind = SORT_BIGINT; return true;
    case ORMAK_UNSIGNED_BIGINT: case ORMAK_UNSIGNED_VARBIGINT: *kind = SORT_UNSIGNED_BIGINT; return true;
    case ORMAK_FLOAT: case ORMAK_VARFLOAT: *kind = SORT_FLOAT; return true;
    case ORMAK_DOUBLE: case ORMAK_VARDOUBLE: *kind = SORT_DOUBLE; return true;
    default: return false;
    }
}

namespace {

/* ---- Orderings ---- */

template <typename T>
struct IntegerOrder {
    using Item = T;
    bool operator()(T a, T b) const { return a < b; }
};

/* A NaN is equal to every NaN and comes before every number. */
template <typename T>
struct RealOrder {
    using Item = T;
    bool operator()(T a, T b) const { return a < b || (a != a && b == b); }
};

/* A null string is equal to every null and comes before every string. */
struct StringOrder {
    using Item = const char *;
    bool operator()(const char *a, const char *b) const {
        if (a == nullptr) return b != nullptr;
        if (b == nullptr) return false;
        return strcmp(a, b) < 0;
    }
};

template <typename Order>
struct Reversed {
    using Item = typename Order::Item;
    bool operator()(Item a, Item b) const { return Order()(b, a); }
};

template <typename T>
bool is_nan(T value) { return value != value; }

/* ---- One section by one thread ---- */

template <typename Order>
void sort_run(typename Order::Item *first, typename Order::Item *last, bool ascend) {
    if (ascend)
        std::sort(first, last, Order());
    else
        std::sort(first, last, Reversed<Order>());
}

/* Reals: the NaNs are set apart first, and the numbers sorted with the plain operator, which
   gives the same order as RealOrder at the cost of one pass. */
template <typename T>
void sort_real_run(T *first, T *last, bool ascend) {
    if (ascend) {
        T *numbers = std::partition(first, last, [](T value) { return is_nan(value); });
        std::sort(numbers, last, std::less<T>());
    } else {
        T *nans = std::partition(first, last, [](T value) { return !is_nan(value); });
        std::sort(first, nans, std::greater<T>());
    }
}

template <>
void sort_run<RealOrder<float>>(float *first, float *last, bool ascend) { sort_real_run(first, last, ascend); }
template <>
void sort_run<RealOrder<double>>(double *first, double *last, bool ascend) { sort_real_run(first, last, ascend); }

/* ---- Merging two adjacent sorted sections ---- */

/* Merges `left_count` items at `left` with `right_count` items at `right` through a block as
   large as both, taking the right item only when it comes strictly before the left one, and
   copies the result over `left`, which reaches across both sections. 0 or -8; on -8 nothing
   has moved. No message is written: workers call this. */
template <typename Order>
int merge_typed(typename Order::Item *left, typename Order::Item *right, size_t left_count, size_t right_count,
                bool ascend) {
    using Item = typename Order::Item;
    if (left_count == 0 || right_count == 0) return 0;
    size_t total = left_count + right_count;
    Item *block = (Item *)sort_allocate(total * sizeof(Item));
    if (block == nullptr) return ORMAK_ERROR_NOT_ENOUGH_MEMORY;
    if (ascend)
        std::merge(left, left + left_count, right, right + right_count, block, Order());
    else
        std::merge(left, left + left_count, right, right + right_count, block, Reversed<Order>());
    memcpy((void *)left, block, total * sizeof(Item));
    free(block);
    return 0;
}

/* Fixed texts of `width` bytes: the same merge, element by element. */
int merge_text(char *left, char *right, size_t left_count, size_t right_count, size_t width, bool ascend) {
    if (left_count == 0 || right_count == 0 || width == 0) return 0;
    size_t total = left_count + right_count;
    char *block = (char *)sort_allocate(total * width);
    if (block == nullptr) return ORMAK_ERROR_NOT_ENOUGH_MEMORY;
    size_t i = 0, j = 0;
    char *target = block;
    while (i < left_count && j < right_count) {
        int difference = strncmp(left + i * width, right + j * width, width);
        bool take_right = ascend ? difference > 0 : difference < 0;
        if (take_right)
            memcpy(target, right + j++ * width, width);
        else
            memcpy(target, left + i++ * width, width);
        target += width;
    }
    if (i < left_count) memcpy(target, left + i * width, (left_count - i) * width);
    if (j < right_count) memcpy(target, right + j * width, (right_count - j) * width);
    memcpy(left, block, total * width);
    free(block);
    return 0;
}

/* ---- Sections and passes ---- */

/* Merges the `sections` sorted sections that `bounds` (sections + 1 positions, the last one
   the item count) describe, pairwise in parallel passes until one is left. `bounds` is
   overwritten with the boundaries of each pass. `merge_pair(begin, middle, end)` merges two
   adjacent sections. 0, or the status of the first failing pair of the first failing pass. */
template <typename MergePair>
int merge_passes(size_t *bounds, int sections, MergePair merge_pair) {
    if (sections < 2) return 0;
    int *status_list = (int *)sort_allocate((size_t)sections * sizeof(int));
    if (status_list == nullptr) return ORMAK_ERROR_NOT_ENOUGH_MEMORY;
    memset(status_list, 0, (size_t)sections * sizeof(int));
    size_t count = bounds[sections];
    while (sections > 1) {
        int pairs = sections / 2;
#pragma omp parallel for schedule(static)
        for (int pair = 0; pair < pairs; pair++) {
            int status = merge_pair(bounds[2 * pair], bounds[2 * pair + 1], bounds[2 * pair + 2]);
            if (status != 0) status_list[2 * pair] = status;
        }
        for (int i = 0; i < sections; i++) {
            if (status_list[i] != 0) {
                int status = status_list[i];
                free(status_list);
                return status;
            }
        }
        // The merged pairs, and an unpaired last section as it was.
        int next = (sections + 1) / 2;
        for (int i = 0; i < next; i++) bounds[i] = bounds[2 * i];
        bounds[next] = count;
        sections = next;
    }
    free(status_list);
    return 0;
}

/* Section i of `count` items cut into `sections` starts at i * count / sections. */
size_t section_start(size_t i, size_t count, size_t sections) {
    return (size_t)((unsigned __int128)i * count / sections);
}

/* The parallel path: sections sorted side by side by `sort_section(begin, end)`, then merged. */
template <typename SortSection, typename MergePair>
int sort_parallel(size_t count, int threads, SortSection sort_section, MergePair merge_pair) {
    size_t *bounds = (size_t *)sort_allocate(((size_t)threads + 1) * sizeof(size_t));
    if (bounds == nullptr) return ORMAK_ERROR_NOT_ENOUGH_MEMORY;
    for (int i = 0; i < threads; i++) bounds[i] = section_start((size_t)i, count, (size_t)threads);
    bounds[threads] = count;
#pragma omp parallel for schedule(static)
    for (int i = 0; i < threads; i++) sort_section(bounds[i], bounds[i + 1]);
    int status = merge_passes(bounds, threads, merge_pair);
    free(bounds);
    return status;
}

template <typename Order>
int sort_typed(void *data, size_t count, bool ascend, int threads) {
    using Item = typename Order::Item;
    Item *items = (Item *)data;
    if (threads <= 1 || count < parallel_sort_threshold) {
        sort_run<Order>(items, items + count, ascend);
        return 0;
    }
    return sort_parallel(
        count, threads, [=](size_t begin, size_t end) { sort_run<Order>(items + begin, items + end, ascend); },
        [=](size_t begin, size_t middle, size_t end) {
            return merge_typed<Order>(items + begin, items + middle, middle - begin, end - middle, ascend);
        });
}

int sort_text(void *data, size_t count, size_t width, bool ascend, int threads) {
    char *items = (char *)data;
    if (width == 0) return 0;
    int (*compare)(const void *, const void *) = ascend ? _ormak_compare_char_ascend : _ormak_compare_char_descend;
    if (threads <= 1 || count < parallel_sort_threshold) {
        qsort(items, count, width, compare);
        return 0;
    }
    return sort_parallel(
        count, threads, [=](size_t begin, size_t end) { qsort(items + begin * width, end - begin, width, compare); },
        [=](size_t begin, size_t middle, size_t end) {
            return merge_text(items + begin * width, items + middle * width, middle - begin, end - middle, width,
                              ascend);
        });
}

} // namespace

int sort_items(void *data, size_t count, SortKind kind, int width, int order_type, int threads) {
    if (data == nullptr || count < 2) return 0;
    bool ascend = order_type == 1;
    int status = 0;
    switch (kind) {
    case SORT_TINYINT: status = sort_typed<IntegerOrder<int8_t>>(data, count, ascend, threads); break;
    case SORT_UNSIGNED_TINYINT: status = sort_typed<IntegerOrder<uint8_t>>(data, count, ascend, threads); break;
    case SORT_SMALLINT: status = sort_typed<IntegerOrder<int16_t>>(data, count, ascend, threads); break;
    case SORT_UNSIGNED_SMALLINT: status = sort_typed<IntegerOrder<uint16_t>>(data, count, ascend, threads); break;
    case SORT_INT: status = sort_typed<IntegerOrder<int32_t>>(data, count, ascend, threads); break;
    case SORT_UNSIGNED_INT: status = sort_typed<IntegerOrder<uint32_t>>(data, count, ascend, threads); break;
    case SORT_BIGINT: status = sort_typed<IntegerOrder<int64_t>>(data, count, ascend, threads); break;
    case SORT_UNSIGNED_BIGINT: status = sort_typed<IntegerOrder<uint64_t>>(data, count, ascend, threads); break;
    case SORT_FLOAT: status = sort_typed<RealOrder<float>>(data, count, ascend, threads); break;
    case SORT_DOUBLE: status = sort_typed<RealOrder<double>>(data, count, ascend, threads); break;
    case SORT_CHAR_CHAR: status = sort_typed<StringOrder>(data, count, ascend, threads); break;
    case SORT_CHAR:
        if (width <= 0) return 0;
        global_data_size = width;
        status = sort_text(data, count, (size_t)width, ascend, threads);
        break;
    }
    if (status != 0) sort_report_memory();
    return status;
}

namespace {

/* ---- The exported merge functions ---- */

/* The merge of sorted sections given as the int boundaries of a caller. */
template <typename MergePair>
int merge_exported(int data_count, const int *index, int threads, MergePair merge_pair) {
    if (index == nullptr || data_count < 2 || threads < 2) return 0;
    size_t *bounds = (size_t *)sort_allocate(((size_t)threads + 1) * sizeof(size_t));
    if (bounds == nullptr) {
        sort_report_memory();
        return ORMAK_ERROR_NOT_ENOUGH_MEMORY;
    }
    // Boundaries out of order or out of the items are taken as the nearest possible ones.
    int previous = 0;
    for (int i = 0; i < threads; i++) {
        previous = std::max(previous, std::min(index[i], data_count));
        bounds[i] = (size_t)previous;
    }
    bounds[threads] = (size_t)data_count;
    int status = merge_passes(bounds, threads, merge_pair);
    free(bounds);
    if (status != 0) sort_report_memory();
    return status;
}

template <typename Order>
int merge_sorted(void *data, int data_count, const int *index, int threads, int order_type) {
    using Item = typename Order::Item;
    if (data == nullptr) return 0;
    Item *items = (Item *)data;
    bool ascend = order_type == 1;
    return merge_exported(data_count, index, threads, [=](size_t begin, size_t middle, size_t end) {
        return merge_typed<Order>(items + begin, items + middle, middle - begin, end - middle, ascend);
    });
}

template <typename Order>
int merge_two(void *section_left, void *section_right, int section_left_position, int section_right_position,
              int order_type) {
    using Item = typename Order::Item;
    if (section_left == nullptr || section_right == nullptr || section_left_position <= 0 ||
        section_right_position <= 0)
        return 0;
    int status = merge_typed<Order>((Item *)section_left, (Item *)section_right, (size_t)section_left_position,
                                    (size_t)section_right_position, order_type == 1);
    if (status != 0) sort_report_memory();
    return status;
}

/* Three-way results of the orderings, as qsort wants them. */
template <typename Order>
int compare(const void *value0, const void *value1) {
    using Item = typename Order::Item;
    Item a, b;
    memcpy(&a, value0, sizeof a);
    memcpy(&b, value1, sizeof b);
    return Order()(a, b) ? -1 : Order()(b, a) ? 1 : 0;
}

/* The first four types compare by difference, which fits an int. */
template <typename T>
int difference(const void *value0, const void *value1) {
    return (int)*(const T *)value0 - (int)*(const T *)value1;
}

int text_compare(const void *value0, const void *value1) {
    if (global_data_size <= 0) return 0;
    return strncmp((const char *)value0, (const char *)value1, (size_t)global_data_size);
}

} // namespace
} // namespace ormak

using namespace ormak;

#define ORMAK_SORT_FUNCTIONS(type, Order, ascend_body, descend_body)                                              \
    extern "C" int _ormak_compare_##type##_ascend(const void *value0, const void *value1) { return ascend_body; }  \
    extern "C" int _ormak_compare_##type##_descend(const void *value0, const void *value1) { return descend_body; } \
    extern "C" int _ormak_merge_##type(void *data, int data_count, const int *index, int threads, int order_type) {  \
        return merge_sorted<Order>(data, data_count, index, threads, order_type);                                  \
    }                                                                                                              \
    extern "C" int _ormak_merge_##type##_sections(void *section_left, void *section_right,                         \
                                                  int section_left_position, int section_right_position,           \
                                                  int order_type) {                                                \
        return merge_two<Order>(section_left, section_right, section_left_position, section_right_position,        \
                                order_type);                                                                       \
    }

#define ORMAK_DIFFERENCE_FUNCTIONS(type, T)                                                                       \
    ORMAK_SORT_FUNCTIONS(type, IntegerOrder<T>, difference<T>(value0, value1), difference<T>(value1, value0))
#define ORMAK_VALUE_FUNCTIONS(type, Order)                                                                        \
    ORMAK_SORT_FUNCTIONS(type, Order, compare<Order>(value0, value1), compare<Order>(value1, value0))

ORMAK_DIFFERENCE_FUNCTIONS(tinyint, int8_t)
ORMAK_DIFFERENCE_FUNCTIONS(unsigned_tinyint, uint8_t)
ORMAK_DIFFERENCE_FUNCTIONS(smallint, int16_t)
ORMAK_DIFFERENCE_FUNCTIONS(unsigned_smallint, uint16_t)
ORMAK_VALUE_FUNCTIONS(int, IntegerOrder<int32_t>)
ORMAK_VALUE_FUNCTIONS(unsigned_int, IntegerOrder<uint32_t>)
ORMAK_VALUE_FUNCTIONS(bigint, IntegerOrder<int64_t>)
ORMAK_VALUE_FUNCTIONS(unsigned_bigint, IntegerOrder<uint64_t>)
ORMAK_VALUE_FUNCTIONS(float, RealOrder<float>)
ORMAK_VALUE_FUNCTIONS(double, RealOrder<double>)
ORMAK_VALUE_FUNCTIONS(char_char, StringOrder)

/* Fixed texts: items of global_data_size bytes, so the merge is not an instance of the above. */
extern "C" int _ormak_compare_char_ascend(const void *value0, const void *value1) {
    return text_compare(value0, value1);
}

extern "C" int _ormak_compare_char_descend(const void *value0, const void *value1) {
    return text_compare(value1, value0);
}

extern "C" int _ormak_merge_char(void *data, int data_count, const int *index, int threads, int order_type) {
    if (data == nullptr || global_data_size <= 0) return 0;
    char *items = (char *)data;
    size_t width = (size_t)global_data_size;
    bool ascend = order_type == 1;
    return merge_exported(data_count, index, threads, [=](size_t begin, size_t middle, size_t end) {
        return merge_text(items + begin * width, items + middle * width, middle - begin, end - middle, width, ascend);
    });
}

extern "C" int _ormak_merge_char_sections(void *section_left, void *section_right, int section_left_position,
                                          int section_right_position, int order_type) {
    if (section_left == nullptr || section_right == nullptr || section_left_position <= 0 ||
        section_right_position <= 0 || global_data_size <= 0)
        return 0;
    int status = merge_text((char *)section_left, (char *)section_right, (size_t)section_left_position,
                            (size_t)section_right_position, (size_t)global_data_size, order_type == 1);
    if (status != 0) sort_report_memory();
    return status;
}
