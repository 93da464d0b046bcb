#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace quillon::app {

// The bytes of an input, as they come.
class Source {
 public:
  virtual ~Source() = default;

  // Waits until there are bytes and puts at most `room` of them at `place`; 0 at the end of the input, and
  // once the program is to stop. Throws Failure.
  virtual size_t read(uint8_t* place, size_t room) = 0;
  // Goes back to the first byte; false where the input can't.
  virtual bool rewind() { return false; }
  // In all; 0 where that is not known.
  virtual uint64_t size() const { return 0; }
  // Comes at the pace of its sender: what is made of it is shown at once, and a signal to stop is its end.
  virtual bool is_live() const { return true; }
  // What was lost on the way so far, "3 RTP packets lost, 1 out of order"; empty if nothing is known to be.
  virtual std::string trouble() const { return {}; }
};

// A file, a pipe or a device by its name in UTF-8; "-" is standard input; "udp://GROUP:PORT" and
// "rtp://GROUP:PORT" what comes to an address (datagrams.h). Throws Failure, which names the input, the
// reason and what to do.
//
// `follow`: a file goes on when more is written to it, and so is live. At its end it is looked at a few times
// a second. One that has become shorter than what was read of it was begun anew, and is read from its
// beginning. Where another file has taken its name, the old one is read to its end, then the new one from its
// beginning; while there is none of that name, the old one goes on. A file that is cut and grows beyond its
// old size between two looks can't be told from one that has grown. Pipes and devices are as without it.
std::unique_ptr<Source> open_source(const std::string& input, bool follow);

// What people call it.
std::string name_of(const std::string& input);

}  // namespace quillon::app
