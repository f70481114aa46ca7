"""The cursor in use, read into Python values."""

import ctypes

from . import _constants as c
from ._library import lib, lock
from ._session import decode

_NUMBERS = {
    c.TINYINT: ("tinyint", ctypes.c_int8), c.UNSIGNED_TINYINT: ("unsigned_tinyint", ctypes.c_uint8),
    c.SMALLINT: ("smallint", ctypes.c_int16), c.UNSIGNED_SMALLINT: ("unsigned_smallint", ctypes.c_uint16),
    c.INT: ("int", ctypes.c_int32), c.UNSIGNED_INT: ("unsigned_int", ctypes.c_uint32),
    c.BIGINT: ("bigint", ctypes.c_int64), c.UNSIGNED_BIGINT: ("unsigned_bigint", ctypes.c_uint64),
    c.FLOAT: ("float", ctypes.c_float), c.DOUBLE: ("double", ctypes.c_double),
}
# Each variable-length type has the members of its fixed twin.
_MEMBERS = {
    c.VARTINYINT: c.TINYINT, c.UNSIGNED_VARTINYINT: c.UNSIGNED_TINYINT, c.VARSMALLINT: c.SMALLINT,
    c.UNSIGNED_VARSMALLINT: c.UNSIGNED_SMALLINT, c.VARINT: c.INT, c.UNSIGNED_VARINT: c.UNSIGNED_INT,
    c.VARBIGINT: c.BIGINT, c.UNSIGNED_VARBIGINT: c.UNSIGNED_BIGINT, c.VARFLOAT: c.FLOAT,
    c.VARDOUBLE: c.DOUBLE,
}

# The typed value getters, cursor and subcursor, by data type. Each answers a pointer to the
# value, which the loops below index.
_GETTERS = {}
for _type, (_name, _ctype) in _NUMBERS.items():
    _pair = []
    for _prefix in ("ormak_cursor_get_", "ormak_subcursor_get_"):
        _function = getattr(lib, _prefix + _name)
        _function.restype = ctypes.POINTER(_ctype)
        _pair.append(_function)
    _GETTERS[_type] = tuple(_pair)


class Cursor(tuple):
    """The values of the cursor in use at the moment it was read, as a tuple, with the
    cursor's `data_type` flag beside them. Numbers are ints and floats; CHAR values are
    bytes without their trailing zero bytes, OPAQUE values all their bytes; VARCHAR values
    are str, or None for a null string; variable-length values are lists of numbers."""

    def __new__(cls, values=(), data_type=c.UNDEFINED):
        cursor = super().__new__(cls, values)
        cursor.data_type = data_type
        return cursor

    def __repr__(self):
        name = c.TYPE_NAMES.get(self.data_type, str(self.data_type))
        return "Cursor(%r, data_type=%s)" % (list(self), name)


Cursor.__module__ = "ormak"


# The walks below stand on the first element and step with next: each value costs a few
# calls, where indexing would walk the list from its end every time.

def _walk(first, step, count, read):
    """`count` values read by `read`, from the first element on."""
    first(None)
    values = [read()]
    for _ in range(count - 1):
        step(None)
        values.append(read())
    return values


def _each(count, read):
    return _walk(lib.ormak_cursor_first, lib.ormak_cursor_next, count, read)


def _numbers(count, data_type):
    get = _GETTERS[data_type][0]
    return _each(count, lambda: get(None)[0])


def _members(get):
    """The members of the current element, through its subcursor."""
    count = lib.ormak_subcursor_get_count(None)
    if count <= 0:
        return []
    return _walk(lib.ormak_subcursor_first, lib.ormak_subcursor_next, count, lambda: get(None)[0])


def _variable_lengths(count, data_type):
    get = _GETTERS[_MEMBERS[data_type]][1]
    return _each(count, lambda: _members(get))


def _bytes(count, data_type):
    get = _GETTERS[c.UNSIGNED_TINYINT][1]
    if data_type == c.CHAR:
        return _each(count, lambda: bytes(_members(get)).rstrip(b"\0"))
    return _each(count, lambda: bytes(_members(get)))


def _texts(count, data_type):
    get = lib.ormak_cursor_get_char

    def read():
        text = get(None)
        return None if text is None else decode(text)
    return _each(count, read)


def _raw(count, data_type):
    # A type that no statement puts in a cursor today: the bytes of each element.
    size = ctypes.c_int(0)

    def read():
        address = lib._ormak_cursor_get_char_with_size(None, ctypes.byref(size))
        return ctypes.string_at(address, size.value) if address else None
    return _each(count, read)


_READERS = dict.fromkeys(_NUMBERS, _numbers)
_READERS.update(dict.fromkeys(_MEMBERS, _variable_lengths))
_READERS.update({c.CHAR: _bytes, c.OPAQUE: _bytes, c.VARCHAR: _texts})


def cursor():
    """The values of the cursor in use, which the last statement with results left there,
    read into a Cursor (a tuple). Reading moves the cursor's position, nothing else."""
    with lock:
        count = lib.ormak_cursor_get_count(None)
        data_type = lib.ormak_cursor_get_data_type(None)
        if count <= 0:
            return Cursor((), data_type)
        return Cursor(_READERS.get(data_type, _raw)(count, data_type), data_type)
