// What gives the companion program its bytes: addresses, on the loopback.

#include "tests/app/sources.h"

#include <boost/asio/ip/multicast.hpp>
#include <boost/asio/ip/udp.hpp>
#include <initializer_list>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

using namespace quillon::test;
using quillon::app::open_source;
using quillon::app::Source;

namespace {

namespace ip = boost::asio::ip;
using ip::udp;

// An RTP packet as RFC 3550 draws it.
struct Rtp {
  int number = 0;
  std::string payload = {};
  int first_byte = 0x80;              // version, padding, extension, number of CSRCs
  std::string after_header = {};      // CSRCs and extension
  std::string sender = {1, 2, 3, 4};  // SSRC
  std::string padding = {};

  std::string bytes() const {
    const std::string header = {static_cast<char>(first_byte),
                                33,
                                static_cast<char>(number >> 8),
                                static_cast<char>(number),
                                0,
                                0,
                                0,
                                0};
    return header + sender + after_header + payload + padding;
  }
};

class Datagrams : public Sources {
 protected:
  static std::string url(const std::string& scheme, const std::string& host, uint16_t port,
                         const std::string& query = {}) {
    return scheme + "://" + host + ":" + std::to_string(port) + query;
  }

  void send(uint16_t port, const std::string& bytes, const ip::address& to = ip::address_v4::loopback()) {
    udp::socket socket(context_, to.is_v4() ? udp::v4() : udp::v6());
    if (to.is_multicast()) {
      socket.set_option(ip::multicast::hops(0));  // no farther than this machine
      if (to.is_v4())
        socket.set_option(ip::multicast::outbound_interface(ip::address_v4::loopback()));
      else
        socket.set_option(ip::multicast::outbound_interface(static_cast<unsigned>(to.to_v6().scope_id())));
    }
    ASSERT_EQ(socket.send_to(boost::asio::buffer(bytes), {to, port}), bytes.size());
  }

  // Sends the packets to a source and reads it to its end.
  std::string through_rtp(const std::vector<std::string>& datagrams) {
    const uint16_t port = free_port();
    const auto source = open_source(url("rtp", "127.0.0.1", port, "?timeout=0.2"), false);
    for (const std::string& datagram : datagrams) send(port, datagram);
    std::string whole;
    for (std::string piece = "-"; !piece.empty(); whole += piece) piece = read(*source);
    trouble_ = source->trouble();
    return whole;
  }
  // The same with packets whose payload, a letter, says their number: 'a' has 65534, so that it turns over.
  std::string through_rtp(const std::string& letters) {
    std::vector<std::string> datagrams;
    for (const char letter : letters)
      datagrams.push_back(Rtp{.number = 65534 + letter - 'a', .payload = {letter}}.bytes());
    return through_rtp(datagrams);
  }

  // Null, and the reason in `why_not_`, if the group can't be joined here.
  std::unique_ptr<Source> join(const std::string& address) {
    try {
      return open_source(address, false);
    } catch (const quillon::app::Failure& failure) {
      why_not_ = failure.what();
      EXPECT_NE(why_not_.find("can't be joined"), std::string::npos) << why_not_;
      return nullptr;
    }
  }

  std::string trouble_;
  std::string why_not_;
};

}  // namespace

TEST_F(Datagrams, ComeToAnAddress) {
  for (const std::string host : {"127.0.0.1", "@127.0.0.1", ""}) {
    const uint16_t port = free_port(ip::address_v4::any());
    const auto source = open_source(url("udp", host, port), false);
    EXPECT_TRUE(source->is_live());
    EXPECT_FALSE(source->rewind());
    EXPECT_EQ(source->size(), 0U);
    std::thread sender([&] { send(port, "0123456789"); });  // while it is waited for, or before
    EXPECT_EQ(read(*source, 4), "0123");
    EXPECT_EQ(read(*source), "456789");
    sender.join();
    send(port, "next");
    EXPECT_EQ(read(*source), "next");
    EXPECT_EQ(source->trouble(), "");
  }
}

TEST_F(Datagrams, ComeToAnAddressOfIPv6) {
  const ip::address_v6 loopback = ip::address_v6::loopback();
  uint16_t port = 0;
  try {
    port = free_port(loopback);
  } catch (const boost::system::system_error& failure) {
    GTEST_SKIP() << "no IPv6 here: " << failure.what();
  }
  const auto source = open_source(url("udp", "[::1]", port), false);
  send(port, "bytes", loopback);
  EXPECT_EQ(read(*source), "bytes");
}

TEST_F(Datagrams, ComeToAGroup) {
  const uint16_t port = free_port(ip::address_v4::any());
  const std::string address = url("udp", "239.255.77.1", port, "?timeout=5&interface=127.0.0.1");
  const auto source = join(address);
  if (!source) GTEST_SKIP() << why_not_;
  const auto other_program = join(address);
  ASSERT_TRUE(other_program) << why_not_;
  send(port, "bytes", ip::make_address("239.255.77.1"));
  EXPECT_EQ(read(*source), "bytes");
  EXPECT_EQ(read(*other_program), "bytes");
}

TEST_F(Datagrams, ComeToAGroupOfIPv6) {
  const uint16_t port = free_port(ip::address_v4::any());
  ip::address_v6 group = ip::make_address_v6("ff02::7:1");
  for (unsigned long number = 1; number <= 16; ++number) {  // the loopback may have no route for it
    group.scope_id(number);
    const std::string query = "?timeout=5&interface=" + std::to_string(number);
    try {
      const auto source = open_source(url("udp", "[ff02::7:1]", port, query), false);
      send(port, "bytes", group);
      EXPECT_EQ(read(*source), "bytes");
      return;
    } catch (const std::runtime_error&) {
      continue;
    }
  }
  GTEST_SKIP() << "no interface has multicast of IPv6";
}

TEST_F(Datagrams, EndAfterATimeout) {
  const auto source = open_source(url("udp", "127.0.0.1", free_port(), "?timeout=0.05"), false);
  EXPECT_EQ(read(*source), "");
  EXPECT_EQ(read(*source), "");
}

TEST_F(Datagrams, LoseTheHeadersOfRtp) {
  const std::string extension = {'\xBE', '\xDE', 0, 1, 9, 9, 9, 9};
  EXPECT_EQ(through_rtp(std::vector<std::string>{
                Rtp{.number = 0, .payload = "plain"}.bytes(),
                Rtp{.number = 1, .payload = ", csrc", .first_byte = 0x82, .after_header = "AAAABBBB"}.bytes(),
                Rtp{.number = 2, .payload = ", ext", .first_byte = 0x90, .after_header = extension}.bytes(),
                Rtp{.number = 3, .payload = ", pad", .first_byte = 0xA0, .padding = {0, 0, 3}}.bytes(),
                Rtp{.number = 4,
                    .payload = ", all",
                    .first_byte = 0xB1,
                    .after_header = "AAAA" + extension,
                    .padding = {1}}
                    .bytes(),
                Rtp{.number = 5}.bytes(),  // empty, as a keepalive is
                Rtp{.number = 6, .payload = "."}.bytes()}),
            "plain, csrc, ext, pad, all.");
  EXPECT_EQ(trouble_, "");
}

TEST_F(Datagrams, AreRtpOrDropped) {
  EXPECT_EQ(through_rtp(std::vector<std::string>{
                Rtp{.number = 0, .payload = "a"}.bytes(), "short",
                Rtp{.number = 1, .payload = "no", .first_byte = 0x47}.bytes(),
                Rtp{.number = 1, .first_byte = 0x81, .after_header = "AAA"}.bytes(),  // CSRC cut
                Rtp{.number = 1, .first_byte = 0x90, .after_header = "AAA"}.bytes(),  // extension cut
                Rtp{.number = 1, .first_byte = 0x90, .after_header = {0, 0, 0, 1}}.bytes(),
                Rtp{.number = 1, .payload = "no", .first_byte = 0xA0, .padding = {0}}.bytes(),
                Rtp{.number = 1, .payload = "no", .first_byte = 0xA0, .padding = {4}}.bytes(),
                Rtp{.number = 1, .payload = "b"}.bytes()}),
            "ab");
  EXPECT_EQ(trouble_, "7 datagrams without RTP, for which there is udp://");
}

TEST_F(Datagrams, AreBroughtIntoOrder) {
  EXPECT_EQ(through_rtp("abcdef"), "abcdef");
  EXPECT_EQ(trouble_, "");
  EXPECT_EQ(through_rtp("acbdef"), "abcdef");
  EXPECT_EQ(trouble_, "1 RTP packet out of order");
  EXPECT_EQ(through_rtp("aedcbf"), "abcdef");
  EXPECT_EQ(trouble_, "3 RTP packets out of order");
}

TEST_F(Datagrams, AreTakenOnce) {
  EXPECT_EQ(through_rtp("aabacdccdbeefd"), "abcdef");
  EXPECT_EQ(through_rtp("adbdcdef"), "abcdef");  // while it waits
  EXPECT_EQ(trouble_, "2 RTP packets out of order");
}

TEST_F(Datagrams, AreMissedAndCounted) {
  EXPECT_EQ(through_rtp("abf"), "abf");  // at the end
  EXPECT_EQ(trouble_, "3 RTP packets lost");
  EXPECT_EQ(through_rtp("bdc"), "bcd");
  EXPECT_EQ(through_rtp("bfdzc"), "bcdfz");
  EXPECT_EQ(trouble_, "20 RTP packets lost, 2 out of order");
  // 'b' is given up when sixteen wait; then it is too late.
  EXPECT_EQ(through_rtp("acdefghijklmnopqrbs"), "acdefghijklmnopqrs");
  EXPECT_EQ(trouble_, "1 RTP packet lost");
  EXPECT_EQ(through_rtp("acdefghijklmnopqbrs"), "abcdefghijklmnopqrs");
  EXPECT_EQ(trouble_, "1 RTP packet out of order");
}

TEST_F(Datagrams, AreNotWaitedForForever) {
  const uint16_t port = free_port();
  const auto source = open_source(url("rtp", "127.0.0.1", port), false);
  send(port, Rtp{.number = 0, .payload = "a"}.bytes());
  send(port, Rtp{.number = 2, .payload = "c"}.bytes());
  EXPECT_EQ(read_size(*source, 2), "ac");
  EXPECT_EQ(source->trouble(), "1 RTP packet lost");
}

TEST_F(Datagrams, GoOnWhereASenderBeginsAnew) {
  const auto packet = [](int number, const std::string& payload, const std::string& sender) {
    return Rtp{.number = number, .payload = payload, .sender = sender}.bytes();
  };
  EXPECT_EQ(through_rtp({packet(0, "a", "1111"), packet(2, "c", "1111"), packet(30000, "x", "1111"),
                         packet(30001, "y", "1111"), packet(30002, "z", "1111")}),
            "acxyz");
  EXPECT_EQ(trouble_, "1 RTP packet lost");
  EXPECT_EQ(through_rtp({packet(0, "a", "1111"), packet(1, "b", "2222"), packet(2, "c", "2222")}), "abc");
  EXPECT_EQ(trouble_, "");
  // Another one meanwhile is not listened to.
  EXPECT_EQ(through_rtp({packet(0, "a", "1111"), packet(7, "x", "2222"), packet(1, "b", "1111"),
                         packet(8, "y", "2222"), packet(2, "c", "1111")}),
            "abc");
  EXPECT_EQ(trouble_, "2 RTP packets of another sender");
}

TEST_F(Datagrams, SayWhatIsWrongWithAnAddress) {
  const auto form = [](const std::string& scheme) {
    return "; the form is " + scheme + "://GROUP:PORT or " + scheme +
           "://:PORT, then perhaps ?interface=ADDRESS&timeout=SECONDS";
  };
  const auto expect = [&](const std::string& input, const std::string& why) {
    EXPECT_EQ(failure_of(input), input + ": " + why + form(input.substr(0, 3)));
  };
  expect("udp://", "the port is missing");
  expect("udp://239.1.2.3", "the port is missing");
  expect("rtp://[ff02::1]", "the port is missing");
  expect("udp://239.1.2.3:", "\"\" is no port from 1 to 65535");
  expect("udp://239.1.2.3:0", "\"0\" is no port from 1 to 65535");
  expect("udp://239.1.2.3:65536", "\"65536\" is no port from 1 to 65535");
  expect("rtp://239.1.2.3:50x", "\"50x\" is no port from 1 to 65535");
  expect("udp://239.1.2:5000", "239.1.2 is no numeric address");
  expect("udp://[239.1.2.3]:5000", "[239.1.2.3] is no numeric address");
  expect("udp://[ff02::1:5000", "[ff02::1 is no numeric address");
  expect("udp://ff02::1:5000", "an address of IPv6 is in brackets, [ff02::1]");
  expect("udp://10.0.0.1@239.1.2.3:5000", "a sender can't be chosen");
  expect("udp://239.1.2.3:5000?ttl=1", "\"ttl\" is not known");
  expect("udp://239.1.2.3:5000?interface=", "\"interface\" is stated without a value");
  expect("udp://239.1.2.3:5000?timeout=soon", "the timeout is no number of seconds");
  expect("udp://239.1.2.3:5000?timeout=0", "the timeout is no number of seconds");
  expect("udp://127.0.0.1:5000?interface=127.0.0.1", "an interface is for a group alone, and this is none");

  const std::string group = "udp://239.1.2.3:5000?interface=lo";
  EXPECT_EQ(failure_of(group),
            group + ": lo is no address of an interface; write it as ?interface=192.168.1.2");
  EXPECT_EQ(failure_of("http://a/b"), "http://a/b: not found; addresses begin with udp:// or rtp://");
}

TEST_F(Datagrams, SayThatAPortIsTaken) {
  const std::string taken = url("udp", "127.0.0.1", free_port());
  const auto source = open_source(taken, false);
  EXPECT_EQ(failure_of(taken),
            taken + ": another program receives on this port; stop it, or take another port");
}
