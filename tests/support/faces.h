#pragma once

// The faces of an object as texts, for comparison with what is written down.

#include "tests/support/bytes.h"

#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <quillon/sections/error.h>
#include <quillon/xml/document.h>

namespace quillon::test {

// dump_state on a fresh stream. Where memory runs out the stream throws: it would cut the report otherwise.
template <class T>
std::string report(const T& object) {
  std::ostringstream stream;
  stream.exceptions(std::ios::badbit);
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

// What a class throws for bytes.
template <class T>
std::string refusal(const Bytes& bytes) {
  return failure([&] { T(view(bytes)); });
}

template <class T>
std::string saved_after_reset(const Bytes& bytes) {
  T object(view(bytes));
  object.reset();
  return saved(object);
}

// The elements of a saved loop.
template <class Loop>
std::vector<std::string> saved_names(const Loop& loop) {
  xml::Document document;
  void* const root = document.create_root("d");
  EXPECT_TRUE(loop._save_descriptors(document.dom(), root));
  const auto lists = document.children(root);
  EXPECT_EQ(lists.size(), 1u);
  EXPECT_EQ(document.name(lists.at(0)), "descriptors");
  std::vector<std::string> out;
  for (void* const child : document.children(lists.at(0))) out.push_back(document.name(child));
  return out;
}

template <class Descriptor>
std::vector<int> tags(const std::vector<Descriptor>& descriptors) {
  std::vector<int> out;
  for (const Descriptor& d : descriptors) out.push_back(d.get_descriptor_tag());
  return out;
}

}  // namespace quillon::test
