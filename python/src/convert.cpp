#include "python/src/convert.h"

#include "apps/quillon/text.h"
#include "python/src/fields.h"

namespace py = pybind11;

namespace quillon::python {

Bytes::Bytes(const py::object& data) {
  if (PyBytes_CheckExact(data.ptr())) {
    owner_ = data;
    bytes_ = {reinterpret_cast<const uint8_t*>(PyBytes_AS_STRING(data.ptr())),
              static_cast<size_t>(PyBytes_GET_SIZE(data.ptr()))};
    return;
  }
  Py_buffer view;
  if (PyObject_GetBuffer(data.ptr(), &view, PyBUF_SIMPLE) != 0) throw py::error_already_set();
  const auto* const begin = static_cast<const uint8_t*>(view.buf);
  try {
    copy_.assign(begin, begin + view.len);
  } catch (...) {
    PyBuffer_Release(&view);
    throw;
  }
  PyBuffer_Release(&view);
  bytes_ = copy_;
}

Standard standard_of(const std::string& name) {
  if (name == "dvb") return Standard::dvb;
  if (name == "atsc") return Standard::atsc;
  throw py::value_error("no standard is called \"" + name + "\"; there are \"dvb\" and \"atsc\"");
}

Reading reading_of(const std::string& name) {
  if (name == "standard") return Reading::standard;
  if (name == "kept") return Reading::kept;
  throw py::value_error("no reading is called \"" + name + "\"; there are \"standard\" and \"kept\"");
}

py::object error_object(const error& e) {
  const py::object code = e.get_code() < 0 ? py::object(py::none()) : py::int_(e.get_code());
  return type_named("Error")(to_str(app::failure_text(e.what(), e.get_code())), code);
}

py::object type_named(const char* name) {
  return py::module_::import("quillon._types").attr(name);
}

}  // namespace quillon::python
