// CREATE GROUP, checked on disk through HDF5.
#include "OrmakPrivateStructures.h"
#include "OrmakTest.h"

class Groups : public OrmakTest {
protected:
    void SetUp() override {
        OrmakTest::SetUp();
        ASSERT_EQ(run("CREATE FILE a.h5, other.h5; USE FILE a.h5"), 0);
    }

    /* Opens a.h5 a second time, read-only, for checks beside the session. */
    struct Reader {
        hid_t file;
        explicit Reader(const char *name = "a.h5") { file = H5Fopen(name, H5F_ACC_RDONLY, H5P_DEFAULT); }
        ~Reader() { H5Fclose(file); }
        bool exists(const char *path) const { return H5Lexists(file, path, H5P_DEFAULT) > 0; }
        H5O_type_t type(const char *path) const {
            H5O_info_t info;
            if (H5Oget_info_by_name2(file, path, &info, H5O_INFO_BASIC, H5P_DEFAULT) < 0) return H5O_TYPE_UNKNOWN;
            return info.type;
        }
        /* Link order flags, link phase change, attribute order flags and attribute phase change. */
        void creation(const char *path, unsigned &link_order, unsigned &max_compact, unsigned &min_dense,
                      unsigned &attribute_order, unsigned &attribute_compact, unsigned &attribute_dense) const {
            hid_t group = H5Gopen2(file, path, H5P_DEFAULT);
            hid_t list = H5Gget_create_plist(group);
            H5Pget_link_creation_order(list, &link_order);
            H5Pget_link_phase_change(list, &max_compact, &min_dense);
            H5Pget_attr_creation_order(list, &attribute_order);
            H5Pget_attr_phase_change(list, &attribute_compact, &attribute_dense);
            H5Pclose(list);
            H5Gclose(group);
        }
    };
};

TEST_F(Groups, MissingParentsAreMadeWithTheSameProperties) {
    ASSERT_EQ(run("CREATE GROUP a/b/c ORDER INDEXED STORAGE COMPACT 4 DENSE 2 ATTRIBUTE ORDER TRACKED "
                  "ATTRIBUTE STORAGE COMPACT 6 DENSE 3"),
              0)
        << message();
    Reader reader;
    for (const char *path : {"/a", "/a/b", "/a/b/c"}) {
        SCOPED_TRACE(path);
        ASSERT_EQ(reader.type(path), H5O_TYPE_GROUP);
        unsigned order, compact, dense, attribute_order, attribute_compact, attribute_dense;
        reader.creation(path, order, compact, dense, attribute_order, attribute_compact, attribute_dense);
        EXPECT_EQ(order, unsigned(H5P_CRT_ORDER_TRACKED | H5P_CRT_ORDER_INDEXED));
        EXPECT_EQ(compact, 4u);
        EXPECT_EQ(dense, 2u);
        EXPECT_EQ(attribute_order, unsigned(H5P_CRT_ORDER_TRACKED));
        EXPECT_EQ(attribute_compact, 6u);
        EXPECT_EQ(attribute_dense, 3u);
    }
}

TEST_F(Groups, TruncateReplacesOnlyTheLastComponent) {
    ASSERT_EQ(run("CREATE GROUP p/q"), 0);
    hsize_t one = 1;
    hid_t space = H5Screate_simple(1, &one, nullptr);
    H5Dclose(H5Dcreate2(current_file->file_id, "/p/data", H5T_NATIVE_INT, space, H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT));
    H5Sclose(space);
    EXPECT_EQ(run("CREATE GROUP p/q"), ORMAK_ERROR_ALREADY_EXISTS);
    EXPECT_EQ(message(), "Error when creating group \"p/q\" as it already exists");
    EXPECT_EQ(run("CREATE TRUNCATE GROUP p/q, p/data ORDER TRACKED"), 0);
    Reader reader;
    EXPECT_EQ(reader.type("/p/data"), H5O_TYPE_GROUP);
    unsigned order, compact, dense, attribute_order, attribute_compact, attribute_dense;
    reader.creation("/p", order, compact, dense, attribute_order, attribute_compact, attribute_dense);
    EXPECT_EQ(order, 0u);
    reader.creation("/p/q", order, compact, dense, attribute_order, attribute_compact, attribute_dense);
    EXPECT_EQ(order, unsigned(H5P_CRT_ORDER_TRACKED));
}

TEST_F(Groups, NamesStartAtTheCurrentGroupOrTheNamedFilesRoot) {
    ASSERT_EQ(run("CREATE GROUP g; USE GROUP g; CREATE GROUP x, ../y, /z"), 0);
    // The file in use named again is opened a second time, at its root.
    ASSERT_EQ(run("CREATE GROUP a.h5 w, other.h5 v/u"), 0);
    EXPECT_EQ(file_use_count, 1);
    EXPECT_STREQ(current_file->group_name, "/g");
    Reader reader;
    for (const char *path : {"/g/x", "/y", "/z", "/w"}) EXPECT_TRUE(reader.exists(path)) << path;
    EXPECT_FALSE(reader.exists("/g/w"));
    Reader other("other.h5");
    EXPECT_TRUE(other.exists("/v/u"));
}

TEST_F(Groups, ListsStopAtTheFirstFailingItem) {
    EXPECT_EQ(run("CREATE GROUP one, two/"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(message(), "Error when creating group \"two/\" as it should not end with \"/\"");
    EXPECT_EQ(run("CREATE GROUP same, same"), ORMAK_ERROR_ALREADY_EXISTS);
    EXPECT_EQ(run("CREATE GROUP other.h5 fine, missing.h5 g"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(message(), "Error when opening file \"missing.h5\" as it does not exist");
    EXPECT_EQ(file_use_count, 1);
    EXPECT_EQ(run("CREATE GROUP ."), ORMAK_ERROR_ALREADY_EXISTS);
    EXPECT_EQ(message(), "Error when creating group \".\" as it already exists");
    Reader reader;
    EXPECT_TRUE(reader.exists("/one"));
    EXPECT_TRUE(reader.exists("/same"));
    Reader other("other.h5");
    EXPECT_TRUE(other.exists("/fine"));
}

TEST_F(Groups, BadValuesAreRefusedBeforeAnyItem) {
    EXPECT_EQ(run("CREATE GROUP first, second STORAGE COMPACT -1 DENSE 2"), ORMAK_ERROR_INVALID_VALUE);
    EXPECT_EQ(message(), "Error when creating group \"first\" as object storage max compact is not equal to or greater than 0");
    EXPECT_EQ(run("CREATE GROUP first ATTRIBUTE STORAGE COMPACT 2 DENSE -3"), ORMAK_ERROR_INVALID_VALUE);
    EXPECT_EQ(message(),
              "Error when creating group \"first\" as attribute storage min density is not equal to or greater than 0");
    // The library refuses a dense threshold above the compact one.
    EXPECT_EQ(run("CREATE GROUP first STORAGE COMPACT 2 DENSE 10"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(message(), "Error when setting storage to create group \"first\"");
    Reader reader;
    EXPECT_FALSE(reader.exists("/first"));
}

TEST_F(Groups, NeedsAFileAndFlushesWhenAsked) {
    ASSERT_EQ(run("CLOSE FILE"), 0);
    EXPECT_EQ(run("CREATE GROUP g"), ORMAK_ERROR_NOT_OPEN);
    EXPECT_EQ(message(), "Error when creating group \"g\" as no file is in use");
    ASSERT_EQ(run("SET FLUSH ENABLE; USE FILE a.h5; CREATE GROUP flushed; SET FLUSH DISABLE"), 0);
    // Flushed, a second reader sees the group while the file is still open for writing.
    Reader reader;
    EXPECT_TRUE(reader.exists("/flushed"));
}
