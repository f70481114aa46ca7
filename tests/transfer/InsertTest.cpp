// INSERT, checked on disk through HDF5: whole objects, selections, several targets, sources,
// direct chunk writes and every refusal.
#include <string.h>

#include <string>
#include <vector>

#include "OrmakPrivateStructures.h"
#include "OrmakTest.h"
#include "StoredObject.h"

namespace {

class Insert : public OrmakTest {
protected:
    void SetUp() override {
        OrmakTest::SetUp();
        ASSERT_EQ(run("CREATE FILE a.h5, other.h5; USE FILE a.h5; CREATE DATASET d AS INT(10); "
                      "CREATE DATASET m AS INT(3, 4); CREATE GROUP g; CREATE DATASET other.h5 /g/d2 AS INT(4)"),
                  0)
            << message();
    }
};

using Ints = std::vector<int>;

} // namespace

TEST_F(Insert, WholeObjectsTakeTheValuesByTheirOwnShape) {
    ASSERT_EQ(run("INSERT INTO d VALUES(1, 2, 3)"), 0) << message();
    EXPECT_EQ(Dataset("/d").ints(), (Ints{1, 2, 3, 0, 0, 0, 0, 0, 0, 0}));
    ASSERT_EQ(run("INSERT INTO m VALUES((1, 2), (3, 4, 5, 6, 7), 8)"), 0) << message();
    EXPECT_EQ(Dataset("/m").ints(), (Ints{1, 2, 0, 0, 3, 4, 5, 6, 8, 0, 0, 0}));
    // One list serves several targets, each by its own dimensions, in other files too.
    ASSERT_EQ(run("INSERT INTO d, other.h5 /g/d2 VALUES(9, 8, 7, 6, 5)"), 0) << message();
    EXPECT_EQ(Dataset("/g/d2", "other.h5").ints(), (Ints{9, 8, 7, 6}));
    EXPECT_STREQ(current_file->file_name, "a.h5");
}

TEST_F(Insert, HyperslabsAndPointsTakeTheValuesInSelectionOrder) {
    ASSERT_EQ(run("INSERT INTO d(2:::) VALUES(8)"), 0) << message();
    EXPECT_EQ(Dataset("/d").ints(), (Ints{0, 0, 8, 0, 0, 0, 0, 0, 0, 0}));
    ASSERT_EQ(run("INSERT INTO d(0:::2) OR (5:::2) VALUES(1, 2, 3, 4)"), 0) << message();
    EXPECT_EQ(Dataset("/d").ints(), (Ints{1, 2, 8, 0, 0, 3, 4, 0, 0, 0}));
    // A selection of three with two values: the third gets zero.
    ASSERT_EQ(run("INSERT INTO d(0:1:3:1) VALUES(5, 6)"), 0) << message();
    EXPECT_EQ(Dataset("/d").ints()[2], 0);

    ASSERT_EQ(run("INSERT INTO m(0, 1), (2, 3), (-1, 0) VALUES(5, 6, 4)"), 0) << message();
    Ints after = Dataset("/m").ints();
    EXPECT_EQ(after[1], 5);
    EXPECT_EQ(after[11], 6);
    EXPECT_EQ(after[8], 4);
    ASSERT_EQ(run("INSERT INTO m(, 2:::) AND (1:::, ) VALUES(1, 1, 1, 1)"), 0) << message();
    after = Dataset("/m").ints();
    EXPECT_EQ(after[6], 1);
    EXPECT_EQ(after[2], 0);
}

TEST_F(Insert, AttributesAndTheKindKeyword) {
    hid_t file = current_file->file_id;
    hsize_t two = 2;
    hid_t space = H5Screate_simple(1, &two, nullptr);
    hid_t attribute = H5Acreate_by_name(file, "/g", "a", H5T_STD_I16BE, space, H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT);
    H5Aclose(attribute);
    H5Sclose(space);
    ASSERT_EQ(run("INSERT INTO ATTRIBUTE g/a VALUES(4, -2)"), 0) << message();
    EXPECT_EQ(Attribute("/g", "a").read<short>(H5T_NATIVE_SHORT), (std::vector<short>{4, -2}));
    ASSERT_EQ(run("INSERT INTO g/a VALUES(5)"), 0) << message();
    EXPECT_EQ(Attribute("/g", "a").read<short>(H5T_NATIVE_SHORT)[0], 5);

    EXPECT_EQ(refuse("INSERT INTO g/a(0:::) VALUES(1)"), ORMAK_ERROR_NOT_SUPPORTED);
    EXPECT_EQ(said, "Error when inserting data into object \"g/a\" as hyperslab selection does not support attributes");
    EXPECT_EQ(refuse("INSERT INTO AT g/a(1) VALUES(1)"), ORMAK_ERROR_NOT_SUPPORTED);
    EXPECT_EQ(refuse("INSERT INTO DATASET g VALUES(1)"), ORMAK_ERROR_UNEXPECTED_TYPE);
    EXPECT_EQ(said, "Error when inserting data into object \"g\" as it is not a dataset");
    EXPECT_EQ(refuse("INSERT INTO g VALUES(1)"), ORMAK_ERROR_UNEXPECTED_TYPE);
    EXPECT_EQ(said, "Error when inserting data into object \"g\" as it is neither a dataset nor an attribute");
    EXPECT_EQ(refuse("INSERT INTO ATTRIBUTE g/b VALUES(1)"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(said, "Error when inserting data into attribute \"g/b\" as it does not exist");
    ASSERT_EQ(run("CREATE LINK gone TO /nowhere"), 0);
    EXPECT_EQ(refuse("INSERT INTO gone VALUES(1)"), ORMAK_ERROR_DANGLING_LINK);
    EXPECT_EQ(said, "Error when opening object \"gone\" as it is a dangling link");
}

TEST_F(Insert, ValuesFromTheCursorMemoryAndOtherTypes) {
    _ormak_cursor_set_data_type(ORMAK_DOUBLE);
    for (double value : {1.9, -1.9}) ASSERT_EQ(_ormak_cursor_add(&value, sizeof value), 0);
    ASSERT_EQ(run("INSERT INTO d(0:1:3:1)"), 0) << message();
    EXPECT_EQ(Dataset("/d").ints(), (Ints{1, -1, 0, 0, 0, 0, 0, 0, 0, 0}));
    ASSERT_EQ(run("INSERT INTO d(5:::) FROM CURSOR"), 0) << message();
    EXPECT_EQ(Dataset("/d").ints()[6], -1);

    int block[12] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    ASSERT_EQ(ormak_variable_transient_register(block), 0);
    ASSERT_EQ(run("INSERT INTO m FROM MEMORY 0; INSERT INTO d FROM MEMORY 0 SIZE 8"), 0) << message();
    EXPECT_EQ(Dataset("/m").ints(), (Ints{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}));
    EXPECT_EQ(Dataset("/d").ints(), (Ints{1, 2, 0, 0, 0, 0, 0, 0, 0, 0}));
    // Reading does not spend a transient variable.
    EXPECT_EQ(ormak_variable_get_number(block), 0);

    ASSERT_EQ(run("CREATE DATASET b AS BIG ENDIAN BIGINT(2); INSERT INTO b VALUES(-5, 0x0102030405060708); "
                  "CREATE DATASET v AS VARINT(2); INSERT INTO v VALUES((1, 2, 3)); "
                  "CREATE DATASET s AS VARCHAR(2); INSERT INTO s(1:::) VALUES(\"second\")"),
              0)
        << message();
    EXPECT_EQ(Dataset("/b").read<long long>(H5T_NATIVE_LLONG), (std::vector<long long>{-5, 0x0102030405060708}));
    EXPECT_EQ(Dataset("/v").lists(), (std::vector<Ints>{{1, 2, 3}, {}}));
    EXPECT_EQ(Dataset("/s").strings(), (std::vector<std::string>{"(null)", "second"}));
}

TEST_F(Insert, DirectWritesPutWholeChunksAsTheyStand) {
    ASSERT_EQ(run("CREATE CHUNKED(2, 2) DATASET c AS INT(4, 4); INSERT DIRECTLY INTO c(1, 0) VALUES(1, 2, 3, 4)"), 0)
        << message();
    Ints after = Dataset("/c").ints();
    EXPECT_EQ(after[9], 2);
    EXPECT_EQ(after[12], 3);
    // The last chunk counted from the end, with a mask that says the one filter was skipped.
    ASSERT_EQ(run("CREATE CHUNKED(4) DATASET z AS INT(10) FLETCHER32; INSERT DIRECTLY MASK 0x1 SIZE 0x10 INTO z(-1) "
                  "VALUES(7, 8, 9, 10)"),
              0)
        << message();
    hid_t f = H5Fopen("a.h5", H5F_ACC_RDONLY, H5P_DEFAULT);
    hid_t z = H5Dopen2(f, "/z", H5P_DEFAULT);
    hsize_t offset[1] = {8};
    uint32_t mask = 0;
    int chunk[4] = {};
    ASSERT_GE(H5Dread_chunk(z, H5P_DEFAULT, offset, &mask, chunk), 0);
    EXPECT_EQ(mask, 1u);
    EXPECT_EQ(chunk[3], 10);
    H5Dclose(z);
    H5Fclose(f);

    EXPECT_EQ(refuse("INSERT DIRECTLY INTO d(0) VALUES(1)"), ORMAK_ERROR_UNEXPECTED_STORAGE_TYPE);
    EXPECT_EQ(said, "Error when inserting data into object \"d\" as direct write does not support storage type that is not chunked");
    EXPECT_EQ(refuse("INSERT DIRECTLY INTO c(2, 0) VALUES(1)"), ORMAK_ERROR_INVALID_VALUE);
    EXPECT_EQ(said, "Error when inserting data into dataset \"c\" as chunk number is not lower than dimension");
    EXPECT_EQ(refuse("INSERT DIRECTLY SIZE 0 INTO c VALUES(1)"), ORMAK_ERROR_INVALID_VALUE);
    EXPECT_EQ(said, "Error when inserting data into object \"c\" as direct size is not greater than 0");
    EXPECT_EQ(refuse("INSERT DIRECTLY PARALLEL INTO c VALUES(1)"), ORMAK_ERROR_NOT_SUPPORTED);
    EXPECT_EQ(said, "Error when inserting data into object \"c\" as parallel HDF5 library does not support direct write");
    // Values can not pass the n-bit filter followed by the scale-offset filter; raw chunks can.
    ASSERT_EQ(run("CREATE CHUNKED(4) DATASET packed AS INT(8) NBIT PRECISION 12 OFFSET 2 SCALEOFFSET 2"), 0);
    EXPECT_EQ(refuse("INSERT INTO packed VALUES(1, 2, 3)"), ORMAK_ERROR_NOT_SUPPORTED);
    EXPECT_EQ(said, "Error when inserting data into object \"packed\" as data can not pass the n-bit filter followed "
                    "by the scale-offset filter");
    EXPECT_EQ(run("INSERT DIRECTLY INTO packed VALUES(1, 2, 3, 4)"), 0) << message();
}

TEST_F(Insert, InvalidSelectionsAndFailingTargets) {
    struct Case {
        const char *script;
        int status;
        const char *message;
    };
    const Case cases[] = {
        {"INSERT INTO d(10:::) VALUES(1)", ORMAK_ERROR_UNKNOWN,
         "Error when inserting data into dataset \"d\" as hyperslab selection is invalid"},
        {"INSERT INTO d(10) VALUES(1)", ORMAK_ERROR_UNKNOWN,
         "Error when inserting data into object \"d\" as point selection is invalid"},
        {"INSERT INTO d/ VALUES(1)", ORMAK_ERROR_UNKNOWN,
         "Error when inserting data into object \"d/\" as it should not end with \"/\""},
        {"INSERT PARALLEL INTO d VALUES(1)", ORMAK_ERROR_NOT_SUPPORTED,
         "Error when inserting data into object \"d\" in parallel as the file was not opened for parallel operations"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.script);
        EXPECT_EQ(refuse(c.script), c.status);
        EXPECT_EQ(said, c.message);
    }
    EXPECT_EQ(Dataset("/d").ints(), Ints(10, 0));

    // A failing target ends the statement; the ones before it stay written.
    EXPECT_EQ(refuse("INSERT INTO d, missing, m VALUES(4)"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(Dataset("/d").ints()[0], 4);
    EXPECT_EQ(Dataset("/m").ints()[0], 0);
    // An empty selection writes nothing and reads nothing, even from a file that is not there.
    ASSERT_EQ(run("INSERT INTO d(0:::1) AND (5:::1), m(1:::) XOR (1:::) FROM TEXT FILE missing.txt"), 0) << message();

    ASSERT_EQ(run("CLOSE ALL FILE; USE READONLY FILE a.h5"), 0);
    EXPECT_EQ(refuse("INSERT INTO d VALUES(7)"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(said, "Error when inserting data into object \"d\"");
    ASSERT_EQ(run("CLOSE ALL FILE"), 0);
    EXPECT_EQ(refuse("INSERT INTO d VALUES(1)"), ORMAK_ERROR_NOT_OPEN);
    EXPECT_EQ(said, "Error when inserting data into object \"d\" as no file is in use");
}
