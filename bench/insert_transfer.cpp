// How fast values enter a dataset through INSERT, against the hand-written HDF5 calls that do
// the same, measured in one run: the median of several runs of each, and their ratio.
//
//   insert_transfer [runs] [megabytes] [text values]
//
// 1. 256 MiB of doubles: H5Dwrite from the caller's buffer, against INSERT ... FROM MEMORY
//    with that buffer registered (target: at least 0.95 of the raw call's speed).
// 2. The same bytes from a binary file: fread + H5Dwrite, against INSERT ... FROM BINARY FILE
//    (target: at least 0.9).
// 3. 10 M doubles from a text file: a plain loop of strtod over the text read into memory,
//    against INSERT ... FROM TEXT FILE (target: within 2x of the loop's time).
#include <hdf5.h>
#include <stdio.h>
#include <stdlib.h>
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

/* Writes `values` over the whole dataset /d of `file` through the plain calls. */
void raw_write(hid_t file, const double *values) {
    hid_t dataset = H5Dopen2(file, "/d", H5P_DEFAULT);
    if (H5Dwrite(dataset, H5T_NATIVE_DOUBLE, H5S_ALL, H5S_ALL, H5P_DEFAULT, values) < 0) exit(1);
    H5Dclose(dataset);
}

} // namespace

int main(int argc, char **argv) {
    const int runs = argc > 1 ? atoi(argv[1]) : 5;
    const long megabytes = argc > 2 ? atol(argv[2]) : 256;
    const long text_values = argc > 3 ? atol(argv[3]) : 10000000;
    const long count = megabytes * 1024 * 1024 / 8;

    ScratchDirectory scratch;

    std::vector<double> values(count);
    for (long i = 0; i < count; i++) values[i] = i * 0.5;

    std::string create = "CREATE TRUNCATE FILE ormak.h5; USE FILE ormak.h5; CREATE DATASET d AS DOUBLE(" +
                         std::to_string(count) + ")";
    check(ormak_execute(create.c_str()));
    hid_t raw_file = H5Fcreate("raw.h5", H5F_ACC_TRUNC, H5P_DEFAULT, H5P_DEFAULT);
    hsize_t dimension = (hsize_t)count;
    hid_t space = H5Screate_simple(1, &dimension, nullptr);
    H5Dclose(H5Dcreate2(raw_file, "/d", H5T_NATIVE_DOUBLE, space, H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT));
    H5Sclose(space);

    // 1. From memory.
    check(ormak_variable_register(values.data()) == 0 ? 0 : -1);
    std::vector<double> raw_times, ormak_times;
    for (int run = 0; run < runs; run++) {
        raw_times.push_back(seconds([&] { raw_write(raw_file, values.data()); }));
        ormak_times.push_back(seconds([&] { check(ormak_execute("INSERT INTO d FROM MEMORY 0")); }));
    }
    printf("%ld doubles (%ld MiB), median of %d runs\n", count, megabytes, runs);
    report("H5Dwrite  vs  INSERT FROM MEMORY", median(raw_times), median(ormak_times), "target >= 0.95");
    ormak_variable_unregister(values.data());

    // 2. From a binary file of the same bytes.
    FILE *out = fopen("values.bin", "wb");
    fwrite(values.data(), sizeof(double), count, out);
    fclose(out);
    raw_times.clear();
    ormak_times.clear();
    for (int run = 0; run < runs; run++) {
        raw_times.push_back(seconds([&] {
            std::vector<double> buffer(count);
            FILE *in = fopen("values.bin", "rb");
            if (fread(buffer.data(), sizeof(double), count, in) != (size_t)count) exit(1);
            fclose(in);
            raw_write(raw_file, buffer.data());
        }));
        ormak_times.push_back(seconds([&] { check(ormak_execute("INSERT INTO d FROM BINARY FILE values.bin")); }));
    }
    report("fread + H5Dwrite  vs  INSERT FROM BINARY FILE", median(raw_times), median(ormak_times), "target >= 0.9");
    H5Fclose(raw_file);
    values.clear();
    values.shrink_to_fit();
    remove("values.bin");

    // 3. From a text file: the baseline reads it into memory and converts it with strtod.
    std::string script = "CREATE DATASET t AS DOUBLE(" + std::to_string(text_values) + ")";
    check(ormak_execute(script.c_str()));
    out = fopen("values.txt", "wb");
    for (long i = 0; i < text_values; i++) fprintf(out, "%.6f%s", i * 0.001 - 5000.0, i + 1 < text_values ? "," : "\n");
    fclose(out);
    raw_times.clear();
    ormak_times.clear();
    double sink = 0;
    for (int run = 0; run < runs; run++) {
        raw_times.push_back(seconds([&] {
            FILE *in = fopen("values.txt", "rb");
            fseek(in, 0, SEEK_END);
            long size = ftell(in);
            rewind(in);
            std::string text((size_t)size, '\0');
            if (fread(&text[0], 1, (size_t)size, in) != (size_t)size) exit(1);
            fclose(in);
            std::vector<double> parsed(text_values);
            char *position = &text[0];
            for (long i = 0; i < text_values; i++) {
                parsed[i] = strtod(position, &position);
                position++;
            }
            sink += parsed[text_values - 1];
        }));
        ormak_times.push_back(seconds([&] { check(ormak_execute("INSERT INTO t FROM TEXT FILE values.txt")); }));
    }
    printf("%ld doubles as text, median of %d runs (checksum %g)\n", text_values, runs, sink);
    report("strtod loop  vs  INSERT FROM TEXT FILE", median(raw_times), median(ormak_times), "target >= 0.5");

    check(ormak_execute("CLOSE ALL FILE"));
    remove("values.txt");
    remove("ormak.h5");
    remove("raw.h5");
    return 0;
}
