/* A recognised script's tree copied out of the parser into blocks of its own: nodes with
   their children side by side, and their texts. It outlives the recognizers, which are reset
   for the next script as soon as the copy is made, and a kept script runs from it again
   without being recognised anew. */
#ifndef ORMAK_SCRIPT_TREE_H
#define ORMAK_SCRIPT_TREE_H

#include <antlr3.h>

#include <utility>
#include <vector>

#include "LiteralLists.h"
#include "ScriptNode.h"

namespace ormak {

/* Where a plain decimal number stands in a script's text. A kept script takes the numbers of
   each new text that differs from its own in such numbers alone. */
struct NumberRun {
    int offset;
    int length;
};

class ScriptTree {
public:
    ScriptTree() = default;
    ScriptTree(ScriptTree &&) = default;
    ScriptTree &operator=(ScriptTree &&) = default;
    ScriptTree(const ScriptTree &) = delete;
    ScriptTree &operator=(const ScriptTree &) = delete;

    /* Takes the long literal lists out of `text` (`*size` bytes) before it is parsed
       (LiteralLists); gives the text that the parser is to read and its size, `text` itself
       when nothing was taken. */
    const char *take_lists(const char *text, int *size);
    bool has_lists() const { return !lists_.empty(); }
    const LiteralLists &lists() const { return lists_; }

    /* Copies the tree that the parser made of `text` (the text that take_lists gave). The
       nodes of the numbers at `runs`, if given, are remembered for set_numbers. */
    void build(pANTLR3_BASE_TREE parsed, const char *text, const std::vector<NumberRun> *runs);
    pANTLR3_BASE_TREE root() const { return nodes_.empty() ? nullptr : as_tree(&nodes_[0]); }
    /* Gives the remembered number nodes the numbers at `runs` of `text`. */
    void set_numbers(const char *text, const std::vector<NumberRun> &runs);

    /* Bytes held, spare capacity included. */
    size_t footprint() const;
    /* Forgets the tree; keeps its blocks for the next one unless they grew large. */
    void clear();

private:
    const ScriptNode *taken_list(pANTLR3_BASE_TREE parsed, pANTLR3_COMMON_TOKEN token, int children,
                                 int *count) const;

    std::vector<ScriptNode> nodes_;
    std::vector<InnerNode> inners_;
    std::vector<char> texts_;
    LiteralLists lists_;
    /* The tree as the walk finds it, by numbers: a node's text (from 1, 0: none) or inner
       node, an inner node's first child and text. */
    struct PendingNode {
        int type;
        bool inner;
        size_t place;
    };
    struct PendingInner {
        size_t first;
        size_t text;
        int count;
        const ScriptNode *taken;
    };
    std::vector<PendingNode> pending_nodes_;
    std::vector<PendingInner> pending_inners_;
    std::vector<pANTLR3_BASE_TREE> work_;
    /* The nodes of numbers with their runs, and the texts that set_numbers gave them. */
    std::vector<std::pair<size_t, int>> number_nodes_;
    std::vector<char> numbers_;
    std::vector<size_t> number_starts_;
};

} // namespace ormak

#endif
