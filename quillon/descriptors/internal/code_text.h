#pragma once

// Names of coded values. For the library's own sources.

#include <cstddef>
#include <initializer_list>

namespace quillon::detail {

// The text of `code`, the first text being that of 0; `otherwise` below and above those there are.
inline const char* text_of(int code, std::initializer_list<const char*> texts, const char* otherwise) {
  return code >= 0 && static_cast<size_t>(code) < texts.size() ? texts.begin()[code] : otherwise;
}

// What application_type says (TS 102 812, 10.4.6), in a table and in a descriptor.
inline const char* application_type_text(int type) {
  return text_of(type, {"reserved_future_use", "DVB-J application", "DVB-HTML application"},
                 "subject to registration with DVB");
}

// Quirk: application_type texts
inline const char* standard_application_type_text(int type) {
  return type == 0x0010 ? "HbbTV application" : application_type_text(type);
}

}  // namespace quillon::detail
