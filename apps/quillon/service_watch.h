#pragma once

#include "apps/quillon/events.h"
#include "apps/quillon/options.h"

#include <cstdint>
#include <map>
#include <optional>
#include <tuple>

#include <quillon/stream/service_directory.h>

namespace quillon::app {

// Tells what becomes of services, of those that are wanted. One that is new is told of when its name and its
// streams are known, or after two seconds with what is: tables of several kinds make a service. It holds the
// services that the directory has, once more.
class ServiceWatch {
 public:
  ServiceWatch(const Choice& choice, Events& events) : choice_(choice), events_(events) {}

  void on_event(const ServiceEvent& event);
  // To be called when time has gone on.
  void tick();
  // At the end: tells of all that is new.
  void finish();

 private:
  // Actual or not, network, stream, number, channel of the program: what the directory knows it by.
  using Key = std::tuple<bool, int, int, int, int>;
  struct Known {
    Service service;
    std::optional<double> untold_since;
  };

  static Key key_of(const Service& service);
  void tell_new(Known& known);
  void tell_gone(const Service& service);
  void tell_changes(const Service& old, const Service& now);

  const Choice& choice_;
  Events& events_;
  std::map<Key, Known> services_;
  size_t untold_ = 0;
  double looked_ = 0;
};

}  // namespace quillon::app
