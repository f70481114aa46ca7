/* Readers of the statements that define objects inside files. */
#include "DefinitionReadings.h"
#include "OrmakParser.h"
#include "StatementReaders.h"
#include "TreeReader.h"
#include "../OrmakExecutors.h"

namespace ormak {

int read_create_group(pANTLR3_BASE_TREE statement, int) {
    StorageThresholds objects = read_storage_thresholds(tree::slot(statement, 3));
    StorageThresholds attributes = read_storage_thresholds(tree::slot(statement, 5));
    return ormak_create_group(tree::list(statement, 1), tree::flag(statement, 0), read_order(tree::slot(statement, 2)),
                              objects.present, objects.max_compact, objects.min_dense,
                              read_order(tree::slot(statement, 4)), attributes.present, attributes.max_compact,
                              attributes.min_dense);
}

/* SOFT or left out 0, HARD 1. */
int read_create_link(pANTLR3_BASE_TREE statement, int) {
    int link_type = tree::flag(statement, 1) == 0 && tree::choice(statement, 1) != SOFT_KEYWORD ? 1 : 0;
    return ormak_create_link(tree::list(statement, 2), tree::list(statement, 3), link_type, tree::flag(statement, 0));
}

int read_create_external_link(pANTLR3_BASE_TREE statement, int) {
    return ormak_create_external_link(tree::list(statement, 1), tree::list(statement, 2), tree::flag(statement, 0));
}

} // namespace ormak
