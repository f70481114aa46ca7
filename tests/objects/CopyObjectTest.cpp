// COPY of objects and attributes, within a file and between files, checked on disk through HDF5.
#include <string.h>

#include "FileSnapshot.h"
#include "StoredObject.h"

extern "C" char *_ormak_show_use_group(void);

class CopyObject : public ObjectFileTest {
protected:
    void SetUp() override {
        OrmakTest::SetUp();
        ASSERT_EQ(run("CREATE FILE a.h5, b.h5, backup.h5; USE FILE b.h5; CREATE GROUP g; "
                      "CREATE DATASET g/x AS SMALLINT(2) VALUES(4, 5); CLOSE FILE; USE FILE a.h5; "
                      "CREATE GROUP runs/r1, archive; CREATE DATASET d AS INT(3) VALUES(1, 2, 3); "
                      "CREATE ATTRIBUTE d/unit AS CHAR(8) VALUES(\"m\"); CREATE DATASET runs/e AS INT VALUES(6); "
                      "CREATE LINK dangling TO /nowhere"),
                  0)
            << message();
    }

    static std::string text(const Attribute &attribute) {
        std::vector<char> bytes = attribute.bytes();
        return std::string(bytes.data(), strnlen(bytes.data(), bytes.size()));
    }

    int refuse_unchanged(const std::string &script) {
        return ObjectFileTest::refuse_unchanged(script, {"a.h5", "b.h5"});
    }
};

TEST_F(CopyObject, CopiesObjectsWithTheirAttributesWithinAndAcrossFiles) {
    ASSERT_EQ(run("COPY DATASET d TO backup.h5 /d; COPY TRUNCATE GROUP /runs TO /archive/; FLUSH"), 0) << message();
    EXPECT_EQ(Dataset("/d", "backup.h5").ints(), (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(text(Attribute("/d", "unit", "backup.h5")), "m");
    EXPECT_TRUE(exists_in("a.h5", "/archive/runs/r1"));
    EXPECT_EQ(Dataset("/archive/runs/e").ints(), (std::vector<int>{6}));
    EXPECT_TRUE(exists_in("a.h5", "/runs/e"));
}

TEST_F(CopyObject, SourceAndTargetMayEachNameAFile) {
    // A relative target counts from the source's file, whose current group is its root.
    ASSERT_EQ(run("USE GROUP runs; COPY b.h5 g/x TO y; COPY e TO b.h5 /g/; FLUSH"), 0) << message();
    EXPECT_STREQ(_ormak_show_use_group(), "/runs");
    EXPECT_EQ(Dataset("/y").read<short>(H5T_NATIVE_SHORT), (std::vector<short>{4, 5}));
    EXPECT_EQ(Dataset("/g/e", "b.h5").ints(), (std::vector<int>{6}));
    // A relative target in another file counts from the source's current group: /runs/e there.
    EXPECT_EQ(refuse_unchanged("COPY e TO b.h5 e"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(said, "Error when copying object \"e\"");

    ASSERT_EQ(run("CLOSE ALL FILE"), 0);
    EXPECT_EQ(refuse("COPY b.h5 g/x TO z"), ORMAK_ERROR_NOT_OPEN);
    EXPECT_EQ(said, "Error when copying object \"g/x\" as no file is in use");
    ASSERT_EQ(run("COPY b.h5 g/x TO backup.h5 /x"), 0) << message();
    EXPECT_EQ(_ormak_show_use_group(), nullptr);
    EXPECT_TRUE(exists_in("backup.h5", "/x"));
}

TEST_F(CopyObject, RefusalsLeaveTheFilesAsTheyWere) {
    EXPECT_EQ(refuse_unchanged("COPY d TO ./d"), ORMAK_ERROR_UNKNOWN);
    // Named, the same file is still the same file: TRUNCATE must not drop the source.
    EXPECT_EQ(refuse_unchanged("COPY TRUNCATE a.h5 d TO a.h5 /d"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(refuse_unchanged("COPY TRUNCATE runs/e TO runs"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(said, "Error when copying object \"runs/e\" as \"/runs\" holds it");
    EXPECT_EQ(refuse_unchanged("COPY GROUP d TO e"), ORMAK_ERROR_UNEXPECTED_TYPE);
    EXPECT_EQ(refuse_unchanged("COPY d TO archive/missing/d"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(refuse_unchanged("COPY d TO runs/e"), ORMAK_ERROR_ALREADY_EXISTS);
    // A dangling link has nothing to copy; the target is kept.
    EXPECT_EQ(refuse_unchanged("COPY TRUNCATE SOFT LINK dangling TO runs/e"), ORMAK_ERROR_DANGLING_LINK);
    EXPECT_EQ(refuse_unchanged("COPY ATTRIBUTE d/missing TO b.h5 g/missing"), ORMAK_ERROR_NOT_FOUND);
}

TEST_F(CopyObject, TruncatePairsAndFailingItems) {
    ASSERT_EQ(run("COPY TRUNCATE d, runs/e TO runs/e, archive/e, ignored"), 0) << message();
    EXPECT_EQ(refuse("COPY runs/e, missing, d TO e1, e2, e3"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(refuse("COPY d, runs TO d4"), ORMAK_ERROR_UNKNOWN);
    ASSERT_EQ(run("FLUSH"), 0);
    EXPECT_EQ(Dataset("/archive/e").ints(), (std::vector<int>{1, 2, 3}));
    EXPECT_TRUE(exists_in("a.h5", "/e1"));
    EXPECT_FALSE(exists_in("a.h5", "/e3"));
    EXPECT_TRUE(exists_in("a.h5", "/d4"));
}

TEST_F(CopyObject, AttributesKeepTheirTypesAndValues) {
    ASSERT_EQ(run("CREATE ATTRIBUTE d/seq AS BIG ENDIAN VARSMALLINT(2) VALUES((1, 2, 3), 4); "
                  "CREATE ATTRIBUTE d/names AS VARCHAR(2) VALUES(\"one\", \"three\"); "
                  "CREATE ATTRIBUTE runs/unit AS INT VALUES(1); CREATE ATTRIBUTE d/c AS COMPOUND(a AS INT)"),
              0)
        << message();
    ASSERT_EQ(run("COPY AT d/seq, d/names TO b.h5 g/seq, b.h5 /names"), 0) << message();
    EXPECT_EQ(refuse_unchanged("COPY ATTRIBUTE d/unit TO runs/unit"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(said, "Error when copying attribute \"d/unit\" as attribute \"runs/unit\" already exists");
    EXPECT_EQ(refuse_unchanged("COPY ATTRIBUTE d/c TO runs/c"), ORMAK_ERROR_NOT_SUPPORTED);
    ASSERT_EQ(run("COPY TRUNCATE ATTRIBUTE d/unit TO runs/unit; FLUSH"), 0) << message();
    EXPECT_EQ(text(Attribute("/runs", "unit")), "m");
    EXPECT_EQ(text(Attribute("/d", "unit")), "m");

    Attribute seq("/g", "seq", "b.h5");
    hid_t base = H5Tget_super(seq.type());
    EXPECT_EQ(H5Tget_order(base), H5T_ORDER_BE);
    EXPECT_EQ(H5Tget_size(base), 2u);
    H5Tclose(base);
    EXPECT_EQ(seq.lists(), (std::vector<std::vector<int>>{{1, 2, 3}, {4}}));
    EXPECT_EQ(Attribute("/", "names", "b.h5").strings(), (std::vector<std::string>{"one", "three"}));
}
