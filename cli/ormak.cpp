// The ormak command-line tool: runs a script given on the command line, in a file, on
// standard input, or typed at an interactive prompt.
#include <stdio.h>
#include <string.h>
#include <unistd.h>

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

/* Runs a script and reports a failure; returns the status. */
int run(const std::string &script) {
    int status = ormak_execute(script.c_str());
    if (status != ORMAK_SUCCESS) {
        const char *message = ormak_error_get_message();
        if (ormak_error_get_line() >= 0)
            fprintf(stderr, "line %d, position %d: ", ormak_error_get_line(), ormak_error_get_position());
        fprintf(stderr, "%s (status %d)\n", message ? message : "Error", status);
    }
    // Statements that produce results will print them here.
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
