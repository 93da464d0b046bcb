#include <quillon/platform/or_empty.h>
#include <quillon/sections/error.h>

namespace quillon {

error::error(const char* text) : code_(-1), message_(detail::or_empty(text)) {}
error::error(errorcode_enum code, unsigned int extra) : code_(code), extra_(extra), message_("") {}
error::error(errorcode_enum code) : error(int{code}) {}
error::error(int code) : code_(code), message_("") {}
error::error(errorcode_enum code, const char* text) : code_(code), message_(detail::or_empty(text)) {}

}  // namespace quillon
