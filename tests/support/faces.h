#pragma once

// The faces of an object as texts, for comparison with what is written down.

#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <utility>

#include <quillon/sections/error.h>
#include <quillon/xml/document.h>

namespace quillon::test {

// dump_state on a fresh stream.
template <class T>
std::string report(const T& object) {
  std::ostringstream stream;
  object.dump_state(stream);
  return stream.str();
}

// The document without its declaration and line ends: "<d a="1"><list/></d>", items indented not at all.
std::string plain(const xml::Document& document);

// What SaveSection writes on an element named `name`.
template <class T>
std::string saved(const T& object, const char* name = "d") {
  xml::Document document;
  EXPECT_TRUE(object.SaveSection(document.dom(), document.create_root(name)));
  return plain(document);
}

// A descriptor or record loaded from text.
template <class T>
T loaded(const std::string& text) {
  const xml::Document document = xml::Document::from_text(text);
  T out;
  out.Parse(document.root());
  return out;
}

// A table loaded from text.
template <class T>
T loaded_table(const std::string& text) {
  const xml::Document document = xml::Document::from_text(text);
  T out;
  out.ParseDOM(document.root());
  return out;
}

// What `action` throws: "code: text", or "nothing".
template <class Action>
std::string failure(Action action) {
  try {
    action();
  } catch (const error& e) {
    return std::to_string(e.get_code()) + ": " + e.what();
  }
  return "nothing";
}

}  // namespace quillon::test
