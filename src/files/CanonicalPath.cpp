/* The library's one path parser: text only, nothing is looked up in a file. */
#include <string.h>

#include "CanonicalPath.h"
#include "../OrmakPrivateStructures.h"

namespace ormak {

bool canonical_path(const char *name, char *result) {
    bool fits = true;
    const char *at = name ? name : "";
    object_name_list_count = 0;
    if (current_file == nullptr || *at == '/') {
        while (*at == '/') at++;
    } else {
        object_name_list_count = current_file->group_name_list_count;
        for (int i = 0; i < object_name_list_count; i++)
            memcpy(object_name_list[i], current_file->group_name_list[i], ORMAK_TEXT_SIZE);
    }

    while (*at) {
        const char *end = strchr(at, '/');
        size_t length = end ? (size_t)(end - at) : strlen(at);
        if (length == 1 && at[0] == '.') {
            /* stays where it is */
        } else if (length == 2 && at[0] == '.' && at[1] == '.') {
            if (object_name_list_count > 0) object_name_list_count--;
        } else if (length > 0) {
            if (object_name_list_count == ORMAK_MAX_COMPONENTS || length >= ORMAK_TEXT_SIZE) {
                fits = false;
            } else {
                memcpy(object_name_list[object_name_list_count], at, length);
                object_name_list[object_name_list_count][length] = '\0';
                object_name_list_count++;
            }
        }
        at += length;
        while (*at == '/') at++;
    }

    size_t used = 0;
    for (int i = 0; i < object_name_list_count; i++) used += 1 + strlen(object_name_list[i]);
    if (used >= ORMAK_TEXT_SIZE) fits = false;

    if (result) {
        if (object_name_list_count == 0) {
            strcpy(result, "/");
        } else {
            size_t length = 0;
            result[0] = '\0';
            for (int i = 0; i < object_name_list_count && length < ORMAK_TEXT_SIZE - 1; i++) {
                result[length++] = '/';
                size_t component = strlen(object_name_list[i]);
                if (component > ORMAK_TEXT_SIZE - 1 - length) component = ORMAK_TEXT_SIZE - 1 - length;
                memcpy(result + length, object_name_list[i], component);
                length += component;
            }
            result[length] = '\0';
        }
    }
    return fits;
}

} // namespace ormak

extern "C" char *ormak_get_canonical_path(const char *object_name, char *object_name_result) {
    ormak::canonical_path(object_name, object_name_result);
    return object_name_result ? object_name_result : (char *)object_name;
}

/* The bindings' entry; the text stays valid until the next call. */
extern "C" char *_ormak_get_canonical_path_with_size(const char *object_name, int *object_name_size) {
    static char result[ORMAK_TEXT_SIZE];
    ormak::canonical_path(object_name, result);
    if (object_name_size) *object_name_size = (int)strlen(result);
    return result;
}
