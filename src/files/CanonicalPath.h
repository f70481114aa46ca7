/* Object names made canonical: absolute, no "." or "..", no doubled or trailing "/". */
#ifndef ORMAK_CANONICAL_PATH_H
#define ORMAK_CANONICAL_PATH_H

namespace ormak {

/* Resolves `name` against the current group of the file in use into `result` (1024 bytes,
   or null for the components only) and object_name_list. Returns false, with what fits
   written, when the path has more than 32 components or more than 1023 characters. */
bool canonical_path(const char *name, char *result);

} // namespace ormak

#endif
