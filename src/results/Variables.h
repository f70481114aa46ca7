/* Memory variables: blocks of the caller's memory known by a number from 0 to 7. */
#ifndef ORMAK_VARIABLES_H
#define ORMAK_VARIABLES_H

#include "../OrmakPrivateStructures.h"

namespace ormak {
/* Puts a slot in its free state; does not free element_list. */
void variable_slot_empty(_ormak_variable *slot);
}

#endif
