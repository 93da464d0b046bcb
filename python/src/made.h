#pragma once

#include <pybind11/pybind11.h>

#include <quillon/sections/psi_base.h>

namespace quillon::python {

class Reader;

// An object of a class may come from its __new__ alone. For its first use pybind11 takes memory in which
// nothing is made; here such an object is of the wrong type, Python's TypeError.
template <class Class>
struct MadeCaster : pybind11::detail::type_caster_base<Class> {
  bool load(pybind11::handle source, bool convert) {
    if (!pybind11::detail::type_caster_base<Class>::load(source, convert)) return false;
    auto* const instance = reinterpret_cast<pybind11::detail::instance*>(source.ptr());
    // One that is part of another object is not owned, and has no holder.
    return !instance->owned || instance->get_value_and_holder(this->typeinfo).holder_constructed();
  }
};

}  // namespace quillon::python

namespace pybind11::detail {

template <>
struct type_caster<quillon::python::Reader> : quillon::python::MadeCaster<quillon::python::Reader> {};
template <>
struct type_caster<quillon::DescriptorFailure> : quillon::python::MadeCaster<quillon::DescriptorFailure> {};

}  // namespace pybind11::detail
