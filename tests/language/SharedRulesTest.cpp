// Shapes of the shared rules that statements build on; separators are kept or dropped
// rule by rule, and walkers rely on exactly these shapes.
#include "OrmakTest.h"
#include "ParseRule.h"

TEST(SharedRules, ListsDropOrKeepTheirCommas) {
    EXPECT_EQ(parse_rule("10,,30", ORMAK_RULE(number_optional_list)), "(LIST 10 , , 30)");
    EXPECT_EQ(parse_rule("4, 2 TO 8, 1 TO UNLIMITED, UNLIMITED", ORMAK_RULE(dimension_list)),
              "(LIST 4 2 TO 8 1 TO UNLIMITED UNLIMITED)");
    EXPECT_EQ(parse_rule("a.h5 /x, b.h5 y", ORMAK_RULE(link_value_list)), "(LIST a.h5 /x b.h5 y)");
    EXPECT_EQ(parse_rule("a.h5 /x, y", ORMAK_RULE(link_value_list)), "ERROR");
}

TEST(SharedRules, ObjectsMayNameTheirFile) {
    EXPECT_EQ(parse_rule("g, other.h5 /h", ORMAK_RULE(file_object_list)),
              "(LIST (LIST OPTION g) (LIST (OPTION other.h5) /h))");
    EXPECT_EQ(parse_rule("d, f.h5 e(1, 2)", ORMAK_RULE(file_object_selection_list)),
              "(LIST (LIST OPTION d OPTION) (LIST (OPTION f.h5) e (OPTION (LIST 1 2))))");
}

TEST(SharedRules, SelectionsAreHyperslabsOrPoints) {
    // Four hyperslabs are joined by three operators.
    EXPECT_EQ(parse_rule("d(0:::2) OR (5:::2) and (::3:2) NOTB (1:)", ORMAK_RULE(object_selection)),
              "(LIST OPTION d (OPTION (LIST 0 : : : 2) (LIST 5 : : : 2) (LIST : : 3 : 2) (LIST 1 :)) "
              "(OPTION OR and NOTB) OPTION)");
    // A first dimension left empty starts with its comma.
    EXPECT_EQ(parse_rule("d(,0:1:2)", ORMAK_RULE(object_selection)),
              "(LIST OPTION d (OPTION (LIST , 0 : 1 : 2)) OPTION OPTION)");
    // A parenthesised list without a colon is a point.
    EXPECT_EQ(parse_rule("d(0,1), (2,3)", ORMAK_RULE(object_selection)),
              "(LIST OPTION d OPTION OPTION (OPTION (LIST 0 1) (LIST 2 3)))");
    EXPECT_EQ(parse_rule("d(1:2:3:4:5)", ORMAK_RULE(object_selection)), "ERROR");
}

TEST(SharedRules, ValuesNestAndKeepOmittedPlaces) {
    EXPECT_EQ(parse_rule("(1, 2.5, 0x1F, \"text\")", ORMAK_RULE(multiple_value_list)), "(LIST 1 , 2.5 , 0x1F , text)");
    EXPECT_EQ(parse_rule("((1, 2), (3))", ORMAK_RULE(multiple_value_list)), "(LIST (LIST 1 , 2) , (LIST 3))");
    EXPECT_EQ(parse_rule("()", ORMAK_RULE(multiple_value_list)), "LIST");
}

TEST(SharedRules, PostProcessingIsFlat) {
    // A second word alone comes behind a comma.
    EXPECT_EQ(parse_rule("ORDER , REVERSE", ORMAK_RULE(post_processing_statement)), "(LIST ORDER , REVERSE)");
    EXPECT_EQ(parse_rule("TOP", ORMAK_RULE(post_processing_statement)), "ERROR");
}
