// Everything a file holds as one text, read through HDF5 beside the session: every link with
// its kind, and for every object its attributes and the stored bytes of fixed-size values, so
// that a test can tell that a refused statement left the file exactly as it was; and the kind
// of one link or whether an attribute is there. ObjectFileTest gathers them for the tests of
// statements that move, copy or drop objects.
#ifndef ORMAK_FILE_SNAPSHOT_H
#define ORMAK_FILE_SNAPSHOT_H

#include <hdf5.h>

#include <sstream>
#include <string>
#include <vector>

#include "OrmakTest.h"

namespace snapshot_detail {

inline void bytes(std::ostringstream &out, hid_t type, hid_t space, bool dataset, hid_t id) {
    H5T_class_t kind = H5Tget_class(type);
    if (kind == H5T_VLEN || (kind == H5T_STRING && H5Tis_variable_str(type) > 0)) {
        out << " (variable " << H5Sget_simple_extent_npoints(space) << ")";
        return;
    }
    std::vector<unsigned char> buffer(H5Sget_simple_extent_npoints(space) * H5Tget_size(type) + 1);
    herr_t read = dataset ? H5Dread(id, type, H5S_ALL, H5S_ALL, H5P_DEFAULT, buffer.data())
                          : H5Aread(id, type, buffer.data());
    out << (read < 0 ? " unreadable" : "") << " [";
    for (size_t i = 0; i + 1 < buffer.size(); i++) out << (int)buffer[i] << ' ';
    out << "]";
}

inline herr_t attribute(hid_t object, const char *name, const H5A_info_t *, void *data) {
    std::ostringstream &out = *static_cast<std::ostringstream *>(data);
    hid_t attribute = H5Aopen(object, name, H5P_DEFAULT);
    hid_t type = H5Aget_type(attribute), space = H5Aget_space(attribute);
    out << "  @" << name;
    bytes(out, type, space, false, attribute);
    out << "\n";
    H5Sclose(space);
    H5Tclose(type);
    H5Aclose(attribute);
    return 0;
}

inline void object(std::ostringstream &out, hid_t file, const char *path) {
    hid_t object = H5Oopen(file, path, H5P_DEFAULT);
    if (object < 0) return;
    H5O_info_t info;
    H5Oget_info2(object, &info, H5O_INFO_BASIC);
    if (info.type == H5O_TYPE_DATASET) {
        hid_t type = H5Dget_type(object), space = H5Dget_space(object);
        out << "  values";
        bytes(out, type, space, true, object);
        out << "\n";
        H5Sclose(space);
        H5Tclose(type);
    }
    H5Aiterate2(object, H5_INDEX_NAME, H5_ITER_INC, nullptr, attribute, &out);
    H5Oclose(object);
}

inline herr_t link(hid_t file, const char *name, const H5L_info_t *info, void *data) {
    std::ostringstream &out = *static_cast<std::ostringstream *>(data);
    out << name << (info->type == H5L_TYPE_HARD ? "" : info->type == H5L_TYPE_SOFT ? " soft" : " external") << "\n";
    if (info->type == H5L_TYPE_HARD) object(out, file, name);
    return 0;
}

} // namespace snapshot_detail

inline std::string file_snapshot(const char *file_name) {
    std::ostringstream out;
    hid_t file = H5Fopen(file_name, H5F_ACC_RDONLY, H5P_DEFAULT);
    if (file < 0) return "no file";
    out << "/\n";
    snapshot_detail::object(out, file, "/");
    H5Lvisit(file, H5_INDEX_NAME, H5_ITER_INC, snapshot_detail::link, &out);
    H5Fclose(file);
    return out.str();
}

class ObjectFileTest : public OrmakTest {
protected:
    /* The kind of link at `path`: "group", "dataset", "soft <its value>", "external" or "missing". */
    static std::string kind(const char *path, const char *file_name = "a.h5") {
        hid_t file = H5Fopen(file_name, H5F_ACC_RDONLY, H5P_DEFAULT);
        std::string result = "missing";
        H5L_info_t info;
        if (H5Lexists(file, path, H5P_DEFAULT) > 0 && H5Lget_info(file, path, &info, H5P_DEFAULT) >= 0) {
            if (info.type == H5L_TYPE_SOFT) {
                std::string value(info.u.val_size, '\0');
                H5Lget_val(file, path, &value[0], value.size(), H5P_DEFAULT);
                result = std::string("soft ") + value.c_str();
            } else if (info.type == H5L_TYPE_EXTERNAL) {
                result = "external";
            } else {
                H5O_info_t object;
                H5Oget_info_by_name2(file, path, &object, H5O_INFO_BASIC, H5P_DEFAULT);
                result = object.type == H5O_TYPE_GROUP ? "group" : "dataset";
            }
        }
        H5Fclose(file);
        return result;
    }

    static bool has_attribute(const char *object, const char *name, const char *file_name = "a.h5") {
        hid_t file = H5Fopen(file_name, H5F_ACC_RDONLY, H5P_DEFAULT);
        bool result = H5Aexists_by_name(file, object, name, H5P_DEFAULT) > 0;
        H5Fclose(file);
        return result;
    }

    static bool exists_in(const char *file_name, const char *path) {
        hid_t file = H5Fopen(file_name, H5F_ACC_RDONLY, H5P_DEFAULT);
        bool result = H5Lexists(file, path, H5P_DEFAULT) > 0 && H5Oexists_by_name(file, path, H5P_DEFAULT) > 0;
        H5Fclose(file);
        return result;
    }

    /* Runs a script that must be refused and leave `files` as they were; its message in `said`. */
    int refuse_unchanged(const std::string &script, std::vector<const char *> files = {"a.h5"}) {
        EXPECT_EQ(run("FLUSH"), 0);
        std::string before;
        for (const char *file : files) before += file_snapshot(file);
        int status = refuse(script);
        EXPECT_EQ(run("FLUSH"), 0);
        std::string after;
        for (const char *file : files) after += file_snapshot(file);
        EXPECT_EQ(after, before) << script;
        return status;
    }
};

#endif
