#include "apps/quillon/html/parse.h"

#include "apps/quillon/text.h"

#include <quillon/sections/error.h>

namespace quillon::app::html {

ParsedTable parse(std::span<const uint8_t> section, Standard standard) {
  ParsedTable out;
  out.table = AnyTable::for_table_id(section[0], standard);
  if (!out.table) return out;
  out.table->set_tolerant(true);
  out.table->set_reading(Reading::standard);
  try {
    out.table->Parse(section.data(), section.size(), false);
  } catch (const error& e) {
    out.table.reset();
    out.refused = failure_text(e.what(), e.get_code());
    return out;
  }
  for (const DescriptorFailure& failure : out.table->get_descriptor_failures())
    out.refused_descriptors.push_back("descriptor " + hex(static_cast<unsigned>(failure.tag), 2) + ": " +
                                      failure_text(failure.text, failure.code));
  return out;
}

}  // namespace quillon::app::html
