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
    Dataset d("/d");
    EXPECT_EQ(d.maxima(), (Sizes{3, 2}));
    EXPECT_EQ(d.layout(), H5D_CONTIGUOUS);
    EXPECT_EQ(d.ints(), (std::vector<int>{1, 2, 3, 4, 5, 6}));

    // No dimensions: one element in one dimension, never a scalar.
    ASSERT_EQ(run("CREATE DATASET one AS DOUBLE VALUES(2.5)"), 0) << message();
    Dataset one("/one");
    EXPECT_EQ(one.dimensions(), (Sizes{1}));
    EXPECT_EQ(one.read<double>(H5T_NATIVE_DOUBLE), (std::vector<double>{2.5}));
}

TEST_F(Datasets, ByteOrderCharsetAndTagStayWithTheType) {
    ASSERT_EQ(run("CREATE DATASET b AS BIG ENDIAN UNSIGNED BIGINT(2) VALUES(7, 0x0102030405060708); "
                  "CREATE DATASET l AS LITTLE ENDIAN SMALLINT VALUES(-3); "
                  "CREATE DATASET s AS UTF8 CHAR(8) FILL VALUES(\"none\"); "
                  "CREATE DATASET o AS OPAQUE(16) TAG \"raw frame\" VALUES(1, 2, 3)"),
              0)
        << message();
    Dataset b("/b");
    EXPECT_EQ(H5Tequal(b.type(), H5T_STD_U64BE), 1);
    // The values arrive as written, whatever the byte order on disk.
    EXPECT_EQ(b.read<unsigned long long>(H5T_NATIVE_ULLONG), (std::vector<unsigned long long>{7, 0x0102030405060708}));
    EXPECT_EQ(H5Tequal(Dataset("/l").type(), H5T_STD_I16LE), 1);

    Dataset s("/s");
    EXPECT_EQ(H5Tget_class(s.type()), H5T_STRING);
    EXPECT_EQ(H5Tget_size(s.type()), 8u);
    EXPECT_EQ(H5Tget_cset(s.type()), H5T_CSET_UTF8);
    char fill[8] = {};
    ASSERT_GE(H5Pget_fill_value(s.list(), s.type(), fill), 0);
    EXPECT_EQ(memcmp(fill, "none\0\0\0\0", 8), 0);

    Dataset o("/o");
    EXPECT_EQ(o.tag(), "raw frame");
    std::vector<char> bytes = o.bytes();
    ASSERT_EQ(bytes.size(), 16u);
    EXPECT_EQ(memcmp(bytes.data(), "\1\2\3\0\0\0\0\0\0\0\0\0\0\0\0\0", 16), 0);
}

TEST_F(Datasets, TextTypesTakeTheirLastDimensionAsTheirSize) {
    ASSERT_EQ(run("CREATE DATASET c AS CHAR(4, 10) VALUES(\"one\", \"two\", \"three\"); "
                  "CREATE DATASET o AS OPAQUE(4, 16); CREATE DATASET v AS VARCHAR(3) VALUES(\"a\", , \"ccc\")"),
              0)
        << message();
    Dataset c("/c");
    EXPECT_EQ(c.dimensions(), (Sizes{4}));
    EXPECT_EQ(H5Tget_size(c.type()), 10u);
    std::vector<char> texts = c.bytes();
    ASSERT_EQ(texts.size(), 40u);
    EXPECT_STREQ(&texts[10], "two");
    EXPECT_STREQ(&texts[20], "three");
    EXPECT_EQ(texts[30], '\0');

    Dataset o("/o");
    EXPECT_EQ(o.dimensions(), (Sizes{4}));
    EXPECT_EQ(H5Tget_size(o.type()), 16u);

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

    Dataset f("/f");
    H5D_fill_value_t kind;
    H5Pfill_value_defined(f.list(), &kind);
    EXPECT_EQ(kind, H5D_FILL_VALUE_USER_DEFINED);
    EXPECT_EQ(f.read<float>(H5T_NATIVE_FLOAT), (std::vector<float>{1.5f, 1.5f, 1.5f}));
    Dataset u("/u");
    H5Pfill_value_defined(u.list(), &kind);
    EXPECT_EQ(kind, H5D_FILL_VALUE_UNDEFINED);
}

TEST_F(Datasets, StorageKindsAllocationAndChunks) {
    ASSERT_EQ(run("CREATE EARLY CHUNKED(10, , 5) DATASET e AS INT(100, 50, 40); "
                  "CREATE CHUNKED DATASET u AS DOUBLE(UNLIMITED, 20); "
                  "CREATE DATASET m AS INT(10 TO 20, 5 TO UNLIMITED); "
                  "CREATE COMPACT DATASET k AS INT(4) VALUES(1, 2, 3, 4); "
                  "CREATE INCREMENTAL CHUNKED(500, 3) DATASET capped AS INT(100 TO 200, 8); "
                  "CREATE LATE CHUNKED(50) DATASET open AS INT(10 TO UNLIMITED, 4)"),
              0)
        << message();
    Dataset e("/e");
    EXPECT_EQ(e.layout(), H5D_CHUNKED);
    EXPECT_EQ(e.chunk(), (Sizes{10, 50, 5}));
    EXPECT_EQ(e.allocation(), H5D_ALLOC_TIME_EARLY);
    Dataset u("/u");
    EXPECT_EQ(u.maxima(), (Sizes{H5S_UNLIMITED, 20}));
    EXPECT_EQ(u.chunk(), (Sizes{1, 20}));
    // A maximum alone makes the dataset chunked.
    Dataset m("/m");
    EXPECT_EQ(m.layout(), H5D_CHUNKED);
    EXPECT_EQ(m.maxima(), (Sizes{20, H5S_UNLIMITED}));
    Dataset k("/k");
    EXPECT_EQ(k.layout(), H5D_COMPACT);
    EXPECT_EQ(k.ints(), (std::vector<int>{1, 2, 3, 4}));
    // A chunk is cut to the maximum of an extendible dimension, and to the dimension otherwise.
    Dataset capped("/capped");
    EXPECT_EQ(capped.chunk(), (Sizes{200, 3}));
    EXPECT_EQ(capped.allocation(), H5D_ALLOC_TIME_INCR);
    Dataset open("/open");
    EXPECT_EQ(open.chunk(), (Sizes{50, 4}));
    EXPECT_EQ(open.allocation(), H5D_ALLOC_TIME_LATE);
}

TEST_F(Datasets, FiltersStandInThePipelineOrder) {
    ASSERT_EQ(run("CREATE DATASET z AS INT(100) NBIT PRECISION 12 OFFSET 2 SCALEOFFSET 2 SHUFFLE ZLIB LEVEL 3 "
                  "FLETCHER32; CREATE DATASET n AS INT(100) NBIT PRECISION 12 OFFSET 2 SHUFFLE VALUES(1, 2, 3); "
                  "CREATE DATASET g AS DOUBLE(1000) ZLIB; "
                  "CREATE DATASET f AS FLOAT(10) SCALEOFFSET 3"),
              0)
        << message();
    Dataset z("/z");
    EXPECT_EQ(z.layout(), H5D_CHUNKED);
    auto filters = z.filters();
    ASSERT_EQ(filters.size(), 5u);
    EXPECT_EQ(filters[0].first, H5Z_FILTER_NBIT);
    EXPECT_EQ(filters[1].first, H5Z_FILTER_SCALEOFFSET);
    EXPECT_EQ(filters[1].second[0], unsigned(H5Z_SO_INT));
    EXPECT_EQ(filters[1].second[1], 2u);
    EXPECT_EQ(filters[2].first, H5Z_FILTER_SHUFFLE);
    EXPECT_EQ(filters[3].first, H5Z_FILTER_DEFLATE);
    EXPECT_EQ(filters[3].second[0], 3u);
    EXPECT_EQ(filters[4].first, H5Z_FILTER_FLETCHER32);
    EXPECT_EQ(H5Tget_precision(z.type()), 12u);
    EXPECT_EQ(H5Tget_offset(z.type()), 2u);
    // What the n-bit filter packs can not go on through the scale-offset filter.
    EXPECT_EQ(refuse("CREATE DATASET w AS INT(10) NBIT PRECISION 12 OFFSET 2 SCALEOFFSET 2 VALUES(1)"),
              ORMAK_ERROR_NOT_SUPPORTED);
    EXPECT_EQ(refuse("CREATE EARLY DATASET w AS INT(10) NBIT PRECISION 12 OFFSET 2 SCALEOFFSET 2"),
              ORMAK_ERROR_NOT_SUPPORTED);
    std::vector<int> values = Dataset("/n").ints();
    EXPECT_EQ(values[2], 3);
    EXPECT_EQ(values[3], 0);
    // A filter alone makes the dataset chunked; ZLIB without a level is 9.
    Dataset g("/g");
    EXPECT_EQ(g.layout(), H5D_CHUNKED);
    ASSERT_EQ(g.filters().size(), 1u);
    EXPECT_EQ(g.filters()[0].second[0], 9u);
    Dataset f("/f");
    EXPECT_EQ(f.filters()[0].second[0], unsigned(H5Z_SO_FLOAT_DSCALE));
}

TEST_F(Datasets, AutomaticChunksFollowTheSizeOfTheData) {
    EXPECT_EQ(ormak::automatic_chunk({1000, 1000}, 8), (Sizes{63, 63}));
    EXPECT_EQ(ormak::automatic_chunk({100}, 4), (Sizes{100}));
    EXPECT_EQ(ormak::automatic_chunk({0, 10}, 4), (Sizes{512, 5}));
    EXPECT_EQ(ormak::automatic_chunk({1024, 1024, 1024}, 4), (Sizes{32, 32, 64}));
    EXPECT_EQ(ormak::automatic_chunk({1, 1, 1}, 8), (Sizes{1, 1, 1}));

    ASSERT_EQ(run("CREATE DATASET big AS DOUBLE(1000, 1000 TO UNLIMITED)"), 0) << message();
    EXPECT_EQ(Dataset("/big").chunk(), (Sizes{63, 63}));
    // A single text value has a chunk of one element.
    ASSERT_EQ(run("CREATE CHUNKED DATASET t AS CHAR(10)"), 0) << message();
    EXPECT_EQ(Dataset("/t").chunk(), (Sizes{1}));
}

TEST_F(Datasets, AttributeOrderAndStorage) {
    ASSERT_EQ(run("CREATE DATASET t AS INT ATTRIBUTE ORDER TRACKED ATTRIBUTE STORAGE COMPACT 8 DENSE 6; "
                  "CREATE DATASET i AS INT ATTRIBUTE ORDER INDEXED"),
              0)
        << message();
    unsigned order, compact, dense;
    Dataset t("/t");
    H5Pget_attr_creation_order(t.list(), &order);
    H5Pget_attr_phase_change(t.list(), &compact, &dense);
    EXPECT_EQ(order, unsigned(H5P_CRT_ORDER_TRACKED));
    EXPECT_EQ(compact, 8u);
    EXPECT_EQ(dense, 6u);
    Dataset i("/i");
    H5Pget_attr_creation_order(i.list(), &order);
    EXPECT_EQ(order, unsigned(H5P_CRT_ORDER_TRACKED | H5P_CRT_ORDER_INDEXED));
}

TEST_F(Datasets, ListsShareOneDefinitionAcrossFilesAndMakeParents) {
    ASSERT_EQ(run("CREATE DATASET x/y/d1, other.h5 /runs/d2 AS SMALLINT(3) VALUES(4, 5, 6)"), 0) << message();
    EXPECT_EQ(Dataset("/x/y/d1").read<short>(H5T_NATIVE_SHORT), (std::vector<short>{4, 5, 6}));
    EXPECT_EQ(Dataset("/runs/d2", "other.h5").read<short>(H5T_NATIVE_SHORT), (std::vector<short>{4, 5, 6}));
    // The other file was opened for its item only.
    EXPECT_STREQ(current_file->file_name, "a.h5");
    ASSERT_EQ(run("USE GROUP x; CREATE DATASET ../z AS INT"), 0) << message();
    EXPECT_TRUE(exists("/z"));
}

TEST_F(Datasets, TruncateReplacesWhateverHasTheName) {
    ASSERT_EQ(run("CREATE GROUP g/inner; CREATE DATASET g/inner/d AS INT"), 0);
    EXPECT_EQ(refuse("CREATE DATASET g AS INT"), ORMAK_ERROR_ALREADY_EXISTS);
    EXPECT_EQ(said, "Error when creating dataset \"g\" as it already exists");
    ASSERT_EQ(run("CREATE TRUNCATE DATASET g AS INT(2) VALUES(8, 9)"), 0) << message();
    EXPECT_FALSE(exists("/g/inner"));
    EXPECT_EQ(Dataset("/g").ints(), (std::vector<int>{8, 9}));
    EXPECT_EQ(refuse("CREATE DATASET . AS INT"), ORMAK_ERROR_ALREADY_EXISTS);
    EXPECT_EQ(refuse("CREATE DATASET d/ AS INT"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(said, "Error when creating dataset \"d/\" as it should not end with \"/\"");
}

TEST_F(Datasets, ValuesFromTheCursorAndFromMemory) {
    _ormak_cursor_set_data_type(ORMAK_DOUBLE);
    for (double value : {1.25, 2.5}) ASSERT_EQ(_ormak_cursor_add(&value, sizeof value), 0);
    ASSERT_EQ(run("CREATE DATASET c AS DOUBLE(4) FROM CURSOR"), 0) << message();
    EXPECT_EQ(Dataset("/c").read<double>(H5T_NATIVE_DOUBLE), (std::vector<double>{1.25, 2.5, 0, 0}));

    int block[6] = {1, 2, 3, 4, 5, 6};
    ASSERT_EQ(ormak_variable_transient_register(block), 0);
    ASSERT_EQ(run("CREATE DATASET m AS INT(6) FROM MEMORY 0 SIZE 24; CREATE DATASET whole AS INT(2, 3) FROM MEMORY 0"),
              0)
        << message();
    EXPECT_EQ(Dataset("/m").ints(), (std::vector<int>{1, 2, 3, 4, 5, 6}));
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
        {"CREATE DATASET p/d AS COMPOUND(a AS INT, a AS INT)(-1)", ORMAK_ERROR_ALREADY_EXISTS,
         "Error when creating dataset \"p/d\" as compound member \"a\" already exists"},
        {"CREATE DATASET p/d AS INT(3, -1)", ORMAK_ERROR_INVALID_VALUE,
         "Error when creating dataset \"p/d\" as dimension is not equal to or greater than 0"},
        {"CREATE DATASET p/d AS INT(10 TO 5)", ORMAK_ERROR_INVALID_VALUE,
         "Error when creating dataset \"p/d\" as extendible dimension is not equal to or greater than dimension"},
        {"CREATE DATASET p/d AS UTF8 INT", ORMAK_ERROR_UNEXPECTED_DATA_TYPE,
         "Error when setting charset of dataset \"p/d\" as data type is neither char nor varchar"},
        {"CREATE DATASET p/d AS INT TAG \"t\"", ORMAK_ERROR_UNEXPECTED_DATA_TYPE,
         "Error when setting tag of dataset \"p/d\" as data type is not opaque"},
        {"CREATE DATASET p/d AS INT ATTRIBUTE STORAGE COMPACT -1 DENSE 2", ORMAK_ERROR_INVALID_VALUE,
         "Error when creating dataset \"p/d\" as attribute storage max compact is not equal to or greater than 0"},
        {"CREATE DATASET p/d AS INT ATTRIBUTE STORAGE COMPACT 1 DENSE -2", ORMAK_ERROR_INVALID_VALUE,
         "Error when creating dataset \"p/d\" as attribute storage min density is not equal to or greater than 0"},
        {"CREATE DATASET p/d AS CHAR(4) NBIT PRECISION 3 OFFSET 0", ORMAK_ERROR_UNEXPECTED_DATA_TYPE,
         "Error when setting n-bit filter of dataset \"p/d\" as data type is neither an integer nor floating-point"},
        {"CREATE DATASET p/d AS INT SCALEOFFSET -1", ORMAK_ERROR_INVALID_VALUE,
         "Error when creating dataset \"p/d\" as scale-offset value is not equal to or greater than 0"},
        {"CREATE DATASET p/d AS INT ZLIB LEVEL 10", ORMAK_ERROR_INVALID_VALUE,
         "Error when creating dataset \"p/d\" as ZLIB filter level is not between 0 and 9"},
        {"CREATE DATASET p/d AS INT FROM MEMORY 2", ORMAK_ERROR_NOT_REGISTERED,
         "Error when inserting data into dataset \"p/d\" as memory number \"2\" is not registered"},
        {"CREATE DATASET p/d AS INT(1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1)",
         ORMAK_ERROR_INVALID_VALUE, "Error when creating dataset \"p/d\" as it has more than 32 dimensions"},
        {"CREATE DATASET p/d AS COMPOUND(a AS INT) VALUES(1)", ORMAK_ERROR_NOT_SUPPORTED,
         "Error when creating dataset \"p/d\" as values of a compound data type are not supported"},
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
    EXPECT_EQ(said, "Error when opening file \"missing.txt\" as it does not exist");
    // A dataset whose data could not be had stays, with its fill value.
    EXPECT_TRUE(exists("/n"));
}
