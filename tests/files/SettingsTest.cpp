// Session settings change what later statements do; a refused SET changes nothing.
#include "OrmakPrivateStructures.h"
#include "OrmakTest.h"

using Settings = OrmakTest;

TEST_F(Settings, FlushWithAndWithoutAFile) {
    EXPECT_EQ(run("FLUSH; CREATE FILE a.h5; USE FILE a.h5; FLUSH GLOBAL; FLUSH LOCAL"), 0);
    EXPECT_EQ(run("SET FLUSH LOCAL ENABLE"), 0);
    EXPECT_EQ(flush_status, ORMAK_LOCAL);
    // Disabling either kind disables flushing.
    EXPECT_EQ(run("SET FLUSH GLOBAL ENABLE; SET FLUSH LOCAL DISABLE"), 0);
    EXPECT_EQ(flush_status, -1);
}

TEST_F(Settings, FileCacheReachesFilesOpenedLater) {
    EXPECT_EQ(run("SET FILE CACHE"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(message(), "Error when setting file cache since no parameters were provided");
    EXPECT_EQ(run("SET CACHE PREEMPTION 1.5"), ORMAK_ERROR_INVALID_VALUE);
    EXPECT_EQ(message(), "Error when setting file cache since preemption is not between 0 and 1");

    // A parameter left out keeps its value; the values set are shown by SHOW CACHE.
    EXPECT_EQ(run("SET CACHE SLOTS 101 SIZE 0x100000 PREEMPTION 0.0; SET CACHE PREEMPTION 1.0"), 0);
    ASSERT_EQ(run("CREATE FILE a.h5; USE FILE a.h5"), 0);
    int elements;
    size_t slots, size;
    double preemption;
    ASSERT_GE(H5Pget_cache(current_file->property_access_list, &elements, &slots, &size, &preemption), 0);
    EXPECT_EQ(slots, 101u);
    EXPECT_DOUBLE_EQ(preemption, 1.0);
}

TEST_F(Settings, DatasetCache) {
    EXPECT_EQ(run("SET DATASET CACHE SLOTS -1"), ORMAK_ERROR_INVALID_VALUE);
    EXPECT_EQ(message(), "Error when setting dataset cache since slots is not equal to or greater than 0");
    EXPECT_EQ(run("SET DATASET CACHE SLOTS 11 SIZE DEFAULT PREEMPTION 0.25"), 0);
    size_t slots, size;
    double preemption;
    // FILE hands the choice back to the file's cache: HDF5 reports the file's value then.
    EXPECT_EQ(run("SET CACHE SLOTS 77; SET DATASET CACHE SLOTS FILE"), 0);
    ASSERT_GE(H5Pget_chunk_cache(property_dataset_access_list0, &slots, &size, &preemption), 0);
    EXPECT_NE(slots, 11u);
    EXPECT_EQ(size, 1048576u);
}

TEST_F(Settings, LibraryBoundsReachNewFiles) {
    EXPECT_EQ(run("SET LIBRARY BOUNDS"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(message(), "Error when setting library bounds since no parameters were provided");
    EXPECT_EQ(run("SET LIBRARY BOUNDS FROM LATEST"), 0);
    ASSERT_EQ(run("CREATE FILE new.h5"), 0);
    hid_t file = H5Fopen("new.h5", H5F_ACC_RDONLY, H5P_DEFAULT);
    H5F_info2_t info;
    ASSERT_GE(H5Fget_info2(file, &info), 0);
    EXPECT_GE(info.super.version, 2u);
    H5Fclose(file);
    // A low bound alone keeps the high bound.
    EXPECT_EQ(run("SET LIBRARY BOUNDS FROM EARLIEST"), 0);
    H5F_libver_t low, high;
    ASSERT_GE(H5Pget_libver_bounds(property_file_access_list, &low, &high), 0);
    EXPECT_EQ(high, H5F_LIBVER_LATEST);
}

TEST_F(Settings, Atomicity) {
    EXPECT_EQ(run("SET ATOMIC ENABLE"), 0);
    EXPECT_EQ(atomic_status, 0);
    EXPECT_EQ(run("SET USE FILE ATOMIC ENABLE"), ORMAK_ERROR_NOT_OPEN);
    ASSERT_EQ(run("CREATE FILE a.h5; USE FILE a.h5"), 0);
    EXPECT_EQ(run("SET USE FILE ATOMIC DISABLE"), ORMAK_ERROR_NOT_SUPPORTED);
    EXPECT_EQ(message(),
              "Error when setting atomicity of MPI operations as the file was not opened for parallel operations");
    EXPECT_EQ(run("SET ATOMIC DISABLE"), 0);
    EXPECT_EQ(atomic_status, -1);
}

TEST_F(Settings, DebugTracesEveryExecutorAfterItsWork) {
    testing::internal::CaptureStdout();
    EXPECT_EQ(run("CREATE FILE a.h5"), 0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");

    // The call that turns debug on is traced, the one that turns it off is not; each call shows
    // its status, a failed one too, and a failure leaves debug on for the next script.
    testing::internal::CaptureStdout();
    EXPECT_EQ(run("SET DEBUG ENABLE; USE FILE a.h5; USE GROUP g; SET DEBUG DISABLE"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(run("USE GROUP /; SET DEBUG DISABLE; USE GROUP /"), 0);
    const std::string trace = testing::internal::GetCapturedStdout();
    EXPECT_EQ(trace.rfind("FUNCTION CALL <ormak_set_debug>\n   debug_set <0>\nFUNCTION RETURN <0>\n\n"
                          "FUNCTION CALL <ormak_use_file>\n",
                          0),
              0u)
        << trace;
    const std::string end = "FUNCTION CALL <ormak_use_group>\n   group_name <g>\nFUNCTION RETURN <-2>\n\n"
                            "FUNCTION CALL <ormak_use_group>\n   group_name </>\nFUNCTION RETURN <0>\n\n";
    ASSERT_GE(trace.size(), end.size());
    EXPECT_EQ(trace.substr(trace.size() - end.size()), end);
}
