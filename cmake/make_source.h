#pragma once

// The main function of a program that makes a source of the library: PROGRAM FOLDER OUT.cpp

#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>

inline int make_source(int argc, char** argv, std::string (*text_from)(const std::filesystem::path& folder)) {
  if (argc != 3) {
    std::cerr << "usage: " << argv[0] << " FOLDER OUT.cpp" << std::endl;
    return 2;
  }
  try {
    const std::string text = text_from(argv[1]);
    std::ofstream out(argv[2], std::ios::binary);
    out << text;
    out.close();
    if (!out) throw std::runtime_error(std::string(argv[2]) + ": can't be written");
  } catch (const std::exception& e) {
    std::cerr << e.what() << std::endl;
    return 1;
  }
  return 0;
}
