"""Builds the module with CMake for the wheel; pyproject.toml says all else."""

import os
import re
import shutil
import subprocess
import sys
from pathlib import Path

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

ROOT = Path(__file__).resolve().parent.parent
BUILT = os.environ.get("VORN_BUILD")
WORK = Path(BUILT or ROOT / "build") / "wheel"


class CMakeBuild(build_ext):
    """Builds the module, or takes it from the build tree VORN_BUILD, where it is already."""

    def build_extension(self, extension):
        tree = Path(BUILT or WORK / "cmake")
        if not BUILT:
            options = ("VORN_BUILD_TOOLS", "VORN_BUILD_TESTS", "VORN_BUILD_EXAMPLES")
            subprocess.check_call(
                ["cmake", "--preset", "release", "-B", tree, "-DVORN_PYTHON=ON"]
                + [f"-D{option}=OFF" for option in options]
                + [f"-DPython3_EXECUTABLE={sys.executable}"],
                cwd=ROOT,
            )
            subprocess.check_call(["cmake", "--build", tree, "--target", "VornPython"])
        target = Path(self.get_ext_fullpath(extension.name))
        target.parent.mkdir(parents=True, exist_ok=True)
        shutil.copy(tree / "python" / "vorn" / target.name, target)
        subprocess.check_call(["strip", target])


WORK.mkdir(parents=True, exist_ok=True)
project = re.search(r"project\( VornTunnelKelvar VERSION (\S+)", (ROOT / "CMakeLists.txt").read_text())
setup(
    version=project[1],
    packages=["vorn"],
    package_data={"vorn": ["*.pyi", "py.typed"]},
    ext_modules=[Extension("vorn._vorn", sources=[])],
    cmdclass={"build_ext": CMakeBuild},
    options={"build": {"build_base": str(WORK)}, "egg_info": {"egg_base": str(WORK)}},
)
