// The session: its getters, the statement loop and the return word of bindings.
#include <string.h>

#include "OrmakTest.h"

// Runs first in this program, before any script has run.
TEST(SessionStart, GettersBeforeAnyScript) {
    EXPECT_EQ(ormak_execute_get_status(), 0);
    EXPECT_EQ(ormak_error_get_line(), -1);
    EXPECT_EQ(ormak_error_get_position(), -1);
    EXPECT_EQ(ormak_error_get_message(), nullptr);
    int size = 123;
    EXPECT_EQ(_ormak_error_get_message_with_size(&size), nullptr);
    EXPECT_EQ(size, 0);
    EXPECT_EQ(_ormak_get_last_data_count(), 0u);
    // Run without mpirun the process is a world of one.
    EXPECT_EQ(ormak_mpi_get_size(), 1);
    EXPECT_EQ(ormak_mpi_get_rank(), 0);
    EXPECT_STREQ(_ormak_get_compiler(), "GCC 4.9");
    EXPECT_STREQ(_ormak_get_architecture(), "64 bit");
}

using Session = OrmakTest;

TEST_F(Session, NullScriptResetsTheOutcomeOfTheLastScript) {
    EXPECT_EQ(run("DROP FILE missing.h5"), ORMAK_ERROR_NOT_FOUND);
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
    EXPECT_STREQ(first, "Error when dropping file \"a.h5\" as it does not exist");
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
    EXPECT_EQ(ormak_error_get_line(), -1);
}

TEST_F(Session, SyntaxErrorAnywhereStopsEveryStatement) {
    EXPECT_EQ(run("CREATE DIRECTORY one\nCREATE DIRECTORY"), ORMAK_ERROR_PARSE);
    EXPECT_FALSE(exists("one"));
    EXPECT_GE(ormak_error_get_line(), 1);
    EXPECT_NE(ormak_error_get_message(), nullptr);
}

TEST_F(Session, EmptyStatementsDoNothing) {
    EXPECT_EQ(run("DROP FILE missing.h5"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(run(""), 0);
    EXPECT_EQ(ormak_execute_get_status(), 0);
    EXPECT_EQ(run(";;\n\n  ;  # only a comment\n"), 0);
    EXPECT_EQ(run("CREATE DIRECTORY a;"), 0);
    EXPECT_TRUE(is_directory("a"));
}

TEST_F(Session, KeywordsInAnyCaseAndNamesKeepTheirCase) {
    EXPECT_EQ(run("create directory Mixed; CrEaTe DiReCtOrY lower"), 0);
    EXPECT_TRUE(is_directory("Mixed"));
    EXPECT_TRUE(is_directory("lower"));
    EXPECT_FALSE(exists("MIXED"));
}

TEST_F(Session, OnlyScriptSizeBytesAreRead) {
    const char *script = "CREATE DIRECTORY abc; CREATE DIRECTORY zzz";
    // The text after the first statement is not part of the script.
    EXPECT_EQ(_ormak_execute(script, 20, 1), 0);
    EXPECT_TRUE(is_directory("abc"));
    EXPECT_FALSE(exists("zzz"));
    // Cut in the middle of a statement, the script ends there.
    EXPECT_EQ(_ormak_execute(script, 38, 1), ORMAK_ERROR_PARSE);
    EXPECT_EQ(message(), "Unexpected end of line (EOL)");
}

TEST_F(Session, BindingsGetAPackedReturnWord) {
    const char *script = "DROP FILE missing.h5";
    for (int language : {4, 8, 16}) {
        EXPECT_EQ(_ormak_execute(script, (int)strlen(script), language), ORMAK_ERROR_NOT_FOUND & 0xFF);
        EXPECT_EQ(ormak_execute_get_status(), ORMAK_ERROR_NOT_FOUND);
    }
    // Other languages get the status itself.
    EXPECT_EQ(_ormak_execute(script, (int)strlen(script), 64), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(_ormak_execute("CREATE DIRECTORY x", 18, 4), 0);
}
