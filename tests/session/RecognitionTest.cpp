// Recognizers kept from one script to the next, and recognised scripts kept for running again:
// every script is told and run as if it were the first of the session.
#include <string.h>

#include <string>

#include "OrmakTest.h"

extern "C" int _ormak_set_script_cache(int entries);

namespace {

struct Refused {
    const char *script;
    const char *message;
    int line;
    int position;
};

// Lexer errors, parser errors with and without recovery by a made-up token, and errors at
// the end of the input.
const Refused kRefused[] = {
    {"CRAETE DIRECTORY a", "Unknown token \"CRAETE\"", 1, 1},
    {"CREATE FILE @", "Unknown token \"@\"", 1, 13},
    {"DROP FILE", "Unexpected end of line (EOL)", 1, 10},
    {"CREATE DIRECTORY one\nCREATE DIRECTORY", "Unexpected end of line (EOL)", 2, 17},
    {"CREATE DIRECTORY a, file", "Unexpected token \"file\"", 1, 21},
    {"\"never closed", "Unexpected end of line (EOL)", 1, 14},
    {"SELECT FROM d(1:1:1:1) INTO MEMORY", "Unexpected end of line (EOL)", 1, 35},
};

} // namespace

using Recognition = OrmakTest;

TEST_F(Recognition, EveryScriptIsToldAsIfItWereTheFirst) {
    // Twice through, each refusal after a good script and after another refusal, and once
    // after a script long enough to make the recognizers grow.
    std::string many;
    for (int i = 0; i < 1500; i++) many += "SET DEBUG DISABLE;";
    for (int round = 0; round < 3; round++) {
        if (round == 2) ASSERT_EQ(run(many), 0);
        for (const Refused &refused : kRefused) {
            SCOPED_TRACE(refused.script);
            for (int again = 0; again < 2; again++) {
                EXPECT_EQ(run(refused.script), ORMAK_ERROR_PARSE);
                EXPECT_EQ(message(), refused.message);
                EXPECT_EQ(ormak_error_get_line(), refused.line);
                EXPECT_EQ(ormak_error_get_position(), refused.position);
            }
            EXPECT_FALSE(exists("one"));
            EXPECT_EQ(run("CREATE DIRECTORY good"), 0);
            EXPECT_EQ(ormak_error_get_line(), -1);
            EXPECT_EQ(ormak_error_get_position(), -1);
            EXPECT_EQ(ormak_error_get_message(), nullptr);
            EXPECT_EQ(run("DROP DIRECTORY good"), 0);
        }
    }
}

// A kept script runs from a tree of its own; numbers that differ from those it was recognised
// with are its own numbers, wherever they stand.
TEST_F(Recognition, AKeptScriptRunsAsAFreshOne) {
    ASSERT_EQ(run("CREATE TRUNCATE FILE k.h5; USE FILE k.h5; CREATE DATASET d AS INT(12) "
                  "VALUES(0, 10, 20, 30, 40, 50, 60, 70, 80, 90, 100, 110)"),
              0);
    int value = -1;
    ASSERT_EQ(ormak_variable_register(&value), 0);
    for (int round = 0; round < 2; round++) {
        for (int at : {3, 11, 0, 7, 10}) {
            std::string select = "SELECT FROM d(" + std::to_string(at) + ":1:1:1) INTO MEMORY 0";
            ASSERT_EQ(run(select), 0) << select;
            EXPECT_EQ(value, at * 10) << select;
            EXPECT_EQ(_ormak_get_last_data_count(), 1u);
        }
        // A statement that fails does so the same way from a kept tree.
        EXPECT_EQ(refuse("SELECT FROM d(12:1:1:1) INTO MEMORY 0"), refuse("SELECT FROM d(13:1:1:1) INTO MEMORY 0"));
        EXPECT_FALSE(said.empty());
        EXPECT_EQ(ormak_error_get_line(), -1);
        EXPECT_EQ(ormak_error_get_position(), -1);
    }
    ormak_variable_unregister(&value);

    // A transient variable that received results is gone after every run, with the word of
    // a binding telling so each time.
    const char *into_transient = "SELECT FROM d(2:1:1:1) INTO MEMORY 0";
    for (int again = 0; again < 3; again++) {
        ASSERT_EQ(ormak_variable_transient_register(&value), 0);
        EXPECT_EQ(_ormak_execute(into_transient, (int)strlen(into_transient), 4), (1 << 8) | (1 << 9));
        EXPECT_LT(ormak_variable_get_number(&value), 0);
    }

    // The trace is the same from a fresh and from a kept tree.
    ASSERT_EQ(run("SET DEBUG ENABLE"), 0);
    std::string traces[2];
    for (std::string &trace : traces) {
        testing::internal::CaptureStdout();
        EXPECT_EQ(run("SHOW DATA TYPE d"), 0);
        trace = testing::internal::GetCapturedStdout();
    }
    ASSERT_EQ(run("SET DEBUG DISABLE"), 0);
    EXPECT_NE(traces[0].find("FUNCTION CALL <ormak_show_data_type>"), std::string::npos);
    EXPECT_EQ(traces[0], traces[1]);

    // Digits in quoted names, or run into a name, are not numbers of the statement.
    for (const char *name : {"\"q1\"", "\"q22\"", "n1", "n22", "\"7\"", "\"77\""})
        EXPECT_EQ(run(std::string("CREATE GROUP ") + name), 0) << name;
    for (const char *name : {"\"q1\"", "\"q22\"", "n1", "n22", "\"7\"", "\"77\""})
        EXPECT_EQ(run(std::string("SHOW TYPE ") + name), 0) << name;

    // More scripts than are kept, then the first again; and the same with nothing kept.
    for (int kept : {16, 0}) {
        int before = _ormak_set_script_cache(kept);
        for (int i = 0; i < 40; i++) EXPECT_EQ(run("SHOW TYPE g" + std::to_string(i)), ORMAK_ERROR_NOT_FOUND);
        ASSERT_EQ(ormak_variable_register(&value), 0);
        EXPECT_EQ(run("SELECT FROM d(4:1:1:1) INTO MEMORY 0"), 0);
        EXPECT_EQ(value, 40);
        ormak_variable_unregister(&value);
        _ormak_set_script_cache(before);
    }
}
