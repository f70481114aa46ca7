// Statements on directories and whole files.
#include "OrmakTest.h"

using FileSystem = OrmakTest;

TEST_F(FileSystem, CreateDirectoryMakesTheMissingParents) {
    ASSERT_EQ(run("CREATE DIRECTORY b/c"), 0);
    EXPECT_TRUE(is_directory("b/c"));
    // A list keeps the entries before the failure.
    EXPECT_EQ(run("CREATE DIRECTORY a, b/c, c"), ORMAK_ERROR_ALREADY_EXISTS);
    EXPECT_EQ(message(), "Error when creating directory \"b/c\" as it already exists");
    EXPECT_TRUE(is_directory("a"));
    EXPECT_FALSE(exists("c"));
    // A trailing slash is refused before anything is made.
    EXPECT_EQ(run("CREATE DIRECTORY t/u/"), ORMAK_ERROR_UNKNOWN);
    EXPECT_FALSE(exists("t"));
}

TEST_F(FileSystem, CreateFileMakesDirectoriesAndRefusesToOverwrite) {
    EXPECT_EQ(run("CREATE FILE d/e/f.h5"), 0);
    EXPECT_TRUE(is_hdf5("d/e/f.h5"));
    EXPECT_EQ(run("CREATE FILE d/e/f.h5"), ORMAK_ERROR_ALREADY_EXISTS);
    // TRUNCATE replaces the file, even one that is not HDF5.
    write_text("plain.h5", "not hdf5");
    EXPECT_EQ(run("CREATE TRUNCATE FILE plain.h5, d/e/f.h5"), 0);
    EXPECT_TRUE(is_hdf5("plain.h5"));
    // A file where a directory should be.
    EXPECT_EQ(run("CREATE FILE plain.h5/f.h5"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(message(), "Error when creating file \"plain.h5/f.h5\"");
    // A high bound alone sets nothing, but is accepted; no bound at all is refused.
    EXPECT_EQ(run("CREATE FILE high.h5 LIBRARY BOUNDS TO LATEST"), 0);
    EXPECT_EQ(run("CREATE FILE none.h5 LIBRARY BOUNDS"), ORMAK_ERROR_UNKNOWN);
    EXPECT_FALSE(exists("none.h5"));
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
    // With fewer new names it does what it can.
    EXPECT_EQ(run("RENAME FILE old.txt, d/a.h5 AS o2"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(message(), "Error when renaming file \"d/a.h5\" as new name was not provided");
    EXPECT_TRUE(exists("o2"));
}

TEST_F(FileSystem, RenameDirectory) {
    ASSERT_EQ(run("CREATE DIRECTORY a/inner, b, c/x"), 0);
    EXPECT_EQ(run("RENAME DIRECTORY a AS b/"), 0);
    EXPECT_TRUE(is_directory("b/a/inner"));
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
}

TEST_F(FileSystem, UseDirectoryChangesWhereRelativeNamesStart) {
    ASSERT_EQ(run("CREATE DIRECTORY work/here"), 0);
    EXPECT_EQ(run("USE DIRECTORY work; CREATE FILE inside.h5; USE DIRECTORY .."), 0);
    EXPECT_TRUE(is_hdf5("work/inside.h5"));
    EXPECT_EQ(run("USE DIRECTORY nothing"), ORMAK_ERROR_NOT_FOUND);
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
    chmod("locked", 0700);
}
