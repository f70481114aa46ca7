/* Values from text and binary files. A file is read whole, in one call, into one block and
   decoded there: a text file is cut in place at its delimiters and converted token by token;
   a binary file of fixed-length elements goes straight into the element buffer. Nothing of
   the content is refused: every token converts to something, a short file leaves the rest
   zero, null or absent, and a long one is cut. */
#include <errno.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>

#include <algorithm>

#include "InputSources.h"
#include "Values.h"
#include "../OrmakPrivateStructures.h"
#include "../session/Session.h"

namespace ormak {

namespace {

int out_of_memory(const char *file_name) {
    return fail(ORMAK_ERROR_NOT_ENOUGH_MEMORY,
                "Error when reading data from file \"%s\" as there is not enough memory available", file_name);
}

int read_error(const char *file_name) {
    return fail(ORMAK_ERROR_UNKNOWN, "Error when reading file \"%s\"", file_name);
}

/* The file being read, closed however the reading ends. */
struct OpenFile {
    FILE *handle = nullptr;
    size_t size = 0;
    OpenFile() = default;
    OpenFile(const OpenFile &) = delete;
    OpenFile &operator=(const OpenFile &) = delete;
    ~OpenFile() {
        if (handle) fclose(handle);
    }
};

/* Opens a file for reading and takes its size. A name that is no regular file (a directory
   too) does not exist for this purpose. */
int open_file(const char *file_name, OpenFile &file) {
    struct stat info;
    if (stat(file_name, &info) != 0 || !S_ISREG(info.st_mode))
        return fail(ORMAK_ERROR_NOT_FOUND, "Error when opening file \"%s\" as it does not exist", file_name);
    file.handle = fopen(file_name, "rb");
    if (file.handle == nullptr) {
        if (errno == ENOENT)
            return fail(ORMAK_ERROR_NOT_FOUND, "Error when opening file \"%s\" as it does not exist", file_name);
        if (errno == EACCES)
            return fail(ORMAK_ERROR_NO_ACCESS, "Error when opening file \"%s\" as it is not accessible", file_name);
        return fail(ORMAK_ERROR_UNKNOWN, "Error when opening file \"%s\"", file_name);
    }
    /* The file is read in a few large calls: the stream's own buffer would only add a copy. */
    setvbuf(file.handle, nullptr, _IONBF, 0);
    struct stat opened;
    if (fstat(fileno(file.handle), &opened) != 0 || opened.st_size < 0) return read_error(file_name);
    file.size = (size_t)opened.st_size;
    return ORMAK_SUCCESS;
}

/* Reads up to `wanted` bytes; *got tells how many came, fewer only when the file shrank since
   its size was taken. A short read is a failure only when the stream reports an error. */
int read_bytes(OpenFile &file, void *target, size_t wanted, size_t *got, const char *file_name) {
    *got = wanted > 0 ? fread(target, 1, wanted, file.handle) : 0;
    if (*got < wanted && ferror(file.handle)) return read_error(file_name);
    return ORMAK_SUCCESS;
}

/* The whole file in *data_auxiliary, with a zero byte behind its end; *size is what was read. */
int read_image(const char *file_name, char **data_auxiliary, char **image, size_t *size) {
    OpenFile file;
    int status = open_file(file_name, file);
    if (status != ORMAK_SUCCESS) return status;
    *image = (char *)malloc(file.size + 1);
    if (*image == nullptr) return out_of_memory(file_name);
    *data_auxiliary = *image;
    (*image)[0] = '\0';
    status = read_bytes(file, *image, file.size, size, file_name);
    (*image)[*size] = '\0';
    return status;
}

/* ---- Text files ---- */

/* One delimiter of a text file. An empty one never matches: SEPARATOR "" leaves the line
   end as the only divider of elements, rather than dividing between every two bytes. */
struct Delimiter {
    const char *text = "";
    size_t size = 0;
    Delimiter() = default;
    explicit Delimiter(const char *t) : text(t), size(strlen(t)) {}
};

/* What closed a token: a line end or separator (the element ends), a subseparator (a member
   or byte ends, the element goes on), or the end of the file. */
enum class Close { Element, Member, File };

struct Token {
    char *text;
    size_t size;
    Close close;
};

/* Walks the image token by token. The line end is tested first and may end exactly at the
   end of the file; the separator and then the subseparator need a byte behind them, so one
   that ends the file stays part of the last token. With `cut`, the first byte of every
   delimiter becomes a zero, so that each token is a string of its own. A last token without
   a delimiter is given only when it is not empty. */
class Scanner {
public:
    Scanner(char *image, size_t size, const Delimiter &eof, const Delimiter &separator,
            const Delimiter &subseparator, bool cut)
        : image_(image), size_(size), eof_(eof), separator_(separator), subseparator_(subseparator), cut_(cut) {
        for (const Delimiter *d : {&eof_, &separator_, &subseparator_})
            if (d->size > 0) candidate_[(unsigned char)d->text[0]] = true;
    }

    bool next(Token &token) {
        const unsigned char *bytes = (const unsigned char *)image_;
        const size_t size = size_;
        for (size_t j = start_; j < size; j++) {
            if (!candidate_[bytes[j]]) continue;
            size_t length;
            Close close;
            if (at(j, eof_, 0)) {
                length = eof_.size;
                close = Close::Element;
            } else if (at(j, separator_, 1)) {
                length = separator_.size;
                close = Close::Element;
            } else if (at(j, subseparator_, 1)) {
                length = subseparator_.size;
                close = Close::Member;
            } else {
                continue;
            }
            token = {image_ + start_, j - start_, close};
            if (cut_) image_[j] = '\0';
            start_ = j + length;
            return true;
        }
        if (start_ >= size) return false;
        token = {image_ + start_, size - start_, Close::File};
        start_ = size;
        return true;
    }

private:
    /* The delimiter stands at j, with at least `behind` bytes of the file after it. */
    bool at(size_t j, const Delimiter &d, size_t behind) const {
        return d.size > 0 && d.size + behind <= size_ - j && memcmp(image_ + j, d.text, d.size) == 0;
    }

    char *image_;
    size_t size_;
    size_t start_ = 0;
    Delimiter eof_, separator_, subseparator_;
    bool cut_;
    bool candidate_[256] = {};
};

/* The delimiters of a text file: the line end by file_eof (DOS "\r\n", else "\n"), the
   separator (default ","), the subseparator (default " "). */
struct Delimiters {
    Delimiter eof, separator, subseparator;
    Delimiters(int file_eof, const char *file_separator, const char *file_subseparator)
        : eof(file_eof == 1 ? "\r\n" : "\n"), separator(file_separator ? file_separator : ","),
          subseparator(file_subseparator ? file_subseparator : " ") {}
};

template <typename T>
inline void put(char *target, T value) {
    memcpy(target, &value, sizeof value);
}

/* Calls body with the conversion of a zero-terminated token into one number of a numeric
   type (or the member type of a variable-length one), by decimal parsing as atoi, atoll and
   atof do, keeping the low bytes of the width. Each type gets a loop of its own. */
template <typename Body>
void with_conversion(int data_type, Body body) {
    switch (fixed_of(data_type)) {
    case ORMAK_TINYINT:
    case ORMAK_UNSIGNED_TINYINT:
        body([](const char *text, char *target) { put(target, (uint8_t)strtol(text, nullptr, 10)); });
        break;
    case ORMAK_SMALLINT:
    case ORMAK_UNSIGNED_SMALLINT:
        body([](const char *text, char *target) { put(target, (uint16_t)strtol(text, nullptr, 10)); });
        break;
    case ORMAK_INT:
    case ORMAK_UNSIGNED_INT:
        body([](const char *text, char *target) { put(target, (uint32_t)strtol(text, nullptr, 10)); });
        break;
    case ORMAK_BIGINT:
        body([](const char *text, char *target) { put(target, (int64_t)strtoll(text, nullptr, 10)); });
        break;
    case ORMAK_UNSIGNED_BIGINT:
        /* The whole unsigned range: what the writer prints with %llu comes back, where atoll
           would stop at 2 to the power 63. A negative number keeps its two's complement bits. */
        body([](const char *text, char *target) { put(target, (uint64_t)strtoull(text, nullptr, 10)); });
        break;
    case ORMAK_FLOAT:
        body([](const char *text, char *target) { put(target, (float)strtod(text, nullptr)); });
        break;
    default:
        body([](const char *text, char *target) { put(target, strtod(text, nullptr)); });
        break;
    }
}

/* Fixed-length elements, one token each, delimited by line ends and separators. */
int text_fixed(char *image, size_t size, const Delimiters &d, int data_type, int data_count, int data_size,
               const char *file_name, void **data, int *data_allocated) {
    const size_t element = (size_t)std::max(data_size, 1);
    char *buffer = (char *)calloc((size_t)data_count, element);
    if (buffer == nullptr) return out_of_memory(file_name);
    *data = buffer;
    *data_allocated = 0;
    Token token;
    if (is_fixed_numeric(data_type)) {
        Scanner scanner(image, size, d.eof, d.separator, Delimiter(), true);
        with_conversion(data_type, [&](auto convert) {
            for (int position = 0; position < data_count && scanner.next(token); position++)
                convert(token.text, buffer + (size_t)position * element);
        });
        return ORMAK_SUCCESS;
    }
    /* CHAR (and any other fixed type): a token fills one element, its bytes cut to the
       element's size or padded with zeros. This is the reverse of the writer, which puts all
       bytes of a CHAR(n) element, zeros included, before the delimiter; a CHAR(1) element is
       the first byte of its token, and an empty token is a zero byte. */
    Scanner scanner(image, size, d.eof, d.separator, Delimiter(), false);
    for (int position = 0; position < data_count && scanner.next(token); position++)
        memcpy(buffer + (size_t)position * element, token.text, std::min(token.size, element));
    return ORMAK_SUCCESS;
}

/* OPAQUE: bytes by atoi, the bytes of one element divided by the subseparator. An element
   with fewer bytes than its size is padded with zeros; the surplus of a longer one is
   skipped up to the next line end or separator. */
int text_opaque(char *image, size_t size, const Delimiters &d, int data_count, int data_size, const char *file_name,
                void **data, int *data_allocated) {
    const size_t element = (size_t)std::max(data_size, 1);
    const size_t total = (size_t)data_count * element;
    unsigned char *buffer = (unsigned char *)calloc((size_t)data_count, element);
    if (buffer == nullptr) return out_of_memory(file_name);
    *data = buffer;
    *data_allocated = 0;
    Scanner scanner(image, size, d.eof, d.separator, d.subseparator, true);
    Token token;
    size_t position = 0;
    bool complete = false; /* the element is full and its surplus is being skipped */
    while (position < total && scanner.next(token)) {
        if (complete) {
            if (token.close != Close::Member) complete = false;
            continue;
        }
        buffer[position++] = (unsigned char)strtol(token.text, nullptr, 10);
        if (token.close == Close::Member) {
            complete = position % element == 0;
        } else if (position % element > 0) {
            /* The bytes between stay zero from the allocation. */
            position += element - position % element;
        }
    }
    return ORMAK_SUCCESS;
}

/* VARCHAR: each token is a string in the image, which stays until the caller releases it.
   An empty token is an empty string; the elements after the last token are null. */
int text_strings(char *image, size_t size, const Delimiters &d, int data_count, const char *file_name, void **data,
                 int *data_allocated) {
    char **pointers = (char **)calloc((size_t)data_count, sizeof *pointers);
    if (pointers == nullptr) return out_of_memory(file_name);
    *data = pointers;
    *data_allocated = 0;
    Scanner scanner(image, size, d.eof, d.separator, Delimiter(), true);
    Token token;
    for (int position = 0; position < data_count && scanner.next(token); position++) pointers[position] = token.text;
    return ORMAK_SUCCESS;
}

/* Variable-length numeric types: elements end at line ends and separators, members at
   subseparators. A first pass counts the members, one block takes them all, and a second pass
   converts them. An empty last member is no member, so two separators in a row give an
   element with no members; it still points at its (unused) slot in the block. */
int text_variable(char *image, size_t size, const Delimiters &d, int data_type, int data_count,
                  const char *file_name, void **data, int *data_allocated) {
    ORMAK_VARIABLE_LENGTH *records = (ORMAK_VARIABLE_LENGTH *)calloc((size_t)data_count, sizeof *records);
    if (records == nullptr) return out_of_memory(file_name);
    *data = records;
    *data_allocated = 0;

    /* The first pass leaves the image as it is, for the second to see the same delimiters. */
    Scanner counting(image, size, d.eof, d.separator, d.subseparator, false);
    Token token;
    size_t tokens = 0;
    for (int elements = 0; elements < data_count && counting.next(token);) {
        tokens++;
        if (token.close != Close::Member) elements++;
    }
    if (tokens == 0) return ORMAK_SUCCESS;

    const size_t width = (size_t)member_width(data_type);
    char *members = (char *)malloc(tokens * width);
    if (members == nullptr) return out_of_memory(file_name);
    /* The block is the first record's address from now on, and goes with it. */
    records[0].address = members;
    *data_allocated = 1;

    Scanner scanner(image, size, d.eof, d.separator, d.subseparator, true);
    with_conversion(data_type, [&](auto convert) {
        size_t slot = 0, first = 0;
        uint64_t count = 0;
        for (int position = 0; position < data_count && slot < tokens && scanner.next(token);) {
            convert(token.text, members + slot * width);
            slot++;
            if (token.close == Close::Member) {
                count++;
                continue;
            }
            records[position].address = members + first * width;
            records[position].count = count + (token.size > 0 ? 1 : 0);
            position++;
            count = 0;
            first = slot;
        }
    });
    return ORMAK_SUCCESS;
}

/* ---- Binary files ---- */

/* VARCHAR: strings one after another, each with its terminating zero; the last one may lack
   it, the zero behind the image ends it. */
int binary_strings(const char *image, size_t size, int data_count, const char *file_name, void **data,
                   int *data_allocated) {
    char **pointers = (char **)calloc((size_t)data_count, sizeof *pointers);
    if (pointers == nullptr) return out_of_memory(file_name);
    *data = pointers;
    *data_allocated = 0;
    size_t index = 0;
    for (int position = 0; position < data_count && index < size; position++) {
        pointers[position] = (char *)image + index;
        index += strlen(image + index) + 1;
    }
    return ORMAK_SUCCESS;
}

/* Variable-length numeric types: a 4-byte count, then the members. The image is trusted only
   as far as it goes: a count that reaches past the end of the file keeps the members that are
   there, as a short file keeps its elements, and a count cut off by the end gives nothing.
   A negative count has no members. An element without members is absent, as the writer
   writes a count of 0 for an absent one. */
int binary_variable(char *image, size_t size, int data_count, int data_size, const char *file_name, void **data,
                    int *data_allocated) {
    ORMAK_VARIABLE_LENGTH *records = (ORMAK_VARIABLE_LENGTH *)calloc((size_t)data_count, sizeof *records);
    if (records == nullptr) return out_of_memory(file_name);
    *data = records;
    *data_allocated = 0;
    const size_t width = (size_t)std::max(data_size, 1);
    size_t index = 0;
    for (int position = 0; position < data_count && size - index >= sizeof(int32_t); position++) {
        int32_t stored;
        memcpy(&stored, image + index, sizeof stored);
        index += sizeof stored;
        const uint64_t count = std::min<uint64_t>(stored < 0 ? 0 : (uint64_t)stored, (size - index) / width);
        records[position].count = count;
        records[position].address = count > 0 ? image + index : nullptr;
        index += count * width;
    }
    return ORMAK_SUCCESS;
}

/* Fixed-length elements lie back to back: one read straight into the buffer, and whatever the
   file does not cover, a last partial element included, is zero. */
int binary_fixed(const char *file_name, int data_count, int data_size, void **data, int *data_allocated) {
    OpenFile file;
    int status = open_file(file_name, file);
    if (status != ORMAK_SUCCESS || data_count <= 0) return status;
    const size_t needed = (size_t)data_count * (size_t)std::max(data_size, 1);
    char *buffer = (char *)malloc(needed);
    if (buffer == nullptr) return out_of_memory(file_name);
    *data = buffer;
    *data_allocated = 0;
    size_t got = 0;
    status = read_bytes(file, buffer, std::min(file.size, needed), &got, file_name);
    memset(buffer + got, 0, needed - got);
    return status;
}

} // namespace

int text_file_input(int data_type, int data_count, int data_size, void **data, int *data_allocated,
                    char **data_auxiliary, const char *file_name, int file_eof, const char *file_separator,
                    const char *file_subseparator) {
    if (file_name == nullptr) file_name = "";
    char *image = nullptr;
    size_t size = 0;
    int status = read_image(file_name, data_auxiliary, &image, &size);
    if (status != ORMAK_SUCCESS || data_count <= 0) return status;
    const Delimiters delimiters(file_eof, file_separator, file_subseparator);
    if (data_type == ORMAK_VARCHAR)
        return text_strings(image, size, delimiters, data_count, file_name, data, data_allocated);
    if (is_variable_numeric(data_type))
        return text_variable(image, size, delimiters, data_type, data_count, file_name, data, data_allocated);
    if (data_type == ORMAK_OPAQUE)
        return text_opaque(image, size, delimiters, data_count, data_size, file_name, data, data_allocated);
    return text_fixed(image, size, delimiters, data_type, data_count, data_size, file_name, data, data_allocated);
}

int binary_file_input(int data_type, int data_count, int data_size, void **data, int *data_allocated,
                      char **data_auxiliary, const char *file_name) {
    if (file_name == nullptr) file_name = "";
    if (data_type != ORMAK_VARCHAR && !is_variable_numeric(data_type))
        return binary_fixed(file_name, data_count, data_size, data, data_allocated);
    char *image = nullptr;
    size_t size = 0;
    int status = read_image(file_name, data_auxiliary, &image, &size);
    if (status != ORMAK_SUCCESS || data_count <= 0) return status;
    if (data_type == ORMAK_VARCHAR) return binary_strings(image, size, data_count, file_name, data, data_allocated);
    return binary_variable(image, size, data_count, data_size, file_name, data, data_allocated);
}

} // namespace ormak
