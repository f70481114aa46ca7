/* Turns the runtime's recognition exceptions into the session's line, position and message.
   Only the first error of a script counts; nothing is printed. */
#include <stdio.h>

#include "RecognitionErrors.h"
#include "OrmakParser.h"
#include "../OrmakPrivateStructures.h"

namespace {

/* Tokens that the language does not know, as opposed to known words in the wrong place. */
bool is_literal(pANTLR3_COMMON_TOKEN token) {
    switch (token->type) {
    case INTEGER_NUMBER_KEYWORD:
    case FLOAT_NUMBER_KEYWORD:
    case HEXADECIMAL_NUMBER_KEYWORD:
    case STRING_KEYWORD:
    case UNKNOWN_KEYWORD:
        return true;
    default:
        return false;
    }
}

bool is_end(pANTLR3_COMMON_TOKEN token) { return token == nullptr || token->type == ANTLR3_TOKEN_EOF; }

/* Line 1 counts its positions from 2, every other line from 1. */
int position_base() { return error_line == 1 ? 2 : 1; }

const char *token_text(pANTLR3_COMMON_TOKEN token) {
    pANTLR3_STRING text = token->getText(token);
    return text && text->chars ? (const char *)text->chars : "";
}

/* The column just after a token. */
int position_after(pANTLR3_COMMON_TOKEN token) {
    return position_base() + (int)token->getCharPositionInLine(token) +
           (int)(token->getStopIndex(token) - token->getStartIndex(token)) + 1;
}

void report_end_of_line(int position) {
    error_position = position;
    snprintf(error_message, sizeof error_message, "Unexpected end of line (EOL)");
}

/* A token where the grammar wanted something else: the end of the line, a word the
   language does not know, or a known word in the wrong place. */
void report_token(pANTLR3_COMMON_TOKEN token) {
    if (token->type == NEW_LINE_KEYWORD) {
        report_end_of_line(position_base() + (int)token->getCharPositionInLine(token));
        return;
    }
    error_position = position_base() + (int)token->getCharPositionInLine(token);
    snprintf(error_message, sizeof error_message,
             is_literal(token) ? "Unknown token \"%s\"" : "Unexpected token \"%s\"", token_text(token));
}

/* The input ended where more was wanted: the column just after the last token read. */
void report_end_of_input(pANTLR3_TOKEN_STREAM stream) {
    pANTLR3_COMMON_TOKEN last = stream->_LT(stream, -1);
    report_end_of_line(last && !is_end(last) ? position_after(last) : position_base());
}

/* Reports for the token behind the one at the decision, which may itself be fine. */
void report_lookahead(pANTLR3_TOKEN_STREAM stream, pANTLR3_COMMON_TOKEN token0, pANTLR3_COMMON_TOKEN token1) {
    if (is_end(token0)) {
        report_end_of_input(stream);
    } else if (is_end(token1)) {
        report_end_of_line(position_after(token0));
    } else {
        report_token(token1);
    }
}

bool report_other(ANTLR3_UINT32 type, int position) {
    const char *message = nullptr;
    switch (type) {
    case ANTLR3_MISMATCHED_TOKEN_EXCEPTION: message = "Mismatched token exception"; break;
    case ANTLR3_EARLY_EXIT_EXCEPTION: message = "Early exit exception"; break;
    case ANTLR3_FAILED_PREDICATE_EXCEPTION: message = "Failed predicate exception"; break;
    case ANTLR3_MISMATCHED_TREE_NODE_EXCEPTION: message = "Mismatched tree node exception"; break;
    default:
        snprintf(error_message, sizeof error_message, "Unknown exception");
        return false;
    }
    error_position = position;
    snprintf(error_message, sizeof error_message, "%s", message);
    return true;
}

} // namespace

extern "C" void _ormak_lexer_recognition_error(pANTLR3_BASE_RECOGNIZER recognizer, pANTLR3_UINT8 *) {
    if (recognition_status != 0) return;
    pANTLR3_EXCEPTION exception = recognizer->state->exception;
    recognition_status = -1;
    if (exception == nullptr) return;
    error_line = (int)exception->line;
    int position = position_base() + (int)exception->charPositionInLine;

    switch (exception->type) {
    case ANTLR3_RECOGNITION_EXCEPTION:
    case ANTLR3_NO_VIABLE_ALT_EXCEPTION:
    case ANTLR3_MISMATCHED_SET_EXCEPTION:
    case ANTLR3_REWRITE_EARLY_EXCEPTION:
    case ANTLR3_UNWANTED_TOKEN_EXCEPTION:
    case ANTLR3_MISSING_TOKEN_EXCEPTION: {
        error_position = position;
        /* The runtime's indexes are addresses into the script text. */
        pANTLR3_UINT8 at = (pANTLR3_UINT8)exception->index;
        if (at == nullptr || *at == 0) {
            snprintf(error_message, sizeof error_message, "Unexpected end of line (EOL)");
        } else {
            pANTLR3_UINT8 start = (pANTLR3_UINT8)recognizer->state->tokenStartCharIndex;
            snprintf(error_message, sizeof error_message, "Unexpected token \"%c\"", start ? *start : *at);
        }
        break;
    }
    default:
        report_other(exception->type, position);
    }
}

extern "C" void _ormak_parser_recognition_error(pANTLR3_BASE_RECOGNIZER recognizer, pANTLR3_UINT8 *) {
    if (recognition_status != 0) return;
    pANTLR3_EXCEPTION exception = recognizer->state->exception;
    recognition_status = -1;
    if (exception == nullptr) return;
    error_line = (int)exception->line;

    pANTLR3_PARSER parser = (pANTLR3_PARSER)recognizer->super;
    pANTLR3_TOKEN_STREAM stream = parser->tstream;
    pANTLR3_COMMON_TOKEN token0 = (pANTLR3_COMMON_TOKEN)exception->token;

    switch (exception->type) {
    case ANTLR3_RECOGNITION_EXCEPTION:
    case ANTLR3_MISMATCHED_SET_EXCEPTION:
    case ANTLR3_REWRITE_EARLY_EXCEPTION:
    case ANTLR3_UNWANTED_TOKEN_EXCEPTION:
        if (is_end(token0)) {
            report_end_of_input(stream);
        } else {
            report_token(token0);
        }
        break;
    case ANTLR3_NO_VIABLE_ALT_EXCEPTION:
        if (!is_end(token0) && is_literal(token0)) {
            report_token(token0);
        } else {
            report_lookahead(stream, token0, stream->_LT(stream, 2));
        }
        break;
    case ANTLR3_MISSING_TOKEN_EXCEPTION: {
        /* token0 is the runtime's stand-in for the missing token; the input's real
           end is behind the last token read. */
        pANTLR3_COMMON_TOKEN token1 = stream->_LT(stream, 1);
        if (is_end(token1)) report_end_of_input(stream);
        else report_token(token1);
        break;
    }
    default:
        report_other(exception->type, token0 ? position_base() + (int)token0->getCharPositionInLine(token0) : error_position);
    }
}
