// CREATE GROUP, checked on disk through HDF5.
#include "OrmakPrivateStructures.h"
#include "OrmakTest.h"

class Groups : public OrmakTest {
protected:
    void SetUp() override {
        OrmakTest::SetUp();
        ASSERT_EQ(run("CREATE FILE a.h5, other.h5; USE FILE a.h5"), 0);
    }

    static bool exists(const char *path, const char *file_name = "a.h5") {
        hid_t file = H5Fopen(file_name, H5F_ACC_RDONLY, H5P_DEFAULT);
        bool found = H5Lexists(file, path, H5P_DEFAULT) > 0;
        H5Fclose(file);
        return found;
    }

    /* Link order flags, link phase change, attribute order flags and attribute phase change. */
    static std::vector<unsigned> creation(const char *path) {
        std::vector<unsigned> values(6);
        hid_t file = H5Fopen("a.h5", H5F_ACC_RDONLY, H5P_DEFAULT);
        hid_t group = H5Gopen2(file, path, H5P_DEFAULT);
        hid_t list = H5Gget_create_plist(group);
        H5Pget_link_creation_order(list, &values[0]);
        H5Pget_link_phase_change(list, &values[1], &values[2]);
        H5Pget_attr_creation_order(list, &values[3]);
        H5Pget_attr_phase_change(list, &values[4], &values[5]);
        H5Pclose(list);
        H5Gclose(group);
        H5Fclose(file);
        return values;
    }
};

TEST_F(Groups, MissingParentsAreMadeWithTheSameProperties) {
    ASSERT_EQ(run("CREATE GROUP a/b/c ORDER INDEXED STORAGE COMPACT 4 DENSE 2 ATTRIBUTE ORDER TRACKED "
                  "ATTRIBUTE STORAGE COMPACT 6 DENSE 3"),
              0)
        << message();
    const std::vector<unsigned> expected = {H5P_CRT_ORDER_TRACKED | H5P_CRT_ORDER_INDEXED, 4, 2,
                                            H5P_CRT_ORDER_TRACKED, 6, 3};
    for (const char *path : {"/a", "/a/b", "/a/b/c"}) EXPECT_EQ(creation(path), expected) << path;
}

TEST_F(Groups, TruncateReplacesOnlyTheLastComponent) {
    ASSERT_EQ(run("CREATE GROUP p/q; CREATE DATASET p/data AS INT"), 0);
    EXPECT_EQ(run("CREATE GROUP p/q"), ORMAK_ERROR_ALREADY_EXISTS);
    EXPECT_EQ(message(), "Error when creating group \"p/q\" as it already exists");
    EXPECT_EQ(run("CREATE TRUNCATE GROUP p/q, p/data ORDER TRACKED"), 0);
    EXPECT_EQ(creation("/p")[0], 0u);
    EXPECT_EQ(creation("/p/data")[0], unsigned(H5P_CRT_ORDER_TRACKED));
}

TEST_F(Groups, NamesStartAtTheCurrentGroupOrTheNamedFilesRoot) {
    ASSERT_EQ(run("CREATE GROUP g; USE GROUP g; CREATE GROUP x, ../y"), 0);
    // The file in use named again is opened a second time, at its root.
    ASSERT_EQ(run("CREATE GROUP a.h5 w, other.h5 v/u"), 0);
    EXPECT_EQ(file_use_count, 1);
    EXPECT_STREQ(current_file->group_name, "/g");
    for (const char *path : {"/g/x", "/y", "/w"}) EXPECT_TRUE(exists(path)) << path;
    EXPECT_TRUE(exists("/v/u", "other.h5"));
}

TEST_F(Groups, ListsStopAtTheFirstFailingItem) {
    EXPECT_EQ(run("CREATE GROUP same, same"), ORMAK_ERROR_ALREADY_EXISTS);
    EXPECT_EQ(run("CREATE GROUP other.h5 fine, missing.h5 g"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(message(), "Error when opening file \"missing.h5\" as it does not exist");
    EXPECT_EQ(file_use_count, 1);
    EXPECT_TRUE(exists("/same"));
    EXPECT_TRUE(exists("/fine", "other.h5"));
}

TEST_F(Groups, BadValuesAreRefusedBeforeAnyItem) {
    EXPECT_EQ(run("CREATE GROUP first, second STORAGE COMPACT -1 DENSE 2"), ORMAK_ERROR_INVALID_VALUE);
    EXPECT_EQ(message(), "Error when creating group \"first\" as object storage max compact is not equal to or greater than 0");
    // The library refuses a dense threshold above the compact one.
    EXPECT_EQ(run("CREATE GROUP first STORAGE COMPACT 2 DENSE 10"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(message(), "Error when setting storage to create group \"first\"");
    EXPECT_FALSE(exists("/first"));
}

TEST_F(Groups, FlushesWhenAsked) {
    ASSERT_EQ(run("SET FLUSH ENABLE; CREATE GROUP flushed; SET FLUSH DISABLE"), 0);
    // Flushed, a second reader sees the group while the file is still open for writing.
    EXPECT_TRUE(exists("/flushed"));
}
