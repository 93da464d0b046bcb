"""Carries out the recipe of packaging/conan without Conan: modules of the names that it imports do what is documented of
them, with the packages of the system for those that it requires.

    conan_stand_in.py FOLDER VERSION
"""

import fnmatch
import importlib.util
import os
import shutil
import subprocess
import sys
import types
from pathlib import Path

TOP = Path(__file__).resolve().parent.parent.parent
# The system's, by the names of Conan's: what its packages give a consumer to find and to link.
SYSTEM = {"expat": ("EXPAT", "EXPAT::EXPAT"), "isa-l": ("isal", "isal::isal"), "boost": ("Boost", "Boost::headers")}


class InvalidConfiguration(Exception):
    pass


class Values:
    """Options or settings: attributes, of which none but these may be asked for."""

    def __init__(self, values):
        vars(self).update(values)

    def rm_safe(self, name):
        vars(self).pop(name, None)


class CppInfo:
    def __init__(self):
        self.properties, self.libs, self.defines, self.system_libs = {}, [], [], []

    def set_property(self, name, value):
        self.properties[name] = value


class ConanFile:
    options, default_options = {}, {}
    tested = None  # that which a test is of

    def __init__(self, folder, settings=(), options=()):
        self.recipe_folder = str(folder)
        self.settings = Values({"os": "Linux", "arch": "x86_64", "compiler": "gcc", "build_type": "Release", **dict(settings)})
        chosen = {name: value for name, value in self.default_options.items() if "/" not in name} | dict(options)
        assert all(value in self.options[name] for name, value in chosen.items()), chosen
        self.options = Values(chosen)
        self.required, self.tools, self.cpp_info, self.version = {}, {}, CppInfo(), None

    def requires(self, reference, **traits):
        self.required[reference.partition("/")[0]] = traits

    def tool_requires(self, reference):
        self.tools[reference.partition("/")[0]] = reference

    def run(self, command, env=None):
        assert env in (None, "conanrun")
        self.said = subprocess.run(command, shell=True, check=True, capture_output=True, text=True).stdout


class CMakeToolchain:
    def __init__(self, recipe):
        self.recipe, self.cache_variables, self.user_presets_path = recipe, {}, "CMakeUserPresets.json"

    def generate(self):
        variables = self.recipe.variables
        if "shared" in vars(self.recipe.options):
            variables["BUILD_SHARED_LIBS"] = self.recipe.options.shared
        if "fPIC" in vars(self.recipe.options):
            variables["CMAKE_POSITION_INDEPENDENT_CODE"] = self.recipe.options.fPIC
        variables.update(self.cache_variables)


class CMakeDeps:
    def __init__(self, recipe):
        self.recipe, self.properties = recipe, {}

    def set_property(self, package, name, value):
        self.properties[package, name] = value

    def generate(self):
        for package in self.recipe.required:
            if package in SYSTEM and package != "boost":
                name, target = SYSTEM[package]
                assert self.properties[package, "cmake_file_name"] == name, package
                assert self.properties[package, "cmake_target_name"] == target, package
        if self.recipe.tested:
            write_package(self.recipe.tested, Path(self.recipe.build_folder) / "generators")
            self.recipe.variables["CMAKE_PREFIX_PATH"] = Path(self.recipe.build_folder) / "generators"


def write_package(made, folder):
    """The CMake package that Conan makes for consumers, of what the recipe says of its own."""
    name, target = (made.cpp_info.properties[f"cmake_{kind}_name"] for kind in ("file", "target"))
    static = not made.options.shared
    folder.mkdir(parents=True, exist_ok=True)
    lines = ["list(APPEND CMAKE_MODULE_PATH %s)" % (TOP / "cmake")]
    linked = [SYSTEM[package] for package, traits in made.required.items() if static and traits.get("visible", True)]
    lines += [f"find_package({package} REQUIRED)" for package, _ in linked]
    place = Path(made.package_folder)
    lines += [f"add_library({target} INTERFACE IMPORTED)"]
    lines += [f"target_include_directories({target} INTERFACE {place}/include)"]
    lines += [f"target_link_directories({target} INTERFACE {place}/lib)"]
    lines += [f"target_link_libraries({target} INTERFACE {' '.join(made.cpp_info.libs + [t for _, t in linked])})"]
    (folder / f"{name}-config.cmake").write_text("\n".join(lines) + "\n")


class CMake:
    def __init__(self, recipe):
        self.recipe = recipe

    def configure(self):
        recipe = self.recipe
        variables = {name: {True: "ON", False: "OFF"}.get(value, value) for name, value in recipe.variables.items()}
        # The flags of this tree's own builds, so that the compiler's cache serves.
        variables |= {"CMAKE_BUILD_TYPE": recipe.settings.build_type, "QUILLON_WERROR": "ON", "CMAKE_INSTALL_LIBDIR": "lib"}
        call("cmake", "-S", recipe.source_folder, "-B", recipe.build_folder, "-G", "Ninja", "--no-warn-unused-cli",
             *(f"-D{name}={value}" for name, value in variables.items()))

    def build(self):
        call("cmake", "--build", self.recipe.build_folder)

    def install(self):
        call("cmake", "--install", self.recipe.build_folder, "--prefix", self.recipe.package_folder)


def call(*command):
    done = subprocess.run([str(part) for part in command], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    if done.returncode:
        sys.exit(f"{command}\n{done.stdout}")


def cmake_layout(recipe):
    recipe.build_folder = str(Path(recipe.source_folder) / "build" / recipe.settings.build_type)
    recipe.cpp = types.SimpleNamespace(build=types.SimpleNamespace(bindir=recipe.build_folder))


def copy(recipe, pattern, src, dst):
    for file in Path(src).rglob("*"):
        name = str(file.relative_to(src))
        if file.is_file() and fnmatch.fnmatch(name, pattern):
            place = Path(dst) / name
            place.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy2(file, place)


def check_min_cppstd(recipe, standard):
    assert standard == 20


def module(name, **members):
    sys.modules[name] = types.ModuleType(name)
    vars(sys.modules[name]).update(members)


module("conan", ConanFile=ConanFile)
module("conan.errors", ConanInvalidConfiguration=InvalidConfiguration)
module("conan.tools")
module("conan.tools.build", check_min_cppstd=check_min_cppstd, can_run=lambda recipe: True)
module("conan.tools.cmake", CMake=CMake, CMakeDeps=CMakeDeps, CMakeToolchain=CMakeToolchain, cmake_layout=cmake_layout)
module("conan.tools.files", copy=copy, load=lambda recipe, file: Path(file).read_text(),
       rmdir=lambda recipe, folder: shutil.rmtree(folder, ignore_errors=True))


def recipe_of(folder):
    spec = importlib.util.spec_from_file_location("recipe", folder / "conanfile.py")
    loaded = importlib.util.module_from_spec(spec)
    spec.loader.exec_module(loaded)
    (found,) = (c for c in vars(loaded).values() if isinstance(c, type) and issubclass(c, ConanFile) and c is not ConanFile)
    return found


def configured(recipe, **choices):
    settings = {name: choices.pop(name) for name in list(choices) if name in ("os", "compiler")}
    made = recipe(TOP / "packaging" / "conan", settings, choices)
    made.config_options()
    made.configure()
    made.requirements()
    made.build_requirements()
    made.validate()
    return made


def create(recipe, folder, version, **choices):
    shutil.rmtree(folder, ignore_errors=True)
    made = configured(recipe, **choices)
    made.set_version()
    assert made.version == version, made.version
    made.export_sources_folder = made.source_folder = str(folder)
    made.package_folder = str(folder / "package")
    made.export_sources()
    made.recipe_folder = "nowhere"  # from now on the recipe is alone with what it exported
    made.layout()
    made.variables = {}
    made.generate()
    made.build()
    made.package()
    made.package_info()
    installed = {str(file.relative_to(made.package_folder)) for file in Path(made.package_folder).rglob("*") if file.is_file()}
    library = "lib/libquillon.so" if made.options.shared else "lib/libquillon.a"
    assert {library, "licenses/LICENSE", "include/quillon/quillon.h"} <= installed, installed
    assert not any(name.endswith((".cmake", ".pc")) for name in installed), installed

    test = recipe_of(TOP / "packaging" / "conan" / "test_package")
    test.tested = made
    consumer = test(TOP / "packaging" / "conan" / "test_package")
    consumer.tested_reference_str = f"quillon/{version}"
    consumer.requirements()
    assert list(consumer.required) == ["quillon"]
    consumer.source_folder = consumer.recipe_folder
    consumer.layout()
    consumer.build_folder = consumer.cpp.build.bindir = str(folder / "consumer")
    consumer.variables = {}
    assert set(consumer.generators) == {"CMakeDeps", "CMakeToolchain"}
    CMakeToolchain(consumer).generate()
    CMakeDeps(consumer).generate()
    consumer.build()
    os.environ["LD_LIBRARY_PATH"] = str(folder / "package" / "lib")
    consumer.test()
    assert consumer.said.endswith("fra: Le café\n"), consumer.said


def main(folder, version):
    recipe = recipe_of(TOP / "packaging" / "conan")
    assert set(configured(recipe).required) == {"boost", "expat", "isa-l"}
    assert set(configured(recipe, isal=False).required) == {"boost", "expat"}
    assert set(configured(recipe, os="Windows").required) == {"boost", "isa-l"}
    assert not hasattr(configured(recipe, shared=True).options, "fPIC")
    try:
        configured(recipe, os="Windows", compiler="msvc")
        sys.exit("the recipe takes a compiler that quillon does not")
    except InvalidConfiguration:
        pass
    for shared in (False, True):
        create(recipe, Path(folder).resolve() / ("shared" if shared else "static"), version, shared=shared)


main(*sys.argv[1:])
