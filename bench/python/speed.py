"""What the Python package costs beside the C++ codec and plain Python: bench/python/run.sh.

Prints a table in Markdown. Times are of processor time, so that what else runs matters little, and
the best of several rounds in which all are measured in turn.
"""

from __future__ import annotations

import ctypes
import subprocess
import sys
import time
from typing import Any, Callable

import numpy as np

import vorn

ROWS = 1_000_000
ROUNDS = 15
TABLE, CHIP = "LifTable", 10
LIF = vorn.Layout(TABLE, CHIP)
NARROW = [field for field in LIF.fields if field.width <= 64]
THREE = ["vsi", "vlanEditVid1", "inLifProfile"]


class Columns:
    """The codec's columns over arrays that exist already."""

    def __init__(self, library: ctypes.CDLL, columns: dict[str, Any]) -> None:
        self.library = library
        self.columns = columns
        self.made = ctypes.c_void_p(library.vornBenchColumns(TABLE.encode(), CHIP))
        for name, column in columns.items():
            library.vornBenchAdd(
                self.made, name.encode(), ctypes.c_void_p(column.ctypes.data),
                ctypes.c_size_t(column.size), ctypes.c_size_t(column.itemsize),
            )

    def decode(self, images: Any) -> None:
        self._call(self.library.vornBenchDecode, images)

    def encode(self, images: Any) -> None:
        self._call(self.library.vornBenchEncode, images)

    def _call(self, function: Any, images: Any) -> None:
        function(self.made, ctypes.c_void_p(images.ctypes.data), ctypes.c_size_t(images.nbytes))


def columns_library(path: str) -> ctypes.CDLL:
    library = ctypes.CDLL(path)
    library.vornBenchColumns.restype = ctypes.c_void_p
    library.vornBenchDecode.restype = library.vornBenchEncode.restype = None
    library.vornBenchAdd.restype = None
    return library


PLAIN = [(field.name, field.offset, (1 << field.width) - 1) for field in LIF.fields]


def decode_plainly(image: bytes) -> dict[str, int]:
    number = int.from_bytes(image, "little")
    return {name: number >> offset & mask for name, offset, mask in PLAIN}


def seconds(act: Callable[[], Any], times: int = 1) -> float:
    """Processor seconds of one of them."""
    begin = time.thread_time()
    for _ in range(times):
        act()
    return (time.thread_time() - begin) / times


def best(acts: dict[str, tuple[Callable[[], Any], int]]) -> dict[str, float]:
    found = {name: float("inf") for name in acts}
    for _ in range(ROUNDS):
        for name, (act, times) in acts.items():
            found[name] = min(found[name], seconds(act, times))
    return found


def import_seconds(statement: str) -> float:
    script = (
        "import time; begin = time.process_time(); "
        f"{statement}; print(time.process_time() - begin)"
    )
    return min(
        float(subprocess.run([sys.executable, "-c", script], check=True, capture_output=True).stdout)
        for _ in range(ROUNDS)
    )


def main(library_path: str) -> None:
    library = columns_library(library_path)
    generator = np.random.default_rng(1)
    images = generator.integers(0, 256, (ROWS, LIF.size), dtype=np.uint8)
    columns = LIF.decode_batch(images, fields=[field.name for field in NARROW])
    settable = {name: column for name, column in columns.items() if not LIF[name].read_only}
    own = LIF.decode_batch(images, fields=columns)  # of the same kind of memory
    cpp = Columns(library, own)
    cpp_three = Columns(library, {name: np.empty_like(columns[name]) for name in THREE})
    cpp_settable = Columns(library, settable)
    target = np.empty_like(images)
    dump = memoryview(images.ravel())
    names = list(columns)
    one = images[0].tobytes()

    # All of them do the same.
    for column in own.values():
        column[:] = 0
    cpp.decode(images)
    assert all((own[name] == column).all() for name, column in columns.items())
    cpp_settable.encode(target)
    assert (LIF.encode_batch(settable) == target).all()
    assert LIF.decode(one) == decode_plainly(one)

    times = best(
        {
            "decode_batch": (lambda: LIF.decode_batch(dump, fields=names), 1),
            "C++ decode": (lambda: cpp.decode(images), 1),
            "three": (lambda: LIF.decode_batch(dump, fields=THREE), 1),
            "C++ three": (lambda: cpp_three.decode(images), 1),
            "encode_batch": (lambda: LIF.encode_batch(settable), 1),
            "C++ encode": (lambda: cpp_settable.encode(target), 1),
            "decode": (lambda: LIF.decode(one), 10_000),
            "plain": (lambda: decode_plainly(one), 10_000),
        }
    )
    rows = [
        (f"`decode_batch`, {len(names)} fields", "the same in C++", 1.3,
         times["decode_batch"] / times["C++ decode"], ""),
        ("`decode_batch`, 3 fields, an image", "", 8, times["three"] / ROWS * 1e9, " ns"),
        ("`decode`, one image", "", 2, times["decode"] * 1e6, " µs"),
        ("`decode`, one image", "plain Python", 0.5, times["decode"] / times["plain"], ""),
        (f"`encode_batch`, {len(settable)} fields", "the same in C++", 1.5,
         times["encode_batch"] / times["C++ encode"], ""),
        ("`import vorn`", "", 100, import_seconds("import vorn") * 1e3, " ms"),
    ]
    print("| what | against | at most | measured | met |\n|---|---|---|---|---|")
    for what, against, limit, measured, unit in rows:
        met = "yes" if measured <= limit else "**no**"
        print(f"| {what} | {against} | {limit}{unit} | {measured:.2f}{unit} | {met} |")
    per_image = {name: value / ROWS * 1e9 for name, value in times.items()}
    print(
        f"\nA million images of `{TABLE}`, nanoseconds an image: all narrow fields decoded "
        f"{per_image['decode_batch']:.1f} (C++ {per_image['C++ decode']:.1f}), three "
        f"{per_image['three']:.1f} (C++ {per_image['C++ three']:.1f}), encoded "
        f"{per_image['encode_batch']:.1f} (C++ {per_image['C++ encode']:.1f}). `import numpy` "
        f"takes another {import_seconds('import numpy') * 1e3:.0f} ms, when arrays are first made."
    )


if __name__ == "__main__":
    main(sys.argv[1])
