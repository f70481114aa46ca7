// Objects that SELECT and INSERT hold open between statements: every statement that could
// change what a name means, or how the object opens, must make the next read see the file
// as it is now, and closing a file must leave nothing of it open.
#include <hdf5.h>

#include <string>
#include <vector>

#include "OrmakExecutors.h"
#include "OrmakTest.h"
#include "files/ObjectCache.h"

namespace {

using Numbers = std::vector<double>;

/* The cursor's values of an integer or real type, as doubles. */
Numbers cursor_numbers() {
    Numbers values;
    const int type = ormak_cursor_get_data_type(nullptr);
    for (int i = 0; i < ormak_cursor_get_count(nullptr); i++) {
        ormak_cursor_absolute(nullptr, i);
        if (type == ORMAK_INT) values.push_back(*ormak_cursor_get_int(nullptr));
        else if (type == ORMAK_BIGINT) values.push_back((double)*ormak_cursor_get_bigint(nullptr));
        else values.push_back(*ormak_cursor_get_double(nullptr));
    }
    return values;
}

int open_objects() { return (int)H5Fget_obj_count(H5F_OBJ_ALL, H5F_OBJ_ALL); }

} // namespace

class ObjectCache : public OrmakTest {
protected:
    void SetUp() override {
        OrmakTest::SetUp();
        ASSERT_EQ(run("CREATE TRUNCATE FILE a.h5; USE FILE a.h5; CREATE DATASET d AS INT(3) VALUES(1, 2, 3); "
                      "CREATE DATASET g/x AS INT(2) VALUES(20, 21); CREATE DATASET x AS INT(2) VALUES(10, 11); "
                      "CREATE CHUNKED DATASET e AS INT(2 TO 10) VALUES(5, 6); CREATE ATTRIBUTE d/at AS INT(2) "
                      "VALUES(7, 8); CREATE ATTRIBUTE g/at AS INT(2) VALUES(3, 4)"),
                  0)
            << message();
    }

    /* Runs a SELECT into the cursor and gives its values. */
    Numbers read(const std::string &select) {
        EXPECT_EQ(run(select), 0) << select << ": " << message();
        return cursor_numbers();
    }
};

TEST_F(ObjectCache, EveryChangeOfANameIsSeenByTheNextRead) {
    EXPECT_EQ(read("SELECT FROM d"), (Numbers{1, 2, 3}));
    EXPECT_EQ(ormak::object_cache::size(), 1);
    // The same name made again, with another type and extent.
    EXPECT_EQ(read("DROP DATASET d; CREATE DATASET d AS DOUBLE(2) VALUES(0.5, 1.5); SELECT FROM d"),
              (Numbers{0.5, 1.5}));
    EXPECT_EQ(read("CREATE TRUNCATE DATASET d AS BIGINT(4) VALUES(4, 3, 2, 1); SELECT FROM d(1:1:2:1)"),
              (Numbers{3, 2}));
    // A held chunked dataset grows, and shrinks.
    EXPECT_EQ(read("SELECT FROM e"), (Numbers{5, 6}));
    EXPECT_EQ(read("ALTER DIMENSION e TO 4; SELECT FROM e"), (Numbers{5, 6, 0, 0}));
    // Renamed away, the old name fails; another object copied or linked onto it is read.
    EXPECT_EQ(refuse("RENAME DATASET d AS moved; SELECT FROM d"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(read("SELECT FROM moved"), (Numbers{4, 3, 2, 1}));
    EXPECT_EQ(read("COPY DATASET x TO d; SELECT FROM d"), (Numbers{10, 11}));
    EXPECT_EQ(read("CREATE TRUNCATE LINK d TO moved; SELECT FROM d"), (Numbers{4, 3, 2, 1}));
    EXPECT_EQ(read("CREATE TRUNCATE HARD LINK d TO g/x; SELECT FROM d"), (Numbers{20, 21}));
    // A relative name means another object in another current group, and back.
    EXPECT_EQ(read("SELECT FROM x"), (Numbers{10, 11}));
    EXPECT_EQ(read("USE GROUP g; SELECT FROM x"), (Numbers{20, 21}));
    EXPECT_EQ(read("CLOSE GROUP; SELECT FROM x"), (Numbers{10, 11}));
    // Attributes: read through the held object, dropped and made again.
    EXPECT_EQ(read("SELECT FROM g/at"), (Numbers{3, 4}));
    EXPECT_EQ(read("DROP ATTRIBUTE g/at; CREATE ATTRIBUTE g/at AS INT(3) VALUES(9, 9, 9); SELECT FROM g/at"),
              (Numbers{9, 9, 9}));
    // A failing look-up or an object that can not be read leaves nothing held.
    ASSERT_EQ(run("CLOSE FILE; USE FILE a.h5"), 0);
    EXPECT_EQ(refuse("SELECT FROM nothing"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(refuse("CREATE DATASET c AS COMPOUND(a AS INT); SELECT FROM c"), ORMAK_ERROR_NOT_SUPPORTED);
    EXPECT_EQ(ormak::object_cache::size(), 0);
}

TEST_F(ObjectCache, ClosingAFileLeavesNothingOfItOpen) {
    EXPECT_EQ(read("INSERT INTO d VALUES(4, 5, 6); SELECT FROM d; SELECT FROM d/at"), (Numbers{7, 8}));
    EXPECT_GT(ormak::object_cache::size(), 0);
    ASSERT_EQ(run("CLOSE FILE"), 0);
    EXPECT_EQ(ormak::object_cache::size(), 0);
    EXPECT_EQ(open_objects(), 0);
    // Really closed: HDF5 lets the name be made anew, and the reopened file is read as it is now.
    hid_t file = H5Fcreate("a.h5", H5F_ACC_TRUNC, H5P_DEFAULT, H5P_DEFAULT);
    ASSERT_GE(file, 0);
    hsize_t two = 2;
    hid_t space = H5Screate_simple(1, &two, nullptr);
    hid_t dataset = H5Dcreate2(file, "/d", H5T_NATIVE_INT, space, H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT);
    const int values[2] = {42, 43};
    H5Dwrite(dataset, H5T_NATIVE_INT, H5S_ALL, H5S_ALL, H5P_DEFAULT, values);
    H5Dclose(dataset);
    H5Sclose(space);
    H5Fclose(file);
    EXPECT_EQ(read("USE FILE a.h5; SELECT FROM d"), (Numbers{42, 43}));
    // Also when the executor is called without a script around it.
    EXPECT_EQ(ormak_close_all_file(), 0);
    EXPECT_EQ(open_objects(), 0);
}

TEST_F(ObjectCache, HeldObjectsStayFewAndShareWhatTheFileHolds) {
    // More objects read than the cache holds: it stays bounded and every read is right.
    for (int i = 0; i < 3 * ormak::object_cache::kCapacity; i++) {
        const std::string name = "n" + std::to_string(i);
        EXPECT_EQ(read("CREATE DATASET " + name + " AS INT(1) VALUES(" + std::to_string(i) + "); SELECT FROM " + name),
                  Numbers{(double)i});
    }
    for (int i = 0; i < 3 * ormak::object_cache::kCapacity; i++)
        EXPECT_EQ(read("SELECT FROM n" + std::to_string(i)), Numbers{(double)i});
    EXPECT_EQ(ormak::object_cache::size(), ormak::object_cache::kCapacity);

    // The same file in use under two names, and opened by a statement for one object: a write
    // through either is read through the other.
    EXPECT_EQ(read("SELECT FROM d; SELECT FROM d/at"), (Numbers{7, 8}));
    ASSERT_EQ(run("USE FILE ./a.h5; INSERT INTO d VALUES(30, 31, 32); INSERT INTO d/at VALUES(33, 34)"), 0)
        << message();
    EXPECT_EQ(read("USE FILE a.h5; SELECT FROM d"), (Numbers{30, 31, 32}));
    EXPECT_EQ(read("SELECT FROM d/at"), (Numbers{33, 34}));
    ASSERT_EQ(run("INSERT INTO a.h5 d VALUES(40, 41, 42); INSERT INTO a.h5 d/at VALUES(43, 44)"), 0) << message();
    EXPECT_EQ(read("SELECT FROM d"), (Numbers{40, 41, 42}));
    EXPECT_EQ(read("SELECT FROM d/at"), (Numbers{43, 44}));

    // A chunk written as it stands, with its one filter marked as skipped, is read back as
    // written: no held object keeps what HDF5 knew of the chunk before.
    EXPECT_EQ(read("CREATE CHUNKED(2) DATASET f AS INT(4) FLETCHER32 VALUES(1, 2, 3, 4); SELECT FROM f"),
              (Numbers{1, 2, 3, 4}));
    EXPECT_EQ(read("INSERT DIRECTLY MASK 0x1 SIZE 8 INTO f(1) VALUES(70, 80); SELECT FROM f"), (Numbers{1, 2, 70, 80}));
    // A statement with a chunk cache of its own opens afresh, and holds nothing.
    EXPECT_EQ(read("SELECT FROM e CACHE SLOTS 11"), (Numbers{5, 6}));
    EXPECT_EQ(ormak::object_cache::size(), 0);
}
