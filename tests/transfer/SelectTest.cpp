// SELECT: what INSERT and CREATE wrote comes back, through every selection and into every
// destination, with post-processing on the way.
#include <stdint.h>
#include <string.h>

#include <string>
#include <vector>

#include "OrmakPrivateStructures.h"
#include "OrmakTest.h"

namespace {

class Select : public OrmakTest {
protected:
    void SetUp() override {
        OrmakTest::SetUp();
        ASSERT_EQ(run("CREATE FILE a.h5, other.h5; USE FILE a.h5; "
                      "CREATE DATASET d AS INT(3, 2) VALUES((1, 2), (3, 4), (5, 6)); "
                      "CREATE DATASET other.h5 /g/d AS INT(3, 4) VALUES((0, 1, 2, 3), (10, 11, 12, 13))"),
                  0)
            << message();
    }

    /* The cursor in use as text, values divided by blanks; members of one value by commas. */
    static std::string cursor() {
        std::string text;
        int type = ormak_cursor_get_data_type(nullptr);
        ormak_cursor_first(nullptr);
        for (int i = 0; i < ormak_cursor_get_count(nullptr); i++, ormak_cursor_next(nullptr)) {
            if (i) text += " ";
            if (type == ORMAK_VARCHAR) {
                const char *s = ormak_cursor_get_char(nullptr);
                text += s ? s : "(null)";
            } else if (type == ORMAK_DOUBLE) {
                char number[32];
                snprintf(number, sizeof number, "%g", *ormak_cursor_get_double(nullptr));
                text += number;
            } else if (type == ORMAK_BIGINT) {
                text += std::to_string(*ormak_cursor_get_bigint(nullptr));
            } else if (type == ORMAK_INT) {
                text += std::to_string(*ormak_cursor_get_int(nullptr));
            } else if (type == ORMAK_VARINT || type == ORMAK_CHAR) {
                int members = ormak_subcursor_get_count(nullptr);
                ormak_subcursor_first(nullptr);
                for (int k = 0; k < members; k++, ormak_subcursor_next(nullptr)) {
                    if (k && type == ORMAK_VARINT) text += ",";
                    if (type == ORMAK_VARINT) text += std::to_string(*ormak_subcursor_get_int(nullptr));
                    else text += *ormak_subcursor_get_char(nullptr) ? *ormak_subcursor_get_char(nullptr) : '.';
                }
                if (members <= 0) text += "{}";
            }
        }
        return text;
    }
};

} // namespace

TEST_F(Select, WhatWasWrittenComesBackInEveryType) {
    ASSERT_EQ(run("SELECT FROM d"), 0) << message();
    EXPECT_EQ(ormak_cursor_get_data_type(nullptr), ORMAK_INT);
    EXPECT_EQ(cursor(), "1 2 3 4 5 6");
    EXPECT_EQ(_ormak_get_last_data_count(), 6u);

    ASSERT_EQ(run("CREATE DATASET b AS BIG ENDIAN BIGINT(2) VALUES(-7, 0x0102030405060708); SELECT FROM b"), 0)
        << message();
    EXPECT_EQ(cursor(), "-7 72623859790382856");
    ASSERT_EQ(run("CREATE DATASET f AS DOUBLE(2) VALUES(1.5, -2.25); SELECT FROM f"), 0) << message();
    EXPECT_EQ(cursor(), "1.5 -2.25");
    ASSERT_EQ(run("CREATE DATASET t AS CHAR(2, 3) VALUES(\"ab\", \"xyz\"); SELECT FROM t"), 0) << message();
    EXPECT_EQ(cursor(), "ab. xyz");
    ASSERT_EQ(run("CREATE DATASET s AS VARCHAR(3) VALUES(\"one\", , \"three\"); SELECT FROM s"), 0) << message();
    EXPECT_EQ(cursor(), "one (null) three");
    ASSERT_EQ(run("CREATE DATASET v AS VARINT(3) VALUES((1, 2, 3), 4); SELECT FROM v"), 0) << message();
    EXPECT_EQ(cursor(), "1,2,3 4 {}");
    // An attribute, and a dataset of no elements: an empty result of its type.
    ASSERT_EQ(run("CREATE ATTRIBUTE d/unit AS CHAR(6) VALUES(\"metre\"); SELECT FROM ATTRIBUTE d/unit"), 0) << message();
    EXPECT_EQ(cursor(), "metre.");
    ASSERT_EQ(run("CREATE DATASET empty AS DOUBLE(0); SELECT FROM empty"), 0) << message();
    EXPECT_EQ(ormak_cursor_get_count(nullptr), 0);
    EXPECT_EQ(ormak_cursor_get_data_type(nullptr), ORMAK_DOUBLE);
}

TEST_F(Select, SelectionsPostProcessingAndOtherFiles) {
    ASSERT_EQ(run("SELECT FROM d(1:::1, 1:::)"), 0) << message();
    EXPECT_EQ(cursor(), "4");
    ASSERT_EQ(run("SELECT FROM d(0:2:2:1, :::) ORDER DESCEND"), 0) << message();
    EXPECT_EQ(cursor(), "6 5 2 1");
    ASSERT_EQ(run("SELECT FROM other.h5 /g/d(0, 1), (1, 3)"), 0) << message();
    EXPECT_EQ(cursor(), "1 13");
    EXPECT_STREQ(current_file->file_name, "a.h5");
    ASSERT_EQ(run("CREATE DATASET s AS VARCHAR(4) VALUES(\"pear\", \"fig\", \"apple\", \"kiwi\"); "
                  "SELECT FROM s ORDER ASCEND DESCEND TOP 3 2 STEP 2"),
              0)
        << message();
    EXPECT_EQ(cursor(), "pp wk");
    EXPECT_EQ(_ormak_get_last_data_count(), 2u);
}

TEST_F(Select, FilesReadBackThroughTheRoadIn) {
    ASSERT_EQ(run("SELECT FROM d INTO TEXT FILE out.txt; SELECT FROM d(0:1:2:1) INTO TEXT FILE out.txt SPLIT 2"), 0)
        << message();
    EXPECT_EQ(read_text("out.txt"), "1,2,3,4,5,6\n1,2\n3,4\n");
    ASSERT_EQ(run("SELECT FROM d ORDER DESCEND INTO TRUNCATE TEXT FILE out.csv DOS SEPARATOR \";\" SPLIT 3"), 0)
        << message();
    EXPECT_EQ(read_text("out.csv"), "6;5;4\r\n3;2;1\r\n");
    ASSERT_EQ(run("SELECT FROM d INTO TRUNCATE BINARY FILE out.bin; CREATE DATASET copied AS INT(6) FROM BINARY FILE out.bin; SELECT FROM copied"), 0) << message();
    EXPECT_EQ(cursor(), "1 2 3 4 5 6");
    ASSERT_EQ(run("CREATE DATASET v AS VARINT(2) VALUES((1, 2), 3); SELECT FROM v INTO TRUNCATE TEXT FILE v.txt; "
                  "CREATE DATASET w AS VARINT(2) FROM TEXT FILE v.txt; SELECT FROM w"),
              0)
        << message();
    EXPECT_EQ(cursor(), "1,2 3");
    // A large dataset goes to a binary file in slices: the same bytes as one read.
    std::vector<int> large(1500 * 3000);
    for (size_t i = 0; i < large.size(); i++) large[i] = (int)(i * 7);
    ASSERT_EQ(ormak_variable_register(large.data()), 0);
    ASSERT_EQ(run("CREATE DATASET large AS INT(1500, 3000) FROM MEMORY 0; SELECT FROM large INTO BINARY FILE large.bin; "
                  "SELECT FROM large INTO TRUNCATE BINARY FILE large.bin"),
              0)
        << message();
    std::string large_bytes = read_text("large.bin");
    ASSERT_EQ(large_bytes.size(), large.size() * sizeof(int));
    EXPECT_EQ(memcmp(large_bytes.data(), large.data(), large_bytes.size()), 0);
    EXPECT_EQ(_ormak_get_last_data_count(), large.size());
    // A file that can not be made ends the statement and leaves the cursor as it was.
    ASSERT_EQ(run("SELECT FROM d(0:::1, :::)"), 0);
    EXPECT_EQ(refuse("SELECT FROM d INTO TEXT FILE no/such/dir.txt"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(cursor(), "1 2");
}

TEST_F(Select, DirectReadsAndTheCacheClause) {
    ASSERT_EQ(run("CREATE CHUNKED(2, 2) DATASET c AS INT(4, 4); INSERT DIRECTLY INTO c(1, 1) VALUES(1, 2, 3, 4); "
                  "SELECT DIRECTLY FROM c(1, 1)"),
              0)
        << message();
    EXPECT_EQ(cursor(), "1 2 3 4");
    // Without a number the first chunk; a chunk that was never written has no bytes to give.
    EXPECT_EQ(refuse("SELECT DIRECTLY FROM c"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(said, "Error when reading data from object \"c\"");
    ASSERT_EQ(run("INSERT DIRECTLY INTO c VALUES(9, 8, 7, 6); SELECT DIRECTLY FROM c"), 0) << message();
    EXPECT_EQ(cursor(), "9 8 7 6");
    ASSERT_EQ(run("SELECT FROM c CACHE SLOTS 1523 SIZE 0x40000 PREEMPTION 0.6"), 0) << message();
    EXPECT_EQ(ormak_cursor_get_count(nullptr), 16);
    ASSERT_EQ(run("SELECT FROM c CACHE SLOTS FILE SIZE DEFAULT"), 0) << message();

    struct Case {
        const char *script;
        int status;
        const char *message;
    };
    const Case cases[] = {
        {"SELECT DIRECTLY FROM c(0:::)", ORMAK_ERROR_NOT_SUPPORTED,
         "Error when reading data from object \"c\" as direct read does not support hyperslab selections"},
        {"SELECT DIRECTLY FROM ATTRIBUTE c", ORMAK_ERROR_NOT_SUPPORTED,
         "Error when reading data from object \"c\" as direct read does not support attributes"},
        {"SELECT FROM c CACHE SLOTS -1", ORMAK_ERROR_INVALID_VALUE,
         "Error when setting cache since slots is not equal to or greater than 0"},
    };
    ASSERT_EQ(run("SELECT FROM d(1, 0)"), 0);
    for (const Case &c : cases) {
        SCOPED_TRACE(c.script);
        EXPECT_EQ(refuse(c.script), c.status);
        EXPECT_EQ(said, c.message);
        // A failure before the output leaves the cursor and the count of the last result.
        EXPECT_EQ(cursor(), "3");
    }
    ASSERT_EQ(run("CLOSE ALL FILE"), 0);
    EXPECT_EQ(refuse("SELECT FROM d"), ORMAK_ERROR_NOT_OPEN);
    EXPECT_EQ(said, "Error when reading data from object \"d\" as no file is in use");
}
