// The session: its getters, the statement loop and the return word of bindings.
#include <string.h>

#include "OrmakTest.h"

// Runs first in this program, before any script has run.
TEST(SessionStart, GettersBeforeAnyScript) {
    EXPECT_EQ(ormak_execute_get_status(), 0);
    EXPECT_EQ(ormak_error_get_line(), -1);
    EXPECT_EQ(ormak_error_get_message(), nullptr);
    int size = 123;
    EXPECT_EQ(_ormak_error_get_message_with_size(&size), nullptr);
    EXPECT_EQ(size, 0);
    EXPECT_EQ(_ormak_get_last_data_count(), 0u);
}

using Session = OrmakTest;

TEST_F(Session, NullScriptResetsTheOutcomeOfTheLastScript) {
    EXPECT_EQ(run("DROP FILE"), ORMAK_ERROR_PARSE);
    EXPECT_NE(ormak_error_get_line(), -1);
    EXPECT_EQ(ormak_execute(nullptr), 0);
    EXPECT_EQ(ormak_execute_get_status(), 0);
    EXPECT_EQ(ormak_error_get_line(), -1);
    EXPECT_EQ(ormak_error_get_position(), -1);
    EXPECT_EQ(ormak_error_get_message(), nullptr);
}

TEST_F(Session, MessageLivesAtOneAddressAndReportsItsSize) {
    EXPECT_EQ(run("DROP FILE a.h5"), ORMAK_ERROR_NOT_FOUND);
    char *first = ormak_error_get_message();
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(run("DROP DIRECTORY bb"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(ormak_error_get_message(), first);
    EXPECT_STREQ(first, "Error when dropping directory \"bb\" as it does not exist");
    int size = 0;
    EXPECT_EQ(_ormak_error_get_message_with_size(&size), first);
    EXPECT_EQ(size, (int)strlen(first));
    // A good script empties the message.
    EXPECT_EQ(run("CREATE DIRECTORY bb"), 0);
    EXPECT_EQ(ormak_error_get_message(), nullptr);
}

TEST_F(Session, FirstFailingStatementStopsTheScriptWithoutRollback) {
    EXPECT_EQ(run("CREATE DIRECTORY one; DROP DIRECTORY missing; CREATE DIRECTORY three"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(ormak_execute_get_status(), ORMAK_ERROR_NOT_FOUND);
    EXPECT_TRUE(is_directory("one"));
    EXPECT_FALSE(exists("three"));
}

TEST_F(Session, EmptyStatementsAndTheCaseOfKeywordsAndNames) {
    EXPECT_EQ(run(""), 0);
    EXPECT_EQ(run(";;\n\n  ;  # only a comment\n"), 0);
    EXPECT_EQ(run("create directory Mixed; CrEaTe DiReCtOrY lower;"), 0);
    EXPECT_TRUE(is_directory("Mixed"));
    EXPECT_TRUE(is_directory("lower"));
    EXPECT_FALSE(exists("MIXED"));
}

TEST_F(Session, OnlyScriptSizeBytesAreRead) {
    const char *script = "CREATE DIRECTORY abc; CREATE DIRECTORY zzz";
    EXPECT_EQ(_ormak_execute(script, 20, 1), 0);
    EXPECT_TRUE(is_directory("abc"));
    EXPECT_FALSE(exists("zzz"));
    // Cut in the middle of a statement, the script ends there.
    EXPECT_EQ(_ormak_execute(script, 38, 1), ORMAK_ERROR_PARSE);
    EXPECT_EQ(message(), "Unexpected end of line (EOL)");
}

TEST_F(Session, BindingsGetAPackedReturnWord) {
    const char *script = "DROP FILE missing.h5";
    EXPECT_EQ(_ormak_execute(script, (int)strlen(script), 4), ORMAK_ERROR_NOT_FOUND & 0xFF);
    EXPECT_EQ(ormak_execute_get_status(), ORMAK_ERROR_NOT_FOUND);
    // Other languages get the status itself.
    EXPECT_EQ(_ormak_execute(script, (int)strlen(script), 64), ORMAK_ERROR_NOT_FOUND);
}
