import os
import shutil
import subprocess
import sys
from pathlib import Path

import pytest

PACKAGE = Path(__file__).resolve().parents[1]

SCRIPT = ('CREATE TRUNCATE FILE t.h5; USE FILE t.h5; '
          'CREATE DATASET d AS DOUBLE(7) VALUES(0.1, -4, 1e15, 1e16, 1e-5, 0.3333333333333333, -0.0); '
          'CREATE DATASET f AS FLOAT(3) VALUES(0.1, 3.4028235e38, 16777216); '
          'CREATE DATASET v AS VARFLOAT(2) VALUES((0.1, 1e10), 3); CREATE DATASET c AS CHAR(2, 3) VALUES("ab"); '
          'CREATE DATASET o AS OPAQUE(2) VALUES(1, 255); CREATE DATASET s AS VARCHAR(2) VALUES("h\u00e9")')


def tool(*arguments, program=(sys.executable, "-m", "ormak"), **options):
    return subprocess.run([*program, *arguments], capture_output=True, **options)


def test_prints_as_the_ormak_tool_does(workdir):
    done = tool("-e", SCRIPT)
    assert (done.returncode, done.stdout, done.stderr) == (0, b"", b"")
    expected = {
        "d": b"0.1\n-4\n1e+15\n1e+16\n1e-05\n0.3333333333333333\n-0\n",
        "f": b"0.1\n3.4028235e+38\n16777216\n", "v": b"0.1 1e+10\n3\n", "c": b"ab\n\n",
        "o": b"1 255\n", "s": "h\u00e9\n\n".encode(),
    }
    for name, output in expected.items():
        assert tool("-e", f"USE FILE t.h5; SELECT FROM {name}").stdout == output
    failing = "USE FILE t.h5; SELECT FROM d TOP 1; SELECT FROM missing; CREATE FILE never.h5"
    scripts = [("-e", failing), ("-e", "SELECT FRM d"), ("-x",), ("no-such-script",)]
    results = [tool(*arguments) for arguments in scripts]
    assert [result.returncode for result in results] == [1, 1, 2, 2]
    assert results[0].stdout == b"0.1\n" and results[0].stderr.endswith(b'as it does not exist (status -2)\n')
    assert results[1].stderr.startswith(b"line 1, position 8: ")
    # The same bytes as the tool itself, where the build tells where it is.
    if os.environ.get("ORMAK_CLI"):
        for arguments, result in zip(scripts, results):
            original = tool(*arguments, program=(os.environ["ORMAK_CLI"],))
            assert (original.returncode, original.stdout, original.stderr) == \
                (result.returncode, result.stdout, result.stderr)
    piped = tool(input=b"USE FILE t.h5\nSELECT FROM o")
    assert (piped.returncode, piped.stdout) == (0, b"1 255\n")


def test_quickstart_example(workdir):
    done = tool(str(PACKAGE / "examples" / "quickstart.py"), program=(sys.executable,), check=True)
    assert done.stdout.decode().splitlines() == [
        "warmest: 14.0 13.5 12.5", "mean: 11.791666666666666",
        'status -2 - Error when reading data from object "humidity" as it does not exist']


def test_pip_installs_the_package(workdir):
    if not os.environ.get("ORMAK_LIBRARY"):
        pytest.skip("ORMAK_LIBRARY tells where the installed package finds the library")
    # Installed from a copy, as the build writes its scratch beside the sources.
    source = workdir / "source"
    shutil.copytree(PACKAGE, source, ignore=shutil.ignore_patterns("tests", "__pycache__"))
    target = workdir / "installed"
    pip = [sys.executable, "-m", "pip", "install", "--quiet", "--no-build-isolation", "--no-deps",
           "--disable-pip-version-check", "--no-cache-dir", "--target", str(target), str(source)]
    subprocess.run(pip, check=True, capture_output=True)
    check = "import ormak; ormak.execute('SHOW EXECUTE STATUS'); print(ormak.__file__, ormak.cursor()[0])"
    environment = dict(os.environ, PYTHONPATH=str(target))
    done = tool("-c", check, program=(sys.executable,), env=environment, check=True, cwd=workdir)
    assert done.stdout.decode().startswith(str(target / "ormak" / "__init__.py"))
