// A dataset or an attribute of a file opened beside the session, read-only, so that the tests
// check what the library wrote through HDF5 itself.
#ifndef ORMAK_STORED_OBJECT_H
#define ORMAK_STORED_OBJECT_H

#include <gtest/gtest.h>
#include <hdf5.h>

#include <string>
#include <utility>
#include <vector>

class StoredObject {
public:
    using Sizes = std::vector<hsize_t>;
    StoredObject(const StoredObject &) = delete;
    StoredObject &operator=(const StoredObject &) = delete;
    ~StoredObject() {
        if (list_ >= 0) H5Pclose(list_);
        H5Sclose(space_);
        H5Tclose(type_);
        if (attribute_) H5Aclose(id_);
        else H5Dclose(id_);
        H5Fclose(file_);
    }

    bool valid() const { return id_ >= 0; }
    hid_t type() const { return type_; }
    /* The creation property list of a dataset; -1 for an attribute. */
    hid_t list() const { return list_; }
    Sizes dimensions() const { return sizes(false); }
    Sizes maxima() const { return sizes(true); }

    template <typename T>
    std::vector<T> read(hid_t memory_type) const {
        std::vector<T> values(H5Sget_simple_extent_npoints(space_));
        EXPECT_GE(read_into(memory_type, values.data()), 0);
        return values;
    }
    std::vector<int> ints() const { return read<int>(H5T_NATIVE_INT); }
    /* Variable-length strings, a null one as "(null)"; HDF5's copies are freed. */
    std::vector<std::string> strings() const {
        hid_t memory = H5Tcopy(H5T_C_S1);
        H5Tset_size(memory, H5T_VARIABLE);
        H5Tset_cset(memory, H5Tget_cset(type_));
        std::vector<std::string> result;
        for (char *text : read<char *>(memory)) {
            result.push_back(text ? text : "(null)");
            H5free_memory(text);
        }
        H5Tclose(memory);
        return result;
    }
    /* Variable-length values, their members read as ints; HDF5's copies are freed. */
    std::vector<std::vector<int>> lists() const {
        hid_t memory = H5Tvlen_create(H5T_NATIVE_INT);
        std::vector<std::vector<int>> result;
        for (hvl_t list : read<hvl_t>(memory)) {
            result.emplace_back((int *)list.p, (int *)list.p + list.len);
            H5free_memory(list.p);
        }
        H5Tclose(memory);
        return result;
    }
    /* The elements' bytes as stored, for text and opaque types. */
    std::vector<char> bytes() const {
        std::vector<char> values(H5Sget_simple_extent_npoints(space_) * H5Tget_size(type_));
        EXPECT_GE(read_into(type_, values.data()), 0);
        return values;
    }
    std::string tag() const {
        char *tag = H5Tget_tag(type_);
        std::string text = tag ? tag : "";
        H5free_memory(tag);
        return text;
    }

    H5D_layout_t layout() const { return H5Pget_layout(list_); }
    Sizes chunk() const {
        hsize_t chunk[32];
        int rank = H5Pget_chunk(list_, 32, chunk);
        return rank < 0 ? Sizes() : Sizes(chunk, chunk + rank);
    }
    H5D_alloc_time_t allocation() const {
        H5D_alloc_time_t time;
        H5Pget_alloc_time(list_, &time);
        return time;
    }
    /* The filters of the pipeline in order, with the values of each. */
    std::vector<std::pair<H5Z_filter_t, std::vector<unsigned>>> filters() const {
        std::vector<std::pair<H5Z_filter_t, std::vector<unsigned>>> result;
        for (int i = 0; i < H5Pget_nfilters(list_); i++) {
            unsigned flags, values[64];
            size_t count = 64;
            H5Z_filter_t filter = H5Pget_filter2(list_, (unsigned)i, &flags, &count, values, 0, nullptr, nullptr);
            result.push_back({filter, std::vector<unsigned>(values, values + std::min<size_t>(count, 64))});
        }
        return result;
    }

protected:
    /* A dataset at `path`, or with `attribute` the attribute of that name on the object. */
    StoredObject(const char *file, const char *path, const char *attribute) : attribute_(attribute != nullptr) {
        file_ = H5Fopen(file, H5F_ACC_RDONLY, H5P_DEFAULT);
        if (attribute_) {
            id_ = H5Aopen_by_name(file_, path, attribute, H5P_DEFAULT, H5P_DEFAULT);
            type_ = H5Aget_type(id_);
            space_ = H5Aget_space(id_);
        } else {
            id_ = H5Dopen2(file_, path, H5P_DEFAULT);
            type_ = H5Dget_type(id_);
            space_ = H5Dget_space(id_);
            list_ = H5Dget_create_plist(id_);
        }
    }

private:
    herr_t read_into(hid_t memory_type, void *buffer) const {
        if (attribute_) return H5Aread(id_, memory_type, buffer);
        return H5Dread(id_, memory_type, H5S_ALL, H5S_ALL, H5P_DEFAULT, buffer);
    }
    Sizes sizes(bool maxima) const {
        hsize_t current[32], maximum[32];
        int rank = H5Sget_simple_extent_dims(space_, current, maximum);
        if (rank < 0) return Sizes();
        return maxima ? Sizes(maximum, maximum + rank) : Sizes(current, current + rank);
    }
    bool attribute_;
    hid_t file_ = -1, id_ = -1, type_ = -1, space_ = -1, list_ = -1;
};

struct Dataset : StoredObject {
    explicit Dataset(const char *path, const char *file = "a.h5") : StoredObject(file, path, nullptr) {}
};

struct Attribute : StoredObject {
    Attribute(const char *object, const char *name, const char *file = "a.h5") : StoredObject(file, object, name) {}
};

#endif
