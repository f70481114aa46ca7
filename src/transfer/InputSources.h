/* The sources behind input redirecting, one file each; each allocates the buffer it fills
   and reports a failure through the session's message. */
#ifndef ORMAK_INPUT_SOURCES_H
#define ORMAK_INPUT_SOURCES_H

namespace ormak {

/* The elements of the cursor in use, from its head, converted to the target's type. */
int cursor_input(int data_type, int data_count, int data_size, void **data, int *data_allocated,
                 char **data_auxiliary);

/* The block of a registered memory variable, used in place where the layout allows. */
int memory_input(int data_type, int data_count, int data_size, int selection, void **data, int *data_allocated,
                 int variable_number, int variable_size, int programming_language);

/* A text file of values divided by separators and line ends. */
int text_file_input(int data_type, int data_count, int data_size, void **data, int *data_allocated,
                    char **data_auxiliary, const char *file_name, int file_eof, const char *file_separator,
                    const char *file_subseparator);

/* A binary file in the native layout of the elements. */
int binary_file_input(int data_type, int data_count, int data_size, void **data, int *data_allocated,
                      char **data_auxiliary, const char *file_name);

} // namespace ormak

#endif
