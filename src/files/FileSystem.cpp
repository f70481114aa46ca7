/* Statements on the file system: directories and whole files, by POSIX calls on the
   names as written, relative to the working directory. Each takes a list; the first
   failure ends the statement and earlier entries stay done. */
#include <errno.h>
#include <stdio.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "../OrmakExecutors.h"
#include "../language/TreeReader.h"
#include "../session/Handle.h"
#include "../session/Session.h"
#include "FileNames.h"

using ormak::ends_with_slash;
using ormak::fail;
using ormak::is_directory;
using ormak::is_regular_file;
namespace tree = ormak::tree;

namespace {

const size_t name_limit = ORMAK_TEXT_SIZE - 1;

/* The checks every entry passes first: a name that fits the buffers and has no trailing "/". */
int check_entry(const char *name, const char *action) {
    if (strlen(name) > name_limit)
        return fail(ORMAK_ERROR_UNKNOWN, "Error when %s \"%.64s...\" as its name is longer than %zu characters",
                    action, name, name_limit);
    if (ends_with_slash(name))
        return fail(ORMAK_ERROR_UNKNOWN, "Error when %s \"%s\" as it should not end with \"/\"", action, name);
    return ORMAK_SUCCESS;
}

/* The new name of entry `index`: a name ending in "/" is a directory that receives the
   old name's last component. */
int resolve_new_name(pANTLR3_BASE_TREE new_list, int index, const char *old_name, const char *action,
                     std::string &resolved) {
    if (index >= tree::count(new_list))
        return fail(ORMAK_ERROR_UNKNOWN, "Error when %s \"%s\" as new name was not provided", action, old_name);
    resolved = tree::text(tree::child(new_list, index));
    if (ends_with_slash(resolved.c_str())) {
        const char *slash = strrchr(old_name, '/');
        resolved += slash ? slash + 1 : old_name;
    }
    if (resolved.size() > name_limit)
        return fail(ORMAK_ERROR_UNKNOWN, "Error when %s \"%s\" as new name is longer than %zu characters", action,
                    old_name, name_limit);
    return ORMAK_SUCCESS;
}

/* Makes `path` and every directory on the way to it, the leading "/" skipped. For a new
   directory (`whole`) the path itself must not exist yet; for the directory of a new file
   every prefix that exists, whatever it is, is passed over. */
int make_directories(const char *path, bool whole) {
    std::string buffer = path;
    size_t start = buffer.find_first_not_of('/');
    if (start == std::string::npos) return ORMAK_SUCCESS;
    std::vector<size_t> cuts;
    for (size_t i = start; i < buffer.size(); i++)
        if (buffer[i] == '/' && i + 1 < buffer.size()) cuts.push_back(i);
    cuts.push_back(buffer.size());
    for (size_t cut : cuts) {
        std::string prefix = buffer.substr(0, cut);
        struct stat64 info;
        if (!whole && stat64(prefix.c_str(), &info) == 0) continue;
        if (mkdir(prefix.c_str(), 0777) == 0) continue;
        int error = errno;
        if (error == EEXIST) {
            if (whole && cut == buffer.size())
                return fail(ORMAK_ERROR_ALREADY_EXISTS, "Error when creating directory \"%s\" as it already exists",
                            path);
            continue;
        }
        return ormak::fail_errno(error, "Error when creating directory \"%s\"", prefix.c_str());
    }
    return ORMAK_SUCCESS;
}

/* Closes a stream at scope end. */
struct Stream {
    FILE *file = nullptr;
    ~Stream() {
        if (file) fclose(file);
    }
};

} // namespace

extern "C" {

int ormak_create_directory(pANTLR3_BASE_TREE directory_list) {
    int status = ORMAK_SUCCESS;
    for (int i = 0; i < tree::count(directory_list) && status == ORMAK_SUCCESS; i++) {
        const char *name = tree::text(tree::child(directory_list, i));
        status = check_entry(name, "creating directory");
        if (status == ORMAK_SUCCESS) status = make_directories(name, true);
    }
    return ormak::trace("ormak_create_directory", status, {{"directory_list", (const void *)directory_list}});
}

int ormak_create_file(pANTLR3_BASE_TREE file_list, int file_truncate, int file_parallel, int library_bounds,
                      int library_bound_low_value, int library_bound_high_value) {
    int status = ORMAK_SUCCESS;
    ormak::Handle list(H5Pclose, H5Pcopy(property_file_access_list));

    if (library_bounds == 0 && library_bound_low_value == -1 && library_bound_high_value == -1) {
        status = fail(ORMAK_ERROR_UNKNOWN, "Error when setting library bounds since no parameters were provided");
        goto finish;
    }
    if (file_parallel == 0 && H5Pset_fapl_mpio(list, MPI_COMM_WORLD, MPI_INFO_NULL) < 0) {
        status = fail(ORMAK_ERROR_UNKNOWN, "Error when setting file property for MPI-IO access");
        goto finish;
    }
    if (library_bounds == 0 && library_bound_low_value != -1) {
        H5F_libver_t low = library_bound_low_value == ORMAK_EARLIEST ? H5F_LIBVER_EARLIEST : H5F_LIBVER_LATEST;
        if (H5Pset_libver_bounds(list, low, H5F_LIBVER_LATEST) < 0) {
            status = fail(ORMAK_ERROR_UNKNOWN, "Error when setting library bounds");
            goto finish;
        }
    }

    for (int i = 0; i < tree::count(file_list); i++) {
        const char *name = tree::text(tree::child(file_list, i));
        if ((status = check_entry(name, "creating file")) != ORMAK_SUCCESS) break;

        const char *slash = strrchr(name, '/');
        if (slash) {
            std::string directory(name, slash - name);
            if ((status = make_directories(directory.c_str(), false)) != ORMAK_SUCCESS) break;
        }

        if (file_truncate != 0 && is_regular_file(name)) {
            status = fail(ORMAK_ERROR_ALREADY_EXISTS, "Error when creating file \"%s\" as it already exists", name);
            break;
        }
        errno = 0;
        hid_t file = H5Fcreate(name, file_truncate == 0 ? H5F_ACC_TRUNC : H5F_ACC_EXCL, H5P_DEFAULT, list);
        if (file < 0) {
            status = ormak::fail_errno(errno, "Error when creating file \"%s\"", name);
            break;
        }
        if (H5Fclose(file) < 0) {
            status = ormak::fail_errno(errno, "Error when creating file \"%s\"", name);
            break;
        }
    }

finish:
    list.reset();
    return ormak::trace("ormak_create_file", status,
                        {{"file_list", (const void *)file_list},
                         {"file_truncate", file_truncate},
                         {"file_parallel", file_parallel},
                         {"library_bounds", library_bounds},
                         {"library_bound_low_value", library_bound_low_value},
                         {"library_bound_high_value", library_bound_high_value}});
}

int ormak_rename_directory(pANTLR3_BASE_TREE directory_list, pANTLR3_BASE_TREE directory_new_list) {
    int status = ORMAK_SUCCESS;
    for (int i = 0; i < tree::count(directory_list); i++) {
        const char *name = tree::text(tree::child(directory_list, i));
        std::string new_name;
        if ((status = check_entry(name, "renaming directory")) != ORMAK_SUCCESS) break;
        if ((status = resolve_new_name(directory_new_list, i, name, "renaming directory", new_name)) != 0) break;
        if (!is_directory(name)) {
            status = fail(ORMAK_ERROR_NOT_FOUND, "Error when renaming directory \"%s\" as it does not exist", name);
            break;
        }
        if (rename(name, new_name.c_str()) == 0) continue;
        int error = errno;
        if (error == ENOENT)
            status = fail(ORMAK_ERROR_NOT_FOUND, "Error when renaming directory \"%s\" as new directory \"%s\" does not exist",
                          name, tree::text(tree::child(directory_new_list, i)));
        else if (error == EEXIST || error == ENOTEMPTY)
            status = fail(ORMAK_ERROR_ALREADY_EXISTS,
                          "Error when renaming directory \"%s\" as new directory \"%s\" already exists", name,
                          new_name.c_str());
        else if (error == EACCES)
            status = fail(ORMAK_ERROR_NO_ACCESS,
                          "Error when renaming since either directory \"%s\" or directory \"%s\" is not accessible", name,
                          new_name.c_str());
        else
            status = ormak::fail_errno(error, "Error when renaming directory \"%s\"", name);
        break;
    }
    return ormak::trace("ormak_rename_directory", status,
                        {{"directory_list", (const void *)directory_list},
                         {"directory_new_list", (const void *)directory_new_list}});
}

int ormak_rename_file(pANTLR3_BASE_TREE file_list, pANTLR3_BASE_TREE file_new_list, int file_truncate) {
    int status = ORMAK_SUCCESS;
    for (int i = 0; i < tree::count(file_list); i++) {
        const char *name = tree::text(tree::child(file_list, i));
        std::string new_name;
        if ((status = check_entry(name, "renaming file")) != ORMAK_SUCCESS) break;
        if ((status = resolve_new_name(file_new_list, i, name, "renaming file", new_name)) != ORMAK_SUCCESS) break;
        if (!is_regular_file(name)) {
            status = fail(ORMAK_ERROR_NOT_FOUND, "Error when renaming file \"%s\" as it does not exist", name);
            break;
        }
        if (file_truncate == 0) remove(new_name.c_str());
        if (rename(name, new_name.c_str()) == 0) continue;
        int error = errno;
        if (error == ENOENT)
            status = fail(ORMAK_ERROR_NOT_FOUND, "Error when renaming file \"%s\" as it does not exist", name);
        else if (error == EEXIST || error == ENOTEMPTY)
            status = fail(ORMAK_ERROR_ALREADY_EXISTS, "Error when renaming file \"%s\" as new file \"%s\" already exists",
                          name, new_name.c_str());
        else if (error == EACCES)
            status = fail(ORMAK_ERROR_NO_ACCESS, "Error when renaming since either file \"%s\" or file \"%s\" is not accessible",
                          name, new_name.c_str());
        else
            status = ormak::fail_errno(error, "Error when renaming file \"%s\"", name);
        break;
    }
    return ormak::trace("ormak_rename_file", status,
                        {{"file_list", (const void *)file_list},
                         {"file_new_list", (const void *)file_new_list},
                         {"file_truncate", file_truncate}});
}

/* Copies the bytes of one file to another; the partial target stays on a failure. */
static int copy_one_file(const char *name, const std::string &new_name, int file_truncate) {
    if (!is_regular_file(name))
        return fail(ORMAK_ERROR_NOT_FOUND, "Error when copying file \"%s\" as it does not exist", name);
    Stream source, target;
    source.file = fopen(name, "rb");
    if (source.file == nullptr) {
        int error = errno;
        if (error == ENOENT)
            return fail(ORMAK_ERROR_NOT_FOUND, "Error when copying file \"%s\" as it does not exist", name);
        if (error == EACCES)
            return fail(ORMAK_ERROR_NO_ACCESS, "Error when copying file \"%s\" as it is not accessible", name);
        return fail(ORMAK_ERROR_UNKNOWN, "Error when copying file \"%s\"", name);
    }
    if (file_truncate != 0 && is_regular_file(new_name.c_str()))
        return fail(ORMAK_ERROR_ALREADY_EXISTS, "Error when copying file \"%s\" to file \"%s\" since it already exists",
                    name, new_name.c_str());
    /* Opening the source itself for writing would empty it before a byte is read. */
    struct stat64 source_info, target_info;
    if (stat64(name, &source_info) == 0 && stat64(new_name.c_str(), &target_info) == 0 &&
        source_info.st_dev == target_info.st_dev && source_info.st_ino == target_info.st_ino)
        return fail(ORMAK_ERROR_UNKNOWN, "Error when copying file \"%s\" to file \"%s\" since they are the same file",
                    name, new_name.c_str());
    target.file = fopen(new_name.c_str(), "wb");
    if (target.file == nullptr) {
        int error = errno;
        if (error == ENOENT)
            return fail(ORMAK_ERROR_NOT_FOUND, "Error when opening file \"%s\" as it does not exist", new_name.c_str());
        return ormak::fail_errno(error, "Error when opening file \"%s\"", new_name.c_str());
    }
    std::vector<char> buffer(65536);
    size_t count;
    while ((count = fread(buffer.data(), 1, buffer.size(), source.file)) > 0) {
        if (fwrite(buffer.data(), 1, count, target.file) == count) continue;
        int error = errno;
        if (error == EACCES)
            return fail(ORMAK_ERROR_NO_ACCESS, "Error when copying since either file \"%s\" or file \"%s\" is not accessible",
                        name, new_name.c_str());
        if (error == ENOSPC)
            return fail(ORMAK_ERROR_NOT_ENOUGH_SPACE,
                        "Error when copying file \"%s\" to file \"%s\" since there is not enough space available", name,
                        new_name.c_str());
        return fail(ORMAK_ERROR_UNKNOWN, "Error when copying file \"%s\" to file \"%s\"", name, new_name.c_str());
    }
    /* A full device may only show when the buffered tail is written. */
    FILE *written = target.file;
    target.file = nullptr;
    if (fclose(written) != 0) {
        if (errno == ENOSPC)
            return fail(ORMAK_ERROR_NOT_ENOUGH_SPACE,
                        "Error when copying file \"%s\" to file \"%s\" since there is not enough space available", name,
                        new_name.c_str());
        return fail(ORMAK_ERROR_UNKNOWN, "Error when copying file \"%s\" to file \"%s\"", name, new_name.c_str());
    }
    return ORMAK_SUCCESS;
}

int ormak_copy_file(pANTLR3_BASE_TREE file_list, pANTLR3_BASE_TREE file_new_list, int file_truncate) {
    int status = ORMAK_SUCCESS;
    for (int i = 0; i < tree::count(file_list) && status == ORMAK_SUCCESS; i++) {
        const char *name = tree::text(tree::child(file_list, i));
        std::string new_name;
        if ((status = check_entry(name, "copying file")) != ORMAK_SUCCESS) break;
        if ((status = resolve_new_name(file_new_list, i, name, "copying file", new_name)) != ORMAK_SUCCESS) break;
        status = copy_one_file(name, new_name, file_truncate);
    }
    return ormak::trace("ormak_copy_file", status,
                        {{"file_list", (const void *)file_list},
                         {"file_new_list", (const void *)file_new_list},
                         {"file_truncate", file_truncate}});
}

int ormak_drop_directory(pANTLR3_BASE_TREE directory_list) {
    int status = ORMAK_SUCCESS;
    for (int i = 0; i < tree::count(directory_list); i++) {
        const char *name = tree::text(tree::child(directory_list, i));
        if ((status = check_entry(name, "dropping directory")) != ORMAK_SUCCESS) break;
        if (!is_directory(name)) {
            status = fail(ORMAK_ERROR_NOT_FOUND, "Error when dropping directory \"%s\" as it does not exist", name);
            break;
        }
        if (rmdir(name) == 0) continue;
        int error = errno;
        if (error == ENOENT)
            status = fail(ORMAK_ERROR_NOT_FOUND, "Error when dropping directory \"%s\" as it does not exist", name);
        else
            status = ormak::fail_errno(error, "Error when dropping directory \"%s\"", name);
        break;
    }
    return ormak::trace("ormak_drop_directory", status, {{"directory_list", (const void *)directory_list}});
}

int ormak_drop_file(pANTLR3_BASE_TREE file_list) {
    int status = ORMAK_SUCCESS;
    for (int i = 0; i < tree::count(file_list); i++) {
        const char *name = tree::text(tree::child(file_list, i));
        if ((status = check_entry(name, "dropping file")) != ORMAK_SUCCESS) break;
        if (!is_regular_file(name)) {
            status = fail(ORMAK_ERROR_NOT_FOUND, "Error when dropping file \"%s\" as it does not exist", name);
            break;
        }
        if (remove(name) == 0) continue;
        int error = errno;
        if (error == ENOENT)
            status = fail(ORMAK_ERROR_NOT_FOUND, "Error when dropping file \"%s\" as it does not exist", name);
        else
            status = ormak::fail_errno(error, "Error when dropping file \"%s\"", name);
        break;
    }
    return ormak::trace("ormak_drop_file", status, {{"file_list", (const void *)file_list}});
}

int ormak_use_directory(const char *directory_name) {
    int status = ORMAK_SUCCESS;
    if (!is_directory(directory_name)) {
        status = fail(ORMAK_ERROR_NOT_FOUND, "Error when opening directory \"%s\" as it does not exist", directory_name);
    } else if (chdir(directory_name) != 0) {
        int error = errno;
        if (error == ENOENT)
            status = fail(ORMAK_ERROR_NOT_FOUND, "Error when opening directory \"%s\" as it does not exist",
                          directory_name);
        else
            status = ormak::fail_errno(error, "Error when opening directory \"%s\"", directory_name);
    }
    return ormak::trace("ormak_use_directory", status, {{"directory_name", directory_name}}, true);
}

} // extern "C"
