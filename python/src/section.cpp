#include "python/src/section.h"

#include "apps/quillon/text.h"
#include "python/src/convert.h"
#include "python/src/fields.h"
#include "python/src/made.h"

#include <pybind11/stl.h>
#include <span>
#include <string>

#include <quillon/sections/section_size.h>

namespace py = pybind11;

namespace quillon::python {

namespace {

StreamSection head_of(const StreamSection& section, const std::vector<uint8_t>& bytes) {
  StreamSection head = section;
  head.bytes = bytes.data();
  return head;
}

Section* section_of(PyObject* self) {
  auto* const instance = reinterpret_cast<py::detail::instance*>(self);
  return static_cast<Section*>(py::detail::values_and_holders(instance).begin()->value_ptr());
}

// A dict of fields is its user's, who may put the section itself into it.
void collect_cycles(PyHeapTypeObject* heap) {
  PyTypeObject& type = heap->ht_type;
  type.tp_flags |= Py_TPFLAGS_HAVE_GC;
  type.tp_traverse = [](PyObject* self, visitproc visit, void* arg) {
    Py_VISIT(Py_TYPE(self));
    if (Section* const section = section_of(self)) Py_VISIT(section->held().ptr());
    return 0;
  };
  type.tp_clear = [](PyObject* self) {
    if (Section* const section = section_of(self)) section->held() = py::object();
    return 0;
  };
  type.tp_new = [](PyTypeObject*, PyObject*, PyObject*) -> PyObject* {
    PyErr_SetString(PyExc_TypeError, "sections are made by open, Reader and parse");
    return nullptr;
  };
}

std::unique_ptr<Section> parse(const py::object& data, const std::string& standard,
                               const std::string& reading) {
  const Bytes bytes(data);
  const std::span<const uint8_t> section = bytes.get();
  const Standard whose = standard_of(standard);
  const Reading how = reading_of(reading);
  if (section.size() < 3) throw error("a section has 3 bytes at least");
  const size_t size = section_size(section.data());
  if (size > section.size()) throw error("section is shorter than its section_length");
  std::unique_ptr<Section> parsed;
  {
    const py::gil_scoped_release unlocked;
    SectionReader reader(
        [&](const StreamSection& head) {
          parsed = std::make_unique<Section>(head, std::nullopt, whose, how);
        },
        {.standard = whose});
    reader.push_section(section.data(), size);
  }
  if (parsed->refusal) throw *parsed->refusal;
  if (!parsed->element) throw error(("no table has the id " + app::hex(section[0], 2)).c_str());
  return parsed;
}

// What only long sections have.
std::optional<int> of_long(const Section& section, int value) {
  return section.head.is_long() ? std::optional(value) : std::nullopt;
}

std::string text_of(const Section& section) {
  const StreamSection& head = section.head;
  const std::string id = app::hex(static_cast<unsigned>(head.table_id()), 2);
  std::string text = "<quillon.Section ";
  text += section.element ? section.element : "without table";
  text += " table_id=" + id;
  if (head.pid >= 0) text += " pid=" + app::pid_text(head.pid);
  text += " packet=" + std::to_string(head.packet + 1);
  text += " size=" + std::to_string(head.size);
  if (section.refusal) text += " refused";
  return text + ">";
}

}  // namespace

Section::Section(const StreamSection& section, std::optional<double> at, Standard standard, Reading reading)
    : bytes(section.bytes, section.bytes + section.size), head(head_of(section, bytes)), time(at) {
  std::unique_ptr<AnyTable> table = AnyTable::for_table_id(section.table_id(), standard);
  if (!table) return;
  element = table->element();
  table->set_tolerant(true);
  table->set_reading(reading);
  try {
    table->Parse(bytes.data(), bytes.size(), false);
  } catch (const error& e) {
    refusal = e;
    return;
  }
  failures = table->get_descriptor_failures();
  table_ = std::move(table);
}

py::dict Section::fields() {
  if (refusal) throw *refusal;
  if (!fields_) {
    // Python may run other code at any allocation, and that may ask for the same fields.
    const std::shared_ptr<const AnyTable> table = table_;
    DictFields made;
    if (table) table->walk(made);
    if (!fields_) fields_ = made.take();
    table_.reset();
  }
  return fields_;
}

void define_section(py::module_& module) {
  py::class_<DescriptorFailure>(module, "DescriptorFailure",
                                "A descriptor that could not be read, and is kept as its bytes.")
      .def_readonly("tag", &DescriptorFailure::tag, "The descriptor's tag.")
      .def_readonly("offset", &DescriptorFailure::offset, "Where it begins in the section's body.")
      .def_property_readonly(
          "text", [](const DescriptorFailure& f) { return to_str(app::failure_text(f.text, f.code)); },
          "Why it was refused.")
      .def_property_readonly(
          "code",
          [](const DescriptorFailure& f) { return f.code < 0 ? std::nullopt : std::optional(f.code); },
          "The failure's number; None where it has only a text.")
      .def("__repr__", [](const DescriptorFailure& f) {
        return "<quillon.DescriptorFailure tag=" + app::hex(static_cast<unsigned>(f.tag), 2) + " \"" +
               app::visible(app::failure_text(f.text, f.code)) + "\">";
      });

  py::class_<Section>(module, "Section", py::is_final(), py::custom_type_setup(collect_cycles),
                      "A section of a stream, with its bytes and the fields that they hold.")
      .def_property_readonly(
          "pid", [](const Section& s) { return s.head.pid < 0 ? std::nullopt : std::optional(s.head.pid); },
          "The PID that carried it; None in a chain of bare sections.")
      .def_property_readonly(
          "packet", [](const Section& s) { return s.head.packet + 1; },
          "The packet that completed it, counted from 1 as the program counts; in a chain the section.")
      .def_readonly("time", &Section::time,
                    "Seconds by the stream's clock since it began to count; None before it does.")
      .def_readonly("table", &Section::element,
                    "The name of its table, \"eit\"; None where no table is known by its id.")
      .def_property_readonly(
          "table_id", [](const Section& s) { return s.head.table_id(); }, "The first byte.")
      .def_property_readonly(
          "extension", [](const Section& s) { return of_long(s, s.head.extension()); },
          "table_id_extension: the service of an EIT, the program of a PMT; None of a short section.")
      .def_property_readonly(
          "version", [](const Section& s) { return of_long(s, s.head.version()); },
          "version_number, 0 to 31; None of a short section.")
      .def_property_readonly(
          "section_number", [](const Section& s) { return of_long(s, s.head.section_number()); },
          "Its number in the table; None of a short section.")
      .def_property_readonly(
          "last_section_number", [](const Section& s) { return of_long(s, s.head.last_section_number()); },
          "The number of the table's last section; None of a short section.")
      .def_property_readonly(
          "is_current", [](const Section& s) { return s.head.is_current(); },
          "True if it applies now, False if it is the next to do so.")
      .def_property_readonly(
          "crc_ok",
          [](const Section& s) { return s.head.has_crc ? std::optional(s.head.crc_ok) : std::nullopt; },
          "Whether its CRC is right; None where it has none.")
      .def_property_readonly(
          "repeated", [](const Section& s) { return s.head.repeated; },
          "Whether the section that was last in its place had the same bytes.")
      .def_property_readonly(
          "bytes",
          [](const Section& s) {
            return py::bytes(reinterpret_cast<const char*>(s.bytes.data()), s.bytes.size());
          },
          "The whole section, from table_id to CRC.")
      .def_property_readonly(
          "fields", &Section::fields,
          "Every field by its name: a dict of int, float, str, bytes, datetime, timedelta,\n"
          "None, dicts and lists, made when it is first asked for. Names and order are those\n"
          "of the lines of `quillon json`: the text of a coded value is beside it, under its\n"
          "name and \"_meaning\". Empty where no table is known by the id. Raises Error if the\n"
          "section was refused.")
      .def_property_readonly(
          "error",
          [](const Section& s) { return s.refusal ? error_object(*s.refusal) : py::object(py::none()); },
          "Why the section was refused, as an Error; None if it was read.")
      .def_readonly("failures", &Section::failures,
                    "The descriptors that could not be read, in a section that could.")
      .def("__repr__", &text_of);

  module.def(
      "parse", &parse, py::arg("section"), py::kw_only(), py::arg("standard") = "dvb",
      py::arg("reading") = "standard",
      "Reads one section from its bytes, those past its end left out.\n\n"
      "standard is \"dvb\" or \"atsc\": whose tables the ids mean. reading is \"standard\" or \"kept\".\n"
      "Raises Error if the section is refused, or no table is known by its id.");
}

}  // namespace quillon::python
