#pragma once

#include "apps/quillon/choice.h"
#include "apps/quillon/console.h"
#include "apps/quillon/options.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <quillon/stream/packet_reader.h>
#include <quillon/stream/section_reader.h>
#include <quillon/stream/stream_statistics.h>

namespace quillon::app {

// An input while it is read.
struct Input {
  std::string name;  // as people call it, escaped
  bool is_live = false;
  bool is_chain = false;              // of sections without packets
  uint64_t bytes = 0;                 // read until now
  PacketReader packets;               // all zero in a chain
  StreamStatistics statistics;        // of what takes statistics alone
  Standard standard = Standard::dvb;  // as far as is known

  // Seconds by the stream's clock since it began to count; none before it does.
  std::optional<double> time() const {
    return statistics.bit_rate() > 0 ? std::optional(statistics.seconds()) : std::nullopt;
  }
};

// What takes what the inputs hold. Inputs come one after the other.
class Receiver {
 public:
  struct Needs {
    bool repeats = false;        // each section, whenever it is sent
    bool statistics = false;     // Input::statistics
    bool every_service = false;  // the choice of services is the receiver's own
    bool packets = false;        // a PID is met whatever it carries
  };

  virtual ~Receiver() = default;

  virtual void begin(const Input&) {}
  virtual void packet(const TsPacket&) {}
  // Each one, whatever is asked of services: who looks for these has to know all of them. `is_wanted`: as
  // all else in the choice says.
  virtual void learn(const Input&, const StreamSection&, [[maybe_unused]] bool is_wanted) {}
  // One that is wanted, as the options say.
  virtual void section(const Input&, const StreamSection&) {}
  // All that has come was handed over, and more is waited for.
  virtual void pause(const Input&) {}
  virtual void end(const Input&) {}
};

// Reads all inputs. One that can't be read is told of, and the others are read. Says what was skipped, and
// that nothing is as the choice wants it. Gives an exit code: bad input if one could not be read.
Exit read_inputs(const Options& options, Console& console, Receiver& receiver, Receiver::Needs needs);

// "packet 12, PID 0x0012": people count from 1.
std::string place_of(const StreamSection& section);

}  // namespace quillon::app
