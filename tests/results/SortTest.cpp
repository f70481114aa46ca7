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
template <typename T>
struct Functions;

#define ORMAK_FUNCTIONS(T, name, sort_kind)                                                                       \
    template <>                                                                                                    \
    struct Functions<T> {                                                                                          \
        static constexpr ormak::SortKind kind = sort_kind;                                                         \
        static int ascend(const void *a, const void *b) { return _ormak_compare_##name##_ascend(a, b); }           \
        static int descend(const void *a, const void *b) { return _ormak_compare_##name##_descend(a, b); }         \
        static int merge(void *data, int count, const int *index, int threads, int order) {                       \
            return _ormak_merge_##name(data, count, index, threads, order);                                        \
        }                                                                                                          \
        static int merge_sections(void *left, void *right, int left_count, int right_count, int order) {           \
            return _ormak_merge_##name##_sections(left, right, left_count, right_count, order);                    \
        }                                                                                                          \
    };

ORMAK_FUNCTIONS(int8_t, tinyint, ormak::SORT_TINYINT)
ORMAK_FUNCTIONS(uint16_t, unsigned_smallint, ormak::SORT_UNSIGNED_SMALLINT)
ORMAK_FUNCTIONS(int32_t, int, ormak::SORT_INT)
ORMAK_FUNCTIONS(uint64_t, unsigned_bigint, ormak::SORT_UNSIGNED_BIGINT)
ORMAK_FUNCTIONS(double, double, ormak::SORT_DOUBLE)
ORMAK_FUNCTIONS(const char *, char_char, ormak::SORT_CHAR_CHAR)

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

/* The first item of each of `threads` sections of `count` items, and `count` behind them. */
std::vector<int> section_index(int count, int threads) {
    std::vector<int> index;
    for (int i = 0; i < threads; i++) index.push_back((int)((int64_t)i * count / threads));
    index.push_back(count);
    return index;
}

/* Each section of `values` sorted by itself with the exported comparison. */
template <typename T>
void sort_sections(std::vector<T> &values, const std::vector<int> &index, int order) {
    for (size_t i = 0; i + 1 < index.size(); i++)
        qsort(values.data() + index[i], (size_t)(index[i + 1] - index[i]), sizeof(T),
              order == ascending ? Functions<T>::ascend : Functions<T>::descend);
}

template <typename T>
void check_numbers_of_type() {
    SCOPED_TRACE(typeid(T).name());
    for (int order : {ascending, descending}) {
        SCOPED_TRACE(order == ascending ? "ascending" : "descending");
        // Sorting with the comparison functions gives the documented order.
        std::vector<T> values = random_numbers<T>(2000, 7);
        std::vector<T> sorted = values;
        qsort(sorted.data(), sorted.size(), sizeof(T), order == ascending ? Functions<T>::ascend : Functions<T>::descend);
        EXPECT_TRUE(same_numbers(sorted, expected_numbers(values, order)));

        // The merge joins sections cut as the parallel sort cuts them, evenly or not.
        const std::vector<std::pair<int, int>> cuts = {{1000, 8}, {256, 3}, {256, 2}, {1001, 5}, {300, 7}};
        for (auto [count, threads] : cuts) {
            SCOPED_TRACE(std::to_string(count) + " items in " + std::to_string(threads) + " sections");
            std::vector<T> merged = random_numbers<T>((size_t)count, (uint64_t)count * 31 + threads);
            std::vector<int> index = section_index(count, threads);
            sort_sections(merged, index, order);
            std::vector<T> expected = expected_numbers(merged, order);
            EXPECT_EQ(Functions<T>::merge(merged.data(), count, index.data(), threads, order), 0);
            EXPECT_TRUE(same_numbers(merged, expected));
        }

        // Sections of any length, empty ones among them.
        std::vector<T> uneven = random_numbers<T>(500, 3);
        std::vector<int> index = {0, 0, 10, 10, 11, 500};
        sort_sections(uneven, index, order);
        std::vector<T> expected = expected_numbers(uneven, order);
        EXPECT_EQ(Functions<T>::merge(uneven.data(), 500, index.data(), 5, order), 0);
        EXPECT_TRUE(same_numbers(uneven, expected));

        // The sort itself, on one thread and on teams that do and do not divide the items.
        for (size_t count : {0, 1, 2, 255, 256, 1001, 100000}) {
            for (int threads : {1, 2, 3, 8}) {
                if (count == 100000 && threads == 8) continue;
                SCOPED_TRACE(std::to_string(count) + " items, " + std::to_string(threads) + " threads");
                std::vector<T> items = random_numbers<T>(count, count + threads);
                std::vector<T> expected_items = expected_numbers(items, order);
                EXPECT_EQ(ormak::sort_items(items.data(), count, Functions<T>::kind, 0, order, threads), 0);
                EXPECT_TRUE(same_numbers(items, expected_items));
            }
        }
    }
}

// The integer types share one template: the narrow ones compare by difference, the wide ones
// by value; one signed and one unsigned type of each kind, and the reals.
TEST(Sort, NumbersSortByValue) {
    check_numbers_of_type<int8_t>();
    check_numbers_of_type<uint16_t>();
    check_numbers_of_type<int32_t>();
    check_numbers_of_type<uint64_t>();
    check_numbers_of_type<double>();
}

// The orders themselves are checked through qsort above and below; here, what qsort alone
// would not show: which values the comparisons call equal, and the types not sorted above.
TEST(Sort, ComparisonsAnswerAsQsortWants) {
    uint8_t unsigned_tiny[] = {0x7F, 0xFF};
    EXPECT_LT(_ormak_compare_unsigned_tinyint_ascend(&unsigned_tiny[0], &unsigned_tiny[1]), 0);
    int32_t ints[] = {INT32_MIN, INT32_MAX};
    EXPECT_EQ(_ormak_compare_int_ascend(&ints[0], &ints[0]), 0);
    EXPECT_LT(_ormak_compare_int_ascend(&ints[0], &ints[1]), 0);
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
    const char *descend[] = {left_b, left_a, nullptr, right_b, right_a, nullptr};
    EXPECT_EQ(_ormak_merge_char_char_sections(&descend[0], &descend[3], 3, 3, descending), 0);
    const char *descending_result[] = {left_b, right_b, left_a, right_a, nullptr, nullptr};
    EXPECT_TRUE(std::equal(descend, descend + 6, descending_result));

    // Fixed texts equal up to their terminator, told apart by the bytes behind it.
    global_data_size = 4;
    char texts[] = "ab\0Laa\0Rab\0R";
    EXPECT_EQ(_ormak_merge_char_sections(texts, texts + 4, 1, 2, ascending), 0);
    EXPECT_EQ(std::string(texts, 12), std::string("aa\0Rab\0Lab\0R", 12));
    char descending_texts[] = "ab\0Lac\0Rab\0R";
    EXPECT_EQ(_ormak_merge_char_sections(descending_texts, descending_texts + 4, 1, 2, descending), 0);
    EXPECT_EQ(std::string(descending_texts, 12), std::string("ac\0Rab\0Lab\0R", 12));
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
    for (size_t count : {3, 255, 256, 1000, 100000}) {
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
            std::vector<const char *> merged = pointers;
            std::vector<int> index = section_index((int)count, 4);
            sort_sections(merged, index, order);
            EXPECT_EQ(_ormak_merge_char_char(merged.data(), (int)count, index.data(), 4, order), 0);
            EXPECT_EQ(texts_of(merged), expected);
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
            for (int threads : {1, 2, 3, 8}) {
                SCOPED_TRACE(std::to_string(count) + " texts, " + std::to_string(threads) + " threads");
                std::vector<char> sorted = items;
                EXPECT_EQ(ormak::sort_items(sorted.data(), count, ormak::SORT_CHAR, (int)width, order, threads), 0);
                EXPECT_EQ(global_data_size, (int)width);
                EXPECT_TRUE(std::string(sorted.data(), sorted.size()) == expected);
            }
            std::vector<char> merged = items;
            std::vector<int> index = section_index((int)count, 3);
            global_data_size = (int)width;
            for (int i = 0; i < 3; i++)
                qsort(&merged[index[i] * width], (size_t)(index[i + 1] - index[i]), width,
                      order == ascending ? _ormak_compare_char_ascend : _ormak_compare_char_descend);
            EXPECT_EQ(_ormak_merge_char(merged.data(), (int)count, index.data(), 3, order), 0);
            EXPECT_TRUE(std::string(merged.data(), merged.size()) == expected);
        }
    }
}

TEST(Sort, ArraysOfNaNStayInPlace) {
    for (size_t count : {10, 256, 100000}) {
        for (int threads : {1, 2, 3}) {
            for (int order : {ascending, descending}) {
                std::vector<double> doubles(count, NAN);
                EXPECT_EQ(ormak::sort_items(doubles.data(), count, ormak::SORT_DOUBLE, 0, order, threads), 0);
                EXPECT_TRUE(std::all_of(doubles.begin(), doubles.end(), [](double v) { return v != v; }));
                std::vector<float> floats(count, NAN);
                floats[count / 2] = 1.0f;
                EXPECT_EQ(ormak::sort_items(floats.data(), count, ormak::SORT_FLOAT, 0, order, threads), 0);
                EXPECT_EQ(floats[order == ascending ? count - 1 : 0], 1.0f);
                EXPECT_EQ(std::count_if(floats.begin(), floats.end(), [](float v) { return v != v; }),
                          (long)count - 1);
            }
        }
    }
    // qsort with the comparison over NaN and numbers mixed.
    std::vector<double> mixed = {NAN, 2.0, NAN, -1.0, NAN, 0.5};
    qsort(mixed.data(), mixed.size(), sizeof(double), _ormak_compare_double_descend);
    EXPECT_TRUE(same_numbers(mixed, {2.0, 0.5, -1.0, NAN, NAN, NAN}));
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
        std::vector<int> index = section_index(1000, 2);
        values = original;
        sort_sections(values, index, ascending);
        std::vector<int> sections = values;
        EXPECT_EQ(_ormak_merge_int(values.data(), 1000, index.data(), 2, ascending), -8);
        EXPECT_EQ(message(), memory_message);
        EXPECT_EQ(values, sections);
    }

    // Two sections: both unchanged.
    allocations_left = 0;
    error_message[0] = '\0';
    int pair[] = {1, 3, 0, 2};
    EXPECT_EQ(_ormak_merge_int_sections(&pair[0], &pair[2], 2, 2, ascending), -8);
    EXPECT_EQ(message(), memory_message);
    EXPECT_EQ(std::vector<int>(pair, pair + 4), (std::vector<int>{1, 3, 0, 2}));

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
