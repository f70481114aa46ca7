#include "ScriptTree.h"

#include <string.h>

#include <algorithm>

#include "OrmakParser.h"

namespace ormak {

namespace {

constexpr NodeKindTable make_kind_table() {
    NodeKindTable table{};
    for (int i = 0; i < 2 * kNodeTypes; i++) table.kinds[i] = {i % kNodeTypes - 1, i >= kNodeTypes};
    return table;
}

} // namespace

/* Initialised at compile time, so that it is in place before anything runs. */
const NodeKindTable node_kind_table = make_kind_table();

namespace {

struct Text {
    const char *chars; /* null: the node has no text */
    size_t length;
};

/* The text that getText of the parser's node gives, read without making it: getText makes
   a new string of the input for each call. */
Text parser_text(pANTLR3_BASE_TREE node) {
    pANTLR3_COMMON_TOKEN token = node->getToken(node);
    if (token == nullptr) return {"nil", 3};
    switch (token->textState) {
    case ANTLR3_TEXT_STRING: {
        pANTLR3_STRING string = token->tokText.text;
        if (string == nullptr || string->chars == nullptr) return {nullptr, 0};
        return {(const char *)string->chars, (size_t)string->len};
    }
    case ANTLR3_TEXT_CHARP:
        if (token->strFactory == nullptr || token->tokText.chars == nullptr) return {nullptr, 0};
        return {(const char *)token->tokText.chars, strlen((const char *)token->tokText.chars)};
    default:
        if (token->type == ANTLR3_TOKEN_EOF) return {"<EOF>", 5};
        if (token->input == nullptr) return {nullptr, 0};
        /* The input is 8-bit, so its indexes are the addresses of the characters. */
        long long length = (long long)(token->stop - token->start) + 1;
        return {(const char *)token->start, length > 0 ? (size_t)length : 0};
    }
}

/* Where a token of the parser stands in its input, or null for one that stands nowhere. */
const char *token_place(pANTLR3_COMMON_TOKEN token) {
    if (token == nullptr || token->textState != ANTLR3_TEXT_NONE || token->input == nullptr) return nullptr;
    return (const char *)token->start;
}

} // namespace

const char *ScriptTree::take_lists(const char *text, int *size) {
    size_t cut_size = 0;
    const char *cut = lists_.take(text, (size_t)*size, &cut_size);
    if (cut == nullptr) return text;
    *size = (int)cut_size;
    return cut;
}

/* A list node of the parser that holds just the marker of a list taken out of the text. */
const ScriptNode *ScriptTree::taken_list(pANTLR3_BASE_TREE parsed, pANTLR3_COMMON_TOKEN token, int children,
                                         int *count) const {
    if (lists_.empty() || children != 1 || token == nullptr || token->type != LIST) return nullptr;
    pANTLR3_BASE_TREE marker = (pANTLR3_BASE_TREE)parsed->getChild(parsed, 0);
    if (marker == nullptr) return nullptr;
    pANTLR3_COMMON_TOKEN marker_token = marker->getToken(marker);
    if (marker_token == nullptr || marker_token->type != INTEGER_NUMBER_KEYWORD) return nullptr;
    const char *at = token_place(marker_token);
    return at ? lists_.find(at, count) : nullptr;
}

/* One walk over the parser's tree, breadth first, so that the children of a node take places
   side by side. Places are numbers until the blocks stop growing; then they become addresses. */
void ScriptTree::build(pANTLR3_BASE_TREE parsed, const char *text, const std::vector<NumberRun> *runs) {
    nodes_.clear();
    inners_.clear();
    texts_.clear();
    number_nodes_.clear();
    numbers_.clear();
    pending_nodes_.clear();
    pending_inners_.clear();
    work_.clear();
    pending_nodes_.push_back({});
    work_.push_back(parsed);
    for (size_t index = 0; index < work_.size(); index++) {
        pANTLR3_BASE_TREE node = work_[index];
        PendingNode &pending = pending_nodes_[index];
        pending = {-1, false, 0};
        if (node == nullptr) continue;
        pANTLR3_COMMON_TOKEN token = node->getToken(node);
        pending.type = token ? (int)token->type : -1;
        Text node_text = parser_text(node);
        size_t text_place = 0;
        if (node_text.chars) {
            text_place = texts_.size() + 1;
            texts_.insert(texts_.end(), node_text.chars, node_text.chars + node_text.length);
            texts_.push_back('\0');
        }
        int children = (int)node->getChildCount(node);
        int taken = 0;
        const ScriptNode *list = taken_list(node, token, children, &taken);
        if (list || children > 0) {
            pending.inner = true;
            pending.place = pending_inners_.size();
            pending_inners_.push_back({list ? 0 : work_.size(), text_place, list ? taken : children, list});
            if (!list) {
                for (int i = 0; i < children; i++) work_.push_back((pANTLR3_BASE_TREE)node->getChild(node, (ANTLR3_UINT32)i));
                pending_nodes_.resize(work_.size());
            }
            continue;
        }
        pending.place = text_place;
        if (runs && pending.type == INTEGER_NUMBER_KEYWORD) {
            if (const char *at = token_place(token)) {
                int offset = (int)(at - text);
                auto run = std::lower_bound(runs->begin(), runs->end(), offset,
                                            [](const NumberRun &r, int o) { return r.offset < o; });
                if (run != runs->end() && run->offset == offset)
                    number_nodes_.push_back({index, (int)(run - runs->begin())});
            }
        }
    }

    nodes_.resize(pending_nodes_.size());
    inners_.resize(pending_inners_.size());
    const char *texts = texts_.data();
    for (size_t i = 0; i < pending_inners_.size(); i++) {
        const PendingInner &pending = pending_inners_[i];
        inners_[i] = {pending.taken ? pending.taken : &nodes_[pending.first],
                      pending.text ? texts + pending.text - 1 : nullptr, pending.count};
    }
    for (size_t i = 0; i < pending_nodes_.size(); i++) {
        const PendingNode &pending = pending_nodes_[i];
        if (pending.inner) nodes_[i] = {node_kind(pending.type, true), &inners_[pending.place]};
        else nodes_[i] = {node_kind(pending.type, false), pending.place ? texts + pending.place - 1 : nullptr};
    }
    work_.clear();
}

void ScriptTree::set_numbers(const char *text, const std::vector<NumberRun> &runs) {
    size_t bytes = 0;
    for (const NumberRun &run : runs) bytes += (size_t)run.length + 1;
    numbers_.resize(bytes);
    number_starts_.resize(runs.size());
    size_t at = 0;
    for (size_t r = 0; r < runs.size(); r++) {
        number_starts_[r] = at;
        memcpy(&numbers_[at], text + runs[r].offset, (size_t)runs[r].length);
        at += (size_t)runs[r].length;
        numbers_[at++] = '\0';
    }
    for (const auto &number : number_nodes_) nodes_[number.first].data = &numbers_[number_starts_[(size_t)number.second]];
}

size_t ScriptTree::footprint() const {
    return nodes_.capacity() * sizeof(ScriptNode) + inners_.capacity() * sizeof(InnerNode) + texts_.capacity() +
           lists_.footprint() + number_nodes_.capacity() * sizeof(number_nodes_[0]) + numbers_.capacity() +
           pending_nodes_.capacity() * sizeof(PendingNode) + pending_inners_.capacity() * sizeof(PendingInner) +
           work_.capacity() * sizeof(work_[0]);
}

void ScriptTree::clear() {
    nodes_.clear();
    inners_.clear();
    texts_.clear();
    lists_.clear();
    number_nodes_.clear();
    numbers_.clear();
    pending_nodes_.clear();
    pending_inners_.clear();
    /* The blocks of a large script are given back rather than kept for the next one. */
    if (footprint() > (1u << 20)) {
        std::vector<PendingNode>().swap(pending_nodes_);
        std::vector<PendingInner>().swap(pending_inners_);
        std::vector<pANTLR3_BASE_TREE>().swap(work_);
        std::vector<ScriptNode>().swap(nodes_);
        std::vector<InnerNode>().swap(inners_);
        std::vector<char>().swap(texts_);
        std::vector<std::pair<size_t, int>>().swap(number_nodes_);
        std::vector<char>().swap(numbers_);
    }
}

} // namespace ormak
