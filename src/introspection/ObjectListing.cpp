#include "ObjectListing.h"

#include <stdlib.h>
#include <string.h>

#include <new>

#include <hdf5.h>
#include <pcre.h>

#include "OrmakParser.h"
#include "../OrmakPrivateStructures.h"
#include "../files/CanonicalPath.h"
#include "../language/TreeReader.h"
#include "../session/Session.h"

namespace ormak {

namespace {

/* What an iteration callback needs: the filter, the sink, and the sink's status if it
   stopped the iteration. */
struct LevelContext {
    int filter;
    const ListingSink *sink;
    int status;
};

bool filter_has(int filter, int bit) { return filter == -1 || (filter & bit) != 0; }

herr_t attribute_callback(hid_t, const char *name, const H5A_info_t *, void *data) {
    LevelContext *context = (LevelContext *)data;
    context->status = (*context->sink)(name, ORMAK_ATTRIBUTE);
    return context->status == ORMAK_SUCCESS ? 0 : 1;
}

herr_t link_callback(hid_t group, const char *name, const H5L_info_t *link, void *data) {
    LevelContext *context = (LevelContext *)data;
    /* The object behind the link; a dangling link has none. */
    int object = 0;
    H5O_info_t info;
    if (H5Oget_info_by_name2(group, name, &info, H5O_INFO_BASIC, property_link_access_list) >= 0) {
        if (info.type == H5O_TYPE_GROUP) object = ORMAK_GROUP;
        else if (info.type == H5O_TYPE_DATASET) object = ORMAK_DATASET;
    }
    const bool soft = link->type == H5L_TYPE_SOFT, external = link->type == H5L_TYPE_EXTERNAL;
    const int filter = context->filter;
    const bool taken = filter == -1 || (object == ORMAK_GROUP && (filter & ORMAK_GROUP)) ||
                       (object == ORMAK_DATASET && (filter & ORMAK_DATASET)) || (soft && (filter & ORMAK_SOFT_LINK)) ||
                       (external && (filter & ORMAK_EXTERNAL_LINK));
    if (!taken) return 0;
    int kind = object;
    if (soft && filter_has(filter, ORMAK_SOFT_LINK)) kind |= ORMAK_SOFT_LINK;
    if (external && filter_has(filter, ORMAK_EXTERNAL_LINK)) kind |= ORMAK_EXTERNAL_LINK;
    context->status = (*context->sink)(name, kind);
    return context->status == ORMAK_SUCCESS ? 0 : 1;
}

/* The creation property list of an object that may track creation order, or -1 for none. */
hid_t creation_list(hid_t object, H5O_type_t type) {
    switch (type) {
    case H5O_TYPE_GROUP: return H5Gget_create_plist(object);
    case H5O_TYPE_DATASET: return H5Dget_create_plist(object);
    case H5O_TYPE_NAMED_DATATYPE: return H5Tget_create_plist(object);
    default: return -1;
    }
}

/* An object as HDF5 tells it apart, to find loops of links. */
struct Identity {
    unsigned long file;
    haddr_t address;
    bool operator==(const Identity &other) const { return file == other.file && address == other.address; }
};

/* list_object, and the identity of the object listed when `identity` is not null. */
int list_level(const char *object_name, const char *path, int order_creation, int filter, bool walking,
               const ListingSink &sink, Identity *identity) {
    const hid_t location = current_file->group_id;
    const char *shown = object_name ? object_name : path ? path : current_file->group_name;
    hid_t object = location;
    hid_t list = -1;
    int status = ORMAK_SUCCESS;
    H5O_info_t info;
    LevelContext context = {filter, &sink, ORMAK_SUCCESS};
    if (path) {
        if (strcmp(path, "/") != 0 && H5Lexists(location, path, property_link_access_list) <= 0)
            return fail(ORMAK_ERROR_NOT_FOUND, "Error when opening object \"%s\" as it does not exist", shown);
        object = H5Oopen(location, path, property_link_access_list);
        if (object < 0) {
            H5L_info_t link;
            if (H5Lget_info(location, path, &link, property_link_access_list) >= 0 &&
                (link.type == H5L_TYPE_SOFT || link.type == H5L_TYPE_EXTERNAL)) {
                /* Further down a walk, a dangling link just leads nowhere. */
                if (walking) return ORMAK_SUCCESS;
                return fail(ORMAK_ERROR_DANGLING_LINK, "Error when opening object \"%s\" as it is a dangling link",
                            shown);
            }
            return fail(ORMAK_ERROR_UNKNOWN, "Error when opening object \"%s\"", shown);
        }
    }
    if (H5Oget_info2(object, &info, H5O_INFO_BASIC) < 0) {
        status = fail(ORMAK_ERROR_UNKNOWN, "Error when getting information about object \"%s\"", shown);
        goto finish;
    }
    if (identity) *identity = Identity{info.fileno, info.addr};
    if (filter != -1 && info.type != H5O_TYPE_GROUP && filter != ORMAK_ATTRIBUTE) {
        status = fail(ORMAK_ERROR_UNEXPECTED_TYPE, "Error when showing objects in object \"%s\" as it is not a group",
                      shown);
        goto finish;
    }
    list = creation_list(object, info.type);
    if (filter_has(filter, ORMAK_ATTRIBUTE)) {
        unsigned flags = 0;
        if (order_creation == 0 && list >= 0 && H5Pget_attr_creation_order(list, &flags) < 0) {
            status = fail(ORMAK_ERROR_UNKNOWN, "Error when getting information about object \"%s\"", shown);
            goto finish;
        }
        const H5_index_t index =
            order_creation == 0 && (flags & H5P_CRT_ORDER_TRACKED) ? H5_INDEX_CRT_ORDER : H5_INDEX_NAME;
        if (H5Aiterate2(object, index, H5_ITER_INC, nullptr, attribute_callback, &context) < 0 &&
            context.status == ORMAK_SUCCESS) {
            status = fail(ORMAK_ERROR_UNKNOWN, "Error when showing objects in object \"%s\"", shown);
            goto finish;
        }
        if ((status = context.status) != ORMAK_SUCCESS) goto finish;
    }
    /* Links are looked at unless the filter takes attributes alone. */
    if (info.type == H5O_TYPE_GROUP && filter != ORMAK_ATTRIBUTE) {
        unsigned flags = 0;
        if (order_creation == 0 && H5Pget_link_creation_order(list, &flags) < 0) {
            status = fail(ORMAK_ERROR_UNKNOWN, "Error when getting information about object \"%s\"", shown);
            goto finish;
        }
        const H5_index_t index =
            order_creation == 0 && (flags & H5P_CRT_ORDER_TRACKED) ? H5_INDEX_CRT_ORDER : H5_INDEX_NAME;
        if (H5Literate(object, index, H5_ITER_INC, nullptr, link_callback, &context) < 0 &&
            context.status == ORMAK_SUCCESS) {
            status = fail(ORMAK_ERROR_UNKNOWN, "Error when showing objects in object \"%s\"", shown);
            goto finish;
        }
        status = context.status;
    }
finish:
    if (list >= 0) H5Pclose(list);
    if (object != location) H5Oclose(object);
    return status;
}

/* One piece of a LIKE expression, with the depth of a "**". */
struct Piece {
    std::string text;
    bool any_levels;
    int depth;
};

/* The pieces of an expression, a run of "**" made one, with their depths from the DEEP
   clause: the numbers stand in the order of the "**" pieces, a number with its comma behind
   it, and a comma where a number could stand means no limit. */
std::vector<Piece> cut_pieces(const char *expression, const DeepList *deep_list) {
    std::vector<std::string> raw;
    for (const char *at = expression ? expression : ""; *at;) {
        const char *end = strchr(at, '/');
        size_t length = end ? (size_t)(end - at) : strlen(at);
        if (length > 0) raw.emplace_back(at, length);
        at += length;
        if (*at == '/') at++;
    }
    std::vector<Piece> pieces;
    const size_t n = deep_list ? deep_list->size() : 0;
    size_t p = 0;
    for (size_t i = 0; i < raw.size(); i++) {
        if (raw[i] != "**") {
            pieces.push_back(Piece{raw[i], false, -1});
            continue;
        }
        size_t run_end = i;
        while (run_end < raw.size() && raw[run_end] == "**") run_end++;
        int depth = -1;
        if (deep_list && p < n) {
            bool counting = true;
            for (size_t k = i; k < run_end; k++) {
                if (p < n && (*deep_list)[p].comma) {
                    depth = -1;
                    p += 1;
                    counting = false;
                } else if (p < n) {
                    if (counting) depth = depth == -1 ? (*deep_list)[p].number : depth + (*deep_list)[p].number;
                    p += 2;
                } else if (p == n) {
                    depth = -1;
                }
            }
        }
        pieces.push_back(Piece{"**", true, depth});
        i = run_end - 1;
    }
    return pieces;
}

/* A compiled piece, freed with the level that compiled it. */
class Pattern {
public:
    Pattern() = default;
    Pattern(const Pattern &) = delete;
    Pattern &operator=(const Pattern &) = delete;
    ~Pattern() {
        if (code_) free(code_);
    }
    int compile(const std::string &piece, const LikeRequest &request) {
        const char *error = nullptr;
        int offset = 0;
        code_ = pcre_compile(piece.c_str(), 0, &error, &offset, nullptr);
        if (code_ == nullptr)
            return fail(ORMAK_ERROR_INVALID_REGULAR_EXPRESSION,
                        "Error when %s %s as regular expression \"%s\" is invalid at position %d", request.doing,
                        object_noun(request.object_type, true), piece.c_str(), offset + 1);
        return ORMAK_SUCCESS;
    }
    /* A match with no capture group taking part. */
    bool matches(const std::string &name) const {
        int vector[30];
        return pcre_exec(code_, nullptr, name.c_str(), (int)name.size(), 0, 0, vector, 30) == 1;
    }

private:
    pcre *code_ = nullptr;
};

class Walk {
public:
    Walk(const LikeRequest &request, const ListingSink &sink)
        : request_(request), sink_(sink), pieces_(cut_pieces(request.regular_expression, request.deep_list)) {}

    int run(const std::string &start) {
        if (pieces_.empty()) return ORMAK_SUCCESS;
        return level("", start, 0, pieces_[0].depth, false, false);
    }

private:
    bool passes(int kind) const {
        return request_.object_type == -1 || (kind & request_.object_type) == request_.object_type;
    }

    static std::string joined(const std::string &path, const std::string &name, const char *between) {
        return path.empty() ? name : path + between + name;
    }

    int emit(const std::string &path, int kind) { return sink_(path.c_str(), kind); }

    int keep(std::vector<ListedObject> &entries, const char *name, int kind) {
        try {
            entries.push_back(ListedObject{name, kind});
            return ORMAK_SUCCESS;
        } catch (const std::bad_alloc &) {
            return fail(ORMAK_ERROR_NOT_ENOUGH_MEMORY, "Error when %s %s as there is not enough memory available",
                        request_.doing, object_noun(request_.object_type, true));
        }
    }

    /* One level's entries, unless the object is one of the groups above it (a loop). */
    int list(const std::string &path, const std::string &canonical, bool walking, std::vector<ListedObject> &entries,
             Identity &identity, bool &loop) {
        identity = Identity{0, HADDR_UNDEF};
        int status = list_level(path.empty() ? request_.object_name : path.c_str(), canonical.c_str(),
                                request_.order_creation, -1, walking,
                                [&](const char *name, int kind) { return keep(entries, name, kind); },
                                &identity);
        loop = false;
        for (const Identity &above : above_)
            if (above == identity && identity.address != HADDR_UNDEF) loop = true;
        return status;
    }

    int descend(const std::string &path, const std::string &canonical, const ListedObject &entry, size_t piece,
                int depth, bool under_any) {
        const std::string child_path = joined(path, entry.name, "/");
        const std::string child_canonical = canonical == "/" ? "/" + entry.name : canonical + "/" + entry.name;
        if (child_canonical.size() >= ORMAK_TEXT_SIZE)
            return fail(ORMAK_ERROR_UNKNOWN, "Error when %s %s in \"%s\" as its path is too long", request_.doing,
                        object_noun(request_.object_type, true), child_path.c_str());
        return level(child_path, child_canonical, piece, depth, under_any, true);
    }

    static int less_one(int depth) { return depth == -1 ? -1 : depth - 1; }
    static bool may_descend(int depth) { return depth == -1 || depth > 0; }

    int level(const std::string &path, const std::string &canonical, size_t piece, int depth, bool under_any,
              bool walking) {
        const Piece &here = pieces_[piece];
        const bool last = piece + 1 == pieces_.size();
        if (here.any_levels && !last) return level(path, canonical, piece + 1, here.depth, true, walking);

        Pattern pattern;
        int status = ORMAK_SUCCESS;
        /* Before the last piece the expression is looked at first, at the last one the level. */
        if (!here.any_levels && !last && (status = pattern.compile(here.text, request_)) != ORMAK_SUCCESS)
            return status;
        std::vector<ListedObject> entries;
        Identity identity;
        bool loop = false;
        if ((status = list(path, canonical, walking, entries, identity, loop)) != ORMAK_SUCCESS) return status;
        if (loop) return ORMAK_SUCCESS;
        if (!here.any_levels && last && (status = pattern.compile(here.text, request_)) != ORMAK_SUCCESS)
            return status;

        above_.push_back(identity);
        for (const ListedObject &entry : entries) {
            const bool attribute = entry.kind == ORMAK_ATTRIBUTE;
            if (last) {
                const bool match = here.any_levels || pattern.matches(entry.name);
                if (match && passes(entry.kind) && (status = emit(joined(path, entry.name, "/"), entry.kind)) != 0)
                    break;
                if (attribute || !may_descend(depth)) continue;
                if (here.any_levels) status = descend(path, canonical, entry, piece, less_one(depth), false);
                else if (under_any) status = descend(path, canonical, entry, piece, less_one(depth), true);
            } else {
                if (attribute) continue;
                if (pattern.matches(entry.name))
                    status = descend(path, canonical, entry, piece + 1, pieces_[piece + 1].depth, false);
                else if (under_any && may_descend(depth))
                    status = descend(path, canonical, entry, piece, less_one(depth), true);
            }
            if (status != ORMAK_SUCCESS) break;
        }
        above_.pop_back();
        return status;
    }

    const LikeRequest &request_;
    const ListingSink &sink_;
    std::vector<Piece> pieces_;
    std::vector<Identity> above_;
};

} // namespace

const char *object_noun(int object_type, bool plural) {
    switch (object_type) {
    case ORMAK_GROUP: return plural ? "groups" : "group";
    case ORMAK_DATASET: return plural ? "datasets" : "dataset";
    case ORMAK_ATTRIBUTE: return plural ? "attributes" : "attribute";
    case ORMAK_SOFT_LINK: return plural ? "soft links" : "soft link";
    case ORMAK_EXTERNAL_LINK: return plural ? "external links" : "external link";
    default: return plural ? "objects" : "object";
    }
}

int list_object(const char *object_name, const char *path, int order_creation, int filter, bool walking,
                const ListingSink &sink) {
    return list_level(object_name, path, order_creation, filter, walking, sink, nullptr);
}

DeepList read_deep_list(pANTLR3_BASE_TREE deep_list) {
    DeepList items;
    for (int i = 0; i < tree::count(deep_list); i++) {
        pANTLR3_BASE_TREE child = tree::child(deep_list, i);
        if (tree::type(child) == COMMA_KEYWORD) items.push_back(DeepItem{true, 0});
        else items.push_back(DeepItem{false, atoi(tree::text(child))});
    }
    return items;
}

bool has_negative_depth(const DeepList &deep_list) {
    for (const DeepItem &item : deep_list)
        if (!item.comma && item.number < 0) return true;
    return false;
}

/* A name of contents: it ends with "/", is "." or "..", or ends with "/." or "/..". */
bool refers_to_contents(const char *name) {
    const size_t length = strlen(name);
    if (length == 0) return false;
    if (name[length - 1] == '/' || strcmp(name, ".") == 0 || strcmp(name, "..") == 0) return true;
    return (length >= 2 && strcmp(name + length - 2, "/.") == 0) ||
           (length >= 3 && strcmp(name + length - 3, "/..") == 0);
}

int walk_objects_like(const LikeRequest &request, const ListingSink &sink) {
    try {
        std::string start;
        if (request.object_name) {
            char path[ORMAK_TEXT_SIZE];
            canonical_path(request.object_name, path);
            start = path;
        } else {
            start = current_file->group_name;
        }
        /* A start that must hold what the filter asks for is checked before the walk. */
        if (request.object_name && request.object_type != -1) {
            const hid_t location = current_file->group_id;
            hid_t object = H5Oopen(location, start.c_str(), property_link_access_list);
            if (object < 0) {
                H5L_info_t link;
                if (start != "/" && H5Lexists(location, start.c_str(), property_link_access_list) <= 0)
                    return fail(ORMAK_ERROR_NOT_FOUND, "Error when opening object \"%s\" as it does not exist",
                                request.object_name);
                if (H5Lget_info(location, start.c_str(), &link, property_link_access_list) >= 0 &&
                    (link.type == H5L_TYPE_SOFT || link.type == H5L_TYPE_EXTERNAL))
                    return fail(ORMAK_ERROR_DANGLING_LINK, "Error when opening object \"%s\" as it is a dangling link",
                                request.object_name);
                return fail(ORMAK_ERROR_UNKNOWN, "Error when opening object \"%s\"", request.object_name);
            }
            H5O_info_t info;
            herr_t got = H5Oget_info2(object, &info, H5O_INFO_BASIC);
            H5Oclose(object);
            if (got < 0)
                return fail(ORMAK_ERROR_UNKNOWN, "Error when getting information about object \"%s\"",
                            request.object_name);
            if (info.type != H5O_TYPE_GROUP && request.object_type != ORMAK_ATTRIBUTE)
                return fail(ORMAK_ERROR_UNEXPECTED_TYPE, "Error when opening object \"%s\" as it is not a group",
                            request.object_name);
        }
        Walk walk(request, sink);
        return walk.run(start);
    } catch (const std::bad_alloc &) {
        return fail(ORMAK_ERROR_NOT_ENOUGH_MEMORY, "Error when %s %s as there is not enough memory available",
                    request.doing, object_noun(request.object_type, true));
    }
}

int collect_objects_like(const LikeRequest &request, std::vector<ListedObject> &found) {
    return walk_objects_like(request, [&](const char *name, int kind) {
        try {
            found.push_back(ListedObject{name, kind});
            return ORMAK_SUCCESS;
        } catch (const std::bad_alloc &) {
            return fail(ORMAK_ERROR_NOT_ENOUGH_MEMORY, "Error when %s %s as there is not enough memory available",
                        request.doing, object_noun(request.object_type, true));
        }
    });
}

} // namespace ormak
