/* CREATE GROUP: makes groups, and the missing groups on the way to each, with the order and
   storage of links and attributes that the statement gives. */
#include <string.h>

#include <string>

#include "ObjectStatement.h"
#include "../OrmakExecutors.h"
#include "../files/CanonicalPath.h"
#include "../files/FileNames.h"
#include "../session/Handle.h"
#include "../session/Session.h"

namespace {

/* H5P_CRT_ORDER_TRACKED, and that with H5P_CRT_ORDER_INDEXED. */
unsigned order_flags(int order) { return order == ORMAK_TRACKED ? 1u : 3u; }

/* Checks the values and fills the creation list, once for the whole statement. */
int prepare(hid_t list, const char *name, int object_order, int object_storage, int object_max_compact,
            int object_min_dense, int attribute_order, int attribute_storage, int attribute_max_compact,
            int attribute_min_dense) {
    using ormak::fail;
    if (object_storage == 0 && object_max_compact < 0)
        return fail(ORMAK_ERROR_INVALID_VALUE,
                    "Error when creating group \"%s\" as object storage max compact is not equal to or greater than 0", name);
    if (object_storage == 0 && object_min_dense < 0)
        return fail(ORMAK_ERROR_INVALID_VALUE,
                    "Error when creating group \"%s\" as object storage min density is not equal to or greater than 0", name);
    if (attribute_storage == 0 && attribute_max_compact < 0)
        return fail(ORMAK_ERROR_INVALID_VALUE,
                    "Error when creating group \"%s\" as attribute storage max compact is not equal to or greater than 0",
                    name);
    if (attribute_storage == 0 && attribute_min_dense < 0)
        return fail(ORMAK_ERROR_INVALID_VALUE,
                    "Error when creating group \"%s\" as attribute storage min density is not equal to or greater than 0",
                    name);
    if (object_order != -1 && H5Pset_link_creation_order(list, order_flags(object_order)) < 0)
        return fail(ORMAK_ERROR_UNKNOWN, "Error when setting order %s to create group \"%s\"",
                    object_order == ORMAK_TRACKED ? "tracked" : "indexed", name);
    if (object_storage == 0 && H5Pset_link_phase_change(list, object_max_compact, object_min_dense) < 0)
        return fail(ORMAK_ERROR_UNKNOWN, "Error when setting storage to create group \"%s\"", name);
    if (attribute_order != -1 && H5Pset_attr_creation_order(list, order_flags(attribute_order)) < 0)
        return fail(ORMAK_ERROR_UNKNOWN, "Error when setting attribute order %s to create group \"%s\"",
                    attribute_order == ORMAK_TRACKED ? "tracked" : "indexed", name);
    if (attribute_storage == 0 && H5Pset_attr_phase_change(list, attribute_max_compact, attribute_min_dense) < 0)
        return fail(ORMAK_ERROR_UNKNOWN, "Error when setting attribute storage to create group \"%s\"", name);
    return ORMAK_SUCCESS;
}

int create_group(hid_t file_id, const char *path, hid_t list, const ormak::ObjectMessage &message, const char *name) {
    hid_t group = H5Gcreate2(file_id, path, H5P_DEFAULT, list, property_group_access_list);
    if (group < 0) return message.fail_call(name);
    H5Gclose(group);
    return ORMAK_SUCCESS;
}

} // namespace

extern "C" int ormak_create_group(pANTLR3_BASE_TREE group_list, int group_truncate, int object_order,
                                  int object_storage, int object_max_compact, int object_min_dense,
                                  int attribute_order, int attribute_storage, int attribute_max_compact,
                                  int attribute_min_dense) {
    const ormak::ObjectMessage message("Error when creating group \"%s\"");
    ormak::Handle list(H5Pclose, H5Pcreate(H5P_GROUP_CREATE));
    const char *first = ormak::tree_first_object_name(group_list);
    int status = prepare(list, first, object_order, object_storage, object_max_compact, object_min_dense,
                         attribute_order, attribute_storage, attribute_max_compact, attribute_min_dense);
    if (status == ORMAK_SUCCESS) {
        status = ormak::for_each_object(group_list, message, [&](const ormak::ObjectItem &item) {
            std::string path;
            int prepared = ormak::prepare_new_object(item.object_name, group_truncate, list, message, path);
            if (prepared != ORMAK_SUCCESS) return prepared;
            return create_group(current_file->file_id, path.c_str(), list, message, item.object_name);
        });
    }
    list.reset();
    return ormak::trace("ormak_create_group", status,
                        {{"group_list", (const void *)group_list},
                         {"group_truncate", group_truncate},
                         {"object_order", object_order},
                         {"object_storage", object_storage},
                         {"object_max_compact", object_max_compact},
                         {"object_min_dense", object_min_dense},
                         {"attribute_order", attribute_order},
                         {"attribute_storage", attribute_storage},
                         {"attribute_max_compact", attribute_max_compact},
                         {"attribute_min_dense", attribute_min_dense}});
}
