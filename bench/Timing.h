// What the benchmarks share: a scratch directory to work in, timing a piece of work, the median
// of several runs, stopping on a failed statement, and one line of baseline against ormak.
#ifndef ORMAK_BENCH_TIMING_H
#define ORMAK_BENCH_TIMING_H

#include <stdio.h>
#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <vector>

#include "Ormak.h"

namespace bench {

/* A fresh directory under /tmp, made the working directory while the benchmark runs; it is
   removed at the end, once the benchmark has removed its files. */
class ScratchDirectory {
public:
    ScratchDirectory() {
        if (!mkdtemp(path_) || chdir(path_) != 0) {
            perror("scratch directory");
            exit(1);
        }
    }
    ~ScratchDirectory() {
        if (chdir("/") != 0 || rmdir(path_) != 0) perror("scratch directory");
    }

private:
    char path_[32] = "/tmp/ormak-bench-XXXXXX";
};

inline double seconds(const std::function<void()> &work) {
    auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

inline double median(std::vector<double> times) {
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

/* Ends the benchmark with the library's message when a statement fails. */
inline void check(int status) {
    if (status != ORMAK_SUCCESS) {
        fprintf(stderr, "%s (status %d)\n", ormak_error_get_message(), status);
        exit(1);
    }
}

inline void report(const char *what, double baseline, double ours, const char *target) {
    printf("%-44s baseline %8.3f s   ormak %8.3f s   speed ratio %.3f   (%s)\n", what, baseline, ours, baseline / ours,
           target);
}

} // namespace bench

#endif
