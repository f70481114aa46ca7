/* The road from a name of a SHOW statement to an open dataset or attribute, shared by the
   statements that tell properties of objects and SHOW FILL VALUE. Names come from the
   frame's `each_object` (or `show_one_object`): the file is in use and object_name_list
   holds the components of the path. */
#ifndef ORMAK_SHOW_PROPERTIES_H
#define ORMAK_SHOW_PROPERTIES_H

#include <functional>
#include <string>

#include <hdf5.h>

#include "ShowFrame.h"
#include "../session/Handle.h"

namespace ormak {

/* "object", "dataset" or "attribute" by the statement's kind of object (-1, 8, 16). */
const char *kind_word(int object_type);

struct ShowTarget {
    const char *name = "";
    std::string path;
    int kind = -1; /* ORMAK_DATASET or ORMAK_ATTRIBUTE, once resolved */
    Handle parent{H5Oclose}, dataset{H5Dclose}, attribute{H5Aclose};
    Handle type{H5Tclose}, space{H5Sclose}, creation_list{H5Pclose};

    /* A dataset or an attribute, as `object_type` (-1, 8 or 16) asks: a dataset first, then
       an attribute of the parent. `what` names the property in messages. */
    int resolve(const ShowObject &object, int object_type, const char *what);
    /* The resolved object, its type and its dataspace. */
    int open();
    /* A dataset only, opened with its creation list; `info_word` is the word of the text for
       a failure to get information about it ("dataset" or "object"). */
    int resolve_dataset(const ShowObject &object, const char *what, const char *info_word);

    /* Opens the parent of the path into `parent`. */
    int cut();
    bool attribute_exists() const;
    int cut_failure(const char *what, const char *word) const;
    int missing(const char *what, const char *word) const;
    int unexpected(const char *what, const char *cause) const;
    /* -99 "Error when getting information about <kind> ..." */
    int no_information() const;
};

/* The frame of a statement about one "[file] name": refuses a missing file in use and a
   trailing "/" before the INTO clause is decoded, uses the named file for the statement
   and closes it after, and hands `work` the canonical path. */
int show_one_object(ShowFrame &frame, const char *file_name, const char *object_name, const char *what,
                    const char *word, const std::function<int(const ShowObject &object)> &work);

} // namespace ormak

#endif
