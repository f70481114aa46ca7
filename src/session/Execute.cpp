/* The one road from script text to effect: recognise the whole script, then run its
   statements in order and stop at the first that fails. */

#include <new>
#include <string>

#include "Recognizers.h"
#include "Session.h"
#include "ScriptCache.h"
#include "../OrmakPrivateStructures.h"
#include "../language/ScriptTree.h"
#include "../language/StatementReaders.h"
#include "../language/TreeReader.h"

namespace {

/* What lasts from one script to the next: the recognised scripts kept for running again, and
   the tree of a script that is not kept, whose blocks serve the next one. Made on first use
   and freed by ormak_finalize, which runs after static destructors would have run. */
struct Kept {
    ormak::ScriptCache cache;
    ormak::ScriptTree spare;
    ormak::ScriptKey key;
    /* A script that is cut short of its text is copied to get its zero byte. */
    std::string bounded;
};
Kept *kept = nullptr;
int cache_entries = 16;
/* Calls of _ormak_execute under way; one made from inside a statement (a callback) must not
   touch what the outer one runs from. */
int depth = 0;

/* Programming languages whose bindings take the packed return word. */
bool packs_result(int programming_language) {
    return programming_language == 4 || programming_language == 8 || programming_language == 16;
}

/* Unregisters the transient variables that received results; returns their bits. */
int settle_variables() {
    int bits = 0;
    for (int number = 0; number < ORMAK_VARIABLE_COUNT; number++) {
        if (variable_list[number].transient == 0 && variable_list[number].used == 0) {
            _ormak_variable_unregister(number);
            bits |= 1 << (9 + number);
        }
    }
    if (bits) bits |= 1 << 8;
    return bits;
}

/* Runs the statements of a recognised script. */
void run(pANTLR3_BASE_TREE tree, int programming_language) {
    int statements = ormak::tree::count(tree);
    for (int i = 0; i < statements; i++) {
        if (ormak::is_unknown_statement(ormak::tree::child(tree, i))) {
            execute_status = ORMAK_ERROR_PARSE;
            return;
        }
    }
    /* An empty script does nothing and succeeds. */
    if (statements == 0) execute_status = ORMAK_SUCCESS;
    for (int i = 0; i < statements; i++) {
        execute_status = ormak::dispatch(ormak::tree::child(tree, i), programming_language);
        if (execute_status != ORMAK_SUCCESS) return;
    }
}

/* Recognises `script` into `tree`. The recognizers are reset before this returns, so nothing
   of a script that failed is left for the next one. */
int recognise(const char *script, int script_size, std::string &bounded, ormak::ScriptTree &tree,
              const std::vector<ormak::NumberRun> *runs) {
    /* Syntax errors tell the end of the script by the zero byte behind it. */
    if (script[script_size] != '\0') {
        bounded.assign(script, (size_t)script_size);
        script = bounded.c_str();
    }
    tree.clear();
    int size = script_size;
    const char *text = tree.take_lists(script, &size);
    pANTLR3_BASE_TREE parsed = nullptr;
    int status = ormak::parse_script(text, size, &parsed);
    if (status == ORMAK_SUCCESS) tree.build(parsed, text, tree.has_lists() ? nullptr : runs);
    else if (recognition_status != 0 && error_line >= 0) tree.lists().correct_position(error_line, &error_position);
    ormak::reset_recognizers();
    return status;
}

} // namespace

extern "C" int _ormak_execute(const char *script, int script_size, int programming_language) {
    error_line = -1;
    error_position = -1;
    error_message[0] = '\0';
    last_data_count = 0;
    recognition_status = 0;

    if (script == nullptr || script_size < 0) {
        execute_status = ORMAK_ERROR_UNKNOWN;
    } else if (depth > 0) {
        /* From inside a statement: a tree of its own, and nothing kept. */
        depth++;
        ormak::ScriptTree tree;
        std::string bounded;
        int status;
        try {
            status = recognise(script, script_size, bounded, tree, nullptr);
        } catch (const std::bad_alloc &) {
            ormak::reset_recognizers();
            status = ORMAK_ERROR_UNKNOWN;
        }
        if (status != ORMAK_SUCCESS) execute_status = status;
        else run(tree.root(), programming_language);
        depth--;
    } else {
        depth++;
        ormak::ScriptTree *tree = nullptr;
        int status = ORMAK_SUCCESS;
        /* Memory running out while the script is recognised is a tree that could not be made. */
        try {
            if (kept == nullptr) {
                kept = new Kept;
                kept->cache.resize(cache_entries);
            }
            ormak::ScriptKey &key = kept->key;
            bool keyed = kept->cache.capacity() > 0 && key.make(script, script_size);
            tree = keyed ? kept->cache.find(key, script, script_size) : nullptr;
            if (tree == nullptr) {
                tree = &kept->spare;
                status = recognise(script, script_size, kept->bounded, *tree, keyed ? &key.runs : nullptr);
                if (status == ORMAK_SUCCESS && keyed && !tree->has_lists())
                    tree = kept->cache.keep(key, script, script_size, kept->spare);
            }
        } catch (const std::bad_alloc &) {
            ormak::reset_recognizers();
            status = ORMAK_ERROR_UNKNOWN;
        }
        if (status != ORMAK_SUCCESS) execute_status = status;
        else run(tree->root(), programming_language);
        if (kept) {
            kept->spare.clear();
            if (kept->bounded.capacity() > (1u << 20)) std::string().swap(kept->bounded);
        }
        depth--;
    }

    int variable_bits = settle_variables();
    if (packs_result(programming_language)) return (execute_status & 0xFF) | variable_bits;
    return execute_status;
}

namespace ormak {

void release_scripts() {
    delete kept;
    kept = nullptr;
    release_recognizers();
}

} // namespace ormak

/* How many recognised scripts are kept (0: none); returns the number before. For measuring. */
extern "C" int _ormak_set_script_cache(int entries) {
    int before = cache_entries;
    cache_entries = entries < 0 ? 0 : entries;
    if (kept) kept->cache.resize(cache_entries);
    return before;
}
