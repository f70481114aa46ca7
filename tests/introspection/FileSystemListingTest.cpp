// SHOW DIRECTORY and SHOW FILE, checked against what the system's own directory reading gives.
#include <dirent.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include "CursorValues.h"
#include "OrmakTest.h"

namespace {

/* The entries of `path` in the order the system reads them, directories or all others. */
Texts read_directory(const char *path, bool directories) {
    Texts names;
    DIR *directory = opendir(path);
    for (struct dirent *entry = readdir(directory); entry; entry = readdir(directory)) {
        if (strcmp(entry->d_name, ".") == 0 || strcmp(entry->d_name, "..") == 0) continue;
        if ((entry->d_type == DT_DIR) == directories) names.push_back(entry->d_name);
    }
    closedir(directory);
    return names;
}

} // namespace

class FileSystemListing : public OrmakTest {
protected:
    void SetUp() override {
        OrmakTest::SetUp();
        mkdir("data", 0755);
        mkdir("data/empty", 0755);
        mkdir("runs", 0755);
        for (const char *name : {"a.h5", "notes.txt", "data/b.h5", "data/c.txt"}) write_text(name, "x");
        ASSERT_EQ(symlink("runs", "to_runs"), 0);
    }

    Texts show(const std::string &statement) {
        EXPECT_EQ(run(statement), 0) << statement << ": " << message();
        return cursor_texts();
    }
};

TEST_F(FileSystemListing, EntriesComeInTheOrderTheSystemReadsThem) {
    // A link to a directory is no directory here: it counts as a file.
    EXPECT_EQ(show("SHOW DIRECTORY"), read_directory(".", true));
    EXPECT_EQ(show("SHOW FILE"), read_directory(".", false));
    EXPECT_EQ(show("SHOW FILE ORDER ASCEND"), (Texts{"a.h5", "notes.txt", "to_runs"}));
    // Contents of a named directory, however it is written; never "." or "..".
    EXPECT_EQ(show("SHOW FILE data/"), read_directory("data", false));
    EXPECT_EQ(show("SHOW DIRECTORY \"data/.\""), Texts{"empty"});
    EXPECT_EQ(show("SHOW DIRECTORY data/empty/"), Texts{});
    EXPECT_EQ(ormak_cursor_get_data_type(nullptr), ORMAK_VARCHAR);
    // LIKE is read and has no effect.
    EXPECT_EQ(show("SHOW FILE data/ LIKE \"\\.h5$\" ORDER ASCEND"), (Texts{"b.h5", "c.txt"}));
}

TEST_F(FileSystemListing, OnePathIsConfirmedAsWritten) {
    EXPECT_EQ(show("SHOW DIRECTORY ./data/empty"), Texts{"./data/empty"});
    EXPECT_EQ(show("SHOW DIRECTORY to_runs"), Texts{"to_runs"});

    EXPECT_EQ(refuse("SHOW DIRECTORY a.h5"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(said, "Error when showing directory \"a.h5\" as it does not exist");
    EXPECT_EQ(refuse("SHOW FILE a.h5/"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(said, "Error when showing files in directory \"a.h5/\" as it does not exist");
    // A directory that can not be read (the superuser reads them all).
    if (geteuid() != 0) {
        ASSERT_EQ(chmod("data", 0), 0);
        EXPECT_EQ(refuse("SHOW FILE data/"), ORMAK_ERROR_NO_ACCESS);
        EXPECT_EQ(said, "Error when showing files in directory \"data/\" as it is not accessible");
        ASSERT_EQ(chmod("data", 0755), 0);
    }
}
