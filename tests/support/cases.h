#pragma once

// The case tables: wire vectors of every descriptor class with the faces that they must have. One table
// serves the unit tests, the loops that cut and damage every case, and the fuzzers' first corpus.

#include "tests/support/bytes.h"
#include "tests/support/faces.h"
#include "tests/support/walk.h"

#include <string>
#include <vector>

#include <quillon/sections/byte_view.h>

namespace quillon::test {

enum class Family { dvb, atsc, appsignal, notification };

struct DescriptorCase {
  std::string name;  // the class, and what the vector shows
  Family family;
  Bytes bytes;
  std::string report;    // of dump_state on a fresh stream, the tag line included
  std::string xml;       // of SaveSection on an element "d"
  std::string reloaded;  // of a save after a load of `xml`; the same where the class loses nothing

  // What can be done with the class.
  std::string (*report_of)(ByteView);
  std::string (*saved_of)(ByteView);
  std::string (*resaved_of)(const std::string& xml);
  std::string (*report_of_loaded)(const std::string& xml);
  bool (*save_to)(ByteView, void* document, void* node);
  void (*load_from)(void* node);
  void (*walk_to)(ByteView, FieldSink& sink);  // in the view's reading
  void (*exercise)(ByteView);  // every face, whatever comes of it; throws error as the class does
};

// A case of class T. `reloaded` is left out where a load gives back what was saved.
template <class T>
DescriptorCase case_of(std::string name, Family family, Bytes bytes, std::string report, std::string xml,
                       std::string reloaded = {}) {
  if (reloaded.empty()) reloaded = xml;
  return {std::move(name),
          family,
          std::move(bytes),
          std::move(report),
          std::move(xml),
          std::move(reloaded),
          [](ByteView view) { return test::report(T(view)); },
          [](ByteView view) { return saved(T(view)); },
          [](const std::string& text) { return saved(loaded<T>(text)); },
          [](const std::string& text) { return test::report(loaded<T>(text)); },
          [](ByteView view, void* document, void* node) { return T(view).SaveSection(document, node); },
          [](void* node) { T().Parse(node); },
          [](ByteView view, FieldSink& sink) { T(view).walk(sink, view.reading()); },
          [](ByteView view) {
            T object(view);
            test::report(object);
            const std::string text = saved(object);
            saved(loaded<T>(text));
            walked(object);
            T copy = object;
            copy.reset();
            object = std::move(copy);
          }};
}

// The tables register themselves: `static const Cases cases = {case_of<...>(...), ...};`
class Cases {
 public:
  Cases(std::initializer_list<DescriptorCase> cases);
  static const std::vector<DescriptorCase>& all();
};

}  // namespace quillon::test
