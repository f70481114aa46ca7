/* Results into text and binary files. Text is formatted into one large block and goes out a
   block at a time; numbers are formatted by to_chars, byte for byte as printf prints them with
   "%d", "%u", "%lld", "%llu" and "%f". Fixed-length binary elements go out in one call from
   the results themselves. The stream is unbuffered, since all writes are large already: a
   failure then shows at the call that meets it, the last block's included. */
#include <errno.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <charconv>
#include <cmath>

#include "OutputTargets.h"
#include "Values.h"
#include "../OrmakPrivateStructures.h"
#include "../session/Session.h"

namespace ormak {

namespace {

/* Bytes gathered before one write. */
constexpr size_t kBlock = 1 << 20;
/* Room for one number: -DBL_MAX with six decimals takes 317 characters. */
constexpr size_t kNumberRoom = 320;
/* A separator or subseparator holds at most this many characters; the rest is cut. */
constexpr size_t kDelimiterLimit = ORMAK_TEXT_SIZE - 1;

/* The file being written, closed however the writing ends; fclose is not looked at. */
struct OpenFile {
    FILE *handle = nullptr;
    OpenFile() = default;
    OpenFile(const OpenFile &) = delete;
    OpenFile &operator=(const OpenFile &) = delete;
    ~OpenFile() {
        if (handle) fclose(handle);
    }
};

/* Opens the file to replace it with TRUNCATE (file_truncate 0), else to append to it. */
int open_file(const char *file_name, int file_truncate, OpenFile &file) {
    file.handle = fopen(file_name, file_truncate == 0 ? "wb" : "ab");
    if (file.handle == nullptr) {
        if (errno == EACCES)
            return fail(ORMAK_ERROR_NO_ACCESS, "Error when opening file \"%s\" as it is not accessible", file_name);
        return fail(ORMAK_ERROR_UNKNOWN, "Error when opening file \"%s\"", file_name);
    }
    setvbuf(file.handle, nullptr, _IONBF, 0);
    return ORMAK_SUCCESS;
}

/* Bytes on their way into the file: gathered in one block, written when it is full. After a
   failed write nothing more is written, and the cause is kept. */
class Output {
public:
    explicit Output(FILE *handle) : handle_(handle) {
        block_ = (char *)malloc(kBlock);
        size_t capacity = kBlock;
        if (block_ == nullptr) {
            /* Short of memory the writing goes on in small steps. */
            block_ = spare_;
            capacity = sizeof spare_;
        }
        position_ = block_;
        end_ = block_ + capacity;
    }
    Output(const Output &) = delete;
    Output &operator=(const Output &) = delete;
    ~Output() {
        if (block_ != spare_) free(block_);
    }

    /* The place for at most kRoom bytes, written there and then committed; null once a write
       has failed. */
    char *room(size_t size) {
        if ((size_t)(end_ - position_) < size && !flush()) return nullptr;
        return position_;
    }
    void commit(char *position) { position_ = position; }

    /* Copies bytes in; a run as large as the block goes to the file directly. */
    bool bytes(const void *data, size_t size) {
        if ((size_t)(end_ - position_) >= size) {
            memcpy(position_, data, size);
            position_ += size;
            return true;
        }
        if (!flush()) return false;
        if (size >= (size_t)(end_ - block_)) return put(data, size);
        memcpy(position_, data, size);
        position_ += size;
        return true;
    }

    bool flush() {
        const size_t size = (size_t)(position_ - block_);
        position_ = block_;
        return size == 0 ? !failed_ : put(block_, size);
    }

    int error_number() const { return error_number_; }

    /* The most that room may ask for: one number or byte, then a delimiter. */
    static constexpr size_t kRoom = kNumberRoom + kDelimiterLimit + 2;

private:
    bool put(const void *data, size_t size) {
        if (failed_) return false;
        errno = 0;
        if (fwrite(data, 1, size, handle_) < size) {
            failed_ = true;
            error_number_ = errno;
            return false;
        }
        return true;
    }

    FILE *handle_;
    char *block_;
    char *position_;
    char *end_;
    bool failed_ = false;
    int error_number_ = 0;
    char spare_[2 * kRoom];
};

/* A delimiter of at most kDelimiterLimit characters. */
struct Delimiter {
    char text[kDelimiterLimit + 1];
    size_t size;
    explicit Delimiter(const char *given) : Delimiter(given, strnlen(given, kDelimiterLimit)) {}
    Delimiter(const char *given, size_t given_size) : size(given_size) { memcpy(text, given, size); }
    char *put(char *position) const {
        memcpy(position, text, size);
        return position + size;
    }
};

/* The terminators of the elements: the line end behind every `split` elements (none for 0)
   and behind the last one, the separator elsewhere. */
class Terminators {
public:
    Terminators(int file_eof, const char *file_separator, int file_split)
        : eof_(file_eof == 1 ? "\r\n" : "\n", file_eof == 1 ? 2 : 1), separator_(file_separator ? file_separator : ","),
          split_(file_split), left_(file_split) {}

    char *put(char *position, bool last) {
        if ((split_ > 0 && --left_ == 0) || last) {
            left_ = split_;
            return eof_.put(position);
        }
        return separator_.put(position);
    }

private:
    Delimiter eof_;
    Delimiter separator_;
    int split_;
    int left_;
};

inline char *format_double(char *position, double value) {
    if (std::isfinite(value)) return std::to_chars(position, position + kNumberRoom, value, std::chars_format::fixed, 6).ptr;
    /* printf's forms of the values that have no digits. */
    if (std::signbit(value)) *position++ = '-';
    memcpy(position, std::isnan(value) ? "nan" : "inf", 3);
    return position + 3;
}

template <typename T>
inline T load(const char *source) {
    T value;
    memcpy(&value, source, sizeof value);
    return value;
}

template <typename T>
inline char *format_integer(char *position, T value) {
    return std::to_chars(position, position + kNumberRoom, value).ptr;
}

/* Calls body with the formatter of one number of a numeric type (or the member of a
   variable-length one): narrow integers widen to int or unsigned as "%d" and "%u" take them,
   a float widens to double for "%f". Each type gets a loop of its own. */
template <typename Body>
bool with_format(int data_type, Body body) {
    switch (fixed_of(data_type)) {
    case ORMAK_TINYINT:
        return body([](char *p, const char *e) { return format_integer(p, (int)load<int8_t>(e)); });
    case ORMAK_UNSIGNED_TINYINT:
        return body([](char *p, const char *e) { return format_integer(p, (unsigned)load<uint8_t>(e)); });
    case ORMAK_SMALLINT:
        return body([](char *p, const char *e) { return format_integer(p, (int)load<int16_t>(e)); });
    case ORMAK_UNSIGNED_SMALLINT:
        return body([](char *p, const char *e) { return format_integer(p, (unsigned)load<uint16_t>(e)); });
    case ORMAK_INT:
        return body([](char *p, const char *e) { return format_integer(p, load<int32_t>(e)); });
    case ORMAK_UNSIGNED_INT:
        return body([](char *p, const char *e) { return format_integer(p, load<uint32_t>(e)); });
    case ORMAK_BIGINT:
        return body([](char *p, const char *e) { return format_integer(p, (long long)load<int64_t>(e)); });
    case ORMAK_UNSIGNED_BIGINT:
        return body([](char *p, const char *e) { return format_integer(p, (unsigned long long)load<uint64_t>(e)); });
    case ORMAK_FLOAT:
        return body([](char *p, const char *e) { return format_double(p, (double)load<float>(e)); });
    default:
        return body([](char *p, const char *e) { return format_double(p, load<double>(e)); });
    }
}

/* ---- Text ---- */

bool text_numbers(Output &out, Terminators &terminators, const char *data, int data_type, int data_count,
                  int data_size) {
    return with_format(data_type, [&](auto format) {
        const int last = data_count - 1;
        for (int i = 0; i < data_count; i++) {
            char *position = out.room(Output::kRoom);
            if (position == nullptr) return false;
            position = format(position, data + (size_t)i * (size_t)data_size);
            out.commit(terminators.put(position, i == last));
        }
        return true;
    });
}

bool terminate(Output &out, Terminators &terminators, bool last) {
    char *position = out.room(Output::kRoom);
    if (position == nullptr) return false;
    out.commit(terminators.put(position, last));
    return true;
}

/* CHAR: all bytes of the element, zeros included. */
bool text_bytes(Output &out, Terminators &terminators, const char *data, int data_count, int data_size) {
    for (int i = 0; i < data_count; i++) {
        if (!out.bytes(data + (size_t)i * (size_t)data_size, (size_t)data_size)) return false;
        if (!terminate(out, terminators, i == data_count - 1)) return false;
    }
    return true;
}

/* VARCHAR: the string; a null one is the terminator alone. */
bool text_strings(Output &out, Terminators &terminators, const char *const *strings, int data_count) {
    for (int i = 0; i < data_count; i++) {
        if (strings[i] && !out.bytes(strings[i], strlen(strings[i]))) return false;
        if (!terminate(out, terminators, i == data_count - 1)) return false;
    }
    return true;
}

/* OPAQUE: each byte as an unsigned number, the subseparator between them. */
bool text_opaque(Output &out, Terminators &terminators, const Delimiter &subseparator, const unsigned char *data,
                 int data_count, int data_size) {
    for (int i = 0; i < data_count; i++) {
        const unsigned char *element = data + (size_t)i * (size_t)data_size;
        for (int k = 0; k < data_size; k++) {
            char *position = out.room(Output::kRoom);
            if (position == nullptr) return false;
            position = format_integer(position, (unsigned)element[k]);
            out.commit(k < data_size - 1 ? subseparator.put(position) : position);
        }
        if (!terminate(out, terminators, i == data_count - 1)) return false;
    }
    return true;
}

/* Variable-length types: the members, the subseparator between them; an absent element is
   the terminator alone. */
bool text_variable(Output &out, Terminators &terminators, const Delimiter &subseparator,
                   const ORMAK_VARIABLE_LENGTH *records, int data_type, int data_count, int data_size) {
    return with_format(data_type, [&](auto format) {
        for (int i = 0; i < data_count; i++) {
            const char *members = (const char *)records[i].address;
            const uint64_t count = members ? records[i].count : 0;
            for (uint64_t k = 0; k < count; k++) {
                char *position = out.room(Output::kRoom);
                if (position == nullptr) return false;
                position = format(position, members + k * (uint64_t)data_size);
                out.commit(k + 1 < count ? subseparator.put(position) : position);
            }
            if (!terminate(out, terminators, i == data_count - 1)) return false;
        }
        return true;
    });
}

/* ---- Binary ---- */

bool binary_strings(Output &out, const char *const *strings, int data_count) {
    for (int i = 0; i < data_count; i++) {
        const char *string = strings[i] ? strings[i] : "";
        if (!out.bytes(string, strlen(string) + 1)) return false;
    }
    return true;
}

bool binary_variable(Output &out, const ORMAK_VARIABLE_LENGTH *records, int data_count, int data_size) {
    for (int i = 0; i < data_count; i++) {
        const int32_t count = records[i].address ? (int32_t)records[i].count : 0;
        if (!out.bytes(&count, sizeof count)) return false;
        if (count > 0 && !out.bytes(records[i].address, (size_t)(uint32_t)count * (size_t)data_size)) return false;
    }
    return true;
}

int write_failure(int error_number, const char *file_name) {
    return fail_errno(error_number, "Error when writing results into file \"%s\"", file_name);
}

} // namespace

int text_file_output(const void *data, int data_type, int data_count, int data_size, int file_truncate,
                     const char *file_name, int file_eof, const char *file_separator, const char *file_subseparator,
                     int file_split) {
    if (file_name == nullptr) file_name = "";
    OpenFile file;
    int status = open_file(file_name, file_truncate, file);
    if (status != ORMAK_SUCCESS || data_count <= 0 || data == nullptr) return status;
    if (data_size < 0) data_size = 0;

    Output out(file.handle);
    Terminators terminators(file_eof, file_separator, file_split);
    const Delimiter subseparator(file_subseparator ? file_subseparator : " ");
    const char *bytes = (const char *)data;
    bool written;
    if (is_fixed_numeric(data_type))
        written = text_numbers(out, terminators, bytes, data_type, data_count, data_size);
    else if (data_type == ORMAK_VARCHAR)
        written = text_strings(out, terminators, (const char *const *)data, data_count);
    else if (is_variable_numeric(data_type))
        written = text_variable(out, terminators, subseparator, (const ORMAK_VARIABLE_LENGTH *)data, data_type,
                                data_count, data_size);
    else if (data_type == ORMAK_OPAQUE)
        written = text_opaque(out, terminators, subseparator, (const unsigned char *)data, data_count, data_size);
    else
        written = text_bytes(out, terminators, bytes, data_count, data_size);
    if (!written || !out.flush()) return write_failure(out.error_number(), file_name);
    return ORMAK_SUCCESS;
}

int binary_file_output(const void *data, int data_type, int data_count, int data_size, int file_truncate,
                       const char *file_name) {
    if (file_name == nullptr) file_name = "";
    OpenFile file;
    int status = open_file(file_name, file_truncate, file);
    if (status != ORMAK_SUCCESS || data_count <= 0 || data == nullptr) return status;
    if (data_size < 0) data_size = 0;

    if (data_type != ORMAK_VARCHAR && !is_variable_numeric(data_type)) {
        /* Straight from the results, in one call. */
        if (data_size == 0) return ORMAK_SUCCESS;
        errno = 0;
        if (fwrite(data, (size_t)data_size, (size_t)data_count, file.handle) < (size_t)data_count)
            return write_failure(errno, file_name);
        return ORMAK_SUCCESS;
    }
    Output out(file.handle);
    const bool written = data_type == ORMAK_VARCHAR
                             ? binary_strings(out, (const char *const *)data, data_count)
                             : binary_variable(out, (const ORMAK_VARIABLE_LENGTH *)data, data_count, data_size);
    if (!written || !out.flush()) return write_failure(out.error_number(), file_name);
    return ORMAK_SUCCESS;
}

} // namespace ormak
