// SHOW listings of objects, checked against what HDF5 and PCRE report on files made with the
// HDF5 interface itself.
#include <hdf5.h>
#include <pcre.h>

#include "CursorValues.h"
#include "OrmakTest.h"

namespace {

herr_t take_link(hid_t, const char *name, const H5L_info_t *, void *data) {
    ((Texts *)data)->push_back(name);
    return 0;
}

herr_t take_attribute(hid_t, const char *name, const H5A_info_t *, void *data) {
    ((Texts *)data)->push_back(name);
    return 0;
}

/* What HDF5 lists at `path`: attributes, then links, both by the index given. */
Texts hdf5_members(const char *file, const char *path, H5_index_t index) {
    Texts names;
    hid_t f = H5Fopen(file, H5F_ACC_RDONLY, H5P_DEFAULT);
    hid_t object = H5Oopen(f, path, H5P_DEFAULT);
    H5Aiterate2(object, index, H5_ITER_INC, nullptr, take_attribute, &names);
    H5O_info_t info;
    H5Oget_info2(object, &info, H5O_INFO_BASIC);
    if (info.type == H5O_TYPE_GROUP) H5Literate(object, index, H5_ITER_INC, nullptr, take_link, &names);
    H5Oclose(object);
    H5Fclose(f);
    return names;
}

void group(hid_t location, const char *name, hid_t create_list = H5P_DEFAULT) {
    H5Gclose(H5Gcreate2(location, name, H5P_DEFAULT, create_list, H5P_DEFAULT));
}

void dataset(hid_t location, const char *name, hid_t create_list = H5P_DEFAULT) {
    hid_t space = H5Screate(H5S_SCALAR);
    H5Dclose(H5Dcreate2(location, name, H5T_NATIVE_INT, space, H5P_DEFAULT, create_list, H5P_DEFAULT));
    H5Sclose(space);
}

void attribute(hid_t location, const char *object, const char *name) {
    hid_t space = H5Screate(H5S_SCALAR);
    H5Aclose(H5Acreate_by_name(location, object, name, H5T_NATIVE_INT, space, H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT));
    H5Sclose(space);
}

} // namespace

class ObjectListing : public OrmakTest {
protected:
    /* f.h5, made by HDF5 directly:
         /            attributes "zone", "alpha"; tracks creation order of links and attributes
         /zeta        group, with group "inner" and dataset "deep"
         /alpha       dataset with attributes "unit", "scale", tracking their creation order
         /mid         group that does not track creation order, members "b", "a"
         /to_zeta     soft link to /zeta,  /nowhere soft link to /missing
         /far         external link to other.h5 /remote (a group), /far_data to other.h5 /values
         /zeta/up     soft link to /zeta, a loop */
    void SetUp() override {
        OrmakTest::SetUp();
        hid_t other = H5Fcreate("other.h5", H5F_ACC_TRUNC, H5P_DEFAULT, H5P_DEFAULT);
        group(other, "remote");
        dataset(other, "values");
        H5Fclose(other);

        hid_t file_create = H5Pcreate(H5P_FILE_CREATE);
        H5Pset_link_creation_order(file_create, H5P_CRT_ORDER_TRACKED);
        H5Pset_attr_creation_order(file_create, H5P_CRT_ORDER_TRACKED);
        hid_t f = H5Fcreate("f.h5", H5F_ACC_TRUNC, file_create, H5P_DEFAULT);
        H5Pclose(file_create);
        attribute(f, "/", "zone");
        attribute(f, "/", "alpha");
        group(f, "zeta");
        group(f, "zeta/inner");
        dataset(f, "zeta/deep");
        hid_t dataset_create = H5Pcreate(H5P_DATASET_CREATE);
        H5Pset_attr_creation_order(dataset_create, H5P_CRT_ORDER_TRACKED);
        dataset(f, "alpha", dataset_create);
        H5Pclose(dataset_create);
        attribute(f, "alpha", "unit");
        attribute(f, "alpha", "scale");
        group(f, "mid");
        group(f, "mid/b");
        group(f, "mid/a");
        H5Lcreate_soft("/zeta", f, "to_zeta", H5P_DEFAULT, H5P_DEFAULT);
        H5Lcreate_soft("/missing", f, "nowhere", H5P_DEFAULT, H5P_DEFAULT);
        H5Lcreate_external("other.h5", "/remote", f, "far", H5P_DEFAULT, H5P_DEFAULT);
        H5Lcreate_external("other.h5", "/values", f, "far_data", H5P_DEFAULT, H5P_DEFAULT);
        H5Lcreate_soft("/zeta", f, "zeta/up", H5P_DEFAULT, H5P_DEFAULT);
        H5Fclose(f);
    }

    Texts show(const std::string &statement) {
        int status = run("USE FILE f.h5; " + statement + "; CLOSE FILE");
        EXPECT_EQ(status, 0) << statement << ": " << message();
        return cursor_texts();
    }

    int refuse_in_file(const std::string &statement) { return refuse("USE FILE f.h5; " + statement); }
};

TEST_F(ObjectListing, MembersComeAsHdf5ListsThemAttributesFirst) {
    // By name, and in creation order where the group tracks it.
    EXPECT_EQ(show("SHOW"), hdf5_members("f.h5", "/", H5_INDEX_NAME));
    EXPECT_EQ(show("SHOW ORDER CREATION"), hdf5_members("f.h5", "/", H5_INDEX_CRT_ORDER));
    // A group that does not track creation order is listed by name, and that is no error.
    EXPECT_EQ(show("SHOW mid/ ORDER CREATION"), (Texts{"a", "b"}));
    // A dataset's contents are its attributes; the current group moves the start.
    EXPECT_EQ(show("SHOW /alpha/ ORDER CREATION"), (Texts{"unit", "scale"}));
    EXPECT_EQ(show("USE GROUP zeta; SHOW"), hdf5_members("f.h5", "/zeta", H5_INDEX_NAME));
    EXPECT_EQ(show("SHOW zeta/inner/.."), show("SHOW zeta/"));
    // Another file, named in the statement, is in use only for it.
    ASSERT_EQ(run("SHOW other.h5 /"), 0) << message();
    EXPECT_EQ(cursor_texts(), (Texts{"remote", "values"}));
}

TEST_F(ObjectListing, KindsCountObjectsReachedThroughLinks) {
    EXPECT_EQ(show("SHOW GROUP"), (Texts{"far", "mid", "to_zeta", "zeta"}));
    EXPECT_EQ(show("SHOW DATASET"), (Texts{"alpha", "far_data"}));
    EXPECT_EQ(show("SHOW ATTRIBUTE"), (Texts{"alpha", "zone"}));
    // Links by the kind of link, whether or not they lead anywhere.
    EXPECT_EQ(show("SHOW LINK"), (Texts{"nowhere", "to_zeta"}));
    // A group filter on a dataset's contents.
    EXPECT_EQ(refuse_in_file("SHOW GROUP alpha/"), ORMAK_ERROR_UNEXPECTED_TYPE);
    EXPECT_EQ(said, "Error when showing objects in object \"alpha/\" as it is not a group");
}

TEST_F(ObjectListing, OneNameAnswersWithItselfWhenItExists) {
    EXPECT_EQ(show("SHOW GROUP to_zeta"), Texts{"to_zeta"});
    EXPECT_EQ(show("SHOW ATTRIBUTE alpha/unit"), Texts{"alpha/unit"});
    EXPECT_EQ(show("SHOW EXTERNAL LINK far"), Texts{"far"});

    EXPECT_EQ(refuse_in_file("SHOW none"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(said, "Error when showing object \"none\" as it does not exist");
    EXPECT_EQ(refuse_in_file("SHOW GROUP alpha"), ORMAK_ERROR_UNEXPECTED_TYPE);
    EXPECT_EQ(said, "Error when showing object \"alpha\" as it is not a group");
    EXPECT_EQ(refuse_in_file("SHOW EXTERNAL LINK to_zeta"), ORMAK_ERROR_UNEXPECTED_TYPE);
    EXPECT_EQ(refuse_in_file("SHOW GROUP nowhere"), ORMAK_ERROR_DANGLING_LINK);
    ASSERT_EQ(run("CLOSE ALL FILE"), 0);
    EXPECT_EQ(refuse("SHOW SOFT LINK g LIKE \"x\""), ORMAK_ERROR_NOT_OPEN);
    EXPECT_EQ(said, "Error when showing soft links in \"g\" as no file is in use");
}

TEST_F(ObjectListing, LikeMatchesLevelByLevel) {
    // One piece per level, matched anywhere in the name, a capture group taking part is no match.
    EXPECT_EQ(show("SHOW LIKE \"a\""), (Texts{"alpha", "alpha", "far", "far_data", "to_zeta", "zeta"}));
    EXPECT_EQ(show("SHOW LIKE \"/zeta/in\""), (Texts{"to_zeta/inner", "zeta/inner"}));
    EXPECT_EQ(show("SHOW LIKE \"^zeta$/in\""), Texts{"zeta/inner"});
    EXPECT_EQ(show("SHOW LIKE \"^zeta$/(in)ner\""), Texts{});
    EXPECT_EQ(show("SHOW LIKE \"^zeta$/(?:in)ner\""), Texts{"zeta/inner"});
    // Under a start, paths are relative to it; the attributes of a dataset are a level too.
    EXPECT_EQ(show("SHOW zeta LIKE \"e\""), (Texts{"deep", "inner"}));
    EXPECT_EQ(show("SHOW LIKE \"alpha/s\""), Texts{"alpha/scale"});
    EXPECT_EQ(show("SHOW ATTRIBUTE LIKE \"alpha/.\" ORDER CREATION"), (Texts{"alpha/unit", "alpha/scale"}));
}

TEST_F(ObjectListing, AnyLevelsFollowTheDepthAndStopAtLoops) {
    const Texts everything = show("SHOW LIKE \"**\"");
    // Depth first, an entry before what lies under it; links are followed, a loop is shown
    // where it closes and not followed; a dangling link just leads nowhere.
    const Texts top = hdf5_members("f.h5", "/", H5_INDEX_NAME);
    EXPECT_EQ(everything,
              (Texts{"alpha", "zone", "alpha", "alpha/scale", "alpha/unit", "far", "far_data", "mid", "mid/a", "mid/b",
                     "nowhere", "to_zeta", "to_zeta/deep", "to_zeta/inner", "to_zeta/up", "zeta", "zeta/deep",
                     "zeta/inner", "zeta/up"}));
    EXPECT_EQ(show("SHOW LIKE \"**\" DEEP 0"), top);
    EXPECT_EQ(show("SHOW LIKE \"**/**\" DEEP 0, 1"), show("SHOW LIKE \"**\" DEEP 1"));
    EXPECT_EQ(show("SHOW GROUP LIKE \"**\" DEEP 1"),
              (Texts{"far", "mid", "mid/a", "mid/b", "to_zeta", "to_zeta/inner", "to_zeta/up", "zeta", "zeta/inner",
                     "zeta/up"}));
    EXPECT_EQ(show("SHOW LINK LIKE \"**\""), (Texts{"nowhere", "to_zeta", "to_zeta/up", "zeta/up"}));
    // A name at any level, and a depth that holds it back.
    EXPECT_EQ(show("SHOW LIKE \"**/^inner$\""), (Texts{"to_zeta/inner", "zeta/inner"}));
    EXPECT_EQ(show("SHOW LIKE \"**/^inner$\" DEEP 0"), Texts{});
    EXPECT_EQ(show("SHOW DATASET / LIKE \"**/p\""), (Texts{"alpha", "to_zeta/deep", "zeta/deep"}));
    // The kind filter checks the start.
    EXPECT_EQ(refuse_in_file("SHOW GROUP alpha LIKE \"**\""), ORMAK_ERROR_UNEXPECTED_TYPE);
    EXPECT_EQ(said, "Error when opening object \"alpha\" as it is not a group");
}

TEST_F(ObjectListing, InvalidExpressionsAndDepthsAreRefused) {
    const char *error = nullptr;
    int offset = -1;
    pcre *code = pcre_compile("te(mp", 0, &error, &offset, nullptr);
    ASSERT_EQ(code, nullptr);
    EXPECT_EQ(refuse_in_file("SHOW LIKE \"te(mp\""), ORMAK_ERROR_INVALID_REGULAR_EXPRESSION);
    EXPECT_EQ(said, "Error when showing objects as regular expression \"te(mp\" is invalid at position " +
                        std::to_string(offset + 1));
    // Before the last piece the expression is checked before the level is listed, at the
    // last piece after it.
    EXPECT_EQ(refuse_in_file("SHOW none LIKE \"(/x\""), ORMAK_ERROR_INVALID_REGULAR_EXPRESSION);
    EXPECT_EQ(refuse_in_file("SHOW none LIKE \"(\""), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(refuse_in_file("SHOW LIKE \"**/(\""), ORMAK_ERROR_INVALID_REGULAR_EXPRESSION);

    EXPECT_EQ(refuse_in_file("SHOW LIKE \"**\" DEEP -1"), ORMAK_ERROR_INVALID_VALUE);
    EXPECT_EQ(said, "Error when showing objects as deep value is not equal to or greater than 0");
}

TEST_F(ObjectListing, WhereIsReadButChangesNothing) {
    EXPECT_EQ(show("SHOW LIKE \"**\" WHERE DATA TYPE <> INT OR TYPE = GROUP"), show("SHOW LIKE \"**\""));
}
