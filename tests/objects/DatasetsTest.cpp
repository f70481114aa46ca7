// CREATE DATASET, checked on disk through HDF5.
#include <string.h>

#include <string>
#include <vector>

#include "OrmakPrivateStructures.h"
#include "OrmakTest.h"
#include "StoredObject.h"
#include "objects/ChunkShape.h"

namespace {

using Sizes = std::vector<hsize_t>;

class Datasets : public OrmakTest {
protected:
    void SetUp() override {
        OrmakTest::SetUp();
        ASSERT_EQ(run("CREATE FILE a.h5, other.h5; USE FILE a.h5"), 0);
    }
    static bool exists(const char *path, const char *file = "a.h5") {
        hid_t id = H5Fopen(file, H5F_ACC_RDONLY, H5P_DEFAULT);
        bool found = H5Lexists(id, path, H5P_DEFAULT) > 0;
        H5Fclose(id);
        return found;
    }
};

} // namespace

TEST_F(Datasets, ValuesFillTheDimensionsInRowOrder) {
    ASSERT_EQ(run("CREATE DATASET d AS INT(3, 2) VALUES((1, 2), (3, 4), (5, 6))"), 0) << message();
    EXPECT_EQ(Dataset("/d").ints(), (std::vector<int>{1, 2, 3, 4, 5, 6}));

    // No dimensions: one element in one dimension, never a scalar.
    ASSERT_EQ(run("CREATE DATASET one AS DOUBLE VALUES(2.5)"), 0) << message();
    EXPECT_EQ(Dataset("/one").dimensions(), (Sizes{1}));
}

TEST_F(Datasets, ByteOrderCharsetAndTagStayWithTheType) {
    ASSERT_EQ(run("CREATE DATASET b AS BIG ENDIAN UNSIGNED BIGINT(2) VALUES(7, 0x0102030405060708); "
                  "CREATE DATASET s AS UTF8 CHAR(8) FILL VALUES(\"none\"); "
                  "CREATE DATASET o AS OPAQUE(16) TAG \"raw frame\" VALUES(1, 2, 3)"),
              0)
        << message();
    Dataset b("/b");
    EXPECT_EQ(H5Tequal(b.type(), H5T_STD_U64BE), 1);
    // The values arrive as written, whatever the byte order on disk.
    EXPECT_EQ(b.read<unsigned long long>(H5T_NATIVE_ULLONG), (std::vector<unsigned long long>{7, 0x0102030405060708}));

    EXPECT_EQ(H5Tget_cset(Dataset("/s").type()), H5T_CSET_UTF8);

    Dataset o("/o");
    EXPECT_EQ(o.tag(), "raw frame");
    std::vector<char> bytes = o.bytes();
    ASSERT_EQ(bytes.size(), 16u);
    EXPECT_EQ(memcmp(bytes.data(), "\1\2\3\0\0\0\0\0\0\0\0\0\0\0\0\0", 16), 0);
}

TEST_F(Datasets, TextTypesTakeTheirLastDimensionAsTheirSize) {
    ASSERT_EQ(run("CREATE DATASET c AS CHAR(4, 10) VALUES(\"one\", \"two\", \"three\"); "
                  "CREATE DATASET v AS VARCHAR(3) VALUES(\"a\", , \"ccc\")"),
              0)
        << message();
    Dataset c("/c");
    EXPECT_EQ(c.dimensions(), (Sizes{4}));
    std::vector<char> texts = c.bytes();
    ASSERT_EQ(texts.size(), 40u);
    EXPECT_STREQ(&texts[20], "three");

    EXPECT_EQ(Dataset("/v").strings(), (std::vector<std::string>{"a", "(null)", "ccc"}));
}

TEST_F(Datasets, VariableLengthValuesAndFillValues) {
    ASSERT_EQ(run("CREATE DATASET v AS VARINT(2) FILL VALUES(5, 6) VALUES((1, 2), 3); "
                  "CREATE DATASET f AS FLOAT(3) FILL VALUES(1.5); CREATE DATASET u AS INT FILL UNDEFINED"),
              0)
        << message();
    Dataset v("/v");
    EXPECT_EQ(v.lists(), (std::vector<std::vector<int>>{{1, 2}, {3}}));
    hid_t memory = H5Tvlen_create(H5T_NATIVE_INT);
    hvl_t fill = {0, nullptr};
    ASSERT_GE(H5Pget_fill_value(v.list(), memory, &fill), 0);
    ASSERT_EQ(fill.len, 2u);
    EXPECT_EQ(((int *)fill.p)[1], 6);
    H5free_memory(fill.p);
    H5Tclose(memory);

    EXPECT_EQ(Dataset("/f").read<float>(H5T_NATIVE_FLOAT), (std::vector<float>{1.5f, 1.5f, 1.5f}));
    H5D_fill_value_t kind;
    H5Pfill_value_defined(Dataset("/u").list(), &kind);
    EXPECT_EQ(kind, H5D_FILL_VALUE_UNDEFINED);
}

TEST_F(Datasets, StorageKindsAllocationAndChunks) {
    ASSERT_EQ(run("CREATE EARLY CHUNKED(10, , 5) DATASET e AS INT(100, 50, 40); "
                  "CREATE DATASET m AS INT(10 TO 20, 5 TO UNLIMITED); "
                  "CREATE COMPACT DATASET k AS INT(4) VALUES(1, 2, 3, 4); "
                  "CREATE INCREMENTAL CHUNKED(500, 3) DATASET capped AS INT(100 TO 200, 8); "
                  "CREATE LATE CHUNKED(50) DATASET open AS INT(10 TO UNLIMITED, 4)"),
              0)
        << message();
    Dataset e("/e");
    EXPECT_EQ(e.chunk(), (Sizes{10, 50, 5}));
    EXPECT_EQ(e.allocation(), H5D_ALLOC_TIME_EARLY);
    // A maximum alone makes the dataset chunked.
    EXPECT_EQ(Dataset("/m").maxima(), (Sizes{20, H5S_UNLIMITED}));
    EXPECT_EQ(Dataset("/k").layout(), H5D_COMPACT);
    // A chunk is cut to the maximum of an extendible dimension, and to the dimension otherwise.
    EXPECT_EQ(Dataset("/capped").chunk(), (Sizes{200, 3}));
    EXPECT_EQ(Dataset("/open").chunk(), (Sizes{50, 4}));
}

TEST_F(Datasets, FiltersStandInThePipelineOrder) {
    ASSERT_EQ(run("CREATE DATASET z AS INT(100) NBIT PRECISION 12 OFFSET 2 SCALEOFFSET 2 SHUFFLE ZLIB LEVEL 3 "
                  "FLETCHER32; CREATE DATASET g AS DOUBLE(1000) ZLIB"),
              0)
        << message();
    Dataset z("/z");
    auto filters = z.filters();
    ASSERT_EQ(filters.size(), 5u);
    EXPECT_EQ(filters[0].first, H5Z_FILTER_NBIT);
    EXPECT_EQ(filters[1].first, H5Z_FILTER_SCALEOFFSET);
    EXPECT_EQ(filters[2].first, H5Z_FILTER_SHUFFLE);
    EXPECT_EQ(filters[3].second[0], 3u);
    EXPECT_EQ(filters[4].first, H5Z_FILTER_FLETCHER32);
    // What the n-bit filter packs can not go on through the scale-offset filter.
    EXPECT_EQ(refuse("CREATE DATASET w AS INT(10) NBIT PRECISION 12 OFFSET 2 SCALEOFFSET 2 VALUES(1)"),
              ORMAK_ERROR_NOT_SUPPORTED);
    // A filter alone makes the dataset chunked; ZLIB without a level is 9.
    Dataset g("/g");
    EXPECT_EQ(g.layout(), H5D_CHUNKED);
    ASSERT_EQ(g.filters().size(), 1u);
    EXPECT_EQ(g.filters()[0].second[0], 9u);
}

TEST_F(Datasets, AutomaticChunksFollowTheSizeOfTheData) {
    EXPECT_EQ(ormak::automatic_chunk({1000, 1000}, 8), (Sizes{63, 63}));
    EXPECT_EQ(ormak::automatic_chunk({0, 10}, 4), (Sizes{512, 5}));
    EXPECT_EQ(ormak::automatic_chunk({1024, 1024, 1024}, 4), (Sizes{32, 32, 64}));
    // A single text value has a chunk of one element.
    ASSERT_EQ(run("CREATE CHUNKED DATASET t AS CHAR(10)"), 0) << message();
    EXPECT_EQ(Dataset("/t").chunk(), (Sizes{1}));
}

TEST_F(Datasets, AttributeOrderAndStorage) {
    ASSERT_EQ(run("CREATE DATASET t AS INT ATTRIBUTE ORDER INDEXED ATTRIBUTE STORAGE COMPACT 8 DENSE 6"), 0) << message();
    unsigned order, compact, dense;
    Dataset t("/t");
    H5Pget_attr_creation_order(t.list(), &order);
    H5Pget_attr_phase_change(t.list(), &compact, &dense);
    EXPECT_EQ(order, unsigned(H5P_CRT_ORDER_TRACKED | H5P_CRT_ORDER_INDEXED));
    EXPECT_EQ(compact, 8u);
    EXPECT_EQ(dense, 6u);
}

TEST_F(Datasets, ListsShareOneDefinitionAcrossFilesAndMakeParents) {
    ASSERT_EQ(run("CREATE DATASET x/y/d1, other.h5 /runs/d2 AS SMALLINT(3) VALUES(4, 5, 6)"), 0) << message();
    EXPECT_EQ(Dataset("/x/y/d1").read<short>(H5T_NATIVE_SHORT), (std::vector<short>{4, 5, 6}));
    EXPECT_EQ(Dataset("/runs/d2", "other.h5").read<short>(H5T_NATIVE_SHORT), (std::vector<short>{4, 5, 6}));
    // The other file was opened for its item only.
    EXPECT_STREQ(current_file->file_name, "a.h5");
}

TEST_F(Datasets, TruncateReplacesWhateverHasTheName) {
    ASSERT_EQ(run("CREATE GROUP g/inner; CREATE DATASET g/inner/d AS INT"), 0);
    EXPECT_EQ(refuse("CREATE DATASET g AS INT"), ORMAK_ERROR_ALREADY_EXISTS);
    EXPECT_EQ(said, "Error when creating dataset \"g\" as it already exists");
    ASSERT_EQ(run("CREATE TRUNCATE DATASET g AS INT(2) VALUES(8, 9)"), 0) << message();
    EXPECT_FALSE(exists("/g/inner"));
    EXPECT_EQ(Dataset("/g").ints(), (std::vector<int>{8, 9}));
    EXPECT_EQ(refuse("CREATE DATASET . AS INT"), ORMAK_ERROR_ALREADY_EXISTS);
}

TEST_F(Datasets, ValuesFromTheCursorAndFromMemory) {
    _ormak_cursor_set_data_type(ORMAK_DOUBLE);
    for (double value : {1.25, 2.5}) ASSERT_EQ(_ormak_cursor_add(&value, sizeof value), 0);
    ASSERT_EQ(run("CREATE DATASET c AS DOUBLE(4) FROM CURSOR"), 0) << message();
    EXPECT_EQ(Dataset("/c").read<double>(H5T_NATIVE_DOUBLE), (std::vector<double>{1.25, 2.5, 0, 0}));

    int block[6] = {1, 2, 3, 4, 5, 6};
    ASSERT_EQ(ormak_variable_transient_register(block), 0);
    ASSERT_EQ(run("CREATE DATASET whole AS INT(2, 3) FROM MEMORY 0"), 0) << message();
    EXPECT_EQ(Dataset("/whole").ints(), (std::vector<int>{1, 2, 3, 4, 5, 6}));
    // Feeding a statement does not spend a transient variable.
    EXPECT_EQ(ormak_variable_get_number(block), 0);
    ASSERT_EQ(run("CREATE DATASET half AS INT(6) FROM MEMORY 0 SIZE 10"), 0) << message();
    // Ten bytes: two whole elements and the two low bytes of the third.
    EXPECT_EQ(Dataset("/half").ints(), (std::vector<int>{1, 2, 3, 0, 0, 0}));
}

TEST_F(Datasets, BadDefinitionsAreRefusedBeforeAnyFileIsTouched) {
    struct Case {
        const char *script;
        int status;
        const char *message;
    };
    const Case cases[] = {
        {"CREATE CHUNKED(0) DATASET p/d AS INT(-1)", ORMAK_ERROR_INVALID_VALUE,
         "Error when creating dataset \"p/d\" as chunk storage dimension is not equal to or greater than 1"},
        {"CREATE DATASET p/d AS INT(3, -1)", ORMAK_ERROR_INVALID_VALUE,
         "Error when creating dataset \"p/d\" as dimension is not equal to or greater than 0"},
        {"CREATE DATASET p/d AS INT(10 TO 5)", ORMAK_ERROR_INVALID_VALUE,
         "Error when creating dataset \"p/d\" as extendible dimension is not equal to or greater than dimension"},
        {"CREATE DATASET p/d AS UTF8 INT", ORMAK_ERROR_UNEXPECTED_DATA_TYPE,
         "Error when setting charset of dataset \"p/d\" as data type is neither char nor varchar"},
        {"CREATE DATASET p/d AS INT TAG \"t\"", ORMAK_ERROR_UNEXPECTED_DATA_TYPE,
         "Error when setting tag of dataset \"p/d\" as data type is not opaque"},
        {"CREATE DATASET p/d AS CHAR(4) NBIT PRECISION 3 OFFSET 0", ORMAK_ERROR_UNEXPECTED_DATA_TYPE,
         "Error when setting n-bit filter of dataset \"p/d\" as data type is neither an integer nor floating-point"},
        {"CREATE DATASET p/d AS INT ZLIB LEVEL 10", ORMAK_ERROR_INVALID_VALUE,
         "Error when creating dataset \"p/d\" as ZLIB filter level is not between 0 and 9"},
        {"CREATE DATASET p/d AS INT(1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1)",
         ORMAK_ERROR_INVALID_VALUE, "Error when creating dataset \"p/d\" as it has more than 32 dimensions"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.script);
        EXPECT_EQ(refuse(c.script), c.status);
        EXPECT_EQ(said, c.message);
        EXPECT_FALSE(exists("/p"));
    }
    // Bad options come before the missing file.
    ASSERT_EQ(run("CLOSE ALL FILE"), 0);
    EXPECT_EQ(refuse("CREATE DATASET d AS INT ZLIB LEVEL 10"), ORMAK_ERROR_INVALID_VALUE);
    EXPECT_EQ(refuse("CREATE DATASET d AS INT ZLIB LEVEL 9"), ORMAK_ERROR_NOT_OPEN);
    EXPECT_EQ(said, "Error when creating dataset \"d\" as no file is in use");
}

TEST_F(Datasets, WhatHdf5RefusesEndsTheStatementWithEarlierItemsDone) {
    EXPECT_EQ(refuse("CREATE CONTIGUOUS DATASET c AS INT(10 TO 20)"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(said, "Error when creating dataset \"c\"");
    EXPECT_FALSE(exists("/c"));
    ASSERT_EQ(run("CREATE DATASET taken AS INT"), 0);
    EXPECT_EQ(refuse("CREATE DATASET first, taken, last AS INT ZLIB LEVEL 0"), ORMAK_ERROR_ALREADY_EXISTS);
    EXPECT_TRUE(exists("/first"));
    EXPECT_FALSE(exists("/last"));
    EXPECT_EQ(refuse("CREATE DATASET n AS INT FROM TEXT FILE missing.txt"), ORMAK_ERROR_NOT_FOUND);
    // A dataset whose data could not be had stays, with its fill value.
    EXPECT_TRUE(exists("/n"));
}
