// The vocabulary: keywords in any case, two-word tokens, numbers and names.
#include "OrmakTest.h"
#include "ParseRule.h"

using Types = std::vector<int>;

TEST(Tokens, KeywordsInAnyCase) {
    EXPECT_EQ(lex("select SELECT SeLeCt"), (Types{SELECT_KEYWORD, SELECT_KEYWORD, SELECT_KEYWORD}));
    EXPECT_EQ(lex("AT ATTRIBUTE data dataset"), (Types{AT_KEYWORD, ATTRIBUTE_KEYWORD, DATA_KEYWORD, DATASET_KEYWORD}));
    EXPECT_EQ(lex("V18 or AND xor NOTA notb = <>"),
              (Types{VERSION_18_KEYWORD, OR_KEYWORD, AND_KEYWORD, XOR_KEYWORD, NOTA_KEYWORD, NOTB_KEYWORD,
                     EQUAL_KEYWORD, NOT_EQUAL_KEYWORD}));
    // A keyword with more behind it is a name.
    EXPECT_EQ(lex("selected"), (Types{STRING_KEYWORD}));
}

TEST(Tokens, TwoWordTokensTakeAnyBlanks) {
    EXPECT_EQ(lex("UNSIGNED INT unsigned \t  vardouble UNSIGNED  VARCHAR"),
              (Types{UNSIGNED_INT_KEYWORD, STRING_KEYWORD, VARDOUBLE_KEYWORD, STRING_KEYWORD, VARCHAR_KEYWORD}));
    EXPECT_EQ(lex("little   endian unsigned tinyint"), (Types{LITTLE_ENDIAN_KEYWORD, UNSIGNED_TINYINT_KEYWORD}));
    const std::pair<const char *, int> two_word_tokens[] = {{"UNSIGNED VARBIGINT", UNSIGNED_VARBIGINT_KEYWORD},
                                                            {"BIG ENDIAN", BIG_ENDIAN_KEYWORD}};
    for (const auto &[words, type] : two_word_tokens) {
        for (const char *blanks : {" ", "   ", "\t", " \t\t "}) {
            std::string token = words;
            token.replace(token.find(' '), 1, blanks);
            std::string lower = token;
            for (char &c : lower) c = (char)tolower(c);
            EXPECT_EQ(lex(token), (Types{type})) << token;
            EXPECT_EQ(lex(lower + "," + token + ";"), (Types{type, COMMA_KEYWORD, type, SEMICOLON_KEYWORD})) << token;
        }
    }
}

TEST(Tokens, FirstWordOfATwoWordTokenIsANameOtherwise) {
    for (std::string word : {"big", "LITTLE", "unsigned"}) {
        EXPECT_EQ(lex(word), (Types{STRING_KEYWORD})) << word;
        EXPECT_EQ(lex(word + " \t"), (Types{STRING_KEYWORD})) << word;
        EXPECT_EQ(lex(word + " ;"), (Types{STRING_KEYWORD, SEMICOLON_KEYWORD})) << word;
        EXPECT_EQ(lex(word + "\tx"), (Types{STRING_KEYWORD, STRING_KEYWORD})) << word;
        EXPECT_EQ(lex(word + " , " + word), (Types{STRING_KEYWORD, COMMA_KEYWORD, STRING_KEYWORD})) << word;
        EXPECT_EQ(lex(word + " AS"), (Types{STRING_KEYWORD, AS_KEYWORD})) << word;
    }
    // A second word that only begins a longer name, or a word that is no second word.
    EXPECT_EQ(lex("big endianness_x little  endian2 unsigned integer UNSIGNED varint.h5 unsigned var"),
              Types(10, STRING_KEYWORD));
    EXPECT_EQ(lex("unsigned\tvarchar big int little endianness"),
              (Types{STRING_KEYWORD, VARCHAR_KEYWORD, STRING_KEYWORD, INT_KEYWORD, STRING_KEYWORD,
                     ENDIANNESS_KEYWORD}));
    // The names keep their case, and the two-word token behind them its blanks.
    EXPECT_EQ(parse_rule("COMPOUND(Unsigned AS UNSIGNED  INT, big AS unsigned\tvarint, LITTLE AS INT)",
                         ORMAK_RULE(compound)),
              "(LIST Unsigned AS UNSIGNED  INT , big AS unsigned\tvarint , LITTLE AS INT)");
}

TEST(Tokens, Numbers) {
    EXPECT_EQ(lex("5 -5 +5"), (Types{INTEGER_NUMBER_KEYWORD, INTEGER_NUMBER_KEYWORD, INTEGER_NUMBER_KEYWORD}));
    EXPECT_EQ(lex("1.5 -0.25 .5 5. 1e-3 2.5E+10"),
              (Types{FLOAT_NUMBER_KEYWORD, FLOAT_NUMBER_KEYWORD, FLOAT_NUMBER_KEYWORD, FLOAT_NUMBER_KEYWORD,
                     FLOAT_NUMBER_KEYWORD, FLOAT_NUMBER_KEYWORD}));
    EXPECT_EQ(lex("0x1F 0X10 0xab"),
              (Types{HEXADECIMAL_NUMBER_KEYWORD, HEXADECIMAL_NUMBER_KEYWORD, HEXADECIMAL_NUMBER_KEYWORD}));
    // Signs stay in the text of the token.
    EXPECT_EQ(parse_rule("+5", ORMAK_RULE(value)), "+5");
}

TEST(Tokens, NamesTextsAndWhatIsSkipped) {
    EXPECT_EQ(lex("a.h5 /g/d ./x-1 _y \"two words\" \"\""),
              (Types{STRING_KEYWORD, STRING_KEYWORD, STRING_KEYWORD, STRING_KEYWORD, STRING_KEYWORD, STRING_KEYWORD}));
    EXPECT_EQ(lex("a # comment\nb /* one\ntwo */ c \\\n d ; e\r\nf"),
              (Types{STRING_KEYWORD, NEW_LINE_KEYWORD, STRING_KEYWORD, STRING_KEYWORD, STRING_KEYWORD, SEMICOLON_KEYWORD,
                     STRING_KEYWORD, NEW_LINE_KEYWORD, STRING_KEYWORD}));
    EXPECT_EQ(lex("( ) , : @"), (Types{LEFT_PARENTHESIS_KEYWORD, RIGHT_PARENTHESIS_KEYWORD, COMMA_KEYWORD, COLON_KEYWORD,
                                      UNKNOWN_KEYWORD}));
}
