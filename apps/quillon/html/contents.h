#pragma once

#include "apps/quillon/survey.h"

#include <array>
#include <string>
#include <vector>

namespace quillon::app::html {

// What a PID carries, which is its colour: classes of the style sheet.
enum class Carries { video, audio, text, data, tables, access, stuffing, unknown };
inline constexpr std::array kCarries = {Carries::video,    Carries::audio,  Carries::text,
                                        Carries::data,     Carries::tables, Carries::access,
                                        Carries::stuffing, Carries::unknown};
// "c-video"
const char* class_of(Carries carries);
// "Video"
const char* title_of(Carries carries);

struct PidContent {
  int pid = 0;
  uint64_t packets = 0;
  Carries carries = Carries::unknown;
  std::string text;   // "AAC audio (eng) of Quill One"
  std::string brief;  // "AAC audio (eng)"
  std::string owner;  // the service, or what else it is part of
};

// Those that have packets, from the one with the most.
std::vector<PidContent> contents_of_pids(const Input& input, const Survey& survey);

}  // namespace quillon::app::html
