// RENAME of objects and attributes, checked on disk through HDF5.
#include <string.h>

#include "FileSnapshot.h"
#include "StoredObject.h"

extern "C" char *_ormak_show_use_group(void);

class RenameObject : public ObjectFileTest {
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
};

TEST_F(RenameObject, MovesEachKindOfObjectWithWhatItHolds) {
    ASSERT_EQ(run("RENAME DATASET /runs/d AS /archive/"), 0) << message();
    ASSERT_EQ(run("RENAME GROUP runs AS old; RENAME SOFT LINK newest AS l2; RENAME EXTERNAL LINK ext AS far; "
                  "RENAME old/r1 AS /; FLUSH"),
              0)
        << message();
    EXPECT_EQ(kind("/runs/d"), "missing");
    EXPECT_EQ(Dataset("/archive/d").ints(), (std::vector<int>{1, 2, 3}));
    EXPECT_TRUE(has_attribute("/archive/d", "unit"));
    EXPECT_EQ(kind("/old"), "group");
    EXPECT_EQ(kind("/r1"), "group");
    // A link moves as it is: its value is not resolved again.
    EXPECT_EQ(kind("/l2"), "soft runs/d");
    EXPECT_EQ(kind("/far"), "external");
}

TEST_F(RenameObject, TheKeywordChecksTheKindOfTheSource) {
    EXPECT_EQ(refuse_unchanged("RENAME GROUP runs/d AS x"), ORMAK_ERROR_UNEXPECTED_TYPE);
    EXPECT_EQ(said, "Error when renaming object \"runs/d\" as it is not a group");
    EXPECT_EQ(refuse_unchanged("RENAME GROUP missing AS x"), ORMAK_ERROR_NOT_FOUND);
    // A group reached through a soft link is a group; a dangling link is nothing to ask.
    EXPECT_EQ(refuse_unchanged("RENAME GROUP dangling AS x"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(said, "Error when getting information about object \"dangling\"");
    EXPECT_EQ(refuse_unchanged("RENAME runs/.. AS x"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(said, "Error when renaming object \"runs/..\" as it is the root group");
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
}

TEST_F(RenameObject, TruncateDropsTheTargetFirst) {
    ASSERT_EQ(run("CREATE DATASET archive/keep AS INT VALUES(9); CREATE DATASET e AS INT VALUES(5)"), 0);
    // The old target goes whole, whatever it is: a dataset for a group.
    ASSERT_EQ(run("RENAME TRUNCATE GROUP archive AS e; FLUSH"), 0) << message();
    EXPECT_EQ(kind("/e"), "group");
    EXPECT_EQ(Dataset("/e/keep").ints(), (std::vector<int>{9}));
}

TEST_F(RenameObject, PairsGoByPositionAndAFailingPairEndsTheStatement) {
    // New names beyond the sources are ignored.
    ASSERT_EQ(run("RENAME runs/r1 AS r, s"), 0) << message();
    EXPECT_EQ(refuse("RENAME r, missing, archive AS r2, m, a2"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(refuse("RENAME r2, archive AS r3"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(said, "Error when renaming object \"archive\" as new name was not provided");
    ASSERT_EQ(run("FLUSH"), 0);
    EXPECT_EQ(kind("/r3"), "group");
    EXPECT_EQ(kind("/s"), "missing");
    EXPECT_EQ(kind("/archive"), "group");
}

TEST_F(RenameObject, RelativeNamesAndTheCurrentGroup) {
    ASSERT_EQ(run("USE GROUP runs; RENAME d AS ../archive/; FLUSH"), 0) << message();
    EXPECT_EQ(kind("/archive/d"), "dataset");
    // The current group moves with its name, but the session keeps counting from the old path.
    ASSERT_EQ(run("RENAME /runs AS /moved"), 0) << message();
    EXPECT_STREQ(_ormak_show_use_group(), "/runs");
    EXPECT_EQ(refuse("RENAME r1 AS r3"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(said, "Error when opening object \"r1\"");
}

TEST_F(RenameObject, ItemsMayNameTheirFile) {
    // The file in use stays current.
    ASSERT_EQ(run("RENAME GROUP b.h5 x AS y; RENAME archive AS a2; FLUSH"), 0) << message();
    EXPECT_EQ(kind("/y", "b.h5"), "group");
    EXPECT_EQ(kind("/a2"), "group");
    ASSERT_EQ(run("CLOSE ALL FILE"), 0);
    EXPECT_EQ(refuse("RENAME DATASET runs/d AS e"), ORMAK_ERROR_NOT_OPEN);
    ASSERT_EQ(run("RENAME a.h5 /runs/d AS e"), 0) << message();
    EXPECT_EQ(_ormak_show_use_group(), nullptr);
    EXPECT_EQ(kind("/e"), "dataset");
}

// Types and values of attributes moved onto another object are checked with COPY, whose
// duplication RENAME shares.
TEST_F(RenameObject, AttributesMoveInPlaceOrOntoAnotherObject) {
    ASSERT_EQ(run("RENAME ATTRIBUTE runs/d/unit AS runs/d/units; RENAME runs/d/units AS /units; FLUSH"), 0)
        << message();
    EXPECT_FALSE(has_attribute("/runs/d", "unit"));
    EXPECT_FALSE(has_attribute("/runs/d", "units"));
    EXPECT_EQ(std::string(Attribute("/", "units").bytes().data(), 1), "m");
}

TEST_F(RenameObject, AttributeRefusals) {
    ASSERT_EQ(run("CREATE DATASET e AS INT; CREATE ATTRIBUTE runs/d/c AS COMPOUND(a AS INT, b AS DOUBLE); "
                  "CREATE ATTRIBUTE e/unit AS INT VALUES(4)"),
              0)
        << message();
    EXPECT_EQ(refuse_unchanged("RENAME ATTRIBUTE runs/d/c AS e/c"), ORMAK_ERROR_NOT_SUPPORTED);
    EXPECT_EQ(said, "Error when renaming attribute \"runs/d/c\" as data type is not supported");
    EXPECT_EQ(refuse_unchanged("RENAME ATTRIBUTE runs/d/unit AS e/unit"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(refuse_unchanged("RENAME ATTRIBUTE runs/d/unit AS missing/unit"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(said, "Error when opening object \"/missing\"");
    // The same attribute through another path of its object is not dropped for itself.
    EXPECT_EQ(refuse_unchanged("RENAME TRUNCATE ATTRIBUTE runs/d/unit AS newest/unit"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(said, "Error when renaming attribute \"runs/d/unit\" as \"newest/unit\" is the same attribute");

    // On its own object a compound passes; TRUNCATE replaces an existing target.
    ASSERT_EQ(run("RENAME ATTRIBUTE runs/d/c AS runs/d/c2; RENAME TRUNCATE ATTRIBUTE runs/d/unit AS e/unit; FLUSH"), 0)
        << message();
    EXPECT_TRUE(has_attribute("/runs/d", "c2"));
    EXPECT_EQ(std::string(Attribute("/e", "unit").bytes().data(), 1), "m");
}
