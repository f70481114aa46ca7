// SHOW FILL VALUE: the fill value of datasets of the types the language holds, into the cursor
// and out through memory.
#include <string.h>

#include <string>
#include <vector>

#include "OrmakTest.h"

namespace {

class ShowFillValue : public OrmakTest {
protected:
    void SetUp() override {
        OrmakTest::SetUp();
        ASSERT_EQ(run("CREATE FILE a.h5; USE FILE a.h5; CREATE DATASET n8 AS TINYINT(2) FILL VALUES(-3); "
                      "CREATE DATASET n16 AS UNSIGNED SMALLINT(2); "
                      "CREATE DATASET n64 AS BIG ENDIAN BIGINT(2) FILL VALUES(-1234567890123); "
                      "CREATE DATASET f64 AS DOUBLE(2) FILL VALUES(-2.25); CREATE LINK lnk TO f64; "
                      "CREATE DATASET nofill AS INT(2) FILL UNDEFINED; "
                      "CREATE DATASET fixed AS CHAR(2, 4) FILL VALUES(\"ab\"); "
                      "CREATE DATASET greeting AS VARCHAR(2) FILL VALUES(\"hello\"); "
                      "CREATE DATASET members AS VARSMALLINT(2) FILL VALUES(5, -6, 7); "
                      "CREATE DATASET pair AS COMPOUND(a AS INT)(2); CREATE GROUP g"),
                  0)
            << message();
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
    // Stored big-endian: the value comes out in the machine's order.
    EXPECT_EQ(*(int64_t *)fill("n64", ORMAK_BIGINT), -1234567890123LL);
    EXPECT_EQ(*(double *)fill("lnk", ORMAK_DOUBLE), -2.25);

    // Undefined: no value, but the cursor has the dataset's type.
    ASSERT_EQ(run("SHOW FILL VALUE nofill"), 0) << message();
    EXPECT_EQ(ormak_cursor_get_data_type(nullptr), ORMAK_INT);
    EXPECT_EQ(ormak_cursor_get_count(nullptr), 0);
}

TEST_F(ShowFillValue, StringsAndVariableLength) {
    // A fixed string: its first byte as the element, its bytes in the subcursor.
    fill("fixed", ORMAK_CHAR);
    EXPECT_EQ(ormak_cursor_get_size(nullptr), 1);
    EXPECT_EQ(ormak_subcursor_get_count(nullptr), 4);
    std::string bytes;
    for (int i = 0; i < 4; i++) {
        ormak_subcursor_absolute(nullptr, i);
        bytes += *ormak_subcursor_get_char(nullptr);
    }
    EXPECT_EQ(bytes, std::string("ab\0\0", 4));

    EXPECT_STREQ((char *)fill("greeting", ORMAK_VARCHAR), "hello");
    EXPECT_EQ(ormak_cursor_get_size(nullptr), 5);

    fill("members", ORMAK_VARSMALLINT);
    std::vector<int16_t> members;
    for (int i = 0; i < ormak_subcursor_get_count(nullptr); i++) {
        ormak_subcursor_absolute(nullptr, i);
        members.push_back(*ormak_subcursor_get_smallint(nullptr));
    }
    EXPECT_EQ(members, (std::vector<int16_t>{5, -6, 7}));

    // Through memory the members become the caller's.
    ORMAK_VARIABLE_LENGTH record = {};
    ASSERT_EQ(ormak_variable_register(&record), 0);
    ASSERT_EQ(run("SHOW FILL VALUE members INTO MEMORY 0"), 0) << message();
    ASSERT_EQ(record.count, 3u);
    EXPECT_EQ(((int16_t *)record.address)[1], -6);
    free(record.address);
}

TEST_F(ShowFillValue, NamesAndTypesThatAreRefused) {
    // A type the cursor can not hold is refused.
    EXPECT_EQ(refuse("SHOW FILL VALUE pair"), ORMAK_ERROR_NOT_SUPPORTED);
    EXPECT_EQ(said, "Error when showing fill value of dataset \"pair\" as data type is not supported");
    EXPECT_EQ(refuse("SHOW FILL VALUE g"), ORMAK_ERROR_UNEXPECTED_TYPE);
    EXPECT_EQ(said, "Error when showing fill value of object \"g\" as it is not a dataset");
    EXPECT_EQ(refuse("SHOW FILL VALUE nothing"), ORMAK_ERROR_NOT_FOUND);

    // A file named for the statement only.
    ASSERT_EQ(run("CLOSE ALL FILE"), 0);
    EXPECT_EQ(refuse("SHOW FILL VALUE n8"), ORMAK_ERROR_NOT_OPEN);
    EXPECT_EQ(refuse("SHOW FILL VALUE a.h5 n8/"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(*(signed char *)fill("a.h5 /n8", ORMAK_TINYINT), -3);
}
