/* COPY of objects and attributes: each source is duplicated under the target in the same
   place of the list. Source and target may each name a file, open for that pair only; a
   relative target counts from the source's file. */
#include <errno.h>
#include <string.h>

#include <string>

#include "ObjectDuplication.h"
#include "ObjectStatement.h"
#include "../OrmakExecutors.h"
#include "../files/FilesInUse.h"
#include "../language/TreeReader.h"
#include "../session/Session.h"

namespace {

namespace tree = ormak::tree;
using ormak::fail;

/* The files opened for one pair, closed newest first so that the stack unwinds. */
class PairFiles {
public:
    ~PairFiles() { close(); }
    int open(const char *file_name) {
        int status = _ormak_use_file(file_name, -1);
        if (status == ORMAK_SUCCESS) count_++;
        return status;
    }
    /* The first failure of a close, or success. */
    int close() {
        int status = ORMAK_SUCCESS;
        for (; count_ > 0; count_--) {
            int closed = _ormak_close_file();
            if (status == ORMAK_SUCCESS) status = closed;
        }
        return status;
    }

private:
    int count_ = 0;
};

/* Where the statement began: the file in use, if any, and its current group. */
struct Home {
    bool in_use;
    hid_t location;
};

int copy_linked(const char *name, hid_t source_location, const ormak::Source &source, hid_t target_location,
                const std::string &new_name, const char *new_canonical, bool one_file, int object_truncate,
                const char *word, const ormak::ObjectMessage &message) {
    H5O_info_t info;
    if (H5Oget_info_by_name2(source_location, source.canonical, &info, H5O_INFO_BASIC, property_link_access_list) < 0) {
        H5L_info_t link;
        if (H5Lget_info(source_location, source.canonical, &link, property_link_access_list) >= 0 &&
            (link.type == H5L_TYPE_SOFT || link.type == H5L_TYPE_EXTERNAL))
            return fail(ORMAK_ERROR_DANGLING_LINK, "Error when opening object \"%s\" as it is a dangling link", name);
        return fail(ORMAK_ERROR_UNKNOWN, "Error when getting information about object \"%s\"", name);
    }
    bool root = strcmp(new_canonical, "/") == 0;
    if (root || H5Lexists(target_location, new_canonical, property_link_access_list) > 0) {
        if (object_truncate != 0 || root)
            return fail(ORMAK_ERROR_ALREADY_EXISTS, "Error when copying %s \"%s\" as object \"%s\" already exists", word,
                        name, new_name.c_str());
        /* Dropping a group that holds the source would drop the source with it. */
        if (one_file && ormak::is_inside(source.canonical, new_canonical))
            return fail(ORMAK_ERROR_UNKNOWN, "Error when copying %s \"%s\" as \"%s\" holds it", word, name, new_canonical);
        H5Ldelete(target_location, new_canonical, property_link_access_list);
    }
    errno = 0;
    if (H5Ocopy(source_location, source.canonical, target_location, new_canonical, H5P_DEFAULT, H5P_DEFAULT) < 0)
        return message.fail_call(name);
    return ORMAK_SUCCESS;
}

int copy_pair(pANTLR3_BASE_TREE item, pANTLR3_BASE_TREE new_item, const Home &home, int object_type,
              int object_truncate, const ormak::ObjectMessage &message, PairFiles &files) {
    const char *word = ormak::object_type_word(object_type);
    const char *source_file = tree::text(tree::child(tree::child(item, 0), 0));
    const char *name = tree::text(tree::child(item, 1));
    int status;
    hid_t source_location = home.location;
    if (source_file) {
        if ((status = files.open(source_file)) != ORMAK_SUCCESS) return status;
        source_location = current_file->group_id;
    } else if (!home.in_use) {
        return message.fail(ORMAK_ERROR_NOT_OPEN, name, " as no file is in use");
    }
    ormak::Source source;
    if ((status = ormak::read_source(name, new_item != nullptr, object_type, "copying", source_location, source)) !=
        ORMAK_SUCCESS)
        return status;
    /* The new name counts from the file on top, the source's. */
    const char *target_file = tree::text(tree::child(tree::child(new_item, 0), 0));
    std::string written;
    char new_canonical[ORMAK_TEXT_SIZE];
    if ((status = ormak::read_new_name(name, tree::text(tree::child(new_item, 1)), source, object_type, "copying",
                                       written, new_canonical)) != ORMAK_SUCCESS)
        return status;
    hid_t target_location = home.location;
    if (target_file) {
        if ((status = files.open(target_file)) != ORMAK_SUCCESS) return status;
        target_location = current_file->group_id;
    } else if (!home.in_use) {
        return message.fail(ORMAK_ERROR_NOT_OPEN, name, " as no file is in use");
    }
    /* A file may be named and still be the one in use, or the source's. */
    bool one_file = (!source_file && !target_file) || ormak::same_file(source_location, target_location);
    if (one_file && strcmp(source.canonical, new_canonical) == 0)
        return fail(ORMAK_ERROR_UNKNOWN, "Error when copying %s \"%s\" to \"%s\" since it has the same canonical name", word,
                    name, new_canonical);
    if (source.attribute)
        return _ormak_duplicate_attribute(name, source.canonical, written.c_str(), new_canonical, object_truncate, 1,
                                          object_type, source_location, target_location);
    if ((status = copy_linked(name, source_location, source, target_location, written, new_canonical, one_file,
                              object_truncate, word, message)) != ORMAK_SUCCESS)
        return status;
    if (!ormak::flush_location(target_location)) return message.fail_call(name);
    return ORMAK_SUCCESS;
}

} // namespace

extern "C" int ormak_copy_object(pANTLR3_BASE_TREE object_list, pANTLR3_BASE_TREE object_new_list, int object_type,
                                 int object_truncate) {
    const ormak::ObjectMessage message(std::string("Error when copying ") + ormak::object_type_word(object_type) +
                                       " \"%s\"");
    const Home home = {current_file != nullptr, current_file ? current_file->group_id : -1};
    int status = ORMAK_SUCCESS;
    for (int i = 0; status == ORMAK_SUCCESS && i < tree::count(object_list); i++) {
        PairFiles files;
        status = copy_pair(tree::child(object_list, i), tree::child(object_new_list, i), home, object_type,
                           object_truncate, message, files);
        int closed = files.close();
        if (closed != ORMAK_SUCCESS) status = closed;
    }
    return ormak::trace("ormak_copy_object", status,
                        {{"object_list", (const void *)object_list},
                         {"object_new_list", (const void *)object_new_list},
                         {"object_type", object_type},
                         {"object_truncate", object_truncate}});
}
