// How fast results leave as text, against a plain fprintf loop that writes the same bytes,
// measured in one run: the median of several runs of each, and their ratio.
//
//   select_text [runs] [values]
//
// 10 M doubles into a text file: a C loop of fprintf(f, "%f,", v), its last value followed
// by the line end instead, against output redirecting with no options (target: at least 1.5
// times the loop's speed). The two files must be byte for byte the same.
//
// The values stand in a dataset; the timed statement is SELECT FROM d INTO TRUNCATE TEXT FILE,
// which reads them and writes them out.
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "Ormak.h"
#include "Timing.h"

using namespace bench;

namespace {

/* Whether two files hold the same bytes; tells where they part when they do not. */
bool same_files(const char *first, const char *second) {
    FILE *a = fopen(first, "rb");
    FILE *b = fopen(second, "rb");
    if (!a || !b) return false;
    std::vector<char> block_a(1 << 20), block_b(1 << 20);
    long offset = 0;
    bool same = true;
    for (;;) {
        size_t got_a = fread(block_a.data(), 1, block_a.size(), a);
        size_t got_b = fread(block_b.data(), 1, block_b.size(), b);
        if (got_a != got_b || memcmp(block_a.data(), block_b.data(), got_a) != 0) {
            size_t at = 0;
            while (at < std::min(got_a, got_b) && block_a[at] == block_b[at]) at++;
            fprintf(stderr, "%s and %s differ at byte %ld\n", first, second, offset + (long)at);
            same = false;
            break;
        }
        if (got_a == 0) break;
        offset += (long)got_a;
    }
    fclose(a);
    fclose(b);
    return same;
}

} // namespace

int main(int argc, char **argv) {
    const int runs = argc > 1 ? atoi(argv[1]) : 5;
    const long count = argc > 2 ? atol(argv[2]) : 10000000;
    if (runs < 1 || count < 1 || count > 0x7fffffff) return 1;

    ScratchDirectory scratch;

    // Measurements of many magnitudes, from thousandths to millions, of both signs.
    std::vector<double> values((size_t)count);
    std::mt19937_64 random(42);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    for (long i = 0; i < count; i++) values[(size_t)i] = unit(random) * std::pow(10.0, (double)(i % 10) - 3);

    std::string create = "CREATE TRUNCATE FILE values.h5; USE FILE values.h5; CREATE DATASET d AS DOUBLE(" +
                         std::to_string(count) + ") FROM MEMORY 0";
    check(ormak_variable_register(values.data()) == 0 ? 0 : -1);
    check(ormak_execute(create.c_str()));
    ormak_variable_unregister(values.data());

    std::vector<double> baseline_times, ormak_times;
    for (int run = 0; run < runs; run++) {
        baseline_times.push_back(seconds([&] {
            FILE *out = fopen("fprintf.txt", "wb");
            if (out == nullptr) exit(1);
            for (long i = 0; i < count - 1; i++) fprintf(out, "%f,", values[(size_t)i]);
            fprintf(out, "%f\n", values[(size_t)count - 1]);
            fclose(out);
        }));
        ormak_times.push_back(seconds([&] {
            check(ormak_execute("SELECT FROM d INTO TRUNCATE TEXT FILE ormak.txt"));
        }));
    }
    if (!same_files("fprintf.txt", "ormak.txt")) return 1;

    const double baseline = median(baseline_times), ours = median(ormak_times);
    printf("%ld doubles as text, median of %d runs; the files are byte for byte the same\n", count, runs);
    printf("%-44s baseline %8.3f s   ormak %8.3f s   speed ratio %.3f   (target >= 1.5)\n",
           "fprintf loop  vs  SELECT INTO TEXT FILE", baseline, ours, baseline / ours);

    check(ormak_execute("CLOSE ALL FILE"));
    remove("fprintf.txt");
    remove("ormak.txt");
    remove("values.h5");
    return 0;
}
