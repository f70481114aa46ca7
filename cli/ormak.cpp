// The ormak command-line tool: runs a script given on the command line, in a file, on
// standard input, or typed at an interactive prompt.
#include <stdio.h>
#include <string.h>
#include <unistd.h>

#include <charconv>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>

#include <editline/readline.h>

#include "Ormak.h"

namespace {

void usage() {
    fprintf(stderr,
            "usage: ormak -e \"SCRIPT\"   run a script given as text\n"
            "       ormak FILE          run the script in FILE\n"
            "       ormak               read statements at a prompt, or a script from a pipe\n");
}

/* One value of a fixed numeric type as text. */
std::string number_text(int type, const void *data) {
    char text[64];
    switch (type) {
    case ORMAK_TINYINT: case ORMAK_VARTINYINT: snprintf(text, sizeof text, "%d", *(const int8_t *)data); break;
    case ORMAK_UNSIGNED_TINYINT: case ORMAK_UNSIGNED_VARTINYINT: snprintf(text, sizeof text, "%u", *(const uint8_t *)data); break;
    case ORMAK_SMALLINT: case ORMAK_VARSMALLINT: snprintf(text, sizeof text, "%d", *(const int16_t *)data); break;
    case ORMAK_UNSIGNED_SMALLINT: case ORMAK_UNSIGNED_VARSMALLINT: snprintf(text, sizeof text, "%u", *(const uint16_t *)data); break;
    case ORMAK_INT: case ORMAK_VARINT: snprintf(text, sizeof text, "%d", *(const int32_t *)data); break;
    case ORMAK_UNSIGNED_INT: case ORMAK_UNSIGNED_VARINT: snprintf(text, sizeof text, "%u", *(const uint32_t *)data); break;
    case ORMAK_BIGINT: case ORMAK_VARBIGINT: snprintf(text, sizeof text, "%lld", (long long)*(const int64_t *)data); break;
    case ORMAK_UNSIGNED_BIGINT: case ORMAK_UNSIGNED_VARBIGINT:
        snprintf(text, sizeof text, "%llu", (unsigned long long)*(const uint64_t *)data); break;
    /* The shortest text that reads back as the same number. */
    case ORMAK_FLOAT: case ORMAK_VARFLOAT: *std::to_chars(text, text + sizeof text - 1, *(const float *)data).ptr = 0; break;
    case ORMAK_DOUBLE: case ORMAK_VARDOUBLE: *std::to_chars(text, text + sizeof text - 1, *(const double *)data).ptr = 0; break;
    default: snprintf(text, sizeof text, "?");
    }
    return text;
}

/* Prints the cursor in use, one value a line; values with inner members print them on
   their line, separated by blanks. Then empties it, so that it is printed once. */
void print_cursor() {
    int type = ormak_cursor_get_data_type(nullptr);
    ormak_cursor_absolute(nullptr, -ormak_cursor_get_count(nullptr) - 1);
    while (ormak_cursor_next(nullptr) == ORMAK_SUCCESS) {
        std::string line;
        if (type == ORMAK_VARCHAR) {
            const char *text = ormak_cursor_get_char(nullptr);
            line = text ? text : "";
        } else if (ormak_subcursor_get_count(nullptr) > 0) {
            ormak_subcursor_absolute(nullptr, -ormak_subcursor_get_count(nullptr) - 1);
            while (ormak_subcursor_next(nullptr) == ORMAK_SUCCESS) {
                const unsigned char *member = ormak_subcursor_get_unsigned_tinyint(nullptr);
                if (type == ORMAK_CHAR) {
                    if (*member) line += (char)*member;
                } else {
                    if (!line.empty()) line += ' ';
                    line += type == ORMAK_OPAQUE ? std::to_string(*member) : number_text(type, member);
                }
            }
        } else if (ormak_cursor_get(nullptr) != nullptr) {
            line = number_text(type, ormak_cursor_get(nullptr));
        }
        printf("%s\n", line.c_str());
    }
    ormak_cursor_clear(nullptr);
}

/* Runs a script and reports a failure; returns the status. */
int run(const std::string &script) {
    int status = ormak_execute(script.c_str());
    if (status != ORMAK_SUCCESS) {
        const char *message = ormak_error_get_message();
        if (ormak_error_get_line() >= 0)
            fprintf(stderr, "line %d, position %d: ", ormak_error_get_line(), ormak_error_get_position());
        fprintf(stderr, "%s (status %d)\n", message ? message : "Error", status);
    }
    if (ormak_cursor_get_count(nullptr) > 0) print_cursor();
    return status;
}

int interactive() {
    std::string statement;
    for (;;) {
        char *line = readline(statement.empty() ? "ormak> " : "    -> ");
        if (line == nullptr) break;
        std::string text = line;
        free(line);
        if (!text.empty() && text.back() == '\\') {
            statement += text + "\n";
            continue;
        }
        statement += text;
        if (!statement.empty()) add_history(statement.c_str());
        run(statement);
        statement.clear();
    }
    if (!statement.empty()) run(statement);
    printf("\n");
    return 0;
}

std::string read_all(std::istream &in) {
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

} // namespace

int main(int argc, char **argv) {
    int status;
    if (argc == 3 && strcmp(argv[1], "-e") == 0) {
        status = run(argv[2]);
    } else if (argc == 2 && argv[1][0] != '-') {
        std::ifstream file(argv[1], std::ios::binary);
        if (!file) {
            fprintf(stderr, "ormak: cannot read \"%s\"\n", argv[1]);
            return 2;
        }
        status = run(read_all(file));
    } else if (argc == 1) {
        if (isatty(STDIN_FILENO)) return interactive();
        status = run(read_all(std::cin));
    } else {
        usage();
        return 2;
    }
    return status == ORMAK_SUCCESS ? 0 : 1;
}
