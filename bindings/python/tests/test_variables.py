import numpy
import pytest

import ormak
from ormak import _library


def slot_of(array):
    return _library.lib.ormak_variable_get_number(array.ctypes.data)


def test_arrays_round_trip_in_place(datafile):
    values = numpy.arange(10, dtype=numpy.float64) * 1.5
    with ormak.variable(values) as n:
        # The library holds the array's own memory, not a copy.
        assert slot_of(values) == n.number and str(n) == f"{n.number} SIZE 80"
        ormak.execute(f"INSERT INTO d FROM MEMORY {n}")
        values[:] = 0
        ormak.execute(f"SELECT FROM d ORDER DESCEND INTO MEMORY {n}")
        assert (n.data_type, n.count, n.size) == (ormak.DOUBLE, 10, 80)
    assert values.tolist() == [13.5, 12, 10.5, 9, 7.5, 6, 4.5, 3, 1.5, 0]
    assert slot_of(values) == ormak.ERROR_NOT_REGISTERED and not n.registered
    with pytest.raises(ormak.Error):
        f"{n}"
    texts = numpy.zeros(2, "S4")
    with ormak.variable(texts, object="c") as n:
        ormak.execute(f"SELECT FROM c INTO MEMORY {n}")
    assert texts.tolist() == [b"ab", b"wxyz"]


def test_statements_stay_inside_the_array(datafile):
    # A view of four elements in a larger block: the rest of the block must stay untouched.
    block = numpy.full(12, -1.0)
    with ormak.variable(block[:4]) as n:
        ormak.execute(f"SELECT FROM d INTO MEMORY {n}")
        assert ormak.last_data_count() == 10
        ormak.execute(f"CREATE DATASET e AS DOUBLE(6) FROM MEMORY {n}; SELECT FROM e")
    assert block.tolist() == [0.5, 1, 2, 3] + [-1.0] * 8
    assert list(ormak.cursor()) == [0.5, 1, 2, 3, 0, 0]


def test_unsuitable_arrays_are_refused(datafile):
    values = numpy.zeros((4, 4))
    readonly = numpy.zeros(4)
    readonly.flags.writeable = False
    for array in (values[:, 1], values.T, readonly, numpy.zeros(3, bool), numpy.zeros(3, complex)):
        with pytest.raises(ormak.Error, match="contiguous|writeable|dtype"):
            ormak.variable(array)
    with pytest.raises(TypeError):
        ormak.variable([1.0, 2.0])
    with ormak.variable(values):
        with pytest.raises(ormak.Error, match="already registered"):
            ormak.variable(values[0])
    taken = [ormak.variable(numpy.zeros(1)) for _ in range(8)]
    with pytest.raises(ormak.Error) as caught:
        ormak.variable(numpy.zeros(1))
    assert caught.value.status == ormak.ERROR_FULL
    for variable in taken:
        variable.unregister()


def test_a_wrong_dtype_raises(datafile):
    integers = numpy.zeros(10, numpy.int64)
    with ormak.variable(integers) as n:
        with pytest.raises(ormak.Error, match="DOUBLE values and its array holds int64") as caught:
            ormak.execute(f"SELECT FROM d INTO MEMORY {n}")
        assert caught.value.status == ormak.ERROR_UNEXPECTED_DATA_TYPE
        # Told once: the next script that does not write the variable passes.
        ormak.execute("SELECT FROM i")
        ormak.execute(f"SHOW DIMENSION d INTO MEMORY {n}")
        assert integers[0] == 10 and n.data_type == ormak.BIGINT
    # Given the object, the check comes before anything is written or read.
    with pytest.raises(ormak.Error, match="does not match float64"):
        ormak.variable(integers, object="d")
    with pytest.raises(ormak.Error, match="VARCHAR"):
        ormak.variable(integers, transient=True, object="s")
    assert slot_of(integers) == ormak.ERROR_NOT_REGISTERED
    assert ormak.dtype_of("i") == numpy.int32 and ormak.dtype_of("o") == numpy.dtype("V3")
    assert ormak.shape_of("c") == (2,)


def test_unregistered_when_the_statement_fails(datafile):
    values = numpy.zeros(10)
    with pytest.raises(ormak.Error):
        with ormak.variable(values) as n:
            ormak.execute(f"SELECT FROM d INTO MEMORY {n}; SELECT FROM missing INTO MEMORY {n}")
    assert slot_of(values) == ormak.ERROR_NOT_REGISTERED and values[-1] == 9.25


def test_transient_variables_are_released_by_the_script_that_writes_them(datafile):
    source, target = numpy.arange(3, dtype=numpy.int32), numpy.zeros(3, numpy.int32)
    with ormak.variable(source, transient=True) as s, ormak.variable(target, transient=True) as t:
        ormak.execute(f"INSERT INTO i FROM MEMORY {s}")
        assert s.registered and t.registered
        ormak.execute(f"SELECT FROM i INTO MEMORY {t}")
        assert s.registered and not t.registered and slot_of(target) == ormak.ERROR_NOT_REGISTERED
        with pytest.raises(ormak.Error, match="no longer registered"):
            ormak.execute(f"SELECT FROM i INTO MEMORY {t}")
        # Its number is free for the next array, which the old variable can not reach.
        with ormak.variable(numpy.zeros(1)) as other:
            assert other.number == t.number
    assert target.tolist() == [0, 1, 2]


def test_h5py_reads_what_ormak_wrote_in_the_same_process(datafile):
    h5py = pytest.importorskip("h5py")
    ormak.execute("CLOSE ALL FILE")
    with h5py.File(datafile, "r") as file:
        assert file["d"][-1] == 9.25 and file["i"][:].tolist() == [7, -2, 2147483647]
