/* Recognised scripts kept by their text, so that a program that runs the same statement again
   and again recognises it once. The few most recently used are kept. A text without quotes
   is kept by its words, with each plain decimal number standing as one mark: such a number
   is one integer token whatever its digits, so a text that differs in these numbers alone
   parses to the same tree with other number texts, which the kept tree takes over. */
#ifndef ORMAK_SCRIPT_CACHE_H
#define ORMAK_SCRIPT_CACHE_H

#include <stdint.h>

#include <memory>
#include <string>
#include <vector>

#include "../language/ScriptTree.h"

namespace ormak {

struct ScriptKey {
    std::string text;
    std::vector<NumberRun> runs; /* the numbers that marks stand for */
    bool marked = false;         /* whether numbers were marked, or the text is taken as it is */
    uint64_t hash = 0;

    /* Makes the key of a script; false for one too long to be kept. */
    bool make(const char *script, int size);
};

class ScriptCache {
public:
    /* The tree kept under `key`, with the numbers of `script`, or null. */
    ScriptTree *find(const ScriptKey &key, const char *script, int size);
    /* Keeps `tree`, recognised from `script`, under `key` and returns where it is kept now.
       `tree` is left with the blocks of the tree that made room, to be used again. */
    ScriptTree *keep(const ScriptKey &key, const char *script, int size, ScriptTree &tree);
    /* Sets how many scripts are kept (0: none) and returns the number before. */
    int resize(int entries);
    int capacity() const { return capacity_; }
    void clear() { entries_.clear(); }

private:
    struct Entry {
        std::string key;
        bool marked;
        uint64_t hash;
        std::string last; /* the text whose numbers the tree holds */
        ScriptTree tree;
        uint64_t used;
    };
    std::vector<std::unique_ptr<Entry>> entries_;
    int capacity_ = 16;
    uint64_t clock_ = 0;
};

} // namespace ormak

#endif
