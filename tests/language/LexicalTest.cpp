// The lexical rules as a script writer meets them.
#include "OrmakTest.h"

using Lexical = OrmakTest;

TEST_F(Lexical, QuotedNamesKeepEverythingButTheQuotes) {
    EXPECT_EQ(run("CREATE DIRECTORY \"with space\", \"SELECT\", \"1st\""), 0);
    EXPECT_TRUE(is_directory("with space"));
    EXPECT_TRUE(is_directory("SELECT"));
    EXPECT_TRUE(is_directory("1st"));
}

TEST_F(Lexical, CommentsAndContinuedLinesAreInvisible) {
    EXPECT_EQ(run("CREATE /* a comment\n over lines */ DIRECTORY a, \\\n b # the rest\nCREATE DIRECTORY c"), 0);
    EXPECT_TRUE(is_directory("a"));
    EXPECT_TRUE(is_directory("b"));
    EXPECT_TRUE(is_directory("c"));
}

TEST_F(Lexical, LineEndsInBothConventionsEndStatements) {
    EXPECT_EQ(run("CREATE DIRECTORY a\r\nCREATE DIRECTORY b\n"), 0);
    EXPECT_TRUE(is_directory("a"));
    EXPECT_TRUE(is_directory("b"));
}

TEST_F(Lexical, UnquotedNamesMayHoldPathSigns) {
    EXPECT_EQ(run("CREATE DIRECTORY ./x-1/y_2/.z"), 0);
    EXPECT_TRUE(is_directory("x-1/y_2/.z"));
}
