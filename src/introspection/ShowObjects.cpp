/* SHOW [kind] [[file] object] [LIKE ...] [WHERE ...] [ORDER CREATION]: the members of a group,
   the attributes of an object, one name confirmed, or the paths that match an expression. */
#include <stdio.h>
#include <string.h>

#include <new>
#include <string>
#include <vector>

#include "ObjectListing.h"
#include "ShowFrame.h"
#include "../OrmakExecutors.h"
#include "../files/CanonicalPath.h"
#include "../files/FilesInUse.h"

namespace {

/* The object the canonical `path` names, as object_type wants it; object_name_list holds
   its components. 0 when it is there. */
int confirm_object(const char *object_name, const char *path, int object_type) {
    const hid_t file_id = current_file->file_id;
    if (object_type == -1 && H5Lexists(file_id, path, property_link_access_list) > 0) return ORMAK_SUCCESS;
    if (object_type == -1 || object_type == ORMAK_ATTRIBUTE) {
        /* An attribute of the object above it. */
        std::string parent(path, strrchr(path, '/') - path);
        if (parent.empty()) parent = "/";
        hid_t object = H5Oopen(current_file->group_id, parent.c_str(), property_link_access_list);
        if (object < 0)
            return object_type == -1
                       ? ormak::fail(ORMAK_ERROR_UNKNOWN, "Error when opening object \"%s\"", object_name)
                       : ormak::fail(ORMAK_ERROR_UNKNOWN, "Error when getting information about object \"%s\"",
                                     object_name);
        htri_t exists =
            object_name_list_count > 0 ? H5Aexists(object, object_name_list[object_name_list_count - 1]) : 0;
        H5Oclose(object);
        if (exists > 0) return ORMAK_SUCCESS;
        return ormak::fail(ORMAK_ERROR_NOT_FOUND, "Error when showing %s \"%s\" as it does not exist",
                           object_type == -1 ? "object" : "attribute", object_name);
    }
    if (H5Lexists(file_id, path, property_link_access_list) <= 0)
        return ormak::fail(ORMAK_ERROR_NOT_FOUND, "Error when showing object \"%s\" as it does not exist", object_name);
    if (object_type == ORMAK_GROUP || object_type == ORMAK_DATASET) {
        H5O_info_t info;
        if (H5Oget_info_by_name2(file_id, path, &info, H5O_INFO_BASIC, property_link_access_list) < 0)
            return ormak::info_failure(path, object_name);
        const H5O_type_t wanted = object_type == ORMAK_GROUP ? H5O_TYPE_GROUP : H5O_TYPE_DATASET;
        if (info.type != wanted)
            return ormak::fail(ORMAK_ERROR_UNEXPECTED_TYPE, "Error when showing object \"%s\" as it is not a %s",
                               object_name, ormak::object_noun(object_type, false));
        return ORMAK_SUCCESS;
    }
    H5L_info_t link;
    if (H5Lget_info(file_id, path, &link, property_link_access_list) < 0)
        return ormak::fail(ORMAK_ERROR_UNKNOWN, "Error when getting information about object \"%s\"", object_name);
    const H5L_type_t wanted = object_type == ORMAK_SOFT_LINK ? H5L_TYPE_SOFT : H5L_TYPE_EXTERNAL;
    if (link.type != wanted)
        return ormak::fail(ORMAK_ERROR_UNEXPECTED_TYPE, "Error when showing object \"%s\" as it is not %s %s",
                           object_name, object_type == ORMAK_SOFT_LINK ? "a" : "an",
                           ormak::object_noun(object_type, false));
    return ORMAK_SUCCESS;
}

/* Names found before the result's size is known, for a result that is not the cursor. */
struct Collected {
    std::vector<std::string> names;
    const char *memory_message;

    int keep(const char *name) {
        try {
            names.emplace_back(name);
            return ORMAK_SUCCESS;
        } catch (const std::bad_alloc &) {
            return ormak::fail(ORMAK_ERROR_NOT_ENOUGH_MEMORY, "%s", memory_message);
        }
    }

    int deliver(ormak::ShowFrame &frame) {
        int status = frame.begin(ORMAK_VARCHAR, (int)names.size(), memory_message);
        for (size_t i = 0; status == ORMAK_SUCCESS && i < names.size(); i++) status = frame.add_text(names[i].c_str());
        return status;
    }
};

/* The frame of both listings: the file of the statement in use, then `find` hands each name
   to the sink, which fills the cursor straight away or collects for the road out. */
template <typename Find>
int list_names(ormak::ShowFrame &frame, const char *file_object_name, const char *memory_message, Find find) {
    int status = frame.decode();
    bool file_opened = false;
    if (status == ORMAK_SUCCESS && file_object_name) {
        status = _ormak_use_file(file_object_name, -1);
        file_opened = status == ORMAK_SUCCESS;
    }
    Collected collected{{}, memory_message};
    if (status == ORMAK_SUCCESS) {
        if (frame.direct()) {
            status = frame.begin(ORMAK_VARCHAR, 0, memory_message);
            if (status == ORMAK_SUCCESS)
                status = find([&](const char *name, int) { return frame.add_text(name); });
        } else {
            status = find([&](const char *name, int) { return collected.keep(name); });
            if (status == ORMAK_SUCCESS) status = collected.deliver(frame);
        }
    }
    if (status == ORMAK_SUCCESS) status = frame.deliver();
    if (file_opened) {
        int close_status = _ormak_close_file();
        if (close_status != ORMAK_SUCCESS) status = close_status;
    }
    return status;
}

} // namespace

extern "C" {

int ormak_show_object(const char *file_object_name, const char *object_name, int object_type,
                      pANTLR3_BASE_TREE where_list, int order_creation, pANTLR3_BASE_TREE post_processing_list,
                      pANTLR3_BASE_TREE output_redirecting, int programming_language) {
    ormak::ShowFrame frame(post_processing_list, output_redirecting, programming_language);
    const bool one = object_name && !ormak::refers_to_contents(object_name);
    char memory_message[ORMAK_TEXT_SIZE * 2];
    if (one)
        snprintf(memory_message, sizeof memory_message,
                 "Error when showing %s \"%s\" as there is not enough memory available",
                 ormak::object_noun(object_type, false), object_name);
    else
        snprintf(memory_message, sizeof memory_message, "Error when showing %s as there is not enough memory available",
                 ormak::object_noun(object_type, true));
    int status = ORMAK_SUCCESS;
    if (file_object_name == nullptr && current_file == nullptr) {
        status = object_name ? ormak::fail(ORMAK_ERROR_NOT_OPEN, "Error when showing %s \"%s\" as no file is in use",
                                           ormak::object_noun(object_type, false), object_name)
                             : ormak::fail(ORMAK_ERROR_NOT_OPEN, "Error when showing %s as no file is in use",
                                           ormak::object_noun(object_type, true));
    } else {
        status = list_names(frame, file_object_name, memory_message, [&](const ormak::ListingSink &sink) {
            char path[ORMAK_TEXT_SIZE];
            if (object_name && !ormak::canonical_path(object_name, path))
                return ormak::fail(ORMAK_ERROR_UNKNOWN, "Error when showing %s \"%s\" as its path is too long",
                                   ormak::object_noun(object_type, one ? false : true), object_name);
            if (!one) return ormak::list_object(object_name, object_name ? path : nullptr, order_creation, object_type,
                                                false, sink);
            int found = confirm_object(object_name, path, object_type);
            return found == ORMAK_SUCCESS ? sink(object_name, object_type) : found;
        });
    }
    return frame.finish("ormak_show_object", status,
                        {{"file_object_name", file_object_name},
                         {"object_name", object_name},
                         {"object_type", object_type},
                         {"where_list", (const void *)where_list},
                         {"order_creation", order_creation}});
}

int ormak_show_object_like(const char *file_object_name, const char *object_name, int object_type,
                           const char *regular_expression, pANTLR3_BASE_TREE deep_list, pANTLR3_BASE_TREE where_list,
                           int order_creation, pANTLR3_BASE_TREE post_processing_list,
                           pANTLR3_BASE_TREE output_redirecting, int programming_language) {
    ormak::ShowFrame frame(post_processing_list, output_redirecting, programming_language);
    const char *objects = ormak::object_noun(object_type, true);
    char memory_message[ORMAK_TEXT_SIZE];
    snprintf(memory_message, sizeof memory_message, "Error when showing %s as there is not enough memory available",
             objects);
    const ormak::DeepList depths = ormak::read_deep_list(deep_list);
    int status = ORMAK_SUCCESS;
    if (file_object_name == nullptr && current_file == nullptr) {
        status = object_name ? ormak::fail(ORMAK_ERROR_NOT_OPEN, "Error when showing %s in \"%s\" as no file is in use",
                                           objects, object_name)
                             : ormak::fail(ORMAK_ERROR_NOT_OPEN, "Error when showing %s as no file is in use", objects);
    } else if (ormak::has_negative_depth(depths)) {
        status = object_name ? ormak::fail(ORMAK_ERROR_INVALID_VALUE,
                                           "Error when showing %s in \"%s\" as deep value is not equal to or greater "
                                           "than 0",
                                           objects, object_name)
                             : ormak::fail(ORMAK_ERROR_INVALID_VALUE,
                                           "Error when showing %s as deep value is not equal to or greater than 0",
                                           objects);
    } else {
        const ormak::LikeRequest request = {object_name,    object_type, regular_expression, deep_list ? &depths : nullptr,
                                            order_creation, "showing"};
        status = list_names(frame, file_object_name, memory_message,
                            [&](const ormak::ListingSink &sink) { return ormak::walk_objects_like(request, sink); });
    }
    return frame.finish("ormak_show_object_like", status,
                        {{"file_object_name", file_object_name},
                         {"object_name", object_name},
                         {"object_type", object_type},
                         {"regular_expression", regular_expression},
                         {"deep_list", (const void *)deep_list},
                         {"where_list", (const void *)where_list},
                         {"order_creation", order_creation}});
}

} // extern "C"
