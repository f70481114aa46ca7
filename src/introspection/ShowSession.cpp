/* SHOW statements about the session and the libraries: the directory, files and group in
   use, the versions, the status of the last statement, and the flush, debug and external
   link prefix settings. */
#include <mpi.h>
#include <pcre.h>
#include <string.h>
#include <unistd.h>
#include <zlib.h>

#include "ShowFrame.h"
#include "../OrmakExecutors.h"
#include "../files/FilesInUse.h"

namespace {

const char *const kOrmakVersion = "2.1.0";

/* The frame around an answer: its clauses decoded, `answer` run on it, the trace written. */
template <typename Answer>
int show(const char *function, pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting,
         int programming_language, Answer answer) {
    ormak::ShowFrame frame(post_processing_list, output_redirecting, programming_language);
    int status = frame.decode();
    if (status == ORMAK_SUCCESS) status = answer(frame);
    return frame.finish(function, status);
}

/* One string known before the result starts, or none when `text` is null. */
int show_text(ormak::ShowFrame &frame, const char *text, const char *memory_message, size_t block, int size = -1) {
    int status = frame.begin(ORMAK_VARCHAR, text ? 1 : 0, memory_message);
    if (status == ORMAK_SUCCESS && text) status = frame.add_text(text, size, block);
    if (status == ORMAK_SUCCESS) status = frame.deliver();
    return status;
}

int show_int(ormak::ShowFrame &frame, int value, const char *memory_message) {
    int status = frame.begin(ORMAK_INT, 1, memory_message);
    if (status == ORMAK_SUCCESS) status = frame.add_int(value);
    if (status == ORMAK_SUCCESS) status = frame.deliver();
    return status;
}

} // namespace

extern "C" {

int ormak_show_use_directory(pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting,
                             int programming_language) {
    return show("ormak_show_use_directory", post_processing_list, output_redirecting, programming_language,
                [](ormak::ShowFrame &frame) {
        char directory[4096];
        if (getcwd(directory, sizeof directory) == nullptr)
            return ormak::fail(ORMAK_ERROR_UNKNOWN, "Error when showing directory in use");
        return show_text(frame, directory,
                         "Error when showing directory in use as there is not enough memory available",
                         sizeof directory);
    });
}

int ormak_show_use_file(pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting,
                        int programming_language) {
    return show("ormak_show_use_file", post_processing_list, output_redirecting, programming_language,
                [](ormak::ShowFrame &frame) {
        return show_text(frame, current_file ? current_file->file_name : nullptr,
                         "Error when showing file in use as there is not enough memory available", ORMAK_TEXT_SIZE);
    });
}

int ormak_show_all_use_file(pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting,
                            int programming_language) {
    return show("ormak_show_all_use_file", post_processing_list, output_redirecting, programming_language,
                [](ormak::ShowFrame &frame) {
        int status = frame.begin(ORMAK_VARCHAR, file_use_count,
                                 "Error when showing all files in use as there is not enough memory available");
        /* The file used last comes first. */
        const _ormak_file *file = current_file;
        for (int i = 0; status == ORMAK_SUCCESS && file && i < file_use_count; i++, file = file->previous)
            status = frame.add_text(file->file_name);
        if (status == ORMAK_SUCCESS) status = frame.deliver();
        return status;
    });
}

int ormak_show_use_group(pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting,
                         int programming_language) {
    return show("ormak_show_use_group", post_processing_list, output_redirecting, programming_language,
                [](ormak::ShowFrame &frame) {
        return show_text(frame, _ormak_show_use_group(),
                         "Error when showing group in use as there is not enough memory available", ORMAK_TEXT_SIZE);
    });
}

int ormak_show_ormak_version(pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting,
                             int programming_language) {
    return show("ormak_show_ormak_version", post_processing_list, output_redirecting, programming_language,
                [](ormak::ShowFrame &frame) {
        return show_text(frame, kOrmakVersion,
                         "Error when showing version of Ormak library as there is not enough memory available",
                         ORMAK_TEXT_SIZE);
    });
}

int ormak_show_hdf5_version(pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting,
                            int programming_language) {
    return show("ormak_show_hdf5_version", post_processing_list, output_redirecting, programming_language,
                [](ormak::ShowFrame &frame) {
        unsigned major, minor, release;
        if (H5get_libversion(&major, &minor, &release) < 0)
            return ormak::fail(ORMAK_ERROR_UNKNOWN, "Error when showing version of HDF5 library in use");
        char version[ORMAK_TEXT_SIZE];
        snprintf(version, sizeof version, "%u.%u.%u", major, minor, release);
        return show_text(frame, version,
                         "Error when showing version of HDF5 library in use as there is not enough memory available",
                         ORMAK_TEXT_SIZE);
    });
}

int ormak_show_pcre_version(pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting,
                            int programming_language) {
    return show("ormak_show_pcre_version", post_processing_list, output_redirecting, programming_language,
                [](ormak::ShowFrame &frame) {
        /* The number only: the date behind the first blank is left out. */
        const char *version = pcre_version();
        return show_text(frame, version,
                         "Error when showing version of PCRE library in use as there is not enough memory available",
                         ORMAK_TEXT_SIZE, (int)strcspn(version, " "));
    });
}

int ormak_show_zlib_version(pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting,
                            int programming_language) {
    return show("ormak_show_zlib_version", post_processing_list, output_redirecting, programming_language,
                [](ormak::ShowFrame &frame) {
        return show_text(frame, zlibVersion(),
                         "Error when showing version of ZLIB library in use as there is not enough memory available",
                         ORMAK_TEXT_SIZE);
    });
}

int ormak_show_mpi_version(pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting,
                           int programming_language) {
    return show("ormak_show_mpi_version", post_processing_list, output_redirecting, programming_language,
                [](ormak::ShowFrame &frame) {
        char version[MPI_MAX_LIBRARY_VERSION_STRING] = "";
        int length = 0;
        MPI_Get_library_version(version, &length);
        length = length < 0 ? 0 : length >= (int)sizeof version ? (int)sizeof version - 1 : length;
        version[length] = '\0';
        return show_text(frame, version,
                         "Error when showing version of MPI library in use as there is not enough memory available",
                         256, length);
    });
}

int ormak_show_execute_status(pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting,
                              int programming_language) {
    /* The status of the statement before this one: this one's is stored when it returns. */
    const int value = execute_status;
    return show("ormak_show_execute_status", post_processing_list, output_redirecting, programming_language,
                [value](ormak::ShowFrame &frame) {
        return show_int(frame, value, "Error when showing execute status as there is not enough memory available");
    });
}

int ormak_show_flush(pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting,
                     int programming_language) {
    return show("ormak_show_flush", post_processing_list, output_redirecting, programming_language,
                [](ormak::ShowFrame &frame) {
        return show_int(frame, flush_status, "Error when showing flush as there is not enough memory available");
    });
}

int ormak_show_debug(pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting,
                     int programming_language) {
    return show("ormak_show_debug", post_processing_list, output_redirecting, programming_language,
                [](ormak::ShowFrame &frame) {
        return show_int(frame, debug_status, "Error when showing debug as there is not enough memory available");
    });
}

int ormak_show_external_link_prefix(pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting,
                                    int programming_language) {
    return show("ormak_show_external_link_prefix", post_processing_list, output_redirecting, programming_language,
                [](ormak::ShowFrame &frame) {
        return show_text(frame, prefix_status == 0 ? external_link_prefix : nullptr,
                         "Error when showing external link prefix as there is not enough memory available",
                         ORMAK_TEXT_SIZE);
    });
}

} // extern "C"
