"""NumPy arrays lent to scripts as memory variables, in place, with no copy."""

from . import _constants as c
from . import _session
from ._library import lib, lock, written_type_plain
from ._session import Error

# Every slot that the binding registered, by number. It holds the Variable, and so the array,
# for as long as the library may write into the array's memory.
_registered = {}

# The data type flag of each array element kind and width.
_NUMBER_TYPES = {
    ("i", 1): c.TINYINT, ("u", 1): c.UNSIGNED_TINYINT, ("i", 2): c.SMALLINT,
    ("u", 2): c.UNSIGNED_SMALLINT, ("i", 4): c.INT, ("u", 4): c.UNSIGNED_INT,
    ("i", 8): c.BIGINT, ("u", 8): c.UNSIGNED_BIGINT, ("f", 4): c.FLOAT, ("f", 8): c.DOUBLE,
}
_DTYPES = {flag: kind + str(width) for (kind, width), flag in _NUMBER_TYPES.items()}

# SIZE is read as a C int: a larger array goes without one, and the library then trusts it to
# hold what a statement reads, as it trusts a C caller.
_LARGEST_SIZE = 2**31 - 1


def data_type_of(dtype):
    """The data type flag that values of `dtype` hold, or None when no Ormak type fits."""
    if dtype.kind == "S":
        return c.CHAR
    if dtype.kind == "V" and dtype.fields is None and dtype.subdtype is None:
        return c.OPAQUE
    return _NUMBER_TYPES.get((dtype.kind, dtype.itemsize))


def _type_name(data_type):
    return c.TYPE_NAMES.get(data_type, "data type %d" % data_type)


class Variable:
    """A NumPy array registered as a memory variable for as long as it is in use.

    In a statement, `{variable}` stands for "n SIZE bytes": its number with the array's size,
    so that no statement reads or writes past the end of the array. `{variable:d}` is the
    number alone. Leave the `with` block, or call `unregister()`, to give the slot back."""

    def __init__(self, array, number, transient):
        self.array = array
        self.number = number
        self.transient = transient
        self._registered = True
        self._data_type = data_type_of(array.dtype)
        # Made once: statements in a loop write it again and again.
        self._text = str(number) if array.nbytes > _LARGEST_SIZE else "%d SIZE %d" % (number, array.nbytes)

    @property
    def registered(self):
        """False once unregistered, or released by the library after a script wrote it."""
        return self._registered

    def _slot(self):
        if not self._registered:
            raise Error(c.ERROR_NOT_REGISTERED, "Error when using memory number \"%d\" as it is no "
                        "longer registered for this array" % self.number)
        return self.number

    def __index__(self):
        return self._slot()

    __int__ = __index__

    def __format__(self, format_spec):
        if format_spec:
            return format(self._slot(), format_spec)
        return str(self)

    def __str__(self):
        if self._registered:
            return self._text
        return str(self._slot())

    def __repr__(self):
        state = "transient" if self.transient else "registered"
        if not self._registered:
            state = "released"
        return "<ormak.Variable %d: %s%s, %s>" % (self.number, self.array.dtype, list(self.array.shape), state)

    # What the library last wrote into a lasting variable; -1 while nothing was written.
    @property
    def data_type(self):
        with lock:
            return lib._ormak_variable_get_data_type(self._slot())

    @property
    def count(self):
        with lock:
            return lib._ormak_variable_get_count(self._slot())

    @property
    def size(self):
        with lock:
            return lib._ormak_variable_get_size(self._slot())

    def unregister(self):
        with lock:
            if self._registered:
                lib._ormak_variable_unregister(self.number)
                _registered.pop(self.number, None)
                self._registered = False

    def __enter__(self):
        return self

    def __exit__(self, *exception):
        self.unregister()
        return False

    def _mismatch(self):
        """The Error for a lasting variable that received values of another type than its
        array holds; the slot forgets what it received, so that it is told once."""
        written = lib._ormak_variable_get_data_type(self.number)
        if written == c.UNDEFINED or written == self._data_type:
            return None
        lib._ormak_variable_unregister(self.number)
        lib._ormak_variable_register(self.number, self.array.ctypes.data, -1)
        return Error(c.ERROR_UNEXPECTED_DATA_TYPE,
                     "Error when redirecting results into memory number \"%d\" as they are %s "
                     "values and its array holds %s" % (self.number, _type_name(written), self.array.dtype))


Variable.__module__ = "ormak"


def _settle(released):
    for number in range(8):
        if released & (1 << number) and number in _registered:
            _registered.pop(number)._registered = False


def _check():
    """The Error of the first lasting variable that received a wrong type, or None."""
    first = None
    for variable in _registered.values():
        if not variable.transient and _written_type(variable.number) not in (c.UNDEFINED, variable._data_type):
            first = first or variable._mismatch()
    return first


_written_type = written_type_plain
_session.settle_hook = _settle
_session.check_hook = _check


def _refuse(message, status=c.ERROR_INVALID_VALUE):
    raise Error(status, "Error when registering an array as memory as " + message)


def variable(array, *, transient=False, object=None):
    """Registers a NumPy array as a memory variable, with no copy: statements read from and
    write into the array's own memory. Use it in a `with` block and write it into a
    statement: `INTO MEMORY {n}`, `FROM MEMORY {n}`.

    The array must be C-contiguous, aligned and writeable, of a numeric dtype (integers of 1
    to 8 bytes, float32, float64), or of fixed-size bytes ('S' for CHAR, 'V' for OPAQUE).

    After each script, a lasting variable that received values of another data type than
    its dtype makes `execute` raise an Error. With `object`, the name of a dataset or
    attribute, the dtype is checked against that object before anything is written or read,
    which also covers reading (INSERT ... FROM MEMORY) and transient variables.

    A transient variable is released by the library at the end of the first script that
    writes into it; its `registered` turns False then."""
    import numpy

    if not isinstance(array, numpy.ndarray):
        raise TypeError("ormak.variable takes a NumPy array, not %s" % type(array).__name__)
    if data_type_of(array.dtype) is None:
        _refuse("no Ormak data type holds values of dtype %s" % array.dtype, c.ERROR_UNEXPECTED_DATA_TYPE)
    if not array.flags.c_contiguous:
        _refuse("it is not C-contiguous; pass numpy.ascontiguousarray(array) and read the results from that")
    if not array.flags.writeable:
        _refuse("it is not writeable")
    if not array.flags.aligned:
        _refuse("it is not aligned")
    if object is not None:
        expected = dtype_of(object)
        if expected != array.dtype:
            _refuse("its dtype %s does not match %s of object \"%s\"" % (array.dtype, expected, object),
                    c.ERROR_UNEXPECTED_DATA_TYPE)
    with lock:
        address = array.ctypes.data
        taken = lib.ormak_variable_get_number(address)
        if taken >= 0:
            _refuse("its memory is already registered as memory number \"%d\"" % taken, c.ERROR_ALREADY_EXISTS)
        register = lib.ormak_variable_transient_register if transient else lib.ormak_variable_register
        number = register(address)
        if number == c.ERROR_FULL:
            _refuse("all 8 memory numbers are in use", c.ERROR_FULL)
        if number < 0:
            _refuse("the library refused its address", number)
        registered = Variable(array, number, transient)
        _registered[number] = registered
        return registered


def _ask(statement, values):
    """Runs one SHOW statement into `values`, a scratch array that is registered for it
    alone, so that the cursor in use keeps what it holds; the values delivered."""
    with lock:
        number = lib.ormak_variable_register(values.ctypes.data)
        if number < 0:
            _refuse("no memory number is free to look at the object", number)
        try:
            status, _ = _session.run(_session.encode("%s INTO MEMORY %d SIZE %d" % (statement, number, values.nbytes)))
            if status != c.SUCCESS:
                raise _session.failure(status)
            return values[:lib._ormak_get_last_data_count()].tolist()
        finally:
            lib._ormak_variable_unregister(number)


def dtype_of(name):
    """The NumPy dtype of the values of a dataset or attribute, as a statement reads them
    into memory; Error when no dtype fits its data type (strings of variable length,
    variable-length values, compounds)."""
    import numpy

    (data_type,) = _ask("SHOW DATA TYPE %s" % name, numpy.zeros(1, numpy.int32))
    if data_type in (c.CHAR, c.OPAQUE):
        # SHOW SIZE tells the bytes of all values together.
        (size,) = _ask("SHOW SIZE %s" % name, numpy.zeros(1, numpy.uint64))
        count = int(numpy.prod(shape_of(name)))
        if count == 0:
            raise Error(c.ERROR_EMPTY, "Error when matching object \"%s\" with an array as it holds no "
                        "values that tell their size" % name)
        return numpy.dtype(("S%d" if data_type == c.CHAR else "V%d") % (size // count))
    if data_type not in _DTYPES:
        raise Error(c.ERROR_UNEXPECTED_DATA_TYPE, "Error when matching object \"%s\" with an array as "
                    "no dtype holds its %s values" % (name, _type_name(data_type)))
    (endianness,) = _ask("SHOW ENDIANNESS %s" % name, numpy.zeros(1, numpy.int32))
    # The values reach memory in the object's own byte order.
    return numpy.dtype({1: "<", 2: ">"}.get(endianness, "=") + _DTYPES[data_type])


def shape_of(name):
    """The dimensions of a dataset or attribute, as a tuple."""
    import numpy

    return tuple(_ask("SHOW DIMENSION %s" % name, numpy.zeros(32, numpy.int64)))
