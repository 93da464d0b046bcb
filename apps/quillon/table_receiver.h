#pragma once

#include "apps/quillon/feed.h"

#include <cstdint>

namespace quillon::app {

// Takes sections as tables. What is refused is told of, by the name of its table.
class TableReceiver : public Receiver {
 public:
  // `reading` is the one that counts if the options say none.
  TableReceiver(const Options& options, Console& console, Reading reading)
      : options_(options), console_(console), reading_(options.reading.value_or(reading)) {}

  // Reads all inputs, as read_inputs does. Bad input, too, if every section was refused.
  Exit run(Needs needs = {});

  void section(const Input& input, const StreamSection& section) override;

 protected:
  ~TableReceiver() override = default;

  virtual void table(const Input& input, const StreamSection& section, const AnyTable& table) = 0;

  const Options& options_;
  Console& console_;
  const Reading reading_;

 private:
  uint64_t unknown_ = 0;
  uint64_t parsed_ = 0;
  uint64_t refused_ = 0;
};

}  // namespace quillon::app
