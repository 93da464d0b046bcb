#pragma once

// Wire forms read in either way.

#include "tests/support/bytes.h"
#include "tests/support/faces.h"
#include "tests/support/walk.h"

#include <string>

#include <quillon/report/registries.h>
#include <quillon/sections/byte_view.h>

namespace quillon::test {

inline ByteView view(const Bytes& bytes, Reading reading) {
  return ByteView(bytes.data(), bytes.size(), reading);
}

// The walk of an object as that reading has it.
template <class T>
std::string walked(const T& object, Reading reading) {
  WalkText text;
  object.walk(text, reading);
  return text.take();
}

// The fields of a descriptor after its tag and length, or its failure. Identifiers have their names.
template <class Descriptor>
std::string fields(const Bytes& bytes, Reading reading) {
  init();
  std::string all;
  const std::string refused = failure([&] { all = walked(Descriptor(view(bytes, reading)), reading); });
  if (refused != "nothing") return refused + "\n";
  const std::string length = "descriptor_length: " + std::to_string(bytes[1]) + "\n";
  return all.substr(all.find(length) + length.size());
}

// A table that has parsed a section.
template <class Table>
Table parsed(const Bytes& section, Reading reading, bool keep_raw = false) {
  Table out;
  out.set_reading(reading);
  out.Parse(section.data(), section.size(), keep_raw);
  return out;
}

// The fields of a table after its header, or its failure. Identifiers have their names.
template <class Table>
std::string body_of(const Bytes& section, Reading reading) {
  init();
  std::string all;
  const std::string refused = failure([&] {
    WalkText text;
    parsed<Table>(section, reading).walk(text);
    all = text.take();
  });
  if (refused != "nothing") return refused + "\n";
  const std::string last = all.find("crc32: ") != std::string::npos ? "crc32: " : "section_length: ";
  return all.substr(all.find('\n', all.find(last)) + 1);
}

}  // namespace quillon::test
