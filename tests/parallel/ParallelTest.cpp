// Collective statements, run under mpirun with two ranks.
#include <gtest/gtest.h>
#include <hdf5.h>
#include <mpi.h>

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
