#include <limits.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <vector>

#include "LiteralValues.h"
#include "Values.h"
#include "OrmakParser.h"
#include "../OrmakPrivateStructures.h"
#include "../language/TreeReader.h"
#include "../session/Session.h"

namespace tree = ormak::tree;

namespace {

/* Elements of dimensions from..to-1: a level's elements, or one row of the level above. */
long long product(const hsize_t *dimensions, int from, int to) {
    long long result = 1;
    for (int i = from; i < to; i++) result *= (long long)dimensions[i];
    return result;
}

bool is_literal(int type) { return type != LIST && type != COMMA_KEYWORD; }

/* The walk over fixed-size elements, shared by values and by text pointers. A level fills
   `step0` elements; a nested list first closes the open row; a lone comma clears the rest of
   the row and one row more (one element at the last dimension). The sink stores a literal or
   clears a run of elements, and ignores whatever lies beyond its buffer. */
template <typename Sink>
void walk_fixed(Sink &sink, pANTLR3_BASE_TREE list, const hsize_t *dimensions, int count, int current,
                int *position) {
    const long long step0 = product(dimensions, current, count);
    const long long step1 = std::max(product(dimensions, current + 1, count), 1LL);
    const int save = *position;
    long long count1 = 0;
    auto filled = [&] { return *position - save >= step0; };
    auto clear = [&](long long n) {
        sink.clear(*position, n);
        *position += (int)n;
    };
    const int children = tree::count(list);
    for (int i = 0; i < children && !filled(); i++) {
        pANTLR3_BASE_TREE node = tree::child(list, i);
        int type = tree::type(node);
        if (type == LIST && count - 1 == current) {
            /* A list where an element belongs is no element: it stays zero. */
            clear(1);
            count1++;
            i++;
        } else if (type == LIST) {
            if (count1 % step1 > 0) {
                long long j = step1 - count1 % step1;
                clear(j);
                count1 += j;
                if (filled()) return;
            }
            walk_fixed(sink, node, dimensions, count, current + 1, position);
            i++;
        } else if (type == COMMA_KEYWORD) {
            long long j = count1 % step1 == 0 ? step1 : step1 - count1 % step1 + step1;
            clear(std::min(j, step0 - (*position - save)));
            count1 = 0;
        } else {
            sink.literal(*position, node);
            (*position)++;
            count1++;
            i++;
        }
    }
    if (save + step0 - *position > 0) clear(save + step0 - *position);
}

struct FixedSink {
    int type;
    int size;
    char *data;
    long long capacity;
    void literal(int position, pANTLR3_BASE_TREE node) const {
        if (position < 0 || position >= capacity) return;
        ormak::store_literal(type, size, tree::text(node), tree::type(node) == HEXADECIMAL_NUMBER_KEYWORD,
                             data + (size_t)position * size);
    }
    void clear(int position, long long n) const {
        n = std::min(n, capacity - position);
        if (n > 0) memset(data + (size_t)position * size, 0, (size_t)n * size);
    }
};

struct PointerSink {
    char **data;
    long long capacity;
    void literal(int position, pANTLR3_BASE_TREE node) const {
        if (position >= 0 && position < capacity) data[position] = (char *)tree::text(node);
    }
    void clear(int position, long long n) const {
        n = std::min(n, capacity - position);
        for (long long i = 0; i < n; i++) data[position + i] = nullptr;
    }
};

/* Where the variable-length walk puts what it finds; with `fill` false it only counts. */
struct VariableTarget {
    bool fill;
    int type;
    int size;
    ORMAK_VARIABLE_LENGTH *records;
    long long record_capacity;
    char *members;
    long long member_capacity;

    void record(int position, uint64_t count, int first_member) const {
        if (!fill || position < 0 || position >= record_capacity) return;
        records[position].count = count;
        records[position].address = count ? members + (size_t)first_member * size : nullptr;
    }
    void member(int position, pANTLR3_BASE_TREE node) const {
        if (!fill || position < 0 || position >= member_capacity) return;
        if (node) ormak::store_literal(type, size, tree::text(node), tree::type(node) == HEXADECIMAL_NUMBER_KEYWORD,
                                       members + (size_t)position * size);
        else memset(members + (size_t)position * size, 0, (size_t)size);
    }
};

/* The walk over variable-length elements. With flag 0 it goes through the dimensions: a
   literal is an element of one member, a nested list at the last dimension the members of
   one element. With flag 1 every child is a member of the one element (a nested list or a
   lone comma a zero member). `count2` counts the elements of this level, `count1` the
   members of the open element. */
void walk_variable(const VariableTarget &target, pANTLR3_BASE_TREE list, const hsize_t *dimensions, int count,
                   int current, int *position, int *member_position, int flag) {
    const long long step0 = flag == 1 ? 1 : product(dimensions, current, count);
    const long long step1 = std::max(product(dimensions, current + 1, count), 1LL);
    const int save = *position;
    const int save_member = *member_position;
    long long count1 = 0, count2 = 0;
    auto filled = [&] { return *position - save >= step0; };
    auto absent = [&](long long n) {
        for (long long i = 0; i < n; i++) target.record(*position + (int)i, 0, 0);
        *position += (int)n;
    };
    const int children = tree::count(list);
    for (int i = 0; i < children; i++) {
        pANTLR3_BASE_TREE node = tree::child(list, i);
        int type = tree::type(node);
        if (flag == 1) {
            target.member((*member_position)++, is_literal(type) ? node : nullptr);
            count1++;
            if (type != COMMA_KEYWORD) i++;
            continue;
        }
        if (is_literal(type)) {
            target.member(*member_position, node);
            target.record(*position, 1, *member_position);
            (*position)++;
            (*member_position)++;
            count2++;
            i++;
        } else if (type == COMMA_KEYWORD) {
            long long j = count2 % step1 == 0 ? step1 : step1 - count2 % step1 + step1;
            absent(std::min(j, step0 - (*position - save)));
            /* The walk keeps one member slot for the comma; nothing points into it. */
            (*member_position)++;
            count2 = 0;
        } else if (count - 1 == current) {
            walk_variable(target, node, dimensions, count, current, position, member_position, 1);
            i++;
        } else {
            if (count2 % step1 > 0) {
                long long j = step1 - count2 % step1;
                absent(j);
                (*member_position)++;
                if (filled()) return;
                count2 += j;
                count1 = 0;
            }
            walk_variable(target, node, dimensions, count, current + 1, position, member_position, 0);
            i++;
        }
        if (filled()) return;
    }
    if (count1 > 0) {
        target.record(*position, (uint64_t)count1, save_member);
        (*position)++;
    }
    if (save + step0 - *position > 0) absent(save + step0 - *position);
}

int out_of_memory() {
    return ormak::fail(ORMAK_ERROR_NOT_ENOUGH_MEMORY, "Error when setting data as there is not enough memory available");
}

} // namespace

extern "C" {

void _ormak_insert_fixed_length(int object_type, int object_size, const pANTLR3_BASE_TREE data_list,
                                const hsize_t *dimension_list, int dimension_count, int dimension_current, char *data,
                                int *data_position) {
    FixedSink sink{object_type, object_size, data, LLONG_MAX};
    walk_fixed(sink, data_list, dimension_list, dimension_count, dimension_current, data_position);
}

void _ormak_insert_variable_char(const pANTLR3_BASE_TREE data_list, const hsize_t *dimension_list,
                                 int dimension_count, int dimension_current, char **data, int *data_position) {
    PointerSink sink{data, LLONG_MAX};
    walk_fixed(sink, data_list, dimension_list, dimension_count, dimension_current, data_position);
}

void _ormak_insert_variable_length(int object_type, int object_size, const pANTLR3_BASE_TREE data_list,
                                   const hsize_t *dimension_list, int dimension_count, int dimension_current,
                                   ORMAK_VARIABLE_LENGTH *data, int *data_position, char *data_auxiliary,
                                   int *data_auxiliary_position, int flag) {
    VariableTarget target{true, object_type, object_size, data, LLONG_MAX, data_auxiliary, LLONG_MAX};
    walk_variable(target, data_list, dimension_list, dimension_count, dimension_current, data_position,
                  data_auxiliary_position, flag);
}

void _ormak_insert_calculate(const pANTLR3_BASE_TREE data_list, const hsize_t *dimension_list, int dimension_count,
                             int dimension_current, int *position0, int *position1, int flag) {
    VariableTarget target{false, 0, 0, nullptr, 0, nullptr, 0};
    walk_variable(target, data_list, dimension_list, dimension_count, dimension_current, position1, position0, flag);
}

} // extern "C"

namespace ormak {

int literal_input(int data_type, int data_count, int data_size, int selection, const hsize_t *dimension_list,
                  int dimension_count, pANTLR3_BASE_TREE data_list, void **data, int *data_allocated,
                  char **data_auxiliary) {
    /* With a selection the values are one flat run of the selected elements. */
    const hsize_t flat[1] = {(hsize_t)data_count};
    std::vector<hsize_t> dimensions(dimension_list, dimension_list + dimension_count);
    if (selection != -1) dimensions.assign(flat, flat + 1);
    int position = 0;

    if (is_variable_numeric(data_type)) {
        ORMAK_VARIABLE_LENGTH *records = (ORMAK_VARIABLE_LENGTH *)calloc((size_t)data_count, sizeof *records);
        if (records == nullptr) return out_of_memory();
        *data = records;
        *data_allocated = 0;
        /* A single element takes the whole list as its members. */
        int flag = dimension_count == 1 && dimension_list[0] == 1 ? 1 : 0;
        if (flag == 1) dimensions.assign(dimension_list, dimension_list + 1);
        int members = 0;
        _ormak_insert_calculate(data_list, dimensions.data(), (int)dimensions.size(), 0, &members, &position, flag);
        *data_auxiliary = (char *)calloc((size_t)std::max(members, 1), (size_t)data_size);
        if (*data_auxiliary == nullptr) return out_of_memory();
        VariableTarget target{true, data_type, data_size, records, data_count, *data_auxiliary, members};
        position = 0;
        int member_position = 0;
        walk_variable(target, data_list, dimensions.data(), (int)dimensions.size(), 0, &position, &member_position,
                      flag);
        return ORMAK_SUCCESS;
    }

    if (data_type == ORMAK_VARCHAR) {
        char **pointers = (char **)calloc((size_t)data_count, sizeof *pointers);
        if (pointers == nullptr) return out_of_memory();
        *data = pointers;
        *data_allocated = 0;
        PointerSink sink{pointers, data_count};
        walk_fixed(sink, data_list, dimensions.data(), (int)dimensions.size(), 0, &position);
        return ORMAK_SUCCESS;
    }

    /* Cleared: a walk by other dimensions than the count's (a chunk) leaves bytes behind. */
    char *bytes = (char *)calloc((size_t)data_count, (size_t)data_size);
    if (bytes == nullptr) return out_of_memory();
    *data = bytes;
    *data_allocated = 0;
    if (data_type == ORMAK_OPAQUE) {
        /* An opaque element is a row of bytes, one literal each: the element size becomes the
           last dimension, and a trailing dimension of 1 is no row of its own. */
        if (dimensions.size() > 1 && dimensions.back() == 1) dimensions.pop_back();
        if (dimensions.size() == 1 && dimensions[0] == 1 && data_count == 1) dimensions.clear();
        dimensions.push_back((hsize_t)data_size);
        FixedSink sink{ORMAK_OPAQUE, 1, bytes, (long long)data_count * data_size};
        walk_fixed(sink, data_list, dimensions.data(), (int)dimensions.size(), 0, &position);
        return ORMAK_SUCCESS;
    }
    FixedSink sink{data_type, data_size, bytes, data_count};
    walk_fixed(sink, data_list, dimensions.data(), (int)dimensions.size(), 0, &position);
    return ORMAK_SUCCESS;
}

} // namespace ormak
