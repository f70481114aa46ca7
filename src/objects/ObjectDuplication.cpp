#include <errno.h>
#include <stdlib.h>
#include <string.h>

#include "DataTypes.h"
#include "ObjectDuplication.h"
#include "ObjectStatement.h"
#include "../OrmakExecutors.h"
#include "../files/CanonicalPath.h"
#include "../files/FileNames.h"
#include "../session/Handle.h"
#include "../session/Session.h"

namespace ormak {

const char *object_type_word(int object_type) {
    switch (object_type) {
    case -1: return "object";
    case ORMAK_GROUP: return "group";
    case ORMAK_DATASET: return "dataset";
    case ORMAK_ATTRIBUTE: return "attribute";
    case ORMAK_SOFT_LINK: return "soft link";
    default: return "external link";
    }
}

namespace {

/* The test of a linked source: its object's type for GROUP and DATASET, its link's type for
   the links. The messages say "object" whatever the statement's keyword. */
int check_linked_type(hid_t location, const char *path, const char *name, int object_type, const char *verb) {
    if (H5Lexists(location, path, property_link_access_list) <= 0)
        return fail(ORMAK_ERROR_NOT_FOUND, "Error when %s object \"%s\" as it does not exist", verb, name);
    bool matches;
    const char *kind;
    if (object_type == ORMAK_GROUP || object_type == ORMAK_DATASET) {
        H5O_info_t info;
        if (H5Oget_info_by_name2(location, path, &info, H5O_INFO_BASIC, property_link_access_list) < 0)
            return fail(ORMAK_ERROR_UNKNOWN, "Error when getting information about object \"%s\"", name);
        matches = info.type == (object_type == ORMAK_GROUP ? H5O_TYPE_GROUP : H5O_TYPE_DATASET);
        kind = object_type == ORMAK_GROUP ? "a group" : "a dataset";
    } else {
        H5L_info_t info;
        if (H5Lget_info(location, path, &info, property_link_access_list) < 0)
            return fail(ORMAK_ERROR_UNKNOWN, "Error when getting information about object \"%s\"", name);
        matches = info.type == (object_type == ORMAK_SOFT_LINK ? H5L_TYPE_SOFT : H5L_TYPE_EXTERNAL);
        kind = object_type == ORMAK_SOFT_LINK ? "a soft link" : "an external link";
    }
    if (!matches)
        return fail(ORMAK_ERROR_UNEXPECTED_TYPE, "Error when %s object \"%s\" as it is not %s", verb, name, kind);
    return ORMAK_SUCCESS;
}

} // namespace

int read_source(const char *name, bool has_new_name, int object_type, const char *verb, hid_t location,
                Source &source) {
    const char *word = object_type_word(object_type);
    if (ends_with_slash(name))
        return fail(ORMAK_ERROR_UNKNOWN, "Error when %s %s \"%s\" as it should not end with \"/\"", verb, word, name);
    if (!has_new_name)
        return fail(ORMAK_ERROR_UNKNOWN, "Error when %s %s \"%s\" as new name was not provided", verb, word, name);
    if (!canonical_path(name, source.canonical))
        return fail(ORMAK_ERROR_UNKNOWN, "Error when %s %s \"%s\" as its path is too long", verb, word, name);
    if (object_name_list_count == 0)
        return fail(ORMAK_ERROR_UNKNOWN, "Error when %s %s \"%s\" as it is the root group", verb, word, name);
    source.last = object_name_list[object_name_list_count - 1];
    if (object_type == -1) {
        source.attribute = H5Lexists(location, source.canonical, property_link_access_list) <= 0;
        return ORMAK_SUCCESS;
    }
    source.attribute = object_type == ORMAK_ATTRIBUTE;
    if (source.attribute) return ORMAK_SUCCESS;
    return check_linked_type(location, source.canonical, name, object_type, verb);
}

int read_new_name(const char *name, const char *new_name, const Source &source, int object_type, const char *verb,
                  std::string &written, char *canonical) {
    written = new_name;
    if (ends_with_slash(new_name)) written += source.last;
    if (!name_fits(written.c_str()) || !canonical_path(written.c_str(), canonical))
        return fail(ORMAK_ERROR_UNKNOWN, "Error when %s %s \"%s\" as new name \"%s\" is too long", verb,
                    object_type_word(object_type), name, new_name);
    return ORMAK_SUCCESS;
}

bool is_inside(const char *path, const char *ancestor) {
    size_t length = strlen(ancestor);
    if (length == 1) return strlen(path) > 1; /* everything but the root is below the root */
    return strncmp(path, ancestor, length) == 0 && path[length] == '/';
}

bool same_file(hid_t location0, hid_t location1) {
    H5O_info_t info0, info1;
    if (H5Oget_info2(location0, &info0, H5O_INFO_BASIC) < 0 || H5Oget_info2(location1, &info1, H5O_INFO_BASIC) < 0)
        return false;
    return info0.fileno == info1.fileno;
}

/* The types that an attribute may have to be read and written whole: numbers, strings,
   variable-length numbers and opaque values. */
static bool is_duplicable(hid_t type) {
    int flag = _ormak_get_type_flag(type);
    return flag > 0 && flag <= ORMAK_OPAQUE;
}

bool flush_location(hid_t location) {
    if (flush_status == -1) return true;
    errno = 0;
    return H5Fflush(location, flush_status == ORMAK_GLOBAL ? H5F_SCOPE_GLOBAL : H5F_SCOPE_LOCAL) >= 0;
}

} // namespace ormak

namespace {

/* An object path and an attribute name, cut from a canonical path in place. */
struct AttributePath {
    const char *object;
    const char *name;
};

AttributePath split(char *canonical) {
    char *slash = strrchr(canonical, '/');
    if (slash == canonical) return {"/", canonical + 1};
    *slash = '\0';
    return {canonical, slash + 1};
}

/* Whether two open objects are one object of one file. */
bool same_object(hid_t object0, hid_t object1) {
    H5O_info_t info0, info1;
    if (H5Oget_info2(object0, &info0, H5O_INFO_BASIC) < 0 || H5Oget_info2(object1, &info1, H5O_INFO_BASIC) < 0)
        return false;
    return info0.fileno == info1.fileno && info0.addr == info1.addr;
}

/* The values of one attribute in the attribute's own layout, with what variable-length
   values point to given back at the end. */
class Values {
public:
    Values(hid_t type, hid_t space) : type_(type), space_(space) {}
    ~Values() {
        if (buffer_ == nullptr) return;
        H5T_class_t kind = H5Tget_class(type_);
        if (read_ && (kind == H5T_VLEN || (kind == H5T_STRING && H5Tis_variable_str(type_) > 0)))
            H5Dvlen_reclaim(type_, space_, H5P_DEFAULT, buffer_);
        free(buffer_);
    }
    Values(const Values &) = delete;
    Values &operator=(const Values &) = delete;
    bool allocate(size_t bytes) { return (buffer_ = calloc(bytes ? bytes : 1, 1)) != nullptr; }
    void *get() const { return buffer_; }
    void mark_read() { read_ = true; }

private:
    hid_t type_;
    hid_t space_;
    void *buffer_ = nullptr;
    bool read_ = false;
};

} // namespace

extern "C" int _ormak_duplicate_attribute(const char *attribute_name, char *attribute_name_canonical,
                                          const char *attribute_new_name, char *attribute_new_name_canonical,
                                          int attribute_truncate, int attribute_copy, int object_type,
                                          hid_t group_id0, hid_t group_id1) {
    using ormak::fail;
    using ormak::Handle;
    const char *verb = attribute_copy == 1 ? "copying" : "renaming";
    const char *noun = object_type == ORMAK_ATTRIBUTE ? "attribute" : "object";
    const ormak::ObjectMessage creating("Error when creating attribute \"%s\"");

    /* The root is an object with no name of an attribute beside it. */
    if (strcmp(attribute_name_canonical, "/") == 0)
        return fail(ORMAK_ERROR_NOT_FOUND, "Error when %s object \"%s\" as it does not exist", verb, attribute_name);
    if (strcmp(attribute_new_name_canonical, "/") == 0)
        return fail(ORMAK_ERROR_UNKNOWN, "Error when %s %s \"%s\" as \"%s\" is the root group and no attribute", verb,
                    noun, attribute_name, attribute_new_name);
    AttributePath old_path = split(attribute_name_canonical);
    AttributePath new_path = split(attribute_new_name_canonical);

    Handle source(H5Oclose, H5Oopen(group_id0, old_path.object, property_link_access_list));
    if (!source.valid()) {
        H5L_info_t link;
        if (H5Lget_info(group_id0, old_path.object, &link, property_link_access_list) >= 0 &&
            (link.type == H5L_TYPE_SOFT || link.type == H5L_TYPE_EXTERNAL))
            return fail(ORMAK_ERROR_DANGLING_LINK, "Error when opening object \"%s\" as it is a dangling link",
                        attribute_name);
        return fail(ORMAK_ERROR_UNKNOWN, "Error when opening object \"%s\"", attribute_name);
    }
    if (H5Aexists(source, old_path.name) <= 0)
        return fail(ORMAK_ERROR_NOT_FOUND, "Error when %s object \"%s\" as it does not exist", verb, attribute_name);
    Handle target(H5Oclose, H5Oopen(group_id1, new_path.object, property_link_access_list));
    if (!target.valid()) return fail(ORMAK_ERROR_UNKNOWN, "Error when opening object \"%s\"", new_path.object);
    bool exists = H5Aexists(target, new_path.name) > 0;
    if (attribute_truncate != 0 && exists)
        return fail(ORMAK_ERROR_UNKNOWN, "Error when %s %s \"%s\" as %s \"%s\" already exists", verb, noun,
                    attribute_name, noun, attribute_new_name);
    bool one_object = same_object(source, target);
    /* Reached through another path of the same object: truncating would drop the source. */
    if (one_object && strcmp(old_path.name, new_path.name) == 0)
        return fail(ORMAK_ERROR_UNKNOWN, "Error when %s %s \"%s\" as \"%s\" is the same attribute", verb, noun,
                    attribute_name, attribute_new_name);

    if (attribute_copy != 1 && one_object) {
        if (attribute_truncate == 0) H5Adelete(source, new_path.name);
        if (H5Arename(source, old_path.name, new_path.name) < 0)
            return fail(ORMAK_ERROR_UNKNOWN, "Error when renaming %s \"%s\"", noun, attribute_name);
    } else {
        Handle attribute(H5Aclose, H5Aopen(source, old_path.name, H5P_DEFAULT));
        Handle space(H5Sclose, attribute.valid() ? H5Aget_space(attribute) : -1);
        hssize_t points = space.valid() ? H5Sget_simple_extent_npoints(space) : -1;
        Handle type(H5Tclose, attribute.valid() ? H5Aget_type(attribute) : -1);
        if (points < 0 || !type.valid())
            return fail(ORMAK_ERROR_UNKNOWN, "Error when getting information about %s \"%s\"", noun, attribute_name);
        if (!ormak::is_duplicable(type))
            return fail(ORMAK_ERROR_NOT_SUPPORTED, "Error when %s %s \"%s\" as data type is not supported", verb, noun,
                        attribute_name);
        if (attribute_truncate == 0 && exists) H5Adelete(target, new_path.name);
        errno = 0;
        Handle created(H5Aclose, H5Acreate2(target, new_path.name, type, space, H5P_DEFAULT, H5P_DEFAULT));
        if (!created.valid()) return creating.fail_call(attribute_new_name);
        int status = ORMAK_SUCCESS;
        {
            Values values(type, space);
            if (!values.allocate((size_t)points * H5Tget_size(type))) {
                status = fail(ORMAK_ERROR_NOT_ENOUGH_MEMORY, "Error when %s %s \"%s\" as there is not enough memory available",
                              verb, noun, attribute_name);
            } else if (points > 0 && H5Aread(attribute, type, values.get()) < 0) {
                status = fail(ORMAK_ERROR_UNKNOWN, "Error when reading data from attribute \"%s\"", attribute_name);
            } else {
                values.mark_read();
                errno = 0;
                if (points > 0 && H5Awrite(created, type, values.get()) < 0)
                    status = ormak::ObjectMessage("Error when writing data into attribute \"%s\"")
                                 .fail_call(attribute_new_name);
            }
        }
        created.reset();
        attribute.reset();
        /* Nothing half made stays: the new attribute goes when its values could not follow. */
        if (status != ORMAK_SUCCESS) {
            H5Adelete(target, new_path.name);
            return status;
        }
        if (attribute_copy != 1 && H5Adelete(source, old_path.name) < 0)
            return fail(ORMAK_ERROR_UNKNOWN, "Error when dropping attribute \"%s\"", attribute_name);
    }
    if (!ormak::flush_location(group_id1)) return creating.fail_call(attribute_new_name);
    return ORMAK_SUCCESS;
}
