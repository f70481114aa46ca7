/* RENAME of objects and attributes: each source moves to the new name in the same place of
   the list, inside its own file. Objects move with their links (H5Lmove), attributes in
   place or onto another object. */
#include <string.h>

#include <string>

#include "ObjectDuplication.h"
#include "ObjectStatement.h"
#include "../OrmakExecutors.h"
#include "../language/TreeReader.h"
#include "../session/Session.h"

namespace {

using ormak::fail;

int rename_linked(const char *name, const ormak::Source &source, const std::string &new_name,
                  const char *new_canonical, int object_truncate, const char *word, const ormak::ObjectMessage &message) {
    hid_t location = current_file->group_id;
    /* A group can not go below itself: it would leave the file's tree. */
    if (ormak::is_inside(new_canonical, source.canonical))
        return fail(ORMAK_ERROR_UNKNOWN, "Error when renaming %s \"%s\" as \"%s\" lies inside it", word, name,
                    new_canonical);
    if (strcmp(new_canonical, "/") == 0 || H5Lexists(location, new_canonical, property_link_access_list) > 0) {
        if (object_truncate != 0 || strcmp(new_canonical, "/") == 0)
            return fail(ORMAK_ERROR_ALREADY_EXISTS, "Error when renaming %s \"%s\" as object \"%s\" already exists",
                        word, name, new_name.c_str());
        /* Dropping a group that holds the source would drop the source with it. */
        if (ormak::is_inside(source.canonical, new_canonical))
            return fail(ORMAK_ERROR_UNKNOWN, "Error when renaming %s \"%s\" as \"%s\" holds it", word, name,
                        new_canonical);
        H5Ldelete(location, new_canonical, property_link_access_list);
    }
    if (H5Lmove(location, source.canonical, location, new_canonical, H5P_DEFAULT, property_link_access_list) < 0)
        return message.fail(ORMAK_ERROR_UNKNOWN, name);
    return ORMAK_SUCCESS;
}

} // namespace

extern "C" int ormak_rename_object(pANTLR3_BASE_TREE object_list, pANTLR3_BASE_TREE object_new_list, int object_type,
                                   int object_truncate) {
    namespace tree = ormak::tree;
    const char *word = ormak::object_type_word(object_type);
    const ormak::ObjectMessage message(std::string("Error when renaming ") + word + " \"%s\"");
    int status = ormak::for_each_object(object_list, message, [&](const ormak::ObjectItem &item) {
        const char *name = item.object_name;
        const char *new_name = tree::text(tree::child(object_new_list, item.index));
        ormak::Source source;
        int checked = ormak::read_source(name, new_name != nullptr, object_type, "renaming", current_file->group_id,
                                         source);
        if (checked != ORMAK_SUCCESS) return checked;
        std::string written;
        char new_canonical[ORMAK_TEXT_SIZE];
        if ((checked = ormak::read_new_name(name, new_name, source, object_type, "renaming", written,
                                            new_canonical)) != ORMAK_SUCCESS)
            return checked;
        if (strcmp(source.canonical, new_canonical) == 0)
            return fail(ORMAK_ERROR_UNKNOWN, "Error when renaming %s \"%s\" as \"%s\" since it has the same canonical name",
                        word, name, new_canonical);
        if (source.attribute)
            return _ormak_duplicate_attribute(name, source.canonical, written.c_str(), new_canonical, object_truncate, 0,
                                              object_type, current_file->group_id, current_file->group_id);
        return rename_linked(name, source, written, new_canonical, object_truncate, word, message);
    });
    return ormak::trace("ormak_rename_object", status,
                        {{"object_list", (const void *)object_list},
                         {"object_new_list", (const void *)object_new_list},
                         {"object_type", object_type},
                         {"object_truncate", object_truncate}});
}
