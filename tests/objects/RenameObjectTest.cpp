// RENAME of objects and attributes, checked on disk through HDF5.
#include <string.h>

#include "FileSnapshot.h"
#include "OrmakTest.h"
#include "StoredObject.h"

extern "C" char *_ormak_show_use_group(void);

class RenameObject : public OrmakTest {
protected:
    void SetUp() override {
        OrmakTest::SetUp();
        ASSERT_EQ(run("CREATE FILE a.h5, b.h5; USE FILE b.h5; CREATE GROUP x; CLOSE FILE; USE FILE a.h5; "
                      "CREATE GROUP runs/r1, archive; CREATE DATASET runs/d AS INT(3) VALUES(1, 2, 3); "
                      "CREATE ATTRIBUTE runs/d/unit AS CHAR(8) VALUES(\"m\"); CREATE LINK newest TO runs/d; "
                      "CREATE EXTERNAL LINK ext TO b.h5 /x; CREATE LINK dangling TO /nowhere"),
                  0)
            << message();
    }

    static std::string kind(const char *path, const char *file_name = "a.h5") { return link_kind(path, file_name); }
    static bool has_attribute(const char *object, const char *name, const char *file_name = "a.h5") {
        return ::has_attribute(object, name, file_name);
    }

    /* Runs a script that must be refused and leave a.h5 as it was. */
    int refuse_unchanged(const std::string &script) {
        EXPECT_EQ(run("FLUSH"), 0);
        std::string before = file_snapshot("a.h5");
        int status = refuse(script);
        EXPECT_EQ(run("FLUSH"), 0);
        EXPECT_EQ(file_snapshot("a.h5"), before) << script;
        return status;
    }
};

TEST_F(RenameObject, MovesEachKindOfObjectWithWhatItHolds) {
    ASSERT_EQ(run("RENAME DATASET /runs/d AS /archive/"), 0) << message();
    ASSERT_EQ(run("RENAME GROUP runs AS old; RENAME SOFT LINK newest AS recent; RENAME LINK recent AS l2; "
                  "RENAME EXTERNAL LINK ext AS far; RENAME old/r1 AS /"),
              0)
        << message();
    ASSERT_EQ(run("FLUSH"), 0);
    EXPECT_EQ(kind("/runs/d"), "missing");
    EXPECT_EQ(Dataset("/archive/d").ints(), (std::vector<int>{1, 2, 3}));
    EXPECT_TRUE(has_attribute("/archive/d", "unit"));
    EXPECT_EQ(kind("/old"), "group");
    EXPECT_EQ(kind("/r1"), "group");
    EXPECT_EQ(kind("/old/r1"), "missing");
    // A link moves as it is: its value is not resolved again.
    EXPECT_EQ(kind("/l2"), "soft runs/d");
    EXPECT_EQ(kind("/newest"), "missing");
    EXPECT_EQ(kind("/far"), "external");
    EXPECT_EQ(kind("/ext"), "missing");
}

TEST_F(RenameObject, TheKeywordChecksTheKindOfTheSource) {
    EXPECT_EQ(refuse_unchanged("RENAME GROUP runs/d AS x"), ORMAK_ERROR_UNEXPECTED_TYPE);
    EXPECT_EQ(said, "Error when renaming object \"runs/d\" as it is not a group");
    EXPECT_EQ(refuse_unchanged("RENAME DATASET runs AS x"), ORMAK_ERROR_UNEXPECTED_TYPE);
    EXPECT_EQ(said, "Error when renaming object \"runs\" as it is not a dataset");
    EXPECT_EQ(refuse_unchanged("RENAME EXTERNAL LINK newest AS x"), ORMAK_ERROR_UNEXPECTED_TYPE);
    EXPECT_EQ(said, "Error when renaming object \"newest\" as it is not an external link");
    EXPECT_EQ(refuse_unchanged("RENAME GROUP missing AS x"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(said, "Error when renaming object \"missing\" as it does not exist");
    // A group reached through a soft link is a group; a dangling link is nothing to ask.
    EXPECT_EQ(refuse_unchanged("RENAME GROUP dangling AS x"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(said, "Error when getting information about object \"dangling\"");
    EXPECT_EQ(refuse_unchanged("RENAME runs/.. AS x"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(said, "Error when renaming object \"runs/..\" as it is the root group");
    EXPECT_EQ(refuse_unchanged("RENAME GROUP runs/ AS x"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(said, "Error when renaming group \"runs/\" as it should not end with \"/\"");
}

TEST_F(RenameObject, NewNamesAreCheckedBeforeAnythingMoves) {
    EXPECT_EQ(refuse_unchanged("RENAME runs AS ./runs/../runs"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(said, "Error when renaming object \"runs\" as \"/runs\" since it has the same canonical name");
    EXPECT_EQ(refuse_unchanged("RENAME GROUP archive AS runs"), ORMAK_ERROR_ALREADY_EXISTS);
    EXPECT_EQ(said, "Error when renaming group \"archive\" as object \"runs\" already exists");
    // Parents are not made.
    EXPECT_EQ(refuse_unchanged("RENAME TRUNCATE runs/d AS nowhere/d"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(said, "Error when renaming object \"runs/d\"");
    // A group can not go below itself, and a group that holds the source is not dropped for it.
    EXPECT_EQ(refuse_unchanged("RENAME runs AS runs/r1/"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(said, "Error when renaming object \"runs\" as \"/runs/r1/runs\" lies inside it");
    EXPECT_EQ(refuse_unchanged("RENAME TRUNCATE runs/d AS runs"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(said, "Error when renaming object \"runs/d\" as \"/runs\" holds it");
    EXPECT_EQ(refuse_unchanged("RENAME TRUNCATE runs AS ."), ORMAK_ERROR_ALREADY_EXISTS);
    EXPECT_EQ(said, "Error when renaming object \"runs\" as object \".\" already exists");
}

TEST_F(RenameObject, TruncateDropsTheTargetFirst) {
    ASSERT_EQ(run("CREATE DATASET archive/keep AS INT VALUES(9); CREATE GROUP c; CREATE DATASET e AS INT VALUES(5)"), 0);
    // The old target goes whole, whatever it is: a group for a group, a dataset for a group.
    ASSERT_EQ(run("RENAME TRUNCATE GROUP runs, archive AS c, e"), 0) << message();
    ASSERT_EQ(run("FLUSH"), 0);
    EXPECT_EQ(kind("/c/r1"), "group");
    EXPECT_EQ(kind("/e"), "group");
    EXPECT_EQ(Dataset("/e/keep").ints(), (std::vector<int>{9}));
    EXPECT_EQ(kind("/runs"), "missing");
}

TEST_F(RenameObject, PairsGoByPositionAndAFailingPairEndsTheStatement) {
    // New names beyond the sources are ignored.
    ASSERT_EQ(run("RENAME runs/r1 AS r, s"), 0) << message();
    EXPECT_EQ(refuse("RENAME r, missing, archive AS r2, m, a2"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(said, "Error when renaming object \"missing\" as it does not exist");
    EXPECT_EQ(refuse("RENAME r2, archive AS r3"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(said, "Error when renaming object \"archive\" as new name was not provided");
    ASSERT_EQ(run("FLUSH"), 0);
    EXPECT_EQ(kind("/r3"), "group");
    EXPECT_EQ(kind("/s"), "missing");
    EXPECT_EQ(kind("/archive"), "group");
    EXPECT_EQ(kind("/a2"), "missing");
}

TEST_F(RenameObject, RelativeNamesAndTheCurrentGroup) {
    ASSERT_EQ(run("USE GROUP runs; RENAME d AS ../archive/; RENAME r1 AS r2"), 0) << message();
    ASSERT_EQ(run("FLUSH"), 0);
    EXPECT_EQ(kind("/archive/d"), "dataset");
    EXPECT_EQ(kind("/runs/r2"), "group");
    // The current group moves with its name, but the session keeps counting from the old path.
    ASSERT_EQ(run("RENAME /runs AS /moved"), 0) << message();
    EXPECT_STREQ(_ormak_show_use_group(), "/runs");
    EXPECT_EQ(refuse("RENAME r2 AS r3"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(said, "Error when opening object \"r2\"");
}

TEST_F(RenameObject, ItemsMayNameTheirFile) {
    ASSERT_EQ(run("RENAME GROUP b.h5 x AS y"), 0) << message();
    // The file in use stays current.
    ASSERT_EQ(run("RENAME archive AS a2; FLUSH"), 0) << message();
    EXPECT_EQ(kind("/y", "b.h5"), "group");
    EXPECT_EQ(kind("/x", "b.h5"), "missing");
    EXPECT_EQ(kind("/a2"), "group");
    ASSERT_EQ(run("CLOSE ALL FILE"), 0);
    EXPECT_EQ(refuse("RENAME DATASET runs/d AS e"), ORMAK_ERROR_NOT_OPEN);
    EXPECT_EQ(said, "Error when renaming dataset \"runs/d\" as no file is in use");
    ASSERT_EQ(run("RENAME a.h5 /runs/d AS e"), 0) << message();
    EXPECT_EQ(_ormak_show_use_group(), nullptr);
    EXPECT_EQ(kind("/e"), "dataset");
}

TEST_F(RenameObject, AttributesMoveInPlaceOrOntoAnotherObjectWithTheirTypes) {
    ASSERT_EQ(run("CREATE DATASET e AS INT; "
                  "CREATE ATTRIBUTE runs/d/big AS BIG ENDIAN UNSIGNED BIGINT(2) VALUES(7, 0x0102030405060708); "
                  "CREATE ATTRIBUTE runs/d/text AS UTF8 CHAR(6) VALUES(\"ab\"); "
                  "CREATE ATTRIBUTE runs/d/names AS VARCHAR(3) VALUES(\"a\", , \"ccc\"); "
                  "CREATE ATTRIBUTE runs/d/seq AS BIG ENDIAN VARINT(2) VALUES((1, 2), 3)"),
              0)
        << message();
    ASSERT_EQ(run("RENAME ATTRIBUTE runs/d/unit AS runs/d/units"), 0) << message();
    ASSERT_EQ(run("RENAME AT runs/d/big, runs/d/text, runs/d/names, runs/d/seq AS e/big, /e/text, e/names, e/seq; "
                  "RENAME runs/d/units AS /units; FLUSH"),
              0)
        << message();
    EXPECT_FALSE(has_attribute("/runs/d", "unit"));
    EXPECT_FALSE(has_attribute("/runs/d", "units"));
    EXPECT_FALSE(has_attribute("/runs/d", "big"));
    EXPECT_EQ(std::string(Attribute("/", "units").bytes().data(), 1), "m");

    Attribute big("/e", "big");
    EXPECT_EQ(H5Tget_order(big.type()), H5T_ORDER_BE);
    EXPECT_EQ(H5Tget_sign(big.type()), H5T_SGN_NONE);
    EXPECT_EQ(big.read<unsigned long long>(H5T_NATIVE_ULLONG), (std::vector<unsigned long long>{7, 0x0102030405060708}));
    Attribute text("/e", "text");
    EXPECT_EQ(H5Tget_size(text.type()), 6u);
    EXPECT_EQ(H5Tget_cset(text.type()), H5T_CSET_UTF8);
    EXPECT_EQ(std::string(text.bytes().data(), 2), "ab");
    EXPECT_EQ(Attribute("/e", "names").strings(), (std::vector<std::string>{"a", "(null)", "ccc"}));
    Attribute seq("/e", "seq");
    hid_t base = H5Tget_super(seq.type());
    EXPECT_EQ(H5Tget_order(base), H5T_ORDER_BE);
    H5Tclose(base);
    EXPECT_EQ(seq.lists(), (std::vector<std::vector<int>>{{1, 2}, {3}}));
}

TEST_F(RenameObject, AttributeRefusals) {
    ASSERT_EQ(run("CREATE DATASET e AS INT; CREATE ATTRIBUTE runs/d/c AS COMPOUND(a AS INT, b AS DOUBLE); "
                  "CREATE ATTRIBUTE e/unit AS INT VALUES(4)"),
              0)
        << message();
    EXPECT_EQ(refuse_unchanged("RENAME ATTRIBUTE runs/d/c AS e/c"), ORMAK_ERROR_NOT_SUPPORTED);
    EXPECT_EQ(said, "Error when renaming attribute \"runs/d/c\" as data type is not supported");
    EXPECT_EQ(refuse_unchanged("RENAME ATTRIBUTE runs/d/unit AS e/unit"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(said, "Error when renaming attribute \"runs/d/unit\" as attribute \"e/unit\" already exists");
    EXPECT_EQ(refuse_unchanged("RENAME runs/d/unit AS runs/d/c"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(said, "Error when renaming object \"runs/d/unit\" as object \"runs/d/c\" already exists");
    EXPECT_EQ(refuse_unchanged("RENAME ATTRIBUTE dangling/a AS e/a"), ORMAK_ERROR_DANGLING_LINK);
    EXPECT_EQ(said, "Error when opening object \"dangling/a\" as it is a dangling link");
    EXPECT_EQ(refuse_unchanged("RENAME ATTRIBUTE runs/d/unit AS missing/unit"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(said, "Error when opening object \"/missing\"");
    // The same attribute through another path of its object is not dropped for itself.
    EXPECT_EQ(refuse_unchanged("RENAME TRUNCATE ATTRIBUTE runs/d/unit AS newest/unit"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(said, "Error when renaming attribute \"runs/d/unit\" as \"newest/unit\" is the same attribute");

    // On its own object a compound passes; TRUNCATE replaces an existing target.
    ASSERT_EQ(run("RENAME ATTRIBUTE runs/d/c AS runs/d/c2; RENAME TRUNCATE ATTRIBUTE runs/d/unit AS e/unit; FLUSH"), 0)
        << message();
    EXPECT_TRUE(has_attribute("/runs/d", "c2"));
    EXPECT_FALSE(has_attribute("/runs/d", "unit"));
    EXPECT_EQ(std::string(Attribute("/e", "unit").bytes().data(), 1), "m");
}
