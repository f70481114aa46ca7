// SHOW statements about the session, the libraries, the settings and the validity of files,
// and the ways their values leave: the cursor, post-processing, files and memory.
#include <mpi.h>
#include <pcre.h>
#include <string.h>
#include <zlib.h>

#include <string>
#include <vector>

#include "FakeJava.h"
#include "OrmakTest.h"

namespace {

std::vector<std::string> cursor_texts() {
    std::vector<std::string> values;
    int count = ormak_cursor_get_count(nullptr);
    for (int i = 0; i < count; i++) {
        ormak_cursor_absolute(nullptr, i);
        const char *text = ormak_cursor_get_char(nullptr);
        values.push_back(text ? text : "(null)");
    }
    return values;
}

std::vector<int> cursor_ints() {
    std::vector<int> values;
    int count = ormak_cursor_get_count(nullptr);
    for (int i = 0; i < count; i++) {
        ormak_cursor_absolute(nullptr, i);
        values.push_back(*ormak_cursor_get_int(nullptr));
    }
    return values;
}

std::vector<double> cursor_doubles() {
    std::vector<double> values;
    int count = ormak_cursor_get_count(nullptr);
    for (int i = 0; i < count; i++) {
        ormak_cursor_absolute(nullptr, i);
        values.push_back(*ormak_cursor_get_double(nullptr));
    }
    return values;
}

std::string hdf5_version() {
    unsigned major, minor, release;
    H5get_libversion(&major, &minor, &release);
    return std::to_string(major) + "." + std::to_string(minor) + "." + std::to_string(release);
}

using Texts = std::vector<std::string>;
using Ints = std::vector<int>;
using Doubles = std::vector<double>;

} // namespace

class Show : public OrmakTest {};

TEST_F(Show, VersionsAreThoseTheLibrariesReport) {
    ASSERT_EQ(run("SHOW HDF5 VERSION"), 0) << message();
    EXPECT_EQ(ormak_cursor_get_data_type(nullptr), ORMAK_VARCHAR);
    EXPECT_EQ(cursor_texts(), Texts{hdf5_version()});
    EXPECT_EQ(_ormak_get_last_data_count(), 1u);

    // The number without the date behind it, and only the number counts as its size.
    const std::string pcre = pcre_version();
    const std::string pcre_number = pcre.substr(0, pcre.find(' '));
    ASSERT_EQ(run("show pcre version"), 0) << message();
    EXPECT_EQ(cursor_texts(), Texts{pcre_number});
    ormak_cursor_first(nullptr);
    EXPECT_EQ(ormak_cursor_get_size(nullptr), (int)pcre_number.size());

    ASSERT_EQ(run("SHOW ZLIB VERSION"), 0) << message();
    EXPECT_EQ(cursor_texts(), Texts{zlibVersion()});

    char mpi[MPI_MAX_LIBRARY_VERSION_STRING];
    int length = 0;
    MPI_Get_library_version(mpi, &length);
    ASSERT_EQ(run("SHOW MPI VERSION"), 0) << message();
    EXPECT_EQ(cursor_texts(), Texts{mpi});
    // Its size is the length that the library gives, whether or not that counts the zero byte.
    ormak_cursor_first(nullptr);
    EXPECT_EQ(ormak_cursor_get_size(nullptr), length);

    ASSERT_EQ(run("SHOW ORMAK VERSION"), 0) << message();
    EXPECT_EQ(cursor_texts(), Texts{"2.1.0"});
}

TEST_F(Show, FilesAndGroupInUse) {
    // No file in use: no value and no failure, post-processing or not.
    ASSERT_EQ(run("SHOW ORMAK VERSION"), 0);
    ASSERT_EQ(run("SHOW USE FILE"), 0) << message();
    EXPECT_EQ(ormak_cursor_get_count(nullptr), 0);
    EXPECT_EQ(ormak_cursor_get_data_type(nullptr), ORMAK_VARCHAR);
    EXPECT_EQ(_ormak_get_last_data_count(), 0u);
    ASSERT_EQ(run("SHOW USE GROUP ORDER DESCEND TOP 5 STEP 2"), 0) << message();
    EXPECT_EQ(ormak_cursor_get_count(nullptr), 0);
    ASSERT_EQ(run("SHOW ALL USE FILE"), 0) << message();
    EXPECT_EQ(ormak_cursor_get_count(nullptr), 0);

    char directory[4096];
    ASSERT_NE(getcwd(directory, sizeof directory), nullptr);
    ASSERT_EQ(run("SHOW USE DIRECTORY"), 0) << message();
    EXPECT_EQ(cursor_texts(), Texts{directory});

    ASSERT_EQ(run("CREATE FILE b.h5, a.h5, c.h5; USE FILE b.h5; CREATE GROUP /g/h; USE FILE a.h5; USE FILE c.h5"), 0)
        << message();
    ASSERT_EQ(run("SHOW USE FILE"), 0) << message();
    EXPECT_EQ(cursor_texts(), Texts{"c.h5"});
    // The file used last comes first.
    ASSERT_EQ(run("SHOW ALL USE FILE"), 0) << message();
    EXPECT_EQ(cursor_texts(), (Texts{"c.h5", "a.h5", "b.h5"}));
    EXPECT_EQ(_ormak_get_last_data_count(), 3u);
    ASSERT_EQ(run("SHOW ALL USE FILE ORDER ASCEND TOP 2"), 0) << message();
    EXPECT_EQ(cursor_texts(), (Texts{"a.h5", "b.h5"}));
    EXPECT_EQ(_ormak_get_last_data_count(), 2u);

    ASSERT_EQ(run("CLOSE FILE c.h5; CLOSE FILE a.h5; SHOW USE GROUP"), 0) << message();
    EXPECT_EQ(cursor_texts(), Texts{"/"});
    ASSERT_EQ(run("USE GROUP g/h; SHOW USE GROUP"), 0) << message();
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
    ASSERT_EQ(run("SHOW FLUSH"), 0) << message();
    EXPECT_EQ(cursor_ints(), Ints{-1});
    ASSERT_EQ(run("SET FLUSH LOCAL ENABLE; SHOW FLUSH"), 0) << message();
    EXPECT_EQ(cursor_ints(), Ints{ORMAK_LOCAL});
    ASSERT_EQ(run("SET FLUSH ENABLE; SHOW FLUSH"), 0) << message();
    EXPECT_EQ(cursor_ints(), Ints{ORMAK_GLOBAL});

    ASSERT_EQ(run("SHOW ATOMIC"), 0) << message();
    EXPECT_EQ(cursor_ints(), Ints{-1});
    ASSERT_EQ(run("SET ATOMIC ENABLE; SHOW ATOMIC"), 0) << message();
    EXPECT_EQ(cursor_ints(), Ints{0});

    ASSERT_EQ(run("SHOW ORMAK VERSION; SHOW EXTERNAL LINK PREFIX"), 0) << message();
    EXPECT_EQ(ormak_cursor_get_count(nullptr), 0);
    EXPECT_EQ(ormak_cursor_get_data_type(nullptr), ORMAK_VARCHAR);
    ASSERT_EQ(run("SET EXTERNAL LINK PREFIX \"links/\"; SHOW EXTERNAL LINK PREFIX"), 0) << message();
    EXPECT_EQ(cursor_texts(), Texts{"links/"});

    // While debug is on, the statement prints its call and the cursor it leaves.
    ASSERT_EQ(run("SHOW DEBUG"), 0) << message();
    EXPECT_EQ(cursor_ints(), Ints{-1});
    testing::internal::CaptureStdout();
    ASSERT_EQ(run("SET DEBUG ENABLE; SHOW DEBUG INTO CURSOR"), 0) << message();
    const std::string trace = testing::internal::GetCapturedStdout();
    EXPECT_EQ(cursor_ints(), Ints{0});
    EXPECT_NE(trace.find("FUNCTION CALL <ormak_show_debug>\n   post_processing_list <(nil)>\n   output_redirecting <0x"),
              std::string::npos)
        << trace;
    EXPECT_NE(trace.find("   programming_language <1>\nFUNCTION RETURN <0>\n\nCURSOR DATA TYPE <16>"), std::string::npos)
        << trace;
}

TEST_F(Show, LibraryBounds) {
    ASSERT_EQ(run("SHOW LIBRARY BOUNDS"), 0) << message();
    EXPECT_EQ(cursor_ints(), (Ints{ORMAK_EARLIEST, ORMAK_LATEST}));
    ASSERT_EQ(run("SET LIBRARY BOUNDS FROM LATEST; SHOW LIBRARY BOUNDS FROM"), 0) << message();
    EXPECT_EQ(cursor_ints(), Ints{ORMAK_LATEST});
    ASSERT_EQ(run("SHOW LIBRARY BOUNDS TO"), 0) << message();
    EXPECT_EQ(cursor_ints(), Ints{ORMAK_LATEST});
    // FROM with numbers behind it is the range of post-processing.
    ASSERT_EQ(run("SET LIBRARY BOUNDS FROM EARLIEST; SHOW LIBRARY BOUNDS FROM 1 TO 1"), 0) << message();
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
    ASSERT_EQ(run("SHOW LIBRARY BOUNDS FROM"), 0) << message();
    EXPECT_EQ(cursor_ints(), Ints{ORMAK_EARLIEST});
}

TEST_F(Show, CacheOfFilesDatasetsAndTheFileInUse) {
    // Every parameter is a double; one count alone is an int.
    ASSERT_EQ(run("SHOW CACHE"), 0) << message();
    EXPECT_EQ(ormak_cursor_get_data_type(nullptr), ORMAK_DOUBLE);
    EXPECT_EQ(cursor_doubles(), (Doubles{521, 1048576, 0.75}));
    ASSERT_EQ(run("SET CACHE SLOTS 101 SIZE 2048 PREEMPTION 0.5; SHOW FILE CACHE"), 0) << message();
    EXPECT_EQ(cursor_doubles(), (Doubles{101, 2048, 0.5}));
    ASSERT_EQ(run("SHOW CACHE SLOTS"), 0) << message();
    EXPECT_EQ(ormak_cursor_get_data_type(nullptr), ORMAK_INT);
    EXPECT_EQ(cursor_ints(), Ints{101});
    ASSERT_EQ(run("SHOW FILE CACHE PREEMPTION"), 0) << message();
    EXPECT_EQ(ormak_cursor_get_data_type(nullptr), ORMAK_DOUBLE);
    EXPECT_EQ(cursor_doubles(), Doubles{0.5});

    ASSERT_EQ(run("SET DATASET CACHE SLOTS 17 SIZE 4096 PREEMPTION 0.25; SHOW DATASET CACHE SIZE"), 0) << message();
    EXPECT_EQ(cursor_ints(), Ints{4096});
    ASSERT_EQ(run("SHOW DATASET CACHE ORDER DESCEND"), 0) << message();
    EXPECT_EQ(cursor_doubles(), (Doubles{4096, 17, 0.25}));

    ASSERT_EQ(run("SHOW ORMAK VERSION"), 0);
    EXPECT_EQ(refuse("SHOW USE FILE CACHE"), ORMAK_ERROR_NOT_OPEN);
    EXPECT_EQ(said, "Error when showing cache parameters as no file is in use");
    EXPECT_EQ(cursor_texts(), Texts{"2.1.0"});
    ASSERT_EQ(run("CREATE FILE a.h5; USE FILE a.h5 CACHE SLOTS 33 SIZE 8192 PREEMPTION 0.125; SET CACHE SLOTS 7"), 0)
        << message();
    ASSERT_EQ(run("SHOW USE FILE CACHE"), 0) << message();
    EXPECT_EQ(cursor_doubles(), (Doubles{33, 8192, 0.125}));
    ASSERT_EQ(run("SHOW USE FILE CACHE SLOTS"), 0) << message();
    EXPECT_EQ(cursor_ints(), Ints{33});
}

TEST_F(Show, AtomicityOfTheFileInUse) {
    EXPECT_EQ(refuse("SHOW USE FILE ATOMIC INTO MEMORY 9"), ORMAK_ERROR_NOT_OPEN);
    EXPECT_EQ(said, "Error when showing atomicity of MPI operations as no file is in use");
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
    EXPECT_EQ(_ormak_get_last_data_count(), 2u);
    ASSERT_EQ(run("SHOW FILE VALIDITY a.h5, notes.txt ORDER ASCEND"), 0) << message();
    EXPECT_EQ(cursor_ints(), (Ints{-1, 0}));

    // A directory does not exist here; a failure keeps the values found before it.
    EXPECT_EQ(refuse("SHOW FILE VALIDITY a.h5, d"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(said, "Error when showing validity of file \"d\" as it does not exist");
    EXPECT_EQ(cursor_ints(), Ints{0});
    EXPECT_EQ(_ormak_get_last_data_count(), 0u);
    EXPECT_EQ(refuse("SHOW FILE VALIDITY missing.h5"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(said, "Error when showing validity of file \"missing.h5\" as it does not exist");
    EXPECT_EQ(refuse("SHOW FILE VALIDITY d/"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(said, "Error when showing validity of file \"d/\" as it should not end with \"/\"");
    // Buffered, a failure leaves the cursor alone.
    ASSERT_EQ(run("SHOW ORMAK VERSION"), 0);
    EXPECT_EQ(refuse("SHOW FILE VALIDITY a.h5, d ORDER DESCEND"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(cursor_texts(), Texts{"2.1.0"});
}

TEST_F(Show, ValuesGoToFiles) {
    ASSERT_EQ(run("SHOW HDF5 VERSION ORDER DESCEND INTO TEXT FILE v.txt"), 0) << message();
    EXPECT_EQ(read_text("v.txt"), hdf5_version() + "\n");
    EXPECT_EQ(_ormak_get_last_data_count(), 1u);
    ASSERT_EQ(run("SHOW LIBRARY BOUNDS INTO TEXT FILE b.txt SEPARATOR \";\""), 0) << message();
    EXPECT_EQ(read_text("b.txt"), "1;2\n");

    // Binary: ints back to back, a string with its zero byte.
    ASSERT_EQ(run("SHOW LIBRARY BOUNDS ORDER DESCEND INTO BINARY FILE b.bin"), 0) << message();
    const std::string bounds = read_text("b.bin");
    ASSERT_EQ(bounds.size(), 2 * sizeof(int));
    int values[2];
    memcpy(values, bounds.data(), sizeof values);
    EXPECT_EQ(values[0], ORMAK_LATEST);
    EXPECT_EQ(values[1], ORMAK_EARLIEST);
    ASSERT_EQ(run("SHOW ZLIB VERSION INTO TRUNCATE BINARY FILE z.bin"), 0) << message();
    EXPECT_EQ(read_text("z.bin"), std::string(zlibVersion()) + std::string(1, '\0'));
    ASSERT_EQ(run("SHOW CACHE INTO BINARY FILE c.bin"), 0) << message();
    const std::string cache = read_text("c.bin");
    ASSERT_EQ(cache.size(), 3 * sizeof(double));
    double parameters[3];
    memcpy(parameters, cache.data(), sizeof parameters);
    EXPECT_EQ(parameters[0], 521);
    EXPECT_EQ(parameters[2], 0.75);

    // No value still makes the file, or truncates it.
    ASSERT_EQ(run("SHOW USE FILE INTO TEXT FILE none.txt"), 0) << message();
    EXPECT_TRUE(exists("none.txt"));
    write_text("old.bin", "old");
    ASSERT_EQ(run("SHOW EXTERNAL LINK PREFIX INTO TRUNCATE BINARY FILE old.bin"), 0) << message();
    EXPECT_EQ(read_text("old.bin"), "");

    // A file that can not be made fails the statement and leaves the cursor alone.
    ASSERT_EQ(run("SHOW ORMAK VERSION INTO CURSOR"), 0) << message();
    EXPECT_NE(run("SHOW FLUSH INTO TEXT FILE no/such/dir.txt"), 0);
    EXPECT_EQ(cursor_texts(), Texts{"2.1.0"});
}

TEST_F(Show, ValuesGoToMemory) {
    int bounds[2] = {};
    ASSERT_EQ(ormak_variable_register(bounds), 0);
    ASSERT_EQ(run("SHOW LIBRARY BOUNDS ORDER DESCEND INTO MEMORY 0"), 0) << message();
    EXPECT_EQ(bounds[0], ORMAK_LATEST);
    EXPECT_EQ(bounds[1], ORMAK_EARLIEST);
    EXPECT_EQ(ormak_variable_get_data_type(bounds), ORMAK_INT);
    EXPECT_EQ(ormak_variable_get_count(bounds), 2);

    // Three doubles need 24 bytes; a smaller size takes what fits.
    double cache[3] = {-1, -1, -1};
    ASSERT_EQ(ormak_variable_register(cache), 1);
    ASSERT_EQ(run("SHOW DATASET CACHE INTO MEMORY 1 SIZE 24"), 0) << message();
    EXPECT_EQ(cache[0], 521);
    EXPECT_EQ(cache[2], 0.75);
    cache[0] = cache[1] = cache[2] = -1;
    ASSERT_EQ(run("SHOW DATASET CACHE ORDER DESCEND INTO MEMORY 1 SIZE 16"), 0) << message();
    EXPECT_EQ(cache[0], 1048576);
    EXPECT_EQ(cache[1], 521);
    EXPECT_EQ(cache[2], -1);

    // Strings become the caller's; a size of 0 lets none through.
    char *texts[3] = {};
    ASSERT_EQ(ormak_variable_register(texts), 2);
    ASSERT_EQ(run("CREATE FILE b.h5, a.h5; USE FILE b.h5; USE FILE a.h5; SHOW ALL USE FILE INTO MEMORY 2"), 0)
        << message();
    EXPECT_STREQ(texts[0], "a.h5");
    EXPECT_STREQ(texts[1], "b.h5");
    EXPECT_EQ(texts[2], nullptr);
    free(texts[0]);
    free(texts[1]);
    texts[0] = texts[1] = nullptr;
    ASSERT_EQ(run("SHOW ORMAK VERSION INTO MEMORY 2 SIZE 0"), 0) << message();
    EXPECT_EQ(texts[0], nullptr);
    ASSERT_EQ(run("SHOW ALL USE FILE ORDER ASCEND INTO MEMORY 2 SIZE 1"), 0) << message();
    EXPECT_STREQ(texts[0], "a.h5");
    EXPECT_EQ(texts[1], nullptr);
    free(texts[0]);

    // A clause that names a free slot is refused before anything is shown.
    ASSERT_EQ(run("SHOW ORMAK VERSION"), 0);
    EXPECT_EQ(refuse("SHOW FLUSH INTO MEMORY 5"), ORMAK_ERROR_NOT_REGISTERED);
    EXPECT_EQ(cursor_texts(), Texts{"2.1.0"});
}

TEST_F(Show, JavaCopiesStringsOutOfTheStatementsBuffer) {
    fake_java::Environment java;
    char *unused[2] = {};
    ASSERT_EQ(_ormak_variable_register(3, (uintptr_t)unused, -1), 0);
    std::vector<std::string> received;
    fake_java::fake.method = [&](int type, int number, int size) {
        EXPECT_EQ(type, 1);
        for (int i = 0; i < size; i++) received.push_back(_ormak_variable_get_string(number, i));
        return size;
    };
    const std::string script = "CREATE FILE b.h5, a.h5; USE FILE b.h5; USE FILE a.h5; "
                               "SHOW ALL USE FILE ORDER ASCEND INTO MEMORY 3";
    ASSERT_EQ(_ormak_execute(script.c_str(), (int)script.size(), 4) & 0xFF, 0) << message();
    // The strings stay the library's, which releases them: the caller's block is not used.
    EXPECT_EQ(received, (Texts{"a.h5", "b.h5"}));
    EXPECT_EQ(unused[0], nullptr);
}
