/* Post-processing of results: the ORDER, TOP, BOTTOM, FROM ... TO and STEP clauses of a result
   statement, applied one after the other in their written order to the statement's buffer of
   values, in place. Each clause works on two levels: the outer level is the list of values,
   the inner level the inside of each value (the bytes of a fixed text or opaque value, the
   characters of a string, the members of a variable-length value).

   Every clause comes down to a few moves on a sequence, the same on both levels: keep the
   range [start, end), keep every step-th item from a first one, reverse, sort. */
#include <antlr3.h>
#include <omp.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>

#include "OrmakParser.h"
#include "Sort.h"
#include "../OrmakPrivateStructures.h"
#include "../language/TreeReader.h"

namespace ormak {
namespace {

/* ---- The clauses ---- */

const int ascend = 1, descend = 2, reverse = 4;

struct Clause {
    int kind = -1;          /* token type of its first word */
    int64_t value[4] = {0, 0, 0, 0};
    bool defined[4] = {false, false, false, false};
};

bool is_order_word(int type) {
    return type == ASCEND_KEYWORD || type == DESCEND_KEYWORD || type == REVERSE_KEYWORD;
}

int64_t order_word(int type) { return type == ASCEND_KEYWORD ? ascend : type == DESCEND_KEYWORD ? descend : reverse; }

/* A number of a clause as an int; beyond the range of an int it is the nearest end of it,
   so that no number is refused and none wraps around. */
int64_t clause_number(const char *text) {
    long long value = text ? strtoll(text, nullptr, 10) : 0;
    return std::max<long long>(INT32_MIN, std::min<long long>(INT32_MAX, value));
}

/* Reads "a", "a b" or ", b" at `position` into the values `first` and `first` + 1. */
void read_pair(pANTLR3_BASE_TREE list, int *position, bool words, Clause *clause, int first) {
    auto is_item = [&](int type) { return words ? is_order_word(type) : type == INTEGER_NUMBER_KEYWORD; };
    auto take = [&](int index) {
        pANTLR3_BASE_TREE node = tree::child(list, *position);
        clause->value[index] = words ? order_word(tree::type(node)) : clause_number(tree::text(node));
        clause->defined[index] = true;
        ++*position;
    };
    if (tree::type(tree::child(list, *position)) == COMMA_KEYWORD) {
        ++*position;
        if (is_item(tree::type(tree::child(list, *position)))) take(first + 1);
        return;
    }
    if (!is_item(tree::type(tree::child(list, *position)))) return;
    take(first);
    if (is_item(tree::type(tree::child(list, *position)))) take(first + 1);
}

/* ---- Ranges ---- */

struct Range {
    size_t start, end;  /* half-open; empty when start >= end */
};

/* FROM start TO last on `count` items, both ends included, negative numbers counting from
   the end, -1 being the last item. A start beyond the items gives an empty range. */
Range from_range(const Clause &clause, int low, int high, size_t count) {
    int64_t n = (int64_t)std::min<size_t>(count, INT64_MAX);
    int64_t start = 0, end = n;
    if (clause.defined[low]) {
        int64_t v = clause.value[low];
        start = v < 0 ? std::max<int64_t>(v + n, 0) : std::min(v, n);
    }
    if (clause.defined[high]) {
        int64_t v = clause.value[high];
        if (v < 0)
            end = v + n < 0 ? 0 : v + n + 1;
        else
            end = v < n ? v + 1 : n;
    }
    return Range{(size_t)start, (size_t)end};
}

/* TOP or BOTTOM n on `count` items: first n, last n or none. False when nothing changes. */
bool cut_range(int kind, int64_t n, size_t count, Range *range) {
    if (n == 0) {
        *range = Range{0, 0};
        return true;
    }
    bool first = (kind == TOP_KEYWORD) == (n > 0);
    uint64_t length = n > 0 ? (uint64_t)n : (uint64_t)(-(n + 1)) + 1;
    if (count <= length) return false;
    *range = first ? Range{0, (size_t)length} : Range{count - (size_t)length, count};
    return true;
}

/* STEP v on `count` items: every w-th item from the first one, w = |v|; from the first one for
   v above 0, and counted so that the last item is kept for v below 0. False for v in -1..1. */
bool step_start(int64_t v, size_t count, size_t *first, size_t *step) {
    if (v >= -1 && v <= 1) return false;
    uint64_t w = v > 0 ? (uint64_t)v : (uint64_t)(-(v + 1)) + 1;
    *step = (size_t)w;
    if (v > 0) {
        *first = 0;
    } else {
        uint64_t r = (uint64_t)count % w;
        *first = (size_t)(r == 0 ? w - 1 : r - 1);
    }
    return true;
}

/* ---- Sequences ---- */

/* Reverses `count` items of `width` bytes; the items may be of any type, so they are moved
   as bytes, which the compiler turns into plain loads and stores for the fixed widths. */
template <size_t width>
void reverse_fixed(char *base, size_t count) {
    for (size_t i = 0, j = count - 1; i < j; i++, j--) {
        char left[width], right[width];
        memcpy(left, base + i * width, width);
        memcpy(right, base + j * width, width);
        memcpy(base + i * width, right, width);
        memcpy(base + j * width, left, width);
    }
}

void reverse_items(char *base, size_t count, size_t width) {
    if (count < 2 || width == 0) return;
    switch (width) {
    case 1: std::reverse(base, base + count); return;
    case 2: reverse_fixed<2>(base, count); return;
    case 4: reverse_fixed<4>(base, count); return;
    case 8: reverse_fixed<8>(base, count); return;
    case 16: reverse_fixed<16>(base, count); return;
    default:
        for (size_t i = 0, j = count - 1; i < j; i++, j--)
            std::swap_ranges(base + i * width, base + (i + 1) * width, base + j * width);
    }
}

/* A sequence of items in memory with what it owns: the outer list of values, or the members
   of one value. `dropped(i)` frees what item i owns before it leaves the sequence, and
   `resized(n)` records the new length. */
template <typename Dropped, typename Resized>
struct Sequence {
    char *base;
    size_t count;
    size_t width;
    Dropped dropped;
    Resized resized;

    void keep(Range range) {
        if (range.start >= range.end) range = Range{0, 0};
        if (range.start == 0 && range.end == count) return;
        for (size_t i = 0; i < range.start; i++) dropped(i);
        for (size_t i = range.end; i < count; i++) dropped(i);
        size_t kept = range.end - range.start;
        if (kept > 0 && range.start > 0) memmove(base, base + range.start * width, kept * width);
        resized(kept);
    }

    void keep_every(size_t first, size_t step) {
        size_t kept = 0;
        for (size_t i = 0; i < count; i++) {
            bool keep = i >= first && (i - first) % step == 0;
            if (!keep) {
                dropped(i);
            } else {
                if (kept != i) memcpy(base + kept * width, base + i * width, width);
                kept++;
            }
        }
        if (kept != count) resized(kept);
    }
};

template <typename Dropped, typename Resized>
Sequence<Dropped, Resized> sequence(char *base, size_t count, size_t width, Dropped dropped, Resized resized) {
    return Sequence<Dropped, Resized>{base, count, width, dropped, resized};
}

/* ---- The buffer ---- */

enum Family { NUMERIC, FIXED, STRING, VARIABLE, OTHER };

Family family_of(int data_type) {
    SortKind kind;
    if (data_type >= ORMAK_TINYINT && data_type <= ORMAK_DOUBLE && sort_kind_of(data_type, &kind)) return NUMERIC;
    if (data_type == ORMAK_CHAR || data_type == ORMAK_OPAQUE) return FIXED;
    if (data_type == ORMAK_VARCHAR) return STRING;
    if (sort_kind_of(data_type, &kind)) return VARIABLE;
    return OTHER;
}

size_t numeric_width(SortKind kind) {
    switch (kind) {
    case SORT_TINYINT: case SORT_UNSIGNED_TINYINT: return 1;
    case SORT_SMALLINT: case SORT_UNSIGNED_SMALLINT: return 2;
    case SORT_INT: case SORT_UNSIGNED_INT: case SORT_FLOAT: return 4;
    default: return 8;
    }
}

class Results {
public:
    Results(char *data, int data_type, int *data_count, int data_size, int threads)
        : data_(data), data_type_(data_type), family_(family_of(data_type)), data_count_(data_count),
          data_size_(data_size > 0 ? (size_t)data_size : 0), threads_(threads) {
        SortKind kind = SORT_TINYINT;
        sort_kind_of(data_type, &kind);
        member_kind_ = kind;
        switch (family_) {
        case NUMERIC: width_ = numeric_width(kind); break;
        case STRING: width_ = sizeof(char *); member_kind_ = SORT_UNSIGNED_TINYINT; break;
        case VARIABLE: width_ = sizeof(ORMAK_VARIABLE_LENGTH); break;
        case FIXED: case OTHER: width_ = data_size_; member_kind_ = SORT_TINYINT; break;
        }
        member_width_ = family_ == VARIABLE ? numeric_width(kind) : 1;
    }

    size_t count() const { return *data_count_ > 0 ? (size_t)*data_count_ : 0; }

    /* Applies one clause. 0 or -8. */
    int apply(const Clause &clause) {
        switch (clause.kind) {
        case ORDER_KEYWORD: return order(clause);
        case TOP_KEYWORD: case BOTTOM_KEYWORD: cut(clause); return 0;
        case FROM_KEYWORD: from(clause); return 0;
        case STEP_KEYWORD: step(clause); return 0;
        default: return 0;
        }
    }

private:
    char *data_;
    int data_type_;
    Family family_;
    int *data_count_;
    size_t data_size_;
    int threads_;
    size_t width_ = 0;
    SortKind member_kind_;
    size_t member_width_ = 1;

    bool has_inner() const { return family_ == FIXED || family_ == STRING || family_ == VARIABLE; }

    /* The list of values; dropping a value frees its string or block. */
    auto values() {
        return sequence(
            data_, count(), width_,
            [this](size_t i) {
                if (family_ == STRING) {
                    char **entry = (char **)(data_ + i * width_);
                    free(*entry);
                    *entry = nullptr;
                } else if (family_ == VARIABLE) {
                    ORMAK_VARIABLE_LENGTH *entry = (ORMAK_VARIABLE_LENGTH *)(data_ + i * width_);
                    free(entry->address);
                    entry->address = nullptr;
                    entry->count = 0;
                }
            },
            [this](size_t kept) { *data_count_ = (int)kept; });
    }

    /* Calls `use` with the members of each value that has any. Members cut away stay
       allocated: a fixed value keeps its width with the bytes behind its members set to 0, a
       string is closed behind its last member, a record's count is lowered. */
    template <typename Use>
    int for_each_value(Use use) {
        auto no_drop = [](size_t) {};
        size_t n = count();
        for (size_t i = 0; i < n; i++) {
            char *entry = data_ + i * width_;
            int status = 0;
            if (family_ == FIXED) {
                if (data_size_ == 0) continue;
                status = use(sequence(entry, data_size_, 1, no_drop, [this, entry](size_t kept) {
                    memset(entry + kept, 0, data_size_ - kept);
                }));
            } else if (family_ == STRING) {
                char *text = *(char **)entry;
                if (text == nullptr || text[0] == '\0') continue;
                status = use(sequence(text, strlen(text), 1, no_drop, [text](size_t kept) { text[kept] = '\0'; }));
            } else if (family_ == VARIABLE) {
                ORMAK_VARIABLE_LENGTH *record = (ORMAK_VARIABLE_LENGTH *)entry;
                if (record->count == 0 || record->address == nullptr) continue;
                status = use(sequence((char *)record->address, (size_t)record->count, member_width_, no_drop,
                                      [record](size_t kept) { record->count = kept; }));
            }
            if (status != 0) return status;
        }
        return 0;
    }

    int order(const Clause &clause) {
        if (clause.defined[0] && count() > 1) {
            int word = (int)clause.value[0];
            if (word == reverse) {
                reverse_items(data_, count(), width_);
            } else if (family_ == NUMERIC) {
                int status = sort_items(data_, count(), member_kind_, 0, word, threads_);
                if (status != 0) return status;
            } else if (family_ == STRING) {
                int status = sort_items(data_, count(), SORT_CHAR_CHAR, 0, word, threads_);
                if (status != 0) return status;
            } else if (data_type_ == ORMAK_CHAR && data_size_ > 0) {
                global_data_size = (int)data_size_;
                int status = sort_items(data_, count(), SORT_CHAR, (int)data_size_, word, threads_);
                if (status != 0) return status;
            }
            /* OPAQUE and variable-length values have no order of their own. */
        }
        if (clause.defined[1] && has_inner()) {
            int word = (int)clause.value[1];
            return for_each_value([&](auto members) {
                if (word == reverse) {
                    reverse_items(members.base, members.count, members.width);
                    return 0;
                }
                return sort_items(members.base, members.count, member_kind_, 1, word, threads_);
            });
        }
        return 0;
    }

    void cut(const Clause &clause) {
        Range range;
        if (clause.defined[0] && cut_range(clause.kind, clause.value[0], count(), &range)) values().keep(range);
        if (count() == 0 || !clause.defined[1] || !has_inner()) return;
        for_each_value([&](auto members) {
            if (cut_range(clause.kind, clause.value[1], members.count, &range)) members.keep(range);
            return 0;
        });
    }

    void from(const Clause &clause) {
        values().keep(from_range(clause, 0, 2, count()));
        if (count() == 0 || !(clause.defined[1] || clause.defined[3]) || !has_inner()) return;
        for_each_value([&](auto members) {
            members.keep(from_range(clause, 1, 3, members.count));
            return 0;
        });
    }

    void step(const Clause &clause) {
        size_t first, stride;
        if (clause.defined[0] && step_start(clause.value[0], count(), &first, &stride))
            values().keep_every(first, stride);
        if (count() == 0 || !clause.defined[1] || !has_inner()) return;
        for_each_value([&](auto members) {
            if (step_start(clause.value[1], members.count, &first, &stride)) members.keep_every(first, stride);
            return 0;
        });
    }
};

} // namespace
} // namespace ormak

using namespace ormak;

extern "C" int _ormak_post_processing(const pANTLR3_BASE_TREE post_processing_list, const void *data, int data_type,
                                      int *data_count, int data_size) {
    if (post_processing_list == nullptr || data == nullptr || data_count == nullptr || *data_count <= 0) return 0;
    int threads = omp_get_max_threads();
    Results results((char *)data, data_type, data_count, data_size, threads);
    int length = tree::count(post_processing_list);
    int position = 0;
    while (position < length) {
        Clause clause;
        clause.kind = tree::type(tree::child(post_processing_list, position++));
        switch (clause.kind) {
        case ORDER_KEYWORD:
            read_pair(post_processing_list, &position, true, &clause, 0);
            break;
        case TOP_KEYWORD: case BOTTOM_KEYWORD: case STEP_KEYWORD:
            read_pair(post_processing_list, &position, false, &clause, 0);
            break;
        case FROM_KEYWORD:
            read_pair(post_processing_list, &position, false, &clause, 0);
            if (tree::type(tree::child(post_processing_list, position)) == TO_KEYWORD) position++;
            read_pair(post_processing_list, &position, false, &clause, 2);
            break;
        default:
            continue;  /* no clause starts here */
        }
        int status = results.apply(clause);
        if (status != 0) return status;
        if (*data_count == 0) return 0;
    }
    return 0;
}
