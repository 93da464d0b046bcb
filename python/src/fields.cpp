#include "python/src/fields.h"

#include "apps/quillon/text.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <datetime.h>
#include <string>

#include <quillon/fields/time.h>

namespace py = pybind11;

namespace quillon::python {

namespace {

PyObject* checked(PyObject* made) {
  if (!made) throw py::error_already_set();
  return made;
}

// The C interface of datetime, by a pointer of this file.
const PyDateTime_CAPI& datetimes() {
  if (!PyDateTimeAPI) PyDateTime_IMPORT;
  if (!PyDateTimeAPI) throw py::error_already_set();
  return *PyDateTimeAPI;
}

PyObject* new_str(std::string_view utf8) {
  return PyUnicode_DecodeUTF8(utf8.data(), static_cast<Py_ssize_t>(utf8.size()), "replace");
}

PyObject* new_none() {
  Py_RETURN_NONE;
}

PyObject* new_timedelta(int64_t seconds) {
  constexpr int64_t day = 86400;
  return datetimes().Delta_FromDelta(static_cast<int>(seconds / day), static_cast<int>(seconds % day), 0, 1,
                                     datetimes().DeltaType);
}

PyObject* new_datetime(int year, int month, int day, int hour, int minute, int second) {
  const PyDateTime_CAPI& api = datetimes();
  return api.DateTime_FromDateAndTime(year, month, day, hour, minute, second, 0, api.TimeZone_UTC,
                                      api.DateTimeType);
}

// A place for each of many texts, by where it is; those that share one take turns.
template <class Entry, size_t bits>
Entry& place_of(const char* text) {
  static Entry entries[size_t{1} << bits];
  const uint64_t mixed = static_cast<uint64_t>(reinterpret_cast<uintptr_t>(text)) * 0x9E3779B97F4A7C15;
  return entries[mixed >> (64 - bits)];
}

// The keys of a field, by its name, which is where it is as long as the program runs.
struct Keys {
  const char* name = nullptr;
  PyObject* key = nullptr;
  PyObject* meaning_key = nullptr;
};

const Keys& keys_of(const char* name) {
  Keys& keys = place_of<Keys, 12>(name);
  if (keys.name != name) {
    auto key = py::reinterpret_steal<py::object>(checked(PyUnicode_InternFromString(name)));
    PyObject* const meaning_key =
        checked(PyUnicode_InternFromString((std::string(name) + "_meaning").c_str()));
    Py_XDECREF(keys.key);
    Py_XDECREF(keys.meaning_key);
    keys = {name, key.release().ptr(), meaning_key};
  }
  return keys;
}

// A meaning as a string. Few are met often, and most of them at the same place; but what is there may change.
PyObject* new_meaning(const char* meaning) {
  struct Meaning {
    PyObject* string = nullptr;
    const char* text = "";
  };
  Meaning& last = place_of<Meaning, 10>(meaning);
  if (!last.string || std::strcmp(last.text, meaning) != 0) {
    auto string = py::reinterpret_steal<py::object>(checked(new_str(meaning)));
    const char* const text = PyUnicode_AsUTF8(string.ptr());
    if (!text) throw py::error_already_set();
    Py_XDECREF(last.string);
    last = {string.release().ptr(), text};
  }
  return Py_NewRef(last.string);
}

void set(PyObject* dict, PyObject* key, PyObject* value) {
  if (PyDict_SetItem(dict, key, value) != 0) throw py::error_already_set();
}

}  // namespace

py::str to_str(std::string_view utf8) {
  return py::reinterpret_steal<py::str>(checked(new_str(utf8)));
}

py::object to_datetime(std::chrono::sys_seconds time) {
  const auto day = std::chrono::floor<std::chrono::days>(time);
  const std::chrono::year_month_day date = day;
  const std::chrono::hh_mm_ss clock(time - day);
  return py::reinterpret_steal<py::object>(checked(new_datetime(
      static_cast<int>(date.year()), static_cast<int>(static_cast<unsigned>(date.month())),
      static_cast<int>(static_cast<unsigned>(date.day())), static_cast<int>(clock.hours().count()),
      static_cast<int>(clock.minutes().count()), static_cast<int>(clock.seconds().count()))));
}

py::object to_timedelta(int64_t seconds) {
  return py::reinterpret_steal<py::object>(checked(new_timedelta(seconds)));
}

py::dict DictFields::take() {
  py::dict taken = fields_;
  fields_ = py::dict();
  levels_.assign(1, {fields_.ptr(), Kind::record});
  return taken;
}

void DictFields::put(const char* name, PyObject* value) {
  const auto owned = py::reinterpret_steal<py::object>(checked(value));
  const Level& level = levels_.back();
  if (level.kind == Kind::record)
    set(level.container, keys_of(name).key, value);
  else if (PyList_Append(level.container, value) != 0)
    throw py::error_already_set();
}

void DictFields::number(const char* name, int64_t value, const char* meaning) {
  put(name, PyLong_FromLongLong(value));
  if (!meaning || levels_.back().kind != Kind::record) return;
  const auto text = py::reinterpret_steal<py::object>(new_meaning(meaning));
  set(levels_.back().container, keys_of(name).meaning_key, text.ptr());
}

void DictFields::real(const char* name, double value) {
  put(name, std::isfinite(value) ? PyFloat_FromDouble(value) : new_none());
}

void DictFields::text(const char* name, std::string_view utf8) {
  put(name, new_str(utf8));
}

void DictFields::bytes(const char* name, const uint8_t* data, size_t size) {
  put(name, PyBytes_FromStringAndSize(reinterpret_cast<const char*>(data), static_cast<Py_ssize_t>(size)));
}

void DictFields::time(const char* name, const DateTime& utc) {
  put(name, app::is_defined(utc)
                ? new_datetime(utc.year, utc.month, utc.day, utc.hour, utc.minute, utc.second)
                : new_none());
}

void DictFields::duration(const char* name, const Duration& value) {
  put(name, app::is_defined(value) ? new_timedelta(value.get_length().count()) : new_none());
}

void DictFields::begin_level(const char* name, PyObject* container, Kind kind) {
  put(name, container);
  levels_.push_back({container, kind});
}

void DictFields::begin(const char* name, const char*) {
  const bool is_descriptor = levels_.back().kind == Kind::descriptors;
  begin_level(name, PyDict_New(), Kind::record);
  if (!is_descriptor) return;
  const auto title = py::reinterpret_borrow<py::object>(keys_of(name).key);
  set(levels_.back().container, keys_of("descriptor").key, title.ptr());
}

void DictFields::begin_list(const char* name, size_t) {
  begin_level(name, PyList_New(0), std::strcmp(name, "descriptors") == 0 ? Kind::descriptors : Kind::list);
}

void DictFields::end() {
  levels_.pop_back();
}

}  // namespace quillon::python
