/* Cursors: the in-memory result sets that callers walk. */
#include <stdlib.h>

#include "../OrmakPrivateStructures.h"

static void release_elements(ORMAK_CURSOR *cursor) {
    ormak_cursor_data *element = cursor->head;
    while (element) {
        ormak_cursor_data *next = element->next;
        if (element->subcursor) {
            release_elements(element->subcursor);
            free(element->subcursor);
        }
        free(element->data);
        free(element);
        element = next;
    }
}

extern "C" int ormak_cursor_clear(ORMAK_CURSOR *cursor) {
    if (cursor == nullptr) cursor = current_cursor;
    release_elements(cursor);
    cursor->data_type = ORMAK_UNDEFINED;
    cursor->count = 0;
    cursor->position = -1;
    cursor->head = cursor->tail = cursor->current = nullptr;
    return ORMAK_SUCCESS;
}
