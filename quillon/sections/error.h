#pragma once

#include <cstdint>
#include <exception>
#include <stdexcept>

#include <quillon/platform/api.h>

namespace quillon {

// The one exception type of the library, thrown and caught by value. Copies share the text: a handler that
// takes one by value needs no memory.
class QUILLON_API error : public std::exception {
 public:
  enum errorcode_enum {
    bad_loop_unit = 0,    // a length does not fit the repeat unit of the loop it bounds
    bad_value = 2,        // a bit of the section header is wrong, or a body is shorter than its loop needs
    length_mismatch = 3,  // a length inside a body does not add up; the text names the place
  };

  // A null text is the empty one.
  error(const char* text);
  error(errorcode_enum code, unsigned int extra);
  error(errorcode_enum code);
  error(int code);
  error(errorcode_enum code, const char* text);

  const char* what() const noexcept override { return message_.what(); }

  // The number of the failure, -1 where it has only a text.
  int get_code() const { return code_; }
  // A second value, 0xFFFFFFFF where there is none: of a wrong header bit, the low 32 bits of its address.
  uint32_t get_extra() const { return extra_; }

 private:
  int code_;
  uint32_t extra_ = 0xFFFFFFFF;
  std::runtime_error message_;
};

}  // namespace quillon
