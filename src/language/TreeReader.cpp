#include "TreeReader.h"

namespace ormak {
namespace tree {

/* A script runs from the nodes of its ScriptTree; the parser's own nodes come only from code
   that parses for itself, and are read here. */

int parser_count(pANTLR3_BASE_TREE node) { return (int)node->getChildCount(node); }

pANTLR3_BASE_TREE parser_child(pANTLR3_BASE_TREE node, int index) {
    if (index >= parser_count(node)) return nullptr;
    return (pANTLR3_BASE_TREE)node->getChild(node, (ANTLR3_UINT32)index);
}

int parser_type(pANTLR3_BASE_TREE node) {
    pANTLR3_COMMON_TOKEN token = node->getToken(node);
    return token ? (int)token->type : -1;
}

const char *parser_text(pANTLR3_BASE_TREE node) {
    pANTLR3_STRING string = node->getText(node);
    return string ? (const char *)string->chars : nullptr;
}

} // namespace tree
} // namespace ormak
