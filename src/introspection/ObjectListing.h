/* Listing the objects of the file in use: the members of one group (or the attributes of any
   object), and the walk that matches a LIKE expression level by level under a start. Both
   hand each entry to a sink as they find it, so that a statement can put entries straight
   into the cursor, collect them, or act on them once the walk is over (DROP ... LIKE).

   A LIKE expression is cut at "/" into pieces, empty ones dropped, one piece per level. A
   piece is a regular expression that must match somewhere in a name (it is not anchored)
   without a capture group taking part, or "**", any number of levels, limited by DEEP. */
#ifndef ORMAK_OBJECT_LISTING_H
#define ORMAK_OBJECT_LISTING_H

#include <functional>
#include <string>
#include <vector>

#include <antlr3.h>

namespace ormak {

/* The kind of an entry: ORMAK_GROUP, ORMAK_DATASET or ORMAK_ATTRIBUTE, with ORMAK_SOFT_LINK or
   ORMAK_EXTERNAL_LINK added for an object reached through such a link (a dangling link is
   its link flag alone, a named data type 0). Sinks return 0 to go on, or a status that ends
   the listing and is passed on, its message written. */
using ListingSink = std::function<int(const char *name, int kind)>;

/* One entry as a collecting sink keeps it. */
struct ListedObject {
    std::string name;
    int kind;
};

/* "object", "group", "dataset", "attribute", "soft link", "external link" for object_type
   -1, 4, 8, 16, 32, 64, or their plurals: the words of the messages of the listings. */
const char *object_noun(int object_type, bool plural);

/* One level. `path` is the canonical path of the object to list, or null for the current
   group; `object_name` is its name as the statement wrote it, for messages. Attributes come
   first (when `filter` is -1 or has ORMAK_ATTRIBUTE), then the links of a group that pass
   the filter: by name, or in creation order when `order_creation` is 0 and the object tracks
   it. A filter other than -1 and attributes alone needs a group (-16). A missing object is
   -2, a dangling link -19, but `walking` makes a dangling link an empty level. */
int list_object(const char *object_name, const char *path, int order_creation, int filter, bool walking,
                const ListingSink &sink);

/* The DEEP clause as written: numbers, and commas that stand where a number could. */
struct DeepItem {
    bool comma;
    int number;
};
using DeepList = std::vector<DeepItem>;

/* The children of a DEEP clause's list (numbers by atoi). */
DeepList read_deep_list(pANTLR3_BASE_TREE deep_list);
/* Whether a number of the clause is below 0, which no statement takes. */
bool has_negative_depth(const DeepList &deep_list);

/* A name of contents: it ends with "/", is "." or "..", or ends with "/." or "/..". */
bool refers_to_contents(const char *name);

/* A walk under the object `object_name` (canonical path of it, or the current group when
   null), for the entries whose kind has all bits of `object_type` (-1 any). `deep_list` is
   null without a DEEP clause. `doing` is the statement's verb for its messages ("showing"):
   an invalid piece gives -21 "Error when <doing> <objects> as regular expression "<piece>"
   is invalid at position <n>", n counted from 1. */
struct LikeRequest {
    const char *object_name;
    int object_type;
    const char *regular_expression;
    const DeepList *deep_list;
    int order_creation;
    const char *doing;
};

/* Walks depth first, an entry before what lies under it, and hands each match to `sink` as a
   path relative to the start. A loop of links is shown where it closes and not followed.
   What was handed on before a failure stays handed on. */
int walk_objects_like(const LikeRequest &request, const ListingSink &sink);

/* The same walk into `found`. */
int collect_objects_like(const LikeRequest &request, std::vector<ListedObject> &found);

} // namespace ormak

#endif
