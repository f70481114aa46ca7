#include <errno.h>
#include <stdio.h>

#include "ObjectStatement.h"
#include "../OrmakExecutors.h"
#include "../files/CanonicalPath.h"
#include "../files/FileNames.h"
#include "../files/FilesInUse.h"
#include "../language/TreeReader.h"
#include "../session/Session.h"

namespace ormak {

int ObjectMessage::fail(int status, const char *object_name, const char *cause) const {
    int length = snprintf(error_message, sizeof error_message, plain_.c_str(), object_name);
    if (length >= 0 && length < (int)sizeof error_message)
        snprintf(error_message + length, sizeof error_message - length, "%s", cause);
    return status;
}

int ObjectMessage::fail_call(const char *object_name) const {
    if (errno == ENOSPC)
        return fail(ORMAK_ERROR_NOT_ENOUGH_SPACE, object_name, " as there is not enough space available");
    return fail(ORMAK_ERROR_UNKNOWN, object_name);
}

const char *tree_first_object_name(pANTLR3_BASE_TREE list) {
    const char *name = tree::text(tree::child(tree::child(list, 0), 1));
    return name ? name : "";
}

int prepare_new_object(const char *name, int truncate, hid_t group_create_list, const ObjectMessage &message,
                       std::string &path) {
    if (ends_with_slash(name)) return message.fail(ORMAK_ERROR_UNKNOWN, name, " as it should not end with \"/\"");
    if (!canonical_path(name, nullptr)) return message.fail(ORMAK_ERROR_UNKNOWN, name, " as its path is too long");
    int count = object_name_list_count;
    /* The root always exists and can not be made again. */
    if (count == 0) return message.fail(ORMAK_ERROR_ALREADY_EXISTS, name, " as it already exists");
    hid_t file_id = current_file->file_id;
    path = "/";
    for (int i = 0; i < count - 1; i++) {
        path += object_name_list[i];
        if (H5Lexists(file_id, path.c_str(), property_link_access_list) <= 0) {
            hid_t group = H5Gcreate2(file_id, path.c_str(), H5P_DEFAULT, group_create_list, property_group_access_list);
            if (group < 0) return message.fail_call(name);
            H5Gclose(group);
        }
        path += "/";
    }
    path += object_name_list[count - 1];
    if (H5Lexists(file_id, path.c_str(), property_link_access_list) > 0) {
        if (truncate != 0) return message.fail(ORMAK_ERROR_ALREADY_EXISTS, name, " as it already exists");
        H5Ldelete(file_id, path.c_str(), property_link_access_list);
    }
    return ORMAK_SUCCESS;
}

int info_failure(const char *path, const char *object_name) {
    H5L_info_t link;
    if (H5Lget_info(current_file->file_id, path, &link, property_link_access_list) >= 0 &&
        (link.type == H5L_TYPE_SOFT || link.type == H5L_TYPE_EXTERNAL))
        return ormak::fail(ORMAK_ERROR_DANGLING_LINK, "Error when opening object \"%s\" as it is a dangling link",
                           object_name);
    return ormak::fail(ORMAK_ERROR_UNKNOWN, "Error when getting information about object \"%s\"", object_name);
}

int for_each_object(pANTLR3_BASE_TREE list, const ObjectMessage &message,
                    const std::function<int(const ObjectItem &item)> &work, int file_parallel, bool changes) {
    int status = ORMAK_SUCCESS;
    bool file_opened = false;
    for (int i = 0; i < tree::count(list); i++) {
        pANTLR3_BASE_TREE item = tree::child(list, i);
        ObjectItem object = {i, tree::text(tree::child(tree::child(item, 0), 0)), tree::text(tree::child(item, 1))};
        if (object.file_name) {
            if ((status = _ormak_use_file(object.file_name, file_parallel)) != ORMAK_SUCCESS) break;
            file_opened = true;
        } else if (current_file == nullptr) {
            status = message.fail(ORMAK_ERROR_NOT_OPEN, object.object_name, " as no file is in use");
            break;
        }
        errno = 0;
        if ((status = work(object)) != ORMAK_SUCCESS) break;
        if (changes && flush_status != -1) {
            errno = 0;
            if (_ormak_flush(flush_status) != ORMAK_SUCCESS) {
                status = message.fail_call(object.object_name);
                break;
            }
        }
        if (file_opened) {
            file_opened = false;
            if ((status = _ormak_close_file()) != ORMAK_SUCCESS) break;
        }
    }
    /* A file named by an item is never left open, on success or failure. */
    if (file_opened) {
        int close_status = _ormak_close_file();
        if (close_status != ORMAK_SUCCESS) status = close_status;
    }
    return status;
}

} // namespace ormak
