// SHOW statements about the session, the libraries, the settings and the validity of files,
// and the ways their values leave: the cursor, post-processing, files and memory.
#include <mpi.h>
#include <pcre.h>
#include <string.h>

#include "CursorValues.h"
#include "OrmakTest.h"

class Show : public OrmakTest {};

TEST_F(Show, VersionsAreThoseTheLibrariesReport) {
    unsigned major, minor, release;
    H5get_libversion(&major, &minor, &release);
    ASSERT_EQ(run("SHOW HDF5 VERSION"), 0) << message();
    EXPECT_EQ(ormak_cursor_get_data_type(nullptr), ORMAK_VARCHAR);
    EXPECT_EQ(cursor_texts(),
              Texts{std::to_string(major) + "." + std::to_string(minor) + "." + std::to_string(release)});

    // The number without the date behind it, and only the number counts as its size.
    const std::string pcre = pcre_version();
    const std::string pcre_number = pcre.substr(0, pcre.find(' '));
    ASSERT_EQ(run("show pcre version"), 0) << message();
    EXPECT_EQ(cursor_texts(), Texts{pcre_number});
    ormak_cursor_first(nullptr);
    EXPECT_EQ(ormak_cursor_get_size(nullptr), (int)pcre_number.size());

    char mpi[MPI_MAX_LIBRARY_VERSION_STRING];
    int length = 0;
    MPI_Get_library_version(mpi, &length);
    ASSERT_EQ(run("SHOW MPI VERSION"), 0) << message();
    EXPECT_EQ(cursor_texts(), Texts{mpi});
    // Its size is the length that the library gives, whether or not that counts the zero byte.
    ormak_cursor_first(nullptr);
    EXPECT_EQ(ormak_cursor_get_size(nullptr), length);
}

TEST_F(Show, FilesAndGroupInUse) {
    // No file in use: no value and no failure, post-processing or not.
    ASSERT_EQ(run("SHOW ALL USE FILE ORDER DESCEND TOP 5 STEP 2"), 0) << message();
    EXPECT_EQ(ormak_cursor_get_count(nullptr), 0);
    EXPECT_EQ(ormak_cursor_get_data_type(nullptr), ORMAK_VARCHAR);

    ASSERT_EQ(run("CREATE FILE b.h5, a.h5, c.h5; USE FILE b.h5; CREATE GROUP /g/h; USE FILE a.h5; USE FILE c.h5"), 0)
        << message();
    // The file used last comes first.
    ASSERT_EQ(run("SHOW ALL USE FILE"), 0) << message();
    EXPECT_EQ(cursor_texts(), (Texts{"c.h5", "a.h5", "b.h5"}));
    ASSERT_EQ(run("CLOSE FILE c.h5; CLOSE FILE a.h5; USE GROUP g/h; SHOW USE GROUP"), 0) << message();
    EXPECT_EQ(cursor_texts(), Texts{"/g/h"});
}

TEST_F(Show, ExecuteStatusIsThatOfTheStatementBefore) {
    EXPECT_EQ(refuse("DROP FILE missing.h5"), ORMAK_ERROR_NOT_FOUND);
    ASSERT_EQ(run("SHOW EXECUTE STATUS"), 0) << message();
    EXPECT_EQ(ormak_cursor_get_data_type(nullptr), ORMAK_INT);
    EXPECT_EQ(cursor_ints(), Ints{ORMAK_ERROR_NOT_FOUND});
    ASSERT_EQ(run("SHOW EXECUTE STATUS"), 0) << message();
    EXPECT_EQ(cursor_ints(), Ints{0});
}

TEST_F(Show, SessionSettingsAsSetLeftThem) {
    // No prefix is no value, of the type a prefix would have.
    ASSERT_EQ(run("SHOW ORMAK VERSION; SHOW EXTERNAL LINK PREFIX"), 0) << message();
    EXPECT_EQ(ormak_cursor_get_count(nullptr), 0);
    EXPECT_EQ(ormak_cursor_get_data_type(nullptr), ORMAK_VARCHAR);
    ASSERT_EQ(run("SET EXTERNAL LINK PREFIX \"links/\"; SHOW EXTERNAL LINK PREFIX"), 0) << message();
    EXPECT_EQ(cursor_texts(), Texts{"links/"});
}

TEST_F(Show, LibraryBounds) {
    ASSERT_EQ(run("SHOW LIBRARY BOUNDS"), 0) << message();
    EXPECT_EQ(cursor_ints(), (Ints{ORMAK_EARLIEST, ORMAK_LATEST}));
    // FROM with numbers behind it is the range of post-processing.
    ASSERT_EQ(run("SHOW LIBRARY BOUNDS FROM 1 TO 1"), 0) << message();
    EXPECT_EQ(cursor_ints(), Ints{ORMAK_LATEST});
    ASSERT_EQ(run("SHOW LIBRARY BOUNDS FROM FROM 0 TO 0"), 0) << message();
    EXPECT_EQ(cursor_ints(), Ints{ORMAK_EARLIEST});

    // Without a file in use the cursor stays as it was.
    ASSERT_EQ(run("SHOW ORMAK VERSION"), 0);
    EXPECT_EQ(refuse("SHOW USE FILE LIBRARY BOUNDS"), ORMAK_ERROR_NOT_OPEN);
    EXPECT_EQ(said, "Error when showing library bounds as no file is in use");
    EXPECT_EQ(cursor_texts(), Texts{"2.1.0"});

    // The file keeps the bounds it was opened with, whatever is set later.
    ASSERT_EQ(run("CREATE FILE a.h5; USE FILE a.h5 LIBRARY BOUNDS FROM LATEST; SET LIBRARY BOUNDS FROM EARLIEST"), 0)
        << message();
    ASSERT_EQ(run("SHOW USE FILE LIBRARY BOUNDS FROM"), 0) << message();
    EXPECT_EQ(cursor_ints(), Ints{ORMAK_LATEST});
}

TEST_F(Show, CacheOfFilesDatasetsAndTheFileInUse) {
    // Every parameter is a double; one count alone is an int.
    ASSERT_EQ(run("SHOW CACHE"), 0) << message();
    EXPECT_EQ(ormak_cursor_get_data_type(nullptr), ORMAK_DOUBLE);
    EXPECT_EQ(cursor_doubles(), (Doubles{521, 1048576, 0.75}));
    ASSERT_EQ(run("SET CACHE SLOTS 101; SHOW CACHE SLOTS"), 0) << message();
    EXPECT_EQ(ormak_cursor_get_data_type(nullptr), ORMAK_INT);
    EXPECT_EQ(cursor_ints(), Ints{101});
    EXPECT_EQ(refuse("SHOW USE FILE CACHE"), ORMAK_ERROR_NOT_OPEN);
    ASSERT_EQ(run("CREATE FILE a.h5; USE FILE a.h5 CACHE SLOTS 33 SIZE 8192 PREEMPTION 0.125; SET CACHE SLOTS 7"), 0)
        << message();
    ASSERT_EQ(run("SHOW USE FILE CACHE"), 0) << message();
    EXPECT_EQ(cursor_doubles(), (Doubles{33, 8192, 0.125}));
}

TEST_F(Show, AtomicityOfTheFileInUse) {
    ASSERT_EQ(run("CREATE FILE a.h5; USE FILE a.h5"), 0) << message();
    EXPECT_EQ(refuse("SHOW USE FILE ATOMIC"), ORMAK_ERROR_NOT_SUPPORTED);
    EXPECT_EQ(said, "Error when showing atomicity of MPI operations as the file was not opened for parallel operations");
    ASSERT_EQ(run("CREATE FILE p.h5; USE PARALLEL ATOMIC FILE p.h5; SHOW USE FILE ATOMIC"), 0) << message();
    EXPECT_EQ(cursor_ints(), Ints{0});
    ASSERT_EQ(run("SET USE FILE ATOMIC DISABLE; SHOW USE FILE ATOMIC"), 0) << message();
    EXPECT_EQ(cursor_ints(), Ints{-1});
}

TEST_F(Show, FileValidity) {
    ASSERT_EQ(run("CREATE FILE a.h5; CREATE DIRECTORY d"), 0) << message();
    write_text("notes.txt", "not a file of data\n");
    ASSERT_EQ(run("SHOW FILE VALIDITY a.h5, notes.txt"), 0) << message();
    EXPECT_EQ(ormak_cursor_get_data_type(nullptr), ORMAK_INT);
    EXPECT_EQ(cursor_ints(), (Ints{0, -1}));

    // A directory does not exist here; a failure keeps the values found before it.
    EXPECT_EQ(refuse("SHOW FILE VALIDITY a.h5, d"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(said, "Error when showing validity of file \"d\" as it does not exist");
    EXPECT_EQ(cursor_ints(), Ints{0});
    EXPECT_EQ(_ormak_get_last_data_count(), 0u);
    // Buffered, a failure leaves the cursor alone.
    ASSERT_EQ(run("SHOW ORMAK VERSION"), 0);
    EXPECT_EQ(refuse("SHOW FILE VALIDITY a.h5, d ORDER DESCEND"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(cursor_texts(), Texts{"2.1.0"});
}
