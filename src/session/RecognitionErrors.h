/* Syntax errors of the lexer and the parser, reported into the session. Included by the
   generated C recognizers, so it stays plain C. */
#ifndef ORMAK_RECOGNITION_ERRORS_H
#define ORMAK_RECOGNITION_ERRORS_H

#include <antlr3.h>

#ifdef __cplusplus
extern "C" {
#endif

void _ormak_lexer_recognition_error(pANTLR3_BASE_RECOGNIZER recognizer, pANTLR3_UINT8 *token_list);
void _ormak_parser_recognition_error(pANTLR3_BASE_RECOGNIZER recognizer, pANTLR3_UINT8 *token_list);

#ifdef __cplusplus
}
#endif

#endif
