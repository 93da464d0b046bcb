#pragma once

// What the faces of each class hold, found out on the case tables: each case, and what comes of it when one
// bit of it is another, is parsed, walked, reported, saved and loaded.

#include "tests/support/docs/shape.h"

#include <map>
#include <string>
#include <vector>

namespace quillon::test {

// Of a field, by its path in the walk: "event_infos/event/running_status".
struct FieldFacts {
  int width = 0;       // of a number, in bits, as the standard reading has it; 0 where it was not found out
  int kept_width = 0;  // as documents have it
  bool is_reported = false;
};

struct ClassFacts {
  Shape kept;      // its walk
  Shape standard;  // its walk in the standard reading
  Shape document;  // its element
  std::map<std::string, FieldFacts> fields;
};

// A row of the list of a family, which the elements of its loops follow.
struct DescriptorKind {
  int tag;
  std::string class_name;
  std::string accessor;
  std::string element;
  bool is_saved = true;
};

// A family of descriptor loops.
struct DescriptorFamily {
  std::string name;   // "dvb"
  std::string title;  // for people
  std::vector<DescriptorKind> kinds;
  std::vector<std::string> lists;  // families whose kinds it has too
};

struct TableKind {
  int first_id;
  int last_id;
  std::string streams;  // "any", "dvb" or "atsc"
  std::string class_name;
  std::string element;
  std::string family;  // of its descriptor loops
};

const std::vector<DescriptorFamily>& descriptor_families();
const std::vector<TableKind>& table_kinds();

// By the names of the classes. They are found out once, which takes seconds.
const std::map<std::string, ClassFacts>& observed();

// What bytes a kind without a class is.
inline const DescriptorKind kGeneralKind = {-1, "DescriptorGeneral", "general_descriptors",
                                            "general_descriptor"};
inline const DescriptorKind kUserPrivateKind = {-1, "DescriptorGeneral", "user_private_descriptors",
                                                "user_private_descriptor"};

}  // namespace quillon::test
