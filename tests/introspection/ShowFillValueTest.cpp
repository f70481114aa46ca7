// SHOW FILL VALUE: the fill value of datasets of every type HDF5 lets the language hold,
// defined by HDF5 directly, into the cursor and out through post-processing and memory.
#include <string.h>

#include <string>
#include <vector>

#include "OrmakTest.h"

namespace {

/* A dataset of two elements of `type` whose fill value is `fill` in `memory_type` (null:
   undefined), or HDF5's default with `use_default`. */
void dataset(hid_t file, const char *name, hid_t type, const void *fill, bool use_default = false,
             hid_t memory_type = -1) {
    hid_t creation = H5Pcreate(H5P_DATASET_CREATE);
    if (!use_default) H5Pset_fill_value(creation, memory_type >= 0 ? memory_type : type, fill);
    hsize_t dims[1] = {2};
    hid_t space = H5Screate_simple(1, dims, nullptr);
    H5Dclose(H5Dcreate2(file, name, type, space, H5P_DEFAULT, creation, H5P_DEFAULT));
    H5Sclose(space);
    H5Pclose(creation);
}

void make_file(const char *file_name) {
    hid_t file = H5Fcreate(file_name, H5F_ACC_TRUNC, H5P_DEFAULT, H5P_DEFAULT);
    const signed char tiny = -3;
    dataset(file, "n8", H5T_STD_I8LE, &tiny);
    dataset(file, "n16", H5T_STD_U16LE, nullptr, true);
    // Stored big-endian: the value comes out in the machine's order.
    const int64_t big = -1234567890123LL;
    dataset(file, "n64", H5T_STD_I64BE, &big, false, H5T_NATIVE_INT64);
    const float real = 1.5f;
    dataset(file, "f32", H5T_IEEE_F32BE, &real, false, H5T_NATIVE_FLOAT);
    const double precise = -2.25;
    dataset(file, "f64", H5T_IEEE_F64LE, &precise);
    dataset(file, "nofill", H5T_NATIVE_INT, nullptr);

    hid_t chars = H5Tcopy(H5T_C_S1);
    H5Tset_size(chars, 4);
    H5Tset_strpad(chars, H5T_STR_NULLPAD);
    dataset(file, "fixed", chars, "ab\0d");
    H5Tclose(chars);

    hid_t varchar = H5Tcopy(H5T_C_S1);
    H5Tset_size(varchar, H5T_VARIABLE);
    const char *hello = "hello";
    dataset(file, "greeting", varchar, &hello);
    const char *none = nullptr;
    dataset(file, "notext", varchar, &none);
    H5Tclose(varchar);

    hid_t vlen = H5Tvlen_create(H5T_STD_I16LE);
    int16_t members[3] = {5, -6, 7};
    hvl_t list = {3, members};
    dataset(file, "members", vlen, &list);
    hvl_t empty = {0, nullptr};
    dataset(file, "nomembers", vlen, &empty);
    H5Tclose(vlen);

    hid_t opaque = H5Tcreate(H5T_OPAQUE, 3);
    const unsigned char bytes[3] = {1, 0, 255};
    dataset(file, "blob", opaque, bytes);
    H5Tclose(opaque);

    hid_t compound = H5Tcreate(H5T_COMPOUND, 4);
    H5Tinsert(compound, "a", 0, H5T_NATIVE_INT);
    dataset(file, "pair", compound, nullptr, true);
    H5Tclose(compound);

    H5Gclose(H5Gcreate2(file, "g", H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT));
    H5Lcreate_soft("/nowhere", file, "dangling", H5P_DEFAULT, H5P_DEFAULT);
    H5Lcreate_soft("/f64", file, "lnk", H5P_DEFAULT, H5P_DEFAULT);
    H5Fclose(file);
}

class ShowFillValue : public OrmakTest {
protected:
    void SetUp() override {
        OrmakTest::SetUp();
        make_file("a.h5");
        ASSERT_EQ(run("USE FILE a.h5"), 0) << message();
    }

    /* The one value of SHOW FILL VALUE into the cursor, checked for its type and count. */
    void *fill(const std::string &name, int data_type) {
        EXPECT_EQ(run("SHOW FILL VALUE " + name), 0) << message();
        EXPECT_EQ(ormak_cursor_get_data_type(nullptr), data_type) << name;
        EXPECT_EQ(ormak_cursor_get_count(nullptr), 1) << name;
        ormak_cursor_first(nullptr);
        return ormak_cursor_get(nullptr);
    }
};

} // namespace

TEST_F(ShowFillValue, NumbersOfEachType) {
    EXPECT_EQ(*(signed char *)fill("n8", ORMAK_TINYINT), -3);
    // The default of HDF5 is zeros.
    EXPECT_EQ(*(uint16_t *)fill("n16", ORMAK_UNSIGNED_SMALLINT), 0);
    EXPECT_EQ(*(int64_t *)fill("n64", ORMAK_BIGINT), -1234567890123LL);
    EXPECT_EQ(*(float *)fill("f32", ORMAK_FLOAT), 1.5f);
    EXPECT_EQ(*(double *)fill("lnk", ORMAK_DOUBLE), -2.25);

    // Undefined: no value, but the cursor has the dataset's type.
    ASSERT_EQ(run("SHOW FILL VALUE nofill"), 0) << message();
    EXPECT_EQ(ormak_cursor_get_data_type(nullptr), ORMAK_INT);
    EXPECT_EQ(ormak_cursor_get_count(nullptr), 0);
    EXPECT_EQ(_ormak_get_last_data_count(), 0u);

    // Post-processing sees the one value.
    ASSERT_EQ(run("SHOW FILL VALUE n64 TOP 0"), 0) << message();
    EXPECT_EQ(ormak_cursor_get_count(nullptr), 0);
}

TEST_F(ShowFillValue, StringsVariableLengthAndOpaque) {
    // A fixed string: its first byte as the element, its bytes in the subcursor.
    fill("fixed", ORMAK_CHAR);
    EXPECT_EQ(ormak_cursor_get_size(nullptr), 1);
    EXPECT_EQ(ormak_subcursor_get_count(nullptr), 4);
    std::string bytes;
    for (int i = 0; i < 4; i++) {
        ormak_subcursor_absolute(nullptr, i);
        bytes += *ormak_subcursor_get_char(nullptr);
    }
    EXPECT_EQ(bytes, std::string("ab\0d", 4));

    fill("blob", ORMAK_OPAQUE);
    ormak_subcursor_last(nullptr);
    EXPECT_EQ(*(unsigned char *)ormak_subcursor_get(nullptr), 255);

    EXPECT_STREQ((char *)fill("greeting", ORMAK_VARCHAR), "hello");
    EXPECT_EQ(ormak_cursor_get_size(nullptr), 5);
    EXPECT_EQ(fill("notext", ORMAK_VARCHAR), nullptr);

    fill("members", ORMAK_VARSMALLINT);
    std::vector<int16_t> members;
    for (int i = 0; i < ormak_subcursor_get_count(nullptr); i++) {
        ormak_subcursor_absolute(nullptr, i);
        members.push_back(*ormak_subcursor_get_smallint(nullptr));
    }
    EXPECT_EQ(members, (std::vector<int16_t>{5, -6, 7}));
    EXPECT_EQ(fill("nomembers", ORMAK_VARSMALLINT), nullptr);
    EXPECT_EQ(ormak_cursor_get_size(nullptr), 0);

    // Through memory the string and the members become the caller's.
    char *text = nullptr;
    ORMAK_VARIABLE_LENGTH record = {};
    ASSERT_EQ(ormak_variable_register(&text), 0);
    ASSERT_EQ(ormak_variable_register(&record), 1);
    ASSERT_EQ(run("SHOW FILL VALUE greeting INTO MEMORY 0; SHOW FILL VALUE members INTO MEMORY 1"), 0) << message();
    EXPECT_STREQ(text, "hello");
    ASSERT_EQ(record.count, 3u);
    EXPECT_EQ(((int16_t *)record.address)[1], -6);
    free(text);
    free(record.address);
}

TEST_F(ShowFillValue, NamesAndTypesThatAreRefused) {
    // A type the cursor can not hold is refused.
    EXPECT_EQ(refuse("SHOW FILL VALUE pair"), ORMAK_ERROR_NOT_SUPPORTED);
    EXPECT_EQ(said, "Error when showing fill value of dataset \"pair\" as data type is not supported");
    EXPECT_EQ(refuse("SHOW FILL VALUE g"), ORMAK_ERROR_UNEXPECTED_TYPE);
    EXPECT_EQ(said, "Error when showing fill value of object \"g\" as it is not a dataset");
    EXPECT_EQ(refuse("SHOW FILL VALUE nothing"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(said, "Error when showing fill value of dataset \"nothing\" as it does not exist");
    EXPECT_EQ(refuse("SHOW FILL VALUE dangling"), ORMAK_ERROR_DANGLING_LINK);
    EXPECT_EQ(said, "Error when opening object \"dangling\" as it is a dangling link");

    // Another file, named for the statement only; the file in use stays.
    make_file("other.h5");
    ASSERT_EQ(run("CLOSE ALL FILE"), 0);
    EXPECT_EQ(refuse("SHOW FILL VALUE n8"), ORMAK_ERROR_NOT_OPEN);
    EXPECT_EQ(said, "Error when showing fill value of dataset \"n8\" as no file is in use");
    EXPECT_EQ(refuse("SHOW FILL VALUE other.h5 n8/"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(said, "Error when showing fill value of dataset \"n8/\" as it should not end with \"/\"");
    EXPECT_EQ(*(signed char *)fill("other.h5 /n8", ORMAK_TINYINT), -3);
    ASSERT_EQ(run("SHOW USE FILE"), 0);
    EXPECT_EQ(ormak_cursor_get_count(nullptr), 0);
}
