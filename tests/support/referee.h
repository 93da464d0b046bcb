#pragma once

#include "tests/support/bytes.h"

#include <memory>
#include <optional>
#include <string>

namespace quillon::test {

// The system's own converter from a table, by the name that the C libraries have for it, to UTF-8.
class Referee {
 public:
  explicit Referee(const std::string& table);
  ~Referee();

  bool is_there() const { return converter_ != nullptr; }
  // Nothing where it refuses the bytes, or has no character for them.
  std::optional<std::string> read(const Bytes& bytes) const;
  // What the system has of an edition before the present one, of ISO 8859-`part`.
  static bool is_older(int part, int code);

 private:
  struct Converter;
  std::unique_ptr<Converter> converter_;
};

}  // namespace quillon::test
