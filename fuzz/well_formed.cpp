#include "fuzz/well_formed.h"

#include <rapidjson/encodings.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>
#include <set>
#include <string>
#include <vector>

namespace quillon::fuzz {

namespace {

using rapidjson::SizeType;

// False from a function ends the parse with a failure.
class Counter : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, Counter> {
 public:
  JsonCount count;

  bool Default() {
    ++count.values;
    return true;
  }
  bool Key(const char* text, SizeType size, bool) { return keys_.back().emplace(text, size).second; }
  bool StartObject() {
    keys_.emplace_back();
    ++count.containers;
    return true;
  }
  bool EndObject(SizeType) {
    keys_.pop_back();
    return true;
  }
  bool StartArray() {
    ++count.containers;
    return true;
  }
  bool EndArray(SizeType) { return true; }

 private:
  std::vector<std::set<std::string>> keys_;
};

// Takes what the validation hands over.
struct Nowhere {
  void Put(char) {}
};

}  // namespace

bool is_utf8(std::string_view text) {
  rapidjson::MemoryStream in(text.data(), text.size());
  Nowhere out;
  while (in.Tell() < text.size())
    if (!rapidjson::UTF8<>::Validate(in, out)) return false;
  return in.Tell() == text.size();
}

std::optional<JsonCount> count_json(std::string_view text) {
  rapidjson::MemoryStream in(text.data(), text.size());
  rapidjson::Reader reader;
  Counter counter;
  if (!reader.Parse<rapidjson::kParseValidateEncodingFlag>(in, counter)) return {};
  return counter.count;
}

}  // namespace quillon::fuzz
