#include "apps/quillon/parse.h"

#include "apps/quillon/text.h"

#include <quillon/sections/error.h>

namespace quillon::app {

ParsedTable parse(std::span<const uint8_t> section, Standard standard, Reading reading) {
  ParsedTable out;
  out.table = AnyTable::for_table_id(section[0], standard);
  if (!out.table) return out;
  out.table->set_tolerant(true);
  out.table->set_reading(reading);
  try {
    out.table->Parse(section);
  } catch (const error& e) {
    out.table.reset();
    out.refused = failure_text(e.what(), e.get_code());
  }
  return out;
}

std::string name_of(const DescriptorFailure& failure) {
  return "descriptor " + hex(static_cast<unsigned>(failure.tag), 2);
}

std::string text_of(const DescriptorFailure& failure) {
  return failure_text(failure.text, failure.code);
}

}  // namespace quillon::app
