// What one statement costs when a program calls ormak_execute in its inner loop, against the
// hand-written HDF5 calls that do the same, measured in one run: the median of several runs.
//
//   statement_latency [runs] [statements]
//
// 1. SET DEBUG DISABLE, a statement that touches no file, before any file was opened, with no
//    file in use and with one in use, against H5Dopen2 + H5Dclose of a dataset (target: at
//    most a fifth of the pair), with the minor page faults per statement.
// 2. SELECT FROM d(i:1:10:1) INTO MEMORY 0 with i moving, on a file opened once, against C
//    with the dataset held open (H5Dget_space + H5Sselect_hyperslab + H5Dread + H5Sclose per
//    read; target: within 2.5x) and against C opening and closing the dataset per read; and
//    the same statement text again and again.
//    Every library loop of 1 and 2 is measured again with the cache of recognised scripts off,
//    where the library has the switch for it (_ormak_set_script_cache).
// 3. INSERT of 10 thousand, 100 thousand and 1 million literal doubles, each size in a fresh
//    child process: time and peak memory (the rise of VmHWM over the statement) per value,
//    against a C loop that strtods the same text and writes it with H5Dwrite (targets: time
//    per value within 20 percent across sizes, 1 million within 10x of the loop, peak memory
//    below 40 times the script's size).
// 4. SELECT of 10 thousand, 100 thousand and 1 million values into the cursor: time per value
//    (target: flat across sizes).
#include <dlfcn.h>
#include <hdf5.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "Ormak.h"
#include "Timing.h"

using namespace bench;

namespace {

long minor_faults() {
    struct rusage usage;
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_minflt;
}

/* A field of /proc/self/status in kB, or -1. */
long status_kilobytes(const char *field) {
    FILE *in = fopen("/proc/self/status", "r");
    if (!in) return -1;
    char line[256];
    long value = -1;
    size_t length = strlen(field);
    while (fgets(line, sizeof line, in))
        if (strncmp(line, field, length) == 0 && line[length] == ':') value = atol(line + length + 1);
    fclose(in);
    return value;
}

/* Lets VmHWM start again from the present resident size; false where the kernel refuses. */
bool reset_peak() {
    FILE *out = fopen("/proc/self/clear_refs", "w");
    if (!out) return false;
    bool done = fputs("5", out) >= 0;
    return fclose(out) == 0 && done;
}

/* The library's switch for its cache of recognised scripts, where it has one. */
using CacheSwitch = int (*)(int);
CacheSwitch cache_switch() { return (CacheSwitch)dlsym(RTLD_DEFAULT, "_ormak_set_script_cache"); }

struct Loop {
    double seconds;
    double faults; /* minor page faults per statement */
};

/* The median time of `runs` runs of `work`, with the faults of the median run. */
Loop measure(int runs, long statements, const std::function<void()> &work) {
    std::vector<double> times;
    std::vector<std::pair<double, long>> all;
    for (int run = 0; run < runs; run++) {
        long faults = minor_faults();
        double time = seconds(work);
        all.push_back({time, minor_faults() - faults});
        times.push_back(time);
    }
    std::sort(all.begin(), all.end());
    return {median(times), (double)all[all.size() / 2].second / statements};
}

void line(const char *what, long statements, const Loop &loop, const char *against, double baseline) {
    printf("  %-56s %8.2f us/statement  %6.2f faults/statement", what, loop.seconds / statements * 1e6,
           loop.faults);
    if (against) printf("   %.2fx %s", loop.seconds / baseline, against);
    printf("\n");
}

/* Writes the decimal digits of `value` into `text` and returns their end, without printf. */
char *put_number(char *text, long value) {
    char digits[24];
    int n = 0;
    do digits[n++] = (char)('0' + value % 10);
    while ((value /= 10) > 0);
    while (n > 0) *text++ = digits[--n];
    return text;
}

/* A loop of statements measured as the library runs it, and again with its cache of
   recognised scripts off where it has the switch for that. */
struct Both {
    Loop cached;
    Loop uncached;
    bool switchable;
};

Both measure_both(int runs, long statements, const std::function<void()> &work) {
    Both both{measure(runs, statements, work), {0, 0}, false};
    if (CacheSwitch set_cache = cache_switch()) {
        int entries = set_cache(0);
        both.uncached = measure(runs, statements, work);
        both.switchable = true;
        set_cache(entries);
    }
    return both;
}

void lines(const char *what, long statements, const Both &both, const char *against, const char *target,
           double baseline) {
    char with[128], without[128], ratio[128];
    snprintf(ratio, sizeof ratio, "%s%s", against, target);
    snprintf(with, sizeof with, "%s%s", what, both.switchable ? ", cache" : "");
    line(with, statements, both.cached, ratio, baseline);
    if (!both.switchable) return;
    snprintf(without, sizeof without, "%s, no cache", what);
    line(without, statements, both.uncached, against, baseline);
}

void statement_costs(int runs, long statements) {
    auto set_debug = [&] {
        for (long k = 0; k < statements; k++) check(ormak_execute("SET DEBUG DISABLE"));
    };
    // Before anything has opened a file: the library's own state only.
    Both untouched = measure_both(runs, statements, set_debug);
    const long length = 1000;
    std::string create = "CREATE TRUNCATE FILE ormak.h5; USE FILE ormak.h5; CREATE DATASET d AS DOUBLE(" +
                         std::to_string(length) + ")";
    std::vector<double> values(length);
    for (long i = 0; i < length; i++) values[i] = i * 0.5;
    int number = ormak_variable_register(values.data());
    check(number == 0 ? 0 : -1);
    check(ormak_execute((create + " FROM MEMORY 0").c_str()));
    ormak_variable_unregister(values.data());
    // The C loops read the same file: opened here after the library opened it for writing.
    hid_t raw_file = H5Fopen("ormak.h5", H5F_ACC_RDONLY, H5P_DEFAULT);
    if (raw_file < 0) exit(1);
    check(ormak_execute("CLOSE ALL FILE"));

    // 1. A statement that touches no file, against opening and closing a dataset.
    Loop pair = measure(runs, statements, [&] {
        for (long k = 0; k < statements; k++) H5Dclose(H5Dopen2(raw_file, "/d", H5P_DEFAULT));
    });
    Both no_file = measure_both(runs, statements, set_debug);
    check(ormak_execute("USE FILE ormak.h5"));
    Both in_use = measure_both(runs, statements, set_debug);
    printf("%ld statements, median of %d runs\n", statements, runs);
    line("H5Dopen2 + H5Dclose", statements, pair, nullptr, 0);
    const char *of_pair = "of the pair", *fifth = " (target <= 0.2)";
    lines("SET DEBUG DISABLE, before any file", statements, untouched, of_pair, fifth, pair.seconds);
    lines("SET DEBUG DISABLE, no file in use", statements, no_file, of_pair, fifth, pair.seconds);
    lines("SET DEBUG DISABLE, a file in use", statements, in_use, of_pair, fifth, pair.seconds);

    // 2. Ten values out of a dataset held open, from moving places.
    double target[10];
    check(ormak_variable_register(target) == 0 ? 0 : -1);
    const long places = length - 10;
    hsize_t ten = 10;
    hid_t memory_space = H5Screate_simple(1, &ten, nullptr);
    double sink = 0;
    auto read_ten = [&](hid_t dataset, long start) {
        hid_t space = H5Dget_space(dataset);
        hsize_t offset = (hsize_t)start, stride = 1, count = 10, block = 1;
        H5Sselect_hyperslab(space, H5S_SELECT_SET, &offset, &stride, &count, &block);
        if (H5Dread(dataset, H5T_NATIVE_DOUBLE, memory_space, space, H5P_DEFAULT, target) < 0) exit(1);
        H5Sclose(space);
        sink += target[0];
    };
    hid_t held = H5Dopen2(raw_file, "/d", H5P_DEFAULT);
    Loop c_held = measure(runs, statements, [&] {
        for (long k = 0; k < statements; k++) read_ten(held, k % places);
    });
    H5Dclose(held);
    Loop c_opened = measure(runs, statements, [&] {
        for (long k = 0; k < statements; k++) {
            hid_t dataset = H5Dopen2(raw_file, "/d", H5P_DEFAULT);
            read_ten(dataset, k % places);
            H5Dclose(dataset);
        }
    });
    char script[64] = "SELECT FROM d(";
    const char *tail = ":1:10:1) INTO MEMORY 0";
    Both moving = measure_both(runs, statements, [&] {
        for (long k = 0; k < statements; k++) {
            strcpy(put_number(script + 14, k % places), tail);
            check(ormak_execute(script));
        }
    });
    const double due = ((statements - 1) % places + 9) * 0.5;
    if (target[9] != due) {
        fprintf(stderr, "SELECT delivered %g where %g was due\n", target[9], due);
        exit(1);
    }
    Both repeated = measure_both(runs, statements, [&] {
        for (long k = 0; k < statements; k++) check(ormak_execute("SELECT FROM d(7:1:10:1) INTO MEMORY 0"));
    });
    line("C, dataset held open", statements, c_held, nullptr, 0);
    line("C, dataset opened and closed per read", statements, c_opened, "of held open", c_held.seconds);
    lines("SELECT d(i:1:10:1) INTO MEMORY 0, i moving", statements, moving, "of held open", " (target <= 2.5)",
          c_held.seconds);
    lines("SELECT d(7:1:10:1) INTO MEMORY 0, same text", statements, repeated, "of held open", "", c_held.seconds);
    ormak_variable_unregister(target);
    H5Sclose(memory_space);
    H5Fclose(raw_file);
    check(ormak_execute("CLOSE ALL FILE"));
    if (sink == 0.125) printf("\n"); /* keeps the C reads from being optimised away */
}

/* The child of one INSERT size: prints "script bytes, seconds, peak bytes, C seconds". */
int insert_child(long count, int runs) {
    std::string list;
    list.reserve((size_t)count * 12);
    char value[32];
    for (long i = 0; i < count; i++) {
        snprintf(value, sizeof value, i ? ",%.4f" : "%.4f", i * 0.37 - 1000.0);
        list += value;
    }
    std::string insert = "INSERT INTO d VALUES(" + list + ")";
    check(ormak_execute(("CREATE TRUNCATE FILE ormak.h5; USE FILE ormak.h5; CREATE DATASET d AS DOUBLE(" +
                         std::to_string(count) + ")")
                            .c_str()));
    hid_t raw_file = H5Fcreate("raw.h5", H5F_ACC_TRUNC, H5P_DEFAULT, H5P_DEFAULT);
    hsize_t dimension = (hsize_t)count;
    hid_t space = H5Screate_simple(1, &dimension, nullptr);
    hid_t dataset = H5Dcreate2(raw_file, "/d", H5T_NATIVE_DOUBLE, space, H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT);
    H5Sclose(space);

    // The first statement alone counts for the peak: nothing of an earlier one is in the heap.
    long before = status_kilobytes("VmRSS");
    bool exact = reset_peak();
    std::vector<double> times;
    times.push_back(seconds([&] { check(ormak_execute(insert.c_str())); }));
    long peak = status_kilobytes("VmHWM") - before;
    for (int run = 1; run < runs; run++) times.push_back(seconds([&] { check(ormak_execute(insert.c_str())); }));

    std::vector<double> c_times;
    for (int run = 0; run < runs; run++) {
        c_times.push_back(seconds([&] {
            std::vector<double> parsed((size_t)count);
            char *position = &list[0];
            for (long i = 0; i < count; i++) {
                parsed[i] = strtod(position, &position);
                position++;
            }
            if (H5Dwrite(dataset, H5T_NATIVE_DOUBLE, H5S_ALL, H5S_ALL, H5P_DEFAULT, parsed.data()) < 0) exit(1);
        }));
    }
    double check_value = 0;
    std::string last = "SELECT FROM d(" + std::to_string(count - 1) + ":1:1:1) INTO MEMORY 0";
    check(ormak_variable_register(&check_value) == 0 ? 0 : -1);
    check(ormak_execute(last.c_str()));
    ormak_variable_unregister(&check_value);
    if (fabs(check_value - ((count - 1) * 0.37 - 1000.0)) > 1e-3) {
        fprintf(stderr, "INSERT stored %g as the last value\n", check_value);
        return 1;
    }
    H5Dclose(dataset);
    H5Fclose(raw_file);
    check(ormak_execute("CLOSE ALL FILE"));
    remove("ormak.h5");
    remove("raw.h5");
    printf("%zu %.9f %ld %.9f %d\n", insert.size(), median(times), peak * 1024, median(c_times), exact ? 1 : 0);
    return 0;
}

/* Runs this program again as the child of one INSERT size and reads its line. */
bool insert_in_child(long count, int runs, double result[5]) {
    char self[4096];
    ssize_t length = readlink("/proc/self/exe", self, sizeof self - 1);
    if (length <= 0) return false;
    self[length] = '\0';
    std::string command = std::string("'") + self + "' --insert " + std::to_string(count) + " " + std::to_string(runs);
    FILE *child = popen(command.c_str(), "r");
    if (!child) return false;
    int got = fscanf(child, "%lf %lf %lf %lf %lf", &result[0], &result[1], &result[2], &result[3], &result[4]);
    return pclose(child) == 0 && got == 5;
}

void insert_growth(int runs) {
    printf("INSERT INTO d VALUES(...) of literal doubles, each size in a fresh process, median of %d runs\n", runs);
    double per_value[3] = {0, 0, 0};
    const long sizes[3] = {10000, 100000, 1000000};
    double result[5];
    for (int s = 0; s < 3; s++) {
        if (!insert_in_child(sizes[s], runs, result)) {
            fprintf(stderr, "the INSERT child of %ld values failed\n", sizes[s]);
            exit(1);
        }
        per_value[s] = result[1] / sizes[s];
        printf("  %8ld values: script %9.0f bytes  %7.3f us/value  peak %8.1f bytes/value = %5.1fx the script%s"
               "   C strtod + H5Dwrite %6.3f us/value, ormak %.2fx of it\n",
               sizes[s], result[0], per_value[s] * 1e6, result[2] / sizes[s], result[2] / result[0],
               result[4] ? "" : " (peak not reset: upper bound)", result[3] / sizes[s] * 1e6, result[1] / result[3]);
    }
    printf("  time per value, 100 thousand / 10 thousand %.2f, 1 million / 10 thousand %.2f (target within 0.8 to "
           "1.2); 1 million within 10x of C, peak below 40x the script\n",
           per_value[1] / per_value[0], per_value[2] / per_value[0]);
}

void select_growth(int runs) {
    const long largest = 1000000;
    std::vector<double> values(largest);
    for (long i = 0; i < largest; i++) values[i] = i * 0.25;
    check(ormak_variable_register(values.data()) == 0 ? 0 : -1);
    check(ormak_execute(("CREATE TRUNCATE FILE growth.h5; USE FILE growth.h5; CREATE DATASET g AS DOUBLE(" +
                         std::to_string(largest) + ") FROM MEMORY 0")
                            .c_str()));
    ormak_variable_unregister(values.data());
    printf("SELECT FROM g(0:1:n:1) INTO CURSOR, median of %d runs\n", runs);
    double first = 0;
    for (long count : {10000L, 100000L, 1000000L}) {
        std::string select = "SELECT FROM g(0:1:" + std::to_string(count) + ":1) INTO CURSOR";
        Loop loop = measure(runs, count, [&] { check(ormak_execute(select.c_str())); });
        if (first == 0) first = loop.seconds / count;
        printf("  %8ld values: %7.3f us/value (%.2f of the smallest)\n", count, loop.seconds / count * 1e6,
               loop.seconds / count / first);
    }
    check(ormak_execute(nullptr));
    check(ormak_execute("CLOSE ALL FILE"));
    remove("growth.h5");
}

} // namespace

int main(int argc, char **argv) {
    if (argc == 4 && strcmp(argv[1], "--insert") == 0) return insert_child(atol(argv[2]), atoi(argv[3]));
    const int runs = argc > 1 ? atoi(argv[1]) : 5;
    const long statements = argc > 2 ? atol(argv[2]) : 100000;

    ScratchDirectory scratch;
    statement_costs(runs, statements);
    remove("ormak.h5");
    insert_growth(runs);
    select_growth(runs);
    return 0;
}
