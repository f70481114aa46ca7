/* CREATE LINK and CREATE EXTERNAL LINK. Link names and targets reach the library as
   written, relative to the current group, and no missing parent is made. */
#include <string.h>

#include <string>

#include "ObjectStatement.h"
#include "../OrmakExecutors.h"
#include "../files/CanonicalPath.h"
#include "../files/FileNames.h"
#include "../language/TreeReader.h"
#include "../session/Session.h"

namespace tree = ormak::tree;

namespace {

/* Checks a target's name and, with TRUNCATE, removes what stands at the link's name. */
int prepare_link(const ormak::ObjectMessage &message, const char *link_name, const char *object_name, bool has_target,
                 bool target_ends_with_slash, int link_truncate) {
    if (ormak::ends_with_slash(link_name))
        return message.fail(ORMAK_ERROR_UNKNOWN, link_name, " as it should not end with \"/\"");
    if (!has_target)
        return message.fail(ORMAK_ERROR_UNKNOWN, link_name,
                            " as it does not have a corresponding object to link to specified");
    if (target_ends_with_slash) {
        std::string cause = std::string(" as object \"") + object_name + "\" should not end with \"/\"";
        return message.fail(ORMAK_ERROR_UNKNOWN, link_name, cause.c_str());
    }
    hid_t group = current_file->group_id;
    if (H5Lexists(group, link_name, property_link_access_list) > 0) {
        if (link_truncate != 0) return message.fail(ORMAK_ERROR_ALREADY_EXISTS, link_name, " as it already exists");
        H5Ldelete(group, link_name, property_link_access_list);
    }
    return ORMAK_SUCCESS;
}

} // namespace

extern "C" {

int ormak_create_link(pANTLR3_BASE_TREE link_list, pANTLR3_BASE_TREE object_list, int link_type, int link_truncate) {
    const bool hard = link_type == 1;
    const ormak::ObjectMessage message(hard ? "Error when creating hard link \"%s\"" : "Error when creating soft link \"%s\"");
    int status = ormak::for_each_object(link_list, message, [&](const ormak::ObjectItem &item) {
        const char *link_name = item.object_name;
        const char *object_name = tree::text(tree::child(object_list, item.index));
        int prepared = prepare_link(message, link_name, object_name, object_name != nullptr,
                                    object_name && ormak::ends_with_slash(object_name), link_truncate);
        if (prepared != ORMAK_SUCCESS) return prepared;
        hid_t group = current_file->group_id;
        herr_t made;
        if (hard) {
            if (H5Lexists(group, object_name, property_link_access_list) <= 0) {
                std::string cause = std::string(" as object \"") + object_name + "\" does not exist";
                return message.fail(ORMAK_ERROR_NOT_FOUND, link_name, cause.c_str());
            }
            made = H5Lcreate_hard(group, object_name, H5L_SAME_LOC, link_name, H5P_DEFAULT, property_link_access_list);
        } else {
            /* The target is stored as written, and may not exist yet. */
            made = H5Lcreate_soft(object_name, group, link_name, H5P_DEFAULT, property_link_access_list);
        }
        return made < 0 ? message.fail_call(link_name) : ORMAK_SUCCESS;
    });
    return ormak::trace("ormak_create_link", status,
                        {{"link_list", (const void *)link_list},
                         {"object_list", (const void *)object_list},
                         {"link_type", link_type},
                         {"link_truncate", link_truncate}});
}

int ormak_create_external_link(pANTLR3_BASE_TREE link_list, pANTLR3_BASE_TREE object_list, int link_truncate) {
    const ormak::ObjectMessage message("Error when creating external link \"%s\"");
    int status = ormak::for_each_object(link_list, message, [&](const ormak::ObjectItem &item) {
        const char *link_name = item.object_name;
        bool has_target = item.index < tree::count(object_list) / 2;
        const char *file_name = tree::text(tree::child(object_list, 2 * item.index));
        const char *object_name = tree::text(tree::child(object_list, 2 * item.index + 1));
        /* "/" itself is a target: the root group of the other file. */
        char canonical[ORMAK_TEXT_SIZE];
        bool slash = has_target && ormak::ends_with_slash(object_name) &&
                     strcmp(ormak_get_canonical_path(object_name, canonical), "/") != 0;
        int prepared = prepare_link(message, link_name, object_name, has_target, slash, link_truncate);
        if (prepared != ORMAK_SUCCESS) return prepared;
        herr_t made = H5Lcreate_external(file_name, object_name, current_file->group_id, link_name, H5P_DEFAULT,
                                         H5P_DEFAULT);
        return made < 0 ? message.fail_call(link_name) : ORMAK_SUCCESS;
    });
    return ormak::trace("ormak_create_external_link", status,
                        {{"link_list", (const void *)link_list},
                         {"object_list", (const void *)object_list},
                         {"link_truncate", link_truncate}});
}

} // extern "C"
