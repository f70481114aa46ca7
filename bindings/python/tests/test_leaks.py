import os

import numpy

import ormak
from ormak import _library


def resident_bytes():
    with open("/proc/self/statm") as statm:
        return int(statm.read().split()[1]) * os.sysconf("SC_PAGE_SIZE")


def round_trip(i, values, counts):
    ormak.execute(f"SELECT FROM d({i % 5}:1:3:1); SHOW DATA TYPE d")
    assert ormak.cursor() == (512,)
    with ormak.variable(values) as n, ormak.variable(counts, transient=True) as t:
        ormak.execute(f"SELECT FROM d INTO MEMORY {n}; SHOW DIMENSION d INTO MEMORY {t}")
        assert not t.registered
    try:
        with ormak.variable(values) as n:
            ormak.execute(f"INSERT INTO d FROM MEMORY {n}; SELECT FROM missing")
    except ormak.Error:
        pass


def test_many_executes_leave_nothing_behind(datafile):
    values, counts = numpy.zeros(10), numpy.zeros(1, numpy.int64)
    for i in range(1000):
        round_trip(i, values, counts)
    before = resident_bytes()
    for i in range(10000):
        round_trip(i, values, counts)
    grown = resident_bytes() - before
    print("grown", grown)
    assert counts[0] == 10 and values[9] == 9.25
    # Every slot is free again: eight new arrays take the numbers 0 to 7.
    arrays = [numpy.zeros(1) for _ in range(8)]
    taken = [ormak.variable(array) for array in arrays]
    assert sorted(variable.number for variable in taken) == list(range(8))
    for variable in taken:
        variable.unregister()
    assert _library.lib.ormak_variable_get_number(arrays[0].ctypes.data) == ormak.ERROR_NOT_REGISTERED
    # Freed memory waits in the sanitizer's quarantine, so only a plain build can tell growth.
    if not os.environ.get("ORMAK_SANITIZED"):
        assert grown < 1 << 18
