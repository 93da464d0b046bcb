#pragma once

#include "apps/quillon/output.h"

#include <cstdint>
#include <string>
#include <vector>

#include <quillon/platform/wide_string.h>

namespace quillon {

class ATSCMultipleStringStructure;
class AtscLoop;

namespace app {

// UTF-8 with blanks in the place of the characters that would steer a terminal.
std::string shown(const char* ansi);
std::string shown(const wide_string& text);

// "4, ATSC (8 VSB)"; the number alone if the text is empty.
std::string coded(int code, const char* text);
std::string yes_no(int flag);
// "0x0012"
std::string hex4(int value);
// "7.1"
std::string channel_number(int major, int minor);

// Lines of UTF-8, indented by two blanks a level.
class Details {
 public:
  // Lines are one level deeper as long as it lives.
  class Level {
   public:
    explicit Level(Details& details) : details_(details) { ++details_.depth_; }
    ~Level() { --details_.depth_; }
    Level(const Level&) = delete;
    Level& operator=(const Level&) = delete;

   private:
    Details& details_;
  };

  std::string take() { return std::move(text_); }

  void line(const std::string& text);
  void line(const char* name, const std::string& value);
  void line(const char* name, int value);
  // A line a language: `name (eng): Hello`.
  void strings(const char* name, const ATSCMultipleStringStructure& text);
  // Each descriptor: the tag line of its report, then its members.
  void descriptors(const AtscLoop& loop);

 private:
  std::string text_;
  size_t depth_ = 0;
};

}  // namespace app
}  // namespace quillon
