#pragma once

#include <string_view>

namespace quillon::app::html {

// The style sheet and the script of a document, as files beside this one have them, and what a browser is to
// know the script by (Content Security Policy).
extern const std::string_view kPageStyle;
extern const std::string_view kPageScript;
extern const std::string_view kPageScriptHash;

}  // namespace quillon::app::html
