// Tree shapes of statements and shared rules: every slot present, absent clauses empty.
#include "OrmakTest.h"
#include "ParseRule.h"

TEST(TreeShape, AbsentClausesKeepTheirSlots) {
    EXPECT_EQ(parse_rule("CREATE FILE a.h5", ORMAK_RULE(statement)),
              "(CREATE_FILE OPTION OPTION (OPTION (LIST a.h5)) OPTION OPTION OPTION)");
    EXPECT_EQ(parse_rule("create truncate parallel file a, b library bounds from v18 to latest", ORMAK_RULE(statement)),
              "(CREATE_FILE (OPTION truncate) (OPTION parallel) (OPTION (LIST a b)) (OPTION library) (OPTION v18) "
              "(OPTION latest))");
    EXPECT_EQ(parse_rule("RENAME FILE a AS b", ORMAK_RULE(statement)),
              "(RENAME_FILE OPTION (OPTION (LIST a)) (OPTION (LIST b)))");
    EXPECT_EQ(parse_rule("USE DIRECTORY d", ORMAK_RULE(statement)), "(USE_DIRECTORY d)");
    EXPECT_EQ(parse_rule("CREATE FILE", ORMAK_RULE(statement)), "ERROR");
}

TEST(TreeShape, ValueListDropsItsCommas) {
    EXPECT_EQ(parse_rule("a, \"b c\", d", ORMAK_RULE(value_list)), "(LIST a b c d)");
}
