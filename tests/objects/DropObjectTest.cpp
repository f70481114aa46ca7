// DROP of objects, attributes and links, checked on disk through HDF5.
#include <string.h>

#include "FileSnapshot.h"

class DropObject : public ObjectFileTest {
protected:
    void SetUp() override {
        OrmakTest::SetUp();
        ASSERT_EQ(run("CREATE FILE a.h5, b.h5; USE FILE b.h5; CREATE GROUP x; CLOSE FILE; USE FILE a.h5; "
                      "CREATE GROUP runs/r1/deep, runs/tmp_g, archive; "
                      "CREATE DATASET runs/d AS INT(3) VALUES(1, 2, 3); CREATE DATASET runs/tmp_1 AS INT; "
                      "CREATE DATASET runs/r1/tmp_2 AS INT; CREATE DATASET runs/r1/deep/tmp_3 AS INT; "
                      "CREATE DATASET loose AS INT; CREATE ATTRIBUTE runs/d/unit AS CHAR(8) VALUES(\"m\"); "
                      "CREATE ATTRIBUTE runs/note AS INT; CREATE ATTRIBUTE title AS INT; "
                      "CREATE LINK newest TO runs/d; CREATE EXTERNAL LINK front TO b.h5 /x; "
                      "CREATE LINK dangling TO /nowhere"),
                  0)
            << message();
    }

    /* The names of the links of a group, in name order, divided by spaces; with "@n" for n
       attributes on it. */
    static std::string members(const char *group, const char *file_name = "a.h5") {
        hid_t file = H5Fopen(file_name, H5F_ACC_RDONLY, H5P_DEFAULT);
        std::string result;
        H5Literate_by_name(file, group, H5_INDEX_NAME, H5_ITER_INC, nullptr,
                           [](hid_t, const char *name, const H5L_info_t *, void *data) -> herr_t {
                               std::string &text = *static_cast<std::string *>(data);
                               text += (text.empty() ? "" : " ") + std::string(name);
                               return 0;
                           },
                           &result, H5P_DEFAULT);
        H5O_info_t info;
        H5Oget_info_by_name2(file, group, &info, H5O_INFO_NUM_ATTRS, H5P_DEFAULT);
        if (info.num_attrs) result += " @" + std::to_string(info.num_attrs);
        H5Fclose(file);
        return result;
    }
};

TEST_F(DropObject, NamesRemoveObjectsAttributesAndLinksButNotTheirTargets) {
    ASSERT_EQ(run("DROP runs/r1, loose; DROP DATASET newest; DROP EXTERNAL LINK front; DROP ATTRIBUTE runs/d/unit"), 0)
        << message();
    EXPECT_EQ(kind("/runs/r1"), "missing");
    // The soft link goes, the dataset it led to stays; the external file is not touched.
    EXPECT_EQ(kind("/newest"), "missing");
    EXPECT_EQ(kind("/runs/d"), "dataset");
    EXPECT_EQ(kind("/front"), "missing");
    EXPECT_EQ(kind("/x", "b.h5"), "group");
    EXPECT_FALSE(has_attribute("/runs/d", "unit"));
    // A name that is no link but an attribute of the current group drops the attribute.
    ASSERT_EQ(run("DROP title; USE GROUP runs; DROP note"), 0) << message();
    EXPECT_FALSE(has_attribute("/", "title"));
    EXPECT_FALSE(has_attribute("/runs", "note"));
    // A dangling link goes with and without its kind.
    ASSERT_EQ(run("DROP /dangling; CREATE LINK /dangling TO /nowhere; DROP SOFT LINK /dangling"), 0) << message();
    EXPECT_EQ(kind("/dangling"), "missing");
    // An item in another file is dropped there.
    ASSERT_EQ(run("DROP b.h5 x"), 0) << message();
    EXPECT_EQ(kind("/x", "b.h5"), "missing");
}

TEST_F(DropObject, ContentsOfAGroupGoAndTheGroupStays) {
    ASSERT_EQ(run("DROP GROUP runs/"), 0) << message();
    EXPECT_EQ(members("/runs"), "d tmp_1 @1");
    ASSERT_EQ(run("DROP ATTRIBUTE runs/.; DROP DATASET runs/d/.."), 0) << message();
    EXPECT_EQ(members("/runs"), "");
    // Without a kind the attributes go too; "." at the root empties the file.
    ASSERT_EQ(run("DROP ."), 0) << message();
    EXPECT_EQ(members("/"), "");
    EXPECT_EQ(kind("/x", "b.h5"), "group");
}

TEST_F(DropObject, AloneItEmptiesTheCurrentGroupOfItsKind) {
    ASSERT_EQ(run("USE GROUP runs; DROP DATASET"), 0) << message();
    EXPECT_EQ(members("/runs"), "r1 tmp_g @1");
    ASSERT_EQ(run("CREATE ATTRIBUTE n AS INT; DROP"), 0) << message();
    EXPECT_EQ(members("/runs"), "");
    ASSERT_EQ(run("CLOSE GROUP; DROP SOFT LINK"), 0) << message();
    EXPECT_EQ(members("/"), "archive front loose runs @1");
    EXPECT_EQ(run("CLOSE ALL FILE"), 0);
    EXPECT_EQ(refuse("DROP GROUP"), ORMAK_ERROR_NOT_OPEN);
    EXPECT_EQ(said, "Error when dropping groups as no file is in use");
}

TEST_F(DropObject, RefusedItemsLeaveTheFileAsItWas) {
    EXPECT_EQ(refuse_unchanged("DROP GROUP runs/d"), ORMAK_ERROR_UNEXPECTED_TYPE);
    EXPECT_EQ(said, "Error when dropping object \"runs/d\" as it is not a group");
    EXPECT_EQ(refuse_unchanged("DROP DATASET nothing"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(said, "Error when dropping dataset \"nothing\" as it does not exist");
    EXPECT_EQ(refuse_unchanged("DROP GROUP dangling"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(refuse_unchanged("DROP dangling/"), ORMAK_ERROR_DANGLING_LINK);
    EXPECT_EQ(refuse_unchanged("DROP GROUP runs/d/"), ORMAK_ERROR_UNEXPECTED_TYPE);
    EXPECT_EQ(said, "Error when dropping groups in \"runs/d/\" as it is not a group");
    std::string long_name = "a";
    for (int i = 0; i < 40; i++) long_name += "/a";
    EXPECT_EQ(refuse_unchanged("DROP " + long_name), ORMAK_ERROR_INVALID_VALUE);
    EXPECT_EQ(said, "Error when dropping object \"" + long_name + "\" as its path is too long");
    // A failing item ends the statement: the items before it are gone, those after it stay.
    EXPECT_EQ(refuse("DROP loose, runs/nothing, archive"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(kind("/loose"), "missing");
    EXPECT_EQ(kind("/archive"), "group");
}

TEST_F(DropObject, TheCurrentGroupCanGo) {
    ASSERT_EQ(run("USE GROUP runs/r1; DROP /runs"), 0) << message();
    EXPECT_EQ(kind("/runs"), "missing");
    // Names still count from the group that is gone.
    EXPECT_EQ(refuse("DROP tmp_2"), ORMAK_ERROR_NOT_FOUND);
    ASSERT_EQ(run("CLOSE GROUP; DROP loose"), 0) << message();
}

// LIKE finds what SHOW lists; what dropping adds is told here.
TEST_F(DropObject, LikeMatchesLevelByLevel) {
    ASSERT_EQ(run("DROP DATASET runs LIKE \"**/tmp_.*\" DEEP 1"), 0) << message();
    EXPECT_EQ(members("/runs"), "d r1 tmp_g @1");
    EXPECT_EQ(kind("/runs/r1/deep/tmp_3"), "dataset");
    // A group that matches goes with all inside it, which also matched.
    ASSERT_EQ(run("DROP LIKE \"**\""), 0) << message();
    EXPECT_EQ(members("/"), "");
    EXPECT_EQ(kind("/x", "b.h5"), "group");
}

TEST_F(DropObject, LikeInAnotherFileAndItsAttributes) {
    ASSERT_EQ(run("USE FILE b.h5; CREATE GROUP y/z; CREATE ATTRIBUTE y/z/u AS INT; CREATE ATTRIBUTE y/v AS INT; "
                  "CLOSE FILE"),
              0)
        << message();
    ASSERT_EQ(run("DROP ATTRIBUTE b.h5 y LIKE \"**\""), 0) << message();
    EXPECT_FALSE(has_attribute("/y/z", "u", "b.h5"));
    EXPECT_EQ(members("/y", "b.h5"), "z");
    EXPECT_TRUE(has_attribute("/runs", "note"));
}

TEST_F(DropObject, LikeRefusals) {
    // A negative depth is refused before the file is opened: a missing file is not reported.
    EXPECT_EQ(refuse("DROP nofile.h5 / LIKE \"x\" DEEP 1, -1"), ORMAK_ERROR_INVALID_VALUE);
    EXPECT_EQ(said, "Error when dropping objects in \"/\" as deep value is not equal to or greater than 0");
    EXPECT_FALSE(exists("nofile.h5"));
    EXPECT_EQ(refuse_unchanged("DROP GROUP runs LIKE \"(\""), ORMAK_ERROR_INVALID_REGULAR_EXPRESSION);
    EXPECT_EQ(said, "Error when dropping groups as regular expression \"(\" is invalid at position 2");
    EXPECT_EQ(refuse_unchanged("DROP DATASET runs/d LIKE \".*\""), ORMAK_ERROR_UNEXPECTED_TYPE);
    EXPECT_EQ(refuse_unchanged("DROP nothing LIKE \".*\""), ORMAK_ERROR_NOT_FOUND);
}
