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

TEST(TreeShape, GroupAndLinkStatements) {
    EXPECT_EQ(parse_rule("CREATE GROUP g", ORMAK_RULE(statement)),
              "(CREATE_GROUP OPTION (OPTION (LIST (LIST OPTION g))) OPTION OPTION OPTION OPTION)");
    EXPECT_EQ(parse_rule("CREATE TRUNCATE GROUP f.h5 g, h ORDER TRACKED STORAGE COMPACT 8 DENSE 6 "
                         "ATTRIBUTE ORDER INDEXED ATTRIBUTE STORAGE COMPACT 4 DENSE 2",
                         ORMAK_RULE(statement)),
              "(CREATE_GROUP (OPTION TRUNCATE) (OPTION (LIST (LIST (OPTION f.h5) g) (LIST OPTION h))) "
              "(OPTION TRACKED) (OPTION 8 6) (OPTION INDEXED) (OPTION 4 2))");
    EXPECT_EQ(parse_rule("CREATE LINK l TO /t", ORMAK_RULE(statement)),
              "(CREATE_LINK OPTION OPTION (OPTION (LIST (LIST OPTION l))) (OPTION (LIST /t)))");
    EXPECT_EQ(parse_rule("CREATE TRUNCATE HARD LINK f.h5 l TO t", ORMAK_RULE(statement)),
              "(CREATE_LINK (OPTION TRUNCATE) (OPTION HARD) (OPTION (LIST (LIST (OPTION f.h5) l))) (OPTION (LIST t)))");
    EXPECT_EQ(parse_rule("CREATE EXTERNAL LINK e TO o.h5 /x", ORMAK_RULE(statement)),
              "(CREATE_EXTERNAL_LINK OPTION (OPTION (LIST (LIST OPTION e))) (OPTION (LIST o.h5 /x)))");
}
