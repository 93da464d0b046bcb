#include "apps/quillon/datagrams.h"

#include "apps/quillon/failure.h"
#include "apps/quillon/rtp.h"
#include "apps/quillon/stop.h"

#include <algorithm>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/multicast.hpp>
#include <boost/asio/ip/udp.hpp>
#include <charconv>
#include <chrono>
#include <optional>
#include <string_view>
#include <system_error>
#include <vector>

namespace quillon::app {

namespace {

namespace asio = boost::asio;
using asio::ip::udp;
using Clock = std::chrono::steady_clock;
using Error = boost::system::error_code;

constexpr size_t kLargestDatagram = 65536;
// What a sender may run ahead while sections are shown; the system gives less where it is told to.
constexpr int kReceiveBuffer = 4 << 20;

struct Address {
  bool rtp = false;
  udp::endpoint endpoint;
  std::string interface_name;
  std::optional<Clock::duration> timeout;
};

// In the words of the C library, as those of the system are in the user's language.
std::string words(const Error& failed) {
  return failed.default_error_condition().message();
}

// None of what a system reads as an address beyond four whole numbers, or what IPv6 has instead.
std::optional<asio::ip::address> address_of(const std::string& text) {
  Error failed;
  const asio::ip::address address = asio::ip::make_address(text, failed);
  if (failed || (address.is_v4() && address.to_string() != text)) return std::nullopt;
  return address;
}

class AddressParser {
 public:
  explicit AddressParser(const std::string& input) : input_(input) {}

  Address parse() const {
    Address address;
    address.rtp = input_.starts_with("rtp");
    std::string_view rest = input_;
    rest.remove_prefix(rest.find("//") + 2);
    const std::string_view query = cut(rest, '?');
    if (rest.ends_with('/')) rest.remove_suffix(1);
    if (rest.starts_with('@')) rest.remove_prefix(1);
    if (rest.find('@') != std::string_view::npos) refuse("a sender can't be chosen");
    const size_t colon = rest.rfind(':');
    if (colon == std::string_view::npos || rest.ends_with(']')) refuse("the port is missing");
    address.endpoint = {host(rest.substr(0, colon)), port(rest.substr(colon + 1))};
    read_query(query, address);
    return address;
  }

 private:
  [[noreturn]] void refuse(const std::string& why) const {
    const std::string scheme = input_.substr(0, input_.find("//") + 2);
    throw Failure(input_ + ": " + why + "; the form is " + scheme + "GROUP:PORT or " + scheme +
                  ":PORT, then perhaps ?interface=ADDRESS&timeout=SECONDS");
  }

  // What is after the first `mark`, which goes from `text` with it.
  static std::string_view cut(std::string_view& text, char mark) {
    const std::string_view whole = text;
    text = whole.substr(0, whole.find(mark));
    return text.size() == whole.size() ? std::string_view() : whole.substr(text.size() + 1);
  }

  template <class Number>
  static std::optional<Number> number(std::string_view text) {
    Number value{};
    const auto [end, result] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
  }

  asio::ip::address host(std::string_view text) const {
    if (text.empty()) return asio::ip::address_v4::any();
    const bool brackets = text.starts_with('[') && text.ends_with(']');
    const auto address = address_of(std::string(brackets ? text.substr(1, text.size() - 2) : text));
    if (!address || (brackets && !address->is_v6())) refuse(std::string(text) + " is no numeric address");
    if (address->is_v6() && !brackets)
      refuse("an address of IPv6 is in brackets, [" + address->to_string() + "]");
    return *address;
  }

  uint16_t port(std::string_view text) const {
    const std::optional<uint16_t> value = number<uint16_t>(text);
    if (!value || *value == 0) refuse("\"" + std::string(text) + "\" is no port from 1 to 65535");
    return *value;
  }

  void read_query(std::string_view query, Address& address) const {
    while (!query.empty()) {
      std::string_view option = query;
      query = cut(option, '&');
      const std::string_view value = cut(option, '=');
      if (value.empty()) refuse("\"" + std::string(option) + "\" is stated without a value");
      if (option == "interface") {
        if (!address.endpoint.address().is_multicast())
          refuse("an interface is for a group alone, and this is none");
        address.interface_name = value;
      } else if (option == "timeout") {
        const std::optional<double> seconds = number<double>(value);
        if (!seconds || !(*seconds > 0 && *seconds < 1e6)) refuse("the timeout is no number of seconds");
        address.timeout =
            std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(*seconds));
      } else {
        refuse("\"" + std::string(option) + "\" is not known");
      }
    }
  }

  const std::string& input_;
};

class DatagramSource final : public Source {
 public:
  explicit DatagramSource(const std::string& input) : name_(input), address_(AddressParser(input).parse()) {
    const asio::ip::address address = address_.endpoint.address();
    Error failed;
    socket_.open(address_.endpoint.protocol(), failed);
    if (failed) fail("can't be received from", failed, "");
    socket_.set_option(asio::socket_base::receive_buffer_size(kReceiveBuffer), failed);
    address.is_multicast() ? join(address) : bind();
    socket_.non_blocking(true);
  }

  size_t read(uint8_t* place, size_t room) override {
    while (given_ == ready_.size()) {
      if (ended_ || stop_requested()) return 0;
      ready_.clear();
      given_ = 0;
      while (ready_.size() < room && !stop_requested() && receive()) continue;
      if (ready_.empty()) wait();
    }
    const size_t size = std::min(room, ready_.size() - given_);
    std::copy_n(ready_.begin() + static_cast<std::ptrdiff_t>(given_), size, place);
    given_ += size;
    return size;
  }

  std::string trouble() const override { return order_.trouble(); }

 private:
  [[noreturn]] void fail(const std::string& what, const Error& failed, const std::string& advice) const {
    throw Failure(name_ + ": " + what + ": " + words(failed) + advice);
  }

  void bind() {
    Error failed;
    socket_.bind(address_.endpoint, failed);
    if (failed == asio::error::address_in_use)
      throw Failure(name_ + ": another program receives on this port; stop it, or take another port");
    if (failed) fail("can't be bound", failed, "; name an address of this machine, or none for all");
  }

  void join(const asio::ip::address& group) {
    Error failed;
    // Several programs may receive a group.
    socket_.set_option(asio::socket_base::reuse_address(true), failed);
    const auto join = group.is_v4() ? join_v4(group.to_v4()) : join_v6(group.to_v6());
    // Where the system allows it, to the group, so that none comes of other groups on the port.
    socket_.bind(address_.endpoint, failed);
    if (failed) socket_.bind({address_.endpoint.protocol(), address_.endpoint.port()}, failed);
    if (failed) fail("can't be bound", failed, "; take another port");
    socket_.set_option(join, failed);
    if (failed)
      fail("the group can't be joined", failed, "; name an interface with multicast by ?interface=");
  }

  asio::ip::multicast::join_group join_v4(const asio::ip::address_v4& group) const {
    if (address_.interface_name.empty()) return asio::ip::multicast::join_group(group);
    const auto own = address_of(address_.interface_name);
    if (!own || !own->is_v4())
      throw Failure(name_ + ": " + address_.interface_name +
                    " is no address of an interface; write it as ?interface=192.168.1.2");
    return asio::ip::multicast::join_group(group, own->to_v4());
  }

  asio::ip::multicast::join_group join_v6(asio::ip::address_v6 group) {
    if (!address_.interface_name.empty()) {
      // The number of an interface by its name is known to the zones of local addresses.
      Error failed;
      group.scope_id(asio::ip::make_address_v6("fe80::1%" + address_.interface_name, failed).scope_id());
      if (failed || group.scope_id() == 0)
        throw Failure(name_ + ": " + address_.interface_name +
                      " is no interface; write its name or number, as ?interface=eth0");
      address_.endpoint.address(group);
    }
    return asio::ip::multicast::join_group(group, group.scope_id());
  }

  // False if nothing is there.
  bool receive() {
    Error failed;
    const size_t size = socket_.receive(asio::buffer(datagram_), 0, failed);
    if (failed == asio::error::would_block || failed == asio::error::interrupted) return false;
    if (failed) fail("can't be received from", failed, "");
    last_ = Clock::now();
    if (address_.rtp)
      order_.push(datagram_.data(), size, last_, ready_);
    else
      ready_.insert(ready_.end(), datagram_.begin(), datagram_.begin() + static_cast<std::ptrdiff_t>(size));
    return true;
  }

  // For a datagram, for the end of what is waited for, or to look whether the program is to stop.
  void wait() {
    const Clock::time_point now = Clock::now();
    if (address_.timeout && now - last_ >= *address_.timeout) {
      order_.flush(ready_);
      ended_ = true;
      return;
    }
    order_.give_up(now, ready_);
    if (!ready_.empty()) return;
    Clock::time_point until = now + longest_wait;
    if (address_.timeout) until = std::min(until, last_ + *address_.timeout);
    if (const auto due = order_.due()) until = std::min(until, *due);
    if (!waiting_) socket_.async_wait(udp::socket::wait_read, [this](const Error&) { waiting_ = false; });
    waiting_ = true;
    context_.restart();
    context_.run_one_until(until);
  }

  std::string name_;
  Address address_;
  asio::io_context context_{1};
  udp::socket socket_{context_};
  bool waiting_ = false;
  bool ended_ = false;
  Clock::time_point last_ = Clock::now();
  std::vector<uint8_t> datagram_ = std::vector<uint8_t>(kLargestDatagram);
  RtpOrder order_;
  std::vector<uint8_t> ready_;
  size_t given_ = 0;  // of ready_
};

}  // namespace

bool is_address(const std::string& input) {
  return input.starts_with("udp://") || input.starts_with("rtp://");
}

std::unique_ptr<Source> open_datagrams(const std::string& input) {
  return std::make_unique<DatagramSource>(input);
}

}  // namespace quillon::app
