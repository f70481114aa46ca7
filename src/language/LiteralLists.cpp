#include "LiteralLists.h"

#include <algorithm>

#include "OrmakParser.h"

namespace ormak {

namespace {

/* Lists shorter than this go through the parser like everything else. */
const size_t kLongList = 64;

bool is_digit(char c) { return c >= '0' && c <= '9'; }
bool is_hex_digit(char c) { return is_digit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }
bool is_blank(char c) { return c == ' ' || c == '\t'; }
bool is_letter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
/* Characters that continue a name, and so a word that looks like a keyword. */
bool is_name_char(char c) { return is_letter(c) || is_digit(c) || c == '_' || c == '.' || c == '/' || c == '-'; }

/* An exponent behind a number, taken only when a digit follows the letter and its sign. */
const char *exponent(const char *p, const char *end) {
    if (p < end && (*p == 'e' || *p == 'E')) {
        const char *q = p + 1;
        if (q < end && (*q == '+' || *q == '-')) q++;
        if (q < end && is_digit(*q)) {
            while (q < end && is_digit(*q)) q++;
            return q;
        }
    }
    return p;
}

/* The length of the number at `p` as the lexer reads it, with its token type; 0 where the
   lexer would read something else. */
size_t number_at(const char *p, const char *end, int *type) {
    const char *q = p;
    if (q < end && (*q == '+' || *q == '-')) q++;
    if (q + 1 < end && q[0] == '0' && (q[1] == 'x' || q[1] == 'X')) {
        const char *digits = q + 2;
        q = digits;
        while (q < end && is_hex_digit(*q)) q++;
        *type = HEXADECIMAL_NUMBER_KEYWORD;
        return q == digits ? 0 : (size_t)(q - p);
    }
    if (q < end && is_digit(*q)) {
        while (q < end && is_digit(*q)) q++;
        *type = INTEGER_NUMBER_KEYWORD;
        if (q < end && *q == '.') {
            q++;
            while (q < end && is_digit(*q)) q++;
            q = exponent(q, end);
            *type = FLOAT_NUMBER_KEYWORD;
        } else if (exponent(q, end) != q) {
            q = exponent(q, end);
            *type = FLOAT_NUMBER_KEYWORD;
        }
        return (size_t)(q - p);
    }
    if (q + 1 < end && q[0] == '.' && is_digit(q[1])) {
        q++;
        while (q < end && is_digit(*q)) q++;
        *type = FLOAT_NUMBER_KEYWORD;
        return (size_t)(exponent(q, end) - p);
    }
    return 0;
}

/* The length of the quoted text at `p`, quotes included; 0 for one that does not end on
   its line. */
size_t quoted_at(const char *p, const char *end) {
    for (const char *q = p + 1; q < end; q++) {
        if (*q == '"') return (size_t)(q + 1 - p);
        if (*q == '\n' || *q == '\r') return 0;
    }
    return 0;
}

/* Whether the keyword VALUES, in any case, stands at `i` as a word of its own and is
   followed by a parenthesis; gives where that parenthesis is. */
bool values_at(const char *text, size_t size, size_t i, size_t *open) {
    static const char word[] = "VALUES";
    if (i > 0) {
        char before = text[i - 1];
        if (!is_blank(before) && before != '\n' && before != '\r' && before != ';' && before != ')') return false;
    }
    if (size - i < 7) return false;
    for (int k = 0; k < 6; k++)
        if ((text[i + k] & ~0x20) != word[k]) return false;
    size_t j = i + 6;
    if (is_name_char(text[j])) return false;
    while (j < size && is_blank(text[j])) j++;
    if (j >= size || text[j] != '(') return false;
    *open = j;
    return true;
}

const char kComma[] = ",";
const char kList[] = "LIST";

} // namespace

/* Walks the list that opens at `open`: whether it is one to take, where it closes, how many
   nodes it holds below its own and how many bytes their texts take. The children of each
   list it holds go to counts_, in the order the lists open. */
bool LiteralLists::measure(const char *text, size_t size, size_t open, size_t *close, size_t *nodes,
                           size_t *bytes) {
    const char *end = text + size;
    std::vector<size_t> open_lists; /* indexes into counts_ */
    open_lists.push_back(counts_.size());
    counts_.push_back(0);
    bool element_allowed = true;
    size_t i = open + 1;
    *nodes = 0;
    *bytes = 0;
    while (i < size) {
        char c = text[i];
        if (is_blank(c)) {
            i++;
            continue;
        }
        if (c == ')') {
            open_lists.pop_back();
            i++;
            if (open_lists.empty()) {
                *close = i - 1;
                return true;
            }
            element_allowed = false;
            continue;
        }
        if (c == ',') {
            counts_[open_lists.back()]++;
            (*nodes)++;
            element_allowed = true;
            i++;
            continue;
        }
        if (!element_allowed) return false;
        element_allowed = false;
        counts_[open_lists.back()]++;
        (*nodes)++;
        if (c == '(') {
            open_lists.push_back(counts_.size());
            counts_.push_back(0);
            element_allowed = true;
            i++;
            continue;
        }
        size_t length;
        int type;
        if (c == '"') {
            length = quoted_at(text + i, end);
            *bytes += length - 1;
        } else {
            length = number_at(text + i, end, &type);
            *bytes += length + 1;
        }
        if (length == 0) return false;
        i += length;
        /* A value runs into whatever stands right behind it. */
        if (i < size && !is_blank(text[i]) && text[i] != ',' && text[i] != ')') return false;
    }
    return false;
}

/* Writes the nodes of `list`, measured before, from its parenthesis on. */
void LiteralLists::fill(const char *text, List &list, size_t *next_node, size_t *next_list, size_t *next_inner,
                        size_t *next_text) {
    const char *end = text + list.close + 1;
    struct Open {
        size_t first;
        int filled;
    };
    std::vector<Open> open_lists;
    list.first = *next_node;
    list.count = counts_[(*next_list)++];
    open_lists.push_back({*next_node, 0});
    *next_node += (size_t)list.count;
    for (const char *p = text + list.open + 1; p < end;) {
        char c = *p;
        if (is_blank(c)) {
            p++;
            continue;
        }
        if (c == ')') {
            open_lists.pop_back();
            p++;
            continue;
        }
        ScriptNode &node = nodes_[open_lists.back().first + (size_t)open_lists.back().filled++];
        if (c == ',') {
            node = {node_kind(COMMA_KEYWORD, false), kComma};
            p++;
        } else if (c == '(') {
            int count = counts_[(*next_list)++];
            if (count == 0) {
                node = {node_kind(LIST, false), kList};
            } else {
                InnerNode &inner = inners_[(*next_inner)++];
                inner = {&nodes_[*next_node], kList, count};
                node = {node_kind(LIST, true), &inner};
            }
            open_lists.push_back({*next_node, 0});
            *next_node += (size_t)count;
            p++;
        } else {
            const char *from = p;
            size_t length;
            int type = STRING_KEYWORD;
            if (c == '"') {
                length = quoted_at(p, end);
                from = p + 1;
                p += length;
                length -= 2;
            } else {
                length = number_at(p, end, &type);
                p += length;
            }
            char *copy = &texts_[*next_text];
            memcpy(copy, from, length);
            copy[length] = '\0';
            *next_text += length + 1;
            node = {node_kind(type, false), copy};
        }
    }
}

const char *LiteralLists::take(const char *text, size_t size, size_t *cut_size) {
    clear();
    if (size < 2 * kLongList) return nullptr;
    size_t total_nodes = 0, total_bytes = 0;
    bool quoted = false;
    for (size_t i = 0; i < size; i++) {
        char c = text[i];
        if (quoted) {
            if (c == '"') quoted = false;
            continue;
        }
        if (c == '"') {
            quoted = true;
            continue;
        }
        /* Past a comment quotes no longer pair up as the lexer pairs them. */
        if (c == '#' || (c == '/' && i + 1 < size && text[i + 1] == '*')) break;
        size_t open, close, nodes, bytes;
        if ((c != 'V' && c != 'v') || !values_at(text, size, i, &open)) continue;
        size_t counted = counts_.size();
        if (measure(text, size, open, &close, &nodes, &bytes) && nodes >= kLongList) {
            lists_.push_back({open, close, 0, 0, 0, 0, 0});
            total_nodes += nodes;
            total_bytes += bytes;
            i = close;
        } else {
            counts_.resize(counted);
            i = open;
        }
    }
    if (lists_.empty()) {
        counts_.clear();
        return nullptr;
    }

    /* Enough for every list that holds something; the outer lists need none of their own. */
    size_t holding = 0;
    for (int count : counts_) holding += count > 0;
    nodes_.resize(total_nodes);
    inners_.resize(holding);
    texts_.resize(total_bytes);
    size_t next_node = 0, next_list = 0, next_inner = 0, next_text = 0;
    for (List &list : lists_) fill(text, list, &next_node, &next_list, &next_inner, &next_text);

    /* The cut text: each list holds just the marker 0, which the copy of the tree finds by
       its place. */
    cut_.clear();
    size_t from = 0;
    int line = 1;
    size_t line_start = 0;
    for (List &list : lists_) {
        size_t start = cut_.size();
        cut_.append(text + from, list.open + 1 - from);
        for (size_t k = start; k < cut_.size(); k++) {
            if (cut_[k] == '\n') {
                line++;
                line_start = k + 1;
            }
        }
        list.marker = cut_.size();
        list.line = line;
        list.column = (int)(list.marker - line_start);
        cut_ += '0';
        from = list.close;
    }
    cut_.append(text + from, size - from);
    *cut_size = cut_.size();
    return cut_.c_str();
}

const ScriptNode *LiteralLists::find(const char *at, int *count) const {
    if (lists_.empty() || at < cut_.data() || at >= cut_.data() + cut_.size()) return nullptr;
    size_t marker = (size_t)(at - cut_.data());
    auto list = std::lower_bound(lists_.begin(), lists_.end(), marker,
                                 [](const List &l, size_t m) { return l.marker < m; });
    if (list == lists_.end() || list->marker != marker) return nullptr;
    *count = list->count;
    return list->count ? &nodes_[list->first] : nullptr;
}

void LiteralLists::correct_position(int line, int *position) const {
    /* A position counts from 1 on every line; whatever stands behind a marker on its line
       moved left by what the cut took out. */
    int shift = 0;
    for (const List &list : lists_) {
        if (list.line == line && *position >= list.column + 2)
            shift += (int)(list.close - list.open - 2);
    }
    *position += shift;
}

void LiteralLists::clear() {
    lists_.clear();
    counts_.clear();
    nodes_.clear();
    inners_.clear();
    texts_.clear();
    cut_.clear();
    /* What a large list left behind is given back rather than kept for the next one. */
    if (footprint() > (1u << 20)) {
        std::vector<List>().swap(lists_);
        std::vector<int>().swap(counts_);
        std::vector<ScriptNode>().swap(nodes_);
        std::vector<InnerNode>().swap(inners_);
        std::vector<char>().swap(texts_);
        std::string().swap(cut_);
    }
}

size_t LiteralLists::footprint() const {
    return lists_.capacity() * sizeof(List) + counts_.capacity() * sizeof(int) +
           nodes_.capacity() * sizeof(ScriptNode) + inners_.capacity() * sizeof(InnerNode) + texts_.capacity() +
           cut_.capacity();
}

} // namespace ormak
