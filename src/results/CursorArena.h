/* Memory of a cursor's elements. Elements and their values are carved out of large blocks
   owned by the cursor and given back all at once when the cursor is cleared, which is the
   only way elements ever leave a cursor: filling costs no heap call per value. */
#ifndef ORMAK_CURSOR_ARENA_H
#define ORMAK_CURSOR_ARENA_H

#include <stddef.h>

#include "../OrmakStructures.h"

namespace ormak {

/* Room for `size` bytes that live until `cursor` is cleared; null when memory is out. */
void *cursor_allocate(const ORMAK_CURSOR *cursor, size_t size);
/* Gives back everything allocated for `cursor`. */
void cursor_release(const ORMAK_CURSOR *cursor);

} // namespace ormak

#endif
