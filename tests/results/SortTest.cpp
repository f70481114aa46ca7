// The typed sort: the comparison functions, the merge of sorted sections, the parallel path
// at several team sizes, and running out of working memory, checked against an order
// computed independently with the standard library.
#include <gtest/gtest.h>
#include <math.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <atomic>
#include <limits>
#include <optional>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#include "Ormak.h"
#include "OrmakPrivateStructures.h"
#include "results/Sort.h"

namespace {

const int ascending = 1, descending = 2;

/* The exported functions of one item type. */
struct Functions {
    ormak::SortKind kind;
    int (*ascend)(const void *, const void *);
    int (*descend)(const void *, const void *);
    int (*merge)(void *, int, const int *, int, int);
};

/* Random numbers over the whole range of the type, with many repeated values, and for reals
   NaN, both zeros and both infinities among them. */
template <typename T>
std::vector<T> random_numbers(size_t count, uint64_t seed) {
    std::mt19937_64 random(seed);
    std::vector<T> values(count);
    for (T &value : values) {
        uint64_t pick = random() % 16;
        if constexpr (std::is_floating_point<T>::value) {
            const T special[] = {(T)NAN, (T)-0.0, (T)0.0, std::numeric_limits<T>::infinity(),
                                 -std::numeric_limits<T>::infinity(), (T)-1.5, (T)-1.0};
            value = pick < 7 ? special[pick] : (T)std::uniform_real_distribution<double>(-1e6, 1e6)(random);
        } else {
            const T special[] = {std::numeric_limits<T>::min(), std::numeric_limits<T>::max(), (T)0, (T)1,
                                 (T)std::numeric_limits<typename std::make_signed<T>::type>::max()};
            uint64_t bits = random();
            if (pick < 5)
                value = special[pick];
            else
                memcpy(&value, &bits, sizeof value);
        }
    }
    return values;
}

template <typename T>
bool is_nan(T value) {
    if constexpr (std::is_floating_point<T>::value) return value != value;
    return false;
}

/* The documented order, computed apart: numbers by value, and for reals every NaN before all
   numbers ascending and after them descending. */
template <typename T>
std::vector<T> expected_numbers(std::vector<T> values, int order) {
    auto nan_end = std::stable_partition(values.begin(), values.end(), [](T v) { return is_nan(v); });
    if (order == ascending) {
        std::stable_sort(nan_end, values.end(), [](T a, T b) { return a < b; });
    } else {
        std::stable_sort(nan_end, values.end(), [](T a, T b) { return a > b; });
        std::rotate(values.begin(), nan_end, values.end());
    }
    return values;
}

template <typename T>
::testing::AssertionResult same_numbers(const std::vector<T> &actual, const std::vector<T> &expected) {
    if (actual.size() != expected.size()) return ::testing::AssertionFailure() << "sizes differ";
    for (size_t i = 0; i < actual.size(); i++) {
        bool same = (is_nan(actual[i]) && is_nan(expected[i])) || actual[i] == expected[i];
        if (!same)
            return ::testing::AssertionFailure()
                   << "at " << i << ": " << +actual[i] << " where " << +expected[i] << " belongs";
    }
    return ::testing::AssertionSuccess();
}

/* Each section of `values` sorted by itself with the exported comparison. */
template <typename T>
void sort_sections(std::vector<T> &values, const std::vector<int> &index, const Functions &f, int order) {
    for (size_t i = 0; i + 1 < index.size(); i++)
        qsort(values.data() + index[i], (size_t)(index[i + 1] - index[i]), sizeof(T),
              order == ascending ? f.ascend : f.descend);
}

template <typename T>
void check_numbers(const Functions &f) {
    SCOPED_TRACE(typeid(T).name());
    for (int order : {ascending, descending}) {
        SCOPED_TRACE(order == ascending ? "ascending" : "descending");
        // Sorting with the comparison functions gives the documented order.
        std::vector<T> values = random_numbers<T>(2000, 7);
        std::vector<T> sorted = values;
        qsort(sorted.data(), sorted.size(), sizeof(T), order == ascending ? f.ascend : f.descend);
        EXPECT_TRUE(same_numbers(sorted, expected_numbers(values, order)));

        // The parallel sort merges even sections; the exported merge takes sections of any
        // length, empty ones among them.
        const std::vector<int> index = {0, 0, 10, 10, 11, 500};
        std::vector<T> merged = random_numbers<T>(500, 3);
        sort_sections(merged, index, f, order);
        std::vector<T> expected = expected_numbers(merged, order);
        EXPECT_EQ(f.merge(merged.data(), 500, index.data(), 5, order), 0);
        EXPECT_TRUE(same_numbers(merged, expected));

        // The sort itself, on one thread and on teams that do and do not divide the items.
        for (size_t count : {0, 1, 1001, 100000}) {
            for (int threads : {1, 2, 3}) {
                std::vector<T> items = random_numbers<T>(count, count + threads);
                std::vector<T> expected_items = expected_numbers(items, order);
                EXPECT_EQ(ormak::sort_items(items.data(), count, f.kind, 0, order, threads), 0);
                EXPECT_TRUE(same_numbers(items, expected_items)) << count << " items, " << threads << " threads";
            }
        }
    }
}

// The integer types share one template: the narrow ones compare by difference, the wide ones
// by value; one of each kind, and the reals.
TEST(Sort, NumbersSortByValue) {
    check_numbers<int8_t>({ormak::SORT_TINYINT, _ormak_compare_tinyint_ascend, _ormak_compare_tinyint_descend,
                           _ormak_merge_tinyint});
    check_numbers<uint64_t>({ormak::SORT_UNSIGNED_BIGINT, _ormak_compare_unsigned_bigint_ascend,
                             _ormak_compare_unsigned_bigint_descend, _ormak_merge_unsigned_bigint});
    check_numbers<double>(
        {ormak::SORT_DOUBLE, _ormak_compare_double_ascend, _ormak_compare_double_descend, _ormak_merge_double});
}

// The orders themselves are checked through qsort above and below; here, what qsort alone
// would not show: which values the comparisons call equal.
TEST(Sort, ComparisonsAnswerAsQsortWants) {
    double nan = NAN;
    EXPECT_EQ(_ormak_compare_double_ascend(&nan, &nan), 0);
    float float_nan = NAN, float_one = 1.0f;
    EXPECT_LT(_ormak_compare_float_ascend(&float_nan, &float_one), 0);
    EXPECT_EQ(_ormak_compare_float_descend(&float_nan, &float_nan), 0);
    const char *nulls[] = {nullptr, nullptr};
    EXPECT_EQ(_ormak_compare_char_char_ascend(&nulls[0], &nulls[1]), 0);
    // Fixed texts: only the first global_data_size bytes, and nothing behind a terminator.
    global_data_size = 3;
    EXPECT_EQ(_ormak_compare_char_ascend("abcX", "abcY"), 0);
    EXPECT_EQ(_ormak_compare_char_ascend("ab\0X", "ab\0Y"), 0);
}

TEST(Sort, MergeTakesTheLeftItemOnTies) {
    // Zeros of both signs are equal: the left one comes first in either order.
    for (int order : {ascending, descending}) {
        double zeros[] = {-0.0, 0.0};
        EXPECT_EQ(_ormak_merge_double_sections(&zeros[0], &zeros[1], 1, 1, order), 0);
        EXPECT_TRUE(signbit(zeros[0]));
        double swapped[] = {0.0, -0.0};
        EXPECT_EQ(_ormak_merge_double_sections(&swapped[0], &swapped[1], 1, 1, order), 0);
        EXPECT_FALSE(signbit(swapped[0]));
    }

    // Equal strings keep the pointers of the left section first; nulls likewise.
    static const char left_a[] = "a", right_a[] = "a", left_b[] = "b", right_b[] = "b";
    const char *strings[] = {nullptr, left_a, left_b, nullptr, right_a, right_b};
    EXPECT_EQ(_ormak_merge_char_char_sections(&strings[0], &strings[3], 3, 3, ascending), 0);
    const char *ascending_result[] = {nullptr, nullptr, left_a, right_a, left_b, right_b};
    EXPECT_TRUE(std::equal(strings, strings + 6, ascending_result));

    // Fixed texts equal up to their terminator, told apart by the bytes behind it.
    global_data_size = 4;
    char texts[] = "ab\0Laa\0Rab\0R";
    EXPECT_EQ(_ormak_merge_char_sections(texts, texts + 4, 1, 2, ascending), 0);
    EXPECT_EQ(std::string(texts, 12), std::string("aa\0Rab\0Lab\0R", 12));
}

using Text = std::optional<std::string>;

std::vector<Text> texts_of(const std::vector<const char *> &pointers) {
    std::vector<Text> texts;
    for (const char *p : pointers) texts.push_back(p ? Text(p) : std::nullopt);
    return texts;
}

TEST(Sort, StringsSortWithNullFirstAscendingAndLastDescending) {
    // A pool of strings with repeats and bytes above 127, and null pointers among them.
    std::mt19937_64 random(11);
    std::vector<std::string> pool;
    for (int i = 0; i < 3000; i++) {
        std::string text;
        size_t length = random() % 6;
        for (size_t j = 0; j < length; j++) text += (char)(random() % 3 == 0 ? 0xC0 + random() % 8 : 'a' + random() % 4);
        pool.push_back(text);
    }
    for (size_t count : {3, 1000, 100000}) {
        std::vector<const char *> pointers(count);
        for (const char *&p : pointers) p = random() % 10 == 0 ? nullptr : pool[random() % pool.size()].c_str();
        for (int order : {ascending, descending}) {
            std::vector<Text> expected = texts_of(pointers);
            std::stable_sort(expected.begin(), expected.end());  // an empty optional first
            if (order == descending) std::reverse(expected.begin(), expected.end());
            for (int threads : {1, 2, 3}) {
                SCOPED_TRACE(std::to_string(count) + " strings, " + std::to_string(threads) + " threads");
                std::vector<const char *> items = pointers;
                EXPECT_EQ(ormak::sort_items(items.data(), count, ormak::SORT_CHAR_CHAR, 0, order, threads), 0);
                EXPECT_EQ(texts_of(items), expected);
            }
        }
    }
}

TEST(Sort, FixedTextsSortAsWholeElements) {
    const size_t width = 10;
    std::mt19937_64 random(5);
    for (size_t count : {1000, 100000}) {
        // Texts up to the full width, the rest zeros, letters and bytes above 127.
        std::vector<char> items(count * width, 0);
        for (size_t i = 0; i < count; i++) {
            size_t length = random() % (width + 1);
            for (size_t j = 0; j < length; j++)
                items[i * width + j] = (char)(random() % 5 == 0 ? 0xE0 + random() % 4 : 'a' + random() % 3);
        }
        for (int order : {ascending, descending}) {
            std::vector<std::string> keys;
            for (size_t i = 0; i < count; i++) keys.emplace_back(&items[i * width], width);
            std::stable_sort(keys.begin(), keys.end());
            if (order == descending) std::reverse(keys.begin(), keys.end());
            std::string expected;
            for (const std::string &key : keys) expected += key;
            for (int threads : {1, 3}) {
                SCOPED_TRACE(std::to_string(count) + " texts, " + std::to_string(threads) + " threads");
                std::vector<char> sorted = items;
                EXPECT_EQ(ormak::sort_items(sorted.data(), count, ormak::SORT_CHAR, (int)width, order, threads), 0);
                EXPECT_EQ(global_data_size, (int)width);
                EXPECT_TRUE(std::string(sorted.data(), sorted.size()) == expected);
            }
        }
    }
}

TEST(Sort, NaNLeavesTheOneNumberAtTheEndOfItsOrder) {
    for (int threads : {1, 3}) {
        for (int order : {ascending, descending}) {
            std::vector<float> floats(100000, NAN);
            floats[50000] = 1.0f;
            EXPECT_EQ(ormak::sort_items(floats.data(), floats.size(), ormak::SORT_FLOAT, 0, order, threads), 0);
            EXPECT_EQ(floats[order == ascending ? floats.size() - 1 : 0], 1.0f);
            EXPECT_EQ(std::count_if(floats.begin(), floats.end(), [](float v) { return v != v; }), 99999);
        }
    }
}

/* ---- Working memory that runs out ---- */

std::atomic<int> allocations_left{0};

void *failing_allocation(size_t size) {
    if (allocations_left.fetch_sub(1) <= 0) return nullptr;
    return malloc(size);
}

class SortMemory : public ::testing::Test {
protected:
    void SetUp() override {
        error_message[0] = '\0';
        ormak::sort_allocate = failing_allocation;
    }
    void TearDown() override {
        ormak::sort_allocate = malloc;
        error_message[0] = '\0';
    }
    static std::string message() { return error_message; }
};

const char memory_message[] = "Error when ordering as there is not enough memory available";

/* Whether `values` is a permutation of `original` whose sections are each sorted. */
::testing::AssertionResult sorted_by_section(std::vector<int> values, std::vector<int> original,
                                             const std::vector<int> &index) {
    for (size_t i = 0; i + 1 < index.size(); i++)
        if (!std::is_sorted(values.begin() + index[i], values.begin() + index[i + 1]))
            return ::testing::AssertionFailure() << "section " << i << " is not sorted";
    std::sort(values.begin(), values.end());
    std::sort(original.begin(), original.end());
    if (values != original) return ::testing::AssertionFailure() << "not a permutation";
    return ::testing::AssertionSuccess();
}

TEST_F(SortMemory, EveryAllocationThatFailsEndsInTheMemoryStatus) {
    std::vector<int> original = random_numbers<int>(1000, 1);

    // Without the boundary list nothing moves.
    allocations_left = 0;
    std::vector<int> values = original;
    EXPECT_EQ(ormak::sort_items(values.data(), values.size(), ormak::SORT_INT, 0, ascending, 4), -8);
    EXPECT_EQ(message(), memory_message);
    EXPECT_EQ(values, original);

    // The boundaries and the status list, then the two pairs of the first pass, and the last
    // pair fails: the halves stay sorted apart.
    allocations_left = 4;
    values = original;
    EXPECT_EQ(ormak::sort_items(values.data(), values.size(), ormak::SORT_INT, 0, ascending, 4), -8);
    EXPECT_TRUE(sorted_by_section(values, original, {0, 500, 1000}));

    // The exported merge: its own boundaries, status list or a pair's block.
    for (int allowed : {0, 1, 2}) {
        allocations_left = allowed;
        error_message[0] = '\0';
        std::vector<int> index = {0, 500, 1000};
        values = original;
        std::sort(values.begin(), values.begin() + 500);
        std::sort(values.begin() + 500, values.end());
        std::vector<int> sections = values;
        EXPECT_EQ(_ormak_merge_int(values.data(), 1000, index.data(), 2, ascending), -8);
        EXPECT_EQ(message(), memory_message);
        EXPECT_EQ(values, sections);
    }

    // Strings: pointers only move, none is lost.
    allocations_left = 2;
    std::vector<const char *> strings;
    static const char *const words[] = {"d", "b", nullptr, "a", "c"};
    for (int i = 0; i < 600; i++) strings.push_back(words[i % 5]);
    EXPECT_EQ(ormak::sort_items(strings.data(), strings.size(), ormak::SORT_CHAR_CHAR, 0, ascending, 2), -8);
    EXPECT_EQ(std::count(strings.begin(), strings.end(), nullptr), 120);
    EXPECT_EQ(std::count(strings.begin(), strings.end(), words[0]), 120);
}

} // namespace
