// Collective statements, run under mpirun with two ranks.
#include <gtest/gtest.h>
#include <hdf5.h>
#include <mpi.h>

#include <string>

#include "Ormak.h"
#include "OrmakPrivateStructures.h"

TEST(Parallel, BothRanksCreateOneFileTogether) {
    ASSERT_EQ(ormak_mpi_get_size(), 2);
    EXPECT_EQ(ormak_execute("CREATE TRUNCATE PARALLEL FILE parallel-test.h5"), 0) << ormak_error_get_message();
    MPI_Barrier(MPI_COMM_WORLD);
    EXPECT_GT(H5Fis_hdf5("parallel-test.h5"), 0);
    MPI_Barrier(MPI_COMM_WORLD);
    if (ormak_mpi_get_rank() == 0) EXPECT_EQ(ormak_execute("DROP FILE parallel-test.h5"), 0);
}

TEST(Parallel, BothRanksUseOneFileTogether) {
    ASSERT_EQ(ormak_execute("CREATE TRUNCATE PARALLEL FILE parallel-use.h5"), 0) << ormak_error_get_message();
    EXPECT_EQ(ormak_execute("USE PARALLEL ATOMIC FILE parallel-use.h5"), 0) << ormak_error_get_message();
    EXPECT_EQ(ormak_execute("CLOSE FILE"), 0);
    EXPECT_EQ(ormak_execute("USE PARALLEL FILE parallel-use.h5; CLOSE ALL FILE"), 0) << ormak_error_get_message();
    MPI_Barrier(MPI_COMM_WORLD);
    if (ormak_mpi_get_rank() == 0) EXPECT_EQ(ormak_execute("DROP FILE parallel-use.h5"), 0);
}

TEST(Parallel, AtomicityReachesParallelFiles) {
    ASSERT_EQ(ormak_execute("CREATE TRUNCATE PARALLEL FILE parallel-atomic.h5"), 0) << ormak_error_get_message();
    // The session's default applies to files opened later with PARALLEL.
    ASSERT_EQ(ormak_execute("SET ATOMIC ENABLE; USE PARALLEL FILE parallel-atomic.h5"), 0) << ormak_error_get_message();
    hbool_t atomic = false;
    H5Fget_mpi_atomicity(current_file->file_id, &atomic);
    EXPECT_TRUE(atomic);
    EXPECT_EQ(ormak_execute("SET USE FILE ATOMIC DISABLE"), 0) << ormak_error_get_message();
    H5Fget_mpi_atomicity(current_file->file_id, &atomic);
    EXPECT_FALSE(atomic);
    EXPECT_EQ(ormak_execute("SET ATOMIC DISABLE; CLOSE ALL FILE"), 0);
    MPI_Barrier(MPI_COMM_WORLD);
    if (ormak_mpi_get_rank() == 0) EXPECT_EQ(ormak_execute("DROP FILE parallel-atomic.h5"), 0);
}

TEST(Parallel, BothRanksCreateDatasetsTogether) {
    ASSERT_EQ(ormak_execute("CREATE TRUNCATE PARALLEL FILE parallel-data.h5; USE PARALLEL FILE parallel-data.h5"), 0)
        << ormak_error_get_message();
    EXPECT_EQ(ormak_execute("CREATE DATASET g/d AS INT(4) VALUES(1, 2, 3, 4); CREATE CHUNKED DATASET u AS DOUBLE(UNLIMITED)"),
              0)
        << ormak_error_get_message();
    // Variable-length values can not be written collectively.
    EXPECT_EQ(ormak_execute("CREATE DATASET v AS VARINT(2) VALUES(1, 2)"), ORMAK_ERROR_NOT_SUPPORTED);
    EXPECT_STREQ(ormak_error_get_message(), "Error when creating dataset \"v\" as parallel HDF5 library does not support "
                                            "writing variable-length data types in parallel");
    EXPECT_EQ(ormak_execute("CREATE DATASET w AS VARCHAR(2)"), 0) << ormak_error_get_message();
    EXPECT_EQ(ormak_execute("CLOSE ALL FILE"), 0);
    MPI_Barrier(MPI_COMM_WORLD);
    hid_t file = H5Fopen("parallel-data.h5", H5F_ACC_RDONLY, H5P_DEFAULT);
    hid_t dataset = H5Dopen2(file, "/g/d", H5P_DEFAULT);
    int values[4] = {};
    EXPECT_GE(H5Dread(dataset, H5T_NATIVE_INT, H5S_ALL, H5S_ALL, H5P_DEFAULT, values), 0);
    EXPECT_EQ(values[3], 4);
    EXPECT_GT(H5Lexists(file, "/u", H5P_DEFAULT), 0);
    H5Dclose(dataset);
    H5Fclose(file);
    MPI_Barrier(MPI_COMM_WORLD);
    if (ormak_mpi_get_rank() == 0) EXPECT_EQ(ormak_execute("DROP FILE parallel-data.h5"), 0);
}

TEST(Parallel, EachRankInsertsItsOwnPart) {
    const int rank = ormak_mpi_get_rank();
    ASSERT_EQ(ormak_execute("CREATE TRUNCATE PARALLEL FILE parallel-insert.h5; USE PARALLEL FILE parallel-insert.h5; "
                            "CREATE DATASET d AS INT(8); CREATE DATASET v AS VARINT(2); CREATE GROUP g"),
              0)
        << ormak_error_get_message();
    std::string insert = "INSERT PARALLEL INTO d(" + std::to_string(rank * 4) + ":1:4:1) VALUES(" +
                         std::to_string(rank * 10 + 1) + ", " + std::to_string(rank * 10 + 2) + ", " +
                         std::to_string(rank * 10 + 3) + ", " + std::to_string(rank * 10 + 4) + ")";
    EXPECT_EQ(ormak_execute(insert.c_str()), 0) << ormak_error_get_message();
    // Without a selection a collective write selects nothing on every rank.
    EXPECT_EQ(ormak_execute("INSERT PARALLEL INTO d VALUES(99)"), 0) << ormak_error_get_message();
    EXPECT_EQ(ormak_execute("INSERT PARALLEL INTO v(0:::) VALUES(1)"), ORMAK_ERROR_NOT_SUPPORTED);
    EXPECT_EQ(ormak_execute("INSERT DIRECTLY PARALLEL INTO d VALUES(1)"), ORMAK_ERROR_NOT_SUPPORTED);
    EXPECT_EQ(ormak_execute("CLOSE ALL FILE"), 0);
    MPI_Barrier(MPI_COMM_WORLD);
    hid_t file = H5Fopen("parallel-insert.h5", H5F_ACC_RDONLY, H5P_DEFAULT);
    hid_t dataset = H5Dopen2(file, "/d", H5P_DEFAULT);
    int values[8] = {};
    EXPECT_GE(H5Dread(dataset, H5T_NATIVE_INT, H5S_ALL, H5S_ALL, H5P_DEFAULT, values), 0);
    const int expected[8] = {1, 2, 3, 4, 11, 12, 13, 14};
    for (int i = 0; i < 8; i++) EXPECT_EQ(values[i], expected[i]) << i;
    H5Dclose(dataset);
    H5Fclose(file);
    MPI_Barrier(MPI_COMM_WORLD);
    if (rank == 0) EXPECT_EQ(ormak_execute("DROP FILE parallel-insert.h5"), 0);
}

TEST(Parallel, EachRankSelectsItsOwnPart) {
    const int rank = ormak_mpi_get_rank();
    ASSERT_EQ(ormak_execute("CREATE TRUNCATE PARALLEL FILE parallel-select.h5; USE PARALLEL FILE parallel-select.h5; "
                            "CREATE DATASET d AS INT(8) VALUES(1, 2, 3, 4, 5, 6, 7, 8)"),
              0)
        << ormak_error_get_message();
    std::string select = "SELECT PARALLEL FROM d(" + std::to_string(rank * 4) + ":1:4:1) ORDER DESCEND";
    ASSERT_EQ(ormak_execute(select.c_str()), 0) << ormak_error_get_message();
    ASSERT_EQ(ormak_cursor_get_count(nullptr), 4);
    ormak_cursor_first(nullptr);
    EXPECT_EQ(*ormak_cursor_get_int(nullptr), rank * 4 + 4);
    // Without a selection a collective read gives nothing on any rank.
    ASSERT_EQ(ormak_execute("SELECT PARALLEL FROM d"), 0) << ormak_error_get_message();
    EXPECT_EQ(ormak_cursor_get_count(nullptr), 0);
    EXPECT_EQ(ormak_execute("CLOSE ALL FILE"), 0);
    MPI_Barrier(MPI_COMM_WORLD);
    if (rank == 0) EXPECT_EQ(ormak_execute("DROP FILE parallel-select.h5"), 0);
}

int main(int argc, char **argv) {
    ::testing::InitGoogleTest(&argc, argv);
    // Only rank 0 reports, so the two outputs do not interleave.
    if (ormak_mpi_get_rank() != 0) {
        auto &listeners = ::testing::UnitTest::GetInstance()->listeners();
        delete listeners.Release(listeners.default_result_printer());
    }
    int result = RUN_ALL_TESTS();
    int any = 0;
    MPI_Allreduce(&result, &any, 1, MPI_INT, MPI_MAX, MPI_COMM_WORLD);
    return any;
}
