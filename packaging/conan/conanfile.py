"""quillon for Conan 2. The source is the tree that this recipe is part of: conan create packaging/conan"""

import re
from pathlib import Path

from conan import ConanFile
from conan.errors import ConanInvalidConfiguration
from conan.tools.build import check_min_cppstd
from conan.tools.cmake import CMake, CMakeDeps, CMakeToolchain, cmake_layout
from conan.tools.files import copy, load, rmdir

required_conan_version = ">=2.0"


class Quillon(ConanFile):
    name = "quillon"
    description = "PSI/SI sections of MPEG-2 transport streams as typed objects"
    license = "MIT"
    topics = ("mpeg-ts", "dvb", "atsc", "psi-si", "epg")
    package_type = "library"
    settings = "os", "arch", "compiler", "build_type"
    options = {"shared": [True, False], "fPIC": [True, False], "isal": [True, False]}
    default_options = {"shared": False, "fPIC": True, "isal": True, "boost/*:header_only": True}

    @property
    def _top(self):
        return Path(self.recipe_folder).parent.parent

    def set_version(self):
        text = load(self, str(self._top / "quillon" / "version.h"))
        numbers = re.findall(r"^#define QUILLON_VERSION_(?:MAJOR|MINOR|PATCH) (\d+)", text, re.MULTILINE)
        self.version = ".".join(numbers)

    def export_sources(self):
        for pattern in ("CMakeLists.txt", "LICENSE", "cmake/*", "data/*", "quillon/*"):
            copy(self, pattern, str(self._top), self.export_sources_folder)

    def config_options(self):
        if self.settings.os == "Windows":
            del self.options.fPIC

    def configure(self):
        if self.options.shared:
            self.options.rm_safe("fPIC")

    def layout(self):
        cmake_layout(self)

    def requirements(self):
        # Headers of its own sources alone.
        self.requires("boost/[>=1.74 <2]", visible=False)
        if self.settings.os != "Windows":
            self.requires("expat/[>=2.4 <3]")
        if self.options.isal:
            self.requires("isa-l/[>=2.30 <3]")

    def build_requirements(self):
        self.tool_requires("cmake/[>=3.25 <4]")

    def validate(self):
        check_min_cppstd(self, 20)
        if str(self.settings.compiler) not in ("gcc", "clang"):
            raise ConanInvalidConfiguration("quillon is compiled by GCC or Clang; on Windows by MinGW-w64")

    def generate(self):
        toolchain = CMakeToolchain(self)
        toolchain.user_presets_path = False  # the tree has presets of its own
        for part in ("TESTS", "BUILD_APPS"):
            toolchain.cache_variables[f"QUILLON_{part}"] = False
        toolchain.cache_variables["QUILLON_USE_ISAL"] = bool(self.options.isal)
        # Asked for and not found is an error.
        toolchain.cache_variables["CMAKE_REQUIRE_FIND_PACKAGE_isal"] = bool(self.options.isal)
        toolchain.generate()
        deps = CMakeDeps(self)
        # As quillon's CMake files name them.
        for package, name, target in (("expat", "EXPAT", "EXPAT::EXPAT"), ("isa-l", "isal", "isal::isal")):
            deps.set_property(package, "cmake_find_mode", "both")
            deps.set_property(package, "cmake_file_name", name)
            deps.set_property(package, "cmake_target_name", target)
        deps.generate()

    def build(self):
        cmake = CMake(self)
        cmake.configure()
        cmake.build()

    def package(self):
        copy(self, "LICENSE", self.source_folder, str(Path(self.package_folder) / "licenses"))
        CMake(self).install()
        # Conan makes these for each consumer.
        for folder in ("cmake", "pkgconfig"):
            rmdir(self, str(Path(self.package_folder) / "lib" / folder))

    def package_info(self):
        self.cpp_info.set_property("cmake_file_name", "quillon")
        self.cpp_info.set_property("cmake_target_name", "quillon::quillon")
        self.cpp_info.set_property("pkg_config_name", "quillon")
        self.cpp_info.libs = ["quillon"]
        if self.settings.os == "Windows":
            if self.options.shared:
                return
            self.cpp_info.defines = ["QUILLON_STATIC"]
            self.cpp_info.system_libs = ["ole32", "oleaut32", "uuid"]
