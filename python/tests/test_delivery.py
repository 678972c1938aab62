"""The examples and the wheel."""

import os
import subprocess
import sys
import zipfile
from pathlib import Path

import numpy as np
import pytest

import vorn

ROOT = Path(__file__).resolve().parents[2]
LIF = vorn.Layout("LifTable", "BCM88690_B0")


def run(*arguments, **environment):
    return subprocess.run(
        [sys.executable, *map(str, arguments)], capture_output=True, text=True,
        env={**os.environ, **environment},
    )


@pytest.fixture
def fleet(tmp_path):
    for folder in ("before", "after"):
        (tmp_path / folder).mkdir()
        for number in range(5):
            vsi = np.arange(100)
            vsi[number] += 1 if folder == "after" else 0
            dump = LIF.encode_batch({"vsi": vsi})
            (tmp_path / folder / f"{number}.bin").write_bytes(dump.tobytes())
    return tmp_path


@pytest.mark.parametrize("options", [[], ["--dask"]])
def test_a_fleet_is_compared(fleet, options):
    if options:
        pytest.importorskip("distributed")
    done = run(ROOT / "examples/fleet.py", fleet / "before", fleet / "after", "--table",
               "LifTable", "--chip", "BCM88690_B0", "--workers", 2, "--files", 2, *options)
    assert done.returncode == 0, done.stderr
    rows = [line for line in done.stdout.splitlines() if ",vsi," in line]
    assert rows == [f"{number}.bin,{number},vsi,{number},{number + 1}" for number in range(5)]


def test_a_fleet_with_a_bad_dump_is_refused(fleet):
    arguments = [ROOT / "examples/fleet.py", fleet / "before", fleet / "after", "--table",
                 "LifTable", "--chip", "BCM88690_B0", "--workers", 2]
    (fleet / "after/3.bin").write_bytes(bytes(79))
    done = run(*arguments)
    assert (done.returncode, done.stdout) == (1, "")
    assert done.stderr.startswith("fleet.py: 3.bin: 79 bytes are no whole number of images; ")
    (fleet / "after/3.bin").unlink()
    done = run(*arguments)
    assert done.stderr == "fleet.py: only in one of the folders: 3.bin\n"


def test_the_plot_is_drawn(tmp_path):
    pytest.importorskip("matplotlib")
    done = run(ROOT / "examples/plot_dump.py", tmp_path / "dump.png")
    assert done.returncode == 0, done.stderr
    assert (tmp_path / "dump.png").read_bytes().startswith(b"\x89PNG")


@pytest.mark.skipif("VORN_BUILD" not in os.environ, reason="VORN_BUILD has no built tree")
def test_the_wheel_has_the_whole_package(tmp_path):
    pytest.importorskip("build")
    done = run("-m", "build", "--wheel", "--no-isolation", "--outdir", tmp_path, ROOT / "python")
    assert done.returncode == 0, done.stdout + done.stderr
    (wheel,) = tmp_path.glob("vorn-1.1.0-cp311-*.whl")
    with zipfile.ZipFile(wheel) as archive:
        archive.extractall(tmp_path / "site")
    script = (
        "import vorn; print(vorn.__file__, vorn._vorn.__file__, vorn.Layout('LifTable', 10).size)"
    )
    init, module, size = run("-c", script, PYTHONPATH=str(tmp_path / "site")).stdout.split()
    assert init.startswith(str(tmp_path)) and module.startswith(str(tmp_path)) and size == "80"
    for file in ("py.typed", "_vorn.pyi"):
        assert (tmp_path / "site/vorn" / file).exists()


def test_another_interpreter_on_the_path_changes_nothing(tmp_path):
    other = tmp_path / "bin" / "python3"
    other.parent.mkdir()
    other.write_text("#!/bin/sh\nexit 1\n")
    other.chmod(0o755)
    for name in ("python", "python3.11", "python3.12"):
        other.with_name(name).symlink_to(other)
    options = [f"-DVORN_BUILD_{name}=OFF" for name in ("TESTS", "TOOLS", "EXAMPLES")]
    done = subprocess.run(
        ["cmake", "--preset", "release", "-S", ROOT, "-B", tmp_path / "tree", *options],
        capture_output=True, text=True, cwd=ROOT,
        env={**os.environ, "PATH": f"{other.parent}:{os.environ['PATH']}"},
    )
    assert done.returncode == 0, done.stdout + done.stderr
    cache = (tmp_path / "tree/CMakeCache.txt").read_text().splitlines()
    assert "VORN_PYTHON:BOOL=ON" in cache
    assert "Python3_EXECUTABLE:FILEPATH=/usr/bin/python3" in cache
