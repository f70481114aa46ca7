// CREATE ATTRIBUTE, checked on disk through HDF5.
#include <string.h>

#include <string>
#include <vector>

#include "OrmakPrivateStructures.h"
#include "OrmakTest.h"
#include "StoredObject.h"

namespace {

using Sizes = std::vector<hsize_t>;

class Attributes : public OrmakTest {
protected:
    void SetUp() override {
        OrmakTest::SetUp();
        ASSERT_EQ(run("CREATE FILE a.h5, other.h5; USE FILE a.h5; CREATE DATASET d AS INT(2) VALUES(7, 8); "
                      "CREATE GROUP g; CREATE DATASET g/inner AS INT"),
                  0)
            << message();
    }
    /* The names of the attributes on an object, in the order of their names. */
    static std::vector<std::string> names(const char *object, const char *file = "a.h5") {
        std::vector<std::string> found;
        hid_t id = H5Fopen(file, H5F_ACC_RDONLY, H5P_DEFAULT);
        H5Aiterate_by_name(
            id, object, H5_INDEX_NAME, H5_ITER_INC, nullptr,
            [](hid_t, const char *name, const H5A_info_t *, void *data) {
                ((std::vector<std::string> *)data)->push_back(name);
                return 0;
            },
            &found, H5P_DEFAULT);
        H5Fclose(id);
        return found;
    }
    static bool exists(const char *path) {
        hid_t id = H5Fopen("a.h5", H5F_ACC_RDONLY, H5P_DEFAULT);
        bool found = H5Lexists(id, path, H5P_DEFAULT) > 0;
        H5Fclose(id);
        return found;
    }
};

} // namespace

TEST_F(Attributes, TypesByteOrdersAndValuesReachTheDisk) {
    ASSERT_EQ(run("CREATE ATTRIBUTE d/unit AS CHAR(10) VALUES(\"kelvin\"); "
                  "CREATE ATTRIBUTE d/big AS BIG ENDIAN UNSIGNED BIGINT(2) VALUES(7, 0x0102030405060708); "
                  "CREATE ATTRIBUTE g/names AS UTF8 VARCHAR(3) VALUES(\"a\", , \"ccc\"); "
                  "CREATE ATTRIBUTE g/runs AS BIG ENDIAN VARINT(2) VALUES((1, 2), 3)"),
              0)
        << message();
    std::vector<char> text = Attribute("/d", "unit").bytes();
    ASSERT_EQ(text.size(), 10u);
    EXPECT_EQ(memcmp(text.data(), "kelvin\0\0\0\0", 10), 0);

    // Values are written as they stand in memory; the stored byte order is HDF5's business.
    Attribute big("/d", "big");
    EXPECT_EQ(H5Tequal(big.type(), H5T_STD_U64BE), 1);
    EXPECT_EQ(big.read<unsigned long long>(H5T_NATIVE_ULLONG),
              (std::vector<unsigned long long>{7, 0x0102030405060708}));

    Attribute names("/g", "names");
    EXPECT_EQ(H5Tget_cset(names.type()), H5T_CSET_UTF8);
    EXPECT_EQ(names.strings(), (std::vector<std::string>{"a", "(null)", "ccc"}));
    Attribute runs("/g", "runs");
    hid_t base = H5Tget_super(runs.type());
    EXPECT_EQ(H5Tequal(base, H5T_STD_I32BE), 1);
    H5Tclose(base);
    EXPECT_EQ(runs.lists(), (std::vector<std::vector<int>>{{1, 2}, {3}}));
}

TEST_F(Attributes, TextTypesTakeTheirLastDimensionAsTheirSize) {
    ASSERT_EQ(run("CREATE ATTRIBUTE o AS OPAQUE(4, 16) TAG \"t\" VALUES((1, 2), (3)); "
                  "CREATE ATTRIBUTE one AS CHAR; CREATE ATTRIBUTE plain AS INT"),
              0)
        << message();
    // Each value of an opaque type is a row of bytes.
    Attribute o("/", "o");
    EXPECT_EQ(o.tag(), "t");
    EXPECT_EQ(o.dimensions(), (Sizes{4}));
    EXPECT_EQ(o.bytes()[16], 3);

    EXPECT_EQ(H5Tget_size(Attribute("/", "one").type()), 1u);
    // No dimensions: one element in one dimension, never a scalar.
    EXPECT_EQ(Attribute("/", "plain").dimensions(), (Sizes{1}));
}

TEST_F(Attributes, NamesCountFromTheCurrentGroupAndEndAtAnExistingObject) {
    ASSERT_EQ(run("CREATE LINK alias TO d; USE GROUP g; CREATE ATTRIBUTE x AS INT VALUES(1); "
                  "CREATE ATTRIBUTE inner/x AS INT VALUES(2); CREATE ATTRIBUTE ../y AS INT VALUES(3); "
                  "CREATE ATTRIBUTE /alias/z AS INT VALUES(4)"),
              0)
        << message();
    EXPECT_EQ(Attribute("/g", "x").read<int>(H5T_NATIVE_INT), (std::vector<int>{1}));
    EXPECT_EQ(Attribute("/", "y").read<int>(H5T_NATIVE_INT), (std::vector<int>{3}));
    // A parent that is a soft link reaches the object behind it.
    EXPECT_EQ(names("/d"), (std::vector<std::string>{"z"}));

    // The missing object is named by its path in the file; no group is made for it.
    EXPECT_EQ(refuse("CREATE ATTRIBUTE missing/deeper/a AS INT"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(said, "Error when creating attribute \"missing/deeper/a\" as object \"/g/missing/deeper\" does not exist");
    // A name that leaves nothing for the attribute after its object.
    EXPECT_EQ(refuse("CREATE ATTRIBUTE .. AS INT"), ORMAK_ERROR_INVALID_VALUE);
    EXPECT_EQ(said, "Error when creating attribute \"..\" as it names the root group");
    ASSERT_EQ(run("CREATE LINK dangling TO /nowhere"), 0);
    EXPECT_EQ(refuse("CREATE ATTRIBUTE dangling/a AS INT"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(said, "Error when creating attribute \"dangling/a\"");
    ASSERT_EQ(run("CLOSE GROUP"), 0);
    EXPECT_FALSE(exists("/g/missing"));
}

TEST_F(Attributes, TruncateReplacesTheAttributeAndLeavesTheObject) {
    ASSERT_EQ(run("CREATE ATTRIBUTE d/a AS INT VALUES(1)"), 0) << message();
    EXPECT_EQ(refuse("CREATE ATTRIBUTE d/a AS DOUBLE"), ORMAK_ERROR_ALREADY_EXISTS);
    EXPECT_EQ(said, "Error when creating attribute \"d/a\" as it already exists");
    ASSERT_EQ(run("CREATE TRUNCATE ATTRIBUTE d/a AS CHAR(5) VALUES(\"new\")"), 0) << message();
    EXPECT_EQ(std::string(Attribute("/d", "a").bytes().data(), 3), "new");
    // The dataset that carries them keeps its values.
    EXPECT_EQ(Dataset("/d").ints(), (std::vector<int>{7, 8}));
}

TEST_F(Attributes, ListsShareOneDefinitionAcrossFiles) {
    _ormak_cursor_set_data_type(ORMAK_DOUBLE);
    for (double value : {1.25, 2.5}) ASSERT_EQ(_ormak_cursor_add(&value, sizeof value), 0);
    ASSERT_EQ(run("CREATE ATTRIBUTE g/a, other.h5 /b AS BIG ENDIAN DOUBLE(2) FROM CURSOR"), 0) << message();
    const char *places[][3] = {{"/g", "a", "a.h5"}, {"/", "b", "other.h5"}};
    for (const auto &place : places) {
        Attribute attribute(place[0], place[1], place[2]);
        EXPECT_EQ(H5Tequal(attribute.type(), H5T_IEEE_F64BE), 1);
        EXPECT_EQ(attribute.read<double>(H5T_NATIVE_DOUBLE), (std::vector<double>{1.25, 2.5}));
    }
    // The other file was opened for its item only.
    EXPECT_EQ(current_file->next, nullptr);

    // A failing item ends the statement; the items before it stay done.
    EXPECT_EQ(refuse("CREATE ATTRIBUTE first, g/a, last AS INT"), ORMAK_ERROR_ALREADY_EXISTS);
    EXPECT_EQ(said, "Error when creating attribute \"g/a\" as it already exists");
    EXPECT_EQ(names("/"), (std::vector<std::string>{"first"}));
}

TEST_F(Attributes, BadDefinitionsAreRefusedBeforeAnyFileIsTouched) {
    struct Case {
        const char *script;
        int status;
        const char *message;
    };
    const Case cases[] = {
        {"CREATE ATTRIBUTE d/a AS COMPOUND(x AS INT, y AS COMPOUND(x AS INT, z AS INT), y AS INT)",
         ORMAK_ERROR_ALREADY_EXISTS, "Error when creating attribute \"d/a\" as compound member \"y\" already exists"},
        {"CREATE ATTRIBUTE d/a AS COMPOUND(x AS INT) VALUES(1)", ORMAK_ERROR_NOT_SUPPORTED,
         "Error when creating attribute \"d/a\" as values of a compound data type are not supported"},
        {"CREATE ATTRIBUTE d/a AS INT(3000000000, 2) VALUES(1)", ORMAK_ERROR_INVALID_VALUE,
         "Error when creating attribute \"d/a\" as its values would be more than 2147483647 elements"},
        // What HDF5 refuses in the definition also comes before any file.
        {"CREATE ATTRIBUTE d/a AS OPAQUE(0)", ORMAK_ERROR_UNKNOWN,
         "Error when setting data type to create attribute \"d/a\""},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.script);
        EXPECT_EQ(refuse(c.script), c.status);
        EXPECT_EQ(said, c.message);
        EXPECT_TRUE(names("/d").empty());
    }
    // Bad options come before the missing file.
    ASSERT_EQ(run("CLOSE ALL FILE"), 0);
    EXPECT_EQ(refuse("CREATE ATTRIBUTE a AS INT TAG \"t\""), ORMAK_ERROR_UNEXPECTED_DATA_TYPE);
}

TEST_F(Attributes, WhatHdf5RefusesOnAnItemIsAPlainFailure) {
    ASSERT_EQ(run("CLOSE ALL FILE; USE READONLY FILE a.h5"), 0);
    EXPECT_EQ(refuse("CREATE ATTRIBUTE d/a AS INT"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(said, "Error when creating attribute \"d/a\"");
    EXPECT_TRUE(names("/d").empty());
}

TEST_F(Attributes, ValuesAreReadOnceForAList) {
    ASSERT_EQ(run("SET DEBUG ENABLE"), 0);
    testing::internal::CaptureStdout();
    int status = run("CREATE ATTRIBUTE d/a, g/a, other.h5 /a AS INT(2) VALUES(1, 2)");
    std::string out = testing::internal::GetCapturedStdout();
    ASSERT_EQ(status, 0) << message();
    // The values are had once and serve every attribute of the list.
    size_t readings = 0;
    for (size_t at = out.find("FUNCTION CALL <_ormak_input_redirecting>"); at != std::string::npos;
         at = out.find("FUNCTION CALL <_ormak_input_redirecting>", at + 1))
        readings++;
    EXPECT_EQ(readings, 1u);
    EXPECT_EQ(Attribute("/", "a", "other.h5").read<int>(H5T_NATIVE_INT), (std::vector<int>{1, 2}));
}
