#pragma once

#include <cstdint>

namespace quillon {

class DvbLoop;

namespace detail {

// What an elementary stream carries, in a word or two: "H.264 video", "AC-3 audio", "subtitles"; null where
// neither its type nor its descriptors say. No loop: its type alone.
const char* stream_content(int stream_type, uint32_t format_identifier, const DvbLoop* loop);

}  // namespace detail
}  // namespace quillon
