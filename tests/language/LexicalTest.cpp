// The lexical rules as a script writer meets them.
#include "OrmakTest.h"

using Lexical = OrmakTest;

TEST_F(Lexical, QuotedNamesKeepEverythingButTheQuotes) {
    EXPECT_EQ(run("CREATE DIRECTORY \"with space\", \"SELECT\", \"1st\""), 0);
    EXPECT_TRUE(is_directory("with space"));
    EXPECT_TRUE(is_directory("SELECT"));
    EXPECT_TRUE(is_directory("1st"));
}

// Line ends of both conventions end statements.
TEST_F(Lexical, CommentsAndContinuedLinesAreInvisible) {
    EXPECT_EQ(run("CREATE /* a comment\n over lines */ DIRECTORY a, \\\n b # the rest\r\nCREATE DIRECTORY c\n"), 0);
    EXPECT_TRUE(is_directory("a"));
    EXPECT_TRUE(is_directory("b"));
    EXPECT_TRUE(is_directory("c"));
}

// BIG, LITTLE and UNSIGNED begin two-word tokens, yet alone they are names like any other.
TEST_F(Lexical, FirstWordsOfTwoWordTokensNameDirectories) {
    EXPECT_EQ(run("CREATE DIRECTORY big ; CREATE DIRECTORY x"), 0) << message();
    EXPECT_EQ(run("CREATE DIRECTORY unsigned ; CREATE DIRECTORY y"), 0) << message();
    EXPECT_EQ(run("CREATE DIRECTORY little, BIG\t\nCREATE DIRECTORY UNSIGNED , LITTLE"), 0) << message();
    EXPECT_EQ(run("RENAME DIRECTORY x AS Unsigned; RENAME DIRECTORY Unsigned AS z"), 0) << message();
    for (const char *name : {"big", "unsigned", "y", "little", "BIG", "UNSIGNED", "LITTLE", "z"})
        EXPECT_TRUE(is_directory(name)) << name;
    EXPECT_FALSE(exists("x") || exists("Unsigned"));
}

TEST_F(Lexical, UnquotedNamesMayHoldPathSigns) {
    EXPECT_EQ(run("CREATE DIRECTORY ./x-1/y_2/.z"), 0);
    EXPECT_TRUE(is_directory("x-1/y_2/.z"));
}
