/* SHOW DIRECTORY and SHOW FILE: the directories or the files of one directory of the file
   system, in the order the system reads them, or one path confirmed. No file is needed. */
#include <dirent.h>
#include <errno.h>
#include <stdio.h>
#include <string.h>
#include <sys/stat.h>

#include <functional>
#include <new>
#include <string>
#include <vector>

#include "ShowFrame.h"
#include "../OrmakExecutors.h"

namespace {

const int DIRECTORIES = 1;

bool ends_with(const std::string &text, const char *tail) {
    const size_t length = strlen(tail);
    return text.size() >= length && text.compare(text.size() - length, length, tail) == 0;
}

/* A path of contents: it ends with "/" or "\", is "." or "..", or ends with "/.", "\.",
   "/.." or "\..". */
bool refers_to_contents(const std::string &path) {
    return ends_with(path, "/") || ends_with(path, "\\") || path == "." || path == ".." || ends_with(path, "/.") ||
           ends_with(path, "\\.") || ends_with(path, "/..") || ends_with(path, "\\..");
}

/* The directory to read for a path of contents: a "\" before its end reads as "/". */
std::string directory_to_read(std::string path) {
    for (const char *tail : {"\\", "\\.", "\\.."})
        if (ends_with(path, tail)) path[path.size() - strlen(tail)] = '/';
    return path;
}

/* Hands the entries of `entry_type` (1 directories, 2 files: all that is not a directory)
   to `sink`, or the path itself when it names one such entry. */
int file_system_entries(const char *path_name, int entry_type, const std::function<int(const char *)> &sink) {
    const char *one = entry_type == DIRECTORIES ? "directory" : "file";
    const char *many = entry_type == DIRECTORIES ? "directories" : "files";
    if (path_name && !refers_to_contents(path_name)) {
        struct stat64 info;
        if (stat64(path_name, &info) != 0) {
            const int error = errno;
            if (error == ENOENT)
                return ormak::fail(ORMAK_ERROR_NOT_FOUND, "Error when showing %s \"%s\" as it does not exist", one,
                                   path_name);
            if (error == EACCES)
                return ormak::fail(ORMAK_ERROR_NO_ACCESS, "Error when showing %s \"%s\" as it is not accessible", one,
                                   path_name);
            return ormak::fail(ORMAK_ERROR_UNKNOWN, "Error when showing %s \"%s\"", one, path_name);
        }
        const bool right_kind = entry_type == DIRECTORIES ? S_ISDIR(info.st_mode) : S_ISREG(info.st_mode);
        if (!right_kind)
            return ormak::fail(ORMAK_ERROR_NOT_FOUND, "Error when showing %s \"%s\" as it does not exist", one,
                               path_name);
        return sink(path_name);
    }

    std::string where = "directory in use";
    if (path_name) where = std::string("directory \"") + path_name + "\"";
    DIR *directory = opendir(path_name ? directory_to_read(path_name).c_str() : ".");
    if (directory == nullptr) {
        const int error = errno;
        if (error == ENOENT || error == ENOTDIR)
            return ormak::fail(ORMAK_ERROR_NOT_FOUND, "Error when showing %s in %s as it does not exist", many,
                               where.c_str());
        if (error == EACCES)
            return ormak::fail(ORMAK_ERROR_NO_ACCESS, "Error when showing %s in %s as it is not accessible", many,
                               where.c_str());
        return ormak::fail(ORMAK_ERROR_UNKNOWN, "Error when showing %s in %s", many, where.c_str());
    }
    int status = ORMAK_SUCCESS;
    for (struct dirent *entry = readdir(directory); entry != nullptr; entry = readdir(directory)) {
        if (strcmp(entry->d_name, ".") == 0 || strcmp(entry->d_name, "..") == 0) continue;
        /* Links, devices, sockets and entries of unknown type count as files. */
        const bool is_directory = entry->d_type == DT_DIR;
        if (is_directory != (entry_type == DIRECTORIES)) continue;
        if ((status = sink(entry->d_name)) != ORMAK_SUCCESS) break;
    }
    closedir(directory);
    return status;
}

int show_entries(const char *function, int entry_type, const char *path_name, const char *regular_expression,
                 pANTLR3_BASE_TREE deep_list, pANTLR3_BASE_TREE post_processing_list,
                 pANTLR3_BASE_TREE output_redirecting, int programming_language) {
    ormak::ShowFrame frame(post_processing_list, output_redirecting, programming_language);
    const char *one = entry_type == DIRECTORIES ? "directory" : "file";
    const char *many = entry_type == DIRECTORIES ? "directories" : "files";
    char memory_message[ORMAK_TEXT_SIZE * 2];
    if (path_name && !refers_to_contents(path_name))
        snprintf(memory_message, sizeof memory_message,
                 "Error when showing %s \"%s\" as there is not enough memory available", one, path_name);
    else if (path_name)
        snprintf(memory_message, sizeof memory_message,
                 "Error when showing %s in directory \"%s\" as there is not enough memory available", many, path_name);
    else
        snprintf(memory_message, sizeof memory_message,
                 "Error when showing %s in directory in use as there is not enough memory available", many);

    int status = frame.decode();
    if (status == ORMAK_SUCCESS) {
        if (frame.direct()) {
            status = frame.begin(ORMAK_VARCHAR, 0, memory_message);
            if (status == ORMAK_SUCCESS)
                status = file_system_entries(path_name, entry_type, [&](const char *name) { return frame.add_text(name); });
        } else {
            std::vector<std::string> names;
            status = file_system_entries(path_name, entry_type, [&](const char *name) {
                try {
                    names.emplace_back(name);
                    return ORMAK_SUCCESS;
                } catch (const std::bad_alloc &) {
                    return ormak::fail(ORMAK_ERROR_NOT_ENOUGH_MEMORY, "%s", memory_message);
                }
            });
            if (status == ORMAK_SUCCESS) status = frame.begin(ORMAK_VARCHAR, (int)names.size(), memory_message);
            for (size_t i = 0; status == ORMAK_SUCCESS && i < names.size(); i++)
                status = frame.add_text(names[i].c_str());
        }
    }
    if (status == ORMAK_SUCCESS) status = frame.deliver();
    return frame.finish(function, status,
                        {{"path_name", path_name},
                         {"regular_expression", regular_expression},
                         {"deep_list", (const void *)deep_list}});
}

} // namespace

extern "C" {

int ormak_show_directory(const char *path_name, const char *regular_expression, pANTLR3_BASE_TREE deep_list,
                         pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting,
                         int programming_language) {
    return show_entries("ormak_show_directory", DIRECTORIES, path_name, regular_expression, deep_list,
                        post_processing_list, output_redirecting, programming_language);
}

int ormak_show_file(const char *path_name, const char *regular_expression, pANTLR3_BASE_TREE deep_list,
                    pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting,
                    int programming_language) {
    return show_entries("ormak_show_file", 2, path_name, regular_expression, deep_list, post_processing_list,
                        output_redirecting, programming_language);
}

} // extern "C"
