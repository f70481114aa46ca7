// The stack of files in use and the current group of each.
#include <string.h>

#include "OrmakPrivateStructures.h"
#include "OrmakTest.h"

extern "C" char *_ormak_show_use_group(void);

class FilesInUse : public OrmakTest {
protected:
    void SetUp() override {
        OrmakTest::SetUp();
        ASSERT_EQ(run("CREATE FILE a.h5, b.h5"), 0);
        hid_t file = H5Fopen("a.h5", H5F_ACC_RDWR, H5P_DEFAULT);
        for (const char *group : {"g", "g/h", "g/h/i"})
            H5Gclose(H5Gcreate2(file, group, H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT));
        hsize_t dimension = 1;
        hid_t space = H5Screate_simple(1, &dimension, nullptr);
        H5Dclose(H5Dcreate2(file, "d", H5T_NATIVE_INT, space, H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT));
        H5Sclose(space);
        H5Lcreate_soft("/nowhere", file, "dangling", H5P_DEFAULT, H5P_DEFAULT);
        H5Lcreate_soft("/g/h", file, "to_h", H5P_DEFAULT, H5P_DEFAULT);
        H5Fclose(file);
    }

    static std::string group() {
        const char *name = _ormak_show_use_group();
        return name ? name : "(none)";
    }

    static std::string canonical(const char *name) {
        char result[1024];
        return ormak_get_canonical_path(name, result);
    }
};

TEST_F(FilesInUse, UseFileStacksFilesAndBringsOneBackOnTop) {
    EXPECT_EQ(group(), "(none)");
    EXPECT_EQ(run("USE FILE a.h5; USE GROUP g"), 0);
    EXPECT_EQ(run("USE FILE b.h5"), 0);
    EXPECT_EQ(group(), "/");
    // The first file comes back with its own current group; using the top again changes nothing.
    EXPECT_EQ(run("USE FILE a.h5; USE FILE a.h5"), 0);
    EXPECT_EQ(group(), "/g");
    EXPECT_EQ(run("CLOSE FILE; CLOSE FILE"), 0);
    EXPECT_EQ(group(), "(none)");
    // Closing with nothing in use is no error.
    EXPECT_EQ(run("CLOSE FILE; CLOSE GROUP"), 0);
}

TEST_F(FilesInUse, UseFileFailures) {
    write_text("text.h5", "plain text");
    EXPECT_EQ(run("USE FILE missing.h5"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(run("USE FILE text.h5"), ORMAK_ERROR_INVALID_FILE);
    EXPECT_EQ(message(), "Error when opening file \"text.h5\" as it is not a valid HDF5 file");
    // When the second of three fails, the first stays open and current.
    EXPECT_EQ(run("USE FILE a.h5, missing.h5, b.h5"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(run("CLOSE FILE b.h5"), ORMAK_ERROR_NOT_OPEN);
    EXPECT_EQ(message(), "Error when closing file \"b.h5\" as it is not used");
    EXPECT_EQ(run("CLOSE FILE a.h5"), 0);
    EXPECT_EQ(group(), "(none)");
}

TEST_F(FilesInUse, UseFileOptions) {
    EXPECT_EQ(run("USE FILE a.h5 LIBRARY BOUNDS"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(message(), "Error when setting library bounds since no parameters were provided");
    EXPECT_EQ(run("USE FILE a.h5 CACHE SIZE -1"), ORMAK_ERROR_INVALID_VALUE);
    EXPECT_EQ(message(), "Error when setting cache since size is not equal to or greater than 0");
    EXPECT_EQ(group(), "(none)");

    // DEFAULT takes the built-in value. The values reaching the file are shown by SHOW USE FILE CACHE.
    ASSERT_EQ(run("USE FILE b.h5 CACHE SLOTS 7 SIZE DEFAULT PREEMPTION 0.0"), 0);
    int elements;
    size_t slots, size;
    double preemption;
    ASSERT_GE(H5Pget_cache(current_file->property_access_list, &elements, &slots, &size, &preemption), 0);
    EXPECT_EQ(size, 1048576u);

    // READONLY of a file in use for writing leaves it writable.
    EXPECT_EQ(run("USE FILE a.h5; USE READONLY FILE a.h5"), 0);
    unsigned intent = 0;
    H5Fget_intent(current_file->file_id, &intent);
    EXPECT_EQ(intent, (unsigned)H5F_ACC_RDWR);
    EXPECT_EQ(run("CLOSE ALL FILE; USE READONLY FILE a.h5"), 0);
    H5Fget_intent(current_file->file_id, &intent);
    EXPECT_EQ(intent, (unsigned)H5F_ACC_RDONLY);
}

TEST_F(FilesInUse, UseGroupReplacesTheStackAndCloseGroupGoesToTheRoot) {
    EXPECT_EQ(run("USE GROUP g"), ORMAK_ERROR_NOT_OPEN);
    ASSERT_EQ(run("USE FILE a.h5"), 0);
    EXPECT_EQ(run("USE GROUP g; USE GROUP h"), 0);
    EXPECT_EQ(group(), "/g/h");
    EXPECT_EQ(canonical("x"), "/g/h/x");
    EXPECT_EQ(run("USE GROUP /g/h/i; CLOSE GROUP"), 0);
    EXPECT_EQ(group(), "/");
    // The root needs no test of existence, written either way.
    EXPECT_EQ(run("USE GROUP /; USE GROUP ."), 0);
    // A link to a group is followed, the path is kept as written.
    EXPECT_EQ(run("USE GROUP to_h"), 0);
    EXPECT_EQ(group(), "/to_h");
}

TEST_F(FilesInUse, UseGroupFailuresKeepTheCurrentGroup) {
    ASSERT_EQ(run("USE FILE a.h5; USE GROUP g"), 0);
    EXPECT_EQ(run("USE GROUP missing"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(message(), "Error when opening group \"missing\" as it does not exist");
    EXPECT_EQ(run("USE GROUP /d"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(run("USE GROUP /dangling"), ORMAK_ERROR_DANGLING_LINK);
    EXPECT_EQ(group(), "/g");
}

TEST_F(FilesInUse, CloseFileListsAndCloseAll) {
    ASSERT_EQ(run("USE FILE a.h5, b.h5"), 0);
    // A name that is not in use stops the list, even before names that are.
    EXPECT_EQ(run("CLOSE FILE c.h5, a.h5"), ORMAK_ERROR_NOT_OPEN);
    // Closing the older file leaves the newer one current.
    EXPECT_EQ(run("CLOSE FILE a.h5"), 0);
    EXPECT_EQ(run("USE GROUP g"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(run("USE FILE a.h5"), 0);
    EXPECT_EQ(run("CLOSE ALL FILE"), 0);
    EXPECT_EQ(group(), "(none)");
}
