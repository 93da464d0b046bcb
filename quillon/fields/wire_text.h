#pragma once

#include <string>
#include <string_view>

#include <quillon/platform/api.h>
#include <quillon/platform/wide_string.h>
#include <quillon/sections/byte_view.h>

namespace quillon {

// Characters that were kept as they are on the wire, in the ANSI code page; those of the standard reading are
// UTF-8, whose malformed bytes became U+FFFD. Reports have them as they are.
class QUILLON_API WireText : public std::string {
 public:
  WireText() = default;
  // In the ANSI code page.
  explicit WireText(std::string ansi) : std::string(std::move(ansi)) {}
  // From UTF-8, in the standard reading.
  WireText(std::string_view bytes, Reading reading);
  // From a DVB character field (EN 300 468, annex A).
  static WireText from_dvb(std::string_view field);

  bool is_utf8() const { return is_utf8_; }
  // For text that is UTF-8.
  wide_string wide() const;

 private:
  bool is_utf8_ = false;
};

}  // namespace quillon
