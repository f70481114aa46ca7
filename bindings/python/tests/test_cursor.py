import pytest

import ormak


@pytest.mark.parametrize("name, values, data_type", [
    ("i", [7, -2, 2147483647], ormak.INT),
    ("d", [0.5, 1, 2, 3, 4, 5, 6, 7, 8, 9.25], ormak.DOUBLE),
    ("f", [pytest.approx(0.1), -3.0], ormak.FLOAT),
    ("c", [b"ab", b"wxyz"], ormak.CHAR),
    ("o", [b"\x01\x02\x03", b"\x04\x05\xff"], ormak.OPAQUE),
    ("s", ["x", "h\u00e9", None], ormak.VARCHAR),
    ("v", [[1, 2], [-3], []], ormak.VARBIGINT),
])
def test_values_of_each_type(datafile, name, values, data_type):
    ormak.execute(f"SELECT FROM {name}")
    cursor = ormak.cursor()
    assert list(cursor) == values and cursor.data_type == data_type
    assert len(cursor) == len(values) and cursor[-1] == values[-1] and cursor[0] == values[0]


def test_cursor_is_a_snapshot(datafile):
    ormak.execute("SELECT FROM i ORDER DESCEND")
    cursor = ormak.cursor()
    ormak.execute("SELECT FROM d TOP 1")
    assert [value for value in cursor] == [2147483647, 7, -2] and ormak.cursor() == (0.5,)
    ormak.execute("SELECT FROM d(0:1:0:1)")
    assert ormak.cursor() == () and ormak.cursor().data_type == ormak.DOUBLE
    with pytest.raises(IndexError):
        ormak.cursor()[0]
