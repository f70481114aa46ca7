// Tree shapes of statements: the executors read their slots by position, absent clauses
// empty. Every statement runs end to end in the suites of its folder; here stand the shapes
// with the most slots, the words whose meaning depends on what follows, and what the grammar
// refuses.
#include "OrmakTest.h"
#include "ParseRule.h"

TEST(TreeShape, AbsentClausesKeepTheirSlots) {
    EXPECT_EQ(parse_rule("CREATE FILE a.h5", ORMAK_RULE(statement)),
              "(CREATE_FILE OPTION OPTION (OPTION (LIST a.h5)) OPTION OPTION OPTION)");
    // Lists of sizes keep their commas and signs.
    EXPECT_EQ(parse_rule("ALTER DIMENSION d TO , 5,", ORMAK_RULE(statement)),
              "(ALTER_DIMENSION (OPTION (LIST (LIST OPTION d))) (OPTION (LIST , 5 ,)))");
    EXPECT_EQ(parse_rule("DROP LIKE \"x\" DEEP 1, , 3", ORMAK_RULE(statement)),
              "(DROP_OBJECT OPTION OPTION OPTION OPTION (OPTION x (LIST 1 , , 3)))");
}

TEST(TreeShape, DatasetAndInsertStatementsFillEverySlot) {
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
    EXPECT_EQ(parse_rule("CREATE DATASET d AS COMPOUND(a AS INT, b AS DOUBLE) FILL UNDEFINED", ORMAK_RULE(statement)),
              "(CREATE_DATASET OPTION OPTION OPTION (OPTION (LIST (LIST OPTION d))) OPTION OPTION OPTION "
              "(OPTION (LIST a AS INT , b AS DOUBLE)) OPTION OPTION (OPTION UNDEFINED) OPTION OPTION OPTION OPTION "
              "OPTION OPTION OPTION OPTION OPTION)");
    EXPECT_EQ(parse_rule("INSERT DIRECTLY MASK 0x5 SIZE 12 INTO DATASET c(1, 0), f.h5 e(0:::2) OR (5:::) FROM CURSOR",
                         ORMAK_RULE(statement)),
              "(INSERT (OPTION DIRECTLY) (OPTION 0x5) (OPTION 12) OPTION (OPTION DATASET) (OPTION (LIST (LIST OPTION c "
              "OPTION OPTION (OPTION (LIST 1 0))) (LIST (OPTION f.h5) e (OPTION (LIST 0 : : : 2) (LIST 5 : : :)) "
              "(OPTION OR) OPTION))) OPTION (OPTION (LIST (OPTION CURSOR) OPTION OPTION OPTION OPTION OPTION OPTION)))");
}

// The kind of link shows LINK with or without SOFT; ORDER, DATASET, FILE, FROM and EXTERNAL LINK
// mean different statements by what follows them.
TEST(TreeShape, WordsThatDependOnWhatFollows) {
    EXPECT_EQ(parse_rule("RENAME SOFT LINK newest AS recent", ORMAK_RULE(statement)),
              "(RENAME_OBJECT OPTION (OPTION LINK) (OPTION (LIST (LIST OPTION newest))) (OPTION (LIST recent)))");
    EXPECT_EQ(parse_rule("SHOW ORDER DESCEND", ORMAK_RULE(statement)),
              "(SHOW_OBJECT OPTION OPTION OPTION OPTION OPTION OPTION (OPTION (LIST ORDER DESCEND)) OPTION)");
    EXPECT_EQ(parse_rule("SHOW ATTRIBUTE ORDER CREATION", ORMAK_RULE(statement)),
              "(SHOW_OBJECT (OPTION ATTRIBUTE) OPTION OPTION OPTION OPTION (OPTION CREATION) OPTION OPTION)");
    EXPECT_EQ(parse_rule("SHOW ORDER d", ORMAK_RULE(statement)),
              "(SHOW_ORDER OPTION (OPTION (LIST (LIST OPTION d))) OPTION OPTION)");
    EXPECT_EQ(parse_rule("SHOW DATASET CACHE", ORMAK_RULE(statement)),
              "(SHOW_CACHE OPTION (OPTION DATASET) OPTION OPTION OPTION)");
    EXPECT_EQ(parse_rule("SHOW EXTERNAL LINK PREFIX", ORMAK_RULE(statement)), "(SHOW_EXTERNAL_LINK_PREFIX OPTION OPTION)");
    EXPECT_EQ(parse_rule("SHOW g WHERE TYPE = GROUP AND DATA TYPE <> INT ORDER CREATION", ORMAK_RULE(statement)),
              "(SHOW_OBJECT OPTION OPTION (OPTION g) OPTION (OPTION (TYPE = GROUP) AND (DATA <> INT)) "
              "(OPTION CREATION) OPTION OPTION)");
    // A keyword such as DATA is a name only when quoted.
    EXPECT_EQ(parse_rule("SHOW FILE \"data\" LIKE \"\\.h5$\"", ORMAK_RULE(statement)),
              "(SHOW_FILE (OPTION data) (OPTION \\.h5$) OPTION OPTION)");
    // FROM before a number or a comma begins the range of post-processing.
    EXPECT_EQ(parse_rule("SHOW USE FILE LIBRARY BOUNDS FROM", ORMAK_RULE(statement)),
              "(SHOW_LIBRARY_BOUNDS (OPTION USE) (OPTION FROM) OPTION OPTION)");
    EXPECT_EQ(parse_rule("SHOW LIBRARY BOUNDS FROM FROM , 1 TO 1", ORMAK_RULE(statement)),
              "(SHOW_LIBRARY_BOUNDS OPTION (OPTION FROM) (OPTION (LIST FROM , 1 TO 1)) OPTION)");
}

TEST(TreeShape, TheGrammarRefuses) {
    for (const char *text : {
             "CREATE FILE", "ALTER DIMENSION d TO 5 6",
             // The new name of a rename names no file; a hard link is not copied.
             "RENAME d AS f.h5 e", "COPY HARD LINK a TO b", "DROP a b c LIKE \"x\"", "DROP HARD LINK a",
             "CREATE DATASET d AS COMPOUND(a AS INT, b AS DOUBLE) FILL UNDEFINED TAG t",
             // An attribute has no maximum, and its clauses come in one order.
             "CREATE ATTRIBUTE a AS INT(1 TO 2)", "CREATE ATTRIBUTE a AS INT VALUES(1) TAG t",
             // Post-processing comes before the output.
             "SHOW FLUSH INTO MEMORY 1 ORDER ASCEND", "SHOW FILE VALIDITY", "SHOW USE", "SHOW a b c",
             "SHOW FILE data", "SHOW SIZE", "SHOW DATASET ORDER d", "SHOW LIBRARY BOUNDS FROM EARLIEST",
             "SHOW CACHE SLOTS SIZE"})
        EXPECT_EQ(parse_rule(text, ORMAK_RULE(statement)), "ERROR") << text;
}
