/* SHOW statements that tell one property of each named object: what it is, its data type,
   byte order, character set, tag, size, dimensions, storage, filter mask, fill type and
   order, and the size of files. */
#include <errno.h>
#include <hdf5_hl.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <string>
#include <vector>

#include "ShowProperties.h"
#include "../OrmakExecutors.h"
#include "../files/CanonicalPath.h"
#include "../files/FileNames.h"
#include "../language/TreeReader.h"
#include "../objects/DataTypes.h"
#include "../files/FilesInUse.h"

namespace tree = ormak::tree;

namespace ormak {

const char *kind_word(int object_type) {
    return object_type == ORMAK_DATASET ? "dataset" : object_type == ORMAK_ATTRIBUTE ? "attribute" : "object";
}

namespace {

/* The dangling-link test after a failed call on `path`: a soft or external link there gives
   -19, anything else -99 with `text` ("Error when ... \"%s\""). */
int dangling_or(const std::string &path, const char *name, const char *text) {
    H5L_info_t link;
    if (H5Lget_info(current_file->file_id, path.c_str(), &link, property_link_access_list) >= 0 &&
        (link.type == H5L_TYPE_SOFT || link.type == H5L_TYPE_EXTERNAL))
        return fail(ORMAK_ERROR_DANGLING_LINK, "Error when opening object \"%s\" as it is a dangling link", name);
    return fail(ORMAK_ERROR_UNKNOWN, text, name);
}

std::string parent_of(const std::string &path) { return path.substr(0, path.rfind('/') + 1); }

} // namespace

int ShowTarget::cut() {
    if (object_name_list_count == 0) return -1;
    parent = H5Oopen(current_file->file_id, parent_of(path).c_str(), property_link_access_list);
    return parent.valid() ? ORMAK_SUCCESS : -1;
}

bool ShowTarget::attribute_exists() const {
    return object_name_list_count > 0 && H5Aexists(parent, object_name_list[object_name_list_count - 1]) > 0;
}

int ShowTarget::missing(const char *what, const char *word) const {
    return fail(ORMAK_ERROR_NOT_FOUND, ("Error when showing " + std::string(what) + " of " + word +
                                        " \"%s\" as it does not exist").c_str(),
                name);
}

int ShowTarget::unexpected(const char *what, const char *cause) const {
    return fail(ORMAK_ERROR_UNEXPECTED_TYPE,
                ("Error when showing " + std::string(what) + " of object \"%s\" as it " + cause).c_str(), name);
}

/* A name whose parent can not be opened: a dangling link on the way, a parent that is not
   there, or a failure. */
int ShowTarget::cut_failure(const char *what, const char *word) const {
    if (object_name_list_count == 0) return missing(what, word);
    const std::string up = parent_of(path);
    if (up.size() > 1) {
        std::string link = up.substr(0, up.size() - 1);
        H5L_info_t info;
        if (H5Lget_info(current_file->file_id, link.c_str(), &info, property_link_access_list) >= 0) {
            if (info.type == H5L_TYPE_SOFT || info.type == H5L_TYPE_EXTERNAL)
                return fail(ORMAK_ERROR_DANGLING_LINK, "Error when opening object \"%s\" as it is a dangling link",
                            name);
        } else {
            return missing(what, word);
        }
    }
    return fail(ORMAK_ERROR_UNKNOWN, "Error when opening object \"%s\"", name);
}

int ShowTarget::resolve(const ShowObject &object, int object_type, const char *what) {
    name = object.object_name;
    path = object.path;
    const hid_t file = current_file->file_id;
    const bool root = object_name_list_count == 0;
    if (object_type == ORMAK_ATTRIBUTE) {
        if (cut() != ORMAK_SUCCESS) return cut_failure(what, "attribute");
        if (!attribute_exists()) return missing(what, "attribute");
        kind = ORMAK_ATTRIBUTE;
    } else if (root || H5Lexists(file, path.c_str(), property_link_access_list) > 0) {
        H5O_info_t info;
        if (H5Oget_info_by_name2(file, path.c_str(), &info, H5O_INFO_BASIC, property_link_access_list) < 0)
            return dangling_or(path, name,
                               object_type == ORMAK_DATASET ? "Error when getting information about dataset \"%s\""
                                                            : "Error when getting information about object \"%s\"");
        if (info.type == H5O_TYPE_DATASET) {
            kind = ORMAK_DATASET;
        } else if (object_type == ORMAK_DATASET) {
            return unexpected(what, "is not a dataset");
        } else {
            /* A group or named type takes the attribute of that name from its parent. */
            if (!root && cut() != ORMAK_SUCCESS)
                return fail(ORMAK_ERROR_UNKNOWN, "Error when opening object \"%s\"", name);
            if (!attribute_exists()) return unexpected(what, "is neither a dataset nor an attribute");
            kind = ORMAK_ATTRIBUTE;
        }
    } else if (object_type == ORMAK_DATASET) {
        return missing(what, "dataset");
    } else {
        if (cut() != ORMAK_SUCCESS) return cut_failure(what, "object");
        if (!attribute_exists()) return missing(what, "object");
        kind = ORMAK_ATTRIBUTE;
    }
    return ORMAK_SUCCESS;
}

int ShowTarget::open() {
    if (kind == ORMAK_DATASET) {
        dataset = H5Dopen2(current_file->file_id, path.c_str(), property_dataset_access_list1);
        if (!dataset.valid()) return fail(ORMAK_ERROR_UNKNOWN, "Error when opening dataset \"%s\"", name);
        type = H5Dget_type(dataset);
        space = H5Dget_space(dataset);
    } else {
        attribute = H5Aopen(parent, object_name_list[object_name_list_count - 1], H5P_DEFAULT);
        if (!attribute.valid()) return fail(ORMAK_ERROR_UNKNOWN, "Error when opening attribute \"%s\"", name);
        type = H5Aget_type(attribute);
        space = H5Aget_space(attribute);
    }
    if (!type.valid() || !space.valid()) return no_information();
    return ORMAK_SUCCESS;
}

int ShowTarget::no_information() const {
    return fail(ORMAK_ERROR_UNKNOWN,
                ("Error when getting information about " + std::string(kind_word(kind)) + " \"%s\"").c_str(), name);
}

int ShowTarget::resolve_dataset(const ShowObject &object, const char *what, const char *info_word) {
    name = object.object_name;
    path = object.path;
    const hid_t file = current_file->file_id;
    if (object_name_list_count > 0 && H5Lexists(file, path.c_str(), property_link_access_list) <= 0)
        return missing(what, "dataset");
    H5O_info_t info;
    if (H5Oget_info_by_name2(file, path.c_str(), &info, H5O_INFO_BASIC, property_link_access_list) < 0)
        return dangling_or(path, name, ("Error when getting information about " + std::string(info_word) + " \"%s\"").c_str());
    if (info.type != H5O_TYPE_DATASET) return unexpected(what, "is not a dataset");
    kind = ORMAK_DATASET;
    dataset = H5Dopen2(file, path.c_str(), property_dataset_access_list1);
    if (!dataset.valid()) return fail(ORMAK_ERROR_UNKNOWN, "Error when opening dataset \"%s\"", name);
    creation_list = H5Dget_create_plist(dataset);
    if (!creation_list.valid()) return no_information();
    return ORMAK_SUCCESS;
}

int show_one_object(ShowFrame &frame, const char *file_name, const char *object_name, const char *what,
                    const char *word, const std::function<int(const ShowObject &object)> &work) {
    const char *name = object_name ? object_name : "";
    const std::string plain = "Error when showing " + std::string(what) + " of " + word + " \"%s\"";
    if (file_name == nullptr && current_file == nullptr)
        return fail(ORMAK_ERROR_NOT_OPEN, (plain + " as no file is in use").c_str(), name);
    if (ends_with_slash(name)) return fail(ORMAK_ERROR_UNKNOWN, (plain + " as it should not end with \"/\"").c_str(), name);
    int status = frame.decode();
    if (status != ORMAK_SUCCESS) return status;
    if (file_name && (status = _ormak_use_file(file_name, -1)) != ORMAK_SUCCESS) return status;
    char path[ORMAK_TEXT_SIZE];
    if (!canonical_path(name, path))
        status = fail(ORMAK_ERROR_UNKNOWN, (plain + " as its path is too long").c_str(), name);
    else
        status = work(ShowObject{0, file_name, name, path});
    if (file_name) {
        const int closed = _ormak_close_file();
        if (closed != ORMAK_SUCCESS) status = closed;
    }
    return status;
}

} // namespace ormak

namespace {

using ormak::ShowFrame;
using ormak::ShowObject;
using ormak::ShowTarget;

std::string plain_message(const char *what, const char *word) {
    return "Error when showing " + std::string(what) + " of " + word + " \"%s\"";
}

/* The memory text of a list statement, about its first name. */
std::string memory_text(const char *what, const char *word, pANTLR3_BASE_TREE list) {
    char text[ORMAK_TEXT_SIZE * 2];
    const char *first = ormak::tree_first_object_name(list);
    snprintf(text, sizeof text, "Error when showing %s of %s \"%s\" as there is not enough memory available", what,
             word, first ? first : "");
    return text;
}

/* A list statement of one int per item that resolves each to a dataset or attribute and
   reads its type. */
int show_typed(const char *function, const char *what, pANTLR3_BASE_TREE object_list, int object_type,
               pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting, int programming_language,
               int (*answer)(hid_t type)) {
    ShowFrame frame(post_processing_list, output_redirecting, programming_language);
    const char *word = ormak::kind_word(object_type);
    const std::string memory = memory_text(what, word, object_list);
    int status = frame.decode();
    if (status == ORMAK_SUCCESS)
        status = frame.each_object(object_list, ORMAK_INT, memory.c_str(),
                                   ormak::ObjectMessage(plain_message(what, word)), [&](const ShowObject &object) {
                                       ShowTarget target;
                                       int found = target.resolve(object, object_type, what);
                                       if (found == ORMAK_SUCCESS) found = target.open();
                                       if (found == ORMAK_SUCCESS) found = frame.add_int(answer(target.type));
                                       return found;
                                   });
    return frame.finish(function, status, {{"object_list", (const void *)object_list}, {"object_type", object_type}});
}

/* A list statement of one int per dataset, from its creation list. */
int show_dataset_property(const char *function, const char *what, pANTLR3_BASE_TREE dataset_list,
                          pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting,
                          int programming_language, int (*answer)(ShowTarget &target, int *value)) {
    ShowFrame frame(post_processing_list, output_redirecting, programming_language);
    const std::string memory = memory_text(what, "dataset", dataset_list);
    int status = frame.decode();
    if (status == ORMAK_SUCCESS)
        status = frame.each_object(dataset_list, ORMAK_INT, memory.c_str(),
                                   ormak::ObjectMessage(plain_message(what, "dataset")), [&](const ShowObject &object) {
                                       ShowTarget target;
                                       int found = target.resolve_dataset(object, what, "dataset");
                                       int value = -1;
                                       if (found == ORMAK_SUCCESS) found = answer(target, &value);
                                       if (found == ORMAK_SUCCESS) found = frame.add_int(value);
                                       return found;
                                   });
    return frame.finish(function, status, {{"dataset_list", (const void *)dataset_list}});
}

int data_type_answer(hid_t type) {
    const int flag = _ormak_get_type_flag(type);
    /* Arrays and references have no data type of the language. */
    if (flag < 0 || flag > ORMAK_COMPOUND) return -1;
    return flag;
}

int endianness_answer(hid_t type) {
    switch (H5Tget_order(type)) {
    case H5T_ORDER_LE: return ORMAK_LITTLE_ENDIAN;
    case H5T_ORDER_BE: return ORMAK_BIG_ENDIAN;
    default: return -1;
    }
}

int charset_answer(hid_t type) {
    if (H5Tget_class(type) != H5T_STRING) return -1;
    switch (H5Tget_cset(type)) {
    case H5T_CSET_ASCII: return ORMAK_ASCII;
    case H5T_CSET_UTF8: return ORMAK_UTF8;
    default: return -1;
    }
}

int order_answer(unsigned flags) {
    if (flags & H5P_CRT_ORDER_INDEXED) return ORMAK_INDEXED;
    if (flags & H5P_CRT_ORDER_TRACKED) return ORMAK_TRACKED;
    return -1;
}

/* The offset of a chunk number in one dimension; negative numbers count from the last chunk. */
int chunk_offset(const ShowTarget &target, long long number, hsize_t dimension, hsize_t chunk, hsize_t *offset) {
    const long long d = (long long)dimension, c = (long long)chunk;
    if (number < 0) {
        const long long at = number * c + d + (d % c == 0 ? 0 : c - d % c);
        if (at < 0)
            return ormak::fail(ORMAK_ERROR_INVALID_VALUE,
                               "Error when showing (filter) mask of dataset \"%s\" as chunk number is not equal to or "
                               "greater than 0",
                               target.name);
        *offset = (hsize_t)at;
    } else {
        const long long at = number > d ? d : number * c;
        if (number > d || at >= d)
            return ormak::fail(ORMAK_ERROR_INVALID_VALUE,
                               "Error when showing (filter) mask of dataset \"%s\" as chunk number is not lower than "
                               "dimension",
                               target.name);
        *offset = (hsize_t)at;
    }
    return ORMAK_SUCCESS;
}

} // namespace

extern "C" {

int ormak_show_type(pANTLR3_BASE_TREE object_list, pANTLR3_BASE_TREE post_processing_list,
                    pANTLR3_BASE_TREE output_redirecting, int programming_language) {
    ShowFrame frame(post_processing_list, output_redirecting, programming_language);
    const std::string memory = memory_text("type", "object", object_list);
    int status = frame.decode();
    if (status == ORMAK_SUCCESS)
        status = frame.each_object(
            object_list, ORMAK_INT, memory.c_str(), ormak::ObjectMessage(plain_message("type", "object")),
            [&](const ShowObject &object) {
                ShowTarget target;
                target.name = object.object_name;
                target.path = object.path;
                const hid_t file = current_file->file_id;
                if (object_name_list_count == 0) return frame.add_int(ORMAK_GROUP);
                if (H5Lexists(file, object.path, property_link_access_list) <= 0) {
                    if (target.cut() != ORMAK_SUCCESS) return target.cut_failure("type", "object");
                    if (!target.attribute_exists()) return target.missing("type", "object");
                    return frame.add_int(ORMAK_ATTRIBUTE);
                }
                H5O_info_t info;
                if (H5Oget_info_by_name2(file, object.path, &info, H5O_INFO_BASIC, property_link_access_list) < 0)
                    return ormak::info_failure(object.path, object.object_name);
                H5L_info_t link;
                if (H5Lget_info(file, object.path, &link, property_link_access_list) < 0)
                    return ormak::fail(ORMAK_ERROR_UNKNOWN, "Error when getting information about object \"%s\"",
                                       object.object_name);
                int value = info.type == H5O_TYPE_GROUP ? ORMAK_GROUP : info.type == H5O_TYPE_DATASET ? ORMAK_DATASET : -1;
                if (value != -1 && link.type == H5L_TYPE_SOFT) value += ORMAK_SOFT_LINK;
                if (value != -1 && link.type == H5L_TYPE_EXTERNAL) value += ORMAK_EXTERNAL_LINK;
                return frame.add_int(value);
            });
    return frame.finish("ormak_show_type", status, {{"object_list", (const void *)object_list}});
}

int ormak_show_data_type(pANTLR3_BASE_TREE object_list, int object_type, pANTLR3_BASE_TREE post_processing_list,
                         pANTLR3_BASE_TREE output_redirecting, int programming_language) {
    return show_typed("ormak_show_data_type", "data type", object_list, object_type, post_processing_list,
                      output_redirecting, programming_language, data_type_answer);
}

int ormak_show_endianness(pANTLR3_BASE_TREE object_list, int object_type, pANTLR3_BASE_TREE post_processing_list,
                          pANTLR3_BASE_TREE output_redirecting, int programming_language) {
    return show_typed("ormak_show_endianness", "endianness", object_list, object_type, post_processing_list,
                      output_redirecting, programming_language, endianness_answer);
}

int ormak_show_charset(pANTLR3_BASE_TREE object_list, int object_type, pANTLR3_BASE_TREE post_processing_list,
                       pANTLR3_BASE_TREE output_redirecting, int programming_language) {
    return show_typed("ormak_show_charset", "charset", object_list, object_type, post_processing_list,
                      output_redirecting, programming_language, charset_answer);
}

int ormak_show_tag(pANTLR3_BASE_TREE object_list, int object_type, pANTLR3_BASE_TREE post_processing_list,
                   pANTLR3_BASE_TREE output_redirecting, int programming_language) {
    ShowFrame frame(post_processing_list, output_redirecting, programming_language);
    const char *word = ormak::kind_word(object_type);
    const std::string memory = memory_text("tag", word, object_list);
    int status = frame.decode();
    if (status == ORMAK_SUCCESS)
        status = frame.each_object(
            object_list, ORMAK_VARCHAR, memory.c_str(), ormak::ObjectMessage(plain_message("tag", word)),
            [&](const ShowObject &object) {
                ShowTarget target;
                int found = target.resolve(object, object_type, "tag");
                if (found == ORMAK_SUCCESS) found = target.open();
                if (found != ORMAK_SUCCESS) return found;
                if (H5Tget_class(target.type) != H5T_OPAQUE)
                    return ormak::fail(ORMAK_ERROR_UNEXPECTED_DATA_TYPE,
                                       ("Error when showing tag of " + std::string(ormak::kind_word(target.kind)) +
                                        " \"%s\" as data type is not opaque")
                                           .c_str(),
                                       target.name);
                char *tag = H5Tget_tag(target.type);
                if (tag == nullptr) return target.no_information();
                found = frame.add_text(tag);
                H5free_memory(tag);
                return found;
            });
    return frame.finish("ormak_show_tag", status, {{"object_list", (const void *)object_list}, {"object_type", object_type}});
}

int ormak_show_size(pANTLR3_BASE_TREE object_list, int object_type, pANTLR3_BASE_TREE post_processing_list,
                    pANTLR3_BASE_TREE output_redirecting, int programming_language) {
    ShowFrame frame(post_processing_list, output_redirecting, programming_language);
    const char *word = ormak::kind_word(object_type);
    const std::string memory = memory_text("size", word, object_list);
    int status = frame.decode();
    if (status == ORMAK_SUCCESS)
        status = frame.each_object(
            object_list, ORMAK_UNSIGNED_BIGINT, memory.c_str(), ormak::ObjectMessage(plain_message("size", word)),
            [&](const ShowObject &object) {
                ShowTarget target;
                int found = target.resolve(object, object_type, "size");
                if (found == ORMAK_SUCCESS) found = target.open();
                if (found != ORMAK_SUCCESS) return found;
                const H5T_class_t type_class = H5Tget_class(target.type);
                const bool variable = type_class == H5T_VLEN ||
                                      (type_class == H5T_STRING && H5Tis_variable_str(target.type) > 0);
                uint64_t size = 0;
                if (variable) {
                    /* The members of an attribute are not counted. */
                    hsize_t bytes = 0;
                    if (target.kind == ORMAK_DATASET &&
                        H5Dvlen_get_buf_size(target.dataset, target.type, target.space, &bytes) < 0)
                        return target.no_information();
                    size = bytes;
                } else if (type_class == H5T_INTEGER || type_class == H5T_FLOAT || type_class == H5T_OPAQUE ||
                           type_class == H5T_STRING) {
                    const hssize_t points = H5Sget_simple_extent_npoints(target.space);
                    if (points < 0) return target.no_information();
                    size = (uint64_t)points * H5Tget_size(target.type);
                } else {
                    return target.no_information();
                }
                return frame.add_bigint((int64_t)size);
            });
    return frame.finish("ormak_show_size", status, {{"object_list", (const void *)object_list}, {"object_type", object_type}});
}

int ormak_show_order(pANTLR3_BASE_TREE object_list, int object_type, pANTLR3_BASE_TREE post_processing_list,
                     pANTLR3_BASE_TREE output_redirecting, int programming_language) {
    ShowFrame frame(post_processing_list, output_redirecting, programming_language);
    const bool of_attributes = object_type != -1;
    const char *what = of_attributes ? "attribute order" : "order";
    const std::string memory = memory_text(what, "object", object_list);
    int status = frame.decode();
    if (status == ORMAK_SUCCESS)
        status = frame.each_object(
            object_list, ORMAK_INT, memory.c_str(), ormak::ObjectMessage(plain_message(what, "object")),
            [&](const ShowObject &object) {
                ShowTarget target;
                target.name = object.object_name;
                target.path = object.path;
                const hid_t file = current_file->file_id;
                if (object_name_list_count > 0 && H5Lexists(file, object.path, property_link_access_list) <= 0)
                    return target.missing(what, "object");
                H5O_info_t info;
                if (H5Oget_info_by_name2(file, object.path, &info, H5O_INFO_BASIC, property_link_access_list) < 0)
                    return ormak::info_failure(object.path, object.object_name);
                if (!of_attributes && info.type != H5O_TYPE_GROUP) return target.unexpected(what, "is not a group");
                if (of_attributes && info.type != H5O_TYPE_GROUP && info.type != H5O_TYPE_DATASET)
                    return target.unexpected(what, "is neither a group nor a dataset");
                ormak::Handle opened(H5Oclose, H5Oopen(file, object.path, property_link_access_list));
                if (!opened.valid())
                    return ormak::fail(ORMAK_ERROR_UNKNOWN, "Error when opening object \"%s\"", object.object_name);
                ormak::Handle creation(H5Pclose, info.type == H5O_TYPE_GROUP ? H5Gget_create_plist(opened)
                                                                             : H5Dget_create_plist(opened));
                unsigned flags = 0;
                if (!creation.valid() ||
                    (of_attributes ? H5Pget_attr_creation_order(creation, &flags)
                                   : H5Pget_link_creation_order(creation, &flags)) < 0)
                    return ormak::fail(ORMAK_ERROR_UNKNOWN, "Error when getting information about object \"%s\"",
                                       object.object_name);
                return frame.add_int(order_answer(flags));
            });
    return frame.finish("ormak_show_order", status, {{"object_list", (const void *)object_list}, {"object_type", object_type}});
}

int ormak_show_storage_type(pANTLR3_BASE_TREE dataset_list, pANTLR3_BASE_TREE post_processing_list,
                            pANTLR3_BASE_TREE output_redirecting, int programming_language) {
    return show_dataset_property("ormak_show_storage_type", "storage type", dataset_list, post_processing_list,
                                 output_redirecting, programming_language, [](ShowTarget &target, int *value) {
                                     switch (H5Pget_layout(target.creation_list)) {
                                     case H5D_CONTIGUOUS: *value = ORMAK_CONTIGUOUS; break;
                                     case H5D_COMPACT: *value = ORMAK_COMPACT; break;
                                     case H5D_CHUNKED: *value = ORMAK_CHUNKED; break;
                                     default: *value = -1;
                                     }
                                     return ORMAK_SUCCESS;
                                 });
}

int ormak_show_storage_allocation(pANTLR3_BASE_TREE dataset_list, pANTLR3_BASE_TREE post_processing_list,
                                  pANTLR3_BASE_TREE output_redirecting, int programming_language) {
    return show_dataset_property("ormak_show_storage_allocation", "storage allocation", dataset_list,
                                 post_processing_list, output_redirecting, programming_language,
                                 [](ShowTarget &target, int *value) {
                                     H5D_alloc_time_t time;
                                     if (H5Pget_alloc_time(target.creation_list, &time) < 0)
                                         return target.no_information();
                                     *value = time == H5D_ALLOC_TIME_EARLY  ? ORMAK_EARLY
                                              : time == H5D_ALLOC_TIME_INCR ? ORMAK_INCREMENTAL
                                                                            : ORMAK_LATE;
                                     return ORMAK_SUCCESS;
                                 });
}

int ormak_show_fill_type(pANTLR3_BASE_TREE dataset_list, pANTLR3_BASE_TREE post_processing_list,
                         pANTLR3_BASE_TREE output_redirecting, int programming_language) {
    return show_dataset_property("ormak_show_fill_type", "fill type", dataset_list, post_processing_list,
                                 output_redirecting, programming_language, [](ShowTarget &target, int *value) {
                                     H5D_fill_value_t fill;
                                     if (H5Pfill_value_defined(target.creation_list, &fill) < 0)
                                         return target.no_information();
                                     *value = fill == H5D_FILL_VALUE_DEFAULT        ? ORMAK_FILL_DEFAULT
                                              : fill == H5D_FILL_VALUE_USER_DEFINED ? ORMAK_FILL_USER_DEFINED
                                                                                    : ORMAK_FILL_UNDEFINED;
                                     return ORMAK_SUCCESS;
                                 });
}

int ormak_show_mask(pANTLR3_BASE_TREE dataset_list, pANTLR3_BASE_TREE post_processing_list,
                    pANTLR3_BASE_TREE output_redirecting, int programming_language) {
    ShowFrame frame(post_processing_list, output_redirecting, programming_language);
    const char *what = "(filter) mask";
    const std::string memory = memory_text(what, "dataset", dataset_list);
    int status = frame.decode();
    if (status == ORMAK_SUCCESS)
        status = frame.each_object(
            dataset_list, ORMAK_UNSIGNED_INT, memory.c_str(), ormak::ObjectMessage(plain_message(what, "dataset")),
            [&](const ShowObject &object) {
                ShowTarget target;
                int found = target.resolve_dataset(object, what, "dataset");
                if (found != ORMAK_SUCCESS) return found;
                if (H5Pget_layout(target.creation_list) != H5D_CHUNKED)
                    return ormak::fail(ORMAK_ERROR_UNEXPECTED_STORAGE_TYPE,
                                       "Error when showing (filter) mask of dataset \"%s\" as storage type is not "
                                       "chunked",
                                       target.name);
                target.space = H5Dget_space(target.dataset);
                const int rank = target.space.valid() ? H5Sget_simple_extent_ndims(target.space) : -1;
                if (rank < 0) return target.no_information();
                std::vector<hsize_t> dimensions(rank), chunks(32), offset(rank, 0);
                if (H5Sget_simple_extent_dims(target.space, dimensions.data(), nullptr) < 0 ||
                    H5Pget_chunk(target.creation_list, 32, chunks.data()) < 0)
                    return target.no_information();
                pANTLR3_BASE_TREE numbers = tree::child(tree::child(tree::child(dataset_list, object.index), 2), 0);
                for (int d = 0; d < rank && d < tree::count(numbers); d++) {
                    const long long number = strtoll(tree::text(tree::child(numbers, d)), nullptr, 10);
                    found = chunk_offset(target, number, dimensions[d], chunks[d], &offset[d]);
                    if (found != ORMAK_SUCCESS) return found;
                }
                hsize_t bytes = 0;
                if (H5Dget_chunk_storage_size(target.dataset, offset.data(), &bytes) < 0)
                    return target.no_information();
                void *chunk = malloc(bytes > 0 ? (size_t)bytes : 1);
                if (chunk == nullptr)
                    return ormak::fail(ORMAK_ERROR_NOT_ENOUGH_MEMORY, "%s", memory.c_str());
                uint32_t mask = 0;
                const herr_t read = H5DOread_chunk(target.dataset, H5P_DEFAULT, offset.data(), &mask, chunk);
                free(chunk);
                if (read < 0) return target.no_information();
                return frame.add_int((int)mask);
            });
    return frame.finish("ormak_show_mask", status, {{"dataset_list", (const void *)dataset_list}});
}

int ormak_show_dimension(const char *file_object_name, const char *object_name, int object_type, int dimension_type,
                         pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting,
                         int programming_language) {
    ShowFrame frame(post_processing_list, output_redirecting, programming_language);
    const char *what = dimension_type == 0 ? "dimensions" : "maximum dimensions";
    const char *word = ormak::kind_word(object_type);
    char memory[ORMAK_TEXT_SIZE * 2];
    snprintf(memory, sizeof memory, "Error when showing %s of %s \"%s\" as there is not enough memory available", what,
             word, object_name ? object_name : "");
    int status = ormak::show_one_object(frame, file_object_name, object_name, what, word, [&](const ShowObject &object) {
        ShowTarget target;
        int found = target.resolve(object, object_type, what);
        if (found == ORMAK_SUCCESS) found = target.open();
        if (found != ORMAK_SUCCESS) return found;
        const int rank = H5Sget_simple_extent_ndims(target.space);
        if (rank < 0) return target.no_information();
        std::vector<hsize_t> current(rank), maximum(rank);
        if (H5Sget_simple_extent_dims(target.space, current.data(), maximum.data()) < 0)
            return target.no_information();
        found = frame.begin(ORMAK_BIGINT, rank, memory);
        for (int d = 0; found == ORMAK_SUCCESS && d < rank; d++) {
            const hsize_t size = dimension_type == 0 ? current[d] : maximum[d];
            found = frame.add_bigint(size == H5S_UNLIMITED ? -1 : (int64_t)size);
        }
        if (found == ORMAK_SUCCESS) found = frame.deliver();
        return found;
    });
    return frame.finish("ormak_show_dimension", status,
                        {{"file_object_name", file_object_name},
                         {"object_name", object_name},
                         {"object_type", object_type},
                         {"dimension_type", dimension_type}});
}

int ormak_show_storage_dimension(const char *file_dataset_name, const char *dataset_name,
                                 pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting,
                                 int programming_language) {
    ShowFrame frame(post_processing_list, output_redirecting, programming_language);
    const char *what = "storage dimension";
    char memory[ORMAK_TEXT_SIZE * 2];
    snprintf(memory, sizeof memory, "Error when showing dimensions of dataset \"%s\" as there is not enough memory available",
             dataset_name ? dataset_name : "");
    int status = ormak::show_one_object(frame, file_dataset_name, dataset_name, what, "dataset", [&](const ShowObject &object) {
        ShowTarget target;
        int found = target.resolve_dataset(object, what, "object");
        if (found != ORMAK_SUCCESS) return found;
        hsize_t chunks[32];
        int rank = 0;
        if (H5Pget_layout(target.creation_list) == H5D_CHUNKED) {
            rank = H5Pget_chunk(target.creation_list, 32, chunks);
            if (rank < 0) return target.no_information();
        }
        found = frame.begin(ORMAK_BIGINT, rank, memory);
        for (int d = 0; found == ORMAK_SUCCESS && d < rank; d++) found = frame.add_bigint((int64_t)chunks[d]);
        if (found == ORMAK_SUCCESS) found = frame.deliver();
        return found;
    });
    return frame.finish("ormak_show_storage_dimension", status,
                        {{"file_dataset_name", file_dataset_name}, {"dataset_name", dataset_name}});
}

int ormak_show_file_size(pANTLR3_BASE_TREE file_list, pANTLR3_BASE_TREE post_processing_list,
                         pANTLR3_BASE_TREE output_redirecting, int programming_language) {
    ShowFrame frame(post_processing_list, output_redirecting, programming_language);
    int status = ORMAK_SUCCESS;
    if (file_list == nullptr && current_file == nullptr)
        status = ormak::fail(ORMAK_ERROR_NOT_OPEN, "Error when showing size of file as no file is in use");
    const int count = file_list ? tree::count(file_list) : 1;
    auto name_at = [&](int i) { return file_list ? tree::text(tree::child(file_list, i)) : current_file->file_name; };
    char memory[ORMAK_TEXT_SIZE * 2];
    if (status == ORMAK_SUCCESS) {
        snprintf(memory, sizeof memory, "Error when showing size of file \"%s\" as there is not enough memory available",
                 name_at(0));
        status = frame.decode();
    }
    if (status == ORMAK_SUCCESS) status = frame.begin(ORMAK_UNSIGNED_BIGINT, count, memory);
    for (int i = 0; status == ORMAK_SUCCESS && i < count; i++) {
        const char *name = name_at(i);
        if (file_list && ormak::ends_with_slash(name)) {
            status = ormak::fail(ORMAK_ERROR_UNKNOWN, "Error when showing size of file \"%s\" as it should not end with \"/\"",
                                 name);
            break;
        }
        struct stat64 info;
        if (stat64(name, &info) != 0) {
            if (errno == ENOENT)
                status = ormak::fail(ORMAK_ERROR_NOT_FOUND, "Error when showing size of file \"%s\" as it does not exist",
                                     name);
            else if (errno == EACCES)
                status = ormak::fail(ORMAK_ERROR_NO_ACCESS,
                                     "Error when showing size of file \"%s\" as it is not accessible", name);
            else
                status = ormak::fail(ORMAK_ERROR_UNKNOWN, "Error when showing size of file \"%s\"", name);
            break;
        }
        /* A directory is no file here. */
        if (!S_ISREG(info.st_mode)) {
            status = ormak::fail(ORMAK_ERROR_NOT_FOUND, "Error when showing size of file \"%s\" as it does not exist",
                                 name);
            break;
        }
        status = frame.add_bigint((int64_t)info.st_size);
    }
    if (status == ORMAK_SUCCESS) status = frame.deliver();
    return frame.finish("ormak_show_file_size", status, {{"file_list", (const void *)file_list}});
}

} // extern "C"
