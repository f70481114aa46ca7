// DROP of objects, attributes and links, checked on disk through HDF5.
#include <string.h>

#include "FileSnapshot.h"
#include "OrmakTest.h"

class DropObject : public OrmakTest {
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

    static std::string kind(const char *path, const char *file_name = "a.h5") { return link_kind(path, file_name); }
    static bool has_attribute(const char *object, const char *name, const char *file_name = "a.h5") {
        return ::has_attribute(object, name, file_name);
    }

    /* The names of the links of a group, in name order, divided by spaces. */
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
        H5Fclose(file);
        return result;
    }

    static int attribute_count(const char *object) {
        hid_t file = H5Fopen("a.h5", H5F_ACC_RDONLY, H5P_DEFAULT);
        H5O_info_t info;
        H5Oget_info_by_name2(file, object, &info, H5O_INFO_NUM_ATTRS, H5P_DEFAULT);
        H5Fclose(file);
        return (int)info.num_attrs;
    }

    /* A statement that must fail with `status` and leave a.h5 exactly as it was. */
    void refused_untouched(const std::string &script, int status, const std::string &text) {
        std::string before = file_snapshot("a.h5");
        EXPECT_EQ(refuse(script), status) << script;
        EXPECT_EQ(said, text) << script;
        ASSERT_EQ(run("CLOSE ALL FILE"), 0) << message();
        EXPECT_EQ(file_snapshot("a.h5"), before) << script;
        ASSERT_EQ(run("USE FILE a.h5"), 0) << message();
    }
};

TEST_F(DropObject, NamesRemoveObjectsAttributesAndLinksButNotTheirTargets) {
    ASSERT_EQ(run("DROP runs/r1, loose; DROP DATASET newest; DROP EXTERNAL LINK front; DROP ATTRIBUTE runs/d/unit"), 0)
        << message();
    EXPECT_EQ(kind("/runs/r1"), "missing");
    EXPECT_EQ(kind("/loose"), "missing");
    // The soft link goes, the dataset it led to stays; the external file is not touched.
    EXPECT_EQ(kind("/newest"), "missing");
    EXPECT_EQ(kind("/runs/d"), "dataset");
    EXPECT_EQ(kind("/front"), "missing");
    EXPECT_EQ(kind("/x", "b.h5"), "group");
    EXPECT_FALSE(has_attribute("/runs/d", "unit"));
    // A name that is no link but an attribute of the current group drops the attribute.
    ASSERT_EQ(refuse("DROP title; USE GROUP runs; DROP note, d/../tmp_1/../d/nothing"), -2);
    EXPECT_EQ(said, "Error when dropping object \"d/../tmp_1/../d/nothing\" as it does not exist");
    EXPECT_FALSE(has_attribute("/", "title"));
    EXPECT_FALSE(has_attribute("/runs", "note"));
    // A dangling link goes with and without its kind.
    ASSERT_EQ(run("DROP /dangling; CREATE LINK /dangling TO /nowhere; DROP SOFT LINK /dangling"), 0) << message();
    EXPECT_EQ(kind("/dangling"), "missing");
    // An item in another file is dropped there, and the file is given back.
    ASSERT_EQ(run("DROP b.h5 x"), 0) << message();
    EXPECT_EQ(kind("/x", "b.h5"), "missing");
}

TEST_F(DropObject, ContentsOfAGroupGoAndTheGroupStays) {
    ASSERT_EQ(run("DROP GROUP runs/"), 0) << message();
    EXPECT_EQ(members("/runs"), "d tmp_1");
    ASSERT_EQ(run("DROP ATTRIBUTE runs/.; DROP DATASET runs/d/.."), 0) << message();
    EXPECT_EQ(members("/runs"), "");
    EXPECT_EQ(attribute_count("/runs"), 0);
    // Without a kind the attributes go too; "/" and "." at the root empty the file.
    ASSERT_EQ(run("DROP ."), 0) << message();
    EXPECT_EQ(members("/"), "");
    EXPECT_EQ(attribute_count("/"), 0);
    EXPECT_EQ(kind("/x", "b.h5"), "group");
    ASSERT_EQ(run("CREATE GROUP g; CREATE DATASET e AS INT; DROP /"), 0) << message();
    EXPECT_EQ(members("/"), "");
}

TEST_F(DropObject, AloneItEmptiesTheCurrentGroupOfItsKind) {
    ASSERT_EQ(run("USE GROUP runs; DROP DATASET"), 0) << message();
    EXPECT_EQ(members("/runs"), "r1 tmp_g");
    EXPECT_TRUE(has_attribute("/runs", "note"));
    ASSERT_EQ(run("DROP ATTRIBUTE"), 0) << message();
    EXPECT_FALSE(has_attribute("/runs", "note"));
    ASSERT_EQ(run("CREATE ATTRIBUTE n AS INT; DROP"), 0) << message();
    EXPECT_EQ(members("/runs"), "");
    EXPECT_EQ(attribute_count("/runs"), 0);
    ASSERT_EQ(run("CLOSE GROUP; DROP SOFT LINK"), 0) << message();
    EXPECT_EQ(members("/"), "archive front loose runs");
    EXPECT_EQ(run("CLOSE ALL FILE"), 0);
    EXPECT_EQ(refuse("DROP GROUP"), -4);
    EXPECT_EQ(said, "Error when dropping groups as no file is in use");
}

TEST_F(DropObject, RefusedItemsLeaveTheFileAsItWas) {
    refused_untouched("DROP GROUP runs/d", -16, "Error when dropping object \"runs/d\" as it is not a group");
    refused_untouched("DROP SOFT LINK front", -16, "Error when dropping object \"front\" as it is not a soft link");
    refused_untouched("DROP runs/nothing", -2, "Error when dropping object \"runs/nothing\" as it does not exist");
    refused_untouched("DROP DATASET nothing", -2, "Error when dropping dataset \"nothing\" as it does not exist");
    refused_untouched("DROP GROUP dangling", -99, "Error when getting information about object \"dangling\"");
    refused_untouched("DROP dangling/", -19, "Error when opening object \"dangling/\" as it is a dangling link");
    refused_untouched("DROP GROUP runs/d/", -16, "Error when dropping groups in \"runs/d/\" as it is not a group");
    std::string long_name = "a";
    for (int i = 0; i < 40; i++) long_name += "/a";
    refused_untouched("DROP " + long_name, -14, "Error when dropping object \"" + long_name + "\" as its path is too long");
    // A failing item ends the statement: the items before it are gone, those after it stay.
    EXPECT_EQ(refuse("DROP loose, runs/nothing, archive"), -2);
    EXPECT_EQ(kind("/loose"), "missing");
    EXPECT_EQ(kind("/archive"), "group");
}

TEST_F(DropObject, TheCurrentGroupCanGo) {
    ASSERT_EQ(run("USE GROUP runs/r1; DROP /runs"), 0) << message();
    EXPECT_EQ(kind("/runs"), "missing");
    // Names still count from the group that is gone.
    EXPECT_EQ(refuse("DROP tmp_2"), -2);
    ASSERT_EQ(run("CLOSE GROUP; DROP loose"), 0) << message();
    EXPECT_EQ(kind("/loose"), "missing");
}

// LIKE finds what SHOW lists; what dropping adds is told here.
TEST_F(DropObject, LikeMatchesLevelByLevel) {
    ASSERT_EQ(run("DROP DATASET runs LIKE \"**/tmp_.*\" DEEP 1"), 0) << message();
    EXPECT_EQ(members("/runs"), "d r1 tmp_g");
    EXPECT_EQ(kind("/runs/r1/tmp_2"), "missing");
    EXPECT_EQ(kind("/runs/r1/deep/tmp_3"), "dataset");
    // A group that matches goes with all inside it, which also matched.
    ASSERT_EQ(run("DROP LIKE \"**\""), 0) << message();
    EXPECT_EQ(members("/"), "");
    EXPECT_EQ(attribute_count("/"), 0);
    EXPECT_EQ(kind("/x", "b.h5"), "group");
}

TEST_F(DropObject, LikeInAnotherFileAndItsAttributes) {
    ASSERT_EQ(run("USE FILE b.h5; CREATE GROUP y/z; CREATE ATTRIBUTE y/z/u AS INT; CREATE ATTRIBUTE y/v AS INT; "
                  "CLOSE FILE"),
              0)
        << message();
    ASSERT_EQ(run("DROP ATTRIBUTE b.h5 y LIKE \"**\""), 0) << message();
    EXPECT_FALSE(has_attribute("/y/z", "u", "b.h5"));
    EXPECT_FALSE(has_attribute("/y", "v", "b.h5"));
    EXPECT_EQ(members("/y", "b.h5"), "z");
    ASSERT_EQ(run("DROP b.h5 / LIKE \"**\""), 0) << message();
    EXPECT_EQ(members("/", "b.h5"), "");
    EXPECT_EQ(kind("/runs"), "group");
}

TEST_F(DropObject, LikeRefusals) {
    // A negative depth is refused before the file is opened: a missing file is not reported.
    EXPECT_EQ(refuse("DROP nofile.h5 / LIKE \"x\" DEEP 1, -1"), -14);
    EXPECT_EQ(said, "Error when dropping objects in \"/\" as deep value is not equal to or greater than 0");
    EXPECT_FALSE(exists("nofile.h5"));
    refused_untouched("DROP GROUP runs LIKE \"(\"", -21,
                      "Error when dropping groups as regular expression \"(\" is invalid at position 2");
    refused_untouched("DROP DATASET runs/d LIKE \".*\"", -16, "Error when opening object \"runs/d\" as it is not a group");
    refused_untouched("DROP nothing LIKE \".*\"", -2, "Error when opening object \"nothing\" as it does not exist");
    EXPECT_EQ(run("CLOSE ALL FILE"), 0);
    EXPECT_EQ(refuse("DROP LIKE \"x\""), -4);
    EXPECT_EQ(said, "Error when dropping objects as no file is in use");
}
