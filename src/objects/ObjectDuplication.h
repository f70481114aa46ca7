/* What RENAME and COPY of objects share: the word for the kind of object that a statement
   insists on, the reading of a source and of its new name, and the duplication of an
   attribute onto another object. */
#ifndef ORMAK_OBJECT_DUPLICATION_H
#define ORMAK_OBJECT_DUPLICATION_H

#include <hdf5.h>

#include <string>

#include "../OrmakPrivateStructures.h"

namespace ormak {

/* "object" for -1, else "group", "dataset", "attribute", "soft link" or "external link". */
const char *object_type_word(int object_type);

/* One source of a statement, read in the file in use. */
struct Source {
    char canonical[ORMAK_TEXT_SIZE];
    std::string last;      /* its last component, for a new name ending in "/" */
    bool attribute;        /* no link of that name: the path of an attribute */
};

/* Refuses a name ending in "/", a missing new name, a path too long and the root, then
   tests the kind of the source against `object_type` at `location`. `verb` is "renaming"
   or "copying". */
int read_source(const char *name, bool has_new_name, int object_type, const char *verb, hid_t location,
                Source &source);

/* The new name as written, with the source's last component after a final "/", and its
   canonical path in the file in use. */
int read_new_name(const char *name, const char *new_name, const Source &source, int object_type, const char *verb,
                  std::string &written, char *canonical);

/* Whether `path` lies strictly below `ancestor`, both canonical. */
bool is_inside(const char *path, const char *ancestor);

/* Whether two locations belong to the same file. */
bool same_file(hid_t location0, hid_t location1);

/* Flushes the file of `location` when automatic flush is on; false on failure. */
bool flush_location(hid_t location);

} // namespace ormak

extern "C" {
/* Moves (attribute_copy 0) or copies (1) the attribute at attribute_name_canonical onto
   attribute_new_name_canonical, the first path counted in group_id0's file, the second in
   group_id1's. Renames in place on one object, else reads and writes with the attribute's own
   type and dataspace and drops the source of a rename last. Both canonical buffers are cut
   at their last "/". */
int _ormak_duplicate_attribute(const char *attribute_name, char *attribute_name_canonical,
                               const char *attribute_new_name, char *attribute_new_name_canonical,
                               int attribute_truncate, int attribute_copy, int object_type, hid_t group_id0,
                               hid_t group_id1);
}

#endif
