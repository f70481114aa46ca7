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
    ASSERT_EQ(text(buffer, "1,2,3\n", ORMAK_INT, 3, 4), 0) << message();
    EXPECT_EQ(values<int>(buffer, 3), (Ints{1, 2, 3}));
    // Rows mean nothing: a line end divides like a separator.
    ASSERT_EQ(text(buffer, "1,2\n3,4\n", ORMAK_INT, 4, 4), 0);
    EXPECT_EQ(values<int>(buffer, 4), (Ints{1, 2, 3, 4}));
    // Missing elements are zero, surplus ones ignored, an empty token is 0.
    ASSERT_EQ(text(buffer, "1,2", ORMAK_INT, 4, 4), 0);
    EXPECT_EQ(values<int>(buffer, 4), (Ints{1, 2, 0, 0}));
    ASSERT_EQ(text(buffer, "1,2,3,4,5", ORMAK_INT, 3, 4), 0);
    EXPECT_EQ(values<int>(buffer, 3), (Ints{1, 2, 3}));
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
    ASSERT_EQ(text(buffer, "1.500000,-2.25e3,0.1\n", ORMAK_FLOAT, 3, 4), 0);
    EXPECT_EQ(values<float>(buffer, 3), (std::vector<float>{1.5f, -2250.0f, 0.1f}));
    ASSERT_EQ(text(buffer, "0.1,-2.5e-3\n", ORMAK_DOUBLE, 2, 8), 0);
    EXPECT_EQ(values<double>(buffer, 2), (std::vector<double>{0.1, -2.5e-3}));
}

TEST_F(FileInput, LineEndsAndSeparatorsAreMatchedAsGiven) {
    ormak::InputBuffer buffer;
    // A DOS file read as UNIX: the carriage return stays in the token.
    ASSERT_EQ(text(buffer, "1\r\n2\r\n", ORMAK_INT, 2, 4), 0);
    EXPECT_EQ(values<int>(buffer, 2), (Ints{1, 2}));
    ASSERT_EQ(text(buffer, "ab\r\ncd\r\n", ORMAK_VARCHAR, 2, 1), 0);
    EXPECT_STREQ(texts(buffer)[0], "ab\r");
    EXPECT_STREQ(texts(buffer)[1], "cd\r");
    ASSERT_EQ(text(buffer, "ab\r\ncd\r\n", ORMAK_VARCHAR, 3, 1, 1), 0);
    EXPECT_STREQ(texts(buffer)[0], "ab");
    EXPECT_STREQ(texts(buffer)[1], "cd");
    EXPECT_EQ(texts(buffer)[2], nullptr);
    // DOS wants both bytes: a lone byte 10 divides nothing.
    ASSERT_EQ(text(buffer, "ab\ncd\n", ORMAK_VARCHAR, 2, 1, 1), 0);
    EXPECT_STREQ(texts(buffer)[0], "ab\ncd\n");
    EXPECT_EQ(texts(buffer)[1], nullptr);

    // A separator at the very end of the file is no separator; a line end there is.
    ASSERT_EQ(text(buffer, "a,b,", ORMAK_VARCHAR, 3, 1), 0);
    EXPECT_STREQ(texts(buffer)[0], "a");
    EXPECT_STREQ(texts(buffer)[1], "b,");
    EXPECT_EQ(texts(buffer)[2], nullptr);
    ASSERT_EQ(text(buffer, "a,,b\n", ORMAK_VARCHAR, 4, 1), 0);
    EXPECT_STREQ(texts(buffer)[0], "a");
    EXPECT_STREQ(texts(buffer)[1], "");
    EXPECT_STREQ(texts(buffer)[2], "b");
    EXPECT_EQ(texts(buffer)[3], nullptr);
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
    ASSERT_EQ(text(buffer, "xy,,z\n", ORMAK_CHAR, 4, 1), 0);
    EXPECT_EQ(bytes(buffer, 4), std::string("x\0z\0", 4));

    // Opaque bytes by number, divided by the subseparator; short elements are padded, the
    // surplus of long ones skipped.
    ASSERT_EQ(text(buffer, "1 2,3\n", ORMAK_OPAQUE, 2, 2), 0);
    EXPECT_EQ(bytes(buffer, 4), std::string("\1\2\3\0", 4));
    ASSERT_EQ(text(buffer, "1 2 9 9,3 4\n", ORMAK_OPAQUE, 2, 2), 0);
    EXPECT_EQ(bytes(buffer, 4), std::string("\1\2\3\4", 4));
    ASSERT_EQ(text(buffer, "255|256;7", ORMAK_OPAQUE, 2, 2, -1, ";", "|"), 0);
    EXPECT_EQ(bytes(buffer, 4), std::string("\xff\0\7\0", 4));
}

TEST_F(FileInput, TextVariableLengthElementsHoldTheirMembers) {
    ormak::InputBuffer buffer;
    ASSERT_EQ(text(buffer, "1 2,3\n", ORMAK_VARINT, 3, 4), 0);
    EXPECT_EQ(members<int>(buffer, 0), (Ints{1, 2}));
    EXPECT_EQ(members<int>(buffer, 1), (Ints{3}));
    EXPECT_EQ(records(buffer)[2].count, 0u);
    EXPECT_EQ(records(buffer)[2].address, nullptr);

    // An empty element has no members but a place of its own.
    ASSERT_EQ(text(buffer, ",1 2,,3", ORMAK_VARINT, 4, 4), 0);
    EXPECT_EQ(records(buffer)[0].count, 0u);
    EXPECT_NE(records(buffer)[0].address, nullptr);
    EXPECT_EQ(members<int>(buffer, 1), (Ints{1, 2}));
    EXPECT_EQ(records(buffer)[2].count, 0u);
    EXPECT_EQ(members<int>(buffer, 3), (Ints{3}));

    // Members convert by the member type; surplus elements are not read.
    ASSERT_EQ(text(buffer, "1.5;2.5|300\n", ORMAK_VARDOUBLE, 1, 8, 2, "|", ";"), 0);
    EXPECT_EQ(members<double>(buffer, 0), (std::vector<double>{1.5, 2.5}));
    ASSERT_EQ(text(buffer, "300 -1\n7", ORMAK_UNSIGNED_VARTINYINT, 2, 1), 0);
    EXPECT_EQ(members<uint8_t>(buffer, 0), (std::vector<uint8_t>{44, 255}));
    EXPECT_EQ(members<uint8_t>(buffer, 1), (std::vector<uint8_t>{7}));
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
        ASSERT_EQ(read_file(buffer, input_type, "", ORMAK_VARBIGINT, 2, 8), 0);
        EXPECT_EQ(records(buffer)[1].count, 0u);
        EXPECT_EQ(records(buffer)[1].address, nullptr);
    }
    // A binary file that ends inside an element keeps the bytes it has.
    const std::string six = bytes_of<int>({7, 0x01020304}).substr(0, 6);
    int partial = 0;
    memcpy(&partial, six.data() + 4, 2);
    ASSERT_EQ(binary(buffer, six, ORMAK_INT, 3, 4), 0);
    EXPECT_EQ(values<int>(buffer, 3), (Ints{7, partial, 0}));
}

TEST_F(FileInput, BinaryFilesHoldTheWritersLayout) {
    ormak::InputBuffer buffer;
    ASSERT_EQ(binary(buffer, bytes_of<double>({1.5, -2.5, 3.25}), ORMAK_DOUBLE, 2, 8), 0);
    EXPECT_EQ(values<double>(buffer, 2), (std::vector<double>{1.5, -2.5}));
    ASSERT_EQ(binary(buffer, "abcdefg", ORMAK_CHAR, 2, 4), 0);
    EXPECT_EQ(bytes(buffer, 8), std::string("abcdefg\0", 8));

    // Strings with their zero bytes; a null one was written as a lone zero and is empty now.
    ASSERT_EQ(binary(buffer, std::string("ab\0\0cd", 6), ORMAK_VARCHAR, 4, 1), 0);
    EXPECT_STREQ(texts(buffer)[0], "ab");
    EXPECT_STREQ(texts(buffer)[1], "");
    EXPECT_STREQ(texts(buffer)[2], "cd");
    EXPECT_EQ(texts(buffer)[3], nullptr);

    // A count, then the members: {1, 2}, {} and {3}.
    const std::string lists = bytes_of<int>({2, 1, 2, 0, 1, 3});
    ASSERT_EQ(binary(buffer, lists, ORMAK_VARINT, 4, 4), 0);
    EXPECT_EQ(members<int>(buffer, 0), (Ints{1, 2}));
    EXPECT_EQ(records(buffer)[1].count, 0u);
    EXPECT_EQ(members<int>(buffer, 2), (Ints{3}));
    EXPECT_EQ(records(buffer)[3].count, 0u);
    EXPECT_EQ(records(buffer)[3].address, nullptr);
    // A count beyond the end of the file keeps only the members that are there; a count cut
    // off by the end gives nothing, and nothing is read past the image.
    ASSERT_EQ(binary(buffer, bytes_of<int>({1, 5, 9, 4}) + "xy", ORMAK_VARINT, 3, 4), 0);
    EXPECT_EQ(members<int>(buffer, 0), (Ints{5}));
    EXPECT_EQ(members<int>(buffer, 1), (Ints{4}));
    EXPECT_EQ(records(buffer)[2].address, nullptr);
    ASSERT_EQ(binary(buffer, bytes_of<int>({3, 5}) + std::string("\1\0", 2), ORMAK_VARINT, 2, 4), 0);
    EXPECT_EQ(members<int>(buffer, 0), (Ints{5}));
    EXPECT_EQ(records(buffer)[1].count, 0u);
    EXPECT_EQ(records(buffer)[1].address, nullptr);
}

TEST_F(FileInput, FilesThatCanNotBeReadAreRefused) {
    ormak::InputBuffer buffer;
    ormak::InputClause clause;
    const hsize_t dimensions[] = {2};
    ASSERT_EQ(mkdir("folder", 0755), 0);
    for (int input_type : {4, 8}) {
        SCOPED_TRACE(input_type);
        clause.input_type = input_type;
        clause.file_name = (char *)"missing.txt";
        EXPECT_EQ(buffer.fill(clause, ORMAK_INT, 2, 4, -1, dimensions, 1, nullptr, 1), ORMAK_ERROR_NOT_FOUND);
        EXPECT_EQ(message(), "Error when opening file \"missing.txt\" as it does not exist");
        clause.file_name = (char *)"folder";
        EXPECT_EQ(buffer.fill(clause, ORMAK_VARCHAR, 2, 1, -1, dimensions, 1, nullptr, 1), ORMAK_ERROR_NOT_FOUND);
        EXPECT_EQ(message(), "Error when opening file \"folder\" as it does not exist");
        EXPECT_TRUE(buffer.empty());

        // The superuser reads whatever the mode says.
        write_text("locked", "1,2\n");
        ASSERT_EQ(chmod("locked", 0), 0);
        if (geteuid() != 0) {
            clause.file_name = (char *)"locked";
            EXPECT_EQ(buffer.fill(clause, ORMAK_INT, 2, 4, -1, dimensions, 1, nullptr, 1), ORMAK_ERROR_NO_ACCESS);
            EXPECT_EQ(message(), "Error when opening file \"locked\" as it is not accessible");
        }
        ASSERT_EQ(chmod("locked", 0644), 0);
    }
#ifndef __SANITIZE_ADDRESS__
    // The sanitizer ends the process on an allocation this large instead of failing it.
    for (int input_type : {4, 8}) {
        SCOPED_TRACE(input_type);
        EXPECT_EQ(read_file(buffer, input_type, "1 2,3\n", ORMAK_OPAQUE, INT_MAX, INT_MAX),
                  ORMAK_ERROR_NOT_ENOUGH_MEMORY);
        EXPECT_EQ(message(), std::string("Error when reading data from file \"") +
                                 (input_type == 4 ? "values.txt" : "values.bin") +
                                 "\" as there is not enough memory available");
    }
#endif
}

using FileStatements = OrmakTest;

TEST_F(FileStatements, CreateDatasetTakesItsValuesFromFiles) {
    ASSERT_EQ(run("CREATE FILE a.h5; USE FILE a.h5"), 0) << message();
    write_text("values.txt", "1;2\n3;4\n");
    write_text("doubles.bin", bytes_of<double>({0.5, -1.25}));
    ASSERT_EQ(run("CREATE DATASET d AS INT(2, 2) FROM TEXT FILE values.txt UNIX SEPARATOR \";\"; "
                  "CREATE DATASET b AS DOUBLE(3) FROM BINARY FILE doubles.bin"),
              0)
        << message();
    EXPECT_EQ(Dataset("/d").ints(), (Ints{1, 2, 3, 4}));
    EXPECT_EQ(Dataset("/b").read<double>(H5T_NATIVE_DOUBLE), (std::vector<double>{0.5, -1.25, 0.0}));

    // The strings point into the file's image, which lasts until the last dataset is written.
    write_text("names.txt", "alpha,,gamma\r\n");
    write_text("lists.bin", bytes_of<int>({2, 1, 2, 0, 1, 3}));
    write_text("lists.txt", "1 2,,3\n");
    ASSERT_EQ(run("CREATE DATASET s, t AS VARCHAR(4) FROM TEXT FILE names.txt DOS; "
                  "CREATE DATASET v AS VARINT(3) FROM BINARY FILE lists.bin; "
                  "CREATE DATASET w AS VARINT(3) FROM TEXT FILE lists.txt"),
              0)
        << message();
    for (const char *path : {"/s", "/t"})
        EXPECT_EQ(Dataset(path).strings(), (std::vector<std::string>{"alpha", "", "gamma", "(null)"})) << path;
    for (const char *path : {"/v", "/w"}) EXPECT_EQ(Dataset(path).lists(), (std::vector<Ints>{{1, 2}, {}, {3}})) << path;
}
