#include "TreeReader.h"

namespace ormak {
namespace tree {

int count(pANTLR3_BASE_TREE node) { return node ? (int)node->getChildCount(node) : 0; }

pANTLR3_BASE_TREE child(pANTLR3_BASE_TREE node, int index) {
    if (node == nullptr || index < 0 || index >= count(node)) return nullptr;
    return (pANTLR3_BASE_TREE)node->getChild(node, (ANTLR3_UINT32)index);
}

int type(pANTLR3_BASE_TREE node) {
    if (node == nullptr) return -1;
    pANTLR3_COMMON_TOKEN token = node->getToken(node);
    return token ? (int)token->type : -1;
}

const char *text(pANTLR3_BASE_TREE node) {
    if (node == nullptr) return nullptr;
    pANTLR3_STRING string = node->getText(node);
    return string ? (const char *)string->chars : nullptr;
}

pANTLR3_BASE_TREE slot(pANTLR3_BASE_TREE statement, int index) { return child(statement, index); }

int flag(pANTLR3_BASE_TREE statement, int index) { return count(slot(statement, index)) > 0 ? 0 : -1; }

pANTLR3_BASE_TREE list(pANTLR3_BASE_TREE statement, int index) { return child(slot(statement, index), 0); }

const char *name(pANTLR3_BASE_TREE statement, int index) { return text(list(statement, index)); }

int choice(pANTLR3_BASE_TREE statement, int index) {
    pANTLR3_BASE_TREE first = list(statement, index);
    return first ? type(first) : -1;
}

} // namespace tree
} // namespace ormak
