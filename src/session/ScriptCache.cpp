#include "ScriptCache.h"

#include <string.h>

namespace ormak {

namespace {

/* Longer scripts are not kept: they are seldom run twice, and their trees are large. */
const int kLongestKept = 4096;

bool is_digit(char c) { return c >= '0' && c <= '9'; }

/* Characters that always end the token before them and start a new one behind them. */
bool is_delimiter(char c) {
    switch (c) {
    case ' ': case '\t': case '\n': case '\r': case '(': case ')': case ',': case ':': case ';':
        return true;
    default:
        return false;
    }
}

/* The mark that stands for a number in a key; a text holding it is keyed as it is. */
const char kNumberMark = '\x01';

} // namespace

bool ScriptKey::make(const char *script, int size) {
    if (size > kLongestKept) return false;
    runs.clear();
    /* Digits inside a quoted text belong to a text token and can not be marked. */
    marked = memchr(script, '"', (size_t)size) == nullptr && memchr(script, kNumberMark, (size_t)size) == nullptr;
    text.resize((size_t)size);
    char *out = &text[0];
    uint64_t value = 14695981039346656037ull;
    for (int i = 0; i < size;) {
        char c = script[i];
        if (marked && is_digit(c) && (i == 0 || is_delimiter(script[i - 1]))) {
            int end = i + 1;
            while (end < size && is_digit(script[end])) end++;
            if (end == size || is_delimiter(script[end])) {
                runs.push_back({i, end - i});
                i = end;
                c = kNumberMark;
            } else {
                for (; i < end - 1; i++) {
                    *out++ = script[i];
                    value = (value ^ (unsigned char)script[i]) * 1099511628211ull;
                }
                c = script[i++];
            }
        } else {
            i++;
        }
        *out++ = c;
        value = (value ^ (unsigned char)c) * 1099511628211ull;
    }
    text.resize((size_t)(out - &text[0]));
    hash = value;
    return true;
}

ScriptTree *ScriptCache::find(const ScriptKey &key, const char *script, int size) {
    for (auto &entry : entries_) {
        if (entry->hash != key.hash || entry->marked != key.marked || entry->key != key.text) continue;
        if (key.marked && (entry->last.size() != (size_t)size || memcmp(entry->last.data(), script, (size_t)size) != 0)) {
            entry->tree.set_numbers(script, key.runs);
            entry->last.assign(script, (size_t)size);
        }
        entry->used = ++clock_;
        return &entry->tree;
    }
    return nullptr;
}

ScriptTree *ScriptCache::keep(const ScriptKey &key, const char *script, int size, ScriptTree &tree) {
    if (capacity_ <= 0) return nullptr;
    Entry *entry;
    if ((int)entries_.size() < capacity_) {
        entries_.push_back(std::unique_ptr<Entry>(new Entry{std::string(), false, 0, std::string(), ScriptTree(), 0}));
        entry = entries_.back().get();
    } else {
        entry = entries_[0].get();
        for (auto &other : entries_)
            if (other->used < entry->used) entry = other.get();
    }
    std::swap(entry->tree, tree);
    entry->key = key.text;
    entry->marked = key.marked;
    entry->hash = key.hash;
    entry->last.assign(script, (size_t)size);
    entry->used = ++clock_;
    return &entry->tree;
}

int ScriptCache::resize(int entries) {
    int before = capacity_;
    capacity_ = entries < 0 ? 0 : entries;
    if ((int)entries_.size() > capacity_) entries_.clear();
    return before;
}

} // namespace ormak
