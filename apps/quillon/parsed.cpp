#include "apps/quillon/parsed.h"

#include "apps/quillon/text.h"

#include <memory>

#include <quillon/sections/error.h>

namespace quillon::app {

Exit TableReceiver::run(Needs needs) {
  const Exit exit = read_inputs(options_, console_, *this, needs);
  if (parsed_ + refused_ == 0 && unknown_ > 0)
    console_.message("no table is known by the ids of the " + grouped(unknown_) +
                     " sections; quillon sections writes them as they are");
  if (parsed_ > 0 || refused_ == 0) return exit;
  console_.message("all sections were refused");
  return exit_bad_input;
}

void TableReceiver::section(const Input& input, const StreamSection& section) {
  const std::unique_ptr<AnyTable> table = AnyTable::for_table_id(section.table_id(), input.standard);
  if (!table) {
    ++unknown_;
    return;
  }
  table->set_tolerant(true);
  table->set_reading(reading_);
  const auto trouble = [&](const std::string& what) {
    console_.trouble(input.name, place_of(section),
                     table_title(section.table_id(), input.standard) + ": " + what);
  };
  try {
    table->Parse(section.bytes, section.size, false);
  } catch (const error& e) {
    ++refused_;
    trouble("refused: " + failure_text(e.what(), e.get_code()));
    return;
  }
  ++parsed_;
  for (const DescriptorFailure& failure : table->get_descriptor_failures())
    trouble("descriptor " + hex(static_cast<unsigned>(failure.tag), 2) +
            " kept as it is: " + failure_text(failure.text, failure.code));
  this->table(input, section, *table);
}

}  // namespace quillon::app
