"""Running scripts and reporting their failures."""

import ctypes

from . import _constants as c
from ._library import execute_plain, lib, lock

# The binding's language number: the library answers with the packed word that tells which
# transient memory variables it released.
_LANGUAGE = 8

_STATUS_NAMES = {
    c.ERROR_PARSE: "syntax error", c.ERROR_NOT_FOUND: "not found", c.ERROR_NO_ACCESS: "no access",
    c.ERROR_NOT_OPEN: "not open", c.ERROR_INVALID_FILE: "invalid file",
    c.ERROR_NOT_SUPPORTED: "not supported", c.ERROR_NOT_ENOUGH_SPACE: "not enough space",
    c.ERROR_NOT_ENOUGH_MEMORY: "not enough memory", c.ERROR_ALREADY_EXISTS: "already exists",
    c.ERROR_EMPTY: "empty", c.ERROR_FULL: "full", c.ERROR_BEFORE_FIRST: "before first",
    c.ERROR_AFTER_LAST: "after last", c.ERROR_INVALID_VALUE: "invalid value",
    c.ERROR_NO_ADDRESS: "no address", c.ERROR_UNEXPECTED_TYPE: "unexpected type",
    c.ERROR_UNEXPECTED_DATA_TYPE: "unexpected data type",
    c.ERROR_UNEXPECTED_STORAGE_TYPE: "unexpected storage type",
    c.ERROR_DANGLING_LINK: "dangling link", c.ERROR_NOT_REGISTERED: "not registered",
    c.ERROR_INVALID_REGULAR_EXPRESSION: "invalid regular expression", c.ERROR_UNKNOWN: "unknown",
}


class Error(Exception):
    """A failed script, or a request the binding refuses.

    `status` is the library's status code (negative), `message` its text, and `line` and
    `position` tell where a syntax error was found (-1 for other failures)."""

    def __init__(self, status, message, line=-1, position=-1):
        super().__init__(status, message, line, position)
        self.status = status
        self.message = message
        self.line = line
        self.position = position

    def __str__(self):
        where = f"line {self.line}, position {self.position}: " if self.line >= 0 else ""
        return f"{where}{self.message} (status {self.status})"


Error.__module__ = "ormak"


def decode(text):
    # Names in messages and values are bytes of the file system or the file; nothing is lost.
    return text.decode("utf-8", "surrogateescape")


def error_message():
    """The library's message of the last failure as bytes, or None when it wrote none."""
    size = ctypes.c_int(0)
    address = lib._ormak_error_get_message_with_size(ctypes.byref(size))
    return ctypes.string_at(address, size.value) if address else None


def failure(status):
    """The Error of a failed script, read while the session still holds its details."""
    message = error_message()
    if message is None:
        message = "Error: " + _STATUS_NAMES.get(status, "status %d" % status)
    else:
        message = decode(message)
    return Error(status, message, lib.ormak_error_get_line(), lib.ormak_error_get_position())


def encode(script):
    if isinstance(script, str):
        return script.encode("utf-8", "surrogateescape")
    return bytes(script)


_execute = execute_plain


def run(data):
    """Runs an encoded script: the status and the slots of the transient variables it released."""
    word = _execute(data, len(data), _LANGUAGE)
    # The low byte holds the status; the whole status is asked for so that no code is cut.
    status = lib.ormak_execute_get_status() if word & 0xFF else c.SUCCESS
    released = (word >> 9) & 0xFF if word & 0x100 else 0
    return status, released


def writes_memory(data):
    """Whether a script may write into memory variables: only then are their types checked."""
    return b"MEMORY" in data or b"MEMORY" in data.upper()


# Hooks of the memory variables, installed by _variables: (released slots) -> None, and a
# check after each script that returns an Error or None.
settle_hook = None
check_hook = None


def execute(script):
    """Runs a script of one or more statements; raises Error when one of them fails.

    A syntax error anywhere stops the whole script before any statement runs; a failing
    statement stops the script, and the statements before it stay done. Results go to the
    cursor in use (see `cursor()`), to files or to memory variables (see `variable()`)."""
    data = encode(script)
    with lock:
        status, released = run(data)
        if released and settle_hook:
            settle_hook(released)
        error = failure(status) if status != c.SUCCESS else None
        mismatch = check_hook() if check_hook and writes_memory(data) else None
    if error is not None:
        raise error from mismatch
    if mismatch is not None:
        raise mismatch


def last_data_count():
    """The number of values that the last SELECT or SHOW of the last script delivered."""
    with lock:
        return lib._ormak_get_last_data_count()
