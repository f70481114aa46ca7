// SHOW statements that tell properties of objects and the size of files, checked on files
// made with HDF5 directly against what HDF5 reports about them.
#include <string.h>
#include <sys/stat.h>

#include <string>
#include <vector>

#include "OrmakTest.h"

namespace {

using Ints = std::vector<int64_t>;

/* The values of the cursor in use, whatever their integer width. */
Ints cursor_values() {
    Ints values;
    const int type = ormak_cursor_get_data_type(nullptr);
    for (int i = 0; i < ormak_cursor_get_count(nullptr); i++) {
        ormak_cursor_absolute(nullptr, i);
        if (type == ORMAK_BIGINT || type == ORMAK_UNSIGNED_BIGINT)
            values.push_back(*ormak_cursor_get_bigint(nullptr));
        else
            values.push_back(*ormak_cursor_get_int(nullptr));
    }
    return values;
}

void attribute(hid_t object, const char *name, hid_t type) {
    hid_t space = H5Screate(H5S_SCALAR);
    hid_t attribute = H5Acreate2(object, name, type, space, H5P_DEFAULT, H5P_DEFAULT);
    H5Aclose(attribute);
    H5Sclose(space);
}

hid_t dataset(hid_t file, const char *name, hid_t type, std::vector<hsize_t> dims, hid_t creation = H5P_DEFAULT,
              std::vector<hsize_t> max = {}) {
    hid_t space = dims.empty() ? H5Screate(H5S_SCALAR)
                               : H5Screate_simple((int)dims.size(), dims.data(), max.empty() ? nullptr : max.data());
    hid_t id = H5Dcreate2(file, name, type, space, H5P_DEFAULT, creation, H5P_DEFAULT);
    H5Sclose(space);
    return id;
}

/* a.h5: a group with ordered links and attributes, datasets of every kind of storage and
   type, soft, dangling and external links to b.h5. */
void make_files() {
    hid_t b = H5Fcreate("b.h5", H5F_ACC_TRUNC, H5P_DEFAULT, H5P_DEFAULT);
    H5Dclose(dataset(b, "x", H5T_STD_I16BE, {5}));
    H5Fclose(b);

    hid_t file = H5Fcreate("a.h5", H5F_ACC_TRUNC, H5P_DEFAULT, H5P_DEFAULT);
    hid_t group_creation = H5Pcreate(H5P_GROUP_CREATE);
    H5Pset_link_creation_order(group_creation, H5P_CRT_ORDER_TRACKED | H5P_CRT_ORDER_INDEXED);
    hid_t group = H5Gcreate2(file, "g", H5P_DEFAULT, group_creation, H5P_DEFAULT);
    attribute(group, "ga", H5T_NATIVE_INT);
    H5Gclose(group);
    H5Pclose(group_creation);

    // d: chunked 4 x 3 with deflate, allocated early, fill value 7, extendible in its first
    // dimension, attributes in tracked order.
    hid_t creation = H5Pcreate(H5P_DATASET_CREATE);
    hsize_t chunk[2] = {4, 3};
    H5Pset_chunk(creation, 2, chunk);
    H5Pset_deflate(creation, 1);
    H5Pset_alloc_time(creation, H5D_ALLOC_TIME_EARLY);
    int seven = 7;
    H5Pset_fill_value(creation, H5T_NATIVE_INT, &seven);
    H5Pset_attr_creation_order(creation, H5P_CRT_ORDER_TRACKED);
    hid_t d = dataset(file, "d", H5T_STD_I32LE, {10, 6}, creation, {H5S_UNLIMITED, 6});
    std::vector<int> values(60, 1);
    H5Dwrite(d, H5T_NATIVE_INT, H5S_ALL, H5S_ALL, H5P_DEFAULT, values.data());
    // The last chunk of the first dimension (rows 8 and 9) stored with the deflate filter skipped.
    hsize_t offset[2] = {8, 0};
    int raw[12] = {};
    H5Dwrite_chunk(d, H5P_DEFAULT, 1, offset, sizeof raw, raw);
    H5Dclose(d);
    H5Pclose(creation);

    // c: contiguous big-endian doubles with a variable UTF-8 string attribute.
    hid_t c = dataset(file, "c", H5T_IEEE_F64BE, {3});
    hid_t utf8 = H5Tcopy(H5T_C_S1);
    H5Tset_size(utf8, H5T_VARIABLE);
    H5Tset_cset(utf8, H5T_CSET_UTF8);
    attribute(c, "name", utf8);
    H5Tclose(utf8);
    H5Dclose(c);

    // s: a compact scalar of 4 characters.
    creation = H5Pcreate(H5P_DATASET_CREATE);
    H5Pset_layout(creation, H5D_COMPACT);
    hid_t chars = H5Tcopy(H5T_C_S1);
    H5Tset_size(chars, 4);
    H5Dclose(dataset(file, "s", chars, {}, creation));
    H5Tclose(chars);
    H5Pclose(creation);

    // o: opaque with a tag; v: variable-length ints with 4 members in all; k: a compound;
    // u: no fill value.
    hid_t opaque = H5Tcreate(H5T_OPAQUE, 5);
    H5Tset_tag(opaque, "blob");
    H5Dclose(dataset(file, "o", opaque, {2}));
    H5Tclose(opaque);
    hid_t vlen = H5Tvlen_create(H5T_NATIVE_INT);
    hid_t v = dataset(file, "v", vlen, {2});
    int first[3] = {1, 2, 3}, second[1] = {4};
    hvl_t rows[2] = {{3, first}, {1, second}};
    H5Dwrite(v, vlen, H5S_ALL, H5S_ALL, H5P_DEFAULT, rows);
    H5Dclose(v);
    H5Tclose(vlen);
    hid_t compound = H5Tcreate(H5T_COMPOUND, 8);
    H5Tinsert(compound, "a", 0, H5T_NATIVE_INT);
    H5Tinsert(compound, "b", 4, H5T_NATIVE_FLOAT);
    H5Dclose(dataset(file, "k", compound, {2}));
    H5Tclose(compound);
    creation = H5Pcreate(H5P_DATASET_CREATE);
    H5Pset_fill_value(creation, H5T_NATIVE_INT, nullptr);
    H5Dclose(dataset(file, "u", H5T_NATIVE_INT, {2}, creation));
    H5Pclose(creation);

    H5Lcreate_soft("/g", file, "l", H5P_DEFAULT, H5P_DEFAULT);
    H5Lcreate_soft("/nowhere", file, "dl", H5P_DEFAULT, H5P_DEFAULT);
    H5Lcreate_external("b.h5", "/x", file, "e", H5P_DEFAULT, H5P_DEFAULT);
    H5Lcreate_external("missing.h5", "/x", file, "de", H5P_DEFAULT, H5P_DEFAULT);
    H5Fclose(file);
}

class ShowProperties : public OrmakTest {
protected:
    void SetUp() override {
        OrmakTest::SetUp();
        make_files();
    }
};

} // namespace

TEST_F(ShowProperties, TypeOfEveryKindOfName) {
    ASSERT_EQ(run("USE FILE a.h5; SHOW TYPE g, d, l, e, g/ga, d/.., d/../g"), 0) << message();
    EXPECT_EQ(ormak_cursor_get_data_type(nullptr), ORMAK_INT);
    EXPECT_EQ(cursor_values(),
              (Ints{ORMAK_GROUP, ORMAK_DATASET, ORMAK_GROUP + ORMAK_SOFT_LINK, ORMAK_DATASET + ORMAK_EXTERNAL_LINK,
                    ORMAK_ATTRIBUTE, ORMAK_GROUP, ORMAK_GROUP}));

    EXPECT_EQ(refuse("SHOW TYPE dl"), ORMAK_ERROR_DANGLING_LINK);
    EXPECT_EQ(said, "Error when opening object \"dl\" as it is a dangling link");
    EXPECT_EQ(refuse("SHOW TYPE no/such"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(said, "Error when showing type of object \"no/such\" as it does not exist");

    // A failing item ends the statement; the values before it stay in the cursor and the
    // count of the last statement is left alone.
    EXPECT_EQ(refuse("SHOW TYPE d, g; SHOW TYPE g, nothing, d"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(said, "Error when showing type of object \"nothing\" as it does not exist");
    EXPECT_EQ(cursor_values(), Ints{ORMAK_GROUP});
    EXPECT_EQ(_ormak_get_last_data_count(), 2u);

    // Items may name their own file; a trailing "/" and a missing file in use are refused.
    ASSERT_EQ(run("CLOSE ALL FILE; SHOW TYPE b.h5 x, a.h5 /l"), 0) << message();
    EXPECT_EQ(cursor_values(), (Ints{ORMAK_DATASET, ORMAK_GROUP + ORMAK_SOFT_LINK}));
    EXPECT_EQ(refuse("SHOW TYPE g"), ORMAK_ERROR_NOT_OPEN);
    EXPECT_EQ(said, "Error when showing type of object \"g\" as no file is in use");
    EXPECT_EQ(refuse("SHOW TYPE a.h5 g/"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(said, "Error when showing type of object \"g/\" as it should not end with \"/\"");
}

TEST_F(ShowProperties, DataTypeEndiannessCharsetAndTag) {
    ASSERT_EQ(run("USE FILE a.h5; SHOW DATA TYPE d, c, s, o, v, k, c/name, g/ga, e"), 0) << message();
    EXPECT_EQ(cursor_values(), (Ints{ORMAK_INT, ORMAK_DOUBLE, ORMAK_CHAR, ORMAK_OPAQUE, ORMAK_VARINT, ORMAK_COMPOUND,
                                     ORMAK_VARCHAR, ORMAK_INT, ORMAK_SMALLINT}));
    ASSERT_EQ(run("SHOW ENDIANNESS d, c, e, s"), 0) << message();
    EXPECT_EQ(cursor_values(), (Ints{ORMAK_LITTLE_ENDIAN, ORMAK_BIG_ENDIAN, ORMAK_BIG_ENDIAN, -1}));
    // Only strings have a character set.
    ASSERT_EQ(run("SHOW CHARSET c/name, s, d"), 0) << message();
    EXPECT_EQ(cursor_values(), (Ints{ORMAK_UTF8, ORMAK_ASCII, -1}));

    ASSERT_EQ(run("SHOW TAG o"), 0) << message();
    EXPECT_EQ(ormak_cursor_get_data_type(nullptr), ORMAK_VARCHAR);
    ormak_cursor_first(nullptr);
    EXPECT_STREQ(ormak_cursor_get_char(nullptr), "blob");
    EXPECT_EQ(refuse("SHOW TAG o, d"), ORMAK_ERROR_UNEXPECTED_DATA_TYPE);
    EXPECT_EQ(said, "Error when showing tag of dataset \"d\" as data type is not opaque");

    // The kind of object narrows the names.
    EXPECT_EQ(refuse("SHOW DATASET DATA TYPE g"), ORMAK_ERROR_UNEXPECTED_TYPE);
    EXPECT_EQ(said, "Error when showing data type of object \"g\" as it is not a dataset");
    EXPECT_EQ(refuse("SHOW DATASET ENDIANNESS c/name"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(said, "Error when showing endianness of dataset \"c/name\" as it does not exist");
    EXPECT_EQ(refuse("SHOW ATTRIBUTE CHARSET c"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(said, "Error when showing charset of attribute \"c\" as it does not exist");
    ASSERT_EQ(run("SHOW AT DATA TYPE g/ga"), 0) << message();
    EXPECT_EQ(cursor_values(), Ints{ORMAK_INT});
    EXPECT_EQ(refuse("SHOW DATA TYPE g"), ORMAK_ERROR_UNEXPECTED_TYPE);
    EXPECT_EQ(said, "Error when showing data type of object \"g\" as it is neither a dataset nor an attribute");
    EXPECT_EQ(refuse("SHOW ATTRIBUTE DATA TYPE dl/a"), ORMAK_ERROR_DANGLING_LINK);
}

TEST_F(ShowProperties, SizeIsTheBytesOfTheStoredValues) {
    ASSERT_EQ(run("USE FILE a.h5; SHOW SIZE d, c, s, o, v, c/name"), 0) << message();
    EXPECT_EQ(ormak_cursor_get_data_type(nullptr), ORMAK_UNSIGNED_BIGINT);
    // Members of a variable-length dataset count, those of an attribute do not.
    EXPECT_EQ(cursor_values(), (Ints{240, 24, 4, 10, 16, 0}));
    EXPECT_EQ(refuse("SHOW SIZE k"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(said, "Error when getting information about dataset \"k\"");
}

TEST_F(ShowProperties, DimensionsOfOneName) {
    ASSERT_EQ(run("USE FILE a.h5; SHOW DIMENSION d"), 0) << message();
    EXPECT_EQ(ormak_cursor_get_data_type(nullptr), ORMAK_BIGINT);
    EXPECT_EQ(cursor_values(), (Ints{10, 6}));
    ASSERT_EQ(run("SHOW MAX DIMENSION d"), 0) << message();
    EXPECT_EQ(cursor_values(), (Ints{-1, 6}));
    ASSERT_EQ(run("SHOW DIMENSION s"), 0) << message();
    EXPECT_EQ(ormak_cursor_get_count(nullptr), 0);
    ASSERT_EQ(run("SHOW DATASET DIMENSION b.h5 /x"), 0) << message();
    EXPECT_EQ(cursor_values(), Ints{5});
    EXPECT_EQ(refuse("SHOW ATTRIBUTE MAX DIMENSION d"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(said, "Error when showing maximum dimensions of attribute \"d\" as it does not exist");

    // The checks of the name come before the INTO clause is read.
    ASSERT_EQ(run("CLOSE ALL FILE"), 0);
    EXPECT_EQ(refuse("SHOW DIMENSION d INTO MEMORY 7"), ORMAK_ERROR_NOT_OPEN);
    EXPECT_EQ(said, "Error when showing dimensions of object \"d\" as no file is in use");
    EXPECT_EQ(refuse("SHOW DIMENSION a.h5 d/ INTO MEMORY 7"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(said, "Error when showing dimensions of object \"d/\" as it should not end with \"/\"");
    ASSERT_EQ(run("SHOW MAX DIMENSION a.h5 d TOP 1"), 0) << message();
    EXPECT_EQ(cursor_values(), Ints{-1});
}

TEST_F(ShowProperties, StorageOfDatasets) {
    ASSERT_EQ(run("USE FILE a.h5; SHOW STORAGE TYPE d, c, s"), 0) << message();
    EXPECT_EQ(cursor_values(), (Ints{ORMAK_CHUNKED, ORMAK_CONTIGUOUS, ORMAK_COMPACT}));
    // HDF5's own defaults: late for contiguous, early for compact.
    ASSERT_EQ(run("SHOW STORAGE ALLOCATION d, c, s"), 0) << message();
    EXPECT_EQ(cursor_values(), (Ints{ORMAK_EARLY, ORMAK_LATE, ORMAK_EARLY}));
    ASSERT_EQ(run("SHOW FILL TYPE d, c, u"), 0) << message();
    EXPECT_EQ(cursor_values(), (Ints{ORMAK_FILL_USER_DEFINED, ORMAK_FILL_DEFAULT, ORMAK_FILL_UNDEFINED}));

    ASSERT_EQ(run("SHOW STORAGE DIMENSION d"), 0) << message();
    EXPECT_EQ(cursor_values(), (Ints{4, 3}));
    ASSERT_EQ(run("SHOW STORAGE DIMENSION c"), 0) << message();
    EXPECT_EQ(ormak_cursor_get_count(nullptr), 0);

    EXPECT_EQ(refuse("SHOW STORAGE TYPE g/ga"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(said, "Error when showing storage type of dataset \"g/ga\" as it does not exist");
    EXPECT_EQ(refuse("SHOW FILL TYPE d, g"), ORMAK_ERROR_UNEXPECTED_TYPE);
    EXPECT_EQ(said, "Error when showing fill type of object \"g\" as it is not a dataset");
    EXPECT_EQ(refuse("SHOW STORAGE DIMENSION de"), ORMAK_ERROR_DANGLING_LINK);
}

TEST_F(ShowProperties, MaskOfAChunk) {
    ASSERT_EQ(run("USE FILE a.h5; SHOW MASK d, d(0, 1), d(-1, 0), d(2), d(-3, -1)"), 0) << message();
    EXPECT_EQ(ormak_cursor_get_data_type(nullptr), ORMAK_UNSIGNED_INT);
    // The last chunk of 10 rows by 4 begins at row 8; it was stored with the filter skipped.
    EXPECT_EQ(cursor_values(), (Ints{0, 0, 1, 1, 0}));

    EXPECT_EQ(refuse("SHOW MASK d(3, 0)"), ORMAK_ERROR_INVALID_VALUE);
    EXPECT_EQ(said, "Error when showing (filter) mask of dataset \"d\" as chunk number is not lower than dimension");
    EXPECT_EQ(refuse("SHOW MASK d(-4)"), ORMAK_ERROR_INVALID_VALUE);
    EXPECT_EQ(said,
              "Error when showing (filter) mask of dataset \"d\" as chunk number is not equal to or greater than 0");
    EXPECT_EQ(refuse("SHOW MASK c"), ORMAK_ERROR_UNEXPECTED_STORAGE_TYPE);
    EXPECT_EQ(said, "Error when showing (filter) mask of dataset \"c\" as storage type is not chunked");
}

TEST_F(ShowProperties, OrderOfLinksAndAttributes) {
    ASSERT_EQ(run("USE FILE a.h5; SHOW ORDER g, l, g/.."), 0) << message();
    EXPECT_EQ(cursor_values(), (Ints{ORMAK_INDEXED, ORMAK_INDEXED, -1}));
    ASSERT_EQ(run("SHOW ATTRIBUTE ORDER d, g, c"), 0) << message();
    EXPECT_EQ(cursor_values(), (Ints{ORMAK_TRACKED, -1, -1}));
    EXPECT_EQ(refuse("SHOW ORDER d"), ORMAK_ERROR_UNEXPECTED_TYPE);
    EXPECT_EQ(said, "Error when showing order of object \"d\" as it is not a group");
    EXPECT_EQ(refuse("SHOW ATTRIBUTE ORDER nothing"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(said, "Error when showing attribute order of object \"nothing\" as it does not exist");
    EXPECT_EQ(refuse("SHOW ORDER dl"), ORMAK_ERROR_DANGLING_LINK);
}

TEST_F(ShowProperties, FileSize) {
    struct stat a, b;
    ASSERT_EQ(stat("a.h5", &a), 0);
    ASSERT_EQ(stat("b.h5", &b), 0);
    // Named files need no file in use.
    ASSERT_EQ(run("SHOW FILE SIZE a.h5, b.h5"), 0) << message();
    EXPECT_EQ(ormak_cursor_get_data_type(nullptr), ORMAK_UNSIGNED_BIGINT);
    EXPECT_EQ(cursor_values(), (Ints{a.st_size, b.st_size}));
    EXPECT_EQ(refuse("SHOW FILE SIZE"), ORMAK_ERROR_NOT_OPEN);
    EXPECT_EQ(said, "Error when showing size of file as no file is in use");
    ASSERT_EQ(run("USE FILE b.h5; SHOW FILE SIZE"), 0) << message();
    EXPECT_EQ(cursor_values(), Ints{b.st_size});

    ASSERT_EQ(mkdir("dir", 0755), 0);
    EXPECT_EQ(refuse("SHOW FILE SIZE a.h5, missing.h5"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(said, "Error when showing size of file \"missing.h5\" as it does not exist");
    EXPECT_EQ(refuse("SHOW FILE SIZE dir/"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(said, "Error when showing size of file \"dir/\" as it should not end with \"/\"");
}
