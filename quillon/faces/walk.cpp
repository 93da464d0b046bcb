#include <quillon/faces/internal/walk.h>
#include <quillon/platform/code_page.h>
#include <quillon/platform/utf8.h>

namespace quillon::faces {

void Walk::text(const char* name, std::string_view ansi) {
  if (platform::is_ascii(ansi))
    sink_.text(name, ansi);
  else
    sink_.text(name, platform::to_utf8(0, ansi));
}

void Walk::field(const char* name, wide_view value) {
  sink_.text(name, platform::to_utf8(value));
}

void Walk::field(const char* name, const Text& value) {
  if (reading_ == Reading::standard)
    sink_.text(name, value.utf8());
  else if (value.is_ascii())
    sink_.text(name, value.get_textA());
  else
    sink_.text(name, platform::to_utf8(value.get_textW()));
}

void Walk::coded(const char* name, int64_t value, Meaning meaning) {
  const char* const text = meaning.of(value, reading_);
  if (!text || !*text)
    sink_.number(name, value, nullptr);
  else if (platform::is_ascii(text))
    sink_.number(name, value, text);
  else
    sink_.number(name, value, platform::to_utf8(1252, text).c_str());
}

}  // namespace quillon::faces
