/* The debug trace that every executor prints as its last act while debug is on. */
#include <stdio.h>
#include <string>

#include "Session.h"

extern "C" void _ormak_show_debug_information(void);

namespace ormak {

int trace(const char *function, int status, std::initializer_list<TraceArg> args, bool dump_cursor) {
    return trace(function, status, args.begin(), args.size(), dump_cursor);
}

int trace(const char *function, int status, const TraceArg *args, size_t count, bool dump_cursor) {
    if (debug_status != 0) return status;
    /* One text for the call, so that the lines of a call are never split by other output. */
    std::string text = std::string("FUNCTION CALL <") + function + ">\n";
    char value[64];
    for (const TraceArg *arg_end = args + count; args != arg_end; args++) {
        const TraceArg &arg = *args;
        text += "   ";
        text += arg.name;
        text += " <";
        switch (arg.kind) {
        case TraceArg::Int: snprintf(value, sizeof value, "%d", arg.i); text += value; break;
        case TraceArg::Real: snprintf(value, sizeof value, "%f", arg.d); text += value; break;
        case TraceArg::Pointer: snprintf(value, sizeof value, "%p", arg.p); text += value; break;
        case TraceArg::Text: text += arg.s ? arg.s : "(null)"; break;
        }
        text += ">\n";
    }
    fputs(text.c_str(), stdout);
    printf("FUNCTION RETURN <%d>\n\n", status);
    if (dump_cursor) _ormak_show_debug_information();
    return status;
}

} // namespace ormak
