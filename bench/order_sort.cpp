// How fast the order clause sorts: 10 M random doubles through _ormak_post_processing with
// ORDER ASCEND, with an OpenMP team of one and of two threads, against one std::sort of the
// same values on one thread; the median of several runs of each, and their ratios.
//
//   order_sort [runs] [values]
//
// Targets: within 1.3x of std::sort's time with one thread, below it with two.
#include <omp.h>
#include <stdio.h>
#include <stdlib.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <random>
#include <vector>

#include "Ormak.h"
#include "OrmakLexer.h"
#include "OrmakParser.h"

namespace {

double seconds(const std::function<void()> &work) {
    auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> times) {
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

} // namespace

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

    // The clause as the parser gives it to a statement.
    const char text[] = "ORDER ASCEND";
    pANTLR3_INPUT_STREAM input = antlr3StringStreamNew((pANTLR3_UINT8)text, ANTLR3_ENC_8BIT, sizeof text - 1,
                                                       (pANTLR3_UINT8) "order_sort");
    input->setUcaseLA(input, ANTLR3_TRUE);
    pOrmakLexer lexer = OrmakLexerNew(input);
    pANTLR3_COMMON_TOKEN_STREAM stream = antlr3CommonTokenStreamSourceNew(1025, TOKENSOURCE(lexer));
    pOrmakParser parser = OrmakParserNew(stream);
    pANTLR3_BASE_TREE clause = (pANTLR3_BASE_TREE)parser->post_processing_statement(parser).tree;

    std::vector<double> work(count);
    std::vector<double> baseline_times, one_times, two_times;
    for (int run = 0; run < runs; run++) {
        work = values;
        baseline_times.push_back(seconds([&] { std::sort(work.begin(), work.end()); }));
        for (int threads : {1, 2}) {
            omp_set_num_threads(threads);
            work = values;
            int result_count = count;
            int status = 0;
            double time = seconds([&] {
                status = _ormak_post_processing(clause, work.data(), ORMAK_DOUBLE, &result_count, sizeof(double));
            });
            if (status != 0 || result_count != count || work != expected) {
                fprintf(stderr, "the order clause gave a wrong result with %d threads (status %d)\n", threads, status);
                return 1;
            }
            (threads == 1 ? one_times : two_times).push_back(time);
        }
    }

    parser->free(parser);
    stream->free(stream);
    lexer->free(lexer);
    input->close(input);

    double baseline = median(baseline_times), one = median(one_times), two = median(two_times);
    printf("%d random doubles, median of %d runs\n", count, runs);
    printf("std::sort, 1 thread:     %.3f s\n", baseline);
    printf("ORDER ASCEND, 1 thread:  %.3f s (%.2fx std::sort; target at most 1.30x: %s)\n", one, one / baseline,
           one <= 1.3 * baseline ? "met" : "missed");
    printf("ORDER ASCEND, 2 threads: %.3f s (%.2fx std::sort; target below 1.00x: %s)\n", two, two / baseline,
           two < baseline ? "met" : "missed");
    return 0;
}
