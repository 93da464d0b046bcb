#include <quillon/fields/dvb_text.h>
#include <quillon/fields/wire_text.h>
#include <quillon/platform/code_page.h>
#include <quillon/platform/utf8.h>

namespace quillon {

WireText::WireText(std::string_view bytes, Reading reading)
    : std::string(bytes), is_utf8_(reading == Reading::standard) {
  if (is_utf8_ && !platform::is_ascii(bytes)) assign(platform::to_utf8(wide()));
}

WireText WireText::from_dvb(std::string_view field) {
  WireText out(dvb_text_to_utf8(field));
  out.is_utf8_ = true;
  return out;
}

wide_string WireText::wide() const {
  return platform::to_utf16(*this);
}

}  // namespace quillon
