/* Memory variable slots. */
#include <stdlib.h>

#include "Variables.h"

namespace ormak {

void variable_slot_empty(_ormak_variable *slot) {
    slot->address = UINTPTR_MAX;
    slot->data_type = -1;
    slot->count = 0;
    slot->size = 0;
    slot->dimension_count = 0;
    slot->element_count = 0;
    slot->element_list = nullptr;
    slot->transient = -1;
    slot->used = -1;
}

} // namespace ormak

extern "C" int _ormak_variable_unregister(int number) {
    if (number < 0 || number >= ORMAK_VARIABLE_COUNT) return ORMAK_ERROR_NOT_REGISTERED;
    _ormak_variable *slot = &variable_list[number];
    free(slot->element_list);
    ormak::variable_slot_empty(slot);
    return ORMAK_SUCCESS;
}
