// Statements on directories and whole files.
#include "OrmakTest.h"

using FileSystem = OrmakTest;

TEST_F(FileSystem, CreateDirectoryMakesTheMissingParents) {
    ASSERT_EQ(run("CREATE DIRECTORY b/c"), 0);
    EXPECT_TRUE(is_directory("b/c"));
    // An absolute path skips its leading slash.
    EXPECT_EQ(run("CREATE DIRECTORY \"" + directory + "/abs/x\""), 0);
    EXPECT_TRUE(is_directory("abs/x"));
    // A list keeps the entries before the failure.
    EXPECT_EQ(run("CREATE DIRECTORY a, b/c, c"), ORMAK_ERROR_ALREADY_EXISTS);
    EXPECT_EQ(message(), "Error when creating directory \"b/c\" as it already exists");
    EXPECT_TRUE(is_directory("a"));
    EXPECT_FALSE(exists("c"));
    // A trailing slash is refused before anything is made.
    EXPECT_EQ(run("CREATE DIRECTORY t/u/"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(message(), "Error when creating directory \"t/u/\" as it should not end with \"/\"");
    EXPECT_FALSE(exists("t"));
}

TEST_F(FileSystem, CreateFileMakesDirectoriesAndRefusesToOverwrite) {
    EXPECT_EQ(run("CREATE FILE d/e/f.h5"), 0);
    EXPECT_TRUE(is_hdf5("d/e/f.h5"));
    EXPECT_EQ(run("CREATE FILE d/e/f.h5"), ORMAK_ERROR_ALREADY_EXISTS);
    EXPECT_EQ(message(), "Error when creating file \"d/e/f.h5\" as it already exists");
    // TRUNCATE replaces the file, even one that is not HDF5.
    write_text("plain.h5", "not hdf5");
    EXPECT_EQ(run("CREATE TRUNCATE FILE plain.h5, d/e/f.h5"), 0);
    EXPECT_TRUE(is_hdf5("plain.h5"));
    // A file where a directory should be.
    EXPECT_EQ(run("CREATE FILE plain.h5/f.h5"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(message(), "Error when creating file \"plain.h5/f.h5\"");
}

TEST_F(FileSystem, CreateFileLibraryBounds) {
    // A high bound alone sets nothing, but is accepted.
    EXPECT_EQ(run("CREATE FILE high.h5 LIBRARY BOUNDS TO LATEST"), 0);
    EXPECT_TRUE(is_hdf5("high.h5"));
    EXPECT_EQ(run("CREATE FILE none.h5 LIBRARY BOUNDS"), ORMAK_ERROR_UNKNOWN);
    EXPECT_FALSE(exists("none.h5"));

    // LATEST lets the library write the newest format: the superblock version shows it.
    ASSERT_EQ(run("CREATE FILE newest.h5 LIBRARY BOUNDS FROM LATEST"), 0);
    hid_t file = H5Fopen("newest.h5", H5F_ACC_RDONLY, H5P_DEFAULT);
    ASSERT_GE(file, 0);
    H5F_info2_t info;
    ASSERT_GE(H5Fget_info2(file, &info), 0);
    EXPECT_GE(info.super.version, 2u);
    H5Fclose(file);
}

TEST_F(FileSystem, RenameFileIntoADirectoryAndOverExistingFiles) {
    ASSERT_EQ(run("CREATE DIRECTORY d, x; CREATE FILE a.h5, x/b.h5"), 0);
    EXPECT_EQ(run("RENAME FILE a.h5, x/b.h5 AS d/, d/"), 0);
    EXPECT_TRUE(is_hdf5("d/a.h5"));
    EXPECT_TRUE(is_hdf5("d/b.h5"));
    // Without TRUNCATE the rename replaces the target all the same.
    write_text("old.txt", "old");
    write_text("new.txt", "new");
    EXPECT_EQ(run("RENAME FILE new.txt AS old.txt"), 0);
    EXPECT_EQ(read_text("old.txt"), "new");
    EXPECT_EQ(run("RENAME FILE old.txt AS \"no such dir/x\""), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(message(), "Error when renaming file \"old.txt\" as it does not exist");
}

TEST_F(FileSystem, RenameWithFewerNewNamesDoesWhatItCan) {
    write_text("1", "");
    write_text("2", "");
    write_text("3", "");
    EXPECT_EQ(run("RENAME FILE \"1\", \"2\", \"3\" AS a, b"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(message(), "Error when renaming file \"3\" as new name was not provided");
    EXPECT_TRUE(exists("a"));
    EXPECT_TRUE(exists("b"));
    EXPECT_TRUE(exists("3"));
}

TEST_F(FileSystem, RenameDirectory) {
    ASSERT_EQ(run("CREATE DIRECTORY a/inner, b, c/x"), 0);
    EXPECT_EQ(run("RENAME DIRECTORY a AS b/"), 0);
    EXPECT_TRUE(is_directory("b/a/inner"));
    EXPECT_EQ(run("RENAME DIRECTORY missing AS z"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(message(), "Error when renaming directory \"missing\" as it does not exist");
    EXPECT_EQ(run("RENAME DIRECTORY b AS nowhere/z"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(message(), "Error when renaming directory \"b\" as new directory \"nowhere/z\" does not exist");
    EXPECT_EQ(run("RENAME DIRECTORY b AS c"), ORMAK_ERROR_ALREADY_EXISTS);
    EXPECT_EQ(message(), "Error when renaming directory \"b\" as new directory \"c\" already exists");
}

TEST_F(FileSystem, CopyFileIsAByteCopyThatRespectsTruncate) {
    std::string payload(200000, 'x');
    payload[123456] = 'y';
    write_text("src.bin", payload);
    ASSERT_EQ(run("CREATE DIRECTORY d"), 0);
    EXPECT_EQ(run("COPY FILE src.bin TO d/"), 0);
    EXPECT_EQ(read_text("d/src.bin"), payload);
    EXPECT_EQ(run("COPY FILE src.bin TO d/src.bin"), ORMAK_ERROR_ALREADY_EXISTS);
    EXPECT_EQ(message(), "Error when copying file \"src.bin\" to file \"d/src.bin\" since it already exists");
    write_text("small", "abc");
    EXPECT_EQ(run("COPY TRUNCATE FILE small TO d/src.bin"), 0);
    EXPECT_EQ(read_text("d/src.bin"), "abc");
    EXPECT_EQ(run("COPY FILE small TO nodir/x"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(message(), "Error when opening file \"nodir/x\" as it does not exist");
    EXPECT_EQ(run("COPY FILE missing TO x"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(message(), "Error when copying file \"missing\" as it does not exist");
    // Onto itself, TRUNCATE must not empty the source.
    EXPECT_EQ(run("COPY TRUNCATE FILE small TO ./small"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(read_text("small"), "abc");
}

TEST_F(FileSystem, DropDirectoryAndFile) {
    ASSERT_EQ(run("CREATE DIRECTORY full/inner, empty"), 0);
    EXPECT_EQ(run("DROP DIRECTORY empty"), 0);
    EXPECT_FALSE(exists("empty"));
    EXPECT_EQ(run("DROP DIRECTORY full"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(message(), "Error when dropping directory \"full\"");
    // A directory is no file.
    EXPECT_EQ(run("DROP FILE full"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(message(), "Error when dropping file \"full\" as it does not exist");
    write_text("f", "");
    EXPECT_EQ(run("DROP FILE f"), 0);
    EXPECT_FALSE(exists("f"));
    EXPECT_EQ(run("DROP FILE x/"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(message(), "Error when dropping file \"x/\" as it should not end with \"/\"");
}

TEST_F(FileSystem, UseDirectoryChangesWhereRelativeNamesStart) {
    ASSERT_EQ(run("CREATE DIRECTORY work/here"), 0);
    EXPECT_EQ(run("USE DIRECTORY work; CREATE FILE inside.h5"), 0);
    EXPECT_EQ(run("USE DIRECTORY .."), 0);
    EXPECT_TRUE(is_hdf5("work/inside.h5"));
    EXPECT_EQ(run("USE DIRECTORY nothing"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(message(), "Error when opening directory \"nothing\" as it does not exist");
}

TEST_F(FileSystem, NamesLongerThanTheBuffersAreRefused) {
    std::string name(1500, 'n');
    EXPECT_EQ(run("CREATE DIRECTORY " + name), ORMAK_ERROR_UNKNOWN);
    EXPECT_NE(message().find("longer than 1023"), std::string::npos);
    EXPECT_LT(message().size(), 1024u);
}

// Permission errors only show for a user who is not root.
TEST_F(FileSystem, AccessRefusedByTheSystem) {
    if (geteuid() == 0) GTEST_SKIP() << "root is never refused access";
    ASSERT_EQ(run("CREATE DIRECTORY locked"), 0);
    chmod("locked", 0500);
    EXPECT_EQ(run("CREATE DIRECTORY locked/x"), ORMAK_ERROR_NO_ACCESS);
    EXPECT_EQ(message(), "Error when creating directory \"locked/x\" as it is not accessible");
    EXPECT_EQ(run("CREATE FILE locked/f.h5"), ORMAK_ERROR_NO_ACCESS);
    EXPECT_EQ(message(), "Error when creating file \"locked/f.h5\" as it is not accessible");
    chmod("locked", 0700);
}
