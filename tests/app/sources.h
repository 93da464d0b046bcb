#pragma once

// Inputs of the companion program, and a folder for those that are files.

#include "apps/quillon/failure.h"
#include "apps/quillon/source.h"
#include "tests/support/bytes.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/udp.hpp>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>

#include <quillon/platform/internal/log_file.h>

namespace quillon::test {

class Sources : public testing::Test {
 protected:
  Sources()
      : folder_(std::filesystem::temp_directory_path() /
                ("quillon-" + std::to_string(platform::process_id()) + "-" +
                 testing::UnitTest::GetInstance()->current_test_info()->name())) {
    std::filesystem::create_directories(folder_);
  }
  ~Sources() override { std::filesystem::remove_all(folder_); }

  std::string path(const std::string& name) const { return (folder_ / name).string(); }

  // The file's name.
  std::string write(const std::string& name, const std::string& content,
                    std::ios::openmode mode = std::ios::trunc) const {
    std::ofstream(folder_ / name, std::ios::binary | mode) << content;
    return path(name);
  }

  static std::string read(app::Source& source, size_t room = 65536) {
    std::string piece(room, '\0');
    piece.resize(source.read(reinterpret_cast<uint8_t*>(piece.data()), piece.size()));
    return piece;
  }

  // So many bytes, in as many reads as it takes; fewer at the end.
  static std::string read_size(app::Source& source, size_t size) {
    std::string whole;
    for (std::string piece = "-"; !piece.empty() && whole.size() < size; whole += piece)
      piece = read(source, size - whole.size());
    return whole;
  }

  static std::string failure_of(const std::string& input) {
    try {
      const auto source = app::open_source(input, false);
      while (!read(*source).empty()) continue;
    } catch (const app::Failure& failure) {
      return failure.what();
    }
    return "none";
  }

  // Of UDP, one that was free just now.
  uint16_t free_port(const boost::asio::ip::address& address = boost::asio::ip::address_v4::loopback()) {
    return boost::asio::ip::udp::socket(context_, {address, 0}).local_endpoint().port();
  }

  std::filesystem::path folder_;
  boost::asio::io_context context_;
};

}  // namespace quillon::test
