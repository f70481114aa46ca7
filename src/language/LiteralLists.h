/* Long lists of literal values, VALUES(...), read straight from a script's text into script
   nodes rather than by the lexer and the parser, whose token and node for each value cost
   many times the value's text. A list is taken only where this reading gives what the parser
   would give: outside quoted texts, before any comment, on one line, and holding nothing but
   numbers, quoted texts, commas, blanks and nested lists. The parser then reads a copy of the
   script in which each such list is cut down to one marker value, and the copy of its tree
   (ScriptTree) puts the list back in place of the marker. */
#ifndef ORMAK_LITERAL_LISTS_H
#define ORMAK_LITERAL_LISTS_H

#include <stddef.h>

#include <string>
#include <vector>

#include "ScriptNode.h"

namespace ormak {

class LiteralLists {
public:
    /* Takes the long lists out of `text` (`size` bytes). Returns the text that the parser
       reads instead, with a zero byte behind it, and its size; null when no list was taken. */
    const char *take(const char *text, size_t size, size_t *cut_size);
    /* The children of the list whose marker stands at `at` in that text, or null. */
    const ScriptNode *find(const char *at, int *count) const;
    /* Turns the position of a recognition error in the cut text into its column in the script. */
    void correct_position(int line, int *position) const;
    bool empty() const { return lists_.empty(); }
    void clear();
    size_t footprint() const;

private:
    struct List {
        size_t open;     /* the list's parenthesis in the script */
        size_t close;    /* and its closing one */
        size_t marker;   /* the marker's offset in the cut text */
        int line;        /* the marker's line, from 1 */
        int column;      /* and its column from 0, in the cut text */
        size_t first;    /* the list's first child in nodes_ */
        int count;
    };
    bool measure(const char *text, size_t size, size_t open, size_t *close, size_t *nodes, size_t *bytes);
    void fill(const char *text, List &list, size_t *next_node, size_t *next_list, size_t *next_inner,
              size_t *next_text);

    std::vector<List> lists_;
    std::vector<int> counts_; /* children of each list, outer and nested, in the order they open */
    std::vector<ScriptNode> nodes_;
    std::vector<InnerNode> inners_; /* of the nested lists that hold something */
    std::vector<char> texts_;
    std::string cut_;
};

} // namespace ormak

#endif
