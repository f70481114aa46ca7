#include <stdlib.h>

#include <memory>
#include <new>
#include <unordered_map>
#include <vector>

#include "CursorArena.h"

namespace ormak {
namespace {

/* Blocks given back by cleared cursors, kept for the next fill up to a cap: a cursor that
   is filled again and again then costs no fresh memory, whose first touch is what makes
   filling slow. */
class BlockPool {
public:
    char *take(size_t &size) {
        for (size_t i = 0; i < blocks_.size(); i++) {
            if (blocks_[i].size >= size) {
                char *memory = blocks_[i].memory;
                size = blocks_[i].size;
                kept_ -= size;
                blocks_[i] = blocks_.back();
                blocks_.pop_back();
                return memory;
            }
        }
        return fresh(size);
    }

    /* Large blocks are aligned to huge pages, which the system may then back them with.
       They do not ask for them: where the system would compact memory to honour the
       request, a first fill waited on that far longer than on the page faults it saves. */
    static char *fresh(size_t size) {
        const size_t huge_page = 2u << 20;
        if (size < huge_page) return (char *)malloc(size);
        void *memory = nullptr;
        if (posix_memalign(&memory, huge_page, size) != 0) return nullptr;
        return (char *)memory;
    }

    void give(char *memory, size_t size) {
        if (kept_ + size > max_kept) {
            free(memory);
            return;
        }
        blocks_.push_back({memory, size});
        kept_ += size;
    }

private:
    struct Block {
        char *memory;
        size_t size;
    };
    static constexpr size_t max_kept = 512u << 20;
    std::vector<Block> blocks_;
    size_t kept_ = 0;
};

BlockPool &pool() {
    static BlockPool *blocks = new BlockPool();
    return *blocks;
}

class Arena {
public:
    void *allocate(size_t size) {
        size = (size + alignment - 1) & ~(alignment - 1);
        if (size > left_) {
            /* Blocks grow with the cursor, so that large results take few of them. */
            size_t block = next_block_ > size ? next_block_ : size;
            char *memory = pool().take(block);
            if (memory == nullptr) return nullptr;
            blocks_.push_back({memory, block});
            top_ = memory;
            left_ = block;
            if (next_block_ < max_block) next_block_ *= 2;
        }
        void *result = top_;
        top_ += size;
        left_ -= size;
        return result;
    }

    ~Arena() {
        for (const auto &block : blocks_) pool().give(block.first, block.second);
    }

private:
    static constexpr size_t alignment = alignof(max_align_t);
    static constexpr size_t max_block = 64u << 20;
    std::vector<std::pair<char *, size_t>> blocks_;
    char *top_ = nullptr;
    size_t left_ = 0;
    size_t next_block_ = 4096;
};

std::unordered_map<const ORMAK_CURSOR *, std::unique_ptr<Arena>> &arenas() {
    static auto *table = new std::unordered_map<const ORMAK_CURSOR *, std::unique_ptr<Arena>>();
    return *table;
}

/* The last cursor filled, so that a run of adds skips the table. */
const ORMAK_CURSOR *last_cursor = nullptr;
Arena *last_arena = nullptr;

} // namespace

void *cursor_allocate(const ORMAK_CURSOR *cursor, size_t size) {
    if (cursor != last_cursor || last_arena == nullptr) {
        std::unique_ptr<Arena> &arena = arenas()[cursor];
        if (!arena) arena.reset(new (std::nothrow) Arena());
        if (!arena) return nullptr;
        last_cursor = cursor;
        last_arena = arena.get();
    }
    return last_arena->allocate(size);
}

void cursor_release(const ORMAK_CURSOR *cursor) {
    if (cursor == last_cursor) {
        last_cursor = nullptr;
        last_arena = nullptr;
    }
    arenas().erase(cursor);
}

} // namespace ormak
