#!/usr/bin/python3
"""How fast doubles reach NumPy arrays through the Python binding, against h5py doing the same,
measured in one run: the median of several runs of each, and their ratio.

    ORMAK_LIBRARY=build/libormak.so /usr/bin/python3 bench/python_vs_h5py.py [runs] [megabytes]

Debian's interpreter has NumPy and h5py; without ORMAK_LIBRARY the binding takes the library
of a build tree (build/ first). The speed ratio is h5py's time divided by ormak's: above 1
means ormak is faster.

1. 256 MiB of doubles, warm in the page cache, into a preallocated array touched before
   timing: SELECT FROM d INTO MEMORY n against h5py's d.read_direct(array) (target: at least
   0.95 of h5py's speed).
2. 20,000 reads of 10 doubles at moving offsets into a preallocated array of 10:
   SELECT FROM d(i:1:10:1) INTO MEMORY n, one execute each, against h5py's d[i:i+10], which
   makes a new array each time, and against d.read_direct(array, numpy.s_[i:i+10]).
"""

import os
import statistics
import sys
import tempfile
import time
from pathlib import Path

# Both HDF5 libraries of the process open the same file: HDF5 1.10 would refuse the second
# open while the first holds its lock.
os.environ.setdefault("HDF5_USE_FILE_LOCKING", "FALSE")
sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "bindings" / "python"))

import h5py  # noqa: E402
import numpy  # noqa: E402

import ormak  # noqa: E402

SMALL_READS = 20000


def seconds(work):
    start = time.perf_counter()
    work()
    return time.perf_counter() - start


def compare(what, runs, baseline, ours, target):
    """Runs both, alternating, and prints the medians and their ratio."""
    baseline(), ours()
    times = [(seconds(baseline), seconds(ours)) for _ in range(runs)]
    h5py_time = statistics.median(time for time, _ in times)
    ormak_time = statistics.median(time for _, time in times)
    print("%-44s h5py %8.3f s   ormak %8.3f s   speed ratio %.3f   (%s)"
          % (what, h5py_time, ormak_time, h5py_time / ormak_time, target))


def main():
    runs = int(sys.argv[1]) if len(sys.argv) > 1 else 9
    megabytes = int(sys.argv[2]) if len(sys.argv) > 2 else 256
    count = megabytes * 1024 * 1024 // 8
    print("speed ratio = h5py time / ormak time, so above 1 means ormak is faster; median of %d runs" % runs)

    with tempfile.TemporaryDirectory(prefix="ormak-bench-") as directory:
        path = os.path.join(directory, "bench.h5")
        with h5py.File(path, "w") as file:
            file.create_dataset("d", data=numpy.arange(count, dtype=numpy.float64))
        ormak.execute(f"USE FILE {path}")
        file = h5py.File(path, "r")
        dataset = file["d"]

        values = numpy.ones(count)
        with ormak.variable(values, object="d") as n:
            compare("read %d MiB of doubles into an array" % megabytes, runs,
                    lambda: dataset.read_direct(values),
                    lambda: ormak.execute(f"SELECT FROM d INTO MEMORY {n}"), "target >= 0.95")
        assert values[-1] == count - 1 and values[12345] == 12345

        offsets = [(k * 7919) % (count - 10) for k in range(SMALL_READS)]
        small = numpy.zeros(10)

        def ormak_reads():
            for i in offsets:
                ormak.execute(f"SELECT FROM d({i}:1:10:1) INTO MEMORY {n}")

        def h5py_slices():
            for i in offsets:
                small[:] = dataset[i:i + 10]

        def h5py_read_direct():
            for i in offsets:
                dataset.read_direct(small, numpy.s_[i:i + 10])

        with ormak.variable(small, object="d") as n:
            compare("%d reads of 10 doubles, h5py d[i:i+10]" % SMALL_READS, runs, h5py_slices, ormak_reads,
                    "per-statement cost")
            compare("%d reads of 10 doubles, h5py read_direct" % SMALL_READS, runs, h5py_read_direct,
                    ormak_reads, "per-statement cost")
        assert small.tolist() == list(range(offsets[-1], offsets[-1] + 10))

        file.close()
        ormak.execute("CLOSE ALL FILE")


if __name__ == "__main__":
    main()
