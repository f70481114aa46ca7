/* Memory variable slots: the caller registers a block of its own memory and gets back a
   number from 0 to 7, which scripts name in FROM MEMORY and INTO MEMORY. The public
   functions find a slot by the block's address; the underscore twins take the number
   itself, for bindings that keep their own numbers. */
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

namespace {

bool is_slot(int number) { return number >= 0 && number < ORMAK_VARIABLE_COUNT; }

/* The number of the slot that holds `variable`, or the status that says why there is none.
   A free slot's address is all ones, so that address is found in the first free slot. */
int find(const void *variable) {
    if (variable == nullptr) return ORMAK_ERROR_NO_ADDRESS;
    uintptr_t address = (uintptr_t)variable;
    for (int number = 0; number < ORMAK_VARIABLE_COUNT; number++) {
        if (variable_list[number].address == address) return number;
    }
    return ORMAK_ERROR_NOT_REGISTERED;
}

/* Registers `variable` with the given kind (0 transient, -1 staying). An address already
   held keeps its slot and only changes kind, so that it never takes two slots; `used` is
   left alone either way. */
int register_variable(const void *variable, int transient) {
    if (variable == nullptr) return ORMAK_ERROR_NO_ADDRESS;
    uintptr_t address = (uintptr_t)variable;
    int free_number = -1;
    for (int number = 0; number < ORMAK_VARIABLE_COUNT; number++) {
        _ormak_variable *slot = &variable_list[number];
        if (slot->address == address) {
            slot->transient = transient;
            return number;
        }
        if (free_number == -1 && slot->address == UINTPTR_MAX) free_number = number;
    }
    if (free_number == -1) return ORMAK_ERROR_FULL;
    variable_list[free_number].address = address;
    variable_list[free_number].transient = transient;
    return free_number;
}

/* Entry `index` of a list of `count`, or -14 past its end. */
int entry(const int *list, int count, int index) {
    if (index < 0 || index >= count) return ORMAK_ERROR_INVALID_VALUE;
    return list[index];
}

} // namespace

extern "C" {

int ormak_variable_register(const void *variable) { return register_variable(variable, -1); }
int ormak_variable_transient_register(const void *variable) { return register_variable(variable, 0); }

int ormak_variable_unregister(const void *variable) {
    int number = find(variable);
    if (number < 0) return number;
    return _ormak_variable_unregister(number);
}

int ormak_variable_unregister_all(void) {
    for (int number = 0; number < ORMAK_VARIABLE_COUNT; number++) _ormak_variable_unregister(number);
    return ORMAK_SUCCESS;
}

int ormak_variable_get_number(const void *variable) { return find(variable); }

int ormak_variable_get_data_type(const void *variable) {
    int number = find(variable);
    return number < 0 ? number : variable_list[number].data_type;
}

int ormak_variable_get_count(const void *variable) {
    int number = find(variable);
    return number < 0 ? number : variable_list[number].count;
}

int ormak_variable_get_size(const void *variable) {
    int number = find(variable);
    return number < 0 ? number : variable_list[number].size;
}

int ormak_variable_get_dimension_count(const void *variable) {
    int number = find(variable);
    return number < 0 ? number : variable_list[number].dimension_count;
}

/* A negative index is refused before the search, so it answers -14 even for an address
   that is not registered; only a null address comes first. */
int ormak_variable_get_dimension(const void *variable, int index) {
    if (variable == nullptr) return ORMAK_ERROR_NO_ADDRESS;
    if (index < 0) return ORMAK_ERROR_INVALID_VALUE;
    int number = find(variable);
    if (number < 0) return number;
    const _ormak_variable *slot = &variable_list[number];
    return entry(slot->dimension_list, slot->dimension_count, index);
}

/* Nothing fills element_list yet, so every registered variable answers -14 here. */
int ormak_variable_get_element_count(const void *variable, int index) {
    if (variable == nullptr) return ORMAK_ERROR_NO_ADDRESS;
    if (index < 0) return ORMAK_ERROR_INVALID_VALUE;
    int number = find(variable);
    if (number < 0) return number;
    const _ormak_variable *slot = &variable_list[number];
    return entry(slot->element_list, slot->element_count, index);
}

/* The by-number twins trust the binding for a registered slot, but a number outside
   0 to 7 answers -20 rather than reaching past the list. */
int _ormak_variable_register(int number, uintptr_t address, int transient) {
    if (!is_slot(number)) return ORMAK_ERROR_NOT_REGISTERED;
    variable_list[number].address = address;
    variable_list[number].transient = transient;
    return ORMAK_SUCCESS;
}

int _ormak_variable_unregister(int number) {
    if (!is_slot(number)) return ORMAK_ERROR_NOT_REGISTERED;
    _ormak_variable *slot = &variable_list[number];
    free(slot->element_list);
    ormak::variable_slot_empty(slot);
    return ORMAK_SUCCESS;
}

int _ormak_variable_get_data_type(int number) {
    return is_slot(number) ? variable_list[number].data_type : ORMAK_ERROR_NOT_REGISTERED;
}

int _ormak_variable_get_count(int number) {
    return is_slot(number) ? variable_list[number].count : ORMAK_ERROR_NOT_REGISTERED;
}

int _ormak_variable_get_size(int number) {
    return is_slot(number) ? variable_list[number].size : ORMAK_ERROR_NOT_REGISTERED;
}

int _ormak_variable_get_dimension_count(int number) {
    return is_slot(number) ? variable_list[number].dimension_count : ORMAK_ERROR_NOT_REGISTERED;
}

int _ormak_variable_get_dimension(int number, int index) {
    if (index < 0) return ORMAK_ERROR_INVALID_VALUE;
    if (!is_slot(number)) return ORMAK_ERROR_NOT_REGISTERED;
    const _ormak_variable *slot = &variable_list[number];
    return entry(slot->dimension_list, slot->dimension_count, index);
}

} // extern "C"
