/* The nodes of a recognised script's own tree (ScriptTree). They stand in for the parser's
   nodes wherever a walker reads a tree, always through TreeReader, which tells the two kinds
   apart by their first word: here the address of an entry of node_kind_table, there the address of
   the parser's own record. A node is two words, so that a long list of values costs little
   beside its text. */
#ifndef ORMAK_SCRIPT_NODE_H
#define ORMAK_SCRIPT_NODE_H

#include <antlr3.h>
#include <stdint.h>
#include <string.h>

namespace ormak {

/* A node's token type, and whether it has children. */
struct NodeKind {
    int type;
    int inner;
};

/* Token types from -1 (no token) up. */
const int kNodeTypes = 1024;
/* Leaves of each type, then nodes with children of each type. */
struct NodeKindTable {
    NodeKind kinds[2 * kNodeTypes];
};
extern const NodeKindTable node_kind_table;

struct ScriptNode;

struct InnerNode {
    const ScriptNode *children; /* `count` children, side by side */
    const char *text;
    int count;
};

struct ScriptNode {
    const NodeKind *kind;
    const void *data; /* a leaf's text (null: none), or the InnerNode of a node with children */
};

inline const NodeKind *node_kind(int type, bool inner) {
    return &node_kind_table.kinds[(inner ? kNodeTypes : 0) + (type >= -1 && type < kNodeTypes - 1 ? type + 1 : 0)];
}

inline bool is_script_node(pANTLR3_BASE_TREE node) {
    uintptr_t first;
    memcpy(&first, (const void *)node, sizeof first);
    return first - (uintptr_t)node_kind_table.kinds < sizeof node_kind_table.kinds;
}

inline const ScriptNode *as_script_node(pANTLR3_BASE_TREE node) { return (const ScriptNode *)(const void *)node; }

inline pANTLR3_BASE_TREE as_tree(const ScriptNode *node) { return (pANTLR3_BASE_TREE)(void *)node; }

inline const InnerNode *inner_of(const ScriptNode *node) {
    return node->kind->inner ? (const InnerNode *)node->data : nullptr;
}

} // namespace ormak

#endif
