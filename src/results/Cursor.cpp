/* Cursors: the in-memory result sets that callers walk. Every navigation and value
   function has a subcursor twin that does the same to the inner sequence of the current
   element; the twins share one implementation and differ only in how they find the
   cursor they act on. */
#include <stdlib.h>
#include <string.h>

#include "CursorArena.h"
#include "../OrmakPrivateStructures.h"

namespace {

ORMAK_CURSOR *in_use(ORMAK_CURSOR *cursor) { return cursor ? cursor : current_cursor; }
const ORMAK_CURSOR *in_use(const ORMAK_CURSOR *cursor) { return cursor ? cursor : current_cursor; }

void set_empty(ORMAK_CURSOR *cursor) {
    cursor->data_type = ORMAK_UNDEFINED;
    cursor->count = 0;
    cursor->position = -1;
    cursor->head = cursor->tail = cursor->current = nullptr;
}

/* The subcursor of the current element, or the status that says why there is none. */
ORMAK_CURSOR *subcursor_of(const ORMAK_CURSOR *cursor, int *status) {
    cursor = in_use(cursor);
    if (cursor->count == 0) { *status = ORMAK_ERROR_EMPTY; return nullptr; }
    if (cursor->position == -1) { *status = ORMAK_ERROR_BEFORE_FIRST; return nullptr; }
    if (cursor->position == cursor->count) { *status = ORMAK_ERROR_AFTER_LAST; return nullptr; }
    ORMAK_CURSOR *subcursor = cursor->current ? cursor->current->subcursor : nullptr;
    if (subcursor == nullptr || subcursor->count == 0) { *status = ORMAK_ERROR_EMPTY; return nullptr; }
    *status = ORMAK_SUCCESS;
    return subcursor;
}

/* The subcursor's current value, or null where any link on the way is missing. */
void *subcursor_data(const ORMAK_CURSOR *cursor, int *size) {
    cursor = in_use(cursor);
    ORMAK_CURSOR *subcursor = cursor->current ? cursor->current->subcursor : nullptr;
    ormak_cursor_data *element = subcursor ? subcursor->current : nullptr;
    if (size) *size = element ? element->size : 0;
    return element ? element->data : nullptr;
}

void *cursor_data(const ORMAK_CURSOR *cursor, int *size) {
    ormak_cursor_data *element = in_use(cursor)->current;
    if (size) *size = element ? element->size : 0;
    return element ? element->data : nullptr;
}

int park_after(ORMAK_CURSOR *cursor) {
    cursor->position = cursor->count;
    cursor->current = nullptr;
    return ORMAK_ERROR_AFTER_LAST;
}

int park_before(ORMAK_CURSOR *cursor) {
    cursor->position = -1;
    cursor->current = nullptr;
    return ORMAK_ERROR_BEFORE_FIRST;
}

/* Stands on element `position`, walking `steps` from `from` in the given direction. */
int stand(ORMAK_CURSOR *cursor, ormak_cursor_data *from, int steps, bool forward, int position) {
    for (int i = 0; i < steps; i++) from = forward ? from->next : from->previous;
    cursor->current = from;
    cursor->position = position;
    return ORMAK_SUCCESS;
}

int first(ORMAK_CURSOR *c) {
    if (c->count == 0) return ORMAK_ERROR_EMPTY;
    return stand(c, c->head, 0, true, 0);
}

int last(ORMAK_CURSOR *c) {
    if (c->count == 0) return ORMAK_ERROR_EMPTY;
    return stand(c, c->tail, 0, false, c->count - 1);
}

int next(ORMAK_CURSOR *c) {
    if (c->count == 0) return ORMAK_ERROR_EMPTY;
    if (c->position == -1) return stand(c, c->head, 0, true, 0);
    if (c->position >= c->count - 1) return park_after(c);
    return stand(c, c->current, 1, true, c->position + 1);
}

int previous(ORMAK_CURSOR *c) {
    if (c->count == 0) return ORMAK_ERROR_EMPTY;
    if (c->position == c->count) return stand(c, c->tail, 0, false, c->count - 1);
    if (c->position < 1) return park_before(c);
    return stand(c, c->current, 1, false, c->position - 1);
}

int absolute(ORMAK_CURSOR *c, int p) {
    if (c->count == 0) return ORMAK_ERROR_EMPTY;
    if (p == 0) return stand(c, c->head, 0, true, 0);
    if (p > 0) return p <= c->count - 1 ? stand(c, c->head, p, true, p) : park_after(c);
    if (-p <= c->count) return stand(c, c->tail, -p - 1, false, c->count + p);
    return park_before(c);
}

int relative(ORMAK_CURSOR *c, int r) {
    if (r == 0) return ORMAK_SUCCESS;
    if (c->count == 0) return ORMAK_ERROR_EMPTY;
    if (r > 0) {
        if (c->position == -1) return r > c->count ? park_after(c) : stand(c, c->head, r - 1, true, r - 1);
        if (c->position + r > c->count - 1) return park_after(c);
        return stand(c, c->current, r, true, c->position + r);
    }
    if (c->position == c->count) return -r > c->count ? park_before(c) : stand(c, c->tail, -r - 1, false, c->count + r);
    if (c->position + r < 0) return park_before(c);
    return stand(c, c->current, -r, false, c->position + r);
}

/* Runs a navigation on the subcursor of the current element, after the checks of the chain. */
template <typename Move>
int on_subcursor(ORMAK_CURSOR *cursor, Move move) {
    int status;
    ORMAK_CURSOR *subcursor = subcursor_of(cursor, &status);
    return subcursor ? move(subcursor) : status;
}

/* A new element behind the tail of `list`, its value carved from the memory of `owner`. */
ormak_cursor_data *append(const ORMAK_CURSOR *owner, ORMAK_CURSOR *list, const void *data, int size,
                          bool terminate) {
    size_t bytes = data ? (size_t)size + (terminate ? 1 : 0) : 0;
    ormak_cursor_data *element =
        (ormak_cursor_data *)ormak::cursor_allocate(owner, sizeof(ormak_cursor_data) + bytes);
    if (element == nullptr) return nullptr;
    element->data = nullptr;
    if (data) {
        element->data = (char *)element + sizeof(ormak_cursor_data);
        memcpy(element->data, data, (size_t)size);
        if (terminate) ((char *)element->data)[size] = '\0';
    }
    element->size = size;
    element->next = nullptr;
    element->subcursor = nullptr;
    element->previous = list->tail;
    if (list->tail) list->tail->next = element;
    else list->head = element;
    list->tail = element;
    return element;
}

ORMAK_CURSOR *new_subcursor(const ORMAK_CURSOR *owner) {
    ORMAK_CURSOR *subcursor = (ORMAK_CURSOR *)ormak::cursor_allocate(owner, sizeof(ORMAK_CURSOR));
    if (subcursor) set_empty(subcursor);
    return subcursor;
}

/* The element at `position` of a list, or null before the first and after the last. */
ormak_cursor_data *element_at(ORMAK_CURSOR *list, int position) {
    if (position < 0 || position >= list->count) return nullptr;
    ormak_cursor_data *element = list->head;
    for (int i = 0; i < position; i++) element = element->next;
    return element;
}

/* Copies the elements of `source` into the empty `target`, whose memory is `owner`'s. */
bool copy_elements(const ORMAK_CURSOR *owner, const ORMAK_CURSOR *source, ORMAK_CURSOR *target, bool terminate) {
    for (ormak_cursor_data *element = source->head; element; element = element->next) {
        ormak_cursor_data *copy = append(owner, target, element->data, element->size, terminate);
        if (copy == nullptr) return false;
        if (element->subcursor) {
            copy->subcursor = new_subcursor(owner);
            if (copy->subcursor == nullptr) return false;
            if (!copy_elements(owner, element->subcursor, copy->subcursor, false)) return false;
            copy->subcursor->count = element->subcursor->count;
            copy->subcursor->position = element->subcursor->position;
            copy->subcursor->current = element_at(copy->subcursor, copy->subcursor->position);
        }
    }
    return true;
}

} // namespace

extern "C" {

int ormak_cursor_initialize(ORMAK_CURSOR *cursor) {
    set_empty(in_use(cursor));
    return ORMAK_SUCCESS;
}

int ormak_cursor_use(const ORMAK_CURSOR *cursor) {
    current_cursor = cursor ? (ORMAK_CURSOR *)cursor : &default_cursor;
    return ORMAK_SUCCESS;
}

int ormak_cursor_use_default(void) { return ormak_cursor_use(nullptr); }

int ormak_cursor_clear(ORMAK_CURSOR *cursor) {
    cursor = in_use(cursor);
    ormak::cursor_release(cursor);
    set_empty(cursor);
    return ORMAK_SUCCESS;
}

int ormak_cursor_clone(const ORMAK_CURSOR *cursor_original, ORMAK_CURSOR *cursor_clone) {
    if (cursor_clone == nullptr) return ORMAK_ERROR_NO_ADDRESS;
    const ORMAK_CURSOR *source = in_use(cursor_original);
    ormak_cursor_clear(cursor_clone);
    if (source == cursor_clone) return ORMAK_SUCCESS;
    cursor_clone->data_type = source->data_type;
    if (!copy_elements(cursor_clone, source, cursor_clone, source->data_type == ORMAK_VARCHAR)) {
        ormak_cursor_clear(cursor_clone);
        return ORMAK_ERROR_NOT_ENOUGH_MEMORY;
    }
    cursor_clone->count = source->count;
    cursor_clone->position = source->position;
    cursor_clone->current = element_at(cursor_clone, source->position);
    return ORMAK_SUCCESS;
}

int ormak_cursor_get_data_type(const ORMAK_CURSOR *cursor) { return in_use(cursor)->data_type; }
int ormak_cursor_get_count(const ORMAK_CURSOR *cursor) { return in_use(cursor)->count; }
int ormak_cursor_get_position(const ORMAK_CURSOR *cursor) { return in_use(cursor)->position; }

int ormak_subcursor_get_count(const ORMAK_CURSOR *cursor) {
    ormak_cursor_data *element = in_use(cursor)->current;
    return element && element->subcursor ? element->subcursor->count : 0;
}

int ormak_subcursor_get_position(const ORMAK_CURSOR *cursor) {
    ormak_cursor_data *element = in_use(cursor)->current;
    return element && element->subcursor ? element->subcursor->position : -1;
}

static int size_of(const ORMAK_CURSOR *c) {
    if (c->count == 0) return ORMAK_ERROR_EMPTY;
    if (c->position == -1) return ORMAK_ERROR_BEFORE_FIRST;
    if (c->position == c->count || c->current == nullptr) return ORMAK_ERROR_AFTER_LAST;
    return c->current->size;
}

int ormak_cursor_get_size(const ORMAK_CURSOR *cursor) { return size_of(in_use(cursor)); }

int ormak_subcursor_get_size(const ORMAK_CURSOR *cursor) {
    int status;
    ORMAK_CURSOR *subcursor = subcursor_of(cursor, &status);
    return subcursor ? size_of(subcursor) : status;
}

int ormak_cursor_first(ORMAK_CURSOR *cursor) { return first(in_use(cursor)); }
int ormak_cursor_last(ORMAK_CURSOR *cursor) { return last(in_use(cursor)); }
int ormak_cursor_next(ORMAK_CURSOR *cursor) { return next(in_use(cursor)); }
int ormak_cursor_previous(ORMAK_CURSOR *cursor) { return previous(in_use(cursor)); }
int ormak_cursor_absolute(ORMAK_CURSOR *cursor, int position) { return absolute(in_use(cursor), position); }
int ormak_cursor_relative(ORMAK_CURSOR *cursor, int position) { return relative(in_use(cursor), position); }

int ormak_subcursor_first(ORMAK_CURSOR *cursor) { return on_subcursor(cursor, first); }
int ormak_subcursor_last(ORMAK_CURSOR *cursor) { return on_subcursor(cursor, last); }
int ormak_subcursor_next(ORMAK_CURSOR *cursor) { return on_subcursor(cursor, next); }
int ormak_subcursor_previous(ORMAK_CURSOR *cursor) { return on_subcursor(cursor, previous); }

int ormak_subcursor_absolute(ORMAK_CURSOR *cursor, int position) {
    return on_subcursor(cursor, [position](ORMAK_CURSOR *c) { return absolute(c, position); });
}

int ormak_subcursor_relative(ORMAK_CURSOR *cursor, int position) {
    if (position == 0) return ORMAK_SUCCESS;
    return on_subcursor(cursor, [position](ORMAK_CURSOR *c) { return relative(c, position); });
}

#define ORMAK_GETTERS(suffix, type)                                                                       \
    type *ormak_cursor_get##suffix(const ORMAK_CURSOR *cursor) { return (type *)cursor_data(cursor, nullptr); } \
    type *ormak_subcursor_get##suffix(const ORMAK_CURSOR *cursor) {                                       \
        return (type *)subcursor_data(cursor, nullptr);                                                   \
    }

ORMAK_GETTERS(, void)
ORMAK_GETTERS(_tinyint, char)
ORMAK_GETTERS(_unsigned_tinyint, uint8_t)
ORMAK_GETTERS(_smallint, int16_t)
ORMAK_GETTERS(_unsigned_smallint, uint16_t)
ORMAK_GETTERS(_int, int32_t)
ORMAK_GETTERS(_unsigned_int, uint32_t)
ORMAK_GETTERS(_bigint, int64_t)
ORMAK_GETTERS(_unsigned_bigint, uint64_t)
ORMAK_GETTERS(_float, float)
ORMAK_GETTERS(_double, double)
ORMAK_GETTERS(_char, char)

#undef ORMAK_GETTERS

char *_ormak_cursor_get_char_with_size(const ORMAK_CURSOR *cursor, int *size) {
    return (char *)cursor_data(cursor, size);
}

char *_ormak_subcursor_get_char_with_size(const ORMAK_CURSOR *cursor, int *size) {
    return (char *)subcursor_data(cursor, size);
}

void _ormak_cursor_set_data_type(int data_type) { current_cursor->data_type = data_type; }

int _ormak_cursor_add(const void *data, int size) {
    ORMAK_CURSOR *cursor = current_cursor;
    if (append(cursor, cursor, data, size, cursor->data_type == ORMAK_VARCHAR) == nullptr)
        return ORMAK_ERROR_NOT_ENOUGH_MEMORY;
    cursor->count++;
    return ORMAK_SUCCESS;
}

int _ormak_subcursor_add(const void *data, int size) {
    ORMAK_CURSOR *cursor = current_cursor;
    ormak_cursor_data *element = cursor->tail;
    if (element == nullptr) return ORMAK_ERROR_EMPTY;
    if (element->subcursor == nullptr && (element->subcursor = new_subcursor(cursor)) == nullptr)
        return ORMAK_ERROR_NOT_ENOUGH_MEMORY;
    ORMAK_CURSOR *subcursor = element->subcursor;
    /* Fixed texts and opaque values are kept one byte an element. */
    if (cursor->data_type == ORMAK_CHAR || cursor->data_type == ORMAK_OPAQUE) {
        const char *bytes = (const char *)data;
        for (int i = 0; i < size; i++)
            if (append(cursor, subcursor, bytes ? bytes + i : nullptr, 1, false) == nullptr)
                return ORMAK_ERROR_NOT_ENOUGH_MEMORY;
        subcursor->count += size;
        return ORMAK_SUCCESS;
    }
    if (append(cursor, subcursor, data, size, false) == nullptr) return ORMAK_ERROR_NOT_ENOUGH_MEMORY;
    subcursor->count++;
    return ORMAK_SUCCESS;
}

uintptr_t _ormak_cursor_create(void) {
    ORMAK_CURSOR *cursor = (ORMAK_CURSOR *)malloc(sizeof(ORMAK_CURSOR));
    if (cursor == nullptr) return 0;
    set_empty(cursor);
    return (uintptr_t)cursor;
}

void _ormak_cursor_destroy(uintptr_t address) {
    ORMAK_CURSOR *cursor = (ORMAK_CURSOR *)address;
    if (cursor == nullptr) return;
    ormak_cursor_clear(cursor);
    if (current_cursor == cursor) current_cursor = &default_cursor;
    free(cursor);
}

} // extern "C"
