// SHOW statements that tell properties of objects and the size of files.
#include <string.h>
#include <sys/stat.h>

#include "CursorValues.h"
#include "OrmakPrivateStructures.h"
#include "OrmakTest.h"

namespace {

/* a.h5 holds d, made by HDF5 directly: chunked 4 x 3 with deflate, allocated early, fill value
   7, extendible in its first dimension, attributes in tracked order, and its last chunk of the
   first dimension (rows 8 and 9) stored with the deflate filter skipped. */
void make_d() {
    hid_t file = H5Fcreate("a.h5", H5F_ACC_TRUNC, H5P_DEFAULT, H5P_DEFAULT);
    hid_t creation = H5Pcreate(H5P_DATASET_CREATE);
    hsize_t chunk[2] = {4, 3}, dims[2] = {10, 6}, max[2] = {H5S_UNLIMITED, 6};
    H5Pset_chunk(creation, 2, chunk);
    H5Pset_deflate(creation, 1);
    H5Pset_alloc_time(creation, H5D_ALLOC_TIME_EARLY);
    int seven = 7;
    H5Pset_fill_value(creation, H5T_NATIVE_INT, &seven);
    H5Pset_attr_creation_order(creation, H5P_CRT_ORDER_TRACKED);
    hid_t space = H5Screate_simple(2, dims, max);
    hid_t d = H5Dcreate2(file, "d", H5T_STD_I32LE, space, H5P_DEFAULT, creation, H5P_DEFAULT);
    std::vector<int> values(60, 1);
    H5Dwrite(d, H5T_NATIVE_INT, H5S_ALL, H5S_ALL, H5P_DEFAULT, values.data());
    hsize_t offset[2] = {8, 0};
    int raw[12] = {};
    H5Dwrite_chunk(d, H5P_DEFAULT, 1, offset, sizeof raw, raw);
    H5Dclose(d);
    H5Sclose(space);
    H5Pclose(creation);
    H5Fclose(file);
}

class ShowProperties : public OrmakTest {
protected:
    /* Beside d: a group with indexed link order and an attribute, contiguous big-endian doubles
       with a UTF-8 string attribute, a compact text, a tagged opaque, variable-length ints with
       4 members in all, a compound, and soft, dangling and external links. */
    void SetUp() override {
        OrmakTest::SetUp();
        make_d();
        ASSERT_EQ(run("CREATE FILE b.h5; USE FILE a.h5; CREATE DATASET b.h5 /x AS BIG ENDIAN SMALLINT(5); "
                      "CREATE GROUP g ORDER INDEXED; CREATE ATTRIBUTE g/ga AS INT; "
                      "CREATE DATASET c AS BIG ENDIAN DOUBLE(3); CREATE ATTRIBUTE c/name AS UTF8 VARCHAR; "
                      "CREATE COMPACT DATASET s AS CHAR(4); CREATE DATASET o AS OPAQUE(2, 5) TAG \"blob\"; "
                      "CREATE DATASET v AS VARINT(2) VALUES((1, 2, 3), 4); "
                      "CREATE DATASET k AS COMPOUND(a AS INT, b AS FLOAT)(2); CREATE LINK l TO /g; "
                      "CREATE LINK dl TO /nowhere; CREATE EXTERNAL LINK e TO b.h5 /x; CLOSE FILE"),
                  0)
            << message();
    }
};

} // namespace

TEST_F(ShowProperties, TypeOfEveryKindOfName) {
    ASSERT_EQ(run("USE FILE a.h5; SHOW TYPE g, d, l, e, g/ga, d/.., d/../g"), 0) << message();
    EXPECT_EQ(ormak_cursor_get_data_type(nullptr), ORMAK_INT);
    EXPECT_EQ(cursor_ints(),
              (Ints{ORMAK_GROUP, ORMAK_DATASET, ORMAK_GROUP + ORMAK_SOFT_LINK, ORMAK_DATASET + ORMAK_EXTERNAL_LINK,
                    ORMAK_ATTRIBUTE, ORMAK_GROUP, ORMAK_GROUP}));

    // A failing item ends the statement; the values before it stay in the cursor and the
    // count of the last statement is left alone.
    EXPECT_EQ(refuse("SHOW TYPE d, g; SHOW TYPE g, nothing, d"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(said, "Error when showing type of object \"nothing\" as it does not exist");
    EXPECT_EQ(cursor_ints(), Ints{ORMAK_GROUP});
    EXPECT_EQ(_ormak_get_last_data_count(), 2u);

    // Items may name their own file.
    ASSERT_EQ(run("CLOSE ALL FILE; SHOW TYPE b.h5 x, a.h5 /l"), 0) << message();
    EXPECT_EQ(cursor_ints(), (Ints{ORMAK_DATASET, ORMAK_GROUP + ORMAK_SOFT_LINK}));
    // The file opened for an item is closed after it.
    EXPECT_EQ(file_use_count, 0);
    EXPECT_EQ(refuse("SHOW TYPE g"), ORMAK_ERROR_NOT_OPEN);
}

TEST_F(ShowProperties, DataTypeEndiannessCharsetAndTag) {
    ASSERT_EQ(run("USE FILE a.h5; SHOW DATA TYPE d, c, s, o, v, k, c/name, g/ga, e"), 0) << message();
    EXPECT_EQ(cursor_ints(), (Ints{ORMAK_INT, ORMAK_DOUBLE, ORMAK_CHAR, ORMAK_OPAQUE, ORMAK_VARINT, ORMAK_COMPOUND,
                                     ORMAK_VARCHAR, ORMAK_INT, ORMAK_SMALLINT}));
    ASSERT_EQ(run("SHOW ENDIANNESS d, c, e, s"), 0) << message();
    EXPECT_EQ(cursor_ints(), (Ints{ORMAK_LITTLE_ENDIAN, ORMAK_BIG_ENDIAN, ORMAK_BIG_ENDIAN, -1}));
    // Only strings have a character set.
    ASSERT_EQ(run("SHOW CHARSET c/name, s, d"), 0) << message();
    EXPECT_EQ(cursor_ints(), (Ints{ORMAK_UTF8, ORMAK_ASCII, -1}));

    ASSERT_EQ(run("SHOW TAG o"), 0) << message();
    EXPECT_EQ(ormak_cursor_get_data_type(nullptr), ORMAK_VARCHAR);
    ormak_cursor_first(nullptr);
    EXPECT_STREQ(ormak_cursor_get_char(nullptr), "blob");
    EXPECT_EQ(refuse("SHOW TAG o, d"), ORMAK_ERROR_UNEXPECTED_DATA_TYPE);
    EXPECT_EQ(said, "Error when showing tag of dataset \"d\" as data type is not opaque");

    // The kind of object narrows the names.
    EXPECT_EQ(refuse("SHOW DATASET DATA TYPE g"), ORMAK_ERROR_UNEXPECTED_TYPE);
    EXPECT_EQ(said, "Error when showing data type of object \"g\" as it is not a dataset");
    EXPECT_EQ(refuse("SHOW DATA TYPE g"), ORMAK_ERROR_UNEXPECTED_TYPE);
    EXPECT_EQ(said, "Error when showing data type of object \"g\" as it is neither a dataset nor an attribute");
}

TEST_F(ShowProperties, SizeIsTheBytesOfTheStoredValues) {
    ASSERT_EQ(run("USE FILE a.h5; SHOW SIZE d, c, s, o, v, c/name"), 0) << message();
    EXPECT_EQ(ormak_cursor_get_data_type(nullptr), ORMAK_UNSIGNED_BIGINT);
    // Members of a variable-length dataset count, those of an attribute do not.
    EXPECT_EQ(cursor_ints(), (Ints{240, 24, 4, 10, 16, 0}));
    EXPECT_EQ(refuse("SHOW SIZE k"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(said, "Error when getting information about dataset \"k\"");
}

TEST_F(ShowProperties, DimensionsOfOneName) {
    ASSERT_EQ(run("USE FILE a.h5; SHOW DIMENSION d"), 0) << message();
    EXPECT_EQ(ormak_cursor_get_data_type(nullptr), ORMAK_BIGINT);
    EXPECT_EQ(cursor_ints(), (Ints{10, 6}));
    ASSERT_EQ(run("SHOW MAX DIMENSION d"), 0) << message();
    EXPECT_EQ(cursor_ints(), (Ints{-1, 6}));
    ASSERT_EQ(run("SHOW DATASET DIMENSION b.h5 /x"), 0) << message();
    EXPECT_EQ(cursor_ints(), Ints{5});
    EXPECT_EQ(refuse("SHOW ATTRIBUTE MAX DIMENSION d"), ORMAK_ERROR_NOT_FOUND);

    // The checks of the name come before the INTO clause is read.
    ASSERT_EQ(run("CLOSE ALL FILE"), 0);
    EXPECT_EQ(refuse("SHOW DIMENSION d INTO MEMORY 7"), ORMAK_ERROR_NOT_OPEN);
    ASSERT_EQ(run("SHOW MAX DIMENSION a.h5 d TOP 1"), 0) << message();
    EXPECT_EQ(cursor_ints(), Ints{-1});
}

TEST_F(ShowProperties, StorageOfDatasets) {
    ASSERT_EQ(run("USE FILE a.h5; SHOW STORAGE TYPE d, c, s"), 0) << message();
    EXPECT_EQ(cursor_ints(), (Ints{ORMAK_CHUNKED, ORMAK_CONTIGUOUS, ORMAK_COMPACT}));
    // HDF5's own defaults: late for contiguous, early for compact.
    ASSERT_EQ(run("SHOW STORAGE ALLOCATION d, c, s"), 0) << message();
    EXPECT_EQ(cursor_ints(), (Ints{ORMAK_EARLY, ORMAK_LATE, ORMAK_EARLY}));
    ASSERT_EQ(run("SHOW FILL TYPE d, c"), 0) << message();
    EXPECT_EQ(cursor_ints(), (Ints{ORMAK_FILL_USER_DEFINED, ORMAK_FILL_DEFAULT}));

    ASSERT_EQ(run("SHOW STORAGE DIMENSION d"), 0) << message();
    EXPECT_EQ(cursor_ints(), (Ints{4, 3}));
}

TEST_F(ShowProperties, MaskOfAChunk) {
    ASSERT_EQ(run("USE FILE a.h5; SHOW MASK d, d(0, 1), d(-1, 0), d(2), d(-3, -1)"), 0) << message();
    EXPECT_EQ(ormak_cursor_get_data_type(nullptr), ORMAK_UNSIGNED_INT);
    // The last chunk of 10 rows by 4 begins at row 8; it was stored with the filter skipped.
    EXPECT_EQ(cursor_ints(), (Ints{0, 0, 1, 1, 0}));

    EXPECT_EQ(refuse("SHOW MASK d(3, 0)"), ORMAK_ERROR_INVALID_VALUE);
    EXPECT_EQ(said, "Error when showing (filter) mask of dataset \"d\" as chunk number is not lower than dimension");
    EXPECT_EQ(refuse("SHOW MASK c"), ORMAK_ERROR_UNEXPECTED_STORAGE_TYPE);
    EXPECT_EQ(said, "Error when showing (filter) mask of dataset \"c\" as storage type is not chunked");
}

TEST_F(ShowProperties, OrderOfLinksAndAttributes) {
    ASSERT_EQ(run("USE FILE a.h5; SHOW ORDER g, l, g/.."), 0) << message();
    EXPECT_EQ(cursor_ints(), (Ints{ORMAK_INDEXED, ORMAK_INDEXED, -1}));
    ASSERT_EQ(run("SHOW ATTRIBUTE ORDER d, g, c"), 0) << message();
    EXPECT_EQ(cursor_ints(), (Ints{ORMAK_TRACKED, -1, -1}));
    EXPECT_EQ(refuse("SHOW ORDER d"), ORMAK_ERROR_UNEXPECTED_TYPE);
    EXPECT_EQ(said, "Error when showing order of object \"d\" as it is not a group");
}

TEST_F(ShowProperties, FileSize) {
    struct stat a, b;
    ASSERT_EQ(stat("a.h5", &a), 0);
    ASSERT_EQ(stat("b.h5", &b), 0);
    // Named files need no file in use.
    ASSERT_EQ(run("SHOW FILE SIZE a.h5, b.h5"), 0) << message();
    EXPECT_EQ(ormak_cursor_get_data_type(nullptr), ORMAK_UNSIGNED_BIGINT);
    EXPECT_EQ(cursor_ints(), (Ints{a.st_size, b.st_size}));
    EXPECT_EQ(refuse("SHOW FILE SIZE"), ORMAK_ERROR_NOT_OPEN);
    ASSERT_EQ(run("USE FILE b.h5; SHOW FILE SIZE"), 0) << message();
    EXPECT_EQ(cursor_ints(), Ints{b.st_size});
}
