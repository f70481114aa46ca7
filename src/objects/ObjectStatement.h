/* The skeleton that every statement changing objects inside files shares: each item of a
   list may name its own file, which is open for that item only; after a change the file
   is flushed when automatic flush is on; the first failing item ends the statement and
   earlier items stay done. */
#ifndef ORMAK_OBJECT_STATEMENT_H
#define ORMAK_OBJECT_STATEMENT_H

#include <functional>
#include <string>

#include <antlr3.h>
#include <hdf5.h>

namespace ormak {

/* One item of a list of objects, each "[file] name". */
struct ObjectItem {
    int index;
    const char *file_name;   /* null when the item names no file */
    const char *object_name;
};

/* The statement's plain message for one object, such as "Error when creating group \"%s\"";
   its other messages are this text and a cause. */
class ObjectMessage {
public:
    explicit ObjectMessage(std::string plain) : plain_(std::move(plain)) {}
    int fail(int status, const char *object_name, const char *cause = "") const;
    /* After a failed HDF5 call: a full device, or the plain message. */
    int fail_call(const char *object_name) const;

private:
    std::string plain_;
};

/* The object name of the first item, for messages about the statement as a whole. */
const char *tree_first_object_name(pANTLR3_BASE_TREE list);

/* Makes room for a new object named `name` in the file in use: refuses a trailing "/", an
   over-long path and the root, makes the missing groups on the way with `group_create_list`,
   and deletes (with `truncate` 0) or refuses an object of that name. Its path goes to `path`. */
int prepare_new_object(const char *name, int truncate, hid_t group_create_list, const ObjectMessage &message,
                       std::string &path);

/* After H5Oget_info_by_name failed on `path` in the file in use: a soft or external link
   there is dangling (-19), anything else is a failure to get information (-99). */
int info_failure(const char *path, const char *object_name);

/* Runs `work` on each item of `list` with the item's file in use, in order, until one
   fails. Returns the status of the statement. Statements that only read pass `changes`
   false: their files are not flushed after each item. */
int for_each_object(pANTLR3_BASE_TREE list, const ObjectMessage &message,
                    const std::function<int(const ObjectItem &item)> &work, int file_parallel = -1,
                    bool changes = true);

} // namespace ormak

#endif
