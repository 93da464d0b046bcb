#include "apps/quillon/table_receiver.h"

#include "apps/quillon/parse.h"
#include "apps/quillon/text.h"

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
  const ParsedTable parsed = parse(section.span(), input.standard, reading_);
  const auto trouble = [&](const std::string& what) {
    console_.trouble(input.name, place_of(section),
                     table_title(section.table_id(), input.standard) + ": " + what);
  };
  if (!parsed.refused.empty()) {
    ++refused_;
    trouble("refused: " + parsed.refused);
    return;
  }
  if (!parsed.table) {
    ++unknown_;
    return;
  }
  ++parsed_;
  for (const DescriptorFailure& failure : parsed.table->get_descriptor_failures())
    trouble(name_of(failure) + " kept as it is: " + text_of(failure));
  table(input, section, *parsed.table);
}

}  // namespace quillon::app
