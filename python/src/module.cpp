#include "python/src/convert.h"
#include "python/src/reader.h"
#include "python/src/section.h"

#include <exception>

#include <quillon/report/registries.h>
#include <quillon/sections/error.h>
#include <quillon/version.h>

namespace py = pybind11;

PYBIND11_MODULE(_quillon, module) {
  module.doc() = "What of quillon is compiled; import quillon.";
  py::register_exception_translator([](std::exception_ptr thrown) {
    try {
      if (thrown) std::rethrow_exception(thrown);
    } catch (const quillon::error& e) {
      const py::object error = quillon::python::error_object(e);
      PyErr_SetObject(py::type::of(error).ptr(), error.ptr());
    }
  });
  quillon::init();  // the names of identifiers
  quillon::python::define_section(module);
  quillon::python::define_reader(module);
  module.attr("__version__") = quillon::version();
}
