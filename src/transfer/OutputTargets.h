/* The file writers behind output redirecting; each opens, writes and closes its file and
   reports a failure through the session's message. */
#ifndef ORMAK_OUTPUT_TARGETS_H
#define ORMAK_OUTPUT_TARGETS_H

namespace ormak {

/* Elements divided by the separator, a line end behind the last one and behind every
   `file_split` elements, the members or bytes of one element by the subseparator. */
int text_file_output(const void *data, int data_type, int data_count, int data_size, int file_truncate,
                     const char *file_name, int file_eof, const char *file_separator, const char *file_subseparator,
                     int file_split);

/* Elements in native order: fixed-length ones back to back, a variable-length one as a
   4-byte count and its members, a string with its terminating zero. */
int binary_file_output(const void *data, int data_type, int data_count, int data_size, int file_truncate,
                       const char *file_name);

} // namespace ormak

#endif
