#pragma once

#include "apps/quillon/source.h"

#include <memory>
#include <string>

namespace quillon::app {

// "udp://" or "rtp://" is what it begins with.
bool is_address(const std::string& input);

// The payloads of the datagrams that come to an address, live:
//
//   udp://239.1.2.3:5000      a group, which is joined; udp://@239.1.2.3:5000 is the same
//   udp://192.168.1.2:5000    one address of this machine
//   udp://:5000               all of them, of IPv4; udp://[::]:5000 of IPv6
//   rtp://239.1.2.3:5000      in RTP (rtp.h)
//
// `?interface=` is the interface on which a group is joined: its address in IPv4, its name or number in IPv6.
// `?timeout=SECONDS` makes it the end when nothing came for so long. The two are joined by `&`. Throws
// Failure.
std::unique_ptr<Source> open_datagrams(const std::string& input);

}  // namespace quillon::app
