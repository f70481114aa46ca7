"""python3 -m ormak: the ormak tool's forms, with the same output.

    python3 -m ormak -e "SCRIPT"   run a script given as text
    python3 -m ormak FILE          run the script in FILE
    python3 -m ormak               read statements at a prompt, or a script from a pipe

After each script the values it left in the cursor are printed, one a line, and the cursor
is emptied; a failure is reported on standard error. The exit status is 0 on success, 1
when the script failed and 2 for a wrong command line.
"""

import decimal
import math
import os
import struct
import sys

from . import _constants as c
from ._cursor import _MEMBERS, cursor
from ._library import lib, lock
from ._session import encode, error_message, run

_USAGE = ("usage: ormak -e \"SCRIPT\"   run a script given as text\n"
          "       ormak FILE          run the script in FILE\n"
          "       ormak               read statements at a prompt, or a script from a pipe\n")


def _rounds_to(text, value, width):
    if width == 64:
        return float(text) == value
    return struct.unpack("f", struct.pack("f", float(text)))[0] == value


def shortest(value, width=64):
    """The shortest text that reads back as the same float of `width` bits, in fixed or
    exponent notation, whichever is shorter, fixed on a tie."""
    if math.isnan(value):
        return "-nan" if math.copysign(1.0, value) < 0 else "nan"
    if math.isinf(value):
        return "inf" if value > 0 else "-inf"
    if width == 64:
        digits = repr(value)
    else:
        digits = next(text for text in ("%.*e" % (places, value) for places in range(9))
                      if _rounds_to(text, value, width))
    number = decimal.Decimal(digits).normalize()
    sign, figures, exponent = number.as_tuple()
    fixed = format(number, "f")
    if figures == (0,):
        return fixed
    power = exponent + len(figures) - 1
    mantissa = str(figures[0]) + ("." + "".join(map(str, figures[1:])) if len(figures) > 1 else "")
    scientific = "%s%se%s%02d" % ("-" if sign else "", mantissa, "-" if power < 0 else "+", abs(power))
    return fixed if len(fixed) <= len(scientific) else scientific


def _number_text(data_type, value):
    if data_type in (c.FLOAT, c.VARFLOAT):
        return shortest(value, 32)
    if data_type in (c.DOUBLE, c.VARDOUBLE):
        return shortest(value)
    return str(value)


def _line(data_type, value):
    """One value as the ormak tool prints it, as bytes."""
    if value is None:
        return b""
    if data_type == c.VARCHAR:
        return encode(value)
    if data_type == c.CHAR:
        return value.replace(b"\0", b"")
    if data_type == c.OPAQUE:
        return " ".join(map(str, value)).encode()
    if data_type in _MEMBERS:
        return " ".join(_number_text(data_type, member) for member in value).encode()
    if isinstance(value, bytes):
        return b""
    return _number_text(data_type, value).encode()


def print_cursor():
    """Prints the cursor in use, then empties it, so that it is printed once."""
    with lock:
        values = cursor()
        lib.ormak_cursor_clear(None)
    output = sys.stdout.buffer
    for value in values:
        output.write(_line(values.data_type, value) + b"\n")
    output.flush()


def run_script(script):
    """Runs a script and reports a failure; the status."""
    with lock:
        status, _ = run(encode(script))
        if status != c.SUCCESS:
            message = error_message() or b"Error"
            line = lib.ormak_error_get_line()
            where = b"line %d, position %d: " % (line, lib.ormak_error_get_position()) if line >= 0 else b""
            sys.stderr.buffer.write(where + message + b" (status %d)\n" % status)
            sys.stderr.flush()
        if lib.ormak_cursor_get_count(None) > 0:
            print_cursor()
    return status


def interactive():
    try:
        import readline  # noqa: F401 (line editing and history for input())
    except ImportError:
        pass
    statement = ""
    while True:
        try:
            line = input("ormak> " if not statement else "    -> ")
        except EOFError:
            break
        if line.endswith("\\"):
            statement += line + "\n"
            continue
        statement += line
        run_script(statement)
        statement = ""
    if statement:
        run_script(statement)
    print()
    return 0


def main(arguments):
    if len(arguments) == 2 and arguments[0] == "-e":
        status = run_script(os.fsencode(arguments[1]))
    elif len(arguments) == 1 and not arguments[0].startswith("-"):
        try:
            with open(arguments[0], "rb") as file:
                script = file.read()
        except OSError:
            sys.stderr.write("ormak: cannot read \"%s\"\n" % arguments[0])
            return 2
        status = run_script(script)
    elif not arguments:
        if sys.stdin.isatty():
            return interactive()
        status = run_script(sys.stdin.buffer.read())
    else:
        sys.stderr.write(_USAGE)
        return 2
    return 0 if status == c.SUCCESS else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
