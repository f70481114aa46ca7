// The INTO clause decoded, and results moved into the cursor, text and binary files and
// memory variables; what the files hold reads back through the input road.
#include <float.h>
#include <limits.h>
#include <math.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>
#include <unistd.h>

#include <random>
#include <string>
#include <vector>

#include "FakeJava.h"
#include "OrmakPrivateStructures.h"
#include "OrmakTest.h"
#include "ParseRule.h"
#include "transfer/InputRedirecting.h"
#include "transfer/OutputRedirecting.h"

namespace {

/* A decoded clause with its file name copied out of the tree. */
struct Decoded {
    int status = 99;
    ormak::OutputClause clause;
    std::string file_name;
};

Decoded decode(const std::string &text) {
    Decoded d;
    with_rule_tree(text, ORMAK_RULE(output_redirecting_statement), [&](pANTLR3_BASE_TREE tree, bool whole) {
        ASSERT_TRUE(tree && whole) << text;
        d.status = d.clause.decode(tree);
        if (d.clause.file_name) d.file_name = d.clause.file_name;
        // The texts die with the tree.
        d.clause.file_name = d.clause.file_separator = d.clause.file_subseparator = nullptr;
    });
    return d;
}

/* Where a test sends its results: the parameters of _ormak_output_redirecting after `data`
   and its shape. */
struct Into {
    int output_type = 4;
    int truncate = 0;
    std::string file = "out.txt";
    int eof = -1;
    const char *separator = nullptr;
    const char *subseparator = nullptr;
    int split = -1;
    int number = -1;
    int size = -1;
    int language = 1;
};

/* Results into memory variable `number`. */
Into memory(int number, int size = -1, int language = 1) {
    Into into;
    into.output_type = 16;
    into.number = number;
    into.size = size;
    into.language = language;
    return into;
}

ormak::OutputClause memory_clause(int number) {
    ormak::OutputClause clause;
    clause.output_type = 16;
    clause.variable_number = number;
    return clause;
}

int send(const void *data, int data_type, int count, int size, const Into &into, int allocated = 0) {
    return _ormak_output_redirecting(data, data_type, count, size, allocated, into.output_type, into.truncate,
                                     into.file.c_str(), into.eof, into.separator, into.subseparator,
                                     into.split >= 0 ? 0 : -1, into.split, into.number, into.size, into.language);
}

ORMAK_VARIABLE_LENGTH record(const void *members, uint64_t count) { return {count, (void *)members}; }

/* printf's text of one value, the reference for the writer's. */
template <typename... T>
std::string printed(const char *format, T... values) {
    char text[512];
    snprintf(text, sizeof text, format, values...);
    return text;
}

/* The values as printf prints each, `split` to a line and `separator` between them. */
template <typename T>
std::string joined(const std::vector<T> &values, const char *format, size_t split, const char *separator) {
    std::string text;
    for (size_t i = 0; i < values.size(); i++)
        text += printed(format, values[i]) + ((i + 1) % split == 0 || i + 1 == values.size() ? "\n" : separator);
    return text;
}

/* Where two long texts first differ, with the lines around it; empty when they are equal. */
std::string difference(const std::string &written, const std::string &expected) {
    if (written == expected) return "";
    size_t at = 0;
    while (at < written.size() && at < expected.size() && written[at] == expected[at]) at++;
    const size_t from = at < 40 ? 0 : at - 40;
    return "at byte " + std::to_string(at) + ": written \"" + written.substr(from, 80) + "\", expected \"" +
           expected.substr(from, 80) + "\"";
}

template <typename T>
std::string bytes_of(const std::vector<T> &values) {
    return std::string((const char *)values.data(), values.size() * sizeof(T));
}

class Output : public OrmakTest {
protected:
    void SetUp() override {
        OrmakTest::SetUp();
        ormak_cursor_use_default();
        ormak_cursor_clear(nullptr);
    }
    void TearDown() override {
        ormak_cursor_clear(nullptr);
        OrmakTest::TearDown();
    }

    /* The text file that `count` elements make, with the options of `into`. */
    static std::string as_text(const void *data, int data_type, int count, int size, Into into = Into()) {
        into.output_type = 4;
        EXPECT_EQ(send(data, data_type, count, size, into), 0) << message();
        return read_text(into.file);
    }
    static std::string as_binary(const void *data, int data_type, int count, int size) {
        Into into;
        into.output_type = 8;
        into.file = "out.bin";
        EXPECT_EQ(send(data, data_type, count, size, into), 0) << message();
        return read_text(into.file);
    }

    /* Reads what the writer left in `file` back through the input road. */
    static void read_back(ormak::InputBuffer &buffer, int input_type, const std::string &file, int data_type,
                          int count, int size, const Into &into = Into()) {
        ormak::InputClause clause;
        clause.input_type = input_type;
        clause.file_name = (char *)file.c_str();
        clause.file_eof = into.eof;
        clause.file_separator = (char *)into.separator;
        clause.file_subseparator = (char *)into.subseparator;
        const hsize_t dimensions[] = {(hsize_t)count};
        ASSERT_EQ(buffer.fill(clause, data_type, count, size, -1, dimensions, 1, nullptr, 1), 0) << message();
    }
};

} // namespace

TEST_F(Output, BadClausesAreRefusedWithTheirMessages) {
    Decoded d = decode("INTO TEXT FILE out.txt SPLIT -1");
    EXPECT_EQ(d.status, ORMAK_ERROR_INVALID_VALUE);
    EXPECT_EQ(message(), "Error when redirecting results into file \"out.txt\" as split is not equal to or greater than 0");

    d = decode("INTO MEMORY 8");
    EXPECT_EQ(d.status, ORMAK_ERROR_INVALID_VALUE);
    EXPECT_EQ(message(), "Error when redirecting results into memory number \"8\" as it is not between 0 and 7");
    d = decode("INTO MEMORY 2 SIZE -4");
    EXPECT_EQ(d.status, ORMAK_ERROR_NOT_REGISTERED);
    EXPECT_EQ(message(), "Error when redirecting results into memory number \"2\" as it is not registered");

    int block[2];
    ASSERT_EQ(ormak_variable_register(block), 0);
    d = decode("INTO MEMORY 0 SIZE -4");
    EXPECT_EQ(d.status, ORMAK_ERROR_INVALID_VALUE);
    EXPECT_EQ(message(), "Error when redirecting results into memory number \"0\" as size is not equal to or greater "
                         "than 0");
}

// Split, DOS line ends and separators are read back from SELECT's files; here, the edges.
TEST_F(Output, SeparatorsMayBeEmptyOrLongButAreCut) {
    const int ints[] = {1, 2, 3};
    Into into;
    into.separator = "";
    EXPECT_EQ(as_text(ints, ORMAK_INT, 3, 4, into), "123\n");
    // A separator keeps at most 1023 characters.
    const std::string long_separator(1500, '-');
    into.separator = long_separator.c_str();
    EXPECT_EQ(as_text(ints, ORMAK_INT, 2, 4, into), "1" + std::string(1023, '-') + "2\n");
}

TEST_F(Output, TextFormsOfEachKindOfType) {
    // One-byte numbers print as numbers of their sign, never as characters.
    const int8_t tiny[] = {-128, -5, 127};
    EXPECT_EQ(as_text(tiny, ORMAK_TINYINT, 3, 1), "-128,-5,127\n");

    // CHAR: all bytes of the element, its zeros included.
    const char chars[] = {'a', 'b', 0, 0, 'w', 'x', 'y', 'z'};
    EXPECT_EQ(as_text(chars, ORMAK_CHAR, 2, 4), std::string("ab\0\0,wxyz\n", 10));
    // VARCHAR: a null string is the terminator alone.
    const char *strings[] = {"a", nullptr, "b", ""};
    EXPECT_EQ(as_text(strings, ORMAK_VARCHAR, 4, 1), "a,,b,\n");
    // OPAQUE: the bytes as unsigned numbers, the subseparator between them.
    const unsigned char opaque[] = {1, 2, 255, 0, 10, 20};
    Into into;
    into.subseparator = "::";
    into.separator = "|";
    EXPECT_EQ(as_text(opaque, ORMAK_OPAQUE, 2, 3, into), "1::2::255|0::10::20\n");

    // Variable-length values: members by their fixed type, an empty or absent one is the
    // terminator alone.
    const int32_t members[] = {1, 2, 3};
    const ORMAK_VARIABLE_LENGTH vints[] = {record(members, 2), record(members, 0), record(members + 2, 1)};
    EXPECT_EQ(as_text(vints, ORMAK_VARINT, 3, 4), "1 2,,3\n");
    const ORMAK_VARIABLE_LENGTH absent[] = {record(nullptr, 5), record(members, 2)};
    EXPECT_EQ(as_text(absent, ORMAK_VARINT, 2, 4, into), "|1::2\n");
}

TEST_F(Output, NumbersMatchPrintfByteForByte) {
    std::mt19937_64 random(20240607);
    std::vector<double> doubles;
    // Any bit pattern: every magnitude, subnormals, infinities and NaNs of both signs.
    for (int i = 0; i < 40000; i++) {
        uint64_t bits = random();
        double value;
        memcpy(&value, &bits, sizeof value);
        doubles.push_back(value);
    }
    // Ordinary magnitudes, where all six decimals matter.
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    for (int i = 0; i < 40000; i++) doubles.push_back(unit(random) * pow(10.0, (double)(i % 24) - 10));
    // Exact ties at the seventh decimal round to even, as printf does.
    for (int j = 1; j < 256; j += 2) {
        doubles.push_back(j / 128.0);
        doubles.push_back(-(j / 128.0));
        doubles.push_back(123456.0 + j / 128.0);
    }
    for (double value : std::initializer_list<double>{0.0, -0.0, -1e-9, 1e-9, 5e-7, -5e-7, 4.9999999e-7, 0.5, 1.0, 9.9999995, 999999.9999995,
                         1e15 + 0.3, 9007199254740993.0, 1e22, 1e300, DBL_MAX, -DBL_MAX, DBL_MIN, DBL_TRUE_MIN,
                         -DBL_TRUE_MIN, INFINITY, -INFINITY, NAN, -NAN})
        doubles.push_back(value);

    // Several split and separator settings over the same values.
    Into into;
    into.separator = ";";
    into.split = 7;
    EXPECT_EQ(difference(as_text(doubles.data(), ORMAK_DOUBLE, (int)doubles.size(), 8, into),
                         joined(doubles, "%f", 7, ";")),
              "");

    std::vector<long long> bigs = {INT64_MIN, INT64_MAX, 0, -1};
    for (int i = 0; i < 20000; i++) bigs.push_back((long long)(random() >> (i % 64)) * (i % 2 ? -1 : 1));
    EXPECT_EQ(difference(as_text(bigs.data(), ORMAK_BIGINT, (int)bigs.size(), 8), joined(bigs, "%lld", SIZE_MAX, ",")),
              "");
}

TEST_F(Output, BinaryFilesHoldTheNativeLayout) {
    // A count of 4 bytes and the members; an empty or absent value is a count of 0.
    const int32_t members[] = {1, 2};
    const ORMAK_VARIABLE_LENGTH vints[] = {record(members, 2), record(members, 0), record(nullptr, 3)};
    EXPECT_EQ(as_binary(vints, ORMAK_VARINT, 3, 4), bytes_of(std::vector<int32_t>{2, 1, 2, 0, 0}));
    // Strings with their zero; a null string is one zero byte.
    const char *strings[] = {"ab", nullptr, "", "c"};
    EXPECT_EQ(as_binary(strings, ORMAK_VARCHAR, 4, 1), std::string("ab\0\0\0c\0", 7));

    // A run larger than the writer's block goes out whole, between small ones.
    const std::string large(3 << 20, 'q');
    const char *mixed[] = {"x", large.c_str(), "y"};
    EXPECT_EQ(as_binary(mixed, ORMAK_VARCHAR, 3, 1), std::string("x\0", 2) + large + std::string("\0y\0", 3));
}

// Appending and truncating are read back through SELECT; what no results do is told here.
TEST_F(Output, NoResultsStillMakeOrEmptyTheFile) {
    write_text("out.txt", "old\n");
    Into into;
    into.truncate = 0;
    ASSERT_EQ(send(nullptr, ORMAK_INT, 0, 4, into), 0);
    EXPECT_EQ(read_text("out.txt"), "");
    into.file = "fresh.bin";
    into.output_type = 8;
    ASSERT_EQ(send(nullptr, ORMAK_INT, 0, 4, into), 0);
    EXPECT_TRUE(exists("fresh.bin"));
}

TEST_F(Output, FileFailuresAreReportedAndLeaveTheCursor) {
    const int ints[] = {7, 8, 9};
    Into cursor;
    cursor.output_type = 2;
    ASSERT_EQ(send(ints, ORMAK_INT, 3, 4, cursor), 0);

    ASSERT_EQ(mkdir("folder", 0755), 0);
    Into into;
    into.file = "folder";
    EXPECT_EQ(send(ints, ORMAK_INT, 3, 4, into), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(message(), "Error when opening file \"folder\"");
    if (geteuid() != 0) {  // permissions do not bind the superuser
        write_text("locked.txt", "x");
        ASSERT_EQ(chmod("locked.txt", 0444), 0);
        into.file = "locked.txt";
        EXPECT_EQ(send(ints, ORMAK_INT, 1, 4, into), ORMAK_ERROR_NO_ACCESS);
    }

    // A full device: the failure shows at the write that meets it, the last block's too.
    into.output_type = 8;
    into.file = "/dev/full";
    EXPECT_EQ(send(ints, ORMAK_INT, 3, 4, into), ORMAK_ERROR_NOT_ENOUGH_SPACE);
    EXPECT_EQ(message(), "Error when writing results into file \"/dev/full\" as there is not enough space available");
    into.output_type = 4;
    std::vector<double> many(500000, 1.25);
    EXPECT_EQ(send(many.data(), ORMAK_DOUBLE, (int)many.size(), 8, into), ORMAK_ERROR_NOT_ENOUGH_SPACE);

    EXPECT_EQ(ormak_cursor_get_count(nullptr), 3);
}

TEST_F(Output, FilesReadBackThroughTheInputRoad) {
    ormak::InputBuffer buffer;
    auto both = [&](const void *data, int data_type, int count, int size, const Into &into, auto check) {
        Into text = into;
        as_text(data, data_type, count, size, text);
        read_back(buffer, 4, "out.txt", data_type, count, size, text);
        check("text");
        as_binary(data, data_type, count, size);
        read_back(buffer, 8, "out.bin", data_type, count, size);
        check("binary");
    };
    auto fixed = [&](const void *data, int data_type, int count, int size, const Into &into = Into()) {
        both(data, data_type, count, size, into, [&](const char *road) {
            EXPECT_EQ(memcmp(buffer.data(), data, (size_t)count * size), 0) << road << " " << data_type;
        });
    };
    Into dos;
    dos.eof = 1;
    dos.split = 2;
    dos.separator = "; ";
    dos.subseparator = "|";

    const int8_t tiny[] = {-128, -1, 0, 127};
    fixed(tiny, ORMAK_TINYINT, 4, 1);
    // Six decimals carry these exactly.
    const double doubles[] = {0.5, -123456.015625, 1e15};
    fixed(doubles, ORMAK_DOUBLE, 3, 8, dos);
    const char chars[] = {'a', 'b', 0, 'x', 'y', 'z'};
    fixed(chars, ORMAK_CHAR, 2, 3, dos);

    // A null string comes back empty.
    const char *strings[] = {"alpha", nullptr, "b c"};
    both(strings, ORMAK_VARCHAR, 3, 1, dos, [&](const char *road) {
        const char *const *back = (const char *const *)buffer.data();
        EXPECT_STREQ(back[1], "") << road;
        EXPECT_STREQ(back[2], "b c") << road;
    });

    // Variable-length values, with an empty and an absent value among them.
    const std::vector<double> members = {-0.75, 1e10, 3.0};
    const ORMAK_VARIABLE_LENGTH records[] = {record(members.data(), 3), record(members.data(), 0), record(nullptr, 0)};
    both(records, ORMAK_VARDOUBLE, 3, 8, dos, [&](const char *road) {
        const ORMAK_VARIABLE_LENGTH *back = (const ORMAK_VARIABLE_LENGTH *)buffer.data();
        ASSERT_EQ(back[0].count, 3u) << road;
        EXPECT_EQ(memcmp(back[0].address, members.data(), 24), 0) << road;
        EXPECT_EQ(back[1].count, 0u) << road;
        EXPECT_EQ(back[2].count, 0u) << road;
    });
}

// The shapes of every type in the cursor come back through SELECT; here, what the writer
// itself decides.
TEST_F(Output, TheCursorTakesTheShapesOfCursors) {
    Into cursor;
    cursor.output_type = 2;
    // A variable-length value without members is null, whatever its count says.
    const int16_t members[] = {10, 20};
    const ORMAK_VARIABLE_LENGTH records[] = {record(members, 2), record(members, 0), record(nullptr, 2)};
    ASSERT_EQ(send(records, ORMAK_VARSMALLINT, 3, 2, cursor), 0);
    ormak_cursor_next(nullptr);
    EXPECT_EQ(ormak_subcursor_get_count(nullptr), 2);
    for (int i = 0; i < 2; i++) {
        ormak_cursor_next(nullptr);
        EXPECT_EQ(ormak_cursor_get(nullptr), nullptr);
        EXPECT_EQ(ormak_subcursor_get_count(nullptr), 0);
    }

    // The results belong to the executor still: the cursor holds copies.
    int changing[] = {1};
    ASSERT_EQ(send(changing, ORMAK_INT, 1, 4, cursor), 0);
    changing[0] = 2;
    ormak_cursor_first(nullptr);
    EXPECT_EQ(*ormak_cursor_get_int(nullptr), 1);
}

TEST_F(Output, MemoryTakesWhatFitsAndTellsIt) {
    int block[8] = {};
    ASSERT_EQ(ormak_variable_register(block), 0);
    ormak::OutputClause clause = memory_clause(0);

    // Results that fit land in the block: no buffer, no copy.
    ormak::ResultBuffer results;
    ASSERT_EQ(results.prepare(clause, ORMAK_INT, 6, 4, 1), 0);
    EXPECT_EQ(results.data(), (void *)block);
    EXPECT_EQ(results.allocated(), -1);
    for (int i = 0; i < 6; i++) ((int *)results.data())[i] = 10 + i;
    ASSERT_EQ(clause.write(results, 1), 0);
    EXPECT_EQ(block[5], 15);

    // A size below the results: a buffer of ours, and the first bytes arrive, with no message.
    memset(block, 0x11, sizeof block);
    error_message[0] = '\0';
    clause.variable_size = 10;
    ASSERT_EQ(results.prepare(clause, ORMAK_INT, 6, 4, 1), 0);
    ASSERT_NE(results.data(), (void *)block);
    EXPECT_EQ(results.allocated(), 0);
    for (int i = 0; i < 6; i++) ((int *)results.data())[i] = -1 - i;
    ASSERT_EQ(clause.write(results, 1), 0);
    EXPECT_EQ(block[0], -1);
    EXPECT_EQ((uint32_t)block[2], 0x1111FFFDu);
    EXPECT_EQ((uint32_t)block[3], 0x11111111u);
    EXPECT_EQ(message(), "");
    // The record tells the capacity: 10 bytes hold two ints.
    EXPECT_EQ(ormak_variable_get_count(block), 2);
    EXPECT_EQ(ormak_variable_get_size(block), 10);

    // Size 0: nothing arrives and the record says so.
    Into into = memory(0, 0);
    const int ints[] = {77, 78};
    ASSERT_EQ(send(ints, ORMAK_INT, 2, 4, into), 0);
    EXPECT_EQ(block[0], -1);
    EXPECT_EQ(ormak_variable_get_count(block), 0);
    // Without a size a result built elsewhere is copied whole.
    into.size = -1;
    ASSERT_EQ(send(ints + 1, ORMAK_INT, 1, 4, into), 0);
    EXPECT_EQ(block[0], 78);
    EXPECT_EQ(ormak_variable_get_count(block), 1);
}

TEST_F(Output, MemoryTakesOverTheStringsItReceives) {
    const char *texts[4] = {};
    ASSERT_EQ(ormak_variable_register(texts), 0);
    ormak::OutputClause clause = memory_clause(0);
    clause.variable_size = 2;
    // Three strings for a size of two: the first two are the caller's now, the third goes
    // with the buffer.
    {
        ormak::ResultBuffer results;
        ASSERT_EQ(results.prepare(clause, ORMAK_VARCHAR, 3, 1, 1), 0);
        ASSERT_NE(results.data(), (void *)texts);
        char **strings = (char **)results.data();
        strings[0] = strdup("one");
        strings[1] = strdup("two");
        strings[2] = strdup("three");
        results.own_elements();
        ASSERT_EQ(clause.write(results, 1), 0);
    }
    EXPECT_STREQ(texts[0], "one");
    EXPECT_STREQ(texts[1], "two");
    EXPECT_EQ(texts[2], nullptr);
    EXPECT_EQ(ormak_variable_get_count(texts), 2);
    free((void *)texts[0]);
    free((void *)texts[1]);

    // Into a file, the members go with the buffer.
    Decoded d = decode("INTO TEXT FILE out.txt");
    d.clause.file_name = (char *)d.file_name.c_str();
    ormak::ResultBuffer results;
    ASSERT_EQ(results.prepare(d.clause, ORMAK_VARINT, 2, 4, 1), 0);
    ORMAK_VARIABLE_LENGTH *records = (ORMAK_VARIABLE_LENGTH *)results.data();
    records[0] = record(malloc(8), 2);
    records[1] = record(malloc(4), 1);
    memcpy(records[0].address, "\1\0\0\0\2\0\0\0", 8);
    memcpy(records[1].address, "\3\0\0\0", 4);
    results.own_elements();
    ASSERT_EQ(d.clause.write(results, 1), 0);
    EXPECT_EQ(read_text("out.txt"), "1 2,3\n");
}

TEST_F(Output, TransientVariablesAreMarkedUsed) {
    double block[2] = {};
    ASSERT_EQ(ormak_variable_transient_register(block), 0);
    Into into = memory(0);
    const double values[] = {1.5, 2.5};
    ASSERT_EQ(send(values, ORMAK_DOUBLE, 2, 8, into), 0);
    EXPECT_EQ(block[1], 2.5);
    EXPECT_EQ(variable_list[0].used, 0);
    // Only the mark: the record is left as it was.
    EXPECT_EQ(ormak_variable_get_data_type(block), -1);
    EXPECT_EQ(ormak_variable_get_count(block), 0);
    // The script that wrote it lets it go at its end.
    ASSERT_EQ(run("SET FLUSH DISABLE"), 0);
    EXPECT_EQ(ormak_variable_get_number(block), ORMAK_ERROR_NOT_REGISTERED);
}

TEST_F(Output, WideCellsTakeNarrowElements) {
    Into into = memory(0, -1, 64);

    // In place: the bytes at the start of the block spread into 4-byte cells, unsigned.
    uint32_t cells[6];
    memset(cells, 0xAB, sizeof cells);
    ASSERT_EQ(ormak_variable_register(cells), 0);
    const int8_t tiny[] = {-1, 2, 3};
    memcpy(cells, tiny, 3);
    ASSERT_EQ(send(cells, ORMAK_TINYINT, 3, 1, into, -1), 0);
    EXPECT_EQ(cells[0], 0xFFu);
    EXPECT_EQ(cells[1], 2u);
    EXPECT_EQ(cells[2], 3u);
    EXPECT_EQ(cells[3], 0xABABABABu);

    // A size that ends inside an element: its bytes in a cell of their own.
    memset(cells, 0xAB, sizeof cells);
    const int16_t small[] = {-2, 0x1234, 0x5678};
    into.size = 5;
    ASSERT_EQ(send(small, ORMAK_SMALLINT, 3, 2, into), 0);
    EXPECT_EQ(cells[0], 0xFFFEu);
    EXPECT_EQ(cells[1], 0x1234u);
    EXPECT_EQ(cells[2], 0x78u);
    EXPECT_EQ(cells[3], 0xABABABABu);

    // Floats become doubles, in place too.
    into.size = -1;
    double wide[4];
    ASSERT_EQ(ormak_variable_register(wide), 1);
    into.number = 1;
    const float floats[] = {1.5f, -0.1f, 3.0f};
    memcpy(wide, floats, sizeof floats);
    ASSERT_EQ(send(wide, ORMAK_FLOAT, 3, 4, into, -1), 0);
    EXPECT_EQ(wide[0], 1.5);
    EXPECT_EQ(wide[1], (double)-0.1f);
    EXPECT_EQ(wide[2], 3.0);
}

TEST_F(Output, JavaCopiesOutOfTheLibrarysBuffer) {
    fake_java::Environment java;
    int scratch = 0;
    ASSERT_EQ(_ormak_variable_register(5, (uintptr_t)&scratch, -1), 0);
    std::vector<int> received;
    fake_java::fake.method = [&](int type, int number, int size) {
        EXPECT_EQ(type, 1);
        received.clear();
        for (int position = 0; position < size; position += 4)
            received.push_back(_ormak_variable_get_int(number, position));
        return size;
    };
    ormak::OutputClause clause = memory_clause(5);
    ormak::ResultBuffer results;
    // Never the Java variable itself: always a buffer of the library.
    ASSERT_EQ(results.prepare(clause, ORMAK_INT, 3, 4, 4), 0);
    ASSERT_NE(results.data(), (void *)&scratch);
    for (int i = 0; i < 3; i++) ((int *)results.data())[i] = 40 + i;
    ASSERT_EQ(clause.write(results, 4), 0);
    EXPECT_EQ(fake_java::fake.size, 12);
    EXPECT_EQ(received, (std::vector<int>{40, 41, 42}));
    EXPECT_EQ(variable_list[5].address, (uintptr_t)results.data());
    EXPECT_EQ(_ormak_variable_get_count(5), 3);

    // A size asks for that much, but never beyond the buffer.
    clause.variable_size = 8;
    ASSERT_EQ(clause.write(results, 4), 0);
    EXPECT_EQ(received, (std::vector<int>{40, 41}));
    EXPECT_EQ(_ormak_variable_get_count(5), 2);
    clause.variable_size = 400;
    ASSERT_EQ(clause.write(results, 4), 0);
    EXPECT_EQ(fake_java::fake.size, 12);
    EXPECT_EQ(fake_java::fake.static_calls, 3);
    // No results, or a size of 0: no call at all.
    clause.variable_size = 0;
    ASSERT_EQ(clause.write(results, 4), 0);
    clause.variable_size = -1;
    ASSERT_EQ(results.prepare(clause, ORMAK_INT, 0, 4, 4), 0);
    ASSERT_EQ(clause.write(results, 4), 0);
    EXPECT_EQ(fake_java::fake.static_calls, 3);
    EXPECT_EQ(_ormak_variable_get_count(5), 0);
}
