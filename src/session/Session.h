/* Helpers shared by every executor: failure reporting and the trace. */
#ifndef ORMAK_SESSION_H
#define ORMAK_SESSION_H

#include <stddef.h>
#include <initializer_list>
#include "../OrmakPrivateStructures.h"

namespace ormak {

/* Writes error_message (cut to fit its buffer) and returns status, so a failure reads
   `status = fail(ORMAK_ERROR_NOT_FOUND, "...", name); goto finish;`. */
int fail(int status, const char *format, ...) __attribute__((format(printf, 2, 3)));

/* The status of a failed system or HDF5 call, by errno: full device, refused access, or other. */
int errno_status(int error_number);

/* The same as fail, with the message chosen by errno: the space and access forms
   are the plain form followed by the usual cause. */
int fail_errno(int error_number, const char *plain_format, const char *name);

/* Frees the recognizers and the recognised scripts kept for running again (Execute.cpp). */
void release_scripts();

/* One parameter of a traced executor, printed by its type. */
struct TraceArg {
    enum Kind { Int, Text, Real, Pointer } kind;
    const char *name;
    int i = 0;
    const char *s = nullptr;
    double d = 0.0;
    const void *p = nullptr;
    TraceArg(const char *n, int v) : kind(Int), name(n), i(v) {}
    TraceArg(const char *n, const char *v) : kind(Text), name(n), s(v) {}
    TraceArg(const char *n, double v) : kind(Real), name(n), d(v) {}
    TraceArg(const char *n, const void *v) : kind(Pointer), name(n), p(v) {}
};

/* The last act of every executor: while debug is on, prints its call and its return
   status (and the cursor for show statements). Returns status unchanged. */
int trace(const char *function, int status, std::initializer_list<TraceArg> args,
          bool dump_cursor = false);
/* The same for arguments gathered at run time: `count` of them at `args`. */
int trace(const char *function, int status, const TraceArg *args, size_t count, bool dump_cursor);

} // namespace ormak

#endif
