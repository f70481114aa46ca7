// How fast values leave a dataset through SELECT, against the hand-written HDF5 calls that do
// the same, measured in one run: the median of several runs of each, and their ratio.
//
//   select_transfer [runs] [megabytes]
//
// 1. 256 MiB of doubles, warm in the page cache: H5Dread into a caller's buffer touched
//    before timing, against SELECT ... INTO MEMORY with that buffer registered (target: at
//    least 0.95 of the raw call's speed).
// 2. The same into a binary file: H5Dread + one fwrite, against SELECT ... INTO BINARY FILE
//    (target: at least 0.9).
#include <hdf5.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "Ormak.h"
#include "Timing.h"

using namespace bench;

namespace {

/* Reads the whole dataset /d of `file` through the plain calls. */
void raw_read(hid_t file, double *values) {
    hid_t dataset = H5Dopen2(file, "/d", H5P_DEFAULT);
    if (H5Dread(dataset, H5T_NATIVE_DOUBLE, H5S_ALL, H5S_ALL, H5P_DEFAULT, values) < 0) exit(1);
    H5Dclose(dataset);
}

} // namespace

int main(int argc, char **argv) {
    const int runs = argc > 1 ? atoi(argv[1]) : 5;
    const long megabytes = argc > 2 ? atol(argv[2]) : 256;
    const long count = megabytes * 1024 * 1024 / 8;

    ScratchDirectory scratch;

    std::vector<double> values(count);
    for (long i = 0; i < count; i++) values[i] = i * 0.25;
    check(ormak_variable_register(values.data()) == 0 ? 0 : -1);
    std::string create = "CREATE TRUNCATE FILE ormak.h5; USE FILE ormak.h5; CREATE DATASET d AS DOUBLE(" +
                         std::to_string(count) + ") FROM MEMORY 0";
    check(ormak_execute(create.c_str()));
    ormak_variable_unregister(values.data());
    hid_t raw_file = H5Fcreate("raw.h5", H5F_ACC_TRUNC, H5P_DEFAULT, H5P_DEFAULT);
    hsize_t dimension = (hsize_t)count;
    hid_t space = H5Screate_simple(1, &dimension, nullptr);
    hid_t dataset = H5Dcreate2(raw_file, "/d", H5T_NATIVE_DOUBLE, space, H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT);
    H5Dwrite(dataset, H5T_NATIVE_DOUBLE, H5S_ALL, H5S_ALL, H5P_DEFAULT, values.data());
    H5Dclose(dataset);
    H5Sclose(space);
    H5Fflush(raw_file, H5F_SCOPE_GLOBAL);

    // The buffer the results land in is touched first, so no run pays for fresh pages.
    std::vector<double> target(count, 1.0);
    check(ormak_variable_register(target.data()) == 0 ? 0 : -1);
    std::vector<double> raw_times, ormak_times;
    for (int run = 0; run < runs + 1; run++) {
        double raw = seconds([&] { raw_read(raw_file, target.data()); });
        double ours = seconds([&] { check(ormak_execute("SELECT FROM d INTO MEMORY 0")); });
        if (run == 0) continue; /* the first run warms the page cache */
        raw_times.push_back(raw);
        ormak_times.push_back(ours);
    }
    if (memcmp(target.data(), values.data(), count * sizeof(double)) != 0) {
        fprintf(stderr, "SELECT INTO MEMORY delivered other values\n");
        return 1;
    }
    printf("%ld doubles (%ld MiB), median of %d runs\n", count, megabytes, runs);
    report("H5Dread  vs  SELECT INTO MEMORY", median(raw_times), median(ormak_times), "target >= 0.95");
    ormak_variable_unregister(target.data());

    raw_times.clear();
    ormak_times.clear();
    for (int run = 0; run < runs; run++) {
        raw_times.push_back(seconds([&] {
            raw_read(raw_file, target.data());
            FILE *out = fopen("raw.bin", "wb");
            if (fwrite(target.data(), sizeof(double), count, out) != (size_t)count) exit(1);
            fclose(out);
        }));
        ormak_times.push_back(seconds([&] { check(ormak_execute("SELECT FROM d INTO TRUNCATE BINARY FILE ormak.bin")); }));
    }
    report("H5Dread + fwrite  vs  SELECT INTO BINARY FILE", median(raw_times), median(ormak_times), "target >= 0.9");

    H5Fclose(raw_file);
    check(ormak_execute("CLOSE ALL FILE"));
    for (const char *name : {"raw.bin", "ormak.bin", "raw.h5", "ormak.h5"}) remove(name);
    return 0;
}
