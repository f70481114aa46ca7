/* Checks of file and directory names shared by the statements that take them. */
#ifndef ORMAK_FILE_NAMES_H
#define ORMAK_FILE_NAMES_H

#include <string.h>
#include <sys/stat.h>

namespace ormak {

inline bool ends_with_slash(const char *name) {
    size_t length = strlen(name);
    return length > 0 && name[length - 1] == '/';
}

inline bool is_directory(const char *name) {
    struct stat64 info;
    return stat64(name, &info) == 0 && S_ISDIR(info.st_mode);
}

inline bool is_regular_file(const char *name) {
    struct stat64 info;
    return stat64(name, &info) == 0 && S_ISREG(info.st_mode);
}

/* Names live in buffers of 1024 bytes. */
inline bool name_fits(const char *name) { return strlen(name) < 1024; }

} // namespace ormak

#endif
