/* DROP of objects and attributes: by name, the contents of a group named like a directory
   ("g/", ".", ".."), everything of a kind in the current group, or what a LIKE expression
   matches under a start. Objects go by deleting their links, never by following a link to
   its target. */
#include <errno.h>
#include <string.h>

#include <string>
#include <vector>

#include "ObjectStatement.h"
#include "../OrmakExecutors.h"
#include "../files/CanonicalPath.h"
#include "../files/FilesInUse.h"
#include "../introspection/ObjectListing.h"
#include "../session/Session.h"

namespace {

using ormak::fail;

bool link_exists(const char *path) {
    return strcmp(path, "/") == 0 || H5Lexists(current_file->group_id, path, property_link_access_list) > 0;
}

/* The path of the object that holds what `path` names: "/" for a member of the root. */
std::string parent_of(const char *path) {
    std::string parent(path, strrchr(path, '/') - path);
    return parent.empty() ? "/" : parent;
}

std::string member_path(const std::string &path, const std::string &member) {
    return path == "/" ? "/" + member : path + "/" + member;
}

/* One level listed before anything goes, so that a refused listing leaves the file alone. */
int list_level(const char *name, const char *path, int filter, std::vector<ormak::ListedObject> &entries) {
    return ormak::list_object(name, path, -1, filter, false, [&](const char *entry, int kind) {
        entries.push_back({entry, kind});
        return 0;
    });
}

/* Removes the listed entries of the object at `path` (null: the current group): attributes
   from the object, anything else by its link. */
int drop_entries(const char *path, const std::vector<ormak::ListedObject> &entries, int object_type) {
    const hid_t location = current_file->group_id;
    hid_t object = -1;
    int status = ORMAK_SUCCESS;
    for (const ormak::ListedObject &entry : entries) {
        if (entry.kind == ORMAK_ATTRIBUTE) {
            if (object < 0) {
                object = H5Oopen(location, path ? path : ".", property_link_access_list);
                if (object < 0) {
                    status = fail(ORMAK_ERROR_UNKNOWN, "Error when opening object \"%s\"", path ? path : ".");
                    break;
                }
            }
            if (H5Adelete(object, entry.name.c_str()) < 0) {
                status = fail(ORMAK_ERROR_UNKNOWN, "Error when dropping attribute \"%s\"", entry.name.c_str());
                break;
            }
        } else {
            const std::string link = path ? member_path(path, entry.name) : entry.name;
            if (H5Ldelete(location, link.c_str(), property_link_access_list) < 0) {
                status = fail(ORMAK_ERROR_UNKNOWN, "Error when dropping %s \"%s\"",
                              ormak::object_noun(object_type, false), entry.name.c_str());
                break;
            }
        }
    }
    if (object >= 0) H5Oclose(object);
    return status;
}

/* An attribute named by `path`: the last component on the object above it. */
int drop_attribute(const char *name, const char *path, const char *word) {
    const std::string parent = parent_of(path);
    const char *attribute = object_name_list_count > 0 ? object_name_list[object_name_list_count - 1] : "";
    if (!link_exists(parent.c_str()))
        return fail(ORMAK_ERROR_NOT_FOUND, "Error when dropping %s \"%s\" as it does not exist", word, name);
    hid_t object = H5Oopen(current_file->group_id, parent.c_str(), property_link_access_list);
    if (object < 0) return fail(ORMAK_ERROR_UNKNOWN, "Error when opening object \"%s\"", name);
    int status = ORMAK_SUCCESS;
    if (object_name_list_count == 0 || H5Aexists(object, attribute) <= 0)
        status = fail(ORMAK_ERROR_NOT_FOUND, "Error when dropping %s \"%s\" as it does not exist", word, name);
    else if (H5Adelete(object, attribute) < 0)
        status = fail(ORMAK_ERROR_UNKNOWN, "Error when dropping %s \"%s\"", word, name);
    H5Oclose(object);
    return status;
}

/* A named object of the kind object_type asks for (group, dataset, soft or external link). */
int drop_typed(const char *name, const char *path, int object_type) {
    const char *word = ormak::object_noun(object_type, false);
    if (!link_exists(path))
        return fail(ORMAK_ERROR_NOT_FOUND, "Error when dropping %s \"%s\" as it does not exist", word, name);
    bool right_kind;
    if (object_type == ORMAK_GROUP || object_type == ORMAK_DATASET) {
        H5O_info_t info;
        if (H5Oget_info_by_name2(current_file->group_id, path, &info, H5O_INFO_BASIC, property_link_access_list) < 0)
            return fail(ORMAK_ERROR_UNKNOWN, "Error when getting information about object \"%s\"", name);
        right_kind = info.type == (object_type == ORMAK_GROUP ? H5O_TYPE_GROUP : H5O_TYPE_DATASET);
    } else {
        H5L_info_t link;
        if (H5Lget_info(current_file->group_id, path, &link, property_link_access_list) < 0)
            return fail(ORMAK_ERROR_UNKNOWN, "Error when getting information about object \"%s\"", name);
        right_kind = link.type == (object_type == ORMAK_SOFT_LINK ? H5L_TYPE_SOFT : H5L_TYPE_EXTERNAL);
    }
    if (!right_kind)
        return fail(ORMAK_ERROR_UNEXPECTED_TYPE, "Error when dropping object \"%s\" as it is not a%s %s", name,
                    object_type == ORMAK_EXTERNAL_LINK ? "n" : "", word);
    if (strcmp(path, "/") == 0 || H5Ldelete(current_file->group_id, path, property_link_access_list) < 0)
        return fail(ORMAK_ERROR_UNKNOWN, "Error when dropping %s \"%s\"", word, name);
    return ORMAK_SUCCESS;
}

/* One name of the list, or everything of object_type in the current group when name is null. */
int drop_one(const char *name, int object_type) {
    const char *word = ormak::object_noun(object_type, false);
    std::vector<ormak::ListedObject> entries;
    int status;
    if (name == nullptr) {
        if ((status = list_level(nullptr, nullptr, object_type, entries)) != ORMAK_SUCCESS) return status;
        return drop_entries(nullptr, entries, object_type);
    }
    char path[ORMAK_TEXT_SIZE];
    if (!ormak::canonical_path(name, path))
        return fail(ORMAK_ERROR_INVALID_VALUE, "Error when dropping %s \"%s\" as its path is too long", word, name);
    const bool contents = ormak::refers_to_contents(name);
    if (object_type == -1) {
        if (!link_exists(path)) return drop_attribute(name, path, word);
        if (!contents) {
            if (H5Ldelete(current_file->group_id, path, property_link_access_list) < 0)
                return fail(ORMAK_ERROR_UNKNOWN, "Error when dropping object \"%s\"", name);
            return ORMAK_SUCCESS;
        }
    } else if (!contents) {
        if (object_type == ORMAK_ATTRIBUTE) return drop_attribute(name, path, word);
        return drop_typed(name, path, object_type);
    }
    if (object_type != -1 && object_type != ORMAK_ATTRIBUTE) {
        /* Links are only inside groups. */
        H5O_info_t info;
        if (H5Oget_info_by_name2(current_file->group_id, path, &info, H5O_INFO_BASIC, property_link_access_list) < 0) {
            if (!link_exists(path))
                return fail(ORMAK_ERROR_NOT_FOUND, "Error when dropping %s in \"%s\" as it does not exist",
                            ormak::object_noun(object_type, true), name);
            return ormak::info_failure(path, name);
        }
        if (info.type != H5O_TYPE_GROUP)
            return fail(ORMAK_ERROR_UNEXPECTED_TYPE, "Error when dropping %s in \"%s\" as it is not a group",
                        ormak::object_noun(object_type, true), name);
    }
    if ((status = list_level(name, path, object_type, entries)) != ORMAK_SUCCESS) return status;
    return drop_entries(path, entries, object_type);
}

} // namespace

extern "C" int ormak_drop_object(pANTLR3_BASE_TREE object_list, int object_type) {
    const char *word = ormak::object_noun(object_type, false);
    const char *words = ormak::object_noun(object_type, true);
    int status = ORMAK_SUCCESS;
    if (object_list == nullptr) {
        if (current_file == nullptr) {
            status = fail(ORMAK_ERROR_NOT_OPEN, "Error when dropping %s as no file is in use", words);
        } else if ((status = drop_one(nullptr, object_type)) == ORMAK_SUCCESS && flush_status != -1) {
            errno = 0;
            if (_ormak_flush(flush_status) != ORMAK_SUCCESS)
                status = errno == ENOSPC ? fail(ORMAK_ERROR_NOT_ENOUGH_SPACE,
                                                "Error when dropping %s as there is not enough space available", words)
                                         : fail(ORMAK_ERROR_UNKNOWN, "Error when dropping %s", words);
        }
    } else {
        const ormak::ObjectMessage message(std::string("Error when dropping ") + word + " \"%s\"");
        status = ormak::for_each_object(object_list, message, [&](const ormak::ObjectItem &item) {
            return drop_one(item.object_name, object_type);
        });
    }
    return ormak::trace("ormak_drop_object", status,
                        {{"object_list", (const void *)object_list}, {"object_type", object_type}});
}

extern "C" int ormak_drop_object_like(const char *file_name, const char *object_name, int object_type,
                                      const char *regular_expression, pANTLR3_BASE_TREE deep_list) {
    const char *word = ormak::object_noun(object_type, false);
    const char *words = ormak::object_noun(object_type, true);
    const ormak::DeepList depths = ormak::read_deep_list(deep_list);
    std::vector<ormak::ListedObject> found;
    bool file_opened = false;
    int status = ORMAK_SUCCESS;
    if (file_name == nullptr && current_file == nullptr) {
        status = object_name ? fail(ORMAK_ERROR_NOT_OPEN, "Error when dropping %s in \"%s\" as no file is in use",
                                    words, object_name)
                             : fail(ORMAK_ERROR_NOT_OPEN, "Error when dropping %s as no file is in use", words);
        goto finish;
    }
    if (ormak::has_negative_depth(depths)) {
        status = object_name ? fail(ORMAK_ERROR_INVALID_VALUE,
                                    "Error when dropping %s in \"%s\" as deep value is not equal to or greater than 0",
                                    words, object_name)
                             : fail(ORMAK_ERROR_INVALID_VALUE,
                                    "Error when dropping %s as deep value is not equal to or greater than 0", words);
        goto finish;
    }
    if (file_name) {
        if ((status = _ormak_use_file(file_name, -1)) != ORMAK_SUCCESS) goto finish;
        file_opened = true;
    }
    {
        const ormak::LikeRequest request = {object_name, object_type, regular_expression,
                                            deep_list ? &depths : nullptr, -1, "dropping"};
        if ((status = ormak::collect_objects_like(request, found)) != ORMAK_SUCCESS) goto finish;
    }
    for (size_t i = 0; i < found.size(); i++) {
        const ormak::ListedObject &entry = found[i];
        const std::string name = object_name ? std::string(object_name) + "/" + entry.name : entry.name;
        char path[ORMAK_TEXT_SIZE];
        if (!ormak::canonical_path(name.c_str(), path)) {
            status = fail(ORMAK_ERROR_INVALID_VALUE, "Error when dropping %s \"%s\" as its path is too long", word,
                          name.c_str());
            goto finish;
        }
        if (entry.kind == ORMAK_ATTRIBUTE) {
            const std::string parent = parent_of(path);
            hid_t object = H5Oopen(current_file->group_id, parent.c_str(), property_link_access_list);
            if (object < 0) {
                status = ormak::info_failure(parent.c_str(), name.c_str());
                if (status != ORMAK_ERROR_DANGLING_LINK)
                    status = fail(ORMAK_ERROR_UNKNOWN, "Error when opening object \"%s\"", name.c_str());
                goto finish;
            }
            herr_t deleted = H5Adelete(object, object_name_list[object_name_list_count - 1]);
            H5Oclose(object);
            if (deleted < 0) {
                status = fail(ORMAK_ERROR_UNKNOWN, "Error when dropping object \"%s\"", name.c_str());
                goto finish;
            }
        } else {
            if (H5Ldelete(current_file->group_id, path, property_link_access_list) < 0) {
                status = fail(ORMAK_ERROR_UNKNOWN, "Error when dropping object \"%s\"", name.c_str());
                goto finish;
            }
            /* What lay under the link went with it: the walk lists it right behind. */
            const std::string inside = entry.name + "/";
            while (i + 1 < found.size() && found[i + 1].name.compare(0, inside.size(), inside) == 0) i++;
        }
        if (flush_status != -1) {
            errno = 0;
            if (_ormak_flush(flush_status) != ORMAK_SUCCESS) {
                const bool full = errno == ENOSPC;
                if (object_name)
                    status = full ? fail(ORMAK_ERROR_NOT_ENOUGH_SPACE,
                                         "Error when dropping %s \"%s\" as there is not enough space available", word,
                                         object_name)
                                  : fail(ORMAK_ERROR_UNKNOWN, "Error when dropping %s \"%s\"", word, object_name);
                else
                    status = full ? fail(ORMAK_ERROR_NOT_ENOUGH_SPACE,
                                         "Error when dropping %s as there is not enough space available", words)
                                  : fail(ORMAK_ERROR_UNKNOWN, "Error when dropping %s", words);
                goto finish;
            }
        }
    }
finish:
    if (file_opened) {
        int close_status = _ormak_close_file();
        if (close_status != ORMAK_SUCCESS) status = close_status;
    }
    return ormak::trace("ormak_drop_object_like", status,
                        {{"file_name", file_name},
                         {"object_name", object_name},
                         {"object_type", object_type},
                         {"regular_expression", regular_expression},
                         {"deep_list", (const void *)deep_list}});
}
