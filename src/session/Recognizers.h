/* The input stream, lexer, token stream and parser of the session. They are made for the
   first script and then set onto each new one: making them costs far more than recognising a
   short statement, chiefly in the zeroed pools of tokens and nodes that they allocate. */
#ifndef ORMAK_RECOGNIZERS_H
#define ORMAK_RECOGNIZERS_H

#include <antlr3.h>

namespace ormak {

/* Parses `text`, `size` bytes with a zero byte behind them. Returns 0 and the parser's tree,
   which lives until reset_recognizers; -1 after a recognition error, which the error
   functions have reported; -99 when a recognizer could not be made or gave no tree. */
int parse_script(const char *text, int size, pANTLR3_BASE_TREE *tree);

/* Makes the recognizers ready for the next script: everything that the last one left in
   them is gone, its tree and texts too. Recognizers that a long script made large are freed
   and made anew for the next script. */
void reset_recognizers();

/* Frees the recognizers, at unload. */
void release_recognizers();

} // namespace ormak

#endif
