/* CREATE ATTRIBUTE: one definition (type, dimensions, initial values) built once and given
   to every attribute of the statement. The last component of a name is the attribute; all
   before it names the object that carries it, a group or a dataset, which must exist: no
   group is made on the way. Everything that can be checked without a file is checked
   before the first file is touched. */
#include <string>
#include <vector>

#include "DataTypes.h"
#include "ElementType.h"
#include "ObjectStatement.h"
#include "../OrmakExecutors.h"
#include "../files/CanonicalPath.h"
#include "../files/FileNames.h"
#include "../language/TreeReader.h"
#include "../session/Handle.h"
#include "../session/Session.h"
#include "../transfer/InputRedirecting.h"

namespace {

using ormak::fail;

/* The statement's arguments, gathered so that its stages can share them. */
struct Request {
    int attribute_truncate, data_type;
    pANTLR3_BASE_TREE compound;
    int attribute_endianness;
    std::vector<hsize_t> dimensions;
    int char_set;
    const char *tag_value;
    pANTLR3_BASE_TREE data_list, input_redirecting;
    int programming_language;
    const char *first;
};

/* What the checks settle and the definition is built of. */
struct Definition {
    int compound_size = 0;               /* what the member check adds up */
    ormak::InputClause input;
    ormak::ElementType element;
    ormak::Handle space{H5Sclose};
    std::vector<hsize_t> space_dimensions;
    int count = 1;                       /* elements of the dataspace */
    ormak::InputBuffer data;
};

/* Stage one: checks that need no file, in the order that decides which message is seen. */
int check(const Request &r, Definition &d) {
    const char *name = r.first;
    int status = ormak::check_rank(r.dimensions, "attribute", name);
    if (status != ORMAK_SUCCESS) return status;
    for (hsize_t dimension : r.dimensions)
        if (dimension == (hsize_t)-2)
            return fail(ORMAK_ERROR_INVALID_VALUE,
                        "Error when creating attribute \"%s\" as dimension is not equal to or greater than 0", name);
    if (r.data_type == ORMAK_COMPOUND) {
        status = _ormak_check_compound_member_names(name, ORMAK_ATTRIBUTE, ormak::tree::child(r.compound, 0),
                                                    &d.compound_size);
        if (status != ORMAK_SUCCESS) return status;
    }
    status = ormak::check_type_options(r.data_type, r.char_set, r.tag_value, "attribute", name);
    if (status != ORMAK_SUCCESS) return status;
    status = d.input.decode(r.input_redirecting, name, ORMAK_ATTRIBUTE, r.data_list);
    if (status != ORMAK_SUCCESS) return status;
    return ormak::check_compound_values(r.data_type, d.input.input_type != -1, "attribute", name);
}

/* Stage two: the type and the dataspace, built once for all attributes of the statement. A
   dataspace of an attribute has no maximum. */
int define(const Request &r, Definition &d) {
    const ormak::ElementRequest element{r.data_type, r.compound, r.attribute_endianness, r.char_set, r.tag_value,
                                        r.dimensions};
    int status = d.element.build(element, d.compound_size, "attribute", r.first);
    if (status != ORMAK_SUCCESS) return status;
    d.space_dimensions = ormak::space_dimensions(r.data_type, r.dimensions);
    status = ormak::element_count(d.space_dimensions, d.input.input_type != -1, "attribute", r.first, d.count);
    if (status != ORMAK_SUCCESS) return status;
    d.space = H5Screate_simple((int)d.space_dimensions.size(), d.space_dimensions.data(), nullptr);
    if (!d.space.valid())
        return fail(ORMAK_ERROR_UNKNOWN, "Error when setting dataspace to create attribute \"%s\"", r.first);
    return ORMAK_SUCCESS;
}

/* The object that carries the attribute `name` in the file in use, opened into `object`, and
   the attribute's own name. */
int open_carrier(const char *name, const ormak::ObjectMessage &message, ormak::Handle &object,
                 std::string &attribute_name) {
    if (ormak::ends_with_slash(name)) return message.fail(ORMAK_ERROR_UNKNOWN, name, " as it should not end with \"/\"");
    if (!ormak::canonical_path(name, nullptr)) return message.fail(ORMAK_ERROR_UNKNOWN, name, " as its path is too long");
    int count = object_name_list_count;
    /* "..", "/." and their kind leave no component to be the attribute's name. */
    if (count == 0) return message.fail(ORMAK_ERROR_INVALID_VALUE, name, " as it names the root group");
    attribute_name = object_name_list[count - 1];
    hid_t file_id = current_file->file_id;
    std::string path;
    for (int i = 0; i < count - 1; i++) {
        path += "/";
        path += object_name_list[i];
    }
    /* The root always exists; anything below it must be there already. */
    if (path.empty()) {
        path = "/";
    } else if (H5Lexists(file_id, path.c_str(), property_link_access_list) <= 0) {
        std::string cause = " as object \"" + path + "\" does not exist";
        return message.fail(ORMAK_ERROR_NOT_FOUND, name, cause.c_str());
    }
    object = H5Oopen(file_id, path.c_str(), property_link_access_list);
    return object.valid() ? ORMAK_SUCCESS : message.fail(ORMAK_ERROR_UNKNOWN, name);
}

/* Stage three, one item: the attribute, then its values. */
int create_one(const Request &r, Definition &d, const ormak::ObjectItem &item) {
    const ormak::ObjectMessage message("Error when creating attribute \"%s\"");
    const ormak::ObjectMessage writing("Error when inserting data into attribute \"%s\"");
    const char *name = item.object_name;
    ormak::Handle object(H5Oclose);
    std::string attribute_name;
    int status = open_carrier(name, message, object, attribute_name);
    if (status != ORMAK_SUCCESS) return status;
    if (H5Aexists(object, attribute_name.c_str()) > 0) {
        if (r.attribute_truncate != 0) return message.fail(ORMAK_ERROR_ALREADY_EXISTS, name, " as it already exists");
        H5Adelete(object, attribute_name.c_str());
    }
    ormak::Handle attribute(H5Aclose, H5Acreate2(object, attribute_name.c_str(), d.element.type, d.space, H5P_DEFAULT,
                                                  H5P_DEFAULT));
    if (!attribute.valid()) return message.fail_call(name);
    if (flush_status != -1 && _ormak_flush(flush_status) != ORMAK_SUCCESS) return message.fail_call(name);
    if (d.input.input_type == -1) return ORMAK_SUCCESS;
    /* The source is read once, for the first attribute, and serves them all. */
    if (item.index == 0) {
        const std::vector<hsize_t> &dimensions = d.space_dimensions;
        status = d.data.fill(d.input, r.data_type, d.count, d.element.size, -1, dimensions.data(), (int)dimensions.size(),
                             r.data_list, r.programming_language);
        if (status != ORMAK_SUCCESS) return status;
    }
    /* Values wait in the native form; HDF5 turns them into the stored byte order. */
    if (!d.data.empty() && H5Awrite(attribute, d.element.memory, d.data.data()) < 0) return writing.fail_call(name);
    return ORMAK_SUCCESS;
}

} // namespace

extern "C" int ormak_create_attribute(pANTLR3_BASE_TREE attribute_list, int attribute_truncate, int data_type,
                                      pANTLR3_BASE_TREE compound, int attribute_endianness,
                                      hsize_t *attribute_dimension_list, int attribute_dimension_count, int char_set,
                                      const char *tag_value, pANTLR3_BASE_TREE data_list,
                                      pANTLR3_BASE_TREE input_redirecting, int programming_language) {
    int dimension_count = attribute_dimension_list && attribute_dimension_count > 0 ? attribute_dimension_count : 0;
    const Request r{attribute_truncate,
                    data_type,
                    compound,
                    attribute_endianness,
                    std::vector<hsize_t>(attribute_dimension_list, attribute_dimension_list + dimension_count),
                    char_set,
                    tag_value,
                    data_list,
                    input_redirecting,
                    programming_language,
                    ormak::tree_first_object_name(attribute_list)};
    int status;
    {
        Definition d;
        status = check(r, d);
        if (status == ORMAK_SUCCESS) status = define(r, d);
        if (status == ORMAK_SUCCESS) {
            const ormak::ObjectMessage message("Error when creating attribute \"%s\"");
            status = ormak::for_each_object(attribute_list, message,
                                            [&](const ormak::ObjectItem &item) { return create_one(r, d, item); });
        }
    }
    return ormak::trace("ormak_create_attribute", status,
                        {{"attribute_list", (const void *)attribute_list},
                         {"attribute_truncate", attribute_truncate},
                         {"data_type", data_type},
                         {"compound", (const void *)compound},
                         {"attribute_endianness", attribute_endianness},
                         {"attribute_dimension_list", (const void *)attribute_dimension_list},
                         {"attribute_dimension_count", attribute_dimension_count},
                         {"char_set", char_set},
                         {"tag_value", tag_value},
                         {"data_list", (const void *)data_list},
                         {"input_redirecting", (const void *)input_redirecting},
                         {"programming_language", programming_language}});
}
