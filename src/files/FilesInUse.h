/* The stack of files in use, for the statements that open a file for one object. */
#ifndef ORMAK_FILES_IN_USE_H
#define ORMAK_FILES_IN_USE_H

#include "../OrmakPrivateStructures.h"

extern "C" {
/* Opens a file for writing and puts it on top, even if it is in use already. */
int _ormak_use_file(const char *file_name, int file_parallel);
/* Closes the file on top and gives the one below back. */
int _ormak_close_file(void);
/* The current group of the file in use, or null. */
char *_ormak_show_use_group(void);
}

#endif
