// Value lists of a statement turned into element buffers: the walk through the dimensions and
// the conversion of each literal.
#include <stdint.h>
#include <string.h>

#include <string>
#include <vector>

#include "OrmakTest.h"
#include "ParseRule.h"
#include "transfer/InputRedirecting.h"
#include "transfer/LiteralValues.h"

namespace {

using Dimensions = std::vector<hsize_t>;

/* The buffer of a value list in the layout of `data_type`, as the literal source delivers it. */
template <typename Use>
void with_literals(const std::string &list, int data_type, int size, const Dimensions &dimensions, Use use) {
    with_rule_tree("(" + list + ")", ORMAK_RULE(multiple_value_list), [&](pANTLR3_BASE_TREE tree, bool whole) {
        ASSERT_TRUE(tree && whole) << list;
        int count = 1;
        for (hsize_t d : dimensions) count *= (int)d;
        ormak::InputClause clause;
        clause.input_type = 1;
        ormak::InputBuffer buffer;
        ASSERT_EQ(buffer.fill(clause, data_type, count, size, -1, dimensions.data(), (int)dimensions.size(), tree, 1),
                  0);
        use(buffer.data(), count);
    });
}

std::vector<int> ints(const std::string &list, const Dimensions &dimensions) {
    std::vector<int> values;
    with_literals(list, ORMAK_INT, 4, dimensions, [&](const void *data, int count) {
        values.assign((const int *)data, (const int *)data + count);
    });
    return values;
}

/* Variable-length elements as text: "{1,2} {} ..." with {} for an absent element. */
std::string variable(const std::string &list, const Dimensions &dimensions) {
    std::string text;
    with_literals(list, ORMAK_VARINT, 4, dimensions, [&](const void *data, int count) {
        const ORMAK_VARIABLE_LENGTH *records = (const ORMAK_VARIABLE_LENGTH *)data;
        for (int i = 0; i < count; i++) {
            if (i) text += " ";
            text += "{";
            EXPECT_EQ(records[i].count == 0, records[i].address == nullptr);
            for (uint64_t j = 0; j < records[i].count; j++)
                text += (j ? "," : "") + std::to_string(((const int *)records[i].address)[j]);
            text += "}";
        }
    });
    return text;
}

} // namespace

TEST(LiteralValues, NestedListsCloseRowsAndCommasLeavePositionsOut) {
    EXPECT_EQ(ints("(1, 2), (3, 4, 5)", {2, 3}), (std::vector<int>{1, 2, 0, 3, 4, 5}));
    EXPECT_EQ(ints("1, (2, 3)", {2, 3}), (std::vector<int>{1, 0, 0, 2, 3, 0}));
    // A comma inside a row clears the rest of it and one row more; then the level is full.
    EXPECT_EQ(ints("1, , 3", {2, 3}), (std::vector<int>{1, 0, 0, 0, 0, 0}));
    EXPECT_EQ(ints(", 4", {2, 2}), (std::vector<int>{0, 0, 4, 0}));
    // At the last dimension a list is no element.
    EXPECT_EQ(ints("(7), 8", {3}), (std::vector<int>{0, 8, 0}));
    EXPECT_EQ(ints("((1, 2), (3, 4)), ((5))", {2, 2, 2}), (std::vector<int>{1, 2, 3, 4, 5, 0, 0, 0}));
}

TEST(LiteralValues, LiteralsKeepTheLowBytesOfTheirType) {
    with_literals("300, -1, 0x1FF, \"12abc\", 2.9", ORMAK_TINYINT, 1, {5}, [](const void *data, int) {
        const int8_t *values = (const int8_t *)data;
        EXPECT_EQ(values[0], 44);
        EXPECT_EQ(values[2], -1);
        EXPECT_EQ(values[3], 12);
        EXPECT_EQ(values[4], 2);
    });
    // Decimal literals of the language stop at the largest signed value.
    with_literals("18446744073709551615, -2", ORMAK_UNSIGNED_BIGINT, 8, {2}, [](const void *data, int) {
        EXPECT_EQ(((const uint64_t *)data)[0], 9223372036854775807ull);
        EXPECT_EQ(((const uint64_t *)data)[1], 18446744073709551614ull);
    });
    with_literals("-2e3, 0x10", ORMAK_DOUBLE, 8, {2}, [](const void *data, int) {
        EXPECT_EQ(((const double *)data)[0], -2000.0);
        EXPECT_EQ(((const double *)data)[1], 16.0);
    });
}

TEST(LiteralValues, FixedTextsAreCutOrPaddedAndOpaqueElementsAreRowsOfBytes) {
    with_literals("\"abcdef\", \"ab\", 12", ORMAK_CHAR, 4, {3}, [](const void *data, int) {
        EXPECT_EQ(memcmp(data, "abcdab\0\0" "12\0\0", 12), 0);
    });
    // One opaque value of 4 bytes takes the list as its bytes.
    with_literals("1, 2, 0x103", ORMAK_OPAQUE, 4, {1}, [](const void *data, int) {
        EXPECT_EQ(memcmp(data, "\1\2\3\0", 4), 0);
    });
    with_literals("(1, 2), (3)", ORMAK_OPAQUE, 3, {2}, [](const void *data, int) {
        EXPECT_EQ(memcmp(data, "\1\2\0\3\0\0", 6), 0);
    });
}

TEST(LiteralValues, VariableTextsPointIntoTheStatement) {
    with_literals("\"a\", , \"ccc\"", ORMAK_VARCHAR, 1, {4}, [](const void *data, int) {
        const char *const *texts = (const char *const *)data;
        EXPECT_STREQ(texts[0], "a");
        EXPECT_EQ(texts[1], nullptr);
        EXPECT_STREQ(texts[2], "ccc");
        EXPECT_EQ(texts[3], nullptr);
    });
}

TEST(LiteralValues, VariableLengthElementsTakeListsAsTheirMembers) {
    EXPECT_EQ(variable("(1, , 3), (), 4", {3}), "{1,0,3} {} {4}");
    EXPECT_EQ(variable("((1, 2), 3), (, 4)", {2, 2}), "{1,2} {3} {} {4}");
    // A dataset of one element takes the whole flat list as that element.
    EXPECT_EQ(variable("1, 2, 3", {1}), "{1,2,3}");
    EXPECT_EQ(variable("(1, 2, 3)", {1}), "{0}");
}
