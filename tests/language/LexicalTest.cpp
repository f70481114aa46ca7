// The lexical rules as a script writer meets them.
#include "OrmakTest.h"

using Lexical = OrmakTest;

// Quoted names keep everything but the quotes; line ends of both conventions end statements.
TEST_F(Lexical, QuotedNamesCommentsAndContinuedLines) {
    EXPECT_EQ(run("CREATE /* a comment\n over lines */ DIRECTORY \"with space\", \\\n \"SELECT\" # the rest\r\n"
                  "CREATE DIRECTORY ./x-1/.z\n"),
              0)
        << message();
    for (const char *name : {"with space", "SELECT", "x-1/.z"}) EXPECT_TRUE(is_directory(name)) << name;
}

// BIG, LITTLE and UNSIGNED begin two-word tokens, yet alone they are names like any other.
TEST_F(Lexical, FirstWordsOfTwoWordTokensNameDirectories) {
    EXPECT_EQ(run("CREATE DIRECTORY big ; CREATE DIRECTORY x"), 0) << message();
    EXPECT_EQ(run("CREATE DIRECTORY little, BIG\t\nCREATE DIRECTORY UNSIGNED , LITTLE"), 0) << message();
    EXPECT_EQ(run("RENAME DIRECTORY x AS Unsigned"), 0) << message();
    for (const char *name : {"big", "little", "BIG", "UNSIGNED", "LITTLE", "Unsigned"})
        EXPECT_TRUE(is_directory(name)) << name;
}
