"""Finding and loading libormak.so, and the prototypes of the functions the package calls."""

import ctypes
import ctypes.util
import mmap
import os
import threading
from pathlib import Path

# The library is not reentrant and ctypes lets go of the interpreter lock during a call, so
# every entry into it from this package holds this lock.
lock = threading.RLock()

LIBRARY_NAME = "libormak.so"


def _needs_sanitizer_runtime(path):
    """Whether the library was built with AddressSanitizer: loading such a library into a
    process whose sanitizer runtime was not preloaded aborts the process, so the search
    passes over it rather than try it."""
    try:
        with open(path, "rb") as file, mmap.mmap(file.fileno(), 0, access=mmap.ACCESS_READ) as data:
            return data.find(b"libasan.so") >= 0
    except (OSError, ValueError):
        return False


def _sanitizer_runtime_loaded():
    try:
        with open("/proc/self/maps") as maps:
            return "libasan.so" in maps.read()
    except OSError:
        return False


def _build_tree_libraries(start):
    """The libraries of the build trees next to the nearest ancestor of `start` that has
    any: build/ first, the usual tree, then the others, the most recently built first."""
    for parent in start.parents:
        found = [path for path in parent.glob("build*/" + LIBRARY_NAME) if path.is_file()]
        if found:
            found.sort(key=lambda path: (path.parent.name != "build", -path.stat().st_mtime))
            return found
    return []


def candidates():
    """Where the library may be, in the order tried. ORMAK_LIBRARY, when set, is the only
    candidate, so that a wrong setting fails rather than quietly load another library."""
    named = os.environ.get("ORMAK_LIBRARY")
    if named:
        yield Path(named)
        return
    package = Path(__file__).resolve().parent
    if (package / LIBRARY_NAME).is_file():
        yield package / LIBRARY_NAME
    sanitized = _sanitizer_runtime_loaded()
    for path in _build_tree_libraries(package):
        if sanitized or not _needs_sanitizer_runtime(path):
            yield path


def load():
    path = next(candidates(), None)
    if path is not None:
        try:
            return ctypes.CDLL(str(path))
        except OSError as error:
            raise ImportError(f"ormak: cannot load {path}: {error}") from error
    # An installed library, through the dynamic loader's own search.
    for name in (ctypes.util.find_library("ormak"), LIBRARY_NAME + ".0", LIBRARY_NAME):
        if name:
            try:
                return ctypes.CDLL(name)
            except OSError:
                pass
    raise ImportError(
        f"ormak: {LIBRARY_NAME} was not found beside the package, in a build tree above it or "
        "where the dynamic loader looks; set ORMAK_LIBRARY to its path")


lib = load()

_int, _ptr, _size = ctypes.c_int, ctypes.c_void_p, ctypes.c_size_t


def _declare(name, restype, *argtypes):
    function = getattr(lib, name)
    function.restype = restype
    function.argtypes = argtypes
    return function


_declare("_ormak_execute", _int, ctypes.c_char_p, _int, _int)
_declare("ormak_execute_get_status", _int)
_declare("ormak_error_get_line", _int)
_declare("ormak_error_get_position", _int)
_declare("_ormak_error_get_message_with_size", _ptr, ctypes.POINTER(_int))
_declare("_ormak_get_last_data_count", ctypes.c_uint64)

_declare("ormak_variable_register", _int, _ptr)
_declare("ormak_variable_transient_register", _int, _ptr)
_declare("ormak_variable_get_number", _int, _ptr)
_declare("_ormak_variable_register", _int, _int, _size, _int)
_declare("_ormak_variable_unregister", _int, _int)
for _field in ("data_type", "count", "size"):
    _declare("_ormak_variable_get_" + _field, _int, _int)

# The cursor functions take the cursor in use, a null pointer, and are called once or more
# per value: they keep ctypes' default conversions, which pass None fastest.
for _name in ("ormak_cursor_get_data_type", "ormak_cursor_get_count", "ormak_cursor_first",
              "ormak_cursor_next", "ormak_cursor_clear", "ormak_subcursor_get_count",
              "ormak_subcursor_first", "ormak_subcursor_next"):
    getattr(lib, _name).restype = _int
lib.ormak_cursor_get_char.restype = ctypes.c_char_p

# The two calls made for every script, with ctypes' default conversions, which take half the
# time of declared ones; their callers pass only bytes and ints.
_plain = ctypes.CDLL(lib._name)
execute_plain = _plain._ormak_execute
execute_plain.restype = _int
written_type_plain = _plain._ormak_variable_get_data_type
written_type_plain.restype = _int
lib._ormak_cursor_get_char_with_size.restype = _ptr
