/* The cursor dump of the debug trace. */
#include <stdio.h>

#include "../OrmakPrivateStructures.h"

extern "C" void _ormak_show_debug_information(void) {
    printf("CURSOR DATA TYPE <%d>\n", current_cursor->data_type);
    printf("CURSOR COUNT <%d>\n\n", current_cursor->count);
    current_cursor->position = -1;
    current_cursor->current = nullptr;
}
