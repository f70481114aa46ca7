// ALTER DIMENSION, checked on disk through HDF5.
#include <string>
#include <vector>

#include "OrmakPrivateStructures.h"
#include "OrmakTest.h"
#include "StoredObject.h"

namespace {

using Sizes = std::vector<hsize_t>;

} // namespace

class AlterDimension : public OrmakTest {
protected:
    void SetUp() override {
        OrmakTest::SetUp();
        ASSERT_EQ(run("CREATE FILE a.h5, b.h5; USE FILE a.h5; CREATE CHUNKED DATASET d AS INT(10 TO 100, 20 TO UNLIMITED)"),
                  0)
            << message();
    }

    /* The current sizes of a dataset, read beside the session. */
    static Sizes sizes(const char *path, const char *file_name = "a.h5") { return Dataset(path, file_name).dimensions(); }

    /* d made again at (10, 20), with maxima 100 and unlimited, then altered with `list`. */
    static Sizes altered(const std::string &list) {
        EXPECT_EQ(run("CREATE TRUNCATE CHUNKED DATASET d AS INT(10 TO 100, 20 TO UNLIMITED)"), 0) << message();
        EXPECT_EQ(run("ALTER DIMENSION d TO " + list), 0) << list << ": " << message();
        return sizes("/d");
    }
};

TEST_F(AlterDimension, EachEntrySetsMovesOrKeepsItsDimension) {
    EXPECT_EQ(altered("5"), (Sizes{5, 20}));
    EXPECT_EQ(altered(", 5"), (Sizes{10, 5}));
    EXPECT_EQ(altered("+1, -1"), (Sizes{11, 19}));
    EXPECT_EQ(altered("1, 2, 3"), (Sizes{1, 2}));
    // No entry at all: the dataset is checked and left as it is.
    EXPECT_EQ(altered(""), (Sizes{10, 20}));
}

TEST_F(AlterDimension, SizesStayBetweenZeroAndTheMaximum) {
    EXPECT_EQ(altered("100, 5000000"), (Sizes{100, 5000000}));
    EXPECT_EQ(run("ALTER DIMENSION d TO 101"), ORMAK_ERROR_INVALID_VALUE);
    EXPECT_EQ(message(),
              "Error when altering dimensions of dataset \"d\" as new dimension is not equal to or lower than maximum "
              "dimension");
    EXPECT_EQ(run("ALTER DIMENSION d TO -101"), ORMAK_ERROR_INVALID_VALUE);
    EXPECT_EQ(message(), "Error when altering dimensions of dataset \"d\" as new dimension is not equal to or greater than 0");
    // A bad entry leaves the whole dataset as it was, good entries before it included.
    EXPECT_EQ(run("ALTER DIMENSION d TO 50, -5000001"), ORMAK_ERROR_INVALID_VALUE);
    // An unlimited dimension still ends where HDF5 can no longer count.
    EXPECT_EQ(run("ALTER DIMENSION d TO 50, +18446744073709551615"), ORMAK_ERROR_INVALID_VALUE);
    EXPECT_EQ(sizes("/d"), (Sizes{100, 5000000}));
}

TEST_F(AlterDimension, DatasetsOfOtherFilesAndBehindLinks) {
    ASSERT_EQ(run("CREATE CHUNKED DATASET b.h5 /g/e AS INT(30 TO UNLIMITED)"), 0) << message();
    // A relative size is taken against each dataset's own size.
    ASSERT_EQ(run("ALTER DIMENSION d, b.h5 /g/e TO -1"), 0) << message();
    EXPECT_EQ(sizes("/d"), (Sizes{9, 20}));
    EXPECT_EQ(sizes("/g/e", "b.h5"), Sizes{29});
    EXPECT_EQ(file_use_count, 1);
    EXPECT_STREQ(current_file->file_name, "a.h5");

    ASSERT_EQ(run("CREATE LINK shortcut TO d; CREATE EXTERNAL LINK outside TO b.h5 /g/e"), 0) << message();
    ASSERT_EQ(run("ALTER DIMENSION shortcut, outside TO +1"), 0) << message();
    EXPECT_EQ(sizes("/d"), (Sizes{10, 20}));
    EXPECT_EQ(sizes("/g/e", "b.h5"), Sizes{30});
}

TEST_F(AlterDimension, WhatIsNotAChunkedDatasetIsRefused) {
    ASSERT_EQ(run("CREATE CONTIGUOUS DATASET c AS INT(10); CREATE GROUP g"), 0) << message();
    EXPECT_EQ(run("ALTER DIMENSION c TO , , 5"), ORMAK_ERROR_UNEXPECTED_STORAGE_TYPE);
    EXPECT_EQ(message(), "Error when altering dimensions of dataset \"c\" as storage type is not chunked");
    EXPECT_EQ(run("ALTER DIMENSION g TO 5"), ORMAK_ERROR_UNEXPECTED_TYPE);
    EXPECT_EQ(message(), "Error when altering dimensions of object \"g\" as it is not a dataset");
    EXPECT_EQ(sizes("/c"), Sizes{10});
}

TEST_F(AlterDimension, AFailingDatasetEndsTheListWithEarlierOnesAltered) {
    ASSERT_EQ(run("CREATE CHUNKED DATASET last AS INT(5 TO 10)"), 0) << message();
    // The failure is in another file, which is not left open.
    EXPECT_EQ(run("ALTER DIMENSION d, b.h5 missing, last TO +1"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(message(), "Error when altering dimensions of dataset \"missing\" as it does not exist");
    EXPECT_EQ(file_use_count, 1);
    EXPECT_EQ(sizes("/d"), (Sizes{11, 20}));
    EXPECT_EQ(sizes("/last"), Sizes{5});
}
