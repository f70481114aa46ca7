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

TEST(TreeShape, RenameAndCopyOfObjects) {
    EXPECT_EQ(parse_rule("RENAME DATASET /runs/d AS /archive/", ORMAK_RULE(statement)),
              "(RENAME_OBJECT OPTION (OPTION DATASET) (OPTION (LIST (LIST OPTION /runs/d))) (OPTION (LIST /archive/)))");
    EXPECT_EQ(parse_rule("RENAME TRUNCATE GROUP a, f.h5 b AS c, d", ORMAK_RULE(statement)),
              "(RENAME_OBJECT (OPTION TRUNCATE) (OPTION GROUP) (OPTION (LIST (LIST OPTION a) (LIST (OPTION f.h5) b))) "
              "(OPTION (LIST c d)))");
    EXPECT_EQ(parse_rule("RENAME d/unit AS d/units", ORMAK_RULE(statement)),
              "(RENAME_OBJECT OPTION OPTION (OPTION (LIST (LIST OPTION d/unit))) (OPTION (LIST d/units)))");
    // A soft link shows LINK with or without SOFT; an external link shows EXTERNAL.
    EXPECT_EQ(parse_rule("RENAME SOFT LINK newest AS recent", ORMAK_RULE(statement)),
              "(RENAME_OBJECT OPTION (OPTION LINK) (OPTION (LIST (LIST OPTION newest))) (OPTION (LIST recent)))");
    EXPECT_EQ(parse_rule("rename link newest as recent", ORMAK_RULE(statement)),
              "(RENAME_OBJECT OPTION (OPTION link) (OPTION (LIST (LIST OPTION newest))) (OPTION (LIST recent)))");
    EXPECT_EQ(parse_rule("COPY EXTERNAL LINK e TO f", ORMAK_RULE(statement)),
              "(COPY_OBJECT OPTION (OPTION EXTERNAL) (OPTION (LIST (LIST OPTION e))) (OPTION (LIST (LIST OPTION f))))");
    EXPECT_EQ(parse_rule("COPY DATASET d TO backup.h5 /d", ORMAK_RULE(statement)),
              "(COPY_OBJECT OPTION (OPTION DATASET) (OPTION (LIST (LIST OPTION d))) "
              "(OPTION (LIST (LIST (OPTION backup.h5) /d))))");
    EXPECT_EQ(parse_rule("COPY TRUNCATE AT d/unit TO e/unit", ORMAK_RULE(statement)),
              "(COPY_OBJECT (OPTION TRUNCATE) (OPTION AT) (OPTION (LIST (LIST OPTION d/unit))) "
              "(OPTION (LIST (LIST OPTION e/unit))))");
    // Files keep their own statements; the new name of a rename names no file.
    EXPECT_EQ(parse_rule("RENAME TRUNCATE FILE a AS b", ORMAK_RULE(statement)),
              "(RENAME_FILE (OPTION TRUNCATE) (OPTION (LIST a)) (OPTION (LIST b)))");
    EXPECT_EQ(parse_rule("COPY FILE a TO b", ORMAK_RULE(statement)),
              "(COPY_FILE OPTION (OPTION (LIST a)) (OPTION (LIST b)))");
    EXPECT_EQ(parse_rule("RENAME d AS f.h5 e", ORMAK_RULE(statement)), "ERROR");
    EXPECT_EQ(parse_rule("RENAME GROUP AS e", ORMAK_RULE(statement)), "ERROR");
    EXPECT_EQ(parse_rule("COPY HARD LINK a TO b", ORMAK_RULE(statement)), "ERROR");
}

TEST(TreeShape, DropOfObjects) {
    EXPECT_EQ(parse_rule("DROP DATASET d, e", ORMAK_RULE(statement)),
              "(DROP_OBJECT (OPTION DATASET) (OPTION (LIST (LIST OPTION d) (LIST OPTION e))) OPTION OPTION OPTION)");
    EXPECT_EQ(parse_rule("DROP f.h5 g/, d/unit", ORMAK_RULE(statement)),
              "(DROP_OBJECT OPTION (OPTION (LIST (LIST (OPTION f.h5) g/) (LIST OPTION d/unit))) OPTION OPTION OPTION)");
    EXPECT_EQ(parse_rule("DROP ATTRIBUTE d/unit", ORMAK_RULE(statement)),
              "(DROP_OBJECT (OPTION ATTRIBUTE) (OPTION (LIST (LIST OPTION d/unit))) OPTION OPTION OPTION)");
    EXPECT_EQ(parse_rule("DROP EXTERNAL LINK front", ORMAK_RULE(statement)),
              "(DROP_OBJECT (OPTION EXTERNAL) (OPTION (LIST (LIST OPTION front))) OPTION OPTION OPTION)");
    EXPECT_EQ(parse_rule("DROP", ORMAK_RULE(statement)), "(DROP_OBJECT OPTION OPTION OPTION OPTION OPTION)");
    EXPECT_EQ(parse_rule("DROP SOFT LINK", ORMAK_RULE(statement)), "(DROP_OBJECT (OPTION LINK) OPTION OPTION OPTION OPTION)");
    EXPECT_EQ(parse_rule("DROP DATASET runs LIKE \"tmp_.*\" DEEP 2", ORMAK_RULE(statement)),
              "(DROP_OBJECT (OPTION DATASET) OPTION OPTION (OPTION runs) (OPTION tmp_.* (LIST 2)))");
    EXPECT_EQ(parse_rule("DROP other.h5 / LIKE \"**\"", ORMAK_RULE(statement)),
              "(DROP_OBJECT OPTION OPTION (OPTION other.h5) (OPTION /) (OPTION **))");
    EXPECT_EQ(parse_rule("DROP LIKE \"x\" DEEP 1, , 3", ORMAK_RULE(statement)),
              "(DROP_OBJECT OPTION OPTION OPTION OPTION (OPTION x (LIST 1 , , 3)))");
    EXPECT_EQ(parse_rule("DROP FILE a, b", ORMAK_RULE(statement)), "(DROP_FILE (OPTION (LIST a b)))");
    EXPECT_EQ(parse_rule("DROP DIRECTORY a", ORMAK_RULE(statement)), "(DROP_DIRECTORY (OPTION (LIST a)))");
    EXPECT_EQ(parse_rule("DROP a b c LIKE \"x\"", ORMAK_RULE(statement)), "ERROR");
    EXPECT_EQ(parse_rule("DROP GROUP LIKE", ORMAK_RULE(statement)), "ERROR");
    EXPECT_EQ(parse_rule("DROP HARD LINK a", ORMAK_RULE(statement)), "ERROR");
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

TEST(TreeShape, ShowStatementsEndInPostProcessingAndOutput) {
    EXPECT_EQ(parse_rule("SHOW USE FILE", ORMAK_RULE(statement)), "(SHOW_USE_FILE OPTION OPTION)");
    EXPECT_EQ(parse_rule("show all use file", ORMAK_RULE(statement)), "(SHOW_ALL_USE_FILE OPTION OPTION)");
    EXPECT_EQ(parse_rule("SHOW EXECUTE STATUS", ORMAK_RULE(statement)), "(SHOW_EXECUTE_STATUS OPTION OPTION)");
    EXPECT_EQ(parse_rule("SHOW HDF5 VERSION ORDER DESCEND INTO TEXT FILE v.txt", ORMAK_RULE(statement)),
              "(SHOW_HDF5_VERSION (OPTION (LIST ORDER DESCEND)) "
              "(OPTION (LIST OPTION OPTION (OPTION v.txt) OPTION OPTION OPTION OPTION OPTION OPTION)))");
    EXPECT_EQ(parse_rule("SHOW EXTERNAL LINK PREFIX INTO CURSOR", ORMAK_RULE(statement)),
              "(SHOW_EXTERNAL_LINK_PREFIX OPTION "
              "(OPTION (LIST (OPTION CURSOR) OPTION OPTION OPTION OPTION OPTION OPTION OPTION OPTION)))");
    EXPECT_EQ(parse_rule("SHOW FILE VALIDITY a.h5, notes.txt TOP 1", ORMAK_RULE(statement)),
              "(SHOW_FILE_VALIDITY (OPTION (LIST a.h5 notes.txt)) (OPTION (LIST TOP 1)) OPTION)");
    EXPECT_EQ(parse_rule("SHOW FILE VALIDITY", ORMAK_RULE(statement)), "ERROR");
    EXPECT_EQ(parse_rule("SHOW ALL", ORMAK_RULE(statement)), "ERROR");
    EXPECT_EQ(parse_rule("SHOW USE", ORMAK_RULE(statement)), "ERROR");
    EXPECT_EQ(parse_rule("SHOW FLUSH INTO MEMORY 1 ORDER ASCEND", ORMAK_RULE(statement)), "ERROR");
}

// Listings: a bare SHOW is the current group; the kinds, ORDER CREATION, SHOW FILE and
// EXTERNAL LINK share their first words with statements of properties and settings.
TEST(TreeShape, ListingsOfObjectsAndOfTheFileSystem) {
    EXPECT_EQ(parse_rule("SHOW", ORMAK_RULE(statement)),
              "(SHOW_OBJECT OPTION OPTION OPTION OPTION OPTION OPTION OPTION OPTION)");
    EXPECT_EQ(parse_rule("SHOW DATASET /runs LIKE \"temp.*\" DEEP 2 ORDER CREATION", ORMAK_RULE(statement)),
              "(SHOW_OBJECT (OPTION DATASET) OPTION (OPTION /runs) (OPTION temp.* (LIST 2)) OPTION (OPTION CREATION) "
              "OPTION OPTION)");
    EXPECT_EQ(parse_rule("SHOW other.h5 /", ORMAK_RULE(statement)),
              "(SHOW_OBJECT OPTION (OPTION other.h5) (OPTION /) OPTION OPTION OPTION OPTION OPTION)");
    EXPECT_EQ(parse_rule("SHOW SOFT LINK /g", ORMAK_RULE(statement)),
              "(SHOW_OBJECT (OPTION LINK) OPTION (OPTION /g) OPTION OPTION OPTION OPTION OPTION)");
    EXPECT_EQ(parse_rule("SHOW EXTERNAL LINK", ORMAK_RULE(statement)),
              "(SHOW_OBJECT (OPTION EXTERNAL) OPTION OPTION OPTION OPTION OPTION OPTION OPTION)");
    EXPECT_EQ(parse_rule("SHOW EXTERNAL LINK PREFIX", ORMAK_RULE(statement)), "(SHOW_EXTERNAL_LINK_PREFIX OPTION OPTION)");
    // DEEP keeps its commas; alone it is an empty list.
    EXPECT_EQ(parse_rule("SHOW LIKE \"**/a/**\" DEEP 1, , 3", ORMAK_RULE(statement)),
              "(SHOW_OBJECT OPTION OPTION OPTION (OPTION **/a/** (LIST 1 , , 3)) OPTION OPTION OPTION OPTION)");
    EXPECT_EQ(parse_rule("SHOW LIKE \"**\" DEEP", ORMAK_RULE(statement)),
              "(SHOW_OBJECT OPTION OPTION OPTION (OPTION ** LIST) OPTION OPTION OPTION OPTION)");
    EXPECT_EQ(parse_rule("SHOW g WHERE TYPE = GROUP AND DATA TYPE <> INT ORDER CREATION", ORMAK_RULE(statement)),
              "(SHOW_OBJECT OPTION OPTION (OPTION g) OPTION (OPTION (TYPE = GROUP) AND (DATA <> INT)) "
              "(OPTION CREATION) OPTION OPTION)");
    // ORDER: creation order, post-processing, or the property of an object.
    EXPECT_EQ(parse_rule("SHOW ORDER DESCEND", ORMAK_RULE(statement)),
              "(SHOW_OBJECT OPTION OPTION OPTION OPTION OPTION OPTION (OPTION (LIST ORDER DESCEND)) OPTION)");
    EXPECT_EQ(parse_rule("SHOW ATTRIBUTE ORDER CREATION", ORMAK_RULE(statement)),
              "(SHOW_OBJECT (OPTION ATTRIBUTE) OPTION OPTION OPTION OPTION (OPTION CREATION) OPTION OPTION)");
    EXPECT_EQ(parse_rule("SHOW AT ORDER , REVERSE", ORMAK_RULE(statement)),
              "(SHOW_OBJECT (OPTION AT) OPTION OPTION OPTION OPTION OPTION (OPTION (LIST ORDER , REVERSE)) OPTION)");
    EXPECT_EQ(parse_rule("SHOW ORDER d", ORMAK_RULE(statement)),
              "(SHOW_ORDER OPTION (OPTION (LIST (LIST OPTION d))) OPTION OPTION)");
    EXPECT_EQ(parse_rule("SHOW GROUP ORDER DESCEND TOP 3 INTO TEXT FILE groups.txt", ORMAK_RULE(statement)),
              "(SHOW_OBJECT (OPTION GROUP) OPTION OPTION OPTION OPTION OPTION (OPTION (LIST ORDER DESCEND TOP 3)) "
              "(OPTION (LIST OPTION OPTION (OPTION groups.txt) OPTION OPTION OPTION OPTION OPTION OPTION)))");
    // DATASET alone lists; with CACHE or DATA TYPE behind it, it asks about settings or a type.
    EXPECT_EQ(parse_rule("SHOW DATASET", ORMAK_RULE(statement)),
              "(SHOW_OBJECT (OPTION DATASET) OPTION OPTION OPTION OPTION OPTION OPTION OPTION)");
    EXPECT_EQ(parse_rule("SHOW DATASET CACHE", ORMAK_RULE(statement)),
              "(SHOW_CACHE OPTION (OPTION DATASET) OPTION OPTION OPTION)");
    EXPECT_EQ(parse_rule("SHOW a b c", ORMAK_RULE(statement)), "ERROR");
    // The file system; a keyword such as DATA is a name only when quoted.
    EXPECT_EQ(parse_rule("SHOW DIRECTORY", ORMAK_RULE(statement)), "(SHOW_DIRECTORY OPTION OPTION OPTION OPTION)");
    EXPECT_EQ(parse_rule("SHOW FILE \"data\" LIKE \"\\.h5$\"", ORMAK_RULE(statement)),
              "(SHOW_FILE (OPTION data) (OPTION \\.h5$) OPTION OPTION)");
    EXPECT_EQ(parse_rule("SHOW DIRECTORY /tmp/ LIKE x DEEP 2 ORDER DESCEND", ORMAK_RULE(statement)),
              "(SHOW_DIRECTORY (OPTION /tmp/) (OPTION x (LIST 2)) (OPTION (LIST ORDER DESCEND)) OPTION)");
    EXPECT_EQ(parse_rule("SHOW FILE", ORMAK_RULE(statement)), "(SHOW_FILE OPTION OPTION OPTION OPTION)");
    EXPECT_EQ(parse_rule("SHOW FILE SIZE", ORMAK_RULE(statement)), "(SHOW_FILE_SIZE OPTION OPTION OPTION)");
    EXPECT_EQ(parse_rule("SHOW FILE CACHE", ORMAK_RULE(statement)),
              "(SHOW_CACHE OPTION (OPTION FILE) OPTION OPTION OPTION)");
    EXPECT_EQ(parse_rule("SHOW FILE data", ORMAK_RULE(statement)), "ERROR");
}

TEST(TreeShape, ShowPropertiesOfObjects) {
    EXPECT_EQ(parse_rule("SHOW TYPE g, d, l", ORMAK_RULE(statement)),
              "(SHOW_TYPE (OPTION (LIST (LIST OPTION g) (LIST OPTION d) (LIST OPTION l))) OPTION OPTION)");
    EXPECT_EQ(parse_rule("SHOW DATASET DATA TYPE d", ORMAK_RULE(statement)),
              "(SHOW_DATA_TYPE (OPTION DATASET) (OPTION (LIST (LIST OPTION d))) OPTION OPTION)");
    EXPECT_EQ(parse_rule("SHOW ENDIANNESS f.h5 d, a", ORMAK_RULE(statement)),
              "(SHOW_ENDIANNESS OPTION (OPTION (LIST (LIST (OPTION f.h5) d) (LIST OPTION a))) OPTION OPTION)");
    EXPECT_EQ(parse_rule("SHOW AT TAG a TOP 1", ORMAK_RULE(statement)),
              "(SHOW_TAG (OPTION AT) (OPTION (LIST (LIST OPTION a))) (OPTION (LIST TOP 1)) OPTION)");
    EXPECT_EQ(parse_rule("SHOW MASK c(1, 0), d", ORMAK_RULE(statement)),
              "(SHOW_MASK (OPTION (LIST (LIST OPTION c (OPTION (LIST 1 0))) (LIST OPTION d OPTION))) OPTION OPTION)");
    // DIMENSION and MAX DIMENSION differ in slot 1 only.
    EXPECT_EQ(parse_rule("SHOW DIMENSION d", ORMAK_RULE(statement)),
              "(SHOW_DIMENSION OPTION OPTION OPTION d OPTION OPTION)");
    EXPECT_EQ(parse_rule("SHOW ATTRIBUTE MAX DIMENSION f.h5 a", ORMAK_RULE(statement)),
              "(SHOW_DIMENSION (OPTION ATTRIBUTE) (OPTION MAX) (OPTION f.h5) a OPTION OPTION)");
    EXPECT_EQ(parse_rule("SHOW STORAGE DIMENSION d", ORMAK_RULE(statement)),
              "(SHOW_STORAGE_DIMENSION OPTION d OPTION OPTION)");
    EXPECT_EQ(parse_rule("SHOW STORAGE TYPE d", ORMAK_RULE(statement)),
              "(SHOW_STORAGE_TYPE (OPTION (LIST (LIST OPTION d))) OPTION OPTION)");
    EXPECT_EQ(parse_rule("SHOW STORAGE ALLOCATION d", ORMAK_RULE(statement)),
              "(SHOW_STORAGE_ALLOCATION (OPTION (LIST (LIST OPTION d))) OPTION OPTION)");
    EXPECT_EQ(parse_rule("SHOW FILL TYPE d", ORMAK_RULE(statement)),
              "(SHOW_FILL_TYPE (OPTION (LIST (LIST OPTION d))) OPTION OPTION)");
    EXPECT_EQ(parse_rule("SHOW FILL VALUE other.h5 /d", ORMAK_RULE(statement)),
              "(SHOW_FILL_VALUE (OPTION other.h5) /d OPTION OPTION)");
    // ATTRIBUTE ORDER against ORDER, and the ORDER of post-processing behind it.
    EXPECT_EQ(parse_rule("SHOW ATTRIBUTE ORDER g", ORMAK_RULE(statement)),
              "(SHOW_ORDER (OPTION ATTRIBUTE) (OPTION (LIST (LIST OPTION g))) OPTION OPTION)");
    EXPECT_EQ(parse_rule("SHOW ORDER g ORDER DESCEND", ORMAK_RULE(statement)),
              "(SHOW_ORDER OPTION (OPTION (LIST (LIST OPTION g))) (OPTION (LIST ORDER DESCEND)) OPTION)");
    EXPECT_EQ(parse_rule("SHOW SIZE d", ORMAK_RULE(statement)),
              "(SHOW_SIZE OPTION (OPTION (LIST (LIST OPTION d))) OPTION OPTION)");
    // FILE SIZE beside FILE VALIDITY and the caches of files.
    EXPECT_EQ(parse_rule("SHOW FILE SIZE a.h5, b.h5", ORMAK_RULE(statement)),
              "(SHOW_FILE_SIZE (OPTION (LIST a.h5 b.h5)) OPTION OPTION)");
    EXPECT_EQ(parse_rule("SHOW FILE SIZE TOP 1", ORMAK_RULE(statement)),
              "(SHOW_FILE_SIZE OPTION (OPTION (LIST TOP 1)) OPTION)");
    EXPECT_EQ(parse_rule("SHOW FILE CACHE SIZE", ORMAK_RULE(statement)),
              "(SHOW_CACHE OPTION (OPTION FILE) (OPTION SIZE) OPTION OPTION)");
    EXPECT_EQ(parse_rule("SHOW DATASET CACHE", ORMAK_RULE(statement)),
              "(SHOW_CACHE OPTION (OPTION DATASET) OPTION OPTION OPTION)");
    EXPECT_EQ(parse_rule("SHOW SIZE", ORMAK_RULE(statement)), "ERROR");
    EXPECT_EQ(parse_rule("SHOW FILL VALUE", ORMAK_RULE(statement)), "ERROR");
    EXPECT_EQ(parse_rule("SHOW DATASET ORDER d", ORMAK_RULE(statement)), "ERROR");
}

TEST(TreeShape, ShowSettingsKeepTheFileInUseAndTheParameter) {
    EXPECT_EQ(parse_rule("SHOW USE FILE LIBRARY BOUNDS FROM", ORMAK_RULE(statement)),
              "(SHOW_LIBRARY_BOUNDS (OPTION USE) (OPTION FROM) OPTION OPTION)");
    EXPECT_EQ(parse_rule("SHOW LIBRARY BOUNDS TO ORDER DESCEND", ORMAK_RULE(statement)),
              "(SHOW_LIBRARY_BOUNDS OPTION (OPTION TO) (OPTION (LIST ORDER DESCEND)) OPTION)");
    // FROM before a number or a comma begins the range of post-processing.
    EXPECT_EQ(parse_rule("SHOW LIBRARY BOUNDS FROM 0 TO 1", ORMAK_RULE(statement)),
              "(SHOW_LIBRARY_BOUNDS OPTION OPTION (OPTION (LIST FROM 0 TO 1)) OPTION)");
    EXPECT_EQ(parse_rule("SHOW LIBRARY BOUNDS FROM FROM , 1 TO 1", ORMAK_RULE(statement)),
              "(SHOW_LIBRARY_BOUNDS OPTION (OPTION FROM) (OPTION (LIST FROM , 1 TO 1)) OPTION)");
    EXPECT_EQ(parse_rule("SHOW LIBRARY BOUNDS FROM EARLIEST", ORMAK_RULE(statement)), "ERROR");

    EXPECT_EQ(parse_rule("SHOW CACHE", ORMAK_RULE(statement)), "(SHOW_CACHE OPTION OPTION OPTION OPTION OPTION)");
    EXPECT_EQ(parse_rule("SHOW USE FILE CACHE SLOTS", ORMAK_RULE(statement)),
              "(SHOW_CACHE (OPTION USE) OPTION (OPTION SLOTS) OPTION OPTION)");
    EXPECT_EQ(parse_rule("SHOW DATASET CACHE SIZE INTO MEMORY 0 SIZE 4", ORMAK_RULE(statement)),
              "(SHOW_CACHE OPTION (OPTION DATASET) (OPTION SIZE) OPTION "
              "(OPTION (LIST OPTION OPTION OPTION OPTION OPTION OPTION OPTION OPTION (OPTION 0 4))))");
    EXPECT_EQ(parse_rule("SHOW FILE CACHE PREEMPTION", ORMAK_RULE(statement)),
              "(SHOW_CACHE OPTION (OPTION FILE) (OPTION PREEMPTION) OPTION OPTION)");
    EXPECT_EQ(parse_rule("SHOW CACHE SLOTS SIZE", ORMAK_RULE(statement)), "ERROR");

    EXPECT_EQ(parse_rule("SHOW USE FILE ATOMIC", ORMAK_RULE(statement)), "(SHOW_ATOMIC (OPTION USE) OPTION OPTION)");
    EXPECT_EQ(parse_rule("SHOW ATOMIC", ORMAK_RULE(statement)), "(SHOW_ATOMIC OPTION OPTION OPTION)");
}
