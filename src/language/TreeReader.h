/* Reading the statement tree. Every statement root has its slots in fixed places; an
   absent clause is a slot without children. Only these few operations touch the tree. */
#ifndef ORMAK_TREE_READER_H
#define ORMAK_TREE_READER_H

#include <antlr3.h>

namespace ormak {
namespace tree {

int count(pANTLR3_BASE_TREE node);
pANTLR3_BASE_TREE child(pANTLR3_BASE_TREE node, int index);
/* The node's token type, or -1 for no node. */
int type(pANTLR3_BASE_TREE node);
/* The node's text, alive as long as the parser; null for no node. */
const char *text(pANTLR3_BASE_TREE node);

/* Slot readers of a statement root. */
pANTLR3_BASE_TREE slot(pANTLR3_BASE_TREE statement, int index);
/* 0 when the clause was written, -1 when it was left out. */
int flag(pANTLR3_BASE_TREE statement, int index);
/* Child 0 of the slot, or null when the clause was left out. */
pANTLR3_BASE_TREE list(pANTLR3_BASE_TREE statement, int index);
/* Text of child 0 of the slot, or null when the clause was left out. */
const char *name(pANTLR3_BASE_TREE statement, int index);
/* Token type of child 0 of the slot, or -1 when the clause was left out. */
int choice(pANTLR3_BASE_TREE statement, int index);

} // namespace tree
} // namespace ormak

#endif
