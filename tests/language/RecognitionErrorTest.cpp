// Syntax errors: the first error of a script, its message, line and position.
#include "OrmakTest.h"

using RecognitionError = OrmakTest;

namespace {
struct Expected {
    const char *script;
    const char *message;
    int line;
    int position;
};
} // namespace

TEST_F(RecognitionError, MessagesLinesAndPositions) {
    const Expected cases[] = {
        // A mistyped keyword is a word the language does not know. Positions count from 1.
        {"CRAETE DIRECTORY a", "Unknown token \"CRAETE\"", 1, 1},
        {"CREATE DIRECTORY a b", "Unknown token \"b\"", 1, 20},
        // A statement that stops short, at the end or before a line end.
        {"USE DIRECTORY", "Unexpected end of line (EOL)", 1, 14},
        {"CREATE FILE\nCREATE FILE x", "Unexpected end of line (EOL)", 1, 12},
        // A known word in the wrong place, as the script spelled it.
        {"CREATE DIRECTORY a, file", "Unexpected token \"file\"", 1, 21},
        // Lines after the first count their positions from 1.
        {"CREATE DIRECTORY a\n\nCREATE DIRECTORY", "Unexpected end of line (EOL)", 3, 17},
        {"\"never closed", "Unexpected end of line (EOL)", 1, 14},
    };
    for (const Expected &c : cases) {
        SCOPED_TRACE(c.script);
        EXPECT_EQ(run(c.script), ORMAK_ERROR_PARSE);
        EXPECT_EQ(message(), c.message);
        EXPECT_EQ(ormak_error_get_line(), c.line);
        EXPECT_EQ(ormak_error_get_position(), c.position);
    }
}

TEST_F(RecognitionError, OnlyTheFirstErrorCountsAndNothingRuns) {
    EXPECT_EQ(run("CREATE DIRECTORY ok\nfirst x\nsecond y"), ORMAK_ERROR_PARSE);
    EXPECT_EQ(message(), "Unknown token \"first\"");
    EXPECT_EQ(ormak_error_get_line(), 2);
    EXPECT_FALSE(exists("ok"));
    // The next good script clears the report.
    EXPECT_EQ(run("CREATE DIRECTORY ok"), 0);
    EXPECT_EQ(ormak_error_get_line(), -1);
    EXPECT_EQ(ormak_error_get_position(), -1);
}

// Scripts of random words of the language: whatever they say, the library answers with a
// status and never crashes. The seed is fixed, so a failure can be replayed.
TEST_F(RecognitionError, RandomScriptsNeverCrash) {
    const char *words[] = {"CREATE", "USE", "CLOSE", "SET", "DROP", "RENAME", "COPY", "FILE", "GROUP", "LINK",
                           "EXTERNAL", "DIRECTORY", "TRUNCATE", "PARALLEL", "ATOMIC", "READONLY", "ALL", "AS",
                           "TO", "FROM", "LIBRARY", "BOUNDS", "LATEST", "CACHE", "SLOTS", "SIZE", "DEFAULT",
                           "ORDER", "TRACKED", "STORAGE", "COMPACT", "DENSE", "DEBUG", "ENABLE", "FLUSH", "HARD",
                           "a", "b.h5", "g/h", "\"q r\"", "1", "-2", "0x1F", "1.5", ",", "(", ")", ":", ";", "\n",
                           "#c\n", "@", "\"open", "\\\n", "/*", "*/"};
    const int count = sizeof words / sizeof words[0];
    unsigned state = 12345;
    auto next = [&state]() { return (state = state * 1103515245u + 12345u) >> 8; };
    for (int i = 0; i < 3000; i++) {
        std::string script;
        int length = 1 + next() % 12;
        for (int j = 0; j < length; j++) script += std::string(words[next() % count]) + " ";
        int status = run(script);
        EXPECT_LE(status, 0) << script;
        if (status == ORMAK_ERROR_PARSE) EXPECT_GE(ormak_error_get_line(), 1) << script;
    }
}
