// Parses a text with one rule of the grammar and gives the tree it yields as text, so that
// the tests can compare tree shapes with the expected ones.
#ifndef ORMAK_PARSE_RULE_H
#define ORMAK_PARSE_RULE_H

#include <gtest/gtest.h>
#include <string.h>

#include <string>
#include <vector>

#include "OrmakLexer.h"
#include "OrmakParser.h"
#include "OrmakPrivateStructures.h"

// Names a rule of the parser for parse_rule: RULE(compound).
#define ORMAK_RULE(name) [](pOrmakParser parser) { return (pANTLR3_BASE_TREE)parser->name(parser).tree; }

// Parses `text` with `rule` and hands the tree to `use` while the parser is alive, with
// whether the rule took the whole text; the tree is null if the text failed recognition.
template <typename Rule, typename Use>
void with_rule_tree(const std::string &text, Rule rule, Use use) {
    recognition_status = 0;
    pANTLR3_INPUT_STREAM input = antlr3StringStreamNew((pANTLR3_UINT8)text.c_str(), ANTLR3_ENC_8BIT,
                                                       (ANTLR3_UINT32)text.size(), (pANTLR3_UINT8) "test");
    input->setUcaseLA(input, ANTLR3_TRUE);
    pOrmakLexer lexer = OrmakLexerNew(input);
    pANTLR3_COMMON_TOKEN_STREAM stream = antlr3CommonTokenStreamSourceNew(1025, TOKENSOURCE(lexer));
    pOrmakParser parser = OrmakParserNew(stream);
    pANTLR3_BASE_TREE tree = rule(parser);
    bool whole = stream->tstream->istream->_LA(stream->tstream->istream, 1) == ANTLR3_TOKEN_EOF;
    use(recognition_status == 0 ? tree : nullptr, whole);
    parser->free(parser);
    stream->free(stream);
    lexer->free(lexer);
    input->close(input);
    recognition_status = 0;
}

// The tree of `text` read by `rule`, as "(ROOT child child)", or "ERROR" if the text failed
// recognition or the rule did not take all of it.
template <typename Rule>
std::string parse_rule(const std::string &text, Rule rule) {
    std::string result = "ERROR";
    with_rule_tree(text, rule, [&](pANTLR3_BASE_TREE tree, bool whole) {
        if (tree && whole) result = (const char *)tree->toStringTree(tree)->chars;
    });
    return result;
}

// The token types the lexer makes of `text`, hidden and skipped ones left out. A lexer
// error fails the test: the lexer's recovery may give the expected types all the same.
inline std::vector<int> lex(const std::string &text) {
    recognition_status = 0;
    pANTLR3_INPUT_STREAM input = antlr3StringStreamNew((pANTLR3_UINT8)text.c_str(), ANTLR3_ENC_8BIT,
                                                       (ANTLR3_UINT32)text.size(), (pANTLR3_UINT8) "test");
    input->setUcaseLA(input, ANTLR3_TRUE);
    pOrmakLexer lexer = OrmakLexerNew(input);
    pANTLR3_COMMON_TOKEN_STREAM stream = antlr3CommonTokenStreamSourceNew(1025, TOKENSOURCE(lexer));
    std::vector<int> types;
    for (int i = 1;; i++) {
        pANTLR3_COMMON_TOKEN token = stream->tstream->_LT(stream->tstream, i);
        if (token == nullptr || token->type == ANTLR3_TOKEN_EOF) break;
        types.push_back((int)token->type);
    }
    EXPECT_EQ(recognition_status, 0) << "lexer error in: " << text;
    stream->free(stream);
    lexer->free(lexer);
    input->close(input);
    recognition_status = 0;
    return types;
}

#endif
