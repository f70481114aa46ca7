"""Ormak from Python: run scripts on HDF5 files, read their results, and lend NumPy arrays
to statements as memory, with no copy.

    import numpy, ormak
    ormak.execute("USE FILE a.h5; SELECT FROM d ORDER DESCEND TOP 3")
    print(list(ormak.cursor()))
    values = numpy.empty(6)
    with ormak.variable(values) as n:
        ormak.execute(f"SELECT FROM d INTO MEMORY {n}")

The package loads libormak.so from the path in ORMAK_LIBRARY, else from beside itself, else
from a build tree above it (build/ first), else where the dynamic loader finds it. Calls into
the library are serialised by one lock: it may be used from several threads, one at a time.
"""

from ._constants import *  # noqa: F401,F403 (status codes and data type flags)
from ._cursor import Cursor, cursor
from ._session import Error, execute, last_data_count
from ._variables import Variable, dtype_of, shape_of, variable

__version__ = "0.1.0"
__all__ = ["Cursor", "Error", "Variable", "cursor", "dtype_of", "execute", "last_data_count",
           "shape_of", "variable"]
