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

TEST(TreeShape, AlterDimensionKeepsCommasAndSigns) {
    EXPECT_EQ(parse_rule("ALTER DIMENSION d TO 6, , +10", ORMAK_RULE(statement)),
              "(ALTER_DIMENSION (OPTION (LIST (LIST OPTION d))) (OPTION (LIST 6 , , +10)))");
    EXPECT_EQ(parse_rule("alter dimension d1, other.h5 /g/d2 to -1", ORMAK_RULE(statement)),
              "(ALTER_DIMENSION (OPTION (LIST (LIST OPTION d1) (LIST (OPTION other.h5) /g/d2))) (OPTION (LIST -1)))");
    EXPECT_EQ(parse_rule("ALTER DIMENSION d TO , 5,", ORMAK_RULE(statement)),
              "(ALTER_DIMENSION (OPTION (LIST (LIST OPTION d))) (OPTION (LIST , 5 ,)))");
    EXPECT_EQ(parse_rule("ALTER DIMENSION d TO 5 6", ORMAK_RULE(statement)), "ERROR");
    EXPECT_EQ(parse_rule("ALTER DIMENSION TO 5", ORMAK_RULE(statement)), "ERROR");
}

TEST(TreeShape, DatasetStatementHasTwentySlots) {
    EXPECT_EQ(parse_rule("CREATE DATASET d AS INT", ORMAK_RULE(statement)),
              "(CREATE_DATASET OPTION OPTION OPTION (OPTION (LIST (LIST OPTION d))) OPTION OPTION (OPTION INT) OPTION "
              "OPTION OPTION OPTION OPTION OPTION OPTION OPTION OPTION OPTION OPTION OPTION OPTION)");
    EXPECT_EQ(parse_rule("CREATE TRUNCATE EARLY CHUNKED(10, , 5) DATASET f.h5 d AS BIG ENDIAN ASCII CHAR(4, 8 TO "
                         "UNLIMITED) FILL VALUES(\"x\") ATTRIBUTE ORDER TRACKED ATTRIBUTE STORAGE COMPACT 8 DENSE 6 "
                         "NBIT PRECISION 12 OFFSET 2 SCALEOFFSET 3 SHUFFLE ZLIB LEVEL 4 FLETCHER32 VALUES((1, 2), 3) "
                         "FROM MEMORY 2 SIZE 0x10",
                         ORMAK_RULE(statement)),
              "(CREATE_DATASET (OPTION TRUNCATE) (OPTION EARLY) (OPTION CHUNKED (LIST 10 , , 5)) "
              "(OPTION (LIST (LIST (OPTION f.h5) d))) (OPTION BIG ENDIAN) (OPTION ASCII) (OPTION CHAR) OPTION "
              "(OPTION (LIST 4 8 TO UNLIMITED)) OPTION (OPTION (LIST x)) (OPTION TRACKED) (OPTION 8 6) (OPTION 12 2) "
              "(OPTION 3) (OPTION SHUFFLE) (OPTION ZLIB 4) (OPTION FLETCHER32) (OPTION (LIST (LIST 1 , 2) , 3)) "
              "(OPTION (LIST OPTION OPTION OPTION OPTION OPTION OPTION (OPTION 2 0x10))))");
    // A compound leaves the type slot empty and fills the next; FILL UNDEFINED keeps its word.
    EXPECT_EQ(parse_rule("CREATE DATASET d AS COMPOUND(a AS INT, b AS DOUBLE) FILL UNDEFINED TAG t", ORMAK_RULE(statement)),
              "ERROR");
    EXPECT_EQ(parse_rule("CREATE DATASET d AS COMPOUND(a AS INT, b AS DOUBLE) FILL UNDEFINED", ORMAK_RULE(statement)),
              "(CREATE_DATASET OPTION OPTION OPTION (OPTION (LIST (LIST OPTION d))) OPTION OPTION OPTION "
              "(OPTION (LIST a AS INT , b AS DOUBLE)) OPTION OPTION (OPTION UNDEFINED) OPTION OPTION OPTION OPTION "
              "OPTION OPTION OPTION OPTION OPTION)");
}

TEST(TreeShape, AttributeStatementHasTenSlots) {
    EXPECT_EQ(parse_rule("CREATE ATTRIBUTE a AS INT", ORMAK_RULE(statement)),
              "(CREATE_ATTRIBUTE OPTION (OPTION (LIST (LIST OPTION a))) OPTION OPTION (OPTION INT) OPTION OPTION "
              "OPTION OPTION OPTION)");
    EXPECT_EQ(parse_rule("create truncate attribute g/a, other.h5 /b as big endian double(2) from cursor",
                         ORMAK_RULE(statement)),
              "(CREATE_ATTRIBUTE (OPTION truncate) (OPTION (LIST (LIST OPTION g/a) (LIST (OPTION other.h5) /b))) "
              "(OPTION big endian) OPTION (OPTION double) OPTION (OPTION (LIST 2)) OPTION OPTION "
              "(OPTION (LIST (OPTION cursor) OPTION OPTION OPTION OPTION OPTION OPTION)))");
    EXPECT_EQ(parse_rule("CREATE ATTRIBUTE o AS NATIVE ASCII OPAQUE(4, -16) TAG \"a tag\" VALUES((1, 2), 3) "
                         "FROM MEMORY 1 SIZE 8",
                         ORMAK_RULE(statement)),
              "(CREATE_ATTRIBUTE OPTION (OPTION (LIST (LIST OPTION o))) (OPTION NATIVE) (OPTION ASCII) (OPTION OPAQUE) "
              "OPTION (OPTION (LIST 4 -16)) (OPTION a tag) (OPTION (LIST (LIST 1 , 2) , 3)) "
              "(OPTION (LIST OPTION OPTION OPTION OPTION OPTION OPTION (OPTION 1 8))))");
    // A compound leaves the type slot empty and fills the next.
    EXPECT_EQ(parse_rule("CREATE ATTRIBUTE c AS COMPOUND(a AS INT, b AS CHAR(4))(3)", ORMAK_RULE(statement)),
              "(CREATE_ATTRIBUTE OPTION (OPTION (LIST (LIST OPTION c))) OPTION OPTION OPTION "
              "(OPTION (LIST a AS INT , b AS CHAR ( 4 ))) (OPTION (LIST 3)) OPTION OPTION OPTION)");
    // An attribute has no maximum, and its clauses come in one order.
    EXPECT_EQ(parse_rule("CREATE ATTRIBUTE a AS INT(1 TO 2)", ORMAK_RULE(statement)), "ERROR");
    EXPECT_EQ(parse_rule("CREATE ATTRIBUTE a AS INT(UNLIMITED)", ORMAK_RULE(statement)), "ERROR");
    EXPECT_EQ(parse_rule("CREATE ATTRIBUTE a AS INT VALUES(1) TAG t", ORMAK_RULE(statement)), "ERROR");
    EXPECT_EQ(parse_rule("CREATE ATTRIBUTE a", ORMAK_RULE(statement)), "ERROR");
}

TEST(TreeShape, DataStatementsKeepTheirSlots) {
    EXPECT_EQ(parse_rule("INSERT INTO d VALUES(1)", ORMAK_RULE(statement)),
              "(INSERT OPTION OPTION OPTION OPTION OPTION (OPTION (LIST (LIST OPTION d OPTION OPTION OPTION))) "
              "(OPTION (LIST 1)) OPTION)");
    EXPECT_EQ(parse_rule("INSERT DIRECTLY MASK 0x5 SIZE 12 INTO DATASET c(1, 0), f.h5 e(0:::2) OR (5:::) FROM CURSOR",
                         ORMAK_RULE(statement)),
              "(INSERT (OPTION DIRECTLY) (OPTION 0x5) (OPTION 12) OPTION (OPTION DATASET) (OPTION (LIST (LIST OPTION c "
              "OPTION OPTION (OPTION (LIST 1 0))) (LIST (OPTION f.h5) e (OPTION (LIST 0 : : : 2) (LIST 5 : : :)) "
              "(OPTION OR) OPTION))) OPTION (OPTION (LIST (OPTION CURSOR) OPTION OPTION OPTION OPTION OPTION OPTION)))");
    EXPECT_EQ(parse_rule("SELECT FROM d", ORMAK_RULE(statement)),
              "(SELECT OPTION OPTION OPTION (OPTION (LIST OPTION d OPTION OPTION OPTION)) OPTION OPTION OPTION OPTION "
              "OPTION OPTION)");
    EXPECT_EQ(parse_rule("SELECT DIRECTLY PARALLEL FROM AT d CACHE SLOTS FILE SIZE 0x100 ORDER , DESCEND TOP 2 "
                         "INTO MEMORY 1 SIZE 8",
                         ORMAK_RULE(statement)),
              "(SELECT (OPTION DIRECTLY) (OPTION PARALLEL) (OPTION AT) (OPTION (LIST OPTION d OPTION OPTION OPTION)) "
              "(OPTION CACHE) (OPTION FILE) (OPTION 0x100) OPTION (OPTION (LIST ORDER , DESCEND TOP 2)) "
              "(OPTION (LIST OPTION OPTION OPTION OPTION OPTION OPTION OPTION OPTION (OPTION 1 8))))");
}
