import pytest

import ormak


@pytest.fixture(autouse=True)
def workdir(tmp_path, monkeypatch):
    """Each test runs in a fresh directory and leaves no file in use behind."""
    monkeypatch.chdir(tmp_path)
    yield tmp_path
    ormak.execute("CLOSE ALL FILE")


@pytest.fixture
def datafile(workdir):
    """A file in use with a few datasets of different types."""
    ormak.execute(
        'CREATE TRUNCATE FILE data.h5; USE FILE data.h5; '
        'CREATE DATASET i AS INT(3) VALUES(7, -2, 2147483647); '
        'CREATE DATASET d AS DOUBLE(10) VALUES(0.5, 1, 2, 3, 4, 5, 6, 7, 8, 9.25); '
        'CREATE DATASET f AS FLOAT(2) VALUES(0.1, -3); '
        'CREATE DATASET c AS CHAR(2, 4) VALUES("ab", "wxyz"); '
        'CREATE DATASET o AS OPAQUE(2, 3) VALUES(1, 2, 3, 4, 5, 255); '
        'CREATE DATASET s AS VARCHAR(3) VALUES("x", "h\u00e9"); '
        'CREATE DATASET v AS VARBIGINT(3) VALUES((1, 2), -3)')
    return workdir / "data.h5"
