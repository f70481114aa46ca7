/* The one road from script text to effect: recognise the whole script, then run its
   statements in order and stop at the first that fails. */
#include <string>

#include "OrmakLexer.h"
#include "OrmakParser.h"
#include "../OrmakPrivateStructures.h"
#include "../language/StatementReaders.h"
#include "../language/TreeReader.h"

namespace {

/* Programming languages whose bindings take the packed return word. */
bool packs_result(int programming_language) {
    return programming_language == 4 || programming_language == 8 || programming_language == 16;
}

/* Unregisters the transient variables that received results; returns their bits. */
int settle_variables() {
    int bits = 0;
    for (int number = 0; number < ORMAK_VARIABLE_COUNT; number++) {
        if (variable_list[number].transient == 0 && variable_list[number].used == 0) {
            _ormak_variable_unregister(number);
            bits |= 1 << (9 + number);
        }
    }
    if (bits) bits |= 1 << 8;
    return bits;
}

/* Runs the statements of a recognised script. */
void run(pANTLR3_BASE_TREE tree, int programming_language) {
    int statements = ormak::tree::count(tree);
    for (int i = 0; i < statements; i++) {
        if (ormak::is_unknown_statement(ormak::tree::child(tree, i))) {
            execute_status = ORMAK_ERROR_PARSE;
            return;
        }
    }
    /* An empty script does nothing and succeeds. */
    if (statements == 0) execute_status = ORMAK_SUCCESS;
    for (int i = 0; i < statements; i++) {
        execute_status = ormak::dispatch(ormak::tree::child(tree, i), programming_language);
        if (execute_status != ORMAK_SUCCESS) return;
    }
}

} // namespace

extern "C" int _ormak_execute(const char *script, int script_size, int programming_language) {
    error_line = -1;
    error_position = -1;
    error_message[0] = '\0';
    last_data_count = 0;
    recognition_status = 0;

    pANTLR3_INPUT_STREAM input = nullptr;
    pOrmakLexer lexer = nullptr;
    pANTLR3_COMMON_TOKEN_STREAM stream = nullptr;
    pOrmakParser parser = nullptr;
    std::string bounded_script;

    if (script == nullptr || script_size < 0) {
        execute_status = ORMAK_ERROR_UNKNOWN;
        goto clean_up;
    }
    /* Syntax errors tell the end of the script by the zero byte behind it. */
    if (script[script_size] != '\0') {
        bounded_script.assign(script, (size_t)script_size);
        script = bounded_script.c_str();
    }
    input = antlr3StringStreamNew((pANTLR3_UINT8)script, ANTLR3_ENC_8BIT, (ANTLR3_UINT32)script_size,
                                  (pANTLR3_UINT8) "Ormak");
    if (input == nullptr) { execute_status = ORMAK_ERROR_UNKNOWN; goto clean_up; }
    if (recognition_status != 0) { execute_status = ORMAK_ERROR_PARSE; goto clean_up; }
    input->setUcaseLA(input, ANTLR3_TRUE);

    lexer = OrmakLexerNew(input);
    if (lexer == nullptr) { execute_status = ORMAK_ERROR_UNKNOWN; goto clean_up; }
    if (recognition_status != 0) { execute_status = ORMAK_ERROR_PARSE; goto clean_up; }

    stream = antlr3CommonTokenStreamSourceNew(1025, TOKENSOURCE(lexer));
    if (stream == nullptr) { execute_status = ORMAK_ERROR_UNKNOWN; goto clean_up; }
    if (recognition_status != 0) { execute_status = ORMAK_ERROR_PARSE; goto clean_up; }

    parser = OrmakParserNew(stream);
    if (parser == nullptr) { execute_status = ORMAK_ERROR_UNKNOWN; goto clean_up; }
    if (recognition_status != 0) { execute_status = ORMAK_ERROR_PARSE; goto clean_up; }

    {
        pANTLR3_BASE_TREE tree = parser->script(parser).tree;
        if (tree == nullptr) { execute_status = ORMAK_ERROR_UNKNOWN; goto clean_up; }
        if (recognition_status != 0) { execute_status = ORMAK_ERROR_PARSE; goto clean_up; }
        run(tree, programming_language);
    }

clean_up:
    if (parser) parser->free(parser);
    if (stream) stream->free(stream);
    if (lexer) lexer->free(lexer);
    if (input) input->close(input);

    int variable_bits = settle_variables();
    if (packs_result(programming_language)) return (execute_status & 0xFF) | variable_bits;
    return execute_status;
}
