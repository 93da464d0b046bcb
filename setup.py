"""Builds the Python package: CMake makes the compiled part, in the folder that setuptools has for it."""

import os
import re
import shlex
import shutil
import subprocess
import sys
from pathlib import Path

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

TOP = Path(__file__).parent.resolve()


def version():
    text = (TOP / "quillon" / "version.h").read_text()
    return ".".join(re.findall(r"^#define QUILLON_VERSION_(?:MAJOR|MINOR|PATCH) (\d+)", text, re.MULTILINE))


class BuildByCMake(build_ext):
    def build_extension(self, ext):
        folder = Path(self.build_temp).resolve()
        configure = ["cmake", "-S", str(TOP), "-B", str(folder)]
        if shutil.which("ninja"):
            configure += ["-G", "Ninja"]
        configure += [f"-DQUILLON_{part}=OFF" for part in ("TESTS", "BUILD_APPS", "INSTALL")]
        configure += ["-DQUILLON_PYTHON=ON", f"-DPython_EXECUTABLE={sys.executable}"]
        configure += ["-DCMAKE_BUILD_TYPE=Release", "-DCMAKE_UNITY_BUILD=ON"]
        try:
            import pybind11

            configure.append(f"-Dpybind11_DIR={pybind11.get_cmake_dir()}")
        except ImportError:
            pass  # CMake finds the system's
        configure += shlex.split(os.environ.get("CMAKE_ARGS", ""))
        subprocess.run(configure, check=True)
        subprocess.run(["cmake", "--build", str(folder), "--target", "quillon_python"], check=True)
        (made,) = (folder / "python" / "quillon").glob("_quillon*.so")
        place = Path(self.get_ext_fullpath(ext.name))
        place.parent.mkdir(parents=True, exist_ok=True)
        shutil.copy2(made, place)


setup(
    version=version(),
    ext_modules=[Extension("quillon._quillon", sources=[])],
    cmdclass={"build_ext": BuildByCMake},
)
