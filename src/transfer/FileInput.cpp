/* Values from text and binary files. The readers take the file whole into memory and decode
   it there; until they are written, both sources refuse. */
#include "InputSources.h"
#include "../Ormak.h"
#include "../session/Session.h"

namespace ormak {

namespace {
int not_yet(const char *file_name) {
    return fail(ORMAK_ERROR_NOT_SUPPORTED, "Error when reading file \"%s\" as reading values from files is not supported yet",
                file_name ? file_name : "");
}
} // namespace

int text_file_input(int, int, int, void **, int *, char **, const char *file_name, int, const char *, const char *) {
    return not_yet(file_name);
}

int binary_file_input(int, int, int, void **, int *, char **, const char *file_name) { return not_yet(file_name); }

} // namespace ormak
