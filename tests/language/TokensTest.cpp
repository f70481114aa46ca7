// The vocabulary: keywords in any case, two-word tokens, numbers and names.
#include "OrmakTest.h"
#include "ParseRule.h"

using Types = std::vector<int>;

TEST(Tokens, KeywordsInAnyCase) {
    EXPECT_EQ(lex("select SELECT SeLeCt"), (Types{SELECT_KEYWORD, SELECT_KEYWORD, SELECT_KEYWORD}));
    EXPECT_EQ(lex("AT ATTRIBUTE V18 notb <>"),
              (Types{AT_KEYWORD, ATTRIBUTE_KEYWORD, VERSION_18_KEYWORD, NOTB_KEYWORD, NOT_EQUAL_KEYWORD}));
    // A keyword with more behind it is a name.
    EXPECT_EQ(lex("selected"), (Types{STRING_KEYWORD}));
}

TEST(Tokens, TwoWordTokensTakeAnyBlanks) {
    EXPECT_EQ(lex("UNSIGNED INT unsigned \t  vardouble UNSIGNED  VARCHAR"),
              (Types{UNSIGNED_INT_KEYWORD, STRING_KEYWORD, VARDOUBLE_KEYWORD, STRING_KEYWORD, VARCHAR_KEYWORD}));
    EXPECT_EQ(lex("little   endian unsigned\ttinyint,BIG ENDIAN;"),
              (Types{LITTLE_ENDIAN_KEYWORD, UNSIGNED_TINYINT_KEYWORD, COMMA_KEYWORD, BIG_ENDIAN_KEYWORD,
                     SEMICOLON_KEYWORD}));
}

TEST(Tokens, FirstWordOfATwoWordTokenIsANameOtherwise) {
    for (std::string word : {"big", "LITTLE", "unsigned"}) {
        EXPECT_EQ(lex(word + " \t"), (Types{STRING_KEYWORD})) << word;
        EXPECT_EQ(lex(word + " ;"), (Types{STRING_KEYWORD, SEMICOLON_KEYWORD})) << word;
        EXPECT_EQ(lex(word + " AS"), (Types{STRING_KEYWORD, AS_KEYWORD})) << word;
    }
    // A second word that only begins a longer name, or a word that is no second word.
    EXPECT_EQ(lex("big endianness_x little  endian2 unsigned integer UNSIGNED varint.h5 unsigned var"),
              Types(10, STRING_KEYWORD));
    // The names keep their case, and the two-word token behind them its blanks.
    EXPECT_EQ(parse_rule("COMPOUND(Unsigned AS UNSIGNED  INT, big AS unsigned\tvarint, LITTLE AS INT)",
                         ORMAK_RULE(compound)),
              "(LIST Unsigned AS UNSIGNED  INT , big AS unsigned\tvarint , LITTLE AS INT)");
}

TEST(Tokens, NumbersNamesAndWhatIsSkipped) {
    EXPECT_EQ(lex("-5 1.5 .5 1e-3 0x1F"), (Types{INTEGER_NUMBER_KEYWORD, FLOAT_NUMBER_KEYWORD, FLOAT_NUMBER_KEYWORD,
                                                 FLOAT_NUMBER_KEYWORD, HEXADECIMAL_NUMBER_KEYWORD}));
    // Signs stay in the text of the token.
    EXPECT_EQ(parse_rule("+5", ORMAK_RULE(value)), "+5");
    EXPECT_EQ(lex("a # comment\nb /* one\ntwo */ c \\\n d ; e\r\nf"),
              (Types{STRING_KEYWORD, NEW_LINE_KEYWORD, STRING_KEYWORD, STRING_KEYWORD, STRING_KEYWORD, SEMICOLON_KEYWORD,
                     STRING_KEYWORD, NEW_LINE_KEYWORD, STRING_KEYWORD}));
    EXPECT_EQ(lex("./x-1 \"two words\" @"), (Types{STRING_KEYWORD, STRING_KEYWORD, UNKNOWN_KEYWORD}));
}
