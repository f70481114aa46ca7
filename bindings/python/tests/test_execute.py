import pytest

import ormak


def test_syntax_error_stops_the_whole_script_and_tells_where(workdir):
    with pytest.raises(ormak.Error) as caught:
        ormak.execute("CREATE FILE first.h5;\nSELECT FRM d")
    error = caught.value
    assert (error.status, error.line, error.position) == (ormak.ERROR_PARSE, 2, 8)
    assert str(error).startswith("line 2, position 8: ") and "FRM" in error.message
    assert not (workdir / "first.h5").exists()


def test_failing_statement_reports_status_and_message(workdir):
    with pytest.raises(ormak.Error) as caught:
        ormak.execute(b"CREATE FILE kept.h5; USE FILE absent.h5; CREATE FILE never.h5")
    error = caught.value
    assert error.status == ormak.ERROR_NOT_FOUND and (error.line, error.position) == (-1, -1)
    assert '"absent.h5"' in error.message and str(error).endswith("(status -2)")
    assert (workdir / "kept.h5").exists() and not (workdir / "never.h5").exists()
