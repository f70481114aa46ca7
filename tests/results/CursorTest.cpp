// Cursors filled through the internal add functions: navigation, shapes and clones.
#include <string.h>

#include "OrmakPrivateStructures.h"
#include "OrmakTest.h"

class Cursor : public ::testing::Test {
protected:
    void SetUp() override {
        ormak_cursor_use_default();
        ormak_cursor_clear(nullptr);
    }
    void TearDown() override { SetUp(); }

    static void fill_ints(std::initializer_list<int> values) {
        _ormak_cursor_set_data_type(ORMAK_INT);
        for (int value : values) ASSERT_EQ(_ormak_cursor_add(&value, sizeof value), 0);
    }

    /* Fixed texts: the element holds the first byte, the subcursor every byte. */
    static void fill_texts(std::initializer_list<const char *> texts, int width) {
        _ormak_cursor_set_data_type(ORMAK_CHAR);
        for (const char *text : texts) {
            ASSERT_EQ(_ormak_cursor_add(text, 1), 0);
            ASSERT_EQ(_ormak_subcursor_add(text, width), 0);
        }
    }
};

TEST_F(Cursor, WalkingParksAtTheEnds) {
    fill_ints({10, 20, 30});
    EXPECT_EQ(ormak_cursor_get_position(nullptr), -1);
    EXPECT_EQ(ormak_cursor_get_int(nullptr), nullptr);
    EXPECT_EQ(ormak_cursor_get_size(nullptr), ORMAK_ERROR_BEFORE_FIRST);
    for (int expected : {10, 20, 30}) {
        EXPECT_EQ(ormak_cursor_next(nullptr), 0);
        EXPECT_EQ(*ormak_cursor_get_int(nullptr), expected);
    }
    EXPECT_EQ(ormak_cursor_next(nullptr), ORMAK_ERROR_AFTER_LAST);
    EXPECT_EQ(ormak_cursor_get_position(nullptr), 3);
    EXPECT_EQ(ormak_cursor_previous(nullptr), 0);
    EXPECT_EQ(*ormak_cursor_get_int(nullptr), 30);
    EXPECT_EQ(ormak_cursor_first(nullptr), 0);
    EXPECT_EQ(ormak_cursor_previous(nullptr), ORMAK_ERROR_BEFORE_FIRST);
    EXPECT_EQ(ormak_cursor_get_position(nullptr), -1);
}

TEST_F(Cursor, AbsoluteAndRelativeJumps) {
    fill_ints({0, 1, 2});
    EXPECT_EQ(ormak_cursor_absolute(nullptr, -3), 0);
    EXPECT_EQ(*ormak_cursor_get_int(nullptr), 0);
    EXPECT_EQ(ormak_cursor_absolute(nullptr, 3), ORMAK_ERROR_AFTER_LAST);
    EXPECT_EQ(ormak_cursor_get_position(nullptr), 3);
    EXPECT_EQ(ormak_cursor_absolute(nullptr, -4), ORMAK_ERROR_BEFORE_FIRST);
    EXPECT_EQ(ormak_cursor_get_position(nullptr), -1);
    // From before the first element, and from after the last.
    EXPECT_EQ(ormak_cursor_relative(nullptr, 1), 0);
    EXPECT_EQ(ormak_cursor_get_position(nullptr), 0);
    ormak_cursor_absolute(nullptr, 3);
    EXPECT_EQ(ormak_cursor_relative(nullptr, -1), 0);
    EXPECT_EQ(ormak_cursor_get_position(nullptr), 2);
    // From an element, an overrun jumps straight to the parked end.
    ormak_cursor_absolute(nullptr, 1);
    EXPECT_EQ(ormak_cursor_relative(nullptr, 5), ORMAK_ERROR_AFTER_LAST);
    EXPECT_EQ(ormak_cursor_get_position(nullptr), 3);
}

TEST_F(Cursor, EmptyCursorsAnswerEmpty) {
    EXPECT_EQ(ormak_cursor_get_data_type(nullptr), ORMAK_UNDEFINED);
    EXPECT_EQ(ormak_cursor_relative(nullptr, 0), 0);
    for (int status : {ormak_cursor_first(nullptr), ormak_cursor_next(nullptr), ormak_cursor_absolute(nullptr, 0),
                       ormak_cursor_relative(nullptr, 1), ormak_subcursor_next(nullptr)})
        EXPECT_EQ(status, ORMAK_ERROR_EMPTY);
    EXPECT_EQ(ormak_subcursor_get_count(nullptr), 0);
    EXPECT_EQ(ormak_cursor_clone(nullptr, nullptr), ORMAK_ERROR_NO_ADDRESS);
}

TEST_F(Cursor, FixedTextsKeepTheirBytesInSubcursors) {
    fill_texts({"abcd", "wxyz"}, 4);
    EXPECT_EQ(ormak_subcursor_next(nullptr), ORMAK_ERROR_BEFORE_FIRST);
    ASSERT_EQ(ormak_cursor_next(nullptr), 0);
    EXPECT_EQ(*ormak_cursor_get_char(nullptr), 'a');
    EXPECT_EQ(ormak_subcursor_get_count(nullptr), 4);
    EXPECT_EQ(ormak_subcursor_absolute(nullptr, 2), 0);
    int size = 0;
    EXPECT_EQ(*_ormak_subcursor_get_char_with_size(nullptr, &size), 'c');
    EXPECT_EQ(size, 1);
    // Each element keeps its own subcursor position.
    ASSERT_EQ(ormak_cursor_next(nullptr), 0);
    EXPECT_EQ(ormak_subcursor_get_position(nullptr), -1);
    EXPECT_EQ(ormak_subcursor_last(nullptr), 0);
    EXPECT_EQ(ormak_subcursor_next(nullptr), ORMAK_ERROR_AFTER_LAST);
    ASSERT_EQ(ormak_cursor_previous(nullptr), 0);
    EXPECT_EQ(ormak_subcursor_get_position(nullptr), 2);
}

TEST_F(Cursor, VariableValuesAndNulls) {
    _ormak_cursor_set_data_type(ORMAK_VARCHAR);
    ASSERT_EQ(_ormak_cursor_add("hello", 5), 0);
    ASSERT_EQ(_ormak_cursor_add(nullptr, 0), 0);
    ormak_cursor_next(nullptr);
    EXPECT_STREQ(ormak_cursor_get_char(nullptr), "hello");
    EXPECT_EQ(ormak_cursor_get_size(nullptr), 5);
    ormak_cursor_next(nullptr);
    EXPECT_EQ(ormak_cursor_get_char(nullptr), nullptr);
    EXPECT_EQ(ormak_cursor_get_size(nullptr), 0);
    // A numeric variable-length value: the first member above, all members below.
    ormak_cursor_clear(nullptr);
    _ormak_cursor_set_data_type(ORMAK_VARDOUBLE);
    const double members[] = {1.5, 2.5, 3.5};
    ASSERT_EQ(_ormak_cursor_add(&members[0], sizeof(double)), 0);
    for (double member : members) ASSERT_EQ(_ormak_subcursor_add(&member, sizeof member), 0);
    ormak_cursor_next(nullptr);
    EXPECT_EQ(*ormak_cursor_get_double(nullptr), 1.5);
    ormak_subcursor_absolute(nullptr, -1);
    EXPECT_EQ(*ormak_subcursor_get_double(nullptr), 3.5);
}

TEST_F(Cursor, CallerCursorsAndClones) {
    ORMAK_CURSOR mine;
    ormak_cursor_initialize(&mine);
    ASSERT_EQ(ormak_cursor_use(&mine), 0);
    fill_texts({"abc", "def"}, 3);
    ormak_cursor_absolute(nullptr, 1);
    ormak_subcursor_absolute(nullptr, 2);
    EXPECT_EQ(ormak_cursor_get_count(&default_cursor), 0);

    ORMAK_CURSOR *clone = (ORMAK_CURSOR *)_ormak_cursor_create();
    ASSERT_NE(clone, nullptr);
    ASSERT_EQ(ormak_cursor_clone(nullptr, clone), 0);
    ormak_cursor_clear(&mine);
    // The clone stands where the source stood, in its subcursor too, and outlives it.
    EXPECT_EQ(ormak_cursor_get_position(clone), 1);
    EXPECT_EQ(*ormak_subcursor_get_char(clone), 'f');

    // A clone onto itself leaves it empty; null selects the default cursor again.
    EXPECT_EQ(ormak_cursor_clone(clone, clone), 0);
    EXPECT_EQ(ormak_cursor_get_count(clone), 0);
    _ormak_cursor_destroy((uintptr_t)clone);
    ormak_cursor_use(nullptr);
    EXPECT_EQ(current_cursor, &default_cursor);
}

TEST_F(Cursor, ANullScriptClearsTheCursorInUse) {
    fill_ints({1});
    EXPECT_EQ(ormak_execute(nullptr), 0);
    EXPECT_EQ(ormak_cursor_get_count(nullptr), 0);
}
