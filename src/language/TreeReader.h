/* Reading the statement tree. Every statement root has its slots in fixed places; an
   absent clause is a slot without children. Only these few operations touch the tree, whose
   nodes are those of a ScriptTree or, where a caller parsed for itself, the parser's own. */
#ifndef ORMAK_TREE_READER_H
#define ORMAK_TREE_READER_H

#include <antlr3.h>

#include "ScriptNode.h"

namespace ormak {
namespace tree {

/* The same for the parser's own nodes. */
int parser_count(pANTLR3_BASE_TREE node);
pANTLR3_BASE_TREE parser_child(pANTLR3_BASE_TREE node, int index);
int parser_type(pANTLR3_BASE_TREE node);
const char *parser_text(pANTLR3_BASE_TREE node);

inline int count(pANTLR3_BASE_TREE node) {
    if (node == nullptr) return 0;
    if (!is_script_node(node)) return parser_count(node);
    const InnerNode *inner = inner_of(as_script_node(node));
    return inner ? inner->count : 0;
}

inline pANTLR3_BASE_TREE child(pANTLR3_BASE_TREE node, int index) {
    if (node == nullptr || index < 0) return nullptr;
    if (!is_script_node(node)) return parser_child(node, index);
    const InnerNode *inner = inner_of(as_script_node(node));
    return inner && index < inner->count ? as_tree(&inner->children[index]) : nullptr;
}

/* The node's token type, or -1 for no node. */
inline int type(pANTLR3_BASE_TREE node) {
    if (node == nullptr) return -1;
    if (!is_script_node(node)) return parser_type(node);
    return as_script_node(node)->kind->type;
}

/* The node's text, alive as long as the script's tree; null for no node. */
inline const char *text(pANTLR3_BASE_TREE node) {
    if (node == nullptr) return nullptr;
    if (!is_script_node(node)) return parser_text(node);
    const ScriptNode *script = as_script_node(node);
    const InnerNode *inner = inner_of(script);
    return inner ? inner->text : (const char *)script->data;
}

/* Slot readers of a statement root. */
inline pANTLR3_BASE_TREE slot(pANTLR3_BASE_TREE statement, int index) { return child(statement, index); }
/* 0 when the clause was written, -1 when it was left out. */
inline int flag(pANTLR3_BASE_TREE statement, int index) { return count(slot(statement, index)) > 0 ? 0 : -1; }
/* Child 0 of the slot, or null when the clause was left out. */
inline pANTLR3_BASE_TREE list(pANTLR3_BASE_TREE statement, int index) { return child(slot(statement, index), 0); }
/* Text of child 0 of the slot, or null when the clause was left out. */
inline const char *name(pANTLR3_BASE_TREE statement, int index) { return text(list(statement, index)); }
/* Token type of child 0 of the slot, or -1 when the clause was left out. */
inline int choice(pANTLR3_BASE_TREE statement, int index) {
    pANTLR3_BASE_TREE first = list(statement, index);
    return first ? type(first) : -1;
}

} // namespace tree
} // namespace ormak

#endif
