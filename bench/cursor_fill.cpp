// Fills the cursor with 10 M 4-byte values through _ormak_cursor_add, beside a plain
// std::vector<int> push_back of the same values, and prints both rates and their ratio.
#include <stdio.h>

#include <chrono>
#include <vector>

#include "Ormak.h"

namespace {

const int count = 10000000;

double seconds_since(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

} // namespace

/* Seconds to fill the cursor in use with `count` values. */
double fill_cursor() {
    ormak_cursor_clear(nullptr);
    _ormak_cursor_set_data_type(ORMAK_INT);
    auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < count; i++) _ormak_cursor_add(&i, sizeof i);
    return seconds_since(start);
}

int main() {
    // The first fill takes fresh memory from the system; later fills reuse what a clear gave back.
    double first_seconds = fill_cursor();
    double cursor_seconds = fill_cursor();
    if (ormak_cursor_get_count(nullptr) != count) return 1;

    auto start = std::chrono::steady_clock::now();
    std::vector<int> values;
    for (int i = 0; i < count; i++) values.push_back(i);
    double vector_seconds = seconds_since(start);
    volatile int keep = values[count / 2];
    (void)keep;

    start = std::chrono::steady_clock::now();
    ormak_cursor_clear(nullptr);
    double clear_seconds = seconds_since(start);

    double cursor_rate = count / cursor_seconds, vector_rate = count / vector_seconds;
    printf("first fill:    %.1f M values/s (%d values in %.3f s, fresh memory)\n", count / first_seconds / 1e6, count,
           first_seconds);
    printf("cursor fill:   %.1f M values/s (%d values in %.3f s)\n", cursor_rate / 1e6, count, cursor_seconds);
    printf("vector fill:   %.1f M values/s (baseline)\n", vector_rate / 1e6);
    printf("cursor/vector: %.3f\n", cursor_rate / vector_rate);
    printf("cursor clear:  %.3f s\n", clear_seconds);
    printf("target of 20 M values/s: %s\n", cursor_rate >= 20e6 ? "met" : "missed");
    return 0;
}
