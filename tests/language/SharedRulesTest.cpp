// Shapes of the shared rules that statements build on; separators are kept or dropped
// rule by rule, and walkers rely on exactly these shapes.
#include "OrmakTest.h"
#include "ParseRule.h"

TEST(SharedRules, ListsDropOrKeepTheirCommas) {
    EXPECT_EQ(parse_rule("1, -2, +3", ORMAK_RULE(number_list)), "(LIST 1 -2 +3)");
    EXPECT_EQ(parse_rule("10,,30", ORMAK_RULE(number_optional_list)), "(LIST 10 , , 30)");
    EXPECT_EQ(parse_rule(",5", ORMAK_RULE(number_optional_list)), "(LIST , 5)");
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
    EXPECT_EQ(parse_rule("d", ORMAK_RULE(object_selection)), "(LIST OPTION d OPTION OPTION OPTION)");
    EXPECT_EQ(parse_rule("f.h5 d(0:1:4, 2:::)", ORMAK_RULE(object_selection)),
              "(LIST (OPTION f.h5) d (OPTION (LIST 0 : 1 : 4 , 2 : : :)) OPTION OPTION)");
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
    EXPECT_EQ(parse_rule("d(5)", ORMAK_RULE(object_selection)), "(LIST OPTION d OPTION OPTION (OPTION (LIST 5)))");
    EXPECT_EQ(parse_rule("d(1:2:3:4:5)", ORMAK_RULE(object_selection)), "ERROR");
    EXPECT_EQ(parse_rule("d(1 2)", ORMAK_RULE(object_selection)), "ERROR");
}

TEST(SharedRules, ValuesNestAndKeepOmittedPlaces) {
    EXPECT_EQ(parse_rule("(1, 2.5, 0x1F, \"text\")", ORMAK_RULE(multiple_value_list)), "(LIST 1 , 2.5 , 0x1F , text)");
    EXPECT_EQ(parse_rule("(1,,3)", ORMAK_RULE(multiple_value_list)), "(LIST 1 , , 3)");
    EXPECT_EQ(parse_rule("((1, 2), (3))", ORMAK_RULE(multiple_value_list)), "(LIST (LIST 1 , 2) , (LIST 3))");
    EXPECT_EQ(parse_rule("()", ORMAK_RULE(multiple_value_list)), "LIST");
    EXPECT_EQ(parse_rule("-7", ORMAK_RULE(value)), "-7");
}

TEST(SharedRules, PostProcessingIsFlat) {
    EXPECT_EQ(parse_rule("ORDER DESCEND", ORMAK_RULE(post_processing_statement)), "(LIST ORDER DESCEND)");
    // A second word alone comes behind a comma.
    EXPECT_EQ(parse_rule("ORDER , REVERSE", ORMAK_RULE(post_processing_statement)), "(LIST ORDER , REVERSE)");
    EXPECT_EQ(parse_rule("ORDER ASCEND REVERSE TOP 5 BOTTOM , 2 FROM 1 2 TO 3 4 STEP 2",
                         ORMAK_RULE(post_processing_statement)),
              "(LIST ORDER ASCEND REVERSE TOP 5 BOTTOM , 2 FROM 1 2 TO 3 4 STEP 2)");
    EXPECT_EQ(parse_rule("TOP", ORMAK_RULE(post_processing_statement)), "ERROR");
}

TEST(SharedRules, RedirectionsHaveFixedSlots) {
    EXPECT_EQ(parse_rule("INTO CURSOR", ORMAK_RULE(output_redirecting_statement)),
              "(LIST (OPTION CURSOR) OPTION OPTION OPTION OPTION OPTION OPTION OPTION OPTION)");
    EXPECT_EQ(parse_rule("INTO TRUNCATE TEXT FILE out.txt DOS SEPARATOR \";\" SEPARATOR \"|\" SPLIT 4",
                         ORMAK_RULE(output_redirecting_statement)),
              "(LIST OPTION (OPTION TRUNCATE) (OPTION out.txt) (OPTION DOS) (OPTION ;) (OPTION |) (OPTION 4) "
              "OPTION OPTION)");
    EXPECT_EQ(parse_rule("INTO BINARY FILE out.bin", ORMAK_RULE(output_redirecting_statement)),
              "(LIST OPTION OPTION OPTION OPTION OPTION OPTION OPTION (OPTION out.bin) OPTION)");
    EXPECT_EQ(parse_rule("INTO MEMORY 0 SIZE 0x18", ORMAK_RULE(output_redirecting_statement)),
              "(LIST OPTION OPTION OPTION OPTION OPTION OPTION OPTION OPTION (OPTION 0 0x18))");
    EXPECT_EQ(parse_rule("FROM TEXT FILE in.txt UNIX SEPARATOR \",\"", ORMAK_RULE(input_redirecting_statement)),
              "(LIST OPTION (OPTION in.txt) (OPTION UNIX) (OPTION ,) OPTION OPTION OPTION)");
    EXPECT_EQ(parse_rule("FROM MEMORY 3", ORMAK_RULE(input_redirecting_statement)),
              "(LIST OPTION OPTION OPTION OPTION OPTION OPTION (OPTION 3))");
    EXPECT_EQ(parse_rule("FROM CURSOR", ORMAK_RULE(input_redirecting_statement)),
              "(LIST (OPTION CURSOR) OPTION OPTION OPTION OPTION OPTION OPTION)");
}

TEST(SharedRules, UseAndCloseStatements) {
    EXPECT_EQ(parse_rule("USE FILE a.h5", ORMAK_RULE(statement)),
              "(USE_FILE OPTION OPTION (OPTION (LIST a.h5)) OPTION OPTION OPTION OPTION OPTION OPTION OPTION)");
    EXPECT_EQ(parse_rule("USE READONLY PARALLEL ATOMIC FILE a.h5, b.h5 LIBRARY BOUNDS FROM EARLIEST "
                         "CACHE SLOTS DEFAULT SIZE 0x100 PREEMPTION 0.5",
                         ORMAK_RULE(statement)),
              "(USE_FILE (OPTION READONLY) (OPTION PARALLEL ATOMIC) (OPTION (LIST a.h5 b.h5)) (OPTION LIBRARY) "
              "(OPTION EARLIEST) OPTION (OPTION CACHE) (OPTION DEFAULT) (OPTION 0x100) (OPTION 0.5))");
    EXPECT_EQ(parse_rule("USE GROUP /a/b", ORMAK_RULE(statement)), "(USE_GROUP /a/b)");
    EXPECT_EQ(parse_rule("CLOSE FILE", ORMAK_RULE(statement)), "CLOSE_FILE");
    EXPECT_EQ(parse_rule("CLOSE FILE a, b", ORMAK_RULE(statement)), "(CLOSE_FILE (LIST a b))");
    EXPECT_EQ(parse_rule("CLOSE ALL FILE", ORMAK_RULE(statement)), "CLOSE_ALL_FILE");
    EXPECT_EQ(parse_rule("CLOSE GROUP", ORMAK_RULE(statement)), "CLOSE_GROUP");
}
