#include "Recognizers.h"

#include <stdlib.h>

#include "OrmakLexer.h"
#include "OrmakParser.h"
#include "../OrmakPrivateStructures.h"

namespace ormak {

namespace {

pANTLR3_INPUT_STREAM input = nullptr;
pOrmakLexer lexer = nullptr;
pANTLR3_COMMON_TOKEN_STREAM stream = nullptr;
pOrmakParser parser = nullptr;
/* Strings of the input's factory made with the recognizers (the input's name); the rest
   belong to one script. */
ANTLR3_UINT32 lasting_strings = 0;
/* Whether a script has used the recognizers since they were last reset. */
bool used = false;

void free_recognizers() {
    if (parser) parser->free(parser);
    if (stream) stream->free(stream);
    if (lexer) lexer->free(lexer);
    if (input) input->close(input);
    parser = nullptr;
    stream = nullptr;
    lexer = nullptr;
    input = nullptr;
    used = false;
}

/* Makes the recognizers on `text`, testing each as the first script of a session did. */
int make_recognizers(const char *text, int size) {
    input = antlr3StringStreamNew((pANTLR3_UINT8)text, ANTLR3_ENC_8BIT, (ANTLR3_UINT32)size, (pANTLR3_UINT8) "Ormak");
    if (input == nullptr) return ORMAK_ERROR_UNKNOWN;
    if (recognition_status != 0) return ORMAK_ERROR_PARSE;
    input->setUcaseLA(input, ANTLR3_TRUE);
    lexer = OrmakLexerNew(input);
    if (lexer == nullptr) return ORMAK_ERROR_UNKNOWN;
    if (recognition_status != 0) return ORMAK_ERROR_PARSE;
    stream = antlr3CommonTokenStreamSourceNew(1025, TOKENSOURCE(lexer));
    if (stream == nullptr) return ORMAK_ERROR_UNKNOWN;
    if (recognition_status != 0) return ORMAK_ERROR_PARSE;
    parser = OrmakParserNew(stream);
    if (parser == nullptr) return ORMAK_ERROR_UNKNOWN;
    if (recognition_status != 0) return ORMAK_ERROR_PARSE;
    lasting_strings = input->strFactory->index;
    return ORMAK_SUCCESS;
}

/* Empties a stack without freeing what it holds, which belongs to a pool. */
void empty_stack(pANTLR3_STACK stack) {
    if (stack == nullptr) return;
    while (stack->size(stack) > 0) stack->pop(stack);
}

/* Gives a vector factory's pools back to its first, as closing the factory would free them:
   each vector handed out frees what it holds, and elements that outgrew the vector. */
void reset_vectors(pANTLR3_VECTOR_FACTORY factory) {
    empty_stack(factory->freeStack);
    for (ANTLR3_INT32 pool = 0; pool <= factory->thisPool; pool++) {
        ANTLR3_UINT32 limit = pool == factory->thisPool ? factory->nextVector : ANTLR3_FACTORY_VPOOL_SIZE;
        for (ANTLR3_UINT32 i = 0; i < limit; i++) {
            pANTLR3_VECTOR vector = factory->pools[pool] + i;
            vector->free(vector);
        }
    }
    for (ANTLR3_INT32 pool = 0; pool <= factory->thisPool; pool++) {
        ANTLR3_UINT32 limit = pool == factory->thisPool ? factory->nextVector : ANTLR3_FACTORY_VPOOL_SIZE;
        for (ANTLR3_UINT32 i = 0; i < limit; i++) {
            pANTLR3_VECTOR vector = factory->pools[pool] + i;
            if (vector->factoryMade == ANTLR3_TRUE && vector->elementsSize > ANTLR3_VECTOR_INTERNAL_SIZE) {
                free(vector->elements);
                vector->elements = nullptr;
            }
        }
        if (pool > 0) {
            free(factory->pools[pool]);
            factory->pools[pool] = nullptr;
        }
    }
    factory->thisPool = 0;
    factory->nextVector = 0;
}

/* Gives the tree adaptor's node pools back to the first. Nodes own nothing but their child
   vectors, which come from the adaptor's vector factory. */
void reset_nodes(pANTLR3_BASE_TREE_ADAPTOR adaptor) {
    pANTLR3_ARBORETUM arboretum = ((pANTLR3_COMMON_TREE_ADAPTOR)adaptor->super)->arboretum;
    empty_stack(arboretum->nilStack);
    for (ANTLR3_INT32 pool = 1; pool <= arboretum->thisPool; pool++) {
        free(arboretum->pools[pool]);
        arboretum->pools[pool] = nullptr;
    }
    arboretum->thisPool = 0;
    arboretum->nextTree = 0;
    reset_vectors(arboretum->vFactory);
    adaptor->tokenFactory->reset(adaptor->tokenFactory);
}

/* Frees the strings that the last script made in the input's factory: token texts and the
   like. The vector that holds them is cut back to the lasting ones. */
void reset_strings() {
    pANTLR3_STRING_FACTORY factory = input->strFactory;
    pANTLR3_VECTOR strings = factory->strings;
    for (ANTLR3_UINT32 i = lasting_strings; i < strings->count; i++) {
        if (strings->elements[i].freeptr) strings->elements[i].freeptr(strings->elements[i].element);
        strings->elements[i].element = nullptr;
        strings->elements[i].freeptr = nullptr;
    }
    if (strings->count > lasting_strings) strings->count = lasting_strings;
    factory->index = lasting_strings;
    /* The end-of-file token may hold a text made in the factory. */
    pANTLR3_COMMON_TOKEN end = &lexer->pLexer->rec->state->tokSource->eofToken;
    end->textState = ANTLR3_TEXT_NONE;
}

/* Drops a recognizer's pending exceptions and error flags. */
void reset_state(pANTLR3_RECOGNIZER_SHARED_STATE state) {
    if (state->exception) state->exception->freeEx(state->exception);
    state->exception = nullptr;
    state->error = ANTLR3_FALSE;
    state->failed = ANTLR3_FALSE;
    state->errorRecovery = ANTLR3_FALSE;
    state->errorCount = 0;
    state->backtracking = 0;
    state->token = nullptr;
}

/* Whether the last script made the recognizers grow beyond their first pools, which the
   token factories keep when they are reset. */
bool grown() {
    pANTLR3_TOKEN_FACTORY tokens = lexer->pLexer->rec->state->tokFactory;
    pANTLR3_TOKEN_FACTORY made = parser->adaptor->tokenFactory;
    return (tokens && tokens->maxPool > 0) || (made && made->maxPool > 0) ||
           input->strFactory->strings->elementsSize > 1024 ||
           stream->tokens->elementsSize > 2048;
}

} // namespace

int parse_script(const char *text, int size, pANTLR3_BASE_TREE *tree) {
    *tree = nullptr;
    if (used) reset_recognizers();
    if (input == nullptr) {
        int status = make_recognizers(text, size);
        if (status != ORMAK_SUCCESS) {
            free_recognizers();
            return status;
        }
    } else {
        input->reuse(input, (pANTLR3_UINT8)text, (ANTLR3_UINT32)size, (pANTLR3_UINT8) "Ormak");
        lexer->pLexer->setCharStream(lexer->pLexer, input);
    }
    used = true;
    *tree = parser->script(parser).tree;
    if (*tree == nullptr) return ORMAK_ERROR_UNKNOWN;
    if (recognition_status != 0) return ORMAK_ERROR_PARSE;
    return ORMAK_SUCCESS;
}

void reset_recognizers() {
    if (!used) return;
    used = false;
    if (grown()) {
        free_recognizers();
        return;
    }
    reset_strings();
    pANTLR3_LEXER base_lexer = lexer->pLexer;
    reset_state(base_lexer->rec->state);
    base_lexer->rec->reset(base_lexer->rec);
    stream->reset(stream);
    pANTLR3_PARSER base_parser = parser->pParser;
    reset_state(base_parser->rec->state);
    base_parser->setTokenStream(base_parser, stream->tstream);
    /* Tokens that recovery from a syntax error made for missing ones. They are given their
       text in place, which would reach into the strings freed above if they were used again;
       the factory is made anew at the next such error. */
    pANTLR3_TOKEN_FACTORY missing = base_parser->rec->state->tokFactory;
    if (missing) missing->close(missing);
    base_parser->rec->state->tokFactory = nullptr;
    reset_nodes(parser->adaptor);
    reset_vectors(parser->vectors);
}

void release_recognizers() { free_recognizers(); }

} // namespace ormak
