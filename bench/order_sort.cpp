// How fast the order clause sorts: SELECT FROM d ORDER ASCEND INTO MEMORY of 10 M random
// doubles, with an OpenMP team of one and of two threads, against one std::sort of the same
// values on one thread; the median of several runs of each, and their ratios.
//
//   order_sort [runs] [values]
//
// Targets: within 1.3x of std::sort's time with one thread, below it with two.
#include <omp.h>
#include <stdio.h>
#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "Ormak.h"
#include "Timing.h"

using namespace bench;

int main(int argc, char **argv) {
    int runs = argc > 1 ? atoi(argv[1]) : 5;
    int count = argc > 2 ? atoi(argv[2]) : 10000000;
    if (runs < 1 || count < 1) {
        fprintf(stderr, "usage: order_sort [runs] [values]\n");
        return 2;
    }

    std::vector<double> values(count);
    std::mt19937_64 random(20240521);
    std::uniform_real_distribution<double> uniform(-1e6, 1e6);
    for (double &value : values) value = uniform(random);
    std::vector<double> expected = values;
    std::sort(expected.begin(), expected.end());

    ScratchDirectory scratch;
    std::string create = "CREATE TRUNCATE FILE sort.h5; USE FILE sort.h5; CREATE DATASET d AS DOUBLE(" +
                         std::to_string(count) + ") FROM MEMORY 0";
    if (ormak_variable_register(values.data()) != 0 || ormak_execute(create.c_str()) != 0) return 1;
    ormak_variable_unregister(values.data());

    std::vector<double> work(count);
    if (ormak_variable_register(work.data()) != 0) return 1;
    std::vector<double> baseline_times, one_times, two_times;
    for (int run = 0; run < runs; run++) {
        work = values;
        baseline_times.push_back(seconds([&] { std::sort(work.begin(), work.end()); }));
        for (int threads : {1, 2}) {
            omp_set_num_threads(threads);
            work = values;
            int status = 0;
            double time = seconds([&] { status = ormak_execute("SELECT FROM d ORDER ASCEND INTO MEMORY 0"); });
            if (status != 0 || _ormak_get_last_data_count() != (uint64_t)count || work != expected) {
                fprintf(stderr, "the order clause gave a wrong result with %d threads (status %d)\n", threads, status);
                return 1;
            }
            (threads == 1 ? one_times : two_times).push_back(time);
        }
    }

    ormak_execute("CLOSE ALL FILE");
    ormak_variable_unregister(work.data());
    remove("sort.h5");

    double baseline = median(baseline_times), one = median(one_times), two = median(two_times);
    printf("%d random doubles, median of %d runs\n", count, runs);
    printf("std::sort, 1 thread:     %.3f s\n", baseline);
    printf("ORDER ASCEND, 1 thread:  %.3f s (%.2fx std::sort; target at most 1.30x: %s)\n", one, one / baseline,
           one <= 1.3 * baseline ? "met" : "missed");
    printf("ORDER ASCEND, 2 threads: %.3f s (%.2fx std::sort; target below 1.00x: %s)\n", two, two / baseline,
           two < baseline ? "met" : "missed");
    return 0;
}
