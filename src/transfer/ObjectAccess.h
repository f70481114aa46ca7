/* The road from a name in INSERT or SELECT to an open dataset or attribute with a known
   element type and a selection: the name resolved (a dataset first, then an attribute of
   the parent), the stored type mapped to a data type flag, and hyperslabs, points or chunk
   numbers turned into a selection. */
#ifndef ORMAK_OBJECT_ACCESS_H
#define ORMAK_OBJECT_ACCESS_H

#include <antlr3.h>
#include <hdf5.h>

#include <stddef.h>

#include <algorithm>
#include <string>

#include "../OrmakPrivateStructures.h"
#include "../session/Handle.h"

namespace ormak {

struct CachedObject;

/* A list of at most 32 dimensions, the rank limit of HDF5, kept in place. */
class Dimensions {
public:
    void assign(size_t count, hsize_t value) {
        count_ = std::min<size_t>(count, ORMAK_MAX_DIMENSIONS);
        std::fill(values_, values_ + count_, value);
    }
    void assign(const hsize_t *values, size_t count) {
        count_ = std::min<size_t>(count, ORMAK_MAX_DIMENSIONS);
        std::copy(values, values + count_, values_);
    }
    size_t size() const { return count_; }
    bool empty() const { return count_ == 0; }
    hsize_t *data() { return values_; }
    const hsize_t *data() const { return values_; }
    hsize_t &operator[](size_t i) { return values_[i]; }
    hsize_t operator[](size_t i) const { return values_[i]; }
    const hsize_t *begin() const { return values_; }
    const hsize_t *end() const { return values_ + count_; }

private:
    hsize_t values_[ORMAK_MAX_DIMENSIONS];
    size_t count_ = 0;
};

/* The verb of a statement's messages: "inserting data into" or "reading data from". */
struct AccessWords {
    const char *action;
    const char *unsupported; /* before "... as data type is not supported" */
    const char *direct;      /* "direct write" or "direct read" */
};
extern const AccessWords kInsertWords;
extern const AccessWords kSelectWords;

class ObjectAccess {
public:
    /* `object_type` is the keyword of the statement: -1, ORMAK_DATASET or ORMAK_ATTRIBUTE.
       With `cached` what the name resolves to and the opened object are taken from the
       file's cache of held objects, and kept there once opened. */
    ObjectAccess(const AccessWords &words, int object_type, bool cached = false)
        : words_(words), object_type_(object_type), cached_(cached) {}
    ~ObjectAccess();
    ObjectAccess(const ObjectAccess &) = delete;
    ObjectAccess &operator=(const ObjectAccess &) = delete;

    /* Finds what the name is, in the file in use; sets `type`. An object held open already
       is opened too, with everything that open() gives. */
    int resolve(const char *object_name);
    /* Whether the object came open from the cache: open() then opens nothing, and no
       access list is needed for it. */
    bool held() const { return held_ != nullptr; }
    /* Opens the dataset (with `access_list`) or attribute, its dataspace and its type, and
       maps the type. With `chunked` the dataset must be chunked and its chunk dimensions are
       read. */
    int open(bool chunked, hid_t access_list);
    /* Whether the dataset's filters run n-bit and then scale-offset. */
    bool passes_nbit_then_scaleoffset();
    /* A one-dimensional space of `elements`, the memory side of a selection; it lives as
       long as this access. */
    hid_t memory_space(hsize_t elements);
    /* The selection of an object_selection node's hyperslab and point slots; `parallel`
       selects nothing when the statement gives no selection. Sets `selection` and `count`. */
    int select(pANTLR3_BASE_TREE object_selection, bool parallel);
    /* The first element of the chunk that slot 4's first point numbers, for direct access. */
    int chunk_offset(pANTLR3_BASE_TREE object_selection);

    /* The statement's message for this object; `word` is the kind's word or "object". */
    int fail(int status, const char *word, const char *cause) const;
    /* The word by the statement's keyword: "object", "dataset" or "attribute". */
    const char *kind_word() const;

    const char *name = "";
    int type = -1;                /* ORMAK_DATASET or ORMAK_ATTRIBUTE, once resolved */
    int data_type = -1;           /* data type flag of the elements */
    int size = 0;                 /* bytes of an element, or of one member of a variable-length one */
    int selection = -1;           /* 0 when a selection is in force */
    int count = 0;                /* elements selected, or all */
    Dimensions dimensions, chunk_dimensions, offset;
    Handle object{H5Oclose}, dataset{H5Dclose}, attribute{H5Aclose}, dataspace{H5Sclose};
    Handle data_type_id{H5Tclose}, creation_list{H5Pclose};
    /* The type of the values in memory: the native form of a numeric type, so that values
       of another byte order are turned around by HDF5 on their way. */
    hid_t memory_type = -1;

private:
    int open_parent(const char *path);
    int map_type();
    void take(CachedObject &entry);
    void keep();
    int hyperslabs(pANTLR3_BASE_TREE slabs, pANTLR3_BASE_TREE operators);
    int points(pANTLR3_BASE_TREE list);
    std::string message(const char *word) const;

    const AccessWords &words_;
    int object_type_;
    bool cached_;
    CachedObject *held_ = nullptr;
    char path_[ORMAK_TEXT_SIZE];
    std::string attribute_name_;
    Handle owned_memory_type_{H5Tclose}, owned_memory_space_{H5Sclose};
};

} // namespace ormak

#endif
