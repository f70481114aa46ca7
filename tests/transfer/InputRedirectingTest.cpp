// The FROM clause decoded, and the cursor and memory sources of input redirecting.
#include <stdint.h>
#include <string.h>

#include <string>
#include <vector>

#include "FakeJava.h"
#include "OrmakPrivateStructures.h"
#include "OrmakTest.h"
#include "ParseRule.h"
#include "transfer/InputRedirecting.h"

namespace {

/* Decodes one FROM clause; returns the status and the clause. */
int decode(const std::string &text, ormak::InputClause &clause, const char *name = "d") {
    int status = 99;
    with_rule_tree(text, ORMAK_RULE(input_redirecting_statement), [&](pANTLR3_BASE_TREE tree, bool whole) {
        ASSERT_TRUE(tree && whole) << text;
        status = clause.decode(tree, name, ORMAK_DATASET, nullptr);
    });
    return status;
}

class Input : public ::testing::Test {
protected:
    void SetUp() override {
        ormak_cursor_use_default();
        ormak_cursor_clear(nullptr);
        ormak_variable_unregister_all();
    }
    void TearDown() override {
        ormak_cursor_clear(nullptr);
        ormak_variable_unregister_all();
    }

    template <typename T>
    static void fill_cursor(int data_type, std::initializer_list<T> values) {
        _ormak_cursor_set_data_type(data_type);
        for (T value : values) ASSERT_EQ(_ormak_cursor_add(&value, sizeof value), 0);
    }

    /* The cursor or memory as the source of `count` elements of `data_type`. */
    static void deliver(ormak::InputBuffer &buffer, int data_type, int count, int size, int input_type = 2,
                        int number = -1, int variable_size = -1, int language = 1) {
        ormak::InputClause clause;
        clause.input_type = input_type;
        clause.variable_number = number;
        clause.variable_size = variable_size;
        const hsize_t dimensions[] = {(hsize_t)count};
        ASSERT_EQ(buffer.fill(clause, data_type, count, size, -1, dimensions, 1, nullptr, language), 0);
    }
};

} // namespace

TEST_F(Input, MemoryNumbersAreCheckedBeforeAnythingIsRead) {
    ormak::InputClause clause;
    EXPECT_EQ(decode("FROM MEMORY 8", clause), ORMAK_ERROR_INVALID_VALUE);
    EXPECT_STREQ(ormak_error_get_message(),
                 "Error when inserting data into dataset \"d\" as memory number \"8\" is not between 0 and 7");
    EXPECT_EQ(decode("FROM MEMORY 3", clause), ORMAK_ERROR_NOT_REGISTERED);
    EXPECT_STREQ(ormak_error_get_message(), "Error when inserting data into dataset \"d\" as memory number \"3\" is not registered");
    int block[2];
    ASSERT_EQ(ormak_variable_register(block), 0);
    EXPECT_EQ(decode("FROM MEMORY 0 SIZE -4", clause), ORMAK_ERROR_INVALID_VALUE);
    EXPECT_STREQ(ormak_error_get_message(),
                 "Error when inserting data into dataset \"d\" as memory size is not equal to or greater than 0");
}

// Reals into integers are read back through INSERT ... FROM CURSOR; here, the rest.
TEST_F(Input, CursorNumbersConvertIntoFixedTargetsAndStrings) {
    fill_cursor<int>(ORMAK_INT, {300, 66});
    ormak::InputBuffer buffer;
    deliver(buffer, ORMAK_TINYINT, 3, 1);
    EXPECT_EQ(*(const int8_t *)buffer.data(), 44);
    // The cursor is read from its head and stays where it stood.
    EXPECT_EQ(ormak_cursor_get_position(nullptr), -1);
    deliver(buffer, ORMAK_VARCHAR, 3, 1);
    const char *const *texts = (const char *const *)buffer.data();
    EXPECT_STREQ(texts[1], "B");
    EXPECT_EQ(texts[2], nullptr);

    // An empty cursor is no failure: the target gets zeros.
    ormak_cursor_clear(nullptr);
    deliver(buffer, ORMAK_INT, 2, 4);
    EXPECT_EQ(((const int *)buffer.data())[1], 0);
}

TEST_F(Input, CursorTextsAndVariableLengthValuesConvertByTheirMembers) {
    // A string gives its first character's code; a fixed text gives one value per byte.
    _ormak_cursor_set_data_type(ORMAK_VARCHAR);
    ASSERT_EQ(_ormak_cursor_add("12", 2), 0);
    ormak::InputBuffer buffer;
    deliver(buffer, ORMAK_INT, 1, 4);
    EXPECT_EQ(*(const int *)buffer.data(), 49);

    ormak_cursor_clear(nullptr);
    _ormak_cursor_set_data_type(ORMAK_CHAR);
    ASSERT_EQ(_ormak_cursor_add("a", 1), 0);
    ASSERT_EQ(_ormak_subcursor_add("abc", 3), 0);
    deliver(buffer, ORMAK_TINYINT, 5, 1);
    EXPECT_EQ(memcmp(buffer.data(), "abc\0\0", 5), 0);
    // A fixed text of several bytes takes the element whole.
    deliver(buffer, ORMAK_CHAR, 2, 4);
    EXPECT_EQ(memcmp(buffer.data(), "abc\0\0\0\0\0", 8), 0);

    ormak_cursor_clear(nullptr);
    _ormak_cursor_set_data_type(ORMAK_VARINT);
    const int first[] = {1, 2, 3}, second[] = {4};
    ASSERT_EQ(_ormak_cursor_add(first, 4), 0);
    for (int member : first) ASSERT_EQ(_ormak_subcursor_add(&member, 4), 0);
    ASSERT_EQ(_ormak_cursor_add(second, 4), 0);
    ASSERT_EQ(_ormak_subcursor_add(second, 4), 0);
    deliver(buffer, ORMAK_VARBIGINT, 3, 8);
    const ORMAK_VARIABLE_LENGTH *records = (const ORMAK_VARIABLE_LENGTH *)buffer.data();
    ASSERT_EQ(records[0].count, 3u);
    EXPECT_EQ(((const int64_t *)records[0].address)[2], 3);
    ASSERT_EQ(records[1].count, 1u);
    EXPECT_EQ(records[2].count, 0u);
    EXPECT_EQ(records[2].address, nullptr);
}

TEST_F(Input, MemoryIsUsedInPlaceWhenItIsLargeEnough) {
    int block[4] = {1, 2, 3, 4};
    ASSERT_EQ(ormak_variable_register(block), 0);
    ormak::InputBuffer buffer;
    deliver(buffer, ORMAK_INT, 4, 4, 16, 0, 16);
    EXPECT_EQ(buffer.data(), (const void *)block);

    // A size that ends inside an element keeps the bytes it covers; the rest is zero.
    deliver(buffer, ORMAK_INT, 4, 4, 16, 0, 6);
    ASSERT_NE(buffer.data(), (const void *)block);
    const int *ints = (const int *)buffer.data();
    EXPECT_EQ(ints[1], 2);
    EXPECT_EQ(ints[2], 0);
    // Reading spends nothing of the slot.
    EXPECT_EQ(ormak_variable_get_data_type(block), -1);
    EXPECT_EQ(variable_list[0].used, -1);
}

TEST_F(Input, WideCellsAreNarrowedAndTextPointersCopied) {
    int32_t cells[3] = {-2, 70000, 5};
    ASSERT_EQ(ormak_variable_register(cells), 0);
    ormak::InputBuffer buffer;
    deliver(buffer, ORMAK_SMALLINT, 3, 2, 16, 0, -1, 64);
    const int16_t *shorts = (const int16_t *)buffer.data();
    EXPECT_EQ(shorts[0], -2);
    EXPECT_EQ(shorts[1], (int16_t)70000);

    double doubles[2] = {1.5, -0.25};
    ASSERT_EQ(ormak_variable_register(doubles), 1);
    deliver(buffer, ORMAK_FLOAT, 2, 4, 16, 1, -1, 64);
    EXPECT_EQ(((const float *)buffer.data())[1], -0.25f);

    const char *texts[3] = {"x", "y", "z"};
    ASSERT_EQ(ormak_variable_register(texts), 2);
    deliver(buffer, ORMAK_VARCHAR, 3, 1, 16, 2, 2);
    const char *const *copied = (const char *const *)buffer.data();
    EXPECT_EQ(copied[1], texts[1]);
    EXPECT_EQ(copied[2], nullptr);
}

TEST_F(Input, JavaDeliversIntoABufferOfTheLibrary) {
    fake_java::Environment java;
    int scratch = 0;
    ASSERT_EQ(_ormak_variable_register(3, (uintptr_t)&scratch, -1), 0);
    // The Java side delivers two of the four ints asked for: the rest is zero.
    fake_java::fake.method = [](int type, int number, int size) {
        EXPECT_EQ(type, 0);
        EXPECT_EQ(size, 16);
        _ormak_variable_set_int(number, 7, 0);
        _ormak_variable_set_int(number, 8, 4);
        _ormak_variable_set_int(number, 9, 8);
        return 8;
    };
    ormak::InputBuffer buffer;
    deliver(buffer, ORMAK_INT, 4, 4, 16, 3, -1, 4);
    const int *ints = (const int *)buffer.data();
    EXPECT_EQ(ints[1], 8);
    EXPECT_EQ(ints[2], 0);
    // The slot's address is scratch: it points at the library's buffer now.
    EXPECT_EQ(variable_list[3].address, (uintptr_t)buffer.data());

    // Strings made by the Java side belong to the statement and go with its buffer.
    fake_java::fake.method = [](int, int number, int size) {
        EXPECT_EQ(size, 3);
        _ormak_variable_set_string(number, (char *)"alpha", 0, 5);
        _ormak_variable_set_string(number, (char *)"be", 1, 2);
        return 2;
    };
    deliver(buffer, ORMAK_VARCHAR, 3, 1, 16, 3, -1, 4);
    const char *const *texts = (const char *const *)buffer.data();
    EXPECT_STREQ(texts[0], "alpha");
    EXPECT_STREQ(texts[1], "be");
    EXPECT_EQ(texts[2], nullptr);

    // Variable-length records are not asked of the Java side without a size.
    fake_java::fake.method = nullptr;
    deliver(buffer, ORMAK_VARINT, 2, 4, 16, 3, -1, 4);
    EXPECT_EQ(((const ORMAK_VARIABLE_LENGTH *)buffer.data())[1].count, 0u);
    EXPECT_EQ(fake_java::fake.static_calls, 2);
}
