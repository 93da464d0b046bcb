#pragma once

#include <stdexcept>

namespace quillon::app {

// Ends a command with its text as the last message.
class Failure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace quillon::app
