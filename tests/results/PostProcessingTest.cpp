// Post-processing of result buffers: the ORDER, TOP, BOTTOM, FROM ... TO and STEP clauses as
// the parser hands them over, on both levels, for every layout of values, and what they free.
#include <gtest/gtest.h>
#include <math.h>
#include <omp.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "Ormak.h"
#include "OrmakPrivateStructures.h"
#include "ParseRule.h"
#include "results/Sort.h"

namespace {

/* Runs `clauses` over `count` values at `data`; the status. */
int post(const std::string &clauses, void *data, int data_type, int *count, int size) {
    int status = 1;
    with_rule_tree(clauses, ORMAK_RULE(post_processing_statement), [&](pANTLR3_BASE_TREE tree, bool whole) {
        ASSERT_TRUE(tree && whole) << clauses;
        status = _ormak_post_processing(tree, data, data_type, count, size);
    });
    return status;
}

/* Numbers of one type through `clauses`. */
template <typename T>
std::vector<T> numbers(const std::string &clauses, std::vector<T> values, int data_type) {
    int count = (int)values.size();
    EXPECT_EQ(post(clauses, values.data(), data_type, &count, (int)sizeof(T)), 0) << clauses;
    values.resize((size_t)count);
    return values;
}

std::vector<int> ints(const std::string &clauses, const std::vector<int> &values) {
    return numbers(clauses, values, ORMAK_INT);
}

/* Strings through `clauses`, each a heap block as a read leaves it; a null entry is absent. */
using Text = std::optional<std::string>;

std::vector<Text> strings(const std::string &clauses, const std::vector<Text> &values) {
    std::vector<char *> buffer;
    for (const Text &value : values) buffer.push_back(value ? strdup(value->c_str()) : nullptr);
    int count = (int)buffer.size();
    EXPECT_EQ(post(clauses, buffer.data(), ORMAK_VARCHAR, &count, 0), 0) << clauses;
    std::vector<Text> result;
    for (int i = 0; i < count; i++) {
        result.push_back(buffer[i] ? Text(buffer[i]) : std::nullopt);
        free(buffer[i]);
    }
    return result;
}

/* Fixed values of `size` bytes through `clauses`. */
std::vector<std::string> fixed(const std::string &clauses, const std::vector<std::string> &values, int data_type,
                               int size) {
    std::string buffer;
    for (const std::string &value : values) buffer += value;
    EXPECT_EQ(buffer.size(), values.size() * (size_t)size);
    int count = (int)values.size();
    EXPECT_EQ(post(clauses, buffer.data(), data_type, &count, size), 0) << clauses;
    std::vector<std::string> result;
    for (int i = 0; i < count; i++) result.push_back(buffer.substr((size_t)i * size, (size_t)size));
    return result;
}

/* Variable-length values through `clauses`, each block on the heap; a record keeps its block
   when its members are cut, so the block it ends with is the one it started with. */
template <typename T>
std::vector<std::vector<T>> records(const std::string &clauses, const std::vector<std::vector<T>> &values,
                                    int data_type) {
    std::vector<ORMAK_VARIABLE_LENGTH> buffer;
    std::vector<void *> blocks;
    for (const std::vector<T> &value : values) {
        void *block = value.empty() ? nullptr : malloc(value.size() * sizeof(T));
        if (block) memcpy(block, value.data(), value.size() * sizeof(T));
        buffer.push_back(ORMAK_VARIABLE_LENGTH{value.size(), block});
        blocks.push_back(block);
    }
    int count = (int)buffer.size();
    EXPECT_EQ(post(clauses, buffer.data(), data_type, &count, (int)sizeof(T)), 0) << clauses;
    std::vector<std::vector<T>> result;
    for (int i = 0; i < count; i++) {
        const T *members = (const T *)buffer[i].address;
        result.emplace_back(members, members + buffer[i].count);
        EXPECT_TRUE(std::find(blocks.begin(), blocks.end(), buffer[i].address) != blocks.end());
        free(buffer[i].address);
    }
    return result;
}

/* The size of the OpenMP team for the sorts of one scope. */
class Team {
public:
    explicit Team(int threads) : original_(omp_get_max_threads()) { omp_set_num_threads(threads); }
    ~Team() { omp_set_num_threads(original_); }

private:
    int original_;
};

const std::vector<int> one_to_five = {1, 2, 3, 4, 5};

TEST(PostProcessing, TopAndBottomKeepTheFirstOrTheLast) {
    const std::vector<int> values = {1, 2, 3};
    EXPECT_EQ(ints("TOP 2", values), (std::vector<int>{1, 2}));
    EXPECT_EQ(ints("TOP -2", values), (std::vector<int>{2, 3}));
    EXPECT_EQ(ints("BOTTOM 2", values), (std::vector<int>{2, 3}));
    EXPECT_EQ(ints("BOTTOM -2", values), (std::vector<int>{1, 2}));
    EXPECT_EQ(ints("TOP 10", values), values);
    EXPECT_EQ(ints("TOP 0", values), std::vector<int>{});
    // A number is never refused, and none turns around beyond the range of an int.
    EXPECT_EQ(ints("TOP -2147483648", values), values);
    EXPECT_EQ(ints("BOTTOM 2147483647", values), values);
    EXPECT_EQ(ints("TOP 99999999999", values), values);
    // The second number is for the inside of a value: numbers have none.
    EXPECT_EQ(ints("TOP , 0", values), values);

    // Dropped strings and blocks are freed (the leak checker watches), kept ones stay.
    EXPECT_EQ(strings("TOP 2", {"a", std::nullopt, "c"}), (std::vector<Text>{"a", std::nullopt}));
    EXPECT_EQ(strings("BOTTOM 0", {"a", "b"}), std::vector<Text>{});
    EXPECT_EQ(records<int>("BOTTOM 1", {{1, 2}, {}, {3}}, ORMAK_VARINT), (std::vector<std::vector<int>>{{3}}));
    EXPECT_EQ(records<int>("TOP 0", {{1, 2}, {3}}, ORMAK_VARINT), std::vector<std::vector<int>>{});
}

TEST(PostProcessing, FromToSelectsARangeCountedFromEitherEnd) {
    const std::vector<int> values = {1, 2, 3, 4};
    EXPECT_EQ(ints("FROM 1 TO 2", values), (std::vector<int>{2, 3}));
    EXPECT_EQ(ints("FROM -2 TO -1", values), (std::vector<int>{3, 4}));
    EXPECT_EQ(ints("FROM 2 TO 99", values), (std::vector<int>{3, 4}));
    EXPECT_EQ(ints("FROM -5 TO 0", values), (std::vector<int>{1}));
    EXPECT_EQ(ints("FROM 5 TO 9", values), std::vector<int>{});
    EXPECT_EQ(ints("FROM 2 TO 1", values), std::vector<int>{});
    EXPECT_EQ(ints("FROM 0 TO -5", values), std::vector<int>{});
    EXPECT_EQ(ints("FROM -2147483648 TO 2147483647", values), values);
    EXPECT_EQ(ints("FROM 2147483647 TO -2147483648", values), std::vector<int>{});
    // Either bound may be left out by giving only the inner one.
    EXPECT_EQ(ints("FROM , 1 TO 1", values), (std::vector<int>{1, 2}));
    EXPECT_EQ(ints("FROM 2 TO , 1", values), (std::vector<int>{3, 4}));

    EXPECT_EQ(strings("FROM 1 TO 1", {"a", "b", std::nullopt}), (std::vector<Text>{"b"}));
    EXPECT_EQ(records<int>("FROM -2 TO -2", {{1}, {2, 3}, {4}}, ORMAK_VARINT), (std::vector<std::vector<int>>{{2, 3}}));
}

TEST(PostProcessing, StepKeepsEveryNthItemCountedFromEitherEnd) {
    EXPECT_EQ(ints("STEP 2", one_to_five), (std::vector<int>{1, 3, 5}));
    EXPECT_EQ(ints("STEP -2", {1, 2, 3, 4}), (std::vector<int>{2, 4}));
    EXPECT_EQ(ints("STEP -2", one_to_five), (std::vector<int>{1, 3, 5}));
    EXPECT_EQ(ints("STEP -3", {1, 2, 3, 4, 5, 6}), (std::vector<int>{3, 6}));
    EXPECT_EQ(ints("STEP -9", one_to_five), (std::vector<int>{5}));
    for (const char *unchanged : {"STEP 1", "STEP 0", "STEP -1", "STEP , 2"})
        EXPECT_EQ(ints(unchanged, one_to_five), one_to_five) << unchanged;
    // The largest steps keep the first or the last value, without overflow.
    EXPECT_EQ(ints("STEP 2147483647", one_to_five), (std::vector<int>{1}));
    EXPECT_EQ(ints("STEP -2147483648", one_to_five), (std::vector<int>{5}));
    EXPECT_EQ(ints("STEP 99999999999", one_to_five), (std::vector<int>{1}));

    EXPECT_EQ(strings("STEP 2", {"a", std::nullopt, std::nullopt, "d", "e"}),
              (std::vector<Text>{"a", std::nullopt, "e"}));
    EXPECT_EQ(records<int>("STEP -2", {{1}, {2}, {3}, {4}}, ORMAK_VARINT), (std::vector<std::vector<int>>{{2}, {4}}));
}

TEST(PostProcessing, ClausesApplyOneAfterTheOtherInTheirWrittenOrder) {
    const std::vector<int> values = {5, 1, 4, 2, 3};
    EXPECT_EQ(ints("TOP 3 ORDER DESCEND", values), (std::vector<int>{5, 4, 1}));
    EXPECT_EQ(ints("ORDER DESCEND TOP 3", values), (std::vector<int>{5, 4, 3}));
    EXPECT_EQ(ints("TOP 4 TOP 2", values), (std::vector<int>{5, 1}));
    EXPECT_EQ(ints("ORDER ASCEND FROM 1 TO -1 STEP 2 BOTTOM 1", values), (std::vector<int>{4}));
    EXPECT_EQ(ints("ORDER REVERSE", values), (std::vector<int>{3, 2, 4, 1, 5}));
    EXPECT_EQ(ints("TOP 0 ORDER DESCEND STEP 2", values), std::vector<int>{});
    // An empty buffer is left alone by every clause.
    int count = 0;
    EXPECT_EQ(post("ORDER ASCEND TOP 3 FROM 1 TO 2 STEP -2", nullptr, ORMAK_INT, &count, 4), 0);
    EXPECT_EQ(count, 0);
    // No clause at all.
    int value = 7;
    count = 1;
    EXPECT_EQ(_ormak_post_processing(nullptr, &value, ORMAK_INT, &count, 4), 0);
    EXPECT_EQ(count, 1);
}

/* Random values over the whole range of an integer type, with repeats. */
template <typename T>
std::vector<T> random_integers(size_t count, uint64_t seed) {
    std::mt19937_64 random(seed);
    std::vector<T> values(count);
    for (T &value : values) {
        uint64_t bits = random() % 4 == 0 ? random() % 5 : random();
        memcpy(&value, &bits, sizeof value);
    }
    return values;
}

template <typename T>
void check_integer_type(int data_type, size_t count) {
    SCOPED_TRACE("data type " + std::to_string(data_type) + ", " + std::to_string(count) + " values");
    std::vector<T> values = random_integers<T>(count, (uint64_t)data_type);
    std::vector<T> expected = values;
    std::stable_sort(expected.begin(), expected.end());
    EXPECT_TRUE(numbers("ORDER ASCEND", values, data_type) == expected);
    std::reverse(expected.begin(), expected.end());
    EXPECT_TRUE(numbers("ORDER DESCEND", values, data_type) == expected);
}

TEST(PostProcessing, OrderSortsNumbersByTheirTypesValue) {
    for (int threads : {1, 2, 3}) {
        Team team(threads);
        SCOPED_TRACE(std::to_string(threads) + " threads");
        // Signed and unsigned of several widths: values with the top bit set come last
        // ascending only when the type is unsigned.
        for (size_t count : {10, 1000}) {
            check_integer_type<int8_t>(ORMAK_TINYINT, count);
            check_integer_type<uint16_t>(ORMAK_UNSIGNED_SMALLINT, count);
            check_integer_type<int32_t>(ORMAK_INT, count);
        }
        check_integer_type<uint64_t>(ORMAK_UNSIGNED_BIGINT, 100000);
    }
}

template <typename T>
void check_reals(int data_type) {
    SCOPED_TRACE("data type " + std::to_string(data_type));
    const T nan = (T)NAN;
    std::vector<T> ascending = numbers<T>("ORDER ASCEND", {(T)1.5, nan, (T)-2, nan, (T)0}, data_type);
    EXPECT_TRUE(ascending[0] != ascending[0] && ascending[1] != ascending[1]);
    EXPECT_EQ(std::vector<T>(ascending.begin() + 2, ascending.end()), (std::vector<T>{(T)-2, (T)0, (T)1.5}));
    std::vector<T> descending = numbers<T>("ORDER DESCEND", {(T)1.5, nan, (T)-2, nan, (T)0}, data_type);
    EXPECT_EQ(std::vector<T>(descending.begin(), descending.begin() + 3), (std::vector<T>{(T)1.5, (T)0, (T)-2}));
    EXPECT_TRUE(descending[3] != descending[3] && descending[4] != descending[4]);
}

TEST(PostProcessing, NaNComesBeforeEveryNumberAscendingAndAfterDescending) {
    check_reals<double>(ORMAK_DOUBLE);
    check_reals<float>(ORMAK_FLOAT);
}

TEST(PostProcessing, StringsSortWithNullFirstAscendingAndLastDescending) {
    EXPECT_EQ(strings("ORDER ASCEND", {"b", std::nullopt, "a", std::nullopt}),
              (std::vector<Text>{std::nullopt, std::nullopt, "a", "b"}));
    EXPECT_EQ(strings("ORDER DESCEND", {"b", std::nullopt, "a"}), (std::vector<Text>{"b", "a", std::nullopt}));
    EXPECT_EQ(strings("ORDER REVERSE", {"b", std::nullopt, "a"}), (std::vector<Text>{"a", std::nullopt, "b"}));
    // Bytes above 127 come after letters.
    EXPECT_EQ(strings("ORDER ASCEND", {"\xe0", "b", "a"}), (std::vector<Text>{"a", "b", "\xe0"}));
}

TEST(PostProcessing, FixedTextsSortAsWholeValuesAndOpaqueValuesDoNot) {
    const int width = 10;
    std::mt19937_64 random(9);
    std::vector<std::string> values(1000);
    for (std::string &value : values) {
        for (size_t length = random() % (width + 1); length > 0; length--) value += (char)('a' + random() % 4);
        value.resize(width, '\0');
    }
    std::vector<std::string> expected = values;
    std::stable_sort(expected.begin(), expected.end());
    std::vector<std::string> expected_descending(expected.rbegin(), expected.rend());
    for (int threads : {1, 3}) {
        Team team(threads);
        EXPECT_TRUE(fixed("ORDER ASCEND", values, ORMAK_CHAR, width) == expected) << threads << " threads";
        EXPECT_TRUE(fixed("ORDER DESCEND", values, ORMAK_CHAR, width) == expected_descending) << threads << " threads";
    }
    EXPECT_EQ(global_data_size, width);

    const std::vector<std::string> opaque = {std::string("c\0\1", 3), "bbb", "aaa"};
    EXPECT_EQ(fixed("ORDER ASCEND", opaque, ORMAK_OPAQUE, 3), opaque);
    EXPECT_EQ(fixed("ORDER DESCEND", opaque, ORMAK_OPAQUE, 3), opaque);
    EXPECT_EQ(fixed("ORDER REVERSE", opaque, ORMAK_OPAQUE, 3),
              (std::vector<std::string>{"aaa", "bbb", std::string("c\0\1", 3)}));
    EXPECT_EQ(fixed("ORDER REVERSE", {"abc", "def"}, ORMAK_CHAR, 3), (std::vector<std::string>{"def", "abc"}));
}

TEST(PostProcessing, VariableLengthValuesOnlyReverseAsAWhole) {
    const std::vector<std::vector<int>> values = {{3}, {1, 2}, {}, {0}};
    EXPECT_EQ(records<int>("ORDER ASCEND", values, ORMAK_VARINT), values);
    EXPECT_EQ(records<int>("ORDER DESCEND", values, ORMAK_VARINT), values);
    EXPECT_EQ(records<int>("ORDER REVERSE", values, ORMAK_VARINT),
              (std::vector<std::vector<int>>{{0}, {}, {1, 2}, {3}}));
    std::vector<std::vector<int>> many(100001);
    for (size_t i = 0; i < many.size(); i++) many[i] = {(int)i};
    std::vector<std::vector<int>> reversed = records<int>("ORDER REVERSE", many, ORMAK_VARINT);
    EXPECT_TRUE(std::equal(reversed.rbegin(), reversed.rend(), many.begin(), many.end()));
}

TEST(PostProcessing, TheInnerLevelCutsAndOrdersTheCharactersOfStrings) {
    const std::vector<Text> values = {"abcde", std::nullopt, "x", ""};
    EXPECT_EQ(strings("TOP , 2", values), (std::vector<Text>{"ab", std::nullopt, "x", ""}));
    EXPECT_EQ(strings("TOP , -2", values), (std::vector<Text>{"de", std::nullopt, "x", ""}));
    EXPECT_EQ(strings("BOTTOM , 2", values), (std::vector<Text>{"de", std::nullopt, "x", ""}));
    EXPECT_EQ(strings("BOTTOM , 0", values), (std::vector<Text>{"", std::nullopt, "", ""}));
    EXPECT_EQ(strings("FROM , 1 TO , 2", values), (std::vector<Text>{"bc", std::nullopt, "", ""}));
    EXPECT_EQ(strings("FROM , -2 TO , -1", values), (std::vector<Text>{"de", std::nullopt, "x", ""}));
    EXPECT_EQ(strings("FROM , 9 TO , 12", values), (std::vector<Text>{"", std::nullopt, "", ""}));
    EXPECT_EQ(strings("STEP , 2", values), (std::vector<Text>{"ace", std::nullopt, "x", ""}));
    EXPECT_EQ(strings("STEP , -2", {"abcd"}), (std::vector<Text>{"bd"}));
    EXPECT_EQ(strings("STEP , -2147483648", {"abcd"}), (std::vector<Text>{"d"}));
    EXPECT_EQ(strings("ORDER , REVERSE", values), (std::vector<Text>{"edcba", std::nullopt, "x", ""}));
    // One string, both levels: the characters are sorted, as unsigned bytes.
    EXPECT_EQ(strings("ORDER ASCEND ASCEND", {"b\xe9" "a"}), (std::vector<Text>{"ab\xe9"}));
    EXPECT_EQ(strings("ORDER DESCEND DESCEND", {"ab", "b\xe9" "a"}), (std::vector<Text>{"\xe9" "ba", "ba"}));
    // Both numbers at once, outer first.
    EXPECT_EQ(strings("TOP 1 3", values), (std::vector<Text>{"abc"}));

    // A string long enough for the parallel sort of its characters.
    std::string text;
    std::mt19937_64 random(4);
    for (int i = 0; i < 5000; i++) text += (char)(1 + random() % 255);
    std::string sorted = text;
    std::sort(sorted.begin(), sorted.end(), [](char a, char b) { return (unsigned char)a < (unsigned char)b; });
    for (int threads : {1, 2, 3}) {
        Team team(threads);
        EXPECT_EQ(strings("ORDER , ASCEND", {text}), (std::vector<Text>{sorted}));
    }
}

TEST(PostProcessing, TheInnerLevelOfFixedValuesKeepsTheirWidth) {
    using Strings = std::vector<std::string>;
    const Strings values = {"abcd", "wxyz"};
    EXPECT_EQ(fixed("TOP 1 0", values, ORMAK_CHAR, 4), (Strings{std::string(4, '\0')}));
    EXPECT_EQ(fixed("TOP , 2", values, ORMAK_CHAR, 4), (Strings{std::string("ab\0\0", 4), std::string("wx\0\0", 4)}));
    EXPECT_EQ(fixed("TOP , -2", values, ORMAK_CHAR, 4), (Strings{std::string("cd\0\0", 4), std::string("yz\0\0", 4)}));
    EXPECT_EQ(fixed("BOTTOM , -1", values, ORMAK_OPAQUE, 4),
              (Strings{std::string("a\0\0\0", 4), std::string("w\0\0\0", 4)}));
    EXPECT_EQ(fixed("FROM , 1 TO , 2", values, ORMAK_CHAR, 4),
              (Strings{std::string("bc\0\0", 4), std::string("xy\0\0", 4)}));
    EXPECT_EQ(fixed("FROM , 3 TO , 1", values, ORMAK_CHAR, 4), (Strings{std::string(4, '\0'), std::string(4, '\0')}));
    EXPECT_EQ(fixed("STEP , -2", values, ORMAK_CHAR, 4), (Strings{std::string("bd\0\0", 4), std::string("xz\0\0", 4)}));
    EXPECT_EQ(fixed("ORDER , REVERSE", values, ORMAK_CHAR, 4), (Strings{"dcba", "zyxw"}));
    // Bytes sort signed, the terminator and padding among them.
    EXPECT_EQ(fixed("ORDER , ASCEND", {std::string("b\x80\0a", 4)}, ORMAK_OPAQUE, 4),
              (Strings{std::string("\x80\0ab", 4)}));
    EXPECT_EQ(fixed("ORDER , DESCEND", {std::string("b\x80\0a", 4)}, ORMAK_CHAR, 4),
              (Strings{std::string("ba\0\x80", 4)}));
}

TEST(PostProcessing, TheInnerLevelOfVariableLengthValuesWorksOnTheirMembers) {
    using Records = std::vector<std::vector<int>>;
    const Records values = {{3, 1, 2}, {}, {5, 4}};
    EXPECT_EQ(records<int>("ORDER , ASCEND", values, ORMAK_VARINT), (Records{{1, 2, 3}, {}, {4, 5}}));
    EXPECT_EQ(records<int>("ORDER , DESCEND", values, ORMAK_VARINT), (Records{{3, 2, 1}, {}, {5, 4}}));
    EXPECT_EQ(records<int>("ORDER , REVERSE", values, ORMAK_VARINT), (Records{{2, 1, 3}, {}, {4, 5}}));
    EXPECT_EQ(records<int>("TOP , 1", values, ORMAK_VARINT), (Records{{3}, {}, {5}}));
    EXPECT_EQ(records<int>("TOP , 0", values, ORMAK_VARINT), (Records{{}, {}, {}}));
    EXPECT_EQ(records<int>("FROM , 1 TO , 1", values, ORMAK_VARINT), (Records{{1}, {}, {4}}));
    EXPECT_EQ(records<int>("STEP , -2", values, ORMAK_VARINT), (Records{{3, 2}, {}, {4}}));
    EXPECT_EQ(records<int>("ORDER ASCEND DESCEND TOP 2 1", values, ORMAK_VARINT), (Records{{3}, {}}));

    // Each type orders its members by its own comparison.
    EXPECT_EQ(records<int8_t>("ORDER , ASCEND", {{1, -1, -128}}, ORMAK_VARTINYINT),
              (std::vector<std::vector<int8_t>>{{-128, -1, 1}}));
    EXPECT_EQ(records<uint64_t>("ORDER , ASCEND", {{UINT64_MAX, 1, (uint64_t)INT64_MAX + 1}}, ORMAK_UNSIGNED_VARBIGINT),
              (std::vector<std::vector<uint64_t>>{{1, (uint64_t)INT64_MAX + 1, UINT64_MAX}}));
    std::vector<std::vector<double>> reals = records<double>("ORDER , DESCEND", {{-1.5, NAN, 2.0, -1.0}}, ORMAK_VARDOUBLE);
    ASSERT_EQ(reals.size(), 1u);
    ASSERT_EQ(reals[0].size(), 4u);
    EXPECT_EQ(std::vector<double>(reals[0].begin(), reals[0].begin() + 3), (std::vector<double>{2.0, -1.0, -1.5}));
    EXPECT_TRUE(isnan(reals[0][3]));

    // Many members: the parallel sort of each value.
    std::vector<int64_t> members = random_integers<int64_t>(100000, 6);
    std::vector<int64_t> sorted = members;
    std::sort(sorted.begin(), sorted.end());
    for (int threads : {1, 2, 3}) {
        Team team(threads);
        EXPECT_TRUE(records<int64_t>("ORDER , ASCEND", {members, {2, 1}}, ORMAK_VARBIGINT) ==
                    (std::vector<std::vector<int64_t>>{sorted, {1, 2}}));
    }
}

TEST(PostProcessing, RunningOutOfMemoryKeepsWhatWasDone) {
    Team team(2);
    error_message[0] = '\0';
    ormak::sort_allocate = [](size_t) -> void * { return nullptr; };
    std::vector<int> values(1000);
    for (int i = 0; i < 1000; i++) values[i] = 999 - i;
    int count = 1000;
    int status = post("TOP 600 ORDER ASCEND TOP 1", values.data(), ORMAK_INT, &count, 4);
    ormak::sort_allocate = malloc;
    EXPECT_EQ(status, ORMAK_ERROR_NOT_ENOUGH_MEMORY);
    EXPECT_STREQ(error_message, "Error when ordering as there is not enough memory available");
    // The first clause stays done, the sort never started, the last clause was not reached.
    EXPECT_EQ(count, 600);
    EXPECT_TRUE(std::is_sorted(values.begin(), values.begin() + 600, std::greater<int>()));
    EXPECT_EQ(values[0], 999);
    error_message[0] = '\0';
}

} // namespace
