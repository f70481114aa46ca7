// Cursors filled through the internal add functions: navigation, shapes, clones and the dump.
#include <string.h>

#include "OrmakPrivateStructures.h"
#include "OrmakTest.h"

class Cursor : public ::testing::Test {
protected:
    void SetUp() override {
        ormak_cursor_use_default();
        ormak_cursor_clear(nullptr);
    }
    void TearDown() override {
        ormak_cursor_use_default();
        ormak_cursor_clear(nullptr);
    }

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

TEST_F(Cursor, WalkingForwardAndBackParksAtTheEnds) {
    fill_ints({10, 20, 30});
    EXPECT_EQ(ormak_cursor_get_count(nullptr), 3);
    EXPECT_EQ(ormak_cursor_get_position(nullptr), -1);
    EXPECT_EQ(ormak_cursor_get_int(nullptr), nullptr);
    EXPECT_EQ(ormak_cursor_get_size(nullptr), ORMAK_ERROR_BEFORE_FIRST);
    for (int expected : {10, 20, 30}) {
        EXPECT_EQ(ormak_cursor_next(nullptr), 0);
        EXPECT_EQ(*ormak_cursor_get_int(nullptr), expected);
    }
    EXPECT_EQ(ormak_cursor_get_position(nullptr), 2);
    EXPECT_EQ(ormak_cursor_next(nullptr), ORMAK_ERROR_AFTER_LAST);
    EXPECT_EQ(ormak_cursor_get_position(nullptr), 3);
    EXPECT_EQ(ormak_cursor_get_size(nullptr), ORMAK_ERROR_AFTER_LAST);
    EXPECT_EQ(ormak_cursor_next(nullptr), ORMAK_ERROR_AFTER_LAST);
    EXPECT_EQ(ormak_cursor_previous(nullptr), 0);
    EXPECT_EQ(*ormak_cursor_get_int(nullptr), 30);
    EXPECT_EQ(ormak_cursor_get_size(nullptr), 4);
    EXPECT_EQ(ormak_cursor_first(nullptr), 0);
    EXPECT_EQ(ormak_cursor_previous(nullptr), ORMAK_ERROR_BEFORE_FIRST);
    EXPECT_EQ(ormak_cursor_get_position(nullptr), -1);
}

TEST_F(Cursor, AbsoluteAndRelativeJumps) {
    fill_ints({0, 1, 2});
    const std::pair<int, int> absolute[] = {{2, 2}, {-1, 2}, {-3, 0}, {0, 0}, {1, 1}};
    for (auto [target, position] : absolute) {
        EXPECT_EQ(ormak_cursor_absolute(nullptr, target), 0) << target;
        EXPECT_EQ(*ormak_cursor_get_int(nullptr), position);
    }
    EXPECT_EQ(ormak_cursor_absolute(nullptr, 3), ORMAK_ERROR_AFTER_LAST);
    EXPECT_EQ(ormak_cursor_get_position(nullptr), 3);
    EXPECT_EQ(ormak_cursor_absolute(nullptr, -4), ORMAK_ERROR_BEFORE_FIRST);
    EXPECT_EQ(ormak_cursor_get_position(nullptr), -1);

    // From before the first element.
    EXPECT_EQ(ormak_cursor_relative(nullptr, 1), 0);
    EXPECT_EQ(ormak_cursor_get_position(nullptr), 0);
    ormak_cursor_absolute(nullptr, -4);
    EXPECT_EQ(ormak_cursor_relative(nullptr, 4), ORMAK_ERROR_AFTER_LAST);
    EXPECT_EQ(ormak_cursor_get_position(nullptr), 3);
    // From after the last element.
    EXPECT_EQ(ormak_cursor_relative(nullptr, -1), 0);
    EXPECT_EQ(ormak_cursor_get_position(nullptr), 2);
    ormak_cursor_absolute(nullptr, 3);
    EXPECT_EQ(ormak_cursor_relative(nullptr, -4), ORMAK_ERROR_BEFORE_FIRST);
    // From an element, an overrun jumps straight to the parked end.
    ormak_cursor_absolute(nullptr, 1);
    EXPECT_EQ(ormak_cursor_relative(nullptr, -1), 0);
    EXPECT_EQ(*ormak_cursor_get_int(nullptr), 0);
    EXPECT_EQ(ormak_cursor_relative(nullptr, 5), ORMAK_ERROR_AFTER_LAST);
    EXPECT_EQ(ormak_cursor_get_position(nullptr), 3);
}

TEST_F(Cursor, EmptyCursorsAnswerEmpty) {
    EXPECT_EQ(ormak_cursor_get_data_type(nullptr), ORMAK_UNDEFINED);
    EXPECT_EQ(ormak_cursor_relative(nullptr, 0), 0);
    EXPECT_EQ(ormak_subcursor_relative(nullptr, 0), 0);
    for (int status : {ormak_cursor_first(nullptr), ormak_cursor_last(nullptr), ormak_cursor_next(nullptr),
                       ormak_cursor_previous(nullptr), ormak_cursor_absolute(nullptr, 0),
                       ormak_cursor_relative(nullptr, 1), ormak_cursor_get_size(nullptr),
                       ormak_subcursor_next(nullptr), ormak_subcursor_get_size(nullptr)})
        EXPECT_EQ(status, ORMAK_ERROR_EMPTY);
    EXPECT_EQ(ormak_subcursor_get_count(nullptr), 0);
    EXPECT_EQ(ormak_subcursor_get_position(nullptr), -1);
    EXPECT_EQ(ormak_cursor_clone(nullptr, nullptr), ORMAK_ERROR_NO_ADDRESS);
}

TEST_F(Cursor, FixedTextsKeepTheirBytesInSubcursors) {
    fill_texts({"abcd", "wxyz"}, 4);
    EXPECT_EQ(ormak_subcursor_next(nullptr), ORMAK_ERROR_BEFORE_FIRST);
    ASSERT_EQ(ormak_cursor_next(nullptr), 0);
    EXPECT_EQ(ormak_cursor_get_size(nullptr), 1);
    EXPECT_EQ(*ormak_cursor_get_char(nullptr), 'a');
    EXPECT_EQ(ormak_subcursor_get_count(nullptr), 4);
    EXPECT_EQ(ormak_subcursor_get_position(nullptr), -1);
    EXPECT_EQ(ormak_subcursor_get_char(nullptr), nullptr);
    EXPECT_EQ(ormak_subcursor_absolute(nullptr, 2), 0);
    int size = 0;
    EXPECT_EQ(*_ormak_subcursor_get_char_with_size(nullptr, &size), 'c');
    EXPECT_EQ(size, 1);
    // Each element keeps its own subcursor position.
    ASSERT_EQ(ormak_cursor_next(nullptr), 0);
    EXPECT_EQ(ormak_subcursor_get_position(nullptr), -1);
    EXPECT_EQ(ormak_subcursor_last(nullptr), 0);
    EXPECT_EQ(*ormak_subcursor_get_char(nullptr), 'z');
    EXPECT_EQ(ormak_subcursor_next(nullptr), ORMAK_ERROR_AFTER_LAST);
    ASSERT_EQ(ormak_cursor_previous(nullptr), 0);
    EXPECT_EQ(ormak_subcursor_get_position(nullptr), 2);
    ASSERT_EQ(ormak_cursor_next(nullptr), 0);
    ASSERT_EQ(ormak_cursor_next(nullptr), ORMAK_ERROR_AFTER_LAST);
    EXPECT_EQ(ormak_subcursor_first(nullptr), ORMAK_ERROR_AFTER_LAST);
    EXPECT_EQ(_ormak_cursor_get_char_with_size(nullptr, &size), nullptr);
    EXPECT_EQ(size, 0);
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
    EXPECT_EQ(ormak_subcursor_get_count(nullptr), 3);
    ormak_subcursor_absolute(nullptr, -1);
    EXPECT_EQ(*ormak_subcursor_get_double(nullptr), 3.5);
    EXPECT_EQ(ormak_subcursor_get_size(nullptr), 8);
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
    EXPECT_EQ(ormak_cursor_get_count(&mine), 0);
    EXPECT_EQ(ormak_cursor_get_data_type(&mine), ORMAK_UNDEFINED);
    // The clone stands where the source stood, in its subcursor too, and outlives it.
    EXPECT_EQ(ormak_cursor_get_data_type(clone), ORMAK_CHAR);
    EXPECT_EQ(ormak_cursor_get_position(clone), 1);
    EXPECT_EQ(*ormak_cursor_get_char(clone), 'd');
    EXPECT_EQ(ormak_subcursor_get_position(clone), 2);
    EXPECT_EQ(*ormak_subcursor_get_char(clone), 'f');
    ormak_cursor_first(clone);
    EXPECT_EQ(ormak_subcursor_get_position(clone), -1);
    EXPECT_EQ(ormak_subcursor_get_count(clone), 3);

    // A clone onto itself leaves it empty; null selects the default cursor again.
    EXPECT_EQ(ormak_cursor_clone(clone, clone), 0);
    EXPECT_EQ(ormak_cursor_get_count(clone), 0);
    _ormak_cursor_destroy((uintptr_t)clone);
    ormak_cursor_use(nullptr);
    EXPECT_EQ(current_cursor, &default_cursor);
}

TEST_F(Cursor, TheDumpShowsEveryShape) {
    fill_ints({-1, 7});
    testing::internal::CaptureStdout();
    _ormak_show_debug_information();
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "CURSOR DATA TYPE <16>\n   data <-1>\n   data <7>\nCURSOR COUNT <2>\n\n");
    EXPECT_EQ(ormak_cursor_get_position(nullptr), -1);

    ormak_cursor_clear(nullptr);
    _ormak_cursor_set_data_type(ORMAK_OPAQUE);
    const unsigned char bytes[] = {1, 2, 255};
    _ormak_cursor_add(bytes, 1);
    _ormak_subcursor_add(bytes, 3);
    testing::internal::CaptureStdout();
    _ormak_show_debug_information();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "CURSOR DATA TYPE <4194304>\n   data <12255>\nCURSOR COUNT <1>\n\n");

    ormak_cursor_clear(nullptr);
    _ormak_cursor_set_data_type(ORMAK_VARINT);
    const int members[] = {4, 5, 6};
    _ormak_cursor_add(&members[0], 4);
    for (int member : members) _ormak_subcursor_add(&member, 4);
    _ormak_cursor_add(nullptr, 0);
    testing::internal::CaptureStdout();
    _ormak_show_debug_information();
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "CURSOR DATA TYPE <32768>\n   data <4 5 6>\n   data <>\nCURSOR COUNT <2>\n\n");
    ormak_cursor_first(nullptr);
    EXPECT_EQ(ormak_subcursor_get_position(nullptr), -1);
}

TEST_F(Cursor, ANullScriptClearsTheCursorInUse) {
    fill_ints({1});
    EXPECT_EQ(ormak_execute(nullptr), 0);
    EXPECT_EQ(ormak_cursor_get_count(nullptr), 0);
    EXPECT_EQ(ormak_cursor_get_data_type(nullptr), ORMAK_UNDEFINED);
}
