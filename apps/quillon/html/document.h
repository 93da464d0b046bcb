#pragma once

#include "apps/quillon/html/page.h"

#include <string>
#include <string_view>

namespace quillon::app::html {

std::string document_begin(std::string_view input);
// One input.
std::string article(Page& page);
std::string document_end();

}  // namespace quillon::app::html
