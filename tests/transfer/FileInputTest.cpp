// Text and binary files as the source of values: the buffer they deliver, and what reaches a
// dataset through CREATE DATASET ... FROM TEXT FILE / FROM BINARY FILE.
#include <limits.h>
#include <stdint.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "OrmakPrivateStructures.h"
#include "OrmakTest.h"
#include "StoredObject.h"
#include "transfer/InputRedirecting.h"

namespace {

/* The bytes of values in native order, back to back, as a binary file holds them. */
template <typename T>
std::string bytes_of(std::initializer_list<T> values) {
    std::string out;
    for (T value : values) out.append((const char *)&value, sizeof value);
    return out;
}

class FileInput : public OrmakTest {
protected:
    /* Reads `count` elements of `data_type` from a file holding `content`. */
    static int read_file(ormak::InputBuffer &buffer, int input_type, const std::string &content, int data_type,
                         int count, int size, int eof = -1, const char *separator = nullptr,
                         const char *subseparator = nullptr) {
        const char *name = input_type == 4 ? "values.txt" : "values.bin";
        write_text(name, content);
        ormak::InputClause clause;
        clause.input_type = input_type;
        clause.file_name = (char *)name;
        clause.file_eof = eof;
        clause.file_separator = (char *)separator;
        clause.file_subseparator = (char *)subseparator;
        const hsize_t dimensions[] = {(hsize_t)count};
        return buffer.fill(clause, data_type, count, size, -1, dimensions, 1, nullptr, 1);
    }
    static int text(ormak::InputBuffer &buffer, const std::string &content, int data_type, int count, int size,
                    int eof = -1, const char *separator = nullptr, const char *subseparator = nullptr) {
        return read_file(buffer, 4, content, data_type, count, size, eof, separator, subseparator);
    }
    static int binary(ormak::InputBuffer &buffer, const std::string &content, int data_type, int count, int size) {
        return read_file(buffer, 8, content, data_type, count, size);
    }

    template <typename T>
    static std::vector<T> values(const ormak::InputBuffer &buffer, int count) {
        const T *first = (const T *)buffer.data();
        return std::vector<T>(first, first + count);
    }
    static std::string bytes(const ormak::InputBuffer &buffer, int count) {
        return std::string((const char *)buffer.data(), (size_t)count);
    }
    static const char *const *texts(const ormak::InputBuffer &buffer) { return (const char *const *)buffer.data(); }
    static const ORMAK_VARIABLE_LENGTH *records(const ormak::InputBuffer &buffer) {
        return (const ORMAK_VARIABLE_LENGTH *)buffer.data();
    }
    template <typename T>
    static std::vector<T> members(const ormak::InputBuffer &buffer, int index) {
        const ORMAK_VARIABLE_LENGTH &record = records(buffer)[index];
        const T *first = (const T *)record.address;
        return std::vector<T>(first, first + record.count);
    }
};

using Ints = std::vector<int>;

} // namespace

TEST_F(FileInput, TextElementsFollowOneAnotherAcrossLinesAndSeparators) {
    ormak::InputBuffer buffer;
    // Rows mean nothing: a line end divides like a separator.
    ASSERT_EQ(text(buffer, "1,2\n3,4\n", ORMAK_INT, 4, 4), 0);
    EXPECT_EQ(values<int>(buffer, 4), (Ints{1, 2, 3, 4}));
    // Missing elements are zero, surplus ones ignored, an empty token is 0.
    ASSERT_EQ(text(buffer, "1,2", ORMAK_INT, 4, 4), 0);
    EXPECT_EQ(values<int>(buffer, 4), (Ints{1, 2, 0, 0}));
    ASSERT_EQ(text(buffer, "1,,3", ORMAK_INT, 3, 4), 0);
    EXPECT_EQ(values<int>(buffer, 3), (Ints{1, 0, 3}));
    // Decimal parsing only, and a token ends at its delimiter, not at the next number: the
    // empty token before a line end does not reach the 5 of the next line.
    ASSERT_EQ(text(buffer, "0x10, 7,\n5", ORMAK_INT, 4, 4), 0);
    EXPECT_EQ(values<int>(buffer, 4), (Ints{0, 7, 0, 5}));
    // A separator of several characters, and one where the default comma is only text.
    ASSERT_EQ(text(buffer, "1::2,5::3\n", ORMAK_INT, 3, 4, 2, "::"), 0);
    EXPECT_EQ(values<int>(buffer, 3), (Ints{1, 2, 3}));
}

TEST_F(FileInput, TextNumbersKeepTheLowBytesOfTheirType) {
    ormak::InputBuffer buffer;
    ASSERT_EQ(text(buffer, "300,-1,255\n", ORMAK_TINYINT, 3, 1), 0);
    EXPECT_EQ(values<int8_t>(buffer, 3), (std::vector<int8_t>{44, -1, -1}));
    // The whole unsigned range, as the writer prints it, comes back.
    ASSERT_EQ(text(buffer, "18446744073709551615,-1\n", ORMAK_UNSIGNED_BIGINT, 2, 8), 0);
    EXPECT_EQ(values<uint64_t>(buffer, 2), (std::vector<uint64_t>{UINT64_MAX, UINT64_MAX}));
    ASSERT_EQ(text(buffer, "0.1,-2.5e-3\n", ORMAK_DOUBLE, 2, 8), 0);
    EXPECT_EQ(values<double>(buffer, 2), (std::vector<double>{0.1, -2.5e-3}));
}

TEST_F(FileInput, LineEndsAndSeparatorsAreMatchedAsGiven) {
    ormak::InputBuffer buffer;
    // A DOS file read as UNIX: the carriage return stays in the token.
    ASSERT_EQ(text(buffer, "ab\r\ncd\r\n", ORMAK_VARCHAR, 2, 1), 0);
    EXPECT_STREQ(texts(buffer)[0], "ab\r");
    EXPECT_STREQ(texts(buffer)[1], "cd\r");
    // DOS wants both bytes: a lone byte 10 divides nothing.
    ASSERT_EQ(text(buffer, "ab\ncd\n", ORMAK_VARCHAR, 2, 1, 1), 0);
    EXPECT_STREQ(texts(buffer)[0], "ab\ncd\n");
    EXPECT_EQ(texts(buffer)[1], nullptr);

    // A separator at the very end of the file is no separator; a line end there is.
    ASSERT_EQ(text(buffer, "a,b,", ORMAK_VARCHAR, 3, 1), 0);
    EXPECT_STREQ(texts(buffer)[0], "a");
    EXPECT_STREQ(texts(buffer)[1], "b,");
    EXPECT_EQ(texts(buffer)[2], nullptr);
    // An empty separator divides nothing: only line ends remain.
    ASSERT_EQ(text(buffer, "x,y\nz\n", ORMAK_VARCHAR, 2, 1, -1, ""), 0);
    EXPECT_STREQ(texts(buffer)[0], "x,y");
    EXPECT_STREQ(texts(buffer)[1], "z");
}

TEST_F(FileInput, TextCharAndOpaqueElementsTakeTheirBytes) {
    ormak::InputBuffer buffer;
    // A CHAR(4) token fills its element, cut or padded; the writer's zero bytes come back.
    ASSERT_EQ(text(buffer, std::string("ab\0\0,abcdef,\nlast", 17), ORMAK_CHAR, 4, 4), 0);
    EXPECT_EQ(bytes(buffer, 16), std::string("ab\0\0abcd\0\0\0\0last", 16));

    // Opaque bytes by number, divided by the subseparator; short elements are padded, the
    // surplus of long ones skipped.
    ASSERT_EQ(text(buffer, "1 2 9 9,3 4\n", ORMAK_OPAQUE, 2, 2), 0);
    EXPECT_EQ(bytes(buffer, 4), std::string("\1\2\3\4", 4));
    ASSERT_EQ(text(buffer, "255|256;7", ORMAK_OPAQUE, 2, 2, -1, ";", "|"), 0);
    EXPECT_EQ(bytes(buffer, 4), std::string("\xff\0\7\0", 4));
}

TEST_F(FileInput, TextVariableLengthElementsHoldTheirMembers) {
    ormak::InputBuffer buffer;
    // An empty element has no members but a place of its own; a missing one is absent.
    ASSERT_EQ(text(buffer, ",1 2,,3", ORMAK_VARINT, 5, 4), 0);
    EXPECT_EQ(records(buffer)[0].count, 0u);
    EXPECT_NE(records(buffer)[0].address, nullptr);
    EXPECT_EQ(members<int>(buffer, 1), (Ints{1, 2}));
    EXPECT_EQ(records(buffer)[2].count, 0u);
    EXPECT_EQ(members<int>(buffer, 3), (Ints{3}));
    EXPECT_EQ(records(buffer)[4].address, nullptr);

    // Members convert by the member type; surplus elements are not read.
    ASSERT_EQ(text(buffer, "1.5;2.5|300\n", ORMAK_VARDOUBLE, 1, 8, 2, "|", ";"), 0);
    EXPECT_EQ(members<double>(buffer, 0), (std::vector<double>{1.5, 2.5}));
}

TEST_F(FileInput, EmptyAndShortFilesLeaveTheRestZeroNullOrAbsent) {
    ormak::InputBuffer buffer;
    for (int input_type : {4, 8}) {
        SCOPED_TRACE(input_type);
        ASSERT_EQ(read_file(buffer, input_type, "", ORMAK_INT, 2, 4), 0);
        EXPECT_EQ(values<int>(buffer, 2), (Ints{0, 0}));
        ASSERT_EQ(read_file(buffer, input_type, "", ORMAK_VARCHAR, 2, 1), 0);
        EXPECT_EQ(texts(buffer)[0], nullptr);
        EXPECT_EQ(texts(buffer)[1], nullptr);
    }
    // A binary file that ends inside an element keeps the bytes it has.
    const std::string six = bytes_of<int>({7, 0x01020304}).substr(0, 6);
    int partial = 0;
    memcpy(&partial, six.data() + 4, 2);
    ASSERT_EQ(binary(buffer, six, ORMAK_INT, 3, 4), 0);
    EXPECT_EQ(values<int>(buffer, 3), (Ints{7, partial, 0}));
}

TEST_F(FileInput, BinaryFilesCutShortKeepWhatIsThere) {
    ormak::InputBuffer buffer;
    ASSERT_EQ(binary(buffer, bytes_of<double>({1.5, -2.5, 3.25}), ORMAK_DOUBLE, 2, 8), 0);
    EXPECT_EQ(values<double>(buffer, 2), (std::vector<double>{1.5, -2.5}));
    // The round trips of every layout are read back from what the writer makes; here, the
    // files it never makes. A count beyond the end of the file keeps only the members that
    // are there, and nothing is read past the image.
    ASSERT_EQ(binary(buffer, bytes_of<int>({1, 5, 9, 4}) + "xy", ORMAK_VARINT, 3, 4), 0);
    EXPECT_EQ(members<int>(buffer, 0), (Ints{5}));
    EXPECT_EQ(members<int>(buffer, 1), (Ints{4}));
    EXPECT_EQ(records(buffer)[2].address, nullptr);
}

TEST_F(FileInput, FilesThatCanNotBeReadAreRefused) {
    ormak::InputBuffer buffer;
    ormak::InputClause clause;
    const hsize_t dimensions[] = {2};
    clause.input_type = 8;
    clause.file_name = (char *)"missing.txt";
    EXPECT_EQ(buffer.fill(clause, ORMAK_INT, 2, 4, -1, dimensions, 1, nullptr, 1), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(message(), "Error when opening file \"missing.txt\" as it does not exist");
    EXPECT_TRUE(buffer.empty());
    // The superuser reads whatever the mode says.
    if (geteuid() != 0) {
        write_text("locked", "1,2\n");
        ASSERT_EQ(chmod("locked", 0), 0);
        clause.input_type = 4;
        clause.file_name = (char *)"locked";
        EXPECT_EQ(buffer.fill(clause, ORMAK_INT, 2, 4, -1, dimensions, 1, nullptr, 1), ORMAK_ERROR_NO_ACCESS);
        EXPECT_EQ(message(), "Error when opening file \"locked\" as it is not accessible");
    }
#ifndef __SANITIZE_ADDRESS__
    // The sanitizer ends the process on an allocation this large instead of failing it.
    EXPECT_EQ(text(buffer, "1 2,3\n", ORMAK_OPAQUE, INT_MAX, INT_MAX), ORMAK_ERROR_NOT_ENOUGH_MEMORY);
    EXPECT_EQ(message(), "Error when reading data from file \"values.txt\" as there is not enough memory available");
#endif
}

using FileStatements = OrmakTest;

// The numbers of a file reach a dataset through SELECT's round trips; here, the strings,
// which point into the file's image: it lasts until the last dataset is written.
TEST_F(FileStatements, StringsFromAFileOutliveTheirToken) {
    ASSERT_EQ(run("CREATE FILE a.h5; USE FILE a.h5"), 0) << message();
    write_text("names.txt", "alpha,,gamma\r\n");
    ASSERT_EQ(run("CREATE DATASET s, t AS VARCHAR(4) FROM TEXT FILE names.txt DOS"), 0) << message();
    for (const char *path : {"/s", "/t"})
        EXPECT_EQ(Dataset(path).strings(), (std::vector<std::string>{"alpha", "", "gamma", "(null)"})) << path;
}
