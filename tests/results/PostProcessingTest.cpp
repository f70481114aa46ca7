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

using Records = std::vector<std::vector<int>>;

TEST(PostProcessing, TopAndBottomKeepTheFirstOrTheLast) {
    const std::vector<int> values = {1, 2, 3};
    EXPECT_EQ(ints("TOP 2", values), (std::vector<int>{1, 2}));
    EXPECT_EQ(ints("TOP -2", values), (std::vector<int>{2, 3}));
    EXPECT_EQ(ints("BOTTOM 2", values), (std::vector<int>{2, 3}));
    EXPECT_EQ(ints("BOTTOM -2", values), (std::vector<int>{1, 2}));
    EXPECT_EQ(ints("TOP 0", values), std::vector<int>{});
    // A number is never refused, and none turns around beyond the range of an int.
    EXPECT_EQ(ints("TOP -2147483648", values), values);
    EXPECT_EQ(ints("TOP 99999999999", values), values);
    // The second number is for the inside of a value: numbers have none.
    EXPECT_EQ(ints("TOP , 0", values), values);

    // Dropped strings and blocks are freed (the leak checker watches), kept ones stay.
    EXPECT_EQ(strings("TOP 2", {"a", std::nullopt, "c"}), (std::vector<Text>{"a", std::nullopt}));
    EXPECT_EQ(records<int>("BOTTOM 1", {{1, 2}, {}, {3}}, ORMAK_VARINT), (Records{{3}}));
}

TEST(PostProcessing, FromToSelectsARangeCountedFromEitherEnd) {
    const std::vector<int> values = {1, 2, 3, 4};
    EXPECT_EQ(ints("FROM 1 TO 2", values), (std::vector<int>{2, 3}));
    EXPECT_EQ(ints("FROM -2 TO -1", values), (std::vector<int>{3, 4}));
    EXPECT_EQ(ints("FROM -5 TO 0", values), (std::vector<int>{1}));
    EXPECT_EQ(ints("FROM 2 TO 1", values), std::vector<int>{});
    EXPECT_EQ(ints("FROM -2147483648 TO 2147483647", values), values);
    // Either bound may be left out by giving only the inner one.
    EXPECT_EQ(ints("FROM , 1 TO 1", values), (std::vector<int>{1, 2}));
    EXPECT_EQ(ints("FROM 2 TO , 1", values), (std::vector<int>{3, 4}));
    EXPECT_EQ(strings("FROM 1 TO 1", {"a", "b", std::nullopt}), (std::vector<Text>{"b"}));
}

TEST(PostProcessing, StepKeepsEveryNthItemCountedFromEitherEnd) {
    const std::vector<int> values = {1, 2, 3, 4, 5, 6};
    EXPECT_EQ(ints("STEP 2", values), (std::vector<int>{1, 3, 5}));
    EXPECT_EQ(ints("STEP -3", values), (std::vector<int>{3, 6}));
    for (const char *unchanged : {"STEP 1", "STEP 0", "STEP -1", "STEP , 2"})
        EXPECT_EQ(ints(unchanged, values), values) << unchanged;
    // The largest steps keep the first or the last value, without overflow.
    EXPECT_EQ(ints("STEP 2147483647", values), (std::vector<int>{1}));
    EXPECT_EQ(ints("STEP -2147483648", values), (std::vector<int>{6}));
    EXPECT_EQ(strings("STEP 2", {"a", std::nullopt, std::nullopt, "d", "e"}),
              (std::vector<Text>{"a", std::nullopt, "e"}));
}

TEST(PostProcessing, ClausesApplyOneAfterTheOtherInTheirWrittenOrder) {
    const std::vector<int> values = {5, 1, 4, 2, 3};
    EXPECT_EQ(ints("TOP 3 ORDER DESCEND", values), (std::vector<int>{5, 4, 1}));
    EXPECT_EQ(ints("ORDER DESCEND TOP 3", values), (std::vector<int>{5, 4, 3}));
    EXPECT_EQ(ints("ORDER ASCEND FROM 1 TO -1 STEP 2 BOTTOM 1", values), (std::vector<int>{4}));
    EXPECT_EQ(ints("ORDER REVERSE", values), (std::vector<int>{3, 2, 4, 1, 5}));
    // An empty buffer is left alone by every clause, and no clause at all leaves the values.
    int count = 0;
    EXPECT_EQ(post("ORDER ASCEND TOP 3 FROM 1 TO 2 STEP -2", nullptr, ORMAK_INT, &count, 4), 0);
    EXPECT_EQ(count, 0);
    int value = 7;
    count = 1;
    EXPECT_EQ(_ormak_post_processing(nullptr, &value, ORMAK_INT, &count, 4), 0);
    EXPECT_EQ(count, 1);
}

// The orders themselves are checked on the typed sort; here, what ORDER hands it.
TEST(PostProcessing, OrderSortsEachLayoutByItsOwnRule) {
    // Unsigned values with the top bit set come last ascending.
    EXPECT_EQ(numbers<uint16_t>("ORDER ASCEND", {0x8000, 1, 0xFFFF, 0}, ORMAK_UNSIGNED_SMALLINT),
              (std::vector<uint16_t>{0, 1, 0x8000, 0xFFFF}));
    std::vector<double> reals = numbers<double>("ORDER DESCEND", {1.5, NAN, -2, 0}, ORMAK_DOUBLE);
    EXPECT_EQ(std::vector<double>(reals.begin(), reals.begin() + 3), (std::vector<double>{1.5, 0, -2}));
    EXPECT_TRUE(isnan(reals[3]));
    EXPECT_EQ(strings("ORDER ASCEND", {"b", std::nullopt, "\xe0", "a"}),
              (std::vector<Text>{std::nullopt, "a", "b", "\xe0"}));

    // Fixed texts sort as whole values; opaque values and variable-length ones only reverse.
    EXPECT_EQ(fixed("ORDER DESCEND", {"abc", "def"}, ORMAK_CHAR, 3), (std::vector<std::string>{"def", "abc"}));
    EXPECT_EQ(global_data_size, 3);
    const std::vector<std::string> opaque = {std::string("c\0\1", 3), "bbb", "aaa"};
    EXPECT_EQ(fixed("ORDER ASCEND", opaque, ORMAK_OPAQUE, 3), opaque);
    EXPECT_EQ(fixed("ORDER REVERSE", opaque, ORMAK_OPAQUE, 3),
              (std::vector<std::string>{"aaa", "bbb", std::string("c\0\1", 3)}));
    const Records values = {{3}, {1, 2}, {}, {0}};
    EXPECT_EQ(records<int>("ORDER ASCEND", values, ORMAK_VARINT), values);
    EXPECT_EQ(records<int>("ORDER REVERSE", values, ORMAK_VARINT), (Records{{0}, {}, {1, 2}, {3}}));
}

TEST(PostProcessing, TheInnerLevelCutsAndOrdersTheCharactersOfStrings) {
    const std::vector<Text> values = {"abcde", std::nullopt, "x", ""};
    EXPECT_EQ(strings("TOP , 2", values), (std::vector<Text>{"ab", std::nullopt, "x", ""}));
    EXPECT_EQ(strings("BOTTOM , 0", values), (std::vector<Text>{"", std::nullopt, "", ""}));
    EXPECT_EQ(strings("FROM , -2 TO , -1", values), (std::vector<Text>{"de", std::nullopt, "x", ""}));
    EXPECT_EQ(strings("FROM , 9 TO , 12", values), (std::vector<Text>{"", std::nullopt, "", ""}));
    EXPECT_EQ(strings("STEP , -2", {"abcd"}), (std::vector<Text>{"bd"}));
    EXPECT_EQ(strings("ORDER , REVERSE", values), (std::vector<Text>{"edcba", std::nullopt, "x", ""}));
    // The characters are sorted as unsigned bytes; both numbers at once, outer first.
    EXPECT_EQ(strings("ORDER DESCEND DESCEND", {"ab", "b\xe9" "a"}), (std::vector<Text>{"\xe9" "ba", "ba"}));
    EXPECT_EQ(strings("TOP 1 3", values), (std::vector<Text>{"abc"}));
}

TEST(PostProcessing, TheInnerLevelOfFixedValuesKeepsTheirWidth) {
    using Strings = std::vector<std::string>;
    const Strings values = {"abcd", "wxyz"};
    EXPECT_EQ(fixed("TOP , -2", values, ORMAK_CHAR, 4), (Strings{std::string("cd\0\0", 4), std::string("yz\0\0", 4)}));
    EXPECT_EQ(fixed("FROM , 3 TO , 1", values, ORMAK_CHAR, 4), (Strings{std::string(4, '\0'), std::string(4, '\0')}));
    EXPECT_EQ(fixed("ORDER , REVERSE", values, ORMAK_CHAR, 4), (Strings{"dcba", "zyxw"}));
    // Bytes sort signed, the terminator and padding among them.
    EXPECT_EQ(fixed("ORDER , ASCEND", {std::string("b\x80\0a", 4)}, ORMAK_OPAQUE, 4),
              (Strings{std::string("\x80\0ab", 4)}));
}

TEST(PostProcessing, TheInnerLevelOfVariableLengthValuesWorksOnTheirMembers) {
    const Records values = {{3, 1, 2}, {}, {5, 4}};
    EXPECT_EQ(records<int>("ORDER , DESCEND", values, ORMAK_VARINT), (Records{{3, 2, 1}, {}, {5, 4}}));
    EXPECT_EQ(records<int>("TOP , 0", values, ORMAK_VARINT), (Records{{}, {}, {}}));
    EXPECT_EQ(records<int>("STEP , -2", values, ORMAK_VARINT), (Records{{3, 2}, {}, {4}}));
    EXPECT_EQ(records<int>("ORDER ASCEND DESCEND TOP 2 1", values, ORMAK_VARINT), (Records{{3}, {}}));
    // Members order by the comparison of their type.
    std::vector<std::vector<double>> reals = records<double>("ORDER , DESCEND", {{-1.5, NAN, 2.0}}, ORMAK_VARDOUBLE);
    ASSERT_EQ(reals[0].size(), 3u);
    EXPECT_EQ(reals[0][0], 2.0);
    EXPECT_TRUE(isnan(reals[0][2]));
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
    error_message[0] = '\0';
}

} // namespace
